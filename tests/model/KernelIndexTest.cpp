// The index of which kernels have a path.

#include "model/KernelIndex.h"

#include "tests/support/Kernels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t anyLength = 1000;

Kernel kernelAt(const std::vector<std::string>& paths) {
    return kernelOf({.name = "k", .instancePaths = paths});
}

/// The kernels of a text that must be in the index.
std::vector<std::uint32_t> kernelsOf(const KernelIndex& index, std::string_view text) {
    const auto found = std::ranges::find(index.texts(), text);
    if (found == index.texts().end()) {
        ADD_FAILURE() << text << " is missing";
        return {};
    }
    const auto kernels = index.kernelsOf(static_cast<std::uint32_t>(found - index.texts().begin()));
    return {kernels.begin(), kernels.end()};
}

TEST(KernelIndex, HasTheInstancePathsInOrderAndOnce) {
    const std::vector<Kernel> kernels = {kernelAt({"top/k_10", "top/k_1", "\xFF"}), kernelAt({}),
                                         kernelAt({"a", "", "top/k_1"})};
    const KernelIndex index = KernelIndex::ofInstancePaths(kernels, anyLength);
    EXPECT_THAT(index.texts(), ElementsAre("", "a", "top/k_1", "top/k_10", "\xFF"));
    EXPECT_THAT(kernelsOf(index, ""), ElementsAre(2));
    EXPECT_THAT(kernelsOf(index, "a"), ElementsAre(2));
    EXPECT_THAT(kernelsOf(index, "top/k_1"), ElementsAre(0, 2));
    EXPECT_THAT(kernelsOf(index, "top/k_10"), ElementsAre(0));
    EXPECT_THAT(kernelsOf(index, "\xFF"), ElementsAre(0));
    EXPECT_EQ(index.entryCount(), 6);
}

TEST(KernelIndex, CountsAKernelOnceThatHasATextSeveralTimes) {
    // As a damaged database may have it.
    const std::vector<Kernel> kernels = {kernelAt({"a", "b", "a", "a"}), kernelAt({"b", "a", "b"})};
    const KernelIndex index = KernelIndex::ofInstancePaths(kernels, anyLength);
    EXPECT_THAT(kernelsOf(index, "a"), ElementsAre(0, 1));
    EXPECT_THAT(kernelsOf(index, "b"), ElementsAre(0, 1));
    EXPECT_EQ(index.entryCount(), 4);
}

TEST(KernelIndex, LeavesOutPathsThatAreTooLong) {
    const std::vector<Kernel> kernels = {kernelAt({"abc", "abcd"})};
    EXPECT_THAT(KernelIndex::ofInstancePaths(kernels, 3).texts(), ElementsAre("abc"));
    EXPECT_THAT(KernelIndex::ofInstancePaths(kernels, 4).texts(), ElementsAre("abc", "abcd"));
}

TEST(KernelIndex, OfNoKernelsIsEmpty) {
    EXPECT_THAT(KernelIndex::ofInstancePaths({}, anyLength).texts(), IsEmpty());
}

} // namespace

} // namespace consolidator::test
