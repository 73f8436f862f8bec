#include "query/Occupants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();

TEST(PlaceRange, CutsRunsAtItsEnds) {
    const PlaceRange range{
        .firstAddress = 5, .lastAddress = 6, .firstOffset = 10, .lastOffset = 12};
    const BitRun run{3, 9, {5, 8}}; // offsets 8 to 14
    EXPECT_EQ(range.partOf(run), (BitRun{5, 7, {5, 10}}));
    EXPECT_EQ(range.partOf({0, 0, {6, 12}}), (BitRun{0, 0, {6, 12}}));
    EXPECT_EQ(range.partOf({0, 0, {6, 13}}), std::nullopt);
    EXPECT_EQ(range.partOf({0, 0, {6, 9}}), std::nullopt);
    EXPECT_EQ(range.partOf({0, 9, {7, 10}}), std::nullopt);
    EXPECT_EQ(range.partOf({0, 9, {4, 10}}), std::nullopt);
}

TEST(PlaceRange, HoldsAllPlacesUnlessToldOtherwise) {
    EXPECT_EQ(PlaceRange{}.partOf({0, 1, {largest, largest - 1}}),
              (BitRun{0, 1, {largest, largest - 1}}));
    EXPECT_EQ(PlaceRange{}.partOf({0, 1, {0, 0}}), std::nullopt); // not located
}

std::string described(const Occupant& occupant) {
    std::string text = occupant.kernel->kernel().name() + ' ';
    text += occupant.instance ? std::to_string(*occupant.instance) : "-";
    text += ' ' + (occupant.hardware == nullptr ? occupant.itself.variable->sourceName
                                                : occupant.hardware->name);
    return text + ' ' + std::to_string(occupant.bits.first) + '-' +
           std::to_string(occupant.bits.last) + '@' + std::to_string(occupant.bits.place.offset);
}

std::vector<std::string> descriptionsOf(const std::vector<Occupant>& occupants) {
    std::vector<std::string> result;
    for (const Occupant& occupant : occupants) {
        result.push_back(described(occupant));
    }
    return result;
}

TEST(Occupants, AreSortedByPlaceAndTellWhatTheyAre) {
    std::vector<Kernel> kernels(2);
    kernels[0].setName("a");
    kernels[0].addInstancePath("top/a");
    kernels[0].addVariable("sum", "r", "int");
    kernels[0].addHardwareLocation("/top/a/r", 0, 7, 9);
    kernels[0].addHardwareLocation("/top/a/r", 1, 7, 10);
    kernels[0].addHardwareLocation("/top/a/r", 2, 7, 3);
    kernels[1].setName("b");
    kernels[1].addHardwareLocation("/top/b/q", 0, 7, 9);
    kernels[1].addHardwareLocation("/top/b/q", 1, 6, 30);
    const std::vector<KernelView> views(kernels.begin(), kernels.end());

    const std::vector<Occupant> frame = occupantsOf(views, {.firstAddress = 7, .lastAddress = 7});
    EXPECT_THAT(descriptionsOf(frame),
                ElementsAre("a 0 /top/a/r 2-2@3", "a 0 /top/a/r 0-1@9", "b - /top/b/q 0-0@9"));
    ASSERT_EQ(frame[0].variables.size(), 1U);
    EXPECT_EQ(frame[0].variables[0].variable, &kernels[0].variables()[0]);
    EXPECT_TRUE(frame[2].variables.empty());

    EXPECT_THAT(descriptionsOf(occupantsOf(views, {.firstAddress = 6, .lastAddress = 7})),
                ElementsAre("b - /top/b/q 1-1@30", "a 0 /top/a/r 2-2@3", "a 0 /top/a/r 0-1@9",
                            "b - /top/b/q 0-0@9"));
    EXPECT_THAT(occupantsOf(views, {.firstAddress = 8}), IsEmpty());
}

} // namespace

} // namespace consolidator::test
