// How alike two names are: for "did you mean".
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace consolidator::inspect {

/// The names that are compared have at most so many bytes; longer ones are like no other.
inline constexpr std::size_t longestComparedName = 128;

/// How far apart two different names are, from 1, where only upper and lower case differ, on; 2 if
/// one begins with the other; else one more than the characters that must be added, taken away or
/// replaced. Nothing if a user would not take one for the other: more than a quarter of the
/// characters, or more than three, differ.
std::optional<std::size_t> nameDistance(std::string_view first, std::string_view second);

} // namespace consolidator::inspect
