#include "tests/support/PlainGlob.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

/// The bytes of the character in front: of one of UTF-8 with the fewest bytes that its number
/// needs, or else one byte.
std::size_t lengthOfFirst(std::string_view text) {
    const auto first = static_cast<std::uint8_t>(text.front());
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
    if (length == 1 || first >= 0xF8 || text.size() < length) {
        return 1;
    }
    std::uint32_t number = first % (1U << (7 - length));
    for (std::size_t i = 1; i < length; ++i) {
        const auto byte = static_cast<std::uint8_t>(text[i]);
        if (byte / 64 != 2) {
            return 1;
        }
        number = number * 64 + byte % 64;
    }
    const std::uint32_t least = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
    const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
    return number < least || number > 0x10FFFF || isSurrogate ? 1 : length;
}

std::string takeFirst(std::string_view& text) {
    const std::string first(text.substr(0, lengthOfFirst(text)));
    text.remove_prefix(first.size());
    return first;
}

/// One character of a glob, or what a backslash is in front of.
std::string takeLiteral(std::string_view& glob) {
    if (glob.front() == '\\') {
        glob.remove_prefix(1);
    }
    return takeFirst(glob);
}

struct Piece {
    bool isStar = false;
    bool isNegated = false;
    std::vector<std::pair<std::string, std::string>> ranges; ///< First and last character.

    bool takes(const std::string& character) const {
        bool isIn = false;
        for (const auto& [first, last] : ranges) {
            isIn = isIn || (first <= character && character <= last);
        }
        return isIn != isNegated;
    }
};

Piece takeSet(std::string_view& glob) {
    Piece piece;
    if (glob.front() == '!' || glob.front() == '^') {
        piece.isNegated = true;
        glob.remove_prefix(1);
    }
    do {
        const std::string first = takeLiteral(glob);
        std::string last = first;
        if (glob.front() == '-' && glob[1] != ']') {
            glob.remove_prefix(1);
            last = takeLiteral(glob);
        }
        piece.ranges.emplace_back(first, last);
    } while (glob.front() != ']');
    glob.remove_prefix(1);
    return piece;
}

std::vector<Piece> piecesOf(std::string_view glob) {
    std::vector<Piece> pieces;
    while (!glob.empty()) {
        Piece piece;
        if (glob.front() == '*' || glob.front() == '?') {
            piece.isStar = glob.front() == '*';
            piece.isNegated = true;
            glob.remove_prefix(1);
        } else if (glob.front() == '[') {
            glob.remove_prefix(1);
            piece = takeSet(glob);
        } else {
            const std::string literal = takeLiteral(glob);
            piece.ranges.emplace_back(literal, literal);
        }
        pieces.push_back(piece);
    }
    return pieces;
}

} // namespace

bool plainGlobMatches(std::string_view glob, std::string_view text) {
    const std::vector<Piece> pieces = piecesOf(glob);
    // Which beginnings of the pattern match the text so far.
    std::vector<bool> matching(pieces.size() + 1);
    matching[0] = true;
    const auto passStars = [&] {
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (pieces[i].isStar && matching[i]) {
                matching[i + 1] = true;
            }
        }
    };
    passStars();
    while (!text.empty()) {
        const std::string character = takeFirst(text);
        for (std::size_t i = pieces.size(); i > 0; --i) {
            const Piece& piece = pieces[i - 1];
            const bool stays = piece.isStar && matching[i];
            matching[i] = stays || (matching[i - 1] && piece.takes(character));
        }
        matching[0] = false;
        passStars();
    }
    return matching.back();
}

} // namespace consolidator::test
