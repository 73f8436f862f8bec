#include "readers/BitLine.h"

#include "model/Words.h"

#include <charconv>
#include <istream>
#include <locale>
#include <sstream>

namespace consolidator {

namespace {

constexpr std::string_view netPrefix = "Net=";

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

    /// Takes white space and a word that is nothing but a number of this type and base.
    template <typename Number>
    bool takeNumber(Number& number, int base) {
        if (!takeSpace()) {
            return false;
        }
        if (base == 16 && end_ - position_ > 2 && position_[0] == '0' && position_[1] == 'x') {
            position_ += 2;
        }
        const auto [behind, error] = std::from_chars(position_, end_, number, base);
        position_ = behind;
        return error == std::errc() && (behind == end_ || isSpace(*behind));
    }

    std::string_view rest() const { return {position_, end_}; }

private:
    /// True when there is white space and something behind it.
    bool takeSpace() {
        const char* const start = position_;
        while (position_ != end_ && isSpace(*position_)) {
            ++position_;
        }
        return position_ != start && position_ != end_;
    }

    const char* position_;
    const char* end_;
};

std::string_view lastWord(std::string_view text) {
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    std::size_t start = text.size();
    while (start > 0 && !isSpace(text[start - 1])) {
        --start;
    }
    return text.substr(start);
}

} // namespace

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
    std::string net;
    while (fields >> word) {
        if (word.starts_with(netPrefix)) {
            net = word.substr(netPrefix.size());
        }
    }
    bit.setNet(net);
    bit.cutBitIndex();
    return bit;
}

void BitLine::setNet(std::string_view word) {
    net.clear();
    if (!word.empty()) {
        net += '/';
        net += word;
    }
}

void BitLine::cutBitIndex() {
    const std::size_t bracket = net.rfind('[');
    if (net.ends_with(']') && bracket != std::string::npos) {
        // A number that cannot be read is 0, one that is too large is the largest.
        std::istringstream index(net.substr(bracket + 1));
        index.imbue(std::locale::classic());
        index >> number;
        net.resize(bracket);
    }
}

bool BitLine::scan(std::string_view line) {
    constexpr std::string_view firstWord = "Bit";
    std::uint64_t position = 0;
    std::uint64_t longAddress = 0;
    std::uint32_t unused = 0;
    Scanner words(line.substr(firstWord.size()));
    if (!words.takeNumber(position, 10) || !words.takeNumber(longAddress, 16) ||
        !words.takeNumber(offset, 10) || !words.takeWord() || !words.takeNumber(unused, 10)) {
        return false;
    }
    address = static_cast<std::uint32_t>(longAddress);
    return scanNet(lastWord(words.rest()));
}

bool BitLine::scanNet(std::string_view word) {
    if (!word.starts_with(netPrefix)) {
        return false;
    }
    word.remove_prefix(netPrefix.size());
    number = 0;
    const std::size_t bracket = word.ends_with(']') ? word.rfind('[') : std::string_view::npos;
    if (bracket != std::string_view::npos) {
        const std::string_view digits = word.substr(bracket + 1, word.size() - bracket - 2);
        const char* const end = digits.data() + digits.size();
        const auto [behind, error] = std::from_chars(digits.data(), end, number);
        if (error != std::errc() || behind != end) {
            return false;
        }
        setNet(word.substr(0, bracket));
        if (bracket == 0) {
            net = '/'; // the index was all of the name, but there was one
        }
        return true;
    }
    setNet(word);
    return true;
}

} // namespace consolidator
