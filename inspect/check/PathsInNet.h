// Whether a net lies in an instance of a kernel, asked for many kernels.
#pragma once

#include "model/Kernel.h"
#include "shared/PathFinder.h"
#include "shared/PathOwners.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

/// The instance paths of some kernels. A net is searched once for all of them, and only when the
/// first question comes.
class PathsInNet {
public:
    /// Nets have at most `longestNet` bytes. The kernels must outlive this object and stay where
    /// and as they are.
    PathsInNet(const std::vector<const Kernel*>& kernels, std::size_t longestNet)
        : PathsInNet(kernels, pathsOf(kernels, longestNet)) {}

    /// The net that is asked about, with its leading "/".
    void setNet(std::string_view net);

    /// Whether a path of the kernel, which the constructor got, occurs in the net.
    bool isIn(const Kernel& kernel) { return has(kernel, Found::AsItIs); }

    /// The same, also if each "." and "\" of the net counts as "/".
    bool isNearlyIn(const Kernel& kernel) { return has(kernel, Found::WithSlashes); }

private:
    using Numbers = std::vector<std::uint32_t>;

    /// In which form of the net a path was found, the one that says most last.
    enum class Found : std::uint8_t { Nowhere, WithSlashes, AsItIs };

    PathsInNet(const std::vector<const Kernel*>& kernels, const PathOwners& paths);

    static PathOwners pathsOf(const std::vector<const Kernel*>& kernels, std::size_t longestNet);

    bool has(const Kernel& kernel, Found form);
    void search(std::string_view net, Found form);

    PathFinder finder_;
    std::unordered_map<const Kernel*, Numbers> numbers_; ///< Of each kernel's paths, ascending.
    std::string net_;
    Found searched_ = Found::Nowhere; ///< The forms from the last one down to this are searched.
    std::vector<Found> found_;        ///< Per path.
    std::vector<std::uint32_t> all_;  ///< That were found.
};

} // namespace consolidator::inspect
