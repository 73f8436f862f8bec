#include "readers/BitLine.h"

#include "shared/Words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <istream>
#include <limits>
#include <locale>
#include <sstream>

namespace consolidator {

namespace {

/// What each character is worth as a digit; 16 for one that is none.
constexpr std::array<std::uint8_t, 256> digitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(16);
    std::uint8_t value = 0;
    for (const char digit : std::string_view("0123456789abcdef")) {
        values[static_cast<unsigned char>(digit)] = value++;
    }
    for (const char digit : std::string_view("ABCDEF")) {
        values[static_cast<unsigned char>(digit)] = static_cast<std::uint8_t>(digit - 'A' + 10);
    }
    return values;
}();

/// Takes words off the front of a line, as long as they are what is asked for.
class Scanner {
public:
    explicit Scanner(std::string_view line)
        : position_(line.data()), end_(line.data() + line.size()) {}

    /// Takes white space and a word behind it; false if there is no white space or no word.
    bool takeWord() {
        const bool isWord = takeSpace();
        while (position_ != end_ && !isSpace(*position_)) {
            ++position_;
        }
        return isWord;
    }

    /// Takes white space and a word that is nothing but a decimal number of this type; one with as
    /// many digits as the largest of the type has is too long here.
    template <typename Number>
    bool takeDecimal(Number& number) {
        return takeSpace() && takeDigits(number, 10, std::numeric_limits<Number>::digits10);
    }

    /// The same for a hexadecimal number, with or without "0x".
    bool takeHexadecimal(std::uint64_t& number) {
        if (!takeSpace()) {
            return false;
        }
        // With a capital X it is left to the stream, as everything else that is unusual.
        if (end_ - position_ > 2 && position_[0] == '0' && position_[1] == 'x') {
            position_ += 2;
        }
        return takeDigits(number, 16, 16);
    }

private:
    /// True when there is white space and something behind it.
    bool takeSpace() {
        const char* const start = position_;
        while (position_ != end_ && isSpace(*position_)) {
            ++position_;
        }
        return position_ != start && position_ != end_;
    }

    /// Takes digits up to the end of a word. It must have no more than `most`, so few that each
    /// number of so many fits the type. The library's way looks at each digit whether the number
    /// still fits, and takes twice the time.
    template <typename Number>
    bool takeDigits(Number& number, unsigned base, std::ptrdiff_t most) {
        const char* const start = position_;
        number = 0;
        for (; position_ != end_; ++position_) {
            const unsigned digit = digitValues[static_cast<unsigned char>(*position_)];
            if (digit >= base) {
                break;
            }
            number = static_cast<Number>(number * base + digit);
        }
        const std::ptrdiff_t digits = position_ - start;
        return digits > 0 && digits <= most && (position_ == end_ || isSpace(*position_));
    }

    const char* position_;
    const char* end_;
};

/// Whether a character up to the blank is in the text, eight at a time: taking 0x21 off each byte
/// gives those that are smaller, and only those of up to 0x7F, their highest bit. (A byte behind a
/// smaller one may get it too, which changes nothing.)
bool hasControlOrSpace(std::string_view text) {
    constexpr std::uint64_t each = 0x0101010101010101;
    std::uint64_t found = 0;
    std::uint64_t bytes = 0;
    const auto look = [&](std::size_t at) {
        std::memcpy(&bytes, text.data() + at, sizeof bytes);
        found |= (bytes - each * 0x21) & ~bytes & (each * 0x80);
    };
    if (text.size() < sizeof bytes) {
        return std::ranges::any_of(text,
                                   [](char c) { return static_cast<unsigned char>(c) <= ' '; });
    }
    for (std::size_t at = 0; at + sizeof bytes < text.size(); at += sizeof bytes) {
        look(at);
    }
    look(text.size() - sizeof bytes);
    return found != 0;
}

/// What a stream makes of the index: a number that cannot be read is 0, one that is too large is
/// the largest.
std::uint32_t readIndex(std::string_view index) {
    std::istringstream digits{std::string(index)};
    digits.imbue(std::locale::classic());
    std::uint32_t number = 0;
    digits >> number;
    return number;
}

} // namespace

void NetWord::setNet(std::string_view net) {
    const std::size_t bracket = net.back() == ']' ? net.rfind('[') : std::string_view::npos;
    hasIndex = bracket != std::string_view::npos;
    name = net.substr(0, bracket);
    index = hasIndex ? net.substr(bracket + 1, net.size() - bracket - 2) : std::string_view();
}

bool NetWord::find(std::string_view line, std::size_t at) {
    fields = line.substr(0, at);
    std::string_view net = line.substr(at + prefix.size());
    while (!net.empty() && isSpace(net.back())) {
        net.remove_suffix(1);
    }
    // With white space in it there are words behind the net, and one of them may be another net.
    if (net.empty() || fields.empty() || !isSpace(fields.back()) || hasControlOrSpace(net)) {
        return false;
    }
    setNet(net);
    return true;
}

std::optional<BitLine> BitLine::read(const std::string& line) {
    std::istringstream fields(line);
    fields.imbue(std::locale::classic());
    std::string word;
    std::uint64_t position = 0;
    std::uint64_t longAddress = 0;
    std::uint32_t unused = 0;
    BitLine bit;
    fields >> word >> std::dec >> position >> std::hex >> longAddress >> std::dec >> bit.offset >>
        word >> unused;
    if (fields.fail()) {
        return std::nullopt;
    }
    bit.address = static_cast<std::uint32_t>(longAddress);
    std::string_view words;
    // At its end a stream has no position any more, and the line no word.
    if (!fields.eof()) {
        words = std::string_view(line).substr(static_cast<std::size_t>(fields.tellg()));
    }
    for (auto next = takeWord(words); !next.empty(); next = takeWord(words)) {
        if (next.starts_with(NetWord::prefix)) {
            bit.setNet(next.substr(NetWord::prefix.size()));
        }
    }
    return bit;
}

void BitLine::setNet(std::string_view text) {
    hasNet = !text.empty();
    net = {};
    bitIndex = 0;
    if (hasNet) {
        NetWord word;
        word.setNet(text);
        net = word.name;
        bitIndex = word.hasIndex ? readIndex(word.index) : 0;
    }
}

bool BitLine::scan(const NetWord& word) {
    constexpr std::string_view firstWord = "Bit";
    std::uint64_t position = 0;
    std::uint64_t longAddress = 0;
    std::uint32_t unused = 0;
    Scanner words(word.fields.substr(firstWord.size()));
    if (!words.takeDecimal(position) || !words.takeHexadecimal(longAddress) ||
        !words.takeDecimal(offset) || !words.takeWord() || !words.takeDecimal(unused)) {
        return false;
    }
    address = static_cast<std::uint32_t>(longAddress);
    bitIndex = 0;
    if (word.hasIndex) {
        const char* const end = word.index.data() + word.index.size();
        const auto [behind, error] = std::from_chars(word.index.data(), end, bitIndex);
        // A stream makes some number of every index: this one is left to it.
        if (error != std::errc() || behind != end) {
            return false;
        }
    }
    net = word.name;
    hasNet = true;
    return true;
}

} // namespace consolidator
