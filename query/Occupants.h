// What lies at a place of the device, or at a range of places.
//
//     for (const Occupant& occupant : occupantsOf(views, PlaceRange::frame(0x1a01))) {
//         occupant.bits;                   // bits 7:0 at offset 160 and after
//         occupant.hardware->name;         // the register, "/top/region_0/scale_rows_1/U0/sum_reg"
//         occupant.variables;              // what it holds: variable "sum"
//     }
#pragma once

#include "query/Bits.h"
#include "query/KernelView.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace consolidator {

/// Frames from one address to another, and of each of them the bits from one offset to another; all
/// four count in. Nothing lies in a range whose first address or offset is above its last.
struct PlaceRange {
    std::uint32_t firstAddress = 0;
    std::uint32_t lastAddress = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t firstOffset = 0;
    std::uint32_t lastOffset = std::numeric_limits<std::uint32_t>::max();

    /// All of one frame.
    static PlaceRange frame(std::uint32_t address) {
        return {.firstAddress = address, .lastAddress = address};
    }

    /// One bit of the device.
    static PlaceRange place(std::uint32_t address, std::uint32_t offset) {
        return {address, address, offset, offset};
    }

    /// The part of a run of bits that lies in the range; nothing for a run without a place.
    std::optional<BitRun> partOf(const BitRun& run) const;
};

/// Bits of one register that lie there one behind the other. All that it points to is the kernel's
/// and its view's.
struct Occupant {
    const KernelView* kernel = nullptr; ///< One of those that were given; never null in a result.
    std::optional<std::uint32_t> instance; ///< Nothing for a net in which no instance path occurs.
    const HardwareVariable* hardware = nullptr; ///< Null for an argument's or variable's own bits,
                                                ///< which only a database made by hand has.
    std::span<const SourceVariable> variables;  ///< What the register holds.
    SourceVariable itself;                      ///< Who it is where there is no register.
    BitRun bits;                                ///< Those in the range, which all have places.
};

/// What lies in the range, by address and offset; at one place, where several claim it, in the
/// order of the kernels and of their registers. Takes a look at each run of bits of the kernels,
/// whose views must outlive the result.
std::vector<Occupant> occupantsOf(std::span<const KernelView> kernels, const PlaceRange& range);

} // namespace consolidator
