// Which of many instance paths a net lies under.
#pragma once

#include "shared/PathFinder.h"
#include "shared/PathOwners.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Tells the instance from the net. It belongs to the instance whose path occurs in it; of several,
/// as "top/k_1" and "top/k_10" in "/top/k_10/x", to the longest, and of equally long ones to the
/// first in the list. (A run of the consolidator asks something else: every kernel with a path in a
/// net owns it, whatever the others' paths are; see NetMatcher.)
///
/// The first nets are searched for each path in turn. Then it pays to make an automaton of all
/// paths: a few milliseconds for thousands of them, after which a net takes a time in its own
/// length.
class InstanceFinder {
public:
    /// The paths must outlive the finder and stay as they are.
    explicit InstanceFinder(const std::vector<std::string>& paths) : paths_(&paths) {}

    /// The position of the instance's path. Nothing if no path occurs in the net, which no run of
    /// the consolidator leaves behind. An empty path occurs in every net. One thread at a time may
    /// ask.
    std::optional<std::uint32_t> instanceOf(std::string_view net);

private:
    /// An automaton of the paths, and where they are.
    struct Automaton {
        explicit Automaton(const std::vector<std::string>& paths);

        PathOwners places; ///< Where in the list each path is.
        PathFinder finder;
    };

    bool isBetter(std::uint32_t position, const std::optional<std::uint32_t>& than) const;

    const std::vector<std::string>* paths_;
    std::size_t searched_ = 0; ///< Nets that were searched without the automaton.
    std::optional<Automaton> automaton_;
};

} // namespace consolidator
