#include "driver/Inputs.h"

#include "model/RAMFile.h"
#include "readers/AuxiliaryXMLFile.h"
#include "readers/HLSFile.h"
#include "readers/HierarchyFile.h"
#include "readers/KernelFile.h"
#include "readers/LLFile.h"
#include "readers/LocationBudget.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace consolidator {

/// The database that inputs are added to, and who is told of them.
struct InputTarget {
    ConsolidatedFile& database;
    std::ostream& err;
    InputObserver* observer;
};

namespace {

/// The database itself counts as an empty input.
void readNothingOfItself(const InputTarget& target, const std::string& path, InputFile& reader) {
    if (target.database.isReplaced(path)) {
        reader.beEmpty();
    }
}

/// Returns whether the input adds what it has.
bool add(const InputTarget& target, InputKind kind, const std::string& path, InputFile& reader) {
    if (target.observer == nullptr) {
        return target.database.addInputFile(reader);
    }
    // What addInputFile() does, in its two halves: the observer looks on in between.
    target.observer->beforeReading(kind, path, reader);
    const bool isUsable = reader.tryToParse();
    target.observer->afterReading(kind, path, reader, isUsable);
    if (isUsable) {
        target.database.addKernelsOf(reader, target.observer);
        target.observer->afterMerging();
    }
    return isUsable;
}

/// DWARF has no reader: the database takes its bytes as they are.
void addDwarf(const InputTarget& target, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        if (target.observer != nullptr) {
            target.observer->beforeDwarf(path);
        }
        target.database.addDwarf(path);
    }
}

/// Runs one reader on each file, in order.
template <InputKind kind, typename Reader>
void addAll(const InputTarget& target, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        Reader reader(path, target.err);
        readNothingOfItself(target, path, reader);
        add(target, kind, path, reader);
    }
}

/// Logic locations are matched against the project's kernels themselves.
void addLogicLocations(const InputTarget& target, const std::vector<std::string>& paths) {
    LocationBudget budget; // one for all files of the run
    for (const std::string& path : paths) {
        LLFile reader(path, target.err);
        readNothingOfItself(target, path, reader);
        if (reader.isOpen()) { // else it has nothing to add, not even a second kernel to the first
            reader.setProject(target.database.kernels());
        }
        reader.setBudget(budget);
        if (add(target, InputKind::LogicLocations, path, reader)) {
            // A file that adds nothing has spent nothing.
            budget = reader.budget();
        }
    }
}

/// RAM reports are matched against the project's kernels themselves.
void addRamReports(const InputTarget& target, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        RAMFile reader(path, target.database.kernels(), target.err);
        readNothingOfItself(target, path, reader);
        add(target, InputKind::RamReport, path, reader);
    }
}

// clang-format off
constexpr std::array options{
    InputOption{InputKind::Dwarf, 'd', "DWARF",
                "Input DWARF metadata file",
                "DWARF metadata file",
                "DWARF",
                &InputPaths::dwarfFile, addDwarf},
    InputOption{InputKind::Hierarchy, 'h', "hierarchy",
                "Input hierarchy metadata file generated from System Linker",
                "Hierarchy metadata file of the system linker",
                "a hierarchy file",
                &InputPaths::hierarchyFiles, addAll<InputKind::Hierarchy, HierarchyFile>},
    InputOption{InputKind::KernelXml, 'k', "kernel",
                "Input kernel.xml meta data",
                "kernel.xml of high-level synthesis",
                "a kernel description (kernel.xml)",
                &InputPaths::kernelFiles, addAll<InputKind::KernelXml, KernelFile>},
    InputOption{InputKind::Hls, 's', "hls",
                "Input kernel meta data generated from HLS",
                "Kernel metadata of high-level synthesis",
                "kernel metadata of high-level synthesis",
                &InputPaths::hlsFiles, addAll<InputKind::Hls, HLSFile>},
    InputOption{InputKind::AuxiliaryXml, 'x', "aux",
                "Input *_auxiliary.xml meta data generated from HLS",
                "*_auxiliary.xml of high-level synthesis",
                "an auxiliary XML file",
                &InputPaths::auxFiles, addAll<InputKind::AuxiliaryXml, AuxiliaryXMLFile>},
    InputOption{InputKind::LogicLocations, 'l', "ll",
                "Input *.ll meta data generated during bitstream generation",
                "*.ll file of bitstream generation",
                "a logic-location file",
                &InputPaths::llFiles, addLogicLocations},
    InputOption{InputKind::RamReport, 'r', "ram",
                "Input ram utilization report file generated from synthesis",
                "RAM utilization report of synthesis",
                "a RAM utilization report",
                &InputPaths::ramFiles, addRamReports},
};
// clang-format on

/// Whether the row of each kind is where inputOption() takes it from.
constexpr bool areInOrderOfKinds() {
    for (std::size_t i = 0; i < options.size(); ++i) {
        if (options[i].kind != static_cast<InputKind>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(areInOrderOfKinds());

} // namespace

std::span<const InputOption> inputOptions() {
    return options;
}

const InputOption& inputOption(InputKind kind) {
    return options[static_cast<std::size_t>(kind)];
}

bool InputPaths::anyInput() const {
    return std::ranges::any_of(options,
                               [this](const InputOption& option) { return !of(option).empty(); });
}

std::vector<std::string> InputPaths::of(const InputOption& option) const {
    if (const auto* const many = std::get_if<InputOption::ManyPaths>(&option.paths)) {
        return this->**many;
    }
    const std::string& one = this->*std::get<InputOption::OnePath>(option.paths);
    return one.empty() ? std::vector<std::string>() : std::vector{one};
}

void addInputs(ConsolidatedFile& database, const InputPaths& inputs, std::ostream& err,
               InputObserver* observer) {
    const InputTarget target{database, err, observer};
    for (const InputOption& option : options) {
        option.add(target, inputs.of(option));
    }
}

} // namespace consolidator
