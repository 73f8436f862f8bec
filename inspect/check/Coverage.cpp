#include "inspect/check/Coverage.h"

#include "query/InstanceFinder.h"
#include "query/KernelView.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace consolidator::inspect {

namespace {

KernelCoverage::Count countOf(const KernelView& nets, std::span<const Variable> variables,
                              bool areArguments, std::vector<MissingName>& missing) {
    KernelCoverage::Count count;
    for (const Variable& variable : variables) {
        ++count.total;
        if (nets.registersOf(variable.hardwareName).empty()) {
            missing.push_back({&variable, areArguments, nullptr});
        } else {
            ++count.located;
        }
    }
    return count;
}

/// A net that lies in an instance.
struct Placed {
    std::string_view name; ///< Its last component.
    std::uint32_t instance;
    std::uint32_t position;

    bool isLike(const Placed& other) const {
        return instance == other.instance && name == other.name;
    }
    bool operator<(const Placed& other) const {
        if (instance != other.instance) {
            return instance < other.instance;
        }
        const int order = name.compare(other.name);
        return order == 0 ? position < other.position : order < 0;
    }
};

/// The paths with a "/" at both ends, so that they occur only as whole components.
std::vector<std::string> wholePaths(const std::vector<std::string>& paths) {
    std::vector<std::string> result;
    result.reserve(paths.size());
    for (const std::string& path : paths) {
        std::string& whole = result.emplace_back(path.starts_with('/') || path.empty() ? "" : "/");
        whole += path;
        whole += path.ends_with('/') || path.empty() ? "" : "/";
    }
    return result;
}

void findWithoutNet(const std::vector<std::string>& paths, const std::vector<bool>& hasNet,
                    InstanceFaults& faults) {
    for (std::size_t i = paths.size(); i > 0; --i) {
        if (!hasNet[i - 1] && !paths[i - 1].empty()) {
            ++faults.withoutNet;
            faults.firstWithoutNet = static_cast<std::uint32_t>(i - 1);
        }
    }
}

void findRepeated(std::vector<Placed> placed, InstanceFaults& faults) {
    std::ranges::sort(placed, [](const Placed& left, const Placed& right) { return left < right; });
    for (std::size_t i = 1; i < placed.size(); ++i) {
        const Placed& before = placed[i - 1];
        if (!placed[i].isLike(before)) {
            continue;
        }
        if (faults.repeated++ == 0) {
            faults.firstOfRepeated = before.position;
            faults.repetition = placed[i].position;
            faults.repeatedInstance = before.instance;
        }
    }
}

/// Takes a time in the texts of the kernel, up to a logarithm.
InstanceFaults instanceFaultsOf(const KernelView& nets) {
    InstanceFaults faults;
    const std::vector<HardwareVariable>& registers = nets.kernel().hardwareVariables();
    const std::vector<std::string>& paths = nets.kernel().instancePaths();
    if (registers.empty() || paths.empty()) {
        return faults;
    }
    const std::vector<std::string> whole = wholePaths(paths);
    InstanceFinder finder(whole);
    std::vector<bool> hasNet(paths.size());
    std::vector<Placed> placed;
    for (std::uint32_t position = 0; position < registers.size(); ++position) {
        const std::string& net = registers[position].name;
        if (const auto instance = finder.instanceOf(net)) {
            hasNet[*instance] = true;
            placed.push_back({lastComponent(net), *instance, position});
        } else if (const auto cutInstance = nets.instanceOf(position)) {
            hasNet[*cutInstance] = true;
            if (faults.cut++ == 0) {
                faults.firstCut = position;
                faults.cutInstance = *cutInstance;
            }
        }
    }
    findWithoutNet(paths, hasNet, faults);
    findRepeated(std::move(placed), faults);
    return faults;
}

} // namespace

std::vector<KernelCoverage> coverageOf(const std::vector<Kernel>& kernels) {
    std::vector<KernelCoverage> result;
    for (const Kernel& kernel : kernels) {
        const KernelView nets(kernel);
        KernelCoverage coverage{&kernel, {}, {}, {}, {}, std::nullopt};
        coverage.arguments = countOf(nets, kernel.arguments(), true, coverage.missing);
        coverage.variables = countOf(nets, kernel.variables(), false, coverage.missing);
        coverage.instances = instanceFaultsOf(nets);
        result.push_back(std::move(coverage));
    }
    return result;
}

} // namespace consolidator::inspect
