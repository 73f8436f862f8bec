// Which bits a logic-location file has placed so far, for an observer of its reading.
#pragma once

#include "model/LocationList.h"
#include "readers/KnownNets.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace consolidator {

/// Tells bits that a file has placed from those that a register had before. Where they lie is in
/// the register itself, so that a bit in here takes no more than a bit, and its register 24 bytes.
class PlacedBits {
public:
    /// Where the file has placed a bit; nothing if it has not. `locations` are the register's.
    std::optional<LogicLocation> find(KnownNets::Register where, std::uint32_t bitIndex,
                                      const LocationList& locations) const;

    /// Notes that the bit was placed, and that `locations` has it now.
    void add(KnownNets::Register where, std::uint32_t bitIndex, LogicLocation location,
             const LocationList& locations);

private:
    using Bits = std::vector<std::uint64_t>;

    static constexpr std::uint32_t bitsOfAWord = 64;

    std::vector<std::vector<Bits>> placed_; ///< By kernel, position and bit index.

    /// By kernel, then position and bit index, the bits that their register does not find at once.
    std::vector<std::unordered_map<std::uint64_t, LogicLocation>> far_;
};

} // namespace consolidator
