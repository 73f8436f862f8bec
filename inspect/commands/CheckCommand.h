// `consolidator-inspect check OPTIONS`: what a run of the consolidator would make of its inputs,
// and what it would pass over in silence.
//
//     $ consolidator-inspect check -f accelerator.bin -h system.hier -k kernel.xml -l top.ll
//     top.ll:30: error: line begins with "Info", not "Bit": reading stops here and nothing of …
//     …
//
// It takes the inputs as the consolidator does, reads them by the same code in the same order, and
// writes nothing. What it prints is told in CheckReport.h.
#pragma once

#include "driver/Inputs.h"
#include "inspect/check/Findings.h"
#include "inspect/commands/Command.h"

#include <string>
#include <vector>

namespace CLI { // NOLINT(readability-identifier-naming)
class App;
} // namespace CLI

namespace consolidator::inspect {

class CheckCommand final : public Command {
public:
    /// Adds the command to the command line.
    explicit CheckCommand(CLI::App& commandLine);

    Status run(Console& console) override;

private:
    /// `all` has these options already, by their whole names; without it none is abbreviated.
    void addOptions(CLI::App& command, const CLI::App* all);
    Status check(Console& console);
    void reportDatabaseAsInput(Findings& findings) const;

    InputPaths inputs_;
    std::vector<std::string> dwarfFiles_;
    bool add_ = false;    ///< As without; the consolidator has this option.
    bool create_ = false; ///< What the database holds now is not looked at.
    std::string databasePath_;
    std::string project_;
    std::string format_ = "text";
};

} // namespace consolidator::inspect
