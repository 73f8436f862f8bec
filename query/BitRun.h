// The bits of a register, as few lines as they can be told in.
//
//     bits 5:0  frame 0x00002a01  offsets 160-165
//     bit 6     not located
//     bit 7     frame 0x00002a01  offset 167
#pragma once

#include "model/LocationList.h"
#include "model/LogicLocation.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace consolidator {

/// A place that no bit can have: it stands for "not located".
constexpr LogicLocation notLocated{};

/// Bits one behind the other that lie one behind the other in the same frame, or that all have no
/// place.
struct BitRun {
    std::uint32_t first = 0; ///< The lowest bit.
    std::uint32_t last = 0;  ///< The highest one.
    LogicLocation place;     ///< Of the lowest bit.

    bool isLocated() const { return place != notLocated; }

    /// The offset of the highest bit, if the bits are located.
    std::uint32_t lastOffset() const { return place.offset + (last - first); }

    /// Whether a bit behind the highest one at this place would belong to the run.
    bool goesOnWith(const LogicLocation& next) const {
        if (!isLocated() || next == notLocated) {
            return !isLocated() && next == notLocated;
        }
        return next.address == place.address &&
               next.offset == std::uint64_t{place.offset} + (last - first) + 1;
    }

    bool operator==(const BitRun&) const = default;
};

/// Calls visit(run) for each run of the bits, from bit 0 upwards. A list that goes on for millions
/// of bits without a place takes no memory for them.
template <typename Visit>
void forEachBitRun(const LocationList& locations, Visit visit) {
    std::optional<BitRun> run;
    locations.forEachRun([&](std::span<const LogicLocation> places) {
        for (const LogicLocation& place : places) {
            if (run && run->goesOnWith(place)) {
                ++run->last;
                continue;
            }
            const std::uint32_t bit = run ? run->last + 1 : 0;
            if (run) {
                visit(*run);
            }
            run = BitRun{bit, bit, place};
        }
    });
    if (run) {
        visit(*run);
    }
}

/// "from" alone if both are equal, else "from-to".
std::string rangeText(std::uint32_t from, std::uint32_t to);

/// The bits of a run as hardware designers write them: "7:0", or "6" for one.
std::string bitsText(const BitRun& run);

/// Frame address as in a logic-location file: "0x00001a01".
std::string addressText(std::uint32_t address);

/// The number of characters in the longest bitsText() for a register of so many bits.
std::size_t bitsWidth(std::uint32_t bits);

/// Prints one line for each run, as above, each behind `indent`; "no bits" if there are none.
void printBitRuns(std::ostream& out, const LocationList& locations, std::string_view indent);

} // namespace consolidator
