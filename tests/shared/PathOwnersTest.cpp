#include "shared/PathOwners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PathOwners, HasThePathsInOrderAndTheirOwnersOnce) {
    const PathOwners owners({{"top/b", 2}, {"top/a", 1}, {"top/b", 0}, {"top/b", 2}, {"", 3}});
    EXPECT_THAT(owners.paths(), ElementsAre("", "top/a", "top/b"));
    EXPECT_THAT(owners.ownersOf(0), ElementsAre(3));
    EXPECT_THAT(owners.ownersOf(1), ElementsAre(1));
    EXPECT_THAT(owners.ownersOf(2), ElementsAre(0, 2));
    EXPECT_EQ(owners.entryCount(), 4U);
}

TEST(PathOwners, OfNothingIsEmpty) {
    EXPECT_THAT(PathOwners({}).paths(), IsEmpty());
    EXPECT_EQ(PathOwners({}).entryCount(), 0U);
}

} // namespace

} // namespace consolidator::test
