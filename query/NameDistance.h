// How alike two names are: for "did you mean", and for mistakes that check finds.
//
// There are two rules, as being wrong costs differently. typoDistance() is for what a person has
// typed: a guess in vain costs half a line of a message that comes anyway, so even "k" may be "x".
// nameDistance() is for names of files, each of which may be meant as it is: a guess in vain is a
// warning of a sound project. So short names must be equal but for case, and a name may go on, as
// tools append "_reg" and the like.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace consolidator {

/// The number of bytes to insert, remove or replace to make one text of the other (Levenshtein's
/// distance), where small and capital ASCII letters count as equal; `limit` + 1 if it is more than
/// `limit`. Takes time in proportion to the shorter text and the limit.
std::size_t editDistance(std::string_view left, std::string_view right, std::size_t limit);

/// What a typed name needs to become the other one: their editDistance(). Nothing
/// if it is more than a quarter of the typed bytes and one, or more than four.
std::optional<std::size_t> typoDistance(std::string_view typed, std::string_view name);

/// The names that nameDistance() compares have at most so many bytes; longer ones are like no
/// other.
inline constexpr std::size_t longestComparedName = 128;

/// How far apart two different names are, from 1, where only upper and lower case differ, on; 2 if
/// one begins with the other; else one more than their editDistance(). Nothing if a user would not
/// take one for the other: more than a quarter of the characters, or more than three, differ.
std::optional<std::size_t> nameDistance(std::string_view first, std::string_view second);

} // namespace consolidator
