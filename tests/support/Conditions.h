// Breakable conditions to expect, and all their fields as one comparable value: a condition's own
// equality leaves its valid flag out.
#pragma once

#include "model/BreakableCondition.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

/// A complete condition of kind FileLine.
BreakableCondition fileLine(std::string_view text, std::uint32_t line, std::string_view file);

struct ConditionFields {
    std::uint32_t kind = 0;
    std::string condition = {};
    std::uint32_t line = 0;
    std::string file = {};
    bool valid = false;

    bool operator==(const ConditionFields&) const = default;
};

/// How the fields show in a failed test.
void PrintTo(const ConditionFields& fields, std::ostream* out);

ConditionFields fieldsOf(const BreakableCondition& condition);
std::vector<ConditionFields> fieldsOf(const std::vector<BreakableCondition>& conditions);

} // namespace consolidator::test
