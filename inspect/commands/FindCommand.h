// `consolidator-inspect find DB PATTERN`: where arguments, variables and registers lie.
//
//     kernel scale_rows, sum_reg
//       variable sum, int, 32 bits
//       instance 0: /top/region_0/scale_rows_1/U0/sum_reg
//         bit  address     offset
//           0  0x00001a01  160
//           …
//       instance 1: /top/region_0/scale_rows_2/U0/sum_reg
//         bit  address     offset
//           …
//           6  not located
//           7  0x00002a01  167
//
// A part for each hardware name of a kernel of which anything matches, with all that goes by it:
// the arguments and variables, and the registers whose net ends in it. Where only nets match, the
// other registers are left out.
#pragma once

#include "inspect/commands/DatabaseCommand.h"

#include <string>

namespace consolidator::inspect {

/// The pattern is a NamePattern: a glob, or with "-r" a regular expression.
class FindCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit FindCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit FindCommand(CLI::App* command);

    std::string pattern_;
    bool isRegex_ = false;
};

} // namespace consolidator::inspect
