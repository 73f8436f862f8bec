// Which instance of a kernel a register lies in.
#pragma once

#include "shared/PathFinder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Tells the instance from the net. It belongs to the instance whose path occurs in it; of several,
/// as "top/k_1" and "top/k_10" in "/top/k_10/x", to the longest.
class InstanceFinder {
public:
    /// The paths must outlive the finder and stay as they are.
    explicit InstanceFinder(const std::vector<std::string>& paths)
        : InstanceFinder(paths, inOrder(paths)) {}

    /// The position of the instance's path. Nothing if no path occurs in the net, which no run of
    /// the consolidator leaves behind.
    std::optional<std::uint32_t> instanceOf(std::string_view net);

private:
    InstanceFinder(const std::vector<std::string>& paths, std::vector<std::uint32_t> order);

    static std::vector<std::uint32_t> inOrder(const std::vector<std::string>& paths);

    const std::vector<std::string>* paths_;
    std::vector<std::uint32_t> order_; ///< Positions of the paths, ascending by path.
    PathFinder finder_;
};

} // namespace consolidator
