// `consolidator-inspect kernel DB NAME`: everything that a database has of one kernel.
//
//     kernel scale_rows, type HLS
//
//     Instances (in JSON each path ends in "/U0")
//       #  path
//       0  top/region_0/scale_rows_1
//       1  top/region_0/scale_rows_2
//
//     Arguments
//       source name  hardware name  type  width  registers  instances
//       input        input_r        int*     64          0
//       …
//     Variables
//       source name  hardware name  type  width  registers  instances
//       sum          sum_reg        int      32          2  0-1
//
//     Registers
//       instance 0: /top/region_0/scale_rows_1/U0/sum_reg
//         bits 7:0  frame 0x00001a01  offsets 160-167
//       instance 1: /top/region_0/scale_rows_2/U0/sum_reg
//         bits 5:0  frame 0x00002a01  offsets 160-165
//         bit 6     not located
//         bit 7     frame 0x00002a01  offset 167
//
//     Conditions
//       at                 condition
//       start              == 1'b1 $i/kc_start
//       scale_rows.cpp:14  == 1'b1 $i/fsm_state2
//
//     BRAMs
//       none
//
// The columns "registers" and "instances" tell how many registers there are by the hardware name,
// and in which instances: "0-2, 5 (2 each)" is one in each of the instances 0, 1 and 2, and two in
// instance 5. Of many pieces only the first are shown. "none" is a register in whose net no path of
// an instance occurs.
//
// A hand-made database may hold locations in an argument or variable itself: they follow the
// registers, under a heading of their own. It may also hold several kernels of one name: all are
// shown.
#pragma once

#include "inspect/commands/DatabaseCommand.h"

#include <string>

namespace consolidator::inspect {

class KernelCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit KernelCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit KernelCommand(CLI::App* command);

    std::string name_;
};

} // namespace consolidator::inspect
