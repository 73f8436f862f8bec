#include "shared/HashIndex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

/// Numbers, with a hash that the test chooses.
template <std::size_t mostQuarters>
class Numbers {
public:
    bool add(std::uint64_t number, std::uint64_t hash) {
        const auto [position, isNew] = index_.findOrAdd(hash, is(number), [&] {
            numbers_.push_back(number);
            return static_cast<std::uint32_t>(numbers_.size() - 1);
        });
        EXPECT_EQ(numbers_[position], number);
        return isNew;
    }

    std::uint32_t find(std::uint64_t number, std::uint64_t hash) const {
        return index_.find(hash, is(number));
    }

    HashIndex<mostQuarters>& index() { return index_; }

private:
    auto is(std::uint64_t number) const {
        return [this, number](std::uint32_t position) { return numbers_[position] == number; };
    }

    std::vector<std::uint64_t> numbers_;
    HashIndex<mostQuarters> index_;
};

constexpr std::uint32_t none = HashIndex<3>::none;

TEST(HashIndex, FindsWhatWasAdded) {
    Numbers<3> numbers;
    EXPECT_EQ(numbers.find(7, 1), none);
    EXPECT_TRUE(numbers.add(7, 1));
    EXPECT_FALSE(numbers.add(7, 1));
    EXPECT_TRUE(numbers.add(8, 2));
    EXPECT_EQ(numbers.find(7, 1), 0U);
    EXPECT_EQ(numbers.find(8, 2), 1U);
    EXPECT_EQ(numbers.find(9, 2), none);
}

template <std::size_t mostQuarters>
void expectAllFound(std::uint64_t (*hashOf)(std::uint64_t)) {
    Numbers<mostQuarters> numbers;
    constexpr std::uint64_t count = 1000;
    for (std::uint64_t number = 0; number < count; ++number) {
        EXPECT_TRUE(numbers.add(number, hashOf(number)));
    }
    for (std::uint64_t number = 0; number < count; ++number) {
        EXPECT_EQ(numbers.find(number, hashOf(number)), number);
    }
    EXPECT_EQ(numbers.find(count, hashOf(count)), none);
}

TEST(HashIndex, FindsAllWhileItGrows) {
    const auto spread = [](std::uint64_t number) { return number * 0x9E3779B97F4A7C15; };
    expectAllFound<1>(spread);
    expectAllFound<2>(spread);
    expectAllFound<3>(spread);
}

TEST(HashIndex, TellsKeysOfOneHashApart) {
    expectAllFound<3>([](std::uint64_t) { return std::uint64_t{0xFFFFFFFFFFFFFFFF}; });
    // Halves that differ only where no place of the table depends on it.
    expectAllFound<3>([](std::uint64_t number) { return number << 20; });
}

TEST(HashIndex, StaysAsItWasWhenAddingFails) {
    Numbers<3> numbers;
    numbers.add(1, 5);
    const auto isNone = [](std::uint32_t) { return false; };
    const auto fail = []() -> std::uint32_t { throw std::runtime_error("no room"); };
    EXPECT_THROW(numbers.index().findOrAdd(6, isNone, fail), std::runtime_error);
    EXPECT_EQ(numbers.find(2, 6), none);
    EXPECT_EQ(numbers.find(1, 5), 0U);
}

} // namespace

} // namespace consolidator::test
