// The input files of a run and the order in which they are taken into a database.
#pragma once

#include "consolidated/ConsolidatedFile.h"
#include "consolidated/InputFile.h"

#include <ostream>
#include <string>
#include <vector>

namespace consolidator {

/// What an input file is, by the option that names it.
enum class InputKind {
    Dwarf,
    Hierarchy,
    KernelXml,
    Hls,
    AuxiliaryXml,
    LogicLocations,
    RamReport,
};

/// The input files of a run, each list in command-line order.
struct InputPaths {
    std::string dwarfFile;                   ///< DWARF metadata; empty if not given.
    std::vector<std::string> hierarchyFiles; ///< Hierarchy metadata of the system linker.
    std::vector<std::string> kernelFiles;    ///< Kernel description XML.
    std::vector<std::string> hlsFiles;       ///< Kernel metadata of high-level synthesis.
    std::vector<std::string> auxFiles;       ///< Auxiliary XML of high-level synthesis.
    std::vector<std::string> llFiles;        ///< Logic locations of bitstream generation.
    std::vector<std::string> ramFiles;       ///< RAM utilization reports of synthesis.

    /// Whether a file of any kind is given.
    bool anyInput() const;
};

/// Looks on while inputs are taken in, for programs that explain what happens to them.
class InputObserver {
public:
    InputObserver() = default;
    virtual ~InputObserver() = default;
    InputObserver(const InputObserver&) = delete;
    InputObserver& operator=(const InputObserver&) = delete;

    /// The DWARF file is to be taken in, or not if the database has one already.
    virtual void beforeDwarf(const std::string& path) = 0;

    /// The reader has opened its file, or failed to, and has read nothing.
    virtual void beforeReading(InputKind kind, const std::string& path, InputFile& reader) = 0;

    /// The reader has done what it can, and its kernels, if they are usable, are to be merged.
    virtual void afterReading(InputKind kind, const std::string& path, const InputFile& reader,
                              bool isUsable) = 0;
};

/// Takes all inputs into the database. The order of the kinds matters: each builds on what the ones
/// before it have found. Messages of the readers go to `err`.
void addInputs(ConsolidatedFile& database, const InputPaths& inputs, std::ostream& err,
               InputObserver* observer = nullptr);

} // namespace consolidator
