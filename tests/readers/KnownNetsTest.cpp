// Nets are found again by their whole name, with all their registers.
#include "readers/KnownNets.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

using Registers = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

Registers pairsOf(std::span<const KnownNets::Register> registers) {
    Registers result;
    for (const auto& [kernel, position] : registers) {
        result.emplace_back(kernel, position);
    }
    return result;
}

Registers registersOf(const KnownNets& nets, std::string_view net) {
    return pairsOf(nets.find(net));
}

TEST(KnownNets, KnowsNothingAtFirst) {
    const KnownNets nets;
    EXPECT_EQ(registersOf(nets, ""), Registers());
    EXPECT_EQ(registersOf(nets, "a"), Registers());
}

TEST(KnownNets, GivesAllRegistersOfANet) {
    KnownNets nets;
    const std::vector<KnownNets::Register> several{{0, 1}, {2, 0}, {2, 0}};
    nets.add("top/a", several);
    nets.add("", std::vector<KnownNets::Register>{{7, 3}});
    nets.add("b", std::vector<KnownNets::Register>{{1, 5}, {0, 0}});
    EXPECT_EQ(registersOf(nets, "top/a"), (Registers{{0, 1}, {2, 0}, {2, 0}}));
    EXPECT_EQ(registersOf(nets, ""), (Registers{{7, 3}}));
    EXPECT_EQ(registersOf(nets, "b"), (Registers{{1, 5}, {0, 0}}));
    EXPECT_EQ(registersOf(nets, "a"), Registers());
    EXPECT_EQ(registersOf(nets, "top/a/"), Registers());
}

TEST(KnownNets, KnowsTheLongestNet) {
    KnownNets nets;
    const std::string longest(KnownNets::longestNet, 'x');
    nets.add(longest, std::vector<KnownNets::Register>{{1, 2}});
    EXPECT_EQ(registersOf(nets, longest), (Registers{{1, 2}}));
    EXPECT_EQ(registersOf(nets, std::string_view(longest).substr(1)), Registers());
}

TEST(KnownNets, FindsEachOfManyNetsOneByOneAndTogether) {
    KnownNets nets;
    constexpr std::uint32_t count = 20'000;
    std::vector<std::string> names;
    for (std::uint32_t i = 0; i < count; ++i) {
        names.push_back("top/k/" + std::to_string(i));
        const KnownNets::Register single{i % 7, i / 7};
        nets.add(names.back(), {&single, 1});
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        ASSERT_EQ(registersOf(nets, names[i]), (Registers{{i % 7, i / 7}})) << i;
    }
    EXPECT_EQ(registersOf(nets, "top/k/20000"), Registers());
    names.emplace_back("top/k/20000");
    names.emplace_back("");
    std::vector<KnownNets::Query> queries(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        queries[i].net = names[i];
    }
    nets.findAll(queries);
    for (std::uint32_t i = 0; i < names.size(); ++i) {
        const Registers expected = i < count ? Registers{{i % 7, i / 7}} : Registers();
        ASSERT_EQ(pairsOf(queries[i].registers), expected) << i;
    }
    nets.findAll({});
}

} // namespace
} // namespace consolidator::test
