#include "inspect/KernelNets.h"

#include "inspect/InstanceFinder.h"

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
    InstanceFinder finder(kernel_->instancePaths());
    const std::vector<std::string>& paths = kernel_->instancePaths();
    std::vector<std::uint32_t> order(paths.size());
    std::iota(order.begin(), order.end(), 0U);
    const auto path = [&paths](std::uint32_t position) {
        return std::string_view(paths[position]);
    };
    std::ranges::stable_sort(order, {}, path);
    // A database that was not made by the consolidator may hold a path twice: the first one counts.
    // Not of std::ranges: Clang 14 cannot compile what GCC 12's library returns there.
    const auto repeats = std::unique(order.begin(), order.end(), [&path](auto left, auto right) {
        return path(left) == path(right);
    });
    order.erase(repeats, order.end());
    std::vector<std::string_view> sorted;
    for (const std::uint32_t position : order) {
        sorted.push_back(paths[position]);
    }

    PathFinder finder(sorted);
    for (const HardwareVariable& variable : kernel_->hardwareVariables()) {
        instances_.push_back(finder.instanceOf(variable.name));
    }
}

} // namespace consolidator::inspect
