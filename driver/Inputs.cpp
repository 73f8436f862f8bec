#include "driver/Inputs.h"

#include "model/RAMFile.h"
#include "readers/AuxiliaryXMLFile.h"
#include "readers/HLSFile.h"
#include "readers/HierarchyFile.h"
#include "readers/KernelFile.h"
#include "readers/LLFile.h"
#include "readers/LocationBudget.h"

namespace consolidator {

namespace {

/// The database that inputs are added to, and who is told of them.
struct Target {
    ConsolidatedFile& database;
    std::ostream& err;
    InputObserver* observer;
};

/// Returns whether the input adds what it has.
bool add(const Target& target, InputKind kind, const std::string& path, InputFile& reader) {
    if (target.observer == nullptr) {
        return target.database.addInputFile(reader);
    }
    target.observer->beforeReading(kind, path, reader);
    const bool isUsable = reader.tryToParse();
    target.observer->afterReading(kind, path, reader, isUsable);
    if (isUsable) {
        target.database.addKernelsOf(reader);
    }
    return isUsable;
}

void addDwarf(const Target& target, const std::string& path) {
    if (target.observer != nullptr) {
        target.observer->beforeDwarf(path);
    }
    target.database.addDwarf(path);
}

/// Runs one reader of the given kind on each file, in order.
template <typename Reader>
void addAll(const Target& target, InputKind kind, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        Reader reader(path, target.err);
        add(target, kind, path, reader);
    }
}

/// Logic locations are matched against the project's kernels themselves.
void addLogicLocations(const Target& target, const std::vector<std::string>& paths) {
    LocationBudget budget; // one for all files of the run
    for (const std::string& path : paths) {
        LLFile reader(path, target.err);
        if (reader.isOpen()) { // else it has nothing to add, not even a second kernel to the first
            reader.setProject(target.database.kernels());
        }
        reader.setBudget(budget);
        if (add(target, InputKind::LogicLocations, path, reader)) {
            budget = reader.budget();
        }
    }
}

/// RAM reports are matched against the project's kernels themselves.
void addRamReports(const Target& target, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        RAMFile reader(path, target.database.kernels(), target.err);
        add(target, InputKind::RamReport, path, reader);
    }
}

} // namespace

bool InputPaths::anyInput() const {
    return !dwarfFile.empty() || !hierarchyFiles.empty() || !kernelFiles.empty() ||
           !hlsFiles.empty() || !auxFiles.empty() || !llFiles.empty() || !ramFiles.empty();
}

void addInputs(ConsolidatedFile& database, const InputPaths& inputs, std::ostream& err,
               InputObserver* observer) {
    const Target target{database, err, observer};
    if (!inputs.dwarfFile.empty()) {
        addDwarf(target, inputs.dwarfFile);
    }
    addAll<HierarchyFile>(target, InputKind::Hierarchy, inputs.hierarchyFiles);
    addAll<KernelFile>(target, InputKind::KernelXml, inputs.kernelFiles);
    addAll<HLSFile>(target, InputKind::Hls, inputs.hlsFiles);
    addAll<AuxiliaryXMLFile>(target, InputKind::AuxiliaryXml, inputs.auxFiles);
    addLogicLocations(target, inputs.llFiles);
    addRamReports(target, inputs.ramFiles);
}

} // namespace consolidator
