// Whether nets lie in instances of kernels.

#include "inspect/check/PathsInNet.h"

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

TEST(PathsInNet, TellsTheKernelsOfANet) {
    const Kernel first = kernelAt({"top/a", "top/b"});
    const Kernel second = kernelAt({"top/b", "top/c.d"});
    const Kernel third = kernelAt({});
    PathsInNet paths({&first, &second, &third}, 100);
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

TEST(PathsInNet, TakesOtherSeparatorsForSlashes) {
    const Kernel kernel = kernelAt({"top/k_1"});
    PathsInNet paths({&kernel}, 100);
    for (const std::string net : {"/top.k_1.x", "/top\\k_1/x"}) {
        paths.setNet(net);
        EXPECT_TRUE(paths.isNearlyIn(kernel));
        EXPECT_FALSE(paths.isIn(kernel));
    }
}

TEST(PathsInNet, LooksForAllPathsThatFitInANet) {
    const Kernel kernel = kernelAt({"e", "d", "c", "b", "a"});
    const Kernel large = kernelAt({"aaaa"});
    PathsInNet paths({&kernel, &large}, 2);
    for (const std::string net : {"/a", "/b", "/c", "/d", "/e"}) {
        paths.setNet(net);
        EXPECT_TRUE(paths.isIn(kernel)) << net;
    }
    paths.setNet("/f");
    EXPECT_FALSE(paths.isIn(kernel));
    paths.setNet("/aaaa");
    EXPECT_FALSE(paths.isIn(large));
}

} // namespace

} // namespace consolidator::inspect::test
