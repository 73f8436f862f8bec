// The kinds of input files, each with all that is to be said of it in one row of one table, and the
// order in which they are taken into a database.
//
//     for (const InputOption& option : inputOptions()) {
//         for (const std::string& path : inputs.of(option)) { ...
//
// The options of both programs, the order of a run and the words of `check` are made from the
// table. A new kind is a value of InputKind, a field of InputPaths and a row in Inputs.cpp.
#pragma once

#include "consolidated/ConsolidatedFile.h"
#include "consolidated/InputFile.h"
#include "model/MergeObserver.h"

#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace consolidator {

struct InputOption;
struct InputTarget;

/// What an input file is, by the option that names it. In the order in which they are taken in.
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

    /// The files given with this option, in command-line order. An empty name is none for DWARF.
    std::vector<std::string> of(const InputOption& option) const;
};

/// A row of the table: a kind of input, and the option that it is given with.
struct InputOption {
    /// Most options may be given again and again. DWARF is the odd one: there is one file of it.
    using OnePath = std::string InputPaths::*;
    using ManyPaths = std::vector<std::string> InputPaths::*;

    InputKind kind;
    char letter;                       ///< 'l', for -l.
    std::string_view longName;         ///< "ll", for --ll.
    std::string_view description;      ///< In the consolidator's --help.
    std::string_view checkDescription; ///< In the --help of the inspector's `check` and `merge`.
    std::string_view content;          ///< What such a file is: "a logic-location file".
    std::variant<OnePath, ManyPaths> paths; ///< Where the files' paths are kept.

    /// Takes the files in; called by addInputs().
    void (*add)(const InputTarget& target, const std::vector<std::string>& paths);
};

/// The table, in the order in which inputs are taken in, which is also that of the options in both
/// programs' --help.
std::span<const InputOption> inputOptions();

/// The row of a kind; there is one of each.
const InputOption& inputOption(InputKind kind);

/// Looks on while inputs are taken in, for programs that explain what happens to them.
class InputObserver : public MergeObserver {
public:
    /// The DWARF file is to be taken in, or not if the database has one already.
    virtual void beforeDwarf(const std::string& path) = 0;

    /// The reader has opened its file, or failed to, and has read nothing.
    virtual void beforeReading(InputKind kind, const std::string& path, InputFile& reader) = 0;

    /// The reader has done what it can, and its kernels, if they are usable, are to be merged.
    virtual void afterReading(InputKind kind, const std::string& path, const InputFile& reader,
                              bool isUsable) = 0;

    /// The reader's kernels have been merged, which was told of as of every MergeObserver. Not
    /// called when they are not usable.
    virtual void afterMerging() = 0;
};

/// Takes all inputs into the database, in the table's order, which matters: each kind builds on
/// what the ones before it have found. Messages of the readers go to `err`.
void addInputs(ConsolidatedFile& database, const InputPaths& inputs, std::ostream& err,
               InputObserver* observer = nullptr);

} // namespace consolidator
