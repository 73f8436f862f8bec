// Marks on numbers, set one by one and taken off together.

#include "shared/Marks.h"

#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

TEST(Marks, AreSetOnce) {
    Marks marks(3);
    EXPECT_TRUE(marks.set(2));
    EXPECT_FALSE(marks.set(2));
    EXPECT_TRUE(marks.set(0));
    EXPECT_FALSE(marks.set(2));
    EXPECT_FALSE(marks.set(0));
    EXPECT_TRUE(marks.set(1));
}

TEST(Marks, AreAllOffAfterClearing) {
    Marks marks(2);
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(marks.set(1));
        EXPECT_FALSE(marks.set(1));
        marks.clear();
    }
    EXPECT_TRUE(marks.set(0));
    EXPECT_TRUE(marks.set(1));
}

} // namespace

} // namespace consolidator::test
