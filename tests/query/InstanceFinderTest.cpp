#include "query/InstanceFinder.h"

#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

using Position = std::optional<std::uint32_t>;

TEST(InstanceFinder, TakesTheLongestPathThatOccurs) {
    const std::vector<std::string> paths{"top/k_10", "top", "top/k_1"};
    InstanceFinder finder(paths);
    EXPECT_EQ(finder.instanceOf("/top/k_10/x"), Position(0));
    EXPECT_EQ(finder.instanceOf("/top/k_1/x"), Position(2));
    EXPECT_EQ(finder.instanceOf("/top/k_2/x"), Position(1));
    EXPECT_EQ(finder.instanceOf("/other/x"), std::nullopt);
}

TEST(InstanceFinder, TakesTheFirstOfEqualPaths) {
    const std::vector<std::string> paths{"b", "a", "a"};
    EXPECT_EQ(InstanceFinder(paths).instanceOf("/a/x"), Position(1));
}

TEST(InstanceFinder, FindsAnEmptyPathInEveryNet) {
    const std::vector<std::string> paths{"k", ""};
    InstanceFinder finder(paths);
    EXPECT_EQ(finder.instanceOf(""), Position(1));
    EXPECT_EQ(finder.instanceOf("/k/x"), Position(0));
}

// The first nets are searched in another way than those that come after.
TEST(InstanceFinder, SaysTheSameOfEveryNet) {
    const std::vector<std::string> paths{"top/k_1", "k", "top/k_10", "", "k", "top/k_1"};
    InstanceFinder finder(paths);
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(finder.instanceOf("/top/k_10/x"), Position(2)) << round;
        EXPECT_EQ(finder.instanceOf("/top/k_1"), Position(0)) << round;
        EXPECT_EQ(finder.instanceOf("/k"), Position(1)) << round;
        EXPECT_EQ(finder.instanceOf("/x"), Position(3)) << round;
    }
}

// Where in the net they stand does not count.
TEST(InstanceFinder, TakesTheFirstOfPathsOfOneLength) {
    const std::vector<std::string> paths{"b", "a"};
    InstanceFinder finder(paths);
    for (int round = 0; round < 20; ++round) {
        EXPECT_EQ(finder.instanceOf("/a/b"), Position(0)) << round;
        EXPECT_EQ(finder.instanceOf("/b/a"), Position(0)) << round;
    }
}

TEST(InstanceFinder, FindsNothingWithoutPaths) {
    const std::vector<std::string> paths;
    EXPECT_EQ(InstanceFinder(paths).instanceOf("/k/x"), std::nullopt);
}

} // namespace

} // namespace consolidator::test
