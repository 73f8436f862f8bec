// Which arguments and variables of a kernel a register holds.
#pragma once

#include "model/Kernel.h"
#include "shared/TextHash.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator {

/// An argument or a variable of a kernel.
struct HeldVariable {
    const Variable* variable = nullptr;
    bool isArgument = false;

    std::string_view kind() const { return isArgument ? "argument" : "variable"; }

    /// Its kind and source name, for lines that may be many: "argument size".
    std::string described() const;
};

/// Calls visit(held) for each argument of the kernel and then for each variable.
template <typename Visit>
void forEachVariable(const Kernel& kernel, Visit visit) {
    for (const Variable& argument : kernel.arguments()) {
        visit(HeldVariable{&argument, true});
    }
    for (const Variable& variable : kernel.variables()) {
        visit(HeldVariable{&variable, false});
    }
}

/// An index over the arguments and variables of one kernel, which must outlive it and stay as it
/// is.
class HeldVariables {
public:
    explicit HeldVariables(const Kernel& kernel);

    /// Those of this hardware name, which is the last component of their registers: the arguments,
    /// then the variables.
    std::span<const HeldVariable> of(std::string_view hardwareName) const;

private:
    std::unordered_map<std::string_view, std::vector<HeldVariable>, TextHash> byName_;
};

/// In words for one line: "argument size, variable n". Of very many, or very long ones, only the
/// first.
std::string described(std::span<const HeldVariable> variables);

} // namespace consolidator
