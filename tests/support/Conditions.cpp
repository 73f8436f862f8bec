#include "tests/support/Conditions.h"

#include <gtest/gtest.h>

#include <ostream>

namespace consolidator::test {

BreakableCondition fileLine(std::string_view text, std::uint32_t line, std::string_view file) {
    BreakableCondition result(BreakableCondition::FileLine, text);
    result.line = line;
    result.file = file;
    return result;
}

void PrintTo(const ConditionFields& fields, std::ostream* out) {
    *out << "kind " << fields.kind << ' ' << testing::PrintToString(fields.condition) << " line "
         << fields.line << " of " << testing::PrintToString(fields.file)
         << (fields.valid ? "" : ", not valid");
}

ConditionFields fieldsOf(const BreakableCondition& condition) {
    return {condition.kind, condition.condition, condition.line, condition.file, condition.valid};
}

std::vector<ConditionFields> fieldsOf(const std::vector<BreakableCondition>& conditions) {
    std::vector<ConditionFields> result;
    result.reserve(conditions.size());
    for (const BreakableCondition& condition : conditions) {
        result.push_back(fieldsOf(condition));
    }
    return result;
}

} // namespace consolidator::test
