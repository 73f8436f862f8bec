// What is odd about the way in which the nets of a kernel fall to its instances.
#pragma once

#include "query/KernelView.h"

#include <cstddef>
#include <cstdint>

namespace consolidator::inspect {

/// Signs that an instance path is not what its writer meant. Where a count is 0, what follows it
/// means nothing. Registers and instances are positions in the kernel's lists.
struct InstanceFaults {
    std::size_t bare = 0; ///< Instances without a net, while others have some.
    std::uint32_t firstBare = 0;

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

/// Takes a time in the texts of the kernel, up to a logarithm.
InstanceFaults instanceFaultsOf(const KernelView& nets);

} // namespace consolidator::inspect
