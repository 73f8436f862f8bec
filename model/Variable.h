// One argument or local variable of a kernel, under its source name and its hardware name.
#pragma once

#include "model/InstanceLocations.h"

#include <cstdint>
#include <cstdio>
#include <iosfwd>
#include <string>
#include <string_view>

namespace consolidator {

/// A kernel's argument or local variable.
///
/// Binary form: the three names as texts; the number of instances; per instance its locations
/// (see BinaryForm.h).
///
/// JSON form, without and with locations:
///
///     [ "size", "size_r", "int", 32]
///     [ "size", "size_r", "int", 32, [ { "Instance" : 0, "Bits" : [{ 4096, 31}, { 4096, 32}]}]]
struct Variable {
    std::string sourceName;   ///< Name in the kernel's source; unique within its list.
    std::string hardwareName; ///< Name of the port or register in the generated hardware.
    std::string typeText;     ///< Source type, as text.

    /// Where each bit lies, per instance of the kernel, counted from 0. Only a database that was
    /// read back fills it: inputs record locations in hardware variables instead.
    InstanceLocations locations;

    /// True once the record is complete: made from its texts, or read whole.
    bool valid = false;

    /// An empty record that is not complete: what reading starts from.
    Variable() = default;

    /// A complete record without locations.
    Variable(std::string_view source, std::string_view hardware, std::string_view type);

    bool operator==(const Variable&) const = default;

    /// Width in bits as far as the type's text tells: 64 for a pointer ("*" anywhere), else 8 for
    /// a "char", else 32.
    std::uint32_t bitWidth() const;

    /// Writes the JSON form, with nothing before or after it.
    void writeJson(std::ostream& out) const;

    /// Writes the binary form and returns the number of bytes that went out; 0 for a null stream.
    std::uint32_t write(std::FILE* stream) const;

    /// Reads the binary form. A short read (or a null stream) gives a record that is not valid and
    /// holds what came before it.
    static Variable read(std::FILE* stream);

    /// Passes over a record: reads as many bytes as reading it does and returns whether it would be
    /// valid, but keeps nothing.
    static bool skip(std::FILE* stream);

private:
    bool readFields(std::FILE* stream);
};

} // namespace consolidator
