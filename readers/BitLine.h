// One line of a logic-location file (see LLFile.h), taken apart in two ways that agree.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace consolidator {

/// The bit of a net that a "Bit" line places.
struct BitLine {
    std::string net; ///< With a "/" in front and without the bit index; empty if there is none.
    std::uint32_t number = 0; ///< Of the bit.
    std::uint32_t address = 0;
    std::uint32_t offset = 0;

    bool operator==(const BitLine&) const = default;

    /// Takes a line apart with the extractions of a standard stream, which decide what odd numbers
    /// mean. Nothing when one of its numbers cannot be read. The line begins with the word "Bit".
    static std::optional<BitLine> read(const std::string& line);

    /// Does the same ten times faster for a line that tools write: plain numbers that no type is
    /// too small for, each a word of its own, and the net as the last word. False when anything
    /// else is in the line; then read() is to decide, and the fields are worth nothing.
    bool scan(std::string_view line);

private:
    void setNet(std::string_view word);
    void cutBitIndex();
    bool scanNet(std::string_view word);
};

} // namespace consolidator
