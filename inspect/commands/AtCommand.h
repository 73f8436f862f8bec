// `consolidator-inspect at DB ADDRESS [OFFSET]`: what lies at a place of the device.
//
//     frame 0x00001a01
//       offsets  bits  kernel      instance  register                               holds
//       160-167  7:0   scale_rows  0         /top/region_0/scale_rows_1/U0/sum_reg  variable sum
//
// With an offset only what lies there, without one all of the frame by ascending offsets. Bits of a
// register that follow one another come in one line. "holds" are the arguments and variables, under
// their source names, that have the register's hardware name.
//
// A register in whose net no path of an instance occurs has "-" as instance. Locations that a
// hand-made database holds in an argument or variable itself have "-" as register.
#pragma once

#include "inspect/commands/DatabaseCommand.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace consolidator::inspect {

class AtCommand final : public DatabaseCommand {
public:
    /// Adds the command to the command line.
    explicit AtCommand(CLI::App& commandLine);

private:
    Status show(const Database& database, Console& console) override;

    explicit AtCommand(CLI::App* command);

    std::string address_;
    std::string offset_; ///< Empty if there is none.
};

/// A number of up to 64 bits that is written in decimal or, behind "0x", in hexadecimal digits.
/// Nothing if the text is anything else.
std::optional<std::uint64_t> parsedNumber(std::string_view text);

} // namespace consolidator::inspect
