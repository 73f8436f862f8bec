#include "fuzz/KernelChecks.h"

#include "fuzz/Fuzzing.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

namespace consolidator::fuzz {

namespace {

template <typename Elements, typename KeyOf>
void requireUnique(const Elements& elements, KeyOf keyOf, const char* what) {
    std::set<decltype(keyOf(elements.front()))> keys;
    for (const auto& element : elements) {
        require(keys.insert(keyOf(element)).second, what);
    }
}

} // namespace

bool same(const Kernel& left, const Kernel& right) {
    return left.name() == right.name() && left.type() == right.type() &&
           left.instancePaths() == right.instancePaths() &&
           std::ranges::equal(left.arguments(), right.arguments()) &&
           left.variables() == right.variables() &&
           left.hardwareVariables() == right.hardwareVariables() &&
           left.breakableConditions() == right.breakableConditions() &&
           left.brams() == right.brams();
}

bool same(const std::vector<Kernel>& left, const std::vector<Kernel>& right) {
    return std::ranges::equal(
        left, right, [](const Kernel& one, const Kernel& other) { return same(one, other); });
}

void requireUniqueNames(const Kernel& kernel) {
    const auto sourceNameOf = [](const Variable& v) { return std::string_view(v.sourceName); };
    requireUnique(
        kernel.instancePaths(), [](const std::string& path) { return std::string_view(path); },
        "instance paths are unique");
    requireUnique(kernel.arguments(), sourceNameOf, "arguments are unique");
    requireUnique(kernel.variables(), sourceNameOf, "variables are unique");
    requireUnique(
        kernel.hardwareVariables(),
        [](const HardwareVariable& variable) { return std::string_view(variable.name); },
        "registers are unique");
}

void requireUniqueLists(const Kernel& kernel) {
    requireUniqueNames(kernel);
    requireUnique(
        kernel.breakableConditions(),
        [](const BreakableCondition& c) { return std::tie(c.kind, c.condition, c.line, c.file); },
        "conditions are unique");
}

} // namespace consolidator::fuzz
