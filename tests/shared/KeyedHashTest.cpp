// The hash: equal inputs have equal hashes, and inputs that differ anywhere have different ones.
#include "shared/KeyedHash.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>

namespace consolidator::test {
namespace {

TEST(KeyedHash, EqualTextsHaveEqualHashes) {
    for (std::size_t length = 0; length < 40; ++length) {
        EXPECT_EQ(keyHash(std::string(length, 'x')), keyHash(std::string(length, 'x')));
    }
}

TEST(KeyedHash, AnotherByteAnywhereGivesAnotherHash) {
    const std::string text = "/top/k_1/inst/state_reg";
    std::set<std::uint64_t> hashes{keyHash(text)};
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::string other = text;
        other[i] = '\xFF';
        hashes.insert(keyHash(other));
    }
    EXPECT_EQ(hashes.size(), text.size() + 1);
}

TEST(KeyedHash, ZeroBytesCount) {
    std::set<std::uint64_t> hashes;
    for (std::size_t length = 0; length <= 20; ++length) {
        hashes.insert(keyHash(std::string(length, '\0')));
    }
    EXPECT_EQ(hashes.size(), 21U);
}

TEST(KeyedHash, ManyShortTextsSpreadOverTheLowBits) {
    std::set<std::uint64_t> lows;
    for (int i = 0; i < 1024; ++i) {
        lows.insert(keyHash("state_" + std::to_string(i)) % 1024);
    }
    // Evenly spread hashes take about 647 of the 1024 values.
    EXPECT_GT(lows.size(), 500U);
}

TEST(KeyedHash, APieceBelongsToItsTextOnly) {
    EXPECT_NE(KeyedHash().add("ab").add("c").value(), KeyedHash().add("a").add("bc").value());
    EXPECT_NE(KeyedHash().add("").add("a").value(), KeyedHash().add("a").add("").value());
}

TEST(KeyedHash, NumbersCountInTheirOrder) {
    EXPECT_EQ(KeyedHash().add(1U).add(2U).value(), KeyedHash().add(1U).add(2U).value());
    EXPECT_NE(KeyedHash().add(1U).add(2U).value(), KeyedHash().add(2U).add(1U).value());
    EXPECT_NE(KeyedHash().add(0U).value(), KeyedHash().add(0U).add(1U).value());
}

} // namespace
} // namespace consolidator::test
