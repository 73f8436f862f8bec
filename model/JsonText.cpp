#include "model/JsonText.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace consolidator {

namespace {

char* append(char* end, std::string_view text) {
    return std::copy(text.begin(), text.end(), end);
}

char* append(char* end, std::uint32_t number) {
    constexpr std::ptrdiff_t mostDigits = 10; // 4294967295
    return std::to_chars(end, end + mostDigits, number).ptr;
}

} // namespace

void writeQuoted(std::ostream& out, std::string_view text) {
    out << '"' << text << '"';
}

JsonLocations::~JsonLocations() {
    flush();
}

void JsonLocations::add(std::span<const LogicLocation> run) {
    for (const LogicLocation& location : run) {
        if (length_ + longestText > block_.size()) {
            flush();
        }
        char* end = block_.data() + length_;
        end = append(end, isFirst_ ? "" : ", ");
        isFirst_ = false;
        *end++ = open_;
        *end++ = ' ';
        end = append(end, location.address);
        end = append(end, ", ");
        end = append(end, location.offset);
        *end++ = close_;
        length_ = static_cast<std::size_t>(end - block_.data());
    }
}

void JsonLocations::flush() {
    out_.write(block_.data(), static_cast<std::streamsize>(length_));
    length_ = 0;
}

} // namespace consolidator
