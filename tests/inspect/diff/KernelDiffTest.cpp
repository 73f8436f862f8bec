// What is told of a register whose bits lie elsewhere.

#include "inspect/diff/KernelDiff.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Kernel kernelWith(const LocationList& locations) {
    Kernel kernel;
    HardwareVariable variable("/x");
    variable.locations = locations;
    kernel.addHardwareVariable(std::move(variable));
    return kernel;
}

/// What the comparison tells of the bits of a register with these locations, piece by piece.
std::vector<std::string> changes(const LocationList& before, const LocationList& after) {
    const Kernel left = kernelWith(before);
    const Kernel right = kernelWith(after);
    std::ostringstream out;
    std::ostringstream err;
    Console console{.out = out, .err = err};
    DiffPrinter printer("a", "b", console);
    KernelDiff(left, right, printer).run();
    std::istringstream lines(out.str());
    std::vector<std::string> result;
    for (std::string line; std::getline(lines, line);) {
        // Below the names of the files, one piece follows the register's name, several come below.
        for (const std::string_view start : {"~ register /x: ", "    "}) {
            if (line.starts_with(start)) {
                result.push_back(line.substr(start.size()));
            }
        }
    }
    EXPECT_EQ(result.empty(), out.str().empty()) << out.str();
    return result;
}

TEST(KernelDiff, FindsNoneInEqualLists) {
    EXPECT_THAT(changes({}, {}), IsEmpty());
    EXPECT_THAT(changes({{1, 2}, {0, 0}, {3, 4}}, {{1, 2}, {0, 0}, {3, 4}}), IsEmpty());
}

TEST(KernelDiff, FindsNoneInListsThatAreStoredOtherwise) {
    LocationList sparse;
    sparse.set(100, {1, 2}); // kept apart from the row
    std::vector<LogicLocation> row(101);
    row[100] = {1, 2};
    EXPECT_THAT(changes(sparse, LocationList(row)), IsEmpty());
}

TEST(KernelDiff, JoinsBitsThatMoveTogether) {
    EXPECT_THAT(changes({{1, 8}, {1, 9}, {1, 10}}, {{0, 0}, {0, 0}, {0, 0}}),
                ElementsAre("bits 0-2: 0x00000001 8-10 -> not located"));
    EXPECT_THAT(changes({{1, 8}, {1, 9}}, {{2, 3}, {2, 4}}),
                ElementsAre("bits 0-1: 0x00000001 8-9 -> 0x00000002 3-4"));
}

TEST(KernelDiff, PartsBitsWhereOneSideDoesNotGoOn) {
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

TEST(KernelDiff, FindsBitsThatOnlyOneHas) {
    EXPECT_THAT(changes({{1, 8}}, {{1, 8}, {1, 9}, {0, 0}, {0, 0}}),
                ElementsAre("bit 1: none -> 0x00000001 9", "bits 2-3: none -> not located"));
    EXPECT_THAT(changes({{0, 0}, {0, 0}}, {}), ElementsAre("bits 0-1: not located -> none"));
}

TEST(KernelDiff, JoinsBitsThatNoFileNames) {
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
