// Which names and nets somebody looks for, by a glob or a regular expression.
//
//     const NamePattern pattern("s?m", NamePattern::Kind::Glob);
//     pattern.error();                      // empty
//     pattern.matchesName("sum");           // true
//     pattern.matchesNet("/top/k_1/sum");   // true: its last component matches
//
// A glob is a pattern of names as shells have it:
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

/// A pattern for the names and nets of a database.
///
/// A glob must match the whole name. Of a net it may also match what is behind the
/// leading "/", as logic-location files write nets, and one without a "/" the last component.
///
/// Its characters are those of UTF-8, and each byte that belongs to none. "[a-c]" means all that
/// come between in the order of their bytes. Matching takes time in proportion to the text, however
/// long a name a file may hold; only a pattern of thousands of characters, which its user has
/// chosen, can take the text times the pattern.
///
/// A regular expression, in RE2's syntax, must match a part of the name or net. RE2 takes time in
/// proportion to the text, whatever the expression is.
class NamePattern {
public:
    /// What a pattern is written in.
    enum class Kind { Glob, Regex };

    /// Any text may be given; error() says of one that is no pattern why it is none. It can be
    /// neither copied nor moved.
    NamePattern(const std::string& pattern, Kind kind);
    ~NamePattern();
    NamePattern(const NamePattern&) = delete;
    NamePattern& operator=(const NamePattern&) = delete;

    /// Why the pattern cannot be understood, as a printable() text; empty if it can. Then nothing
    /// matches.
    std::string error() const;

    /// Whether a source or hardware name matches, which may hold any byte.
    bool matchesName(std::string_view name) const;

    /// Whether a net matches, which has a leading "/".
    bool matchesNet(std::string_view net) const;

private:
    class Glob;

    bool hasSlash_;
    std::unique_ptr<const Glob> glob_; ///< One of the two is null.
    std::unique_ptr<const re2::RE2> regex_;
};

} // namespace consolidator
