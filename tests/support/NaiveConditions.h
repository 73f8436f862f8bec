// The translation of breakable conditions in its plainest form, step by step, for the program to be
// compared with.
#pragma once

#include <optional>
#include <string>

namespace consolidator::test {

/// Without one "(" in front; and without the last character, if there is a ")" anywhere.
std::string naiveWithoutParentheses(std::string text);

/// The words of a text, each with "$i/" in front if it begins with a letter, and one blank between
/// two words and behind the last one if white space follows it.
std::string naiveWithQualifiedNames(const std::string& text);

/// Operators in front of their operands; the text itself where that cannot be done.
std::string naivePrefixForm(const std::string& text);

/// One condition as it stands after one translation, all steps one after the other; nothing if it
/// is dropped.
std::optional<std::string> naiveTranslation(const std::string& condition);

} // namespace consolidator::test
