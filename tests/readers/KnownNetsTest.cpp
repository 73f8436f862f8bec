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

using Places = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

Places pairsOf(std::span<const KnownNets::Place> registers) {
    Places places;
    for (const auto& [kernel, position] : registers) {
        places.emplace_back(kernel, position);
    }
    return places;
}

Places placesOf(const KnownNets& nets, std::string_view net) {
    return pairsOf(nets.find(net));
}

TEST(KnownNets, KnowsNothingAtFirst) {
    const KnownNets nets;
    EXPECT_EQ(placesOf(nets, ""), Places());
    EXPECT_EQ(placesOf(nets, "a"), Places());
}

TEST(KnownNets, GivesAllRegistersOfANet) {
    KnownNets nets;
    const std::vector<KnownNets::Place> several{{0, 1}, {2, 0}, {2, 0}};
    nets.add("top/a", several);
    nets.add("", std::vector<KnownNets::Place>{{7, 3}});
    nets.add("b", std::vector<KnownNets::Place>{{1, 5}, {0, 0}});
    EXPECT_EQ(placesOf(nets, "top/a"), (Places{{0, 1}, {2, 0}, {2, 0}}));
    EXPECT_EQ(placesOf(nets, ""), (Places{{7, 3}}));
    EXPECT_EQ(placesOf(nets, "b"), (Places{{1, 5}, {0, 0}}));
    EXPECT_EQ(placesOf(nets, "a"), Places());
    EXPECT_EQ(placesOf(nets, "top/a/"), Places());
}

TEST(KnownNets, KnowsTheLongestNet) {
    KnownNets nets;
    const std::string longest(KnownNets::longestNet, 'x');
    nets.add(longest, std::vector<KnownNets::Place>{{1, 2}});
    EXPECT_EQ(placesOf(nets, longest), (Places{{1, 2}}));
    EXPECT_EQ(placesOf(nets, std::string_view(longest).substr(1)), Places());
}

TEST(KnownNets, FindsEachOfManyNetsOneByOneAndTogether) {
    KnownNets nets;
    constexpr std::uint32_t count = 20'000;
    std::vector<std::string> names;
    for (std::uint32_t i = 0; i < count; ++i) {
        names.push_back("top/k/" + std::to_string(i));
        const KnownNets::Place place{i % 7, i / 7};
        nets.add(names.back(), {&place, 1});
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        ASSERT_EQ(placesOf(nets, names[i]), (Places{{i % 7, i / 7}})) << i;
    }
    EXPECT_EQ(placesOf(nets, "top/k/20000"), Places());
    names.emplace_back("top/k/20000");
    names.emplace_back("");
    std::vector<KnownNets::Query> queries(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        queries[i].net = names[i];
    }
    nets.findAll(queries);
    for (std::uint32_t i = 0; i < names.size(); ++i) {
        const Places expected = i < count ? Places{{i % 7, i / 7}} : Places();
        ASSERT_EQ(pairsOf(queries[i].registers), expected) << i;
    }
    nets.findAll({});
}

} // namespace
} // namespace consolidator::test
