// `consolidator-inspect diff DB1 DB2`: what the second database has that the first one has not, and
// the other way round.
//
//     --- a.db
//     +++ b.db
//     ~ project: accelerator -> accelerator_2
//     + kernel checksum: C, 1 instance, 3 arguments, 1 variable, 2 registers, 1 condition
//     kernel scale_rows
//       + instance top/region_0/scale_rows_3
//       ~ register /top/region_0/scale_rows_2/U0/sum_reg: bit 6: not located -> 0x00002a01 166
//
// Nothing is printed if the two hold the same. Where sections lie, and the JSON document, which
// follows from the kernels, are not compared.
#pragma once

#include "inspect/commands/Command.h"

#include <string>

namespace CLI { // NOLINT(readability-identifier-naming)
class App;
} // namespace CLI

namespace consolidator::inspect {

/// The status is `Findings` if anything differs. Of damaged databases, what can be read is
/// compared, and the status is `Unreadable`.
class DiffCommand final : public Command {
public:
    /// Adds the command to the command line.
    explicit DiffCommand(CLI::App& commandLine);

    Status run(Console& console) override;

private:
    std::string before_;
    std::string after_;
};

} // namespace consolidator::inspect
