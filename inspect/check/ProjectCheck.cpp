#include "inspect/check/ProjectCheck.h"

#include "inspect/check/NearestNets.h"
#include "inspect/check/RepeatedBits.h"
#include "query/NameDistance.h"
#include "readers/LLFile.h"

#include <algorithm>
#include <optional>
#include <ostream>

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

bool isRenamed(const MissingName& missing) {
    return missing.nearest && !missing.nearest->hasName && missing.nearest->isInKernel;
}

std::string furtherNames(std::ptrdiff_t count) {
    return count > 1 ? " (and " + std::to_string(count - 1) + " more of its names have such nets)"
                     : "";
}

/// Of a count that the one net before is a part of.
std::string furtherNets(std::size_t count) {
    return count > 1 ? " (and " + std::to_string(count - 1) + " more)" : "";
}

/// Hands on what the second reading of a file tells.
class SecondReading final : public LogicLocationObserver {
public:
    /// All of it must outlive this object.
    SecondReading(const std::string& path, NearestNets& nets, RepeatedBits& repeatedBits)
        : path_(path), nets_(nets), repeatedBits_(repeatedBits) {}

    void netNamed(std::string_view net, std::uint64_t line) override {
        if (nets_.anyMissing()) {
            nets_.look(net, path_, line);
        }
    }

    void bitPlaced(const Placement& placement) override { repeatedBits_.lookAgain(placement); }

private:
    const std::string& path_;
    NearestNets& nets_;
    RepeatedBits& repeatedBits_;
};

} // namespace

void ProjectCheck::run() {
    reportKernelsOfOneInput();
    coverage_ = coverageOf(database_.kernels());
    kernelsOfWrongKind_ = std::erase_if(coverage_, [this](const KernelCoverage& kernel) {
        return isOfWrongKind(kernel.kernel->name());
    });
    if (inputs_.readLogicLocations().empty()) {
        return;
    }
    readAgain();
    for (const KernelCoverage& kernel : coverage_) {
        reportCoverage(kernel);
    }
}

bool ProjectCheck::isOfWrongKind(std::string_view kernel) const {
    const std::vector<std::uint32_t>& inputs = inputs_.origins().inputsOf(kernel);
    return !inputs.empty() && std::ranges::all_of(inputs, [this](std::uint32_t input) {
        return inputs_.inputs()[input].isOfWrongKind;
    });
}

void ProjectCheck::reportKernelsOfOneInput() {
    if (inputs_.inputs().size() < 2) {
        return; // nothing to compare with
    }
    for (const Kernel& kernel : database_.kernels()) {
        const std::vector<std::uint32_t>& inputs = inputs_.origins().inputsOf(kernel.name());
        if (kernel.name().empty() || inputs.empty() || isOfWrongKind(kernel.name())) {
            continue; // which has been reported where they come from
        }
        const InputCheck::Input& input = inputs_.inputs()[inputs.front()];
        if (inputs.size() == 1 && !input.isOldDatabase) {
            reportOneInputOnly(kernel, input);
        } else if (kernel.instancePaths().empty()) {
            reportWithoutInstance(kernel);
        }
    }
}

void ProjectCheck::reportOneInputOnly(const Kernel& kernel, const InputCheck::Input& input) {
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
    findings_.add({input.path, 0, isRtl ? Severity::Note : Severity::Warning, Code::OneInputOnly,
                   std::move(text)});
}

void ProjectCheck::reportWithoutInstance(const Kernel& kernel) {
    const std::uint32_t first = inputs_.origins().inputsOf(kernel.name()).front();
    findings_.add({inputs_.inputs()[first].path, 0, Severity::Warning, Code::NoInstance,
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
        if (other == kernel.name() || isOfWrongKind(other)) {
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

void ProjectCheck::readAgain() {
    NearestNets nets(coverage_);
    for (auto [path, repeatedBits] : inputs_.readLogicLocations()) {
        if (!nets.anyMissing() && !repeatedBits.any()) {
            continue;
        }
        std::ostream nowhere(nullptr);
        LLFile reader(path, nowhere);
        if (repeatedBits.any()) { // else it need not know which nets belong to a kernel
            reader.setProject(database_.kernels());
        }
        SecondReading reading(path, nets, repeatedBits);
        reader.observe(reading);
        progress_.begin(path, FileLook::at(path).size);
        reader.watch([this](std::uint64_t bytes) { progress_.update(bytes); });
        reader.tryToParse(); // as it was parsed before
        progress_.end();
        if (repeatedBits.any()) {
            repeatedBits.report(path, findings_);
        }
    }
}

void ProjectCheck::reportCoverage(const KernelCoverage& kernel) {
    if (kernel.kernel->instancePaths().empty()) {
        return; // which has been reported, and explains it
    }
    reportInstances(kernel);
    const bool isExplained = reportOtherPath(kernel);
    if (!reportOtherName(kernel) && !isExplained) {
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
    text += furtherNames(count);
    text += ": its first instance path is " + quotedName(kernel.kernel->instancePaths().front());
    findings_.add({net.file, net.line, Severity::Warning, Code::OtherPath, std::move(text)});
    return true;
}

bool ProjectCheck::reportOtherName(const KernelCoverage& kernel) {
    const auto first = std::ranges::find_if(kernel.missing, isRenamed);
    if (first == kernel.missing.end()) {
        return false;
    }
    const auto count = std::ranges::count_if(kernel.missing, isRenamed);
    const NearNet& net = *first->nearest;
    findings_.add({net.file, net.line, Severity::Warning, Code::OtherName,
                   "net " + quotedName(net.net) + " of kernel " +
                       quotedName(kernel.kernel->name()) + " has almost the name of its " +
                       nameOf(*first) + furtherNames(count) +
                       ": the last component must be hardware name " +
                       quotedName(first->variable->hardwareName)});
    return true;
}

void ProjectCheck::reportInstances(const KernelCoverage& kernel) {
    const InstanceFaults& faults = kernel.instances;
    const std::vector<std::string>& paths = kernel.kernel->instancePaths();
    const std::vector<HardwareVariable>& nets = kernel.kernel->hardwareVariables();
    const std::string ofKernel = " of kernel " + quotedName(kernel.kernel->name());
    if (faults.withoutNet > 0) {
        reportInstancesWithoutNet(kernel);
    }
    if (faults.cut > 0) {
        findings_.add({hierarchyOf(*kernel.kernel), 0, Severity::Warning, Code::PathCut,
                       "instance path " + quotedName(paths[faults.cutInstance]) + ofKernel +
                           " begins or ends inside a component of net " +
                           quotedName(nets[faults.firstCut].name) + furtherNets(faults.cut) +
                           ", which counts as one of the kernel all the same"});
    }
    if (faults.repeated > 0) {
        findings_.add({hierarchyOf(*kernel.kernel), 0, Severity::Warning, Code::RepeatedNet,
                       "instance path " + quotedName(paths[faults.repeatedInstance]) + ofKernel +
                           " occurs in both " + quotedName(nets[faults.firstOfRepeated].name) +
                           " and " + quotedName(nets[faults.repetition].name) +
                           furtherNets(faults.repeated) +
                           ": they have one name, and a debugger may show either"});
    }
}

void ProjectCheck::reportInstancesWithoutNet(const KernelCoverage& kernel) {
    const InstanceFaults& faults = kernel.instances;
    std::string text = "no net belongs to instance path " +
                       quotedName(kernel.kernel->instancePaths()[faults.firstWithoutNet]);
    if (faults.withoutNet > 1) {
        text += " (and to " + std::to_string(faults.withoutNet - 1) + " more)";
    }
    text += " of kernel " + quotedName(kernel.kernel->name());
    if (kernel.netOfNoInstance) {
        text += ", and net " + quotedName(kernel.netOfNoInstance->net) + " to none of its paths";
    }
    findings_.add({hierarchyOf(*kernel.kernel), 0, Severity::Warning, Code::InstanceWithoutNet,
                   std::move(text)});
}

std::string ProjectCheck::hierarchyOf(const Kernel& kernel) const {
    const std::vector<std::uint32_t>& inputs = inputs_.origins().inputsOf(kernel.name());
    const auto hierarchy = std::ranges::find_if(inputs, [this](std::uint32_t input) {
        const InputCheck::Input& origin = inputs_.inputs()[input];
        return origin.kind == InputKind::Hierarchy && !origin.isOldDatabase;
    });
    if (hierarchy != inputs.end()) {
        return inputs_.inputs()[*hierarchy].path;
    }
    return inputs.empty() ? std::string() : inputs_.inputs()[inputs.front()].path;
}

void ProjectCheck::reportNothingLocated(const KernelCoverage& kernel) {
    const std::size_t located = kernel.arguments.located + kernel.variables.located;
    const std::size_t total = kernel.arguments.total + kernel.variables.total;
    if (located > 0 || total == 0) {
        return;
    }
    findings_.add({inputs_.readLogicLocations().front().path, 0, Severity::Warning,
                   Code::NothingLocated,
                   "no net has the name of an argument or variable of kernel " +
                       quotedName(kernel.kernel->name())});
}

} // namespace consolidator::inspect
