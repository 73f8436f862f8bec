// Finds the kernels that a net of the design belongs to.
#pragma once

#include "model/KernelIndex.h"
#include "readers/HardwareNames.h"
#include "shared/Marks.h"
#include "shared/PathFinder.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// A kernel owns a net if the net's last component, the text behind its last "/", is the hardware
/// name of one of the kernel's arguments or variables and if one of the kernel's instance paths
/// occurs anywhere in the net.
///
/// The last component is looked up first; only if some kernel has it, the paths are searched for.
/// What a net costs does not depend on how many kernels, paths and names there are, only on the
/// distinct paths in it and on how many owners are asked for.
class NetMatcher {
public:
    /// Nets have at most `longestNet` bytes. The kernels must outlive the matcher, stay where they
    /// are, and keep their instance paths, arguments and variables; their registers may change.
    NetMatcher(const std::vector<Kernel>& kernels, std::size_t longestNet);

    /// Whether some kernel has a net's last component as a hardware name; if not, nobody owns the
    /// net.
    bool knowsName(std::string_view lastComponent) const {
        return names_.numberOf(lastComponent) != HardwareNames::none;
    }

    /// The same at a fraction of the cost, but sometimes true of a name that no kernel has.
    bool mayKnowName(std::string_view lastComponent) const { return names_.mayHave(lastComponent); }

    /// The positions of the first `most` kernels, at least one, that own the net, which has a
    /// leading "/": ascending and each once. The result holds until the next call.
    std::span<const std::uint32_t>
    owners(std::string_view net, std::size_t most = std::numeric_limits<std::size_t>::max());

private:
    using Kernels = std::span<const std::uint32_t>;

    Kernels havingBoth(std::uint32_t path, std::uint32_t name);
    Kernels remember(std::pair<std::uint32_t, std::uint32_t> pair, std::vector<std::uint32_t> both);

    KernelIndex paths_;
    HardwareNames names_;
    PathFinder finder_;

    // Intersections of long lists by path and name, which many nets may need again. They are
    // dropped when they take more memory than the lists themselves.
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::uint32_t>> havingBoth_;
    std::size_t remembered_ = 0;     ///< How much is in there, counted in kernels.
    std::vector<std::uint32_t> few_; ///< An intersection with a short list, which is not kept.

    std::vector<std::uint32_t> owners_;
    Marks isOwner_;
};

} // namespace consolidator
