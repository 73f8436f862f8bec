// The translation of a breakable condition from infix into prefix form.
//
// High-level synthesis states a condition in infix form, over the names of signals:
//
//     (fsm_state2 == 1'b1)
//
// A debugger evaluates prefix form, with every name under the kernel instance's path "$i":
//
//     == 1'b1 $i/fsm_state2
//
// The road goes over three steps, each with its own odd cases that debuggers have come to rely on:
// the outer parentheses go by position, names are qualified word by word, and the words are put
// into prefix form with the right-hand operand first. Words are separated by white space of any
// kind; nothing else separates them, so "(x" is one word.
#pragma once

#include <string>
#include <string_view>

namespace consolidator {

/// True for the text "(1'b1 == 1'b1)" and for nothing else, not even with a blank more.
bool isAlwaysTrue(std::string_view condition);

/// All three steps below, one after the other.
std::string translatedCondition(std::string_view condition);

/// Drops a leading "(". Then, if a ")" stands anywhere in the rest, drops the last character,
/// whatever it is: "a == (b)" becomes "a == (b", and "(a) == b" becomes "a) == ".
std::string_view withoutOuterParentheses(std::string_view condition);

/// Puts "$i/" before each word that begins with an ASCII letter and separates the words by one
/// blank. White space at the end shrinks to one blank; white space at the front goes.
std::string withQualifiedNames(std::string_view condition);

/// Puts the words into prefix form. A word that begins with "$" or a digit is an operand, every
/// other one an operator. A comparison is reduced, to operator, right-hand and left-hand operand,
/// when the next operator arrives, and that operator is then dropped; the last reduction is the
/// result: "$i/a == 1 && $i/b == 2" becomes "== 2 $i/b".
///
/// A text that cannot be reduced so (an operator without two operands, no operand at all) is
/// returned as it is.
std::string inPrefixForm(std::string_view condition);

} // namespace consolidator
