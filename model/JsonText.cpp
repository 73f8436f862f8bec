#include "model/JsonText.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <string>

namespace consolidator {

namespace {

void appendNumber(std::string& text, std::uint32_t number) {
    std::array<char, 10> digits{}; // 4294967295 is the longest
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    text.append(digits.data(), end);
}

} // namespace

void writeQuoted(std::ostream& out, std::string_view text) {
    out << '"' << text << '"';
}

void writeJsonLocations(std::ostream& out, const std::vector<LogicLocation>& locations, char open,
                        char close) {
    // A design has tens of millions of these, so they go out in blocks.
    constexpr std::size_t blockSize = 4096;
    std::string block;
    std::string_view separator;
    for (const LogicLocation& location : locations) {
        block += separator;
        block += open;
        block += ' ';
        appendNumber(block, location.address);
        block += ", ";
        appendNumber(block, location.offset);
        block += close;
        separator = ", ";
        if (block.size() >= blockSize) {
            out << block;
            block.clear();
        }
    }
    out << block;
}

} // namespace consolidator
