// How the nets of a kernel fall to its instances.

#include "inspect/check/Coverage.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

InstanceFaults faultsOf(const std::vector<std::string>& paths,
                        const std::vector<std::string>& nets) {
    std::vector<Kernel> kernels(1);
    Kernel& kernel = kernels.front();
    for (const std::string& path : paths) {
        kernel.addInstancePath(path);
    }
    for (const std::string& net : nets) {
        kernel.addHardwareLocation(net, 0, 1, 2);
    }
    return coverageOf(kernels).front().instances;
}

TEST(InstanceFaults, AreNoneWhereEachInstanceHasItsNets) {
    const InstanceFaults faults =
        faultsOf({"top/k_1", "/top/k_2/", "top/k_1/k_10"},
                 {"/top/k_1/x", "/top/k_2/x", "/top/k_1/k_10/x", "/top/k_1/y"});
    EXPECT_EQ(faults.withoutNet, 0U);
    EXPECT_EQ(faults.cut, 0U);
    EXPECT_EQ(faults.repeated, 0U);
}

TEST(InstanceFaults, TellInstancesWithoutANet) {
    const InstanceFaults faults = faultsOf({"top/k_1", "top/k_2", "", "top/k_3"}, {"/top/k_1/x"});
    EXPECT_EQ(faults.withoutNet, 2U);
    EXPECT_EQ(faults.firstWithoutNet, 1U);
}

TEST(InstanceFaults, AreNotLookedForWithoutNetsOrInstances) {
    EXPECT_EQ(faultsOf({"top/k_1"}, {}).withoutNet, 0U);
    EXPECT_EQ(faultsOf({}, {"/top/k_1/x"}).cut, 0U);
}

TEST(InstanceFaults, TellPathsThatEndInAComponent) {
    const InstanceFaults faults = faultsOf(
        {"top/k_2", "top/k_1"}, {"/top/k_1/x", "/top/k_2/x", "/top/k_10/x", "/top/k_11/x"});
    EXPECT_EQ(faults.cut, 2U);
    EXPECT_EQ(faults.firstCut, 2U);
    EXPECT_EQ(faults.cutInstance, 1U);
    EXPECT_EQ(faults.repeated, 0U); // which explains them
    EXPECT_EQ(faultsOf({"op/k_1"}, {"/top/k_1/x"}).cut, 1U);
}

TEST(InstanceFaults, TellNamesThatAnInstanceHasTwice) {
    const InstanceFaults faults =
        faultsOf({"a", "top"}, {"/top/k_1/y", "/top/k_1/x", "/top/k_2/x", "/top/k_3/x", "/a/x"});
    EXPECT_EQ(faults.repeated, 2U);
    EXPECT_EQ(faults.firstOfRepeated, 1U);
    EXPECT_EQ(faults.repetition, 2U);
    EXPECT_EQ(faults.repeatedInstance, 1U);
}

} // namespace

} // namespace consolidator::inspect::test
