#include "inspect/diff/ListMatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

ListMatch match(const std::vector<std::string_view>& before,
                const std::vector<std::string_view>& after) {
    return {before, after};
}

TEST(ListMatch, PairsEqualKeys) {
    const ListMatch result = match({"a", "b", "c"}, {"c", "x", "a"});
    EXPECT_THAT(result.pairs(), ElementsAre(Pair(0, 2), Pair(2, 0)));
    EXPECT_THAT(result.removed(), ElementsAre(1));
    EXPECT_THAT(result.added(), ElementsAre(1));
    EXPECT_EQ(result.partner(0), std::optional<std::uint32_t>(2));
    EXPECT_EQ(result.partner(1), std::nullopt);
}

TEST(ListMatch, PairsRepeatedKeysOneByOne) {
    const ListMatch result = match({"a", "a", "a"}, {"b", "a", "a"});
    EXPECT_THAT(result.pairs(), ElementsAre(Pair(0, 1), Pair(1, 2)));
    EXPECT_THAT(result.removed(), ElementsAre(2));
    EXPECT_THAT(result.added(), ElementsAre(0));
}

TEST(ListMatch, MatchesEmptyLists) {
    const ListMatch result = match({}, {});
    EXPECT_THAT(result.pairs(), IsEmpty());
    EXPECT_EQ(result.firstOutOfOrder(), std::nullopt);
}

TEST(ListMatch, FindsTheFirstPairOutOfOrder) {
    EXPECT_EQ(match({"a", "b", "c"}, {"new", "a", "c"}).firstOutOfOrder(), std::nullopt);
    EXPECT_EQ(match({"a", "b", "c"}, {"a", "new", "c", "b"}).firstOutOfOrder(),
              std::optional(std::pair(2U, 3U)));
}

TEST(ListMatch, TakesConditionsForEqualOnlyAsAWhole) {
    const std::vector<ConditionKey> before{{2, 14, "a.cpp", "x"}, {2, 15, "a.cpp", "x"}};
    const std::vector<ConditionKey> after{{2, 14, "a.cpp", "y"}, {2, 15, "a.cpp", "x"}};
    EXPECT_THAT(ListMatch(before, after).pairs(), ElementsAre(Pair(1, 1)));
}

} // namespace

} // namespace consolidator::inspect::test
