#include "query/KernelNets.h"

#include "query/InstanceFinder.h"

namespace consolidator {

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
    for (const HardwareVariable& variable : kernel_->hardwareVariables()) {
        instances_.push_back(finder.instanceOf(variable.name));
    }
}

} // namespace consolidator
