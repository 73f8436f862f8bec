// `consolidator-inspect summary DB`: what is in a database, at a glance.
//
//     accelerator.bin: consolidated file, version 1.1, 5120 bytes
//     project: accelerator
//     DWARF:   38 bytes
//
//     Sections
//       #  type          offset  size
//       0  project name     112    11
//       …
//     Kernels
//       name        type  instances  arguments  variables  registers  located bits  conditions
//       scale_rows  HLS           2          4          2          5            31           3
#pragma once

#include "inspect/commands/DatabaseCommand.h"

namespace consolidator::inspect {

class SummaryCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit SummaryCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;
};

} // namespace consolidator::inspect
