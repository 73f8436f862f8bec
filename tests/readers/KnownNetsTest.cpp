// Nets are found again by their whole name, with all their registers.
#include "readers/KnownNets.h"

#include "tests/support/Kernels.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

using Places = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

Places placesOf(KnownNets& nets, std::string_view net) {
    Places places;
    for (const auto& [kernel, position] : nets.find(net)) {
        places.emplace_back(kernel, position);
    }
    return places;
}

TEST(KnownNets, KnowsNothingAtFirst) {
    const std::vector<Kernel> kernels;
    KnownNets nets(kernels);
    EXPECT_EQ(placesOf(nets, ""), Places());
    EXPECT_EQ(placesOf(nets, "/a"), Places());
}

TEST(KnownNets, GivesAllRegistersOfANet) {
    std::vector<Kernel> kernels(3);
    kernels[0].addHardwareLocation("/other", 0, 1, 2);
    for (Kernel& kernel : kernels) {
        kernel.addHardwareLocation("/a", 0, 1, 2);
    }
    KnownNets nets(kernels);
    const std::vector<KnownNets::Place> registers{{0, 1}, {2, 0}};
    nets.add("/a", registers);
    EXPECT_EQ(placesOf(nets, "/a"), (Places{{0, 1}, {2, 0}}));
    EXPECT_EQ(placesOf(nets, "/other"), Places());
    EXPECT_EQ(placesOf(nets, "/a/"), Places());
    EXPECT_EQ(placesOf(nets, ""), Places());
}

TEST(KnownNets, FindsEachOfManyNets) {
    std::vector<Kernel> kernels(7);
    KnownNets nets(kernels);
    constexpr std::uint32_t count = 20'000;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string net = "/top/k/" + std::to_string(i);
        const std::size_t position = kernels[i % 7].addHardwareLocation(net, 0, 1, 2);
        const KnownNets::Place place{i % 7, static_cast<std::uint32_t>(position)};
        nets.add(net, {&place, 1});
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        ASSERT_EQ(placesOf(nets, "/top/k/" + std::to_string(i)), (Places{{i % 7, i / 7}})) << i;
    }
    EXPECT_EQ(placesOf(nets, "/top/k/20000"), Places());
}

} // namespace
} // namespace consolidator::test
