#include "inspect/diff/BitChanges.h"

#include "query/Bits.h"
#include "query/Words.h"

#include <algorithm>
#include <cstddef>

namespace consolidator::inspect {

namespace {

using Side = BitChange::Side;
using State = Side::State;

struct LocatedBit {
    std::uint32_t bit;
    LogicLocation location;
};

std::vector<LocatedBit> locatedBitsOf(const LocationList& list) {
    std::vector<LocatedBit> result;
    forEachLocatedBit(list, [&result](std::uint32_t bit, const LogicLocation& location) {
        result.push_back({bit, location});
    });
    return result;
}

/// One of the two lists, to be asked for ascending bits.
class BitCursor {
public:
    explicit BitCursor(const LocationList& list)
        : located_(locatedBitsOf(list)), size_(list.size()) {}

    /// The next bit with a location, or `none` if there is no more.
    std::uint64_t next(std::uint64_t none) const {
        return at_ < located_.size() ? located_[at_].bit : none;
    }

    /// What is known of a bit that is not beyond next(). Goes on behind it.
    Side take(std::uint64_t bit) {
        if (at_ < located_.size() && located_[at_].bit == bit) {
            return {State::Located, located_[at_++].location};
        }
        return {bit < size_ ? State::NotLocated : State::Absent};
    }

private:
    std::vector<LocatedBit> located_;
    std::uint32_t size_;
    std::size_t at_ = 0;
};

/// Whether a bit that is `distance` behind the first one of a side belongs to it.
bool goesOn(const Side& side, std::uint32_t distance, const Side& bit) {
    return bit.state == side.state && bit.location.address == side.location.address &&
           bit.location.offset ==
               side.location.offset + std::uint64_t{side.state == State::Located ? distance : 0};
}

/// Appends the change to the list, or to the list's last change if it goes on with it.
void append(std::vector<BitChange>& changes, const BitChange& change) {
    if (change.before == change.after) {
        return;
    }
    if (!changes.empty()) {
        BitChange& open = changes.back();
        const std::uint32_t distance = change.first - open.first;
        if (open.last + 1 == change.first && goesOn(open.before, distance, change.before) &&
            goesOn(open.after, distance, change.after)) {
            open.last = change.last;
            return;
        }
    }
    changes.push_back(change);
}

std::string sideInWords(const Side& side, std::uint32_t bits) {
    switch (side.state) {
    case State::Absent:
        return "none";
    case State::NotLocated:
        return "not located";
    case State::Located:
        break;
    }
    const std::uint32_t offset = side.location.offset;
    return addressText(side.location.address) + ' ' + rangeText(offset, offset + (bits - 1));
}

} // namespace

std::vector<BitChange> bitChanges(const LocationList& before, const LocationList& after) {
    std::vector<BitChange> changes;
    BitCursor left(before);
    BitCursor right(after);
    const std::uint64_t shorter = std::min(before.size(), after.size());
    const std::uint64_t end = std::max(before.size(), after.size());
    std::uint64_t bit = 0;
    while (bit < end) {
        // Up to the next location, bits differ only where one of the registers has none left.
        const std::uint64_t located = std::min(left.next(end), right.next(end));
        bit = std::max(bit, std::min(located, shorter));
        const std::uint64_t last = std::max(bit + 1, located) - 1;
        append(changes, {static_cast<std::uint32_t>(bit), static_cast<std::uint32_t>(last),
                         left.take(bit), right.take(bit)});
        bit = last + 1;
    }
    return changes;
}

std::string changeText(const BitChange& change) {
    const std::uint32_t bits = change.last - change.first + 1;
    const std::string number = std::to_string(change.first);
    return (bits == 1 ? "bit " + number : "bits " + number + '-' + std::to_string(change.last)) +
           ": " + sideInWords(change.before, bits) + " -> " + sideInWords(change.after, bits);
}

} // namespace consolidator::inspect
