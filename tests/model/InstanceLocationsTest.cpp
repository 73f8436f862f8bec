// The locations of a variable by instance: a vector that takes next to no room when it is empty.
#include "model/InstanceLocations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Instances = std::vector<std::vector<LogicLocation>>;

TEST(InstanceLocations, TakesTheRoomOfAPointer) {
    EXPECT_EQ(sizeof(InstanceLocations), sizeof(void*));
}

TEST(InstanceLocations, HasNoneAtFirst) {
    const InstanceLocations none;
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(none.size(), 0);
    EXPECT_THAT(none, IsEmpty());
    EXPECT_EQ(none, InstanceLocations(Instances()));
    EXPECT_NE(none, InstanceLocations(Instances{{}}));
}

TEST(InstanceLocations, AreAddedOneByOne) {
    InstanceLocations locations;
    locations.addInstance().push_back({1, 2});
    locations.addInstance();
    locations[0].push_back({3, 4});
    EXPECT_THAT(locations,
                ElementsAre(ElementsAre(LogicLocation{1, 2}, LogicLocation{3, 4}), IsEmpty()));
    EXPECT_EQ(locations, (Instances{{{1, 2}, {3, 4}}, {}}));
}

TEST(InstanceLocations, CopiesShareNothing) {
    InstanceLocations first(Instances{{{1, 2}}});
    InstanceLocations second = first;
    second[0][0].offset = 7;
    EXPECT_EQ(first, (Instances{{{1, 2}}}));
    first = second;
    EXPECT_EQ(first, (Instances{{{1, 7}}}));
    const InstanceLocations& same = first;
    first = same;
    EXPECT_EQ(first, (Instances{{{1, 7}}}));
    first = InstanceLocations();
    EXPECT_TRUE(first.empty());
}

TEST(InstanceLocations, LeavesNothingBehindWhenMoved) {
    InstanceLocations first(Instances{{{1, 2}}});
    const InstanceLocations second = std::move(first);
    EXPECT_EQ(second.size(), 1);
    EXPECT_TRUE(first.empty()); // NOLINT(bugprone-use-after-move): what is tested
}

} // namespace
} // namespace consolidator::test
