#include "query/Stops.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

BreakableCondition at(const std::string& file, std::uint32_t line, const std::string& text) {
    BreakableCondition condition;
    condition.kind = BreakableCondition::FileLine;
    condition.file = file;
    condition.line = line;
    condition.condition = text;
    return condition;
}

Kernel kernelNamed(const std::string& name) {
    Kernel kernel;
    kernel.setName(name);
    return kernel;
}

std::vector<std::string> placesOf(const std::vector<Stop>& stops) {
    std::vector<std::string> places;
    for (const Stop& stop : stops) {
        places.push_back(stop.kernel->name() + ' ' + stop.file() + ':' +
                         std::to_string(stop.line()));
    }
    return places;
}

struct StopsTest : testing::Test {
    StopsTest() : kernels{kernelNamed("a"), kernelNamed("b")} {
        kernels[0].addBreakableCondition(BreakableCondition::Start, "begin");
        kernels[0].addBreakableCondition(at("src/y.cpp", 20, "late"));
        kernels[0].addBreakableCondition(at("src/y.cpp", 3, "early"));
        kernels[1].addBreakableCondition(at("y.cpp", 7, "own"));
        kernels[1].addBreakableCondition(at("src/y.cpp", 3, "too"));
        kernels[1].addBreakableCondition(at("src/sly.cpp", 3, "other"));
    }

    std::vector<Kernel> kernels;
};

TEST_F(StopsTest, AreSortedByFileAndLine) {
    EXPECT_THAT(placesOf(stopsIn(kernels, "y.cpp")),
                ElementsAre("a src/y.cpp:3", "b src/y.cpp:3", "a src/y.cpp:20", "b y.cpp:7"));
}

TEST_F(StopsTest, AreNotTheOnlyConditionsOfAnInstance) {
    Kernel& kernel = kernels[0];
    kernel.addInstancePath("top/a_1");
    kernel.setType(KernelType::RTL);
    const BreakableCondition start{BreakableCondition::Start, "== $i/go 1'b1 && $i/on"};
    const std::string path = conditionPath(kernel, 0);
    EXPECT_EQ(conditionFor(kernel, start, 0), "== " + path + "/go 1'b1 && " + path + "/on");
    EXPECT_THROW(conditionFor(kernel, start, 1), std::out_of_range);
}

TEST_F(StopsTest, AreFoundByAWholePathOrItsEnd) {
    EXPECT_THAT(placesOf(stopsIn(kernels, "src/sly.cpp")), ElementsAre("b src/sly.cpp:3"));
    EXPECT_THAT(stopsIn(kernels, "ly.cpp"), IsEmpty());
    EXPECT_THAT(stopsIn(kernels, "/y.cpp"), IsEmpty());
}

TEST_F(StopsTest, AreOfConditionsWithALineOnly) {
    EXPECT_EQ(allStops(kernels).size(), 5U);
}

TEST(Stop, PutsThePathOfAnInstanceIntoItsCondition) {
    Kernel kernel;
    kernel.addInstancePath("top/k_1");
    kernel.addInstancePath("top/k_2");
    kernel.addArgument("gain", "gain", "float"); // such a kernel's paths end in "/U0"
    const BreakableCondition condition = at("y.cpp", 1, "&& == 1'b1 $i/s == 1'b0 $i/t $");
    const Stop stop{&kernel, &condition};
    EXPECT_EQ(stop.conditionFor(0), "&& == 1'b1 top/k_1/U0/s == 1'b0 top/k_1/U0/t $");
    EXPECT_EQ(stop.conditionFor(1), "&& == 1'b1 top/k_2/U0/s == 1'b0 top/k_2/U0/t $");
    Kernel integers;
    integers.addInstancePath("top/k_3");
    EXPECT_EQ((Stop{&integers, &condition}.conditionFor(0)),
              "&& == 1'b1 top/k_3/inst/s == 1'b0 top/k_3/inst/t $");
}

} // namespace

} // namespace consolidator::test
