// Marks on numbered things that can all be taken off at once in constant time.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace consolidator {

/// One mark for each of the numbers below a size, for loops that must handle each thing once. All
/// marks are off at the beginning.
class Marks {
public:
    explicit Marks(std::size_t size) : rounds_(size) {}

    /// Marks the number, which must be below the size; false if it was marked already.
    bool set(std::size_t number) {
        const bool isNew = rounds_[number] != round_;
        rounds_[number] = round_;
        return isNew;
    }

    /// Takes all marks off.
    void clear() {
        if (++round_ == 0) { // after four thousand million rounds the numbers come again
            std::ranges::fill(rounds_, 0U);
            round_ = 1;
        }
    }

private:
    std::vector<std::uint32_t> rounds_; ///< The round in which each number was marked last.
    std::uint32_t round_ = 1;
};

} // namespace consolidator
