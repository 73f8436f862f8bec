// What the translation of a breakable condition makes of it, where that is not what it says.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace consolidator::inspect {

/// A condition that a debugger gets in another form than it was meant, or not at all.
struct ConditionFault {
    bool isDropped = false; ///< It is always true, and goes as a whole.
    std::string reason;     ///< Why the translation goes wrong; empty if it is dropped.
    std::string result;     ///< What a debugger gets.
};

/// Judges a condition in the infix form in which high-level synthesis states it. Nothing is wrong
/// with a name or number alone, and with two of them around an operator, with blanks between the
/// words, and parentheses around the whole or none.
std::optional<ConditionFault> conditionFault(std::string_view condition);

} // namespace consolidator::inspect
