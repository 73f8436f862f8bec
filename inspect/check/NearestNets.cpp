#include "inspect/check/NearestNets.h"

#include "query/KernelView.h"
#include "query/NameDistance.h"
#include "readers/LLFile.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace consolidator::inspect {

namespace {

// Scores: of names alike outside the kernel's instances, of the same name there, to which the bytes
// of the common path are added, and of both inside.
constexpr std::size_t mostLikeness = 8;
constexpr std::size_t sameNameScore = 16;
constexpr std::size_t alikeInKernelScore = sameNameScore + 2 * LLFile::longestLine;
constexpr std::size_t sameNameInKernelScore = 2 * alikeInKernelScore;

constexpr std::string_view otherSeparators = ".\\";

/// How far the last component of a net, or what follows another separator in it, is from a name.
std::optional<std::size_t> distanceTo(std::string_view name, std::string_view component) {
    const std::size_t separator = component.find_last_of(otherSeparators);
    if (separator != std::string_view::npos) {
        const std::string_view end = component.substr(separator + 1);
        if (const auto distance = nameDistance(name, end)) {
            return distance;
        }
    }
    return nameDistance(name, component);
}

std::string_view withoutSlash(std::string_view path) {
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    return path;
}

std::vector<const Kernel*> kernelsMissingNames(const std::vector<KernelCoverage>& coverage) {
    std::vector<const Kernel*> kernels;
    for (const KernelCoverage& kernel : coverage) {
        if (!kernel.missing.empty()) {
            kernels.push_back(kernel.kernel);
        }
    }
    return kernels;
}

std::size_t commonBeginning(std::string_view first, std::string_view second) {
    const auto end = std::ranges::mismatch(first, second).in1;
    return static_cast<std::size_t>(end - first.begin());
}

} // namespace

NearestNets::NearestNets(std::vector<KernelCoverage>& coverage)
    : paths_(kernelsMissingNames(coverage), LLFile::longestLine) {
    for (KernelCoverage& kernel : coverage) {
        addInstanceWithoutNet(kernel);
        for (MissingName& missing : kernel.missing) {
            addWanted(missing, *kernel.kernel);
        }
    }
    // Now that the lists stay where they are.
    for (KernelCoverage& kernel : coverage) {
        for (const MissingName& missing : kernel.missing) {
            const auto found = byName_.find(missing.variable->hardwareName);
            if (alike_.size() < mostAlike && found != byName_.end() &&
                found->second.front().missing == &missing) {
                alike_.push_back({&found->second.front(), namesOf(*kernel.kernel)});
            }
        }
    }
}

void NearestNets::addInstanceWithoutNet(KernelCoverage& kernel) {
    if (kernel.instances.withoutNet == 0 || withoutNet_.size() == mostInstances) {
        return;
    }
    const std::vector<std::string>& paths = kernel.kernel->instancePaths();
    const std::string_view name = lastComponent(kernel.kernel->hardwareVariables().front().name);
    withoutNet_.push_back({&kernel, withoutSlash(paths[kernel.instances.firstWithoutNet]), name,
                           InstanceFinder(paths)});
}

void NearestNets::addWanted(MissingName& missing, const Kernel& kernel) {
    const std::string_view name = missing.variable->hardwareName;
    if (name.empty()) {
        return;
    }
    std::vector<Wanted>& wanted = byName_[name];
    if (wanted.size() < mostOfAName) {
        wanted.push_back({&missing, &kernel});
    }
}

void NearestNets::look(std::string_view net, const std::string& file, std::uint64_t line) {
    if (!net.empty() && net != last_) {
        last_ = net;
        offer({net, lastComponent(net), file, line});
    }
}

void NearestNets::offer(const Net& net) {
    std::string name(1, '/');
    name += net.name;
    paths_.setNet(name);
    const auto sameName = byName_.find(net.lastComponent);
    if (sameName != byName_.end()) {
        for (Wanted& wanted : sameName->second) {
            offerSameName(net, wanted);
        }
    }
    for (InstanceWithoutNet& instance : withoutNet_) {
        if (instance.name == net.lastComponent) {
            offerToInstance(net, instance);
        }
    }
    for (const Alike& alike : alike_) {
        if (alike.wanted->score < sameNameInKernelScore &&
            !alike.names->contains(net.lastComponent)) {
            offerAlike(net, alike);
        }
    }
}

void NearestNets::offerSameName(const Net& net, Wanted& wanted) {
    const std::vector<std::string>& paths = wanted.kernel->instancePaths();
    const std::string_view path = paths.empty() ? "" : withoutSlash(paths.front());
    const bool isInKernel = paths_.isIn(*wanted.kernel);
    const std::size_t score =
        (isInKernel ? sameNameInKernelScore : sameNameScore) + commonBeginning(net.name, path);
    if (score > wanted.score) {
        wanted.score = score;
        wanted.missing->nearest = std::make_shared<NearNet>(
            NearNet{'/' + std::string(net.name), net.file, net.line, true, isInKernel});
    }
}

void NearestNets::offerToInstance(const Net& net, InstanceWithoutNet& instance) {
    const std::size_t score = 1 + commonBeginning(net.name, instance.path);
    if (score <= instance.score) {
        return;
    }
    std::string full(1, '/');
    full += net.name;
    if (!instance.instances.instanceOf(full)) {
        instance.score = score;
        instance.coverage->netOfNoInstance = {full, net.file, net.line, true, false};
    }
}

void NearestNets::offerAlike(const Net& net, const Alike& alike) {
    Wanted& wanted = *alike.wanted;
    const auto distance = distanceTo(wanted.missing->variable->hardwareName, net.lastComponent);
    if (!distance) {
        return;
    }
    const std::size_t likeness = mostLikeness - *distance; // a distance is at most 4
    if (alikeInKernelScore + likeness <= wanted.score) {
        return;
    }
    const bool isInKernel = paths_.isNearlyIn(*wanted.kernel);
    const std::size_t score = likeness + (isInKernel ? alikeInKernelScore : 0);
    if (score > wanted.score) {
        wanted.score = score;
        wanted.missing->nearest = std::make_shared<NearNet>(
            NearNet{'/' + std::string(net.name), net.file, net.line, false, isInKernel});
    }
}

const NearestNets::Names* NearestNets::namesOf(const Kernel& kernel) {
    const auto [found, isNew] = names_.try_emplace(&kernel);
    if (isNew) {
        for (const std::span variables : {kernel.arguments(), std::span(kernel.variables())}) {
            for (const Variable& variable : variables) {
                found->second.insert(variable.hardwareName);
            }
        }
    }
    return &found->second;
}

} // namespace consolidator::inspect
