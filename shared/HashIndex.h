// Positions of a list's elements, found by the hashes of their keys.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace consolidator {

/// A hash table with open addressing and linear probing, of eight bytes for each of its places. It
/// keeps no keys, only half of a hash of each: almost every place that a search passes belongs to
/// another key and is told by that, without a look at the element, which lies somewhere else in
/// memory. It also spares hashing all keys again when the table grows.
///
/// Hashes must be such that no file can aim at them (KeyedHash). Of the table's places at most
/// `mostQuarters` in four are taken: with fewer a search is shorter, above all one in vain.
template <std::size_t mostQuarters>
class HashIndex {
public:
    static constexpr auto none = static_cast<std::uint32_t>(-1);

    /// The half of a hash that the table works with. It has bits enough: no table has more places
    /// than there are positions.
    static std::uint32_t half(std::uint64_t hash) { return static_cast<std::uint32_t>(hash); }

    /// The position of the key with this hash, or none. isKey(position) tells whether the element
    /// there has it.
    template <typename IsKey>
    std::uint32_t find(std::uint64_t hash, IsKey isKey) const {
        return slots_.empty() ? none : slots_[placeOf(half(hash), isKey)].position;
    }

    /// The same, but if there is none, calls add(), which adds the element and returns its
    /// position, not none. The second value tells whether it was added. If add() throws, all stays
    /// as it was.
    template <typename IsKey, typename Add>
    std::pair<std::uint32_t, bool> findOrAdd(std::uint64_t hash, IsKey isKey, Add add) {
        makeRoom();
        Slot& slot = slots_[placeOf(half(hash), isKey)];
        if (slot.position != none) {
            return {slot.position, false};
        }
        slot = {add(), half(hash)};
        ++used_;
        return {slot.position, true};
    }

private:
    struct Slot {
        std::uint32_t position = none; ///< Of an element, or none.
        std::uint32_t hash = 0;        ///< Half of that of its key.
    };

    /// The place that the key has, or the free one where it belongs.
    template <typename IsKey>
    std::size_t placeOf(std::uint32_t hash, IsKey isKey) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t place = hash & mask;
        while (slots_[place].position != none &&
               !(slots_[place].hash == hash && isKey(slots_[place].position))) {
            place = (place + 1) & mask;
        }
        return place;
    }

    /// For one more.
    void makeRoom() {
        static_assert(mostQuarters >= 1 && mostQuarters <= 3);
        constexpr std::size_t fewest = 8;
        if (4 * (used_ + 1) <= mostQuarters * slots_.size()) {
            return;
        }
        const std::vector<Slot> old =
            std::exchange(slots_, std::vector<Slot>(std::max(fewest, 2 * slots_.size())));
        for (const Slot& slot : old) {
            if (slot.position != none) {
                slots_[placeOf(slot.hash, [](std::uint32_t) { return false; })] = slot;
            }
        }
    }

    std::vector<Slot> slots_; ///< None, or a power of two.
    std::size_t used_ = 0;    ///< Slots that hold a position.
};

} // namespace consolidator
