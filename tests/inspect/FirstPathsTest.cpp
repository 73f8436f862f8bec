// Whether nets lie in the first instances of kernels.

#include "inspect/FirstPaths.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

Kernel kernelAt(const std::vector<std::string>& paths) {
    Kernel kernel;
    for (const std::string& path : paths) {
        kernel.addInstancePath(path);
    }
    return kernel;
}

TEST(FirstPaths, TellsTheKernelsOfANet) {
    const Kernel first = kernelAt({"top/a", "top/b"});
    const Kernel second = kernelAt({"top/b", "top/c.d"});
    const Kernel third = kernelAt({});
    FirstPaths paths({&first, &second, &third}, 100);
    paths.setNet("/top/b/x");
    EXPECT_TRUE(paths.isIn(first));
    EXPECT_TRUE(paths.isIn(second));
    EXPECT_FALSE(paths.isNearlyIn(third));
    paths.setNet("/top/a/x");
    EXPECT_TRUE(paths.isIn(first));
    EXPECT_FALSE(paths.isNearlyIn(second));
    paths.setNet("/top/c.d/x");
    EXPECT_TRUE(paths.isNearlyIn(second));
    EXPECT_TRUE(paths.isIn(second));
    EXPECT_FALSE(paths.isIn(first));
}

TEST(FirstPaths, TakesOtherSeparatorsForSlashes) {
    const Kernel kernel = kernelAt({"top/k_1"});
    FirstPaths paths({&kernel}, 100);
    for (const std::string net : {"/top.k_1.x", "/top\\k_1/x"}) {
        paths.setNet(net);
        EXPECT_TRUE(paths.isNearlyIn(kernel));
        EXPECT_FALSE(paths.isIn(kernel));
    }
}

TEST(FirstPaths, LooksForFourPathsThatFitInANet) {
    const Kernel kernel = kernelAt({"a", "b", "c", "d", "e"});
    const Kernel large = kernelAt({"aaaa"});
    FirstPaths paths({&kernel, &large}, 2);
    paths.setNet("/d");
    EXPECT_TRUE(paths.isIn(kernel));
    paths.setNet("/e");
    EXPECT_FALSE(paths.isIn(kernel));
    paths.setNet("/aaaa");
    EXPECT_FALSE(paths.isIn(large));
}

} // namespace

} // namespace consolidator::inspect::test
