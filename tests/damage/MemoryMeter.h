// How much memory a piece of a test takes at most.
//
//     const MemoryMeter meter;
//     work();
//     EXPECT_LE(meter.peak(), 1000000U);
#pragma once

#include <cstddef>

namespace consolidator::test {

/// Counts what `new` gives, in the whole program; one meter at a time. What C libraries take is not
/// seen. Under the address sanitizer, which wants `new` for itself, everything measures 0.
class MemoryMeter {
public:
    MemoryMeter();

    /// The most bytes that were in use at once since the meter was made, beyond those before.
    std::size_t peak() const;

private:
    std::size_t before_;
};

} // namespace consolidator::test
