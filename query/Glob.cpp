#include "query/Glob.h"

#include "shared/Utf8.h"

#include <algorithm>
#include <optional>

namespace consolidator {

namespace {

/// The length of the character that the text, which is not empty, begins with.
std::size_t characterLength(std::string_view text) {
    return std::max<std::size_t>(utf8Length(text), 1);
}

} // namespace

Glob::Glob(std::string_view pattern) {
    while (!pattern.empty() && error_.empty()) {
        pieces_.push_back(takePiece(pattern));
    }
}

/// The first error counts.
void Glob::setError(std::string_view error) {
    if (error_.empty()) {
        error_ = error;
    }
}

/// One character off the front of the pattern, which is not empty; behind a backslash the next one.
std::string Glob::takeCharacter(std::string_view& pattern) {
    if (pattern.starts_with('\\')) {
        pattern.remove_prefix(1);
        if (pattern.empty()) {
            setError("nothing follows its last \"\\\"");
            return {};
        }
    }
    std::string character(pattern.substr(0, characterLength(pattern)));
    pattern.remove_prefix(character.size());
    return character;
}

Glob::Piece Glob::takePiece(std::string_view& pattern) {
    switch (pattern.front()) {
    case '*':
        pattern.remove_prefix(1);
        return {.isRun = true, .isNegated = false, .ranges = {}};
    case '?':
        pattern.remove_prefix(1);
        return {.isRun = false, .isNegated = true, .ranges = {}};
    case '[':
        pattern.remove_prefix(1);
        return takeSet(pattern);
    default:
        const std::string character = takeCharacter(pattern);
        return {.isRun = false, .isNegated = false, .ranges = {{character, character}}};
    }
}

/// What stands between brackets, of which the first is already gone.
Glob::Piece Glob::takeSet(std::string_view& pattern) {
    Piece piece;
    if (pattern.starts_with('!') || pattern.starts_with('^')) {
        piece.isNegated = true;
        pattern.remove_prefix(1);
    }
    // A bracket that closes at once stands for itself.
    while (!pattern.empty() && (pattern.front() != ']' || piece.ranges.empty())) {
        if (pattern.starts_with("[:")) {
            setError("classes of characters as \"[:digit:]\" are not known");
        }
        const std::string from = takeCharacter(pattern);
        std::string to = from;
        if (pattern.size() > 1 && pattern.front() == '-' && pattern[1] != ']') {
            pattern.remove_prefix(1);
            to = takeCharacter(pattern);
        }
        piece.ranges.emplace_back(from, to);
    }
    if (pattern.empty()) {
        setError("its \"[\" has no \"]\" (write \"\\[\" for the character itself)");
    } else {
        pattern.remove_prefix(1);
    }
    return piece;
}

/// Characters of UTF-8 have the order of their bytes.
bool Glob::accepts(const Piece& piece, std::string_view character) {
    const bool isIn = std::ranges::any_of(piece.ranges, [character](const Range& range) {
        return range.first <= character && character <= range.second;
    });
    return isIn != piece.isNegated;
}

bool Glob::matches(std::string_view text) const {
    if (!error_.empty()) {
        return false;
    }
    // Only the latest "*" is ever made to take more: what the earlier ones took was enough, and a
    // later one can take whatever they leave.
    struct Retry {
        std::size_t piece;
        std::string_view text;
    };
    std::optional<Retry> retry;
    std::size_t next = 0;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (next < pieces_.size() && pieces_[next].isRun) {
            retry = Retry{++next, text};
        } else if (next < pieces_.size() && accepts(pieces_[next], text.substr(0, length))) {
            ++next;
            text.remove_prefix(length);
        } else if (retry) {
            retry->text.remove_prefix(characterLength(retry->text));
            next = retry->piece;
            text = retry->text;
        } else {
            return false;
        }
    }
    return std::all_of(pieces_.begin() + static_cast<std::ptrdiff_t>(next), pieces_.end(),
                       [](const Piece& piece) { return piece.isRun; });
}

} // namespace consolidator
