#include "inspect/KernelNets.h"

#include <algorithm>
#include <numeric>

namespace consolidator::inspect {

std::string_view lastComponent(std::string_view net) {
    const std::size_t slash = net.rfind('/');
    return slash == std::string_view::npos ? net : net.substr(slash + 1);
}

KernelNets::KernelNets(const Kernel& kernel) : kernel_(&kernel) {
    const std::vector<HardwareVariable>& registers = kernel.hardwareVariables();
    for (std::uint32_t position = 0; position < registers.size(); ++position) {
        byName_[lastComponent(registers[position].name)].push_back(position);
    }
    findInstances();
}

std::span<const std::uint32_t> KernelNets::registersOf(std::string_view hardwareName) const {
    const auto found = byName_.find(hardwareName);
    return found == byName_.end() ? std::span<const std::uint32_t>() : std::span(found->second);
}

void KernelNets::findInstances() {
    const std::vector<std::string>& paths = kernel_->instancePaths();
    std::vector<std::uint32_t> order(paths.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto path = [&paths](std::uint32_t position) {
        return std::string_view(paths[position]);
    };
    std::ranges::stable_sort(order, {}, path);
    // A database that was not made by the consolidator may hold a path twice: the first one counts.
    order.erase(std::ranges::unique(order, {}, path).begin(), order.end());
    std::vector<std::string_view> sorted;
    for (const std::uint32_t position : order) {
        sorted.push_back(paths[position]);
    }

    PathFinder finder(sorted);
    for (const HardwareVariable& variable : kernel_->hardwareVariables()) {
        std::optional<std::uint32_t> longest;
        finder.forEachIn(variable.name, [&](std::uint32_t number) {
            if (!longest || sorted[number].size() > paths[*longest].size()) {
                longest = order[number];
            }
            return true;
        });
        instances_.push_back(longest);
    }
}

} // namespace consolidator::inspect
