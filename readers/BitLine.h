// One line of a logic-location file (see LLFile.h), taken apart in two ways that agree.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace consolidator {

/// The net that the last word of a line names, which is where tools write it:
///
///     Bit 26214438 0x00402a1f 2214 TILE_X1Y2 0 Latch=Q Net=top/k_1/inst/state_r[3]
///
/// It tells which net a line is about before anything else of the line is looked at. Everything in
/// here is a view of the line.
struct NetWord {
    /// What the word begins with.
    static constexpr std::string_view prefix = "Net=";

    std::string_view fields; ///< What stands before the word.
    std::string_view name;   ///< The net without its bit index: "top/k_1/inst/state_r".
    std::string_view index;  ///< What stands between the brackets of the bit index: "3".
    bool hasIndex = false;

    /// Takes apart what stands behind "Net=", which is not empty.
    void setNet(std::string_view net);

    /// Finds the net of a line in which "Net=" stands at the position `at` for the first time.
    /// False when it is not, without any odd character, the line's last word; then BitLine::read()
    /// is to find it.
    bool find(std::string_view line, std::size_t at);

    /// The name of what the net leads to: "state_r".
    std::string_view lastComponent() const { return name.substr(name.rfind('/') + 1); }
};

/// The bit of a net that a "Bit" line places.
struct BitLine {
    std::string_view net; ///< Without the bit index; a view of the line.
    std::uint32_t bitIndex = 0;
    std::uint32_t address = 0;
    std::uint32_t offset = 0;
    bool hasNet = false; ///< A line need not name one.

    bool operator==(const BitLine&) const = default;

    /// Takes a line apart with the extractions of a standard stream, which decide what odd numbers
    /// mean. Nothing when one of its numbers cannot be read. The line begins with the word "Bit".
    static std::optional<BitLine> read(const std::string& line);

    /// Does the same many times faster for a line that tools write: plain numbers that no type is
    /// too small for, each a word of its own, and then the net. False when anything else is in the
    /// line; then read() is to decide, and the fields are worth nothing.
    bool scan(const NetWord& word);

private:
    void setNet(std::string_view text);
};

} // namespace consolidator
