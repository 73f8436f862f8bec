// Where the bits of a register lie, bit by bit.
#pragma once

#include "model/LogicLocation.h"
#include "shared/Prefetch.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <span>
#include <vector>

namespace consolidator {

/// A register's locations by bit number. Bits that were never set are pairs of zeros.
///
/// To its users it is a plain list with an entry for each bit up to the highest one that was set.
/// Inside, only the entries up to where bits come closely are stored in a row. Bits far beyond are
/// kept in the order in which they were set, with their number, until enough of them have come to
/// close the gap: a line of a logic-location file that names bit 10,000,000 of a register costs 12
/// bytes, not 80 million.
class LocationList {
public:
    using value_type = LogicLocation;
    class const_iterator; // NOLINT(readability-identifier-naming): the standard's name

    LocationList() = default;
    LocationList(std::initializer_list<LogicLocation> locations);
    explicit LocationList(std::vector<LogicLocation> locations);

    /// The number of entries: the highest bit that was set, plus one. At most 2^32 - 1.
    std::uint32_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    /// The entry of a bit below size(). Slow where bits were set far beyond the row; to go through
    /// a whole list, use forEachRun().
    LogicLocation operator[](std::uint32_t bit) const;

    /// Whether operator[] finds the entry without a walk through others.
    bool findsAtOnce(std::uint32_t bit) const { return bit < row_.size(); }

    /// Sets a bit below 2^32 - 1, with as many pairs of zeros before it as are missing. A later
    /// location for the same bit replaces the earlier one. Constant time and memory on average.
    void set(std::uint32_t bit, LogicLocation location);

    /// Has the processor fetch the entry of a bit that is going to be set again.
    void prefetchEntry(std::uint32_t bit) const {
        if (bit < row_.size()) {
            prefetch(&row_[bit]);
        }
    }

    /// Calls visit(entries), a std::span, for one run of entries after the other, from bit 0 to the
    /// last one. Long gaps come as runs of zeros of limited length.
    template <typename Visit>
    void forEachRun(Visit visit) const;

    const_iterator begin() const;
    const_iterator end() const;

    /// Equal entries, however they are stored. Takes time in the bits that were set.
    bool operator==(const LocationList& other) const;

private:
    /// A bit that lies far beyond the row.
    struct Beyond {
        std::uint32_t bit;
        LogicLocation location;

        bool operator==(const Beyond&) const = default;
    };

    static std::span<const LogicLocation> zeros();

    bool isClose(std::uint32_t bit) const;
    void extendRow(std::uint32_t bit);
    std::vector<Beyond> sortedBeyond() const;
    std::vector<Beyond> entriesInUse() const;

    std::vector<LogicLocation> row_; ///< The entries of the lowest bits.
    std::vector<Beyond> beyond_;     ///< Bits behind the row as they were set; the last one counts.
    std::uint32_t size_ = 0;
    std::uint32_t settings_ = 0; ///< How often a bit behind the row came; bounds the row's length.
};

/// Reads the entries one after the other.
class LocationList::const_iterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = LogicLocation;
    using difference_type = std::ptrdiff_t;
    using pointer = const LogicLocation*;
    using reference = LogicLocation;

    const_iterator() = default;
    const_iterator(const LocationList& list, std::uint32_t bit) : list_(&list), bit_(bit) {}

    LogicLocation operator*() const { return (*list_)[bit_]; }
    const_iterator& operator++() {
        ++bit_;
        return *this;
    }
    const_iterator operator++(int) {
        const const_iterator before = *this;
        ++bit_;
        return before;
    }
    bool operator==(const const_iterator& other) const { return bit_ == other.bit_; }

private:
    const LocationList* list_ = nullptr;
    std::uint32_t bit_ = 0;
};

inline LocationList::const_iterator LocationList::begin() const {
    return {*this, 0};
}

inline LocationList::const_iterator LocationList::end() const {
    return {*this, size_};
}

template <typename Visit>
void LocationList::forEachRun(Visit visit) const {
    if (!row_.empty()) {
        visit(std::span(row_));
    }
    auto next = static_cast<std::uint32_t>(row_.size());
    for (const Beyond& entry : sortedBeyond()) {
        while (next < entry.bit) {
            const std::size_t gap = std::min<std::size_t>(entry.bit - next, zeros().size());
            visit(zeros().first(gap));
            next += static_cast<std::uint32_t>(gap);
        }
        visit(std::span(&entry.location, 1));
        ++next;
    }
}

} // namespace consolidator
