#include "query/InstanceFinder.h"

#include <algorithm>
#include <numeric>

namespace consolidator {

namespace {

/// The number of nets that are searched without an automaton. With 4,096 paths of 40 bytes making
/// it takes about as long as searching ten nets of 80 bytes; with a few paths neither is noticed.
constexpr std::size_t fewNets = 8;

std::vector<std::uint32_t> inOrder(const std::vector<std::string>& paths) {
    std::vector<std::uint32_t> order(paths.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto path = [&paths](std::uint32_t position) {
        return std::string_view(paths[position]);
    };
    std::ranges::stable_sort(order, {}, path);
    // A database that was not made by the consolidator may hold a path twice: the first one counts.
    const auto isEqual = [&paths](std::uint32_t left, std::uint32_t right) {
        return paths[left] == paths[right];
    };
    order.erase(std::unique(order.begin(), order.end(), isEqual), order.end());
    return order;
}

std::vector<std::string_view> pathsAt(const std::vector<std::string>& paths,
                                      const std::vector<std::uint32_t>& positions) {
    std::vector<std::string_view> result;
    result.reserve(positions.size());
    for (const std::uint32_t position : positions) {
        result.emplace_back(paths[position]);
    }
    return result;
}

} // namespace

InstanceFinder::Automaton::Automaton(const std::vector<std::string>& paths)
    : order(inOrder(paths)), finder(pathsAt(paths, order)) {}

bool InstanceFinder::isBetter(std::uint32_t position,
                              const std::optional<std::uint32_t>& than) const {
    return !than || (*paths_)[position].size() > (*paths_)[*than].size();
}

std::optional<std::uint32_t> InstanceFinder::instanceOf(std::string_view net) {
    std::optional<std::uint32_t> longest;
    if (!automaton_ && searched_++ < fewNets) {
        for (std::uint32_t position = 0; position < paths_->size(); ++position) {
            if (isBetter(position, longest) && net.find((*paths_)[position]) != net.npos) {
                longest = position;
            }
        }
        return longest;
    }
    if (!automaton_) {
        automaton_.emplace(*paths_);
    }
    automaton_->finder.forEachIn(net, [&](std::uint32_t number) {
        const std::uint32_t position = automaton_->order[number];
        if (isBetter(position, longest)) {
            longest = position;
        }
        return true;
    });
    return longest;
}

} // namespace consolidator
