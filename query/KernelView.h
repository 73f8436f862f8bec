// One kernel of a database, for whoever wants to know which register holds what, and in which
// instance.
//
//     const KernelView view(kernel);
//     for (const std::uint32_t position : view.registersOf("sum_reg")) {
//         view.instanceOf(position);           // 0, 1, ... or nothing
//         view.variablesIn(position);          // variable "sum"
//         view.widthOf(position);              // 8, where the type "int" says 32
//     }
#pragma once

#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// The last component of a net: the text behind its last "/", the whole net without one. Registers
/// hold the arguments and variables that have it as hardware name.
inline std::string_view lastComponent(std::string_view net) {
    return net.substr(net.rfind('/') + 1); // npos + 1 is 0
}

/// An argument or a local variable of a kernel, as the source has it.
struct SourceVariable {
    const Variable* variable = nullptr; ///< Of the kernel; never null but in a default one.
    bool isArgument = false;

    /// "argument" or "variable".
    std::string_view kind() const { return isArgument ? "argument" : "variable"; }
};

/// Calls visit(SourceVariable) for each argument of the kernel and then for each local variable, in
/// the kernel's order.
template <typename Visit>
void forEachVariable(const Kernel& kernel, Visit visit) {
    for (const Variable& argument : kernel.arguments()) {
        visit(SourceVariable{&argument, true});
    }
    for (const Variable& variable : kernel.variables()) {
        visit(SourceVariable{&variable, false});
    }
}

/// Answers for one kernel, which must outlive the view and stay as it is.
///
/// What an answer needs is made when it is first asked for, and kept: a view costs nothing to make.
/// Registers are told by their positions in kernel().hardwareVariables(), instances by theirs in
/// kernel().instancePaths(); a position that is asked about must be one of them. What is returned
/// is of use as long as the view and its kernel. A view may be used by one thread at a time, and of
/// one that was moved nothing may be asked.
class KernelView {
public:
    /// Of a kernel as it lies in a database; takes no time in its size.
    explicit KernelView(const Kernel& kernel);
    explicit KernelView(Kernel&&) = delete; // it would be gone
    ~KernelView();
    KernelView(KernelView&&) noexcept;
    KernelView& operator=(KernelView&&) noexcept;
    KernelView(const KernelView&) = delete;
    KernelView& operator=(const KernelView&) = delete;

    /// The kernel that it was made of, in its own place.
    const Kernel& kernel() const { return *kernel_; }

    /// The registers whose net ends in this name, ascending; none for a name that no net ends in.
    std::span<const std::uint32_t> registersOf(std::string_view hardwareName) const;

    /// Those of them that lie in one instance, ascending; nothing as `instance` stands for those in
    /// none. None for an instance that there is not.
    std::vector<std::uint32_t> registersOf(std::string_view hardwareName,
                                           std::optional<std::uint32_t> instance) const;

    /// The arguments, then the variables, that have this hardware name.
    std::span<const SourceVariable> variablesOf(std::string_view hardwareName) const;

    /// What the register holds, in the same order; nothing where a database was made by hand.
    std::span<const SourceVariable> variablesIn(std::size_t position) const {
        return variablesOf(lastComponent(kernel_->hardwareVariables()[position].name));
    }

    /// The instance that the register lies in; nothing if no path occurs in its net, which no run
    /// of the consolidator leaves behind.
    std::optional<std::uint32_t> instanceOf(std::size_t position) const {
        return instanceOf(std::string_view(kernel_->hardwareVariables()[position].name));
    }

    /// The instance that a net lies in: the one whose path occurs in it; of several, as "top/k_1"
    /// and "top/k_10" in "/top/k_10/x", that of the longest path, and of equal paths the first.
    std::optional<std::uint32_t> instanceOf(std::string_view net) const;

    /// How many bits the register has, located or not, as far as inputs have named them: up to the
    /// highest one that has a place. The width of a variable's type, which is Variable::bitWidth(),
    /// is another matter: high-level synthesis keeps only the bits it needs.
    std::uint32_t widthOf(std::size_t position) const {
        return kernel_->hardwareVariables()[position].locations.size();
    }

private:
    struct Indexes;

    const Kernel* kernel_;
    std::unique_ptr<Indexes> indexes_;
};

} // namespace consolidator
