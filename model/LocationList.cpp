#include "model/LocationList.h"

#include <array>
#include <limits>
#include <utility>

namespace consolidator {

namespace {

/// The row may always have this many entries, so that a bus of 32 bits has its row from the first
/// line on, in whatever order its bits come.
constexpr std::uint64_t entriesAtFirst = 32;

/// It may have this many more for each bit that came behind it. Growing doubles it at least, so it
/// can reach twice the sum.
constexpr std::uint64_t entriesPerSetting = 2;

} // namespace

LocationList::LocationList(std::initializer_list<LogicLocation> locations)
    : LocationList(std::vector(locations)) {}

LocationList::LocationList(std::vector<LogicLocation> locations)
    : row_(std::move(locations)),
      size_(static_cast<std::uint32_t>(row_.size())),
      settings_(size_) {}

LogicLocation LocationList::operator[](std::uint32_t bit) const {
    if (bit < row_.size()) {
        return row_[bit];
    }
    // From the back: a bit that was set again has several entries, and the last one counts.
    const auto last = std::find_if(beyond_.rbegin(), beyond_.rend(),
                                   [bit](const Beyond& entry) { return entry.bit == bit; });
    return last == beyond_.rend() ? LogicLocation() : last->location;
}

void LocationList::set(std::uint32_t bit, LogicLocation location) {
    size_ = std::max(size_, bit + 1);
    if (bit >= row_.size()) {
        // At its largest it allows a row of any length, so it need not count on.
        settings_ += settings_ < std::numeric_limits<std::uint32_t>::max() ? 1 : 0;
        if (!isClose(bit)) {
            // Without a look for an entry of this bit, which could take long: the last one counts.
            beyond_.push_back({bit, location});
            return;
        }
        extendRow(bit);
    }
    row_[bit] = location;
}

bool LocationList::isClose(std::uint32_t bit) const {
    // In 64 bits: the bound itself can be beyond 2^32.
    return bit < entriesAtFirst + entriesPerSetting * settings_;
}

/// Makes the row long enough for `bit` and takes in the bits that belong to it now. Doubling it
/// keeps the number of walks over the bits beyond small; no row is longer than the list.
void LocationList::extendRow(std::uint32_t bit) {
    const std::size_t length = std::max<std::size_t>(std::size_t{bit} + 1, 2 * row_.size());
    row_.resize(std::min<std::size_t>(length, size_));
    std::erase_if(beyond_, [this](const Beyond& entry) {
        const bool isInRow = entry.bit < row_.size();
        if (isInRow) {
            row_[entry.bit] = entry.location;
        }
        return isInRow;
    });
}

std::vector<LocationList::Beyond> LocationList::sortedBeyond() const {
    // Backwards and stable, the last location of each bit comes first and is the one that stays.
    std::vector<Beyond> sorted(beyond_.rbegin(), beyond_.rend());
    std::ranges::stable_sort(sorted, {}, &Beyond::bit);
    // Not of std::ranges: Clang 14 cannot compile what GCC 12's library returns there.
    const auto repeats =
        std::unique(sorted.begin(), sorted.end(),
                    [](const Beyond& left, const Beyond& right) { return left.bit == right.bit; });
    sorted.erase(repeats, sorted.end());
    return sorted;
}

std::span<const LogicLocation> LocationList::zeros() {
    static constexpr std::array<LogicLocation, 512> block{};
    return block;
}

std::vector<LocationList::Beyond> LocationList::entriesInUse() const {
    std::vector<Beyond> entries;
    const auto add = [&entries](std::uint32_t bit, const LogicLocation& location) {
        // A bit that was set to zeros equals one that was never set.
        if (location != LogicLocation()) {
            entries.push_back({bit, location});
        }
    };
    for (std::uint32_t bit = 0; bit < row_.size(); ++bit) {
        add(bit, row_[bit]);
    }
    for (const Beyond& entry : sortedBeyond()) {
        add(entry.bit, entry.location);
    }
    return entries;
}

bool LocationList::operator==(const LocationList& other) const {
    return size_ == other.size_ && entriesInUse() == other.entriesInUse();
}

} // namespace consolidator
