#include "inspect/diff/BitChanges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> changes(const LocationList& before, const LocationList& after) {
    std::vector<std::string> result;
    for (const BitChange& change : bitChanges(before, after)) {
        result.push_back(changeText(change));
    }
    return result;
}

TEST(BitChanges, FindsNoneInEqualLists) {
    EXPECT_THAT(changes({}, {}), IsEmpty());
    EXPECT_THAT(changes({{1, 2}, {0, 0}, {3, 4}}, {{1, 2}, {0, 0}, {3, 4}}), IsEmpty());
}

TEST(BitChanges, FindsNoneInListsThatAreStoredOtherwise) {
    LocationList sparse;
    sparse.set(100, {1, 2}); // kept apart from the row
    std::vector<LogicLocation> row(101);
    row[100] = {1, 2};
    EXPECT_THAT(changes(sparse, LocationList(row)), IsEmpty());
}

TEST(BitChanges, JoinsBitsThatMoveTogether) {
    EXPECT_THAT(changes({{1, 8}, {1, 9}, {1, 10}}, {{0, 0}, {0, 0}, {0, 0}}),
                ElementsAre("bits 0-2: 0x00000001 8-10 -> not located"));
    EXPECT_THAT(changes({{1, 8}, {1, 9}}, {{2, 3}, {2, 4}}),
                ElementsAre("bits 0-1: 0x00000001 8-9 -> 0x00000002 3-4"));
}

TEST(BitChanges, PartsBitsWhereOneSideDoesNotGoOn) {
    EXPECT_THAT(
        changes({{1, 8}, {1, 9}}, {{2, 3}, {3, 4}}),
        ElementsAre("bit 0: 0x00000001 8 -> 0x00000002 3", "bit 1: 0x00000001 9 -> 0x00000003 4"));
    EXPECT_THAT(
        changes({{1, 8}, {5, 5}, {1, 10}}, {{0, 0}, {5, 5}, {0, 0}}),
        ElementsAre("bit 0: 0x00000001 8 -> not located", "bit 2: 0x00000001 10 -> not located"));
    // An offset that would go on beyond its largest number begins anew.
    EXPECT_THAT(changes({{1, 0xffffffff}, {1, 0}}, {{0, 0}, {0, 0}}),
                ElementsAre("bit 0: 0x00000001 4294967295 -> not located",
                            "bit 1: 0x00000001 0 -> not located"));
}

TEST(BitChanges, FindsBitsThatOnlyOneHas) {
    EXPECT_THAT(changes({{1, 8}}, {{1, 8}, {1, 9}, {0, 0}, {0, 0}}),
                ElementsAre("bit 1: none -> 0x00000001 9", "bits 2-3: none -> not located"));
    EXPECT_THAT(changes({{0, 0}, {0, 0}}, {}), ElementsAre("bits 0-1: not located -> none"));
}

TEST(BitChanges, JoinsBitsThatNoFileNames) {
    LocationList before;
    LocationList after;
    before.set(0xfffff0, {1, 2});
    after.set(0xfffffe, {1, 3});
    EXPECT_THAT(changes(before, {}), ElementsAre("bits 0-16777199: not located -> none",
                                                 "bit 16777200: 0x00000001 2 -> none"));
    EXPECT_THAT(changes(before, after), ElementsAre("bit 16777200: 0x00000001 2 -> not located",
                                                    "bits 16777201-16777213: none -> not located",
                                                    "bit 16777214: none -> 0x00000001 3"));
}

} // namespace

} // namespace consolidator::inspect::test
