// Patterns of names as shells have them.
//
//     *       any characters, none included, "/" too
//     ?       one character
//     [a-c_]  one of these characters; [!a-c_] or [^a-c_] one that is none of these
//     \*      the character itself
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace re2 {
class RE2;
} // namespace re2

namespace consolidator {

/// A pattern that whole texts match or not: a regular expression of RE2 is made of it.
///
/// Characters are those of UTF-8, and each byte that belongs to none. "[a-c]" means all that come
/// between in the order of their bytes. Matching takes time in proportion to the text, however long
/// a name a file may hold; only a pattern of thousands of characters, which its user has chosen,
/// can take the text times the pattern.
class Glob {
public:
    explicit Glob(std::string_view pattern);
    ~Glob();
    Glob(Glob&&) noexcept;
    Glob& operator=(Glob&&) noexcept;

    /// Why the pattern cannot be understood; empty if it can. Then no text matches.
    const std::string& error() const { return error_; }

    bool matches(std::string_view text) const;

private:
    std::string error_;
    std::unique_ptr<const re2::RE2> expression_; ///< Null if there is an error.
};

} // namespace consolidator
