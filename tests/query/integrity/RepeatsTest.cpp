#include "query/integrity/Repeats.h"

#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

TEST(Repeats, FindsKeysThatWereAddedMoreThanOnce) {
    Repeats repeats;
    repeats.add(7, 10);
    repeats.add(3, 20);
    repeats.add(9, 30);
    repeats.add(3, 40);
    repeats.add(7, 50);
    repeats.add(3, 60);
    const std::vector<Repeats::Repeat> found = repeats.take();
    ASSERT_EQ(found.size(), 2);
    EXPECT_EQ(found[0].first, 20);
    EXPECT_EQ(found[0].second, 40);
    EXPECT_EQ(found[0].count, 3);
    EXPECT_EQ(found[1].first, 10);
    EXPECT_EQ(found[1].second, 50);
    EXPECT_EQ(found[1].count, 2);
    EXPECT_TRUE(repeats.take().empty());
}

} // namespace

} // namespace consolidator::test
