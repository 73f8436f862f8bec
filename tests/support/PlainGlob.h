// Globs, matched in the plainest way: what the product's regular expressions must agree with.
#pragma once

#include <string_view>

namespace consolidator::test {

/// Whether the whole text matches the glob (query/NamePattern.h), which must be one that can be
/// understood.
///
/// A table with a row for each piece of the pattern, filled character by character; it shares no
/// code with the product, and knows UTF-8 by the definition of its numbers.
bool plainGlobMatches(std::string_view glob, std::string_view text);

} // namespace consolidator::test
