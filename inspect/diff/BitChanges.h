// How the places of a register's bits differ between two databases.
#pragma once

#include "model/LocationList.h"
#include "model/LogicLocation.h"

#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::inspect {

/// Bits one after the other to which the same has happened.
struct BitChange {
    /// What is known of the bits in one of the databases.
    struct Side {
        enum class State {
            Absent,     ///< The register has fewer bits there.
            NotLocated, ///< A pair of zeros.
            Located,
        };

        State state = State::Absent;
        LogicLocation location =
            {}; ///< Of the first bit; those behind it follow in the same frame.

        bool operator==(const Side&) const = default;
    };

    std::uint32_t first = 0;
    std::uint32_t last = 0;
    Side before;
    Side after;
};

/// The changes by ascending bits, as few as possible; none if the lists are equal.
///
/// Takes time in the entries that are stored, and memory for those with a location: however many
/// bits without one a register claims, they make a change or two.
std::vector<BitChange> bitChanges(const LocationList& before, const LocationList& after);

/// "bits 0-3: not located -> 0x00002a01 166-169".
std::string changeText(const BitChange& change);

} // namespace consolidator::inspect
