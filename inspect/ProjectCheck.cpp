#include "inspect/ProjectCheck.h"

#include "inspect/NameDistance.h"
#include "inspect/NearestNets.h"

#include <algorithm>
#include <optional>

namespace consolidator::inspect {

namespace {

/// Names are compared with each other only while there are not too many.
constexpr std::size_t mostCompared = 100;
constexpr std::size_t mostComparedWith = 1000;

std::string nameOf(const MissingName& missing) {
    return (missing.isArgument ? "argument " : "variable ") +
           quotedName(missing.variable->sourceName);
}

bool isUnderOtherPath(const MissingName& missing) {
    return missing.nearest && missing.nearest->hasName && !missing.nearest->isInKernel;
}

} // namespace

void ProjectCheck::run() {
    reportLonelyKernels();
    coverage_ = coverageOf(database_.kernels());
    mistakenKernels_ = std::erase_if(coverage_, [this](const KernelCoverage& kernel) {
        return isMistaken(kernel.kernel->name());
    });
    if (inputs_.readLogicLocations().empty()) {
        return;
    }
    findNearestNets();
    for (const KernelCoverage& kernel : coverage_) {
        reportCoverage(kernel);
    }
}

bool ProjectCheck::isMistaken(std::string_view kernel) const {
    const std::vector<std::uint32_t>& inputs = inputs_.origins().inputsOf(kernel);
    return !inputs.empty() && std::ranges::all_of(inputs, [this](std::uint32_t input) {
        return inputs_.inputs()[input].isMistaken;
    });
}

void ProjectCheck::reportLonelyKernels() {
    if (inputs_.inputs().size() < 2) {
        return; // nothing to compare with
    }
    for (const Kernel& kernel : database_.kernels()) {
        const std::vector<std::uint32_t>& inputs = inputs_.origins().inputsOf(kernel.name());
        if (kernel.name().empty() || inputs.empty() || isMistaken(kernel.name())) {
            continue; // which has been reported where they come from
        }
        const InputCheck::Input& input = inputs_.inputs()[inputs.front()];
        if (inputs.size() == 1 && !input.isOldDatabase) {
            reportLonely(kernel, input);
        } else if (kernel.instancePaths().empty()) {
            reportWithoutInstance(kernel);
        }
    }
}

void ProjectCheck::reportLonely(const Kernel& kernel, const InputCheck::Input& input) {
    const bool isRtl = kernel.type() == KernelType::RTL;
    const bool hasInstances = !kernel.instancePaths().empty();
    std::string text = "kernel " + quotedName(kernel.name()) + " is in no other input";
    if (isRtl) {
        text += ", as it may be with one of type \"ip\"";
    } else if (!hasInstances) {
        text += ": it has no instances, and no net belongs to it";
    } else if (input.kind == InputKind::Hierarchy) {
        text += ": it has instances, but no arguments, variables or conditions";
    }
    text += nearestKernel(kernel);
    findings_.add({input.path, 0, isRtl ? Severity::Note : Severity::Warning, "one-input-only",
                   std::move(text)});
}

void ProjectCheck::reportWithoutInstance(const Kernel& kernel) {
    const std::uint32_t first = inputs_.origins().inputsOf(kernel.name()).front();
    findings_.add({inputs_.inputs()[first].path, 0, Severity::Warning, "no-instance",
                   "kernel " + quotedName(kernel.name()) +
                       " has no instances, and no net belongs to it: no hierarchy file names it"});
}

std::string ProjectCheck::nearestKernel(const Kernel& kernel) {
    if (compared_++ >= mostCompared) {
        return "";
    }
    const std::vector<Kernel>& kernels = database_.kernels();
    const std::string* nearest = nullptr;
    std::size_t least = 0;
    for (std::size_t i = 0; i < std::min(kernels.size(), mostComparedWith); ++i) {
        const std::string& other = kernels[i].name();
        if (other == kernel.name() || isMistaken(other)) {
            continue;
        }
        const auto distance = nameDistance(kernel.name(), other);
        if (distance && (nearest == nullptr || *distance < least)) {
            nearest = &other;
            least = *distance;
        }
    }
    return nearest == nullptr ? "" : "; is it " + quotedName(*nearest) + "?";
}

void ProjectCheck::findNearestNets() {
    NearestNets nets(coverage_);
    if (!nets.anyMissing()) {
        return;
    }
    for (const std::string& path : inputs_.readLogicLocations()) {
        progress_.begin(path, FileLook::at(path).size);
        nets.read(path, progress_);
        progress_.end();
    }
}

void ProjectCheck::reportCoverage(const KernelCoverage& kernel) {
    if (kernel.kernel->instancePaths().empty()) {
        return; // which has been reported, and explains it
    }
    if (!reportOtherPath(kernel)) {
        reportNothingLocated(kernel);
    }
}

bool ProjectCheck::reportOtherPath(const KernelCoverage& kernel) {
    const auto first = std::ranges::find_if(kernel.missing, isUnderOtherPath);
    if (first == kernel.missing.end()) {
        return false;
    }
    const auto count = std::ranges::count_if(kernel.missing, isUnderOtherPath);
    const NearNet& net = *first->nearest;
    std::string text = "no instance path of kernel " + quotedName(kernel.kernel->name()) +
                       " occurs in net " + quotedName(net.net) + ", which has the name of its " +
                       nameOf(*first);
    if (count > 1) {
        text += " (and " + std::to_string(count - 1) + " more of its names have such nets)";
    }
    text += ": its first instance path is " + quotedName(kernel.kernel->instancePaths().front());
    findings_.add({net.file, net.line, Severity::Warning, "other-path", std::move(text)});
    return true;
}

void ProjectCheck::reportNothingLocated(const KernelCoverage& kernel) {
    const std::size_t located = kernel.arguments.located + kernel.variables.located;
    const std::size_t total = kernel.arguments.total + kernel.variables.total;
    if (located > 0 || total == 0) {
        return;
    }
    findings_.add({inputs_.readLogicLocations().front(), 0, Severity::Warning, "nothing-located",
                   "no net has the name of an argument or variable of kernel " +
                       quotedName(kernel.kernel->name())});
}

} // namespace consolidator::inspect
