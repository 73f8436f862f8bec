// Patterns of names as shells have them.
//
//     *       any characters, none included, "/" too
//     ?       one character
//     [a-c_]  one of these characters; [!a-c_] or [^a-c_] one that is none of these
//     \*      the character itself
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// A pattern that whole texts match or not.
///
/// Characters are those of UTF-8, and each byte that belongs to none. Matching takes at most time
/// in proportion to the length of the text times that of the pattern, whatever both are.
class Glob {
public:
    /// Takes the pattern apart; nothing of it is referred to later.
    explicit Glob(std::string_view pattern);

    /// Why the pattern cannot be understood; empty if it can. Then no text matches.
    const std::string& error() const { return error_; }

    /// Whether the whole text, which may hold any byte, is of the pattern.
    bool matches(std::string_view text) const;

private:
    using Range = std::pair<std::string, std::string>; ///< First and last character.

    /// What one character, or with `isRun` any number of them, must be.
    struct Piece {
        bool isRun = false;
        bool isNegated = false;    ///< The character must be in no range.
        std::vector<Range> ranges; ///< The character must be in one.
    };

    static bool accepts(const Piece& piece, std::string_view character);

    std::string takeCharacter(std::string_view& pattern);
    Piece takePiece(std::string_view& pattern);
    Piece takeSet(std::string_view& pattern);
    void setError(std::string_view error);

    std::vector<Piece> pieces_;
    std::string error_;
};

} // namespace consolidator
