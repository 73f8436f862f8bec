// Looks on while the inputs of a run are read, and says of each what went wrong with it.
#pragma once

#include "driver/Inputs.h"
#include "inspect/check/FileLook.h"
#include "inspect/check/Findings.h"
#include "inspect/check/KernelOrigins.h"
#include "inspect/check/RepeatedBits.h"
#include "inspect/text/Progress.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace consolidator::inspect {

/// The findings of each input, in the order in which a run reads them; and what the inputs told
/// that only shows when all are read.
class InputCheck final : public InputObserver {
public:
    /// An input that kernels came from.
    struct Input {
        std::string path;
        InputKind kind;
        bool isOldDatabase = false;
        bool isOfWrongKind = false; ///< Its content is of another kind: its kernels are none.
    };

    /// A logic-location file that was read to its end.
    struct LogicLocations {
        std::string path;
        RepeatedBits repeatedBits;
    };

    /// All three must outlive this object. `database` is the one that the inputs are added to.
    InputCheck(const ConsolidatedFile& database, Findings& findings, Progress& progress)
        : database_(database), findings_(findings), progress_(progress) {}

    /// Notes what was there before; to be called first. `path` is the database's.
    void addOldDatabase(const std::string& path);

    void beforeDwarf(const std::string& path) override;
    void beforeReading(InputKind kind, const std::string& path, InputFile& reader) override;
    void afterReading(InputKind kind, const std::string& path, const InputFile& reader,
                      bool isUsable) override;
    void beforeMerging(const Kernel& coming) override;
    void ignoredLocations(const Kernel& kernel, const HardwareVariable& known,
                          const HardwareVariable& ignored) override;
    void afterMerging() override;

    const KernelOrigins& origins() const { return origins_; }

    /// By their numbers in origins().
    const std::vector<Input>& inputs() const { return inputs_; }

    /// Those that can be read once more.
    const std::vector<LogicLocations>& readLogicLocations() const { return readLogicLocations_; }

private:
    /// Looks on while a logic-location file is read.
    class Placements final : public LogicLocationObserver {
    public:
        void bitPlaced(const Placement& placement) override { repeatedBits.look(placement); }

        RepeatedBits repeatedBits;
    };

    void add(std::uint64_t line, Severity severity, Code code, std::string text);

    void reportStop(const Finding& stop, InputKind kind, bool isUsable);
    void reportRemarks(const Diagnostic& diagnostic);
    void reportKernels(InputKind kind, const InputFile& reader);
    void reportRepeatedKernels(const std::vector<Kernel>& kernels);
    void reportCarriedArguments(const std::vector<Kernel>& kernels);
    void reportIgnored(InputKind kind, const Kernel& kernel, const KernelOrigins::Ignored& ignored);
    void reportIgnoredLocations();
    void reportRamReport(const InputFile& reader);

    const ConsolidatedFile& database_;
    Findings& findings_;
    Progress& progress_;

    std::string path_; ///< Of the input that is being read.
    FileLook look_;
    bool wasOpened_ = false;
    bool isOfWrongKind_ = false; ///< The input is a file of another kind.

    // Of the kernels that are being merged.
    std::size_t merged_ = 0;    ///< How many came, the one included that is being merged.
    std::string firstIgnored_;  ///< The first net whose locations are dropped,
    std::uint64_t ignored_ = 0; ///< and how many such nets there are.

    KernelOrigins origins_;
    std::vector<Input> inputs_;
    std::unordered_set<std::string> given_; ///< An option's letter and a path.
    Placements placements_;                 ///< Of the logic-location file that is being read.
    std::vector<LogicLocations> readLogicLocations_;
};

} // namespace consolidator::inspect
