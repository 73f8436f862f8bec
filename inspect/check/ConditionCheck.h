// Which breakable conditions a debugger gets in another form than they were meant, or not at all,
// and those that are there already.
#pragma once

#include "inspect/check/Findings.h"
#include "model/Kernel.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// Reports the conditions of source lines that the translation drops or mangles, of a kernel as the
/// file at `path` has it.
void reportConditions(const Kernel& kernel, const std::string& path, Findings& findings);

/// Reports the places for which the file at `path` has other conditions than `known`, the kernel as
/// it was before: a run keeps both.
void reportRepeatedConditions(const Kernel& kernel, const Kernel& known, const std::string& path,
                              Findings& findings);

/// Reports the conditions of the database at `path` that the run which made it has translated, and
/// that the next one changes by translating them again.
void reportTranslatedAgain(const std::vector<Kernel>& kernels, const std::string& path,
                           Findings& findings);

} // namespace consolidator::inspect
