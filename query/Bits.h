// The bits of a register, and where they lie: runs of them, and those that have a place.
#pragma once

#include "model/LocationList.h"
#include "model/LogicLocation.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace consolidator {

/// A place that no bit can have: it stands for "not located".
constexpr LogicLocation notLocated{};

/// Bits one behind the other that lie one behind the other in the same frame, or that all have no
/// place.
struct BitRun {
    std::uint32_t first = 0; ///< The lowest bit index.
    std::uint32_t last = 0;  ///< The highest one.
    LogicLocation place;     ///< Of the lowest bit.

    /// Whether the bits have places; then all of them do.
    bool isLocated() const { return place != notLocated; }

    /// The offset of the highest bit; means nothing for bits that are not located.
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

/// Calls visit(bit, location) for each bit that has a location.
template <typename Visit>
void forEachLocatedBit(const LocationList& locations, Visit visit) {
    std::uint32_t bit = 0;
    locations.forEachRun([&](std::span<const LogicLocation> run) {
        for (const LogicLocation& location : run) {
            if (location != notLocated) {
                visit(bit, location);
            }
            ++bit;
        }
    });
}

/// The same for one instance of a variable with locations of its own.
template <typename Visit>
void forEachLocatedBit(const std::vector<LogicLocation>& locations, Visit visit) {
    std::uint32_t bit = 0;
    for (const LogicLocation& location : locations) {
        if (location != notLocated) {
            visit(bit, location);
        }
        ++bit;
    }
}

/// How many bits have a location.
inline std::uint64_t locatedBits(const LocationList& locations) {
    std::uint64_t count = 0;
    locations.forEachRun([&count](std::span<const LogicLocation> run) {
        count += run.size() - static_cast<std::uint64_t>(std::ranges::count(run, notLocated));
    });
    return count;
}

} // namespace consolidator
