#include "model/JsonText.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

namespace consolidator {

namespace {

// Digits are stored with the first of them in the lowest byte.
static_assert(std::endian::native == std::endian::little);

/// A number is written with eight digits at once, of which only those that count stay.
constexpr std::size_t digitsAtOnce = 8;
constexpr std::uint32_t firstBeyond = 100'000'000;

/// The most characters that are written for a number: "42" and the eight others of 4294967295.
constexpr std::size_t roomForNumber = 10;

/// The digits of all numbers of four digits, one in a byte, the first in the lowest. Making digits
/// one by one took a fifth of a run that changes nothing on a large database.
constexpr std::array<std::uint32_t, 10'000> makeFourDigits() {
    std::array<std::uint32_t, 10'000> table{};
    for (std::uint32_t number = 0; number < table.size(); ++number) {
        table[number] =
            number / 1000 | number / 100 % 10 << 8 | number / 10 % 10 << 16 | number % 10 << 24;
    }
    return table;
}
constexpr std::array fourDigits = makeFourDigits();

/// The digits of a number below `firstBeyond` in the same order.
std::uint64_t digitsOf(std::uint32_t number) {
    return fourDigits[number / 10'000] | std::uint64_t{fourDigits[number % 10'000]} << 32;
}

char* store(char* end, std::uint64_t digits) {
    // 0x30 is '0': all eight digits become characters by one addition, which carries nowhere.
    const std::uint64_t text = digits + 0x3030'3030'3030'3030;
    std::memcpy(end, &text, sizeof text);
    return end;
}

/// Writes a number at `end` and returns its end. What stands behind, within the room for a number,
/// may be overwritten.
inline char* append(char* end, std::uint32_t number) {
    if (number >= firstBeyond) {
        end = std::to_chars(end, end + roomForNumber, number / firstBeyond).ptr;
        return store(end, digitsOf(number % firstBeyond)) + digitsAtOnce;
    }
    // A number has one digit at least: the last is marked, so that the zeros end before it.
    const std::uint64_t digits = digitsOf(number);
    const auto zeros =
        static_cast<std::size_t>(std::countr_zero(digits | std::uint64_t{1} << 56) / 8);
    return store(end, digits >> (8 * zeros)) + (digitsAtOnce - zeros);
}

/// Known lengths make these a single move.
template <std::size_t length>
char* append(char* end, const std::array<char, length>& text) {
    std::memcpy(end, text.data(), length);
    return end + length;
}

} // namespace

void writeQuoted(std::ostream& out, std::string_view text) {
    JsonBlock(out).addQuoted(text);
}

JsonBlock& JsonBlock::add(std::string_view text) {
    if (text.size() >= block_.size()) {
        flush();
        // Too long for the block, it goes out by itself, behind what waits there.
        out_.write(text.data(), static_cast<std::streamsize>(text.size()));
    } else {
        endAt(std::ranges::copy(text, room(text.size())).out);
    }
    return *this;
}

JsonBlock& JsonBlock::add(std::uint32_t number) {
    endAt(append(room(roomForNumber), number));
    return *this;
}

JsonBlock& JsonBlock::addQuoted(std::string_view text) {
    return add("\"").add(text).add("\"");
}

void JsonBlock::flush() {
    out_.write(block_.data(), static_cast<std::streamsize>(length_));
    length_ = 0;
}

void JsonLocations::add(std::span<const LogicLocation> run) {
    constexpr std::array comma{',', ' '};
    constexpr std::size_t roomForOne = sizeof between_ + sizeof comma + 2 * roomForNumber;
    for (const LogicLocation& location : run) {
        char* end = block_.room(roomForOne);
        end = isFirst_ ? append(end, before_) : append(end, between_);
        isFirst_ = false;
        end = append(end, location.address);
        end = append(end, comma);
        end = append(end, location.offset);
        block_.endAt(end);
    }
}

JsonLocations::~JsonLocations() {
    if (!isFirst_) {
        // What stands between two locations begins with the bracket that closes the first.
        block_.add(std::string_view(&between_.front(), 1));
    }
}

} // namespace consolidator
