// One register or bus of a kernel as it lies in the configured device.
#pragma once

#include "model/LocationList.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iosfwd>
#include <string>
#include <string_view>

namespace consolidator {

/// A register's full net name with the device location of each of its bits.
///
/// Binary form: name as a text, then the locations (see BinaryForm.h).
///
/// JSON form, with a blank behind its closing brace; without locations the list is "[ ]":
///
///     { "RTLName" : "/top/k_1/inst/size_r", "Logic Locations" : [ [ 0, 0], [ 4096, 32]] }
struct HardwareVariable {
    std::string name; ///< Net name with a leading "/" and without any bit index.

    /// Entry i belongs to bit i; a bit that was never seen is a pair of zeros.
    LocationList locations;

    /// True once the record is complete: made from a name, or read whole.
    bool valid = false;

    /// An empty record that is not complete: what reading starts from.
    HardwareVariable() = default;

    /// A complete register without locations.
    explicit HardwareVariable(std::string_view netName);

    bool operator==(const HardwareVariable&) const = default;

    /// Sets where `bit` lies, adding pairs of zeros for the bits below it that were not seen yet. A
    /// later call for the same bit replaces the earlier one. The pairs of zeros cost no memory, but
    /// each takes its 8 bytes when the register is written: whoever takes bit numbers from a file
    /// bounds them first.
    void setLocation(std::uint32_t bit, std::uint32_t address, std::uint32_t offset);

    /// How many pairs of zeros setting this bit would add before it.
    std::uint32_t emptyBitsBefore(std::uint32_t bit) const {
        return bit - std::min(bit, locations.size());
    }

    /// Writes the JSON form, with nothing before or after it.
    void writeJson(std::ostream& out) const;

    /// Writes the binary form and returns the number of bytes that went out; 0 for a null stream.
    std::uint32_t write(std::FILE* stream) const;

    /// Reads the binary form. A short read (or a null stream) gives a record that is not valid and
    /// holds what came before it.
    static HardwareVariable read(std::FILE* stream);

    /// Passes over a record: reads as many bytes as reading it does and returns whether it would be
    /// valid, but keeps nothing.
    static bool skip(std::FILE* stream);

private:
    bool readFields(std::FILE* stream);
};

} // namespace consolidator
