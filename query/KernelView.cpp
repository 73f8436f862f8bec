#include "query/KernelView.h"

#include "query/InstanceFinder.h"
#include "shared/TextHash.h"

#include <algorithm>
#include <unordered_map>

namespace consolidator {

namespace {

template <typename Element>
using ByName = std::unordered_map<std::string_view, std::vector<Element>, TextHash>;

template <typename Element>
std::span<const Element> elementsOf(const ByName<Element>& index, std::string_view name) {
    const auto found = index.find(name);
    return found == index.end() ? std::span<const Element>() : std::span(found->second);
}

} // namespace

/// What was asked for so far.
struct KernelView::Indexes {
    explicit Indexes(const std::vector<std::string>& paths) : instances(paths) {}

    std::optional<ByName<std::uint32_t>> registers;
    std::optional<ByName<SourceVariable>> variables;
    InstanceFinder instances;
};

KernelView::KernelView(const Kernel& kernel)
    : kernel_(&kernel), indexes_(std::make_unique<Indexes>(kernel.instancePaths())) {}

KernelView::~KernelView() = default;
KernelView::KernelView(KernelView&&) noexcept = default;
KernelView& KernelView::operator=(KernelView&&) noexcept = default;

std::span<const std::uint32_t> KernelView::registersOf(std::string_view hardwareName) const {
    std::optional<ByName<std::uint32_t>>& index = indexes_->registers;
    if (!index) {
        index.emplace();
        const std::vector<HardwareVariable>& registers = kernel_->hardwareVariables();
        for (std::uint32_t position = 0; position < registers.size(); ++position) {
            (*index)[lastComponent(registers[position].name)].push_back(position);
        }
    }
    return elementsOf(*index, hardwareName);
}

std::vector<std::uint32_t> KernelView::registersOf(std::string_view hardwareName,
                                                   std::optional<std::uint32_t> instance) const {
    std::vector<std::uint32_t> result;
    std::ranges::copy_if(
        registersOf(hardwareName), std::back_inserter(result),
        [&](std::uint32_t position) { return instanceOf(std::size_t{position}) == instance; });
    return result;
}

std::span<const SourceVariable> KernelView::variablesOf(std::string_view hardwareName) const {
    std::optional<ByName<SourceVariable>>& index = indexes_->variables;
    if (!index) {
        index.emplace();
        forEachVariable(*kernel_, [&index](const SourceVariable& variable) {
            (*index)[variable.variable->hardwareName].push_back(variable);
        });
    }
    return elementsOf(*index, hardwareName);
}

std::optional<std::uint32_t> KernelView::instanceOf(std::string_view net) const {
    return indexes_->instances.instanceOf(net);
}

} // namespace consolidator
