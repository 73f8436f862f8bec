// How much of each kernel a debugger can see: which arguments and variables have registers with
// locations, and which have none.
#pragma once

#include "inspect/check/InstanceFaults.h"
#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
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
    std::optional<NearNet> nearest;
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
    std::optional<NearNet> nearestToBare;
};

/// The coverage of each kernel, in their order. They must outlive the result and stay as they are.
std::vector<KernelCoverage> coverageOf(const std::vector<Kernel>& kernels);

} // namespace consolidator::inspect
