#include "query/InstanceFinder.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace consolidator {

namespace {

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

InstanceFinder::InstanceFinder(const std::vector<std::string>& paths,
                               std::vector<std::uint32_t> order)
    : paths_(&paths), order_(std::move(order)), finder_(pathsAt(paths, order_)) {}

std::vector<std::uint32_t> InstanceFinder::inOrder(const std::vector<std::string>& paths) {
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

std::optional<std::uint32_t> InstanceFinder::instanceOf(std::string_view net) {
    std::optional<std::uint32_t> longest;
    finder_.forEachIn(net, [&](std::uint32_t number) {
        const std::uint32_t position = order_[number];
        if (!longest || (*paths_)[position].size() > (*paths_)[*longest].size()) {
            longest = position;
        }
        return true;
    });
    return longest;
}

} // namespace consolidator
