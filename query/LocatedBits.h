// The bits of a register or variable that have a place in the device.
#pragma once

#include "model/LocationList.h"
#include "model/LogicLocation.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

namespace consolidator {

/// Calls visit(bit, location) for each bit that has a location: one that was never seen is a pair
/// of zeros.
template <typename Visit>
void forEachLocatedBit(const LocationList& locations, Visit visit) {
    std::uint32_t bit = 0;
    locations.forEachRun([&](std::span<const LogicLocation> run) {
        for (const LogicLocation& location : run) {
            if (location != LogicLocation{}) {
                visit(bit, location);
            }
            ++bit;
        }
    });
}

/// How many bits have a location.
inline std::uint64_t locatedBits(const LocationList& locations) {
    std::uint64_t count = 0;
    locations.forEachRun([&count](std::span<const LogicLocation> run) {
        count += run.size() - static_cast<std::uint64_t>(std::ranges::count(run, LogicLocation{}));
    });
    return count;
}

/// The same as forEachLocatedBit() above for one instance of a variable.
template <typename Visit>
void forEachLocatedBit(const std::vector<LogicLocation>& locations, Visit visit) {
    std::uint32_t bit = 0;
    for (const LogicLocation& location : locations) {
        if (location != LogicLocation{}) {
            visit(bit, location);
        }
        ++bit;
    }
}

} // namespace consolidator
