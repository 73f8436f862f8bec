// Argument lists that share their elements with others, and what becomes of them when they get
// more.

#include "model/ArgumentList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A list of arguments that are called by single letters.
std::shared_ptr<VariableList> listOf(std::string_view letters) {
    auto list = std::make_shared<VariableList>();
    for (const char letter : letters) {
        const std::string name(1, letter);
        list->findOrAdd(name, [&] { return Variable(name, name + "_port", "int"); });
    }
    return list;
}

std::string lettersOf(const ArgumentList& list) {
    std::string letters;
    for (const Variable& argument : list.items()) {
        EXPECT_TRUE(argument.valid);
        letters += argument.sourceName;
    }
    return letters;
}

ArgumentList ownList(std::string_view letters) {
    ArgumentList list;
    for (const char letter : letters) {
        list.add(std::string(1, letter), "own", "own");
    }
    return list;
}

TEST(ArgumentList, StartsEmptyAndUnshared) {
    ArgumentList list;
    EXPECT_THAT(list.items(), IsEmpty());
    EXPECT_FALSE(list.isShared());
    EXPECT_FALSE(list.sharesWith(list));
    EXPECT_EQ(list.find("a"), nullptr);
}

TEST(ArgumentList, IsTheBeginningOfASharedList) {
    const auto all = listOf("abc");
    ArgumentList two(all, 2);
    EXPECT_TRUE(two.isShared());
    EXPECT_EQ(lettersOf(two), "ab");
    EXPECT_EQ(two.items().data(), all->items().data());
    EXPECT_EQ(two.find("b"), &all->items()[1]);
    EXPECT_EQ(two.find("c"), nullptr);
    EXPECT_EQ(lettersOf(ArgumentList(all, 0)), "");
}

TEST(ArgumentList, SharesAsLongAsItGetsNothingNew) {
    const auto all = listOf("abc");
    ArgumentList two(all, 2);
    two.add("a", "other", "other");
    EXPECT_EQ(two.items().data(), all->items().data());
    EXPECT_EQ(lettersOf(two), "ab");
}

TEST(ArgumentList, LeavesTheSharedListAloneWhenItGetsMore) {
    const auto all = listOf("abc");
    ArgumentList two(all, 2);
    ArgumentList copy = two;
    two.add("c", "mine", "char");
    EXPECT_FALSE(two.isShared());
    EXPECT_THAT(two.items(),
                ElementsAre(Variable("a", "a_port", "int"), Variable("b", "b_port", "int"),
                            Variable("c", "mine", "char")));
    two.add("c", "again", "char");
    two.append(Variable("a", "twice", "char"));
    EXPECT_EQ(lettersOf(two), "abca");
    EXPECT_EQ(lettersOf(copy), "ab");
    EXPECT_EQ(lettersOf(ArgumentList(all, 3)), "abc");
    EXPECT_EQ(all->items()[2], Variable("c", "c_port", "int"));
}

TEST(ArgumentList, TakesOverWhatIsSharedWhenItHasNothing) {
    const auto all = listOf("abc");
    ArgumentList list;
    list.merge(ArgumentList(all, 2));
    EXPECT_EQ(lettersOf(list), "ab");
    EXPECT_TRUE(list.sharesWith(ArgumentList(all, 1)));
    ArgumentList other(listOf("xyz"), 0);
    other.merge(list);
    EXPECT_TRUE(other.sharesWith(list));
}

TEST(ArgumentList, GrowsWithinTheListThatItShares) {
    const auto all = listOf("abc");
    ArgumentList list(all, 1);
    list.merge(ArgumentList(all, 3));
    EXPECT_EQ(lettersOf(list), "abc");
    list.merge(ArgumentList(all, 2));
    EXPECT_EQ(lettersOf(list), "abc");
    EXPECT_TRUE(list.isShared());
}

TEST(ArgumentList, AddsOneByOneWhatAnotherListShares) {
    ArgumentList list(listOf("bd"), 2);
    list.merge(ArgumentList(listOf("abcx"), 3));
    EXPECT_EQ(lettersOf(list), "bdac");
    ArgumentList own = ownList("c");
    own.merge(ArgumentList(listOf("abcx"), 3));
    EXPECT_EQ(lettersOf(own), "cab");
    EXPECT_EQ(own.items()[0].hardwareName, "own");
}

TEST(ArgumentList, TakesNoLocationsOverFromAnotherList) {
    ArgumentList read;
    read.append(Variable("a", "a", "int")).locations.addInstance().push_back({1, 2});
    ArgumentList list;
    list.merge(read);
    EXPECT_THAT(list.items(), ElementsAre(Variable("a", "a", "int")));
}

TEST(ArgumentList, SharesNothingWhenItOwnsItsElements) {
    const ArgumentList own(std::move(*listOf("ab")));
    const ArgumentList copy = own;
    EXPECT_FALSE(own.isShared());
    EXPECT_FALSE(copy.sharesWith(own));
    EXPECT_EQ(lettersOf(copy), "ab");
}

TEST(ArgumentList, IsEmptyAndUsableOnceMovedFrom) {
    ArgumentList list(listOf("ab"), 2);
    const ArgumentList moved = std::move(list);
    EXPECT_EQ(lettersOf(moved), "ab");
    EXPECT_EQ(lettersOf(list), ""); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(list.find("a"), nullptr);
    list.add("c", "", "");
    EXPECT_EQ(lettersOf(list), "c");
}

} // namespace

} // namespace consolidator::test
