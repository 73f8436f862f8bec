// How much of each kernel a debugger can see: which arguments and variables have registers with
// locations, and which have none; and what is odd about the way in which its nets fall to its
// instances.
#pragma once

#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace consolidator::inspect {

/// A net that has a name almost like the one that is looked for.
struct NearNet {
    std::string net; ///< With its leading "/" and without a bit index.
    std::string file;
    std::uint64_t line = 0;
    bool hasName = false;    ///< The name is the same: it is the path that differs.
    bool isInKernel = false; ///< An instance path of the kernel occurs in it.
};

/// An argument or variable without a register.
struct MissingName {
    const Variable* variable;
    bool isArgument; ///< Else a local variable.
    /// Null until one is found. There can be millions without, see ArgumentList.
    std::shared_ptr<const NearNet> nearest;
};

/// Signs that an instance path is not what its writer meant. Where a count is 0, what follows it
/// means nothing. Registers and instances are positions in the kernel's lists.
struct InstanceFaults {
    std::size_t withoutNet = 0; ///< Instances without a net, while others have some.
    std::uint32_t firstWithoutNet = 0;

    /// Nets in which an instance path occurs, but not as whole components: "top/k_1" in
    /// "/top/k_10/x".
    std::size_t cut = 0;
    std::uint32_t firstCut = 0;
    std::uint32_t cutInstance = 0;

    /// Nets whose instance has another one with the same last component: "top" in "/top/k_1/x" and
    /// "/top/k_2/x".
    std::size_t repeated = 0;
    std::uint32_t firstOfRepeated = 0;
    std::uint32_t repetition = 0; ///< The second one.
    std::uint32_t repeatedInstance = 0;
};

/// The coverage of one kernel.
struct KernelCoverage {
    /// How many of how many have a register.
    struct Count {
        std::size_t located = 0;
        std::size_t total = 0;
    };

    const Kernel* kernel;
    Count arguments;
    Count variables;
    std::vector<MissingName> missing; ///< Arguments first, each in the kernel's order.
    InstanceFaults instances;
    /// A net that the first instance without one may have been meant for: one under no instance
    /// path, with the last component of one of the kernel's nets.
    std::optional<NearNet> netOfNoInstance;
};

/// The coverage of each kernel, in their order. They must outlive the result and stay as they are.
std::vector<KernelCoverage> coverageOf(const std::vector<Kernel>& kernels);

} // namespace consolidator::inspect
