// `consolidator-inspect verify DB`: whether a database is what it should be, to the byte.
//
//     accelerator.bin:0x8aa: error: section 3 (kernel data), kernel 2 of 2 ("checksum"), argument 1
//         of 3: the hardware name has a length of 9000, with 411 bytes left
//     accelerator.bin: 1 error
//
// (each finding on one line), or
//
//     accelerator.bin: no faults found
#pragma once

#include "inspect/commands/Command.h"

#include <string>

namespace CLI { // NOLINT(readability-identifier-naming)
class App;
} // namespace CLI

namespace consolidator::inspect {

/// The status is `Findings` if there is an error or a warning; notes alone are fine. A file that is
/// no database at all is one with a finding, and only one that cannot be opened is `Unreadable`.
class VerifyCommand final : public Command {
public:
    /// Adds the command to the command line.
    explicit VerifyCommand(CLI::App& commandLine);

    Status run(Console& console) override;

private:
    std::string path_;
};

} // namespace consolidator::inspect
