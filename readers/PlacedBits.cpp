#include "readers/PlacedBits.h"

#include <algorithm>

namespace consolidator {

namespace {

std::uint64_t keyOf(KnownNets::Register where, std::uint32_t bitIndex) {
    return std::uint64_t{where.position} << 32U | bitIndex;
}

template <typename Element>
Element& elementOf(std::vector<Element>& list, std::size_t position) {
    if (position >= list.size()) {
        list.resize(position + 1);
    }
    return list[position];
}

} // namespace

std::optional<LogicLocation> PlacedBits::find(KnownNets::Register where, std::uint32_t bitIndex,
                                              const LocationList& locations) const {
    const std::uint32_t word = bitIndex / bitsOfAWord;
    if (where.kernel >= placed_.size() || where.position >= placed_[where.kernel].size()) {
        return std::nullopt;
    }
    const Bits& bits = placed_[where.kernel][where.position];
    if (word >= bits.size() || (bits[word] >> bitIndex % bitsOfAWord & 1U) == 0) {
        return std::nullopt;
    }
    // What a register finds at once it always will. So a bit that it does not find so was not found
    // so either when it was added, and far_ has it.
    return locations.findsAtOnce(bitIndex) ? locations[bitIndex]
                                           : far_[where.kernel].at(keyOf(where, bitIndex));
}

void PlacedBits::add(KnownNets::Register where, std::uint32_t bitIndex, LogicLocation location,
                     const LocationList& locations) {
    Bits& bits = elementOf(elementOf(placed_, where.kernel), where.position);
    elementOf(bits, bitIndex / bitsOfAWord) |= std::uint64_t{1} << bitIndex % bitsOfAWord;
    if (!locations.findsAtOnce(bitIndex)) {
        elementOf(far_, where.kernel)[keyOf(where, bitIndex)] = location;
    }
}

} // namespace consolidator
