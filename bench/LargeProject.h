// Makes large, realistic input files: the same ones for the same shape, hundreds of MiB in seconds.
//
// All of them describe one project. Kernel i is named "kernel_I"; its instances lie at
// "top/region/kernel_I_N"; its variables "variable_J" are held in registers "variable_J_reg":
//
//     kernel_3                                                         writeHierarchy()
//     type: hls
//     instance path: top/region/kernel_3_0
//
//     Bit 26214438 0x00402a1f 2214 DIE2 0 Block=MEMORY_X12Y307 Ram=B:BIT91        writeLogic-
//     Bit 40214438 0x00102a1f 214 DIE1 0 Block=TILE_X2Y37 Latch=AQ Net=top/region/kernel_3_0/inst/
//         variable_7_reg[31]                                           (one line)  Locations()
#pragma once

#include "model/Kernel.h"

#include <cstdint>
#include <iosfwd>
#include <vector>

namespace consolidator::bench {

/// How large a project is.
struct Shape {
    std::uint32_t kernels = 64;
    std::uint32_t instances = 4;  ///< Per kernel.
    std::uint32_t variables = 40; ///< Per kernel.
    std::uint32_t bits = 32;      ///< Per register.
    std::uint32_t perLine = 4;    ///< Variables of one source line, which has one condition.
};

/// What a logic-location file has.
struct Lines {
    std::uint32_t withNet = 15;      ///< Percent of all lines; the others describe memory contents.
    std::uint32_t ofKernels = 33;    ///< Percent of those with a net; the others have no kernel.
    std::uint32_t registers = 10240; ///< The most registers of kernels that it names.
    std::uint32_t once = 0;          ///< Not 0: no bit of them has two lines.
};

/// The hierarchy metadata file.
void writeHierarchy(std::ostream& out, const Shape& shape);

/// The HLS metadata file of one kernel. All kernels of a project have the same.
void writeHls(std::ostream& out, const Shape& shape);

/// A kernel description XML of one kernel, about as long as `bytes`: `argumentShare` percent of its
/// elements are arguments, each with a port; the others are signals of modules. The consolidator
/// takes only the arguments.
void writeKernelXml(std::ostream& out, std::uint32_t argumentShare, std::uint64_t bytes);

/// A logic-location file about as long as `bytes`, some 80 bytes a line.
void writeLogicLocations(std::ostream& out, const Shape& shape, const Lines& lines,
                         std::uint64_t bytes);

/// What a database knows of the project when every bit of every register has been seen.
std::vector<Kernel> fullKernels(const Shape& shape);

} // namespace consolidator::bench
