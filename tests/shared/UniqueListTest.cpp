// Tests the list that keeps added elements unique by key: order, lookups, copies, moves, and whole
// lists that are changed under its index.
#include "shared/UniqueList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

struct Entry {
    std::string key;
    int value = 0;

    bool operator==(const Entry&) const = default;
};

void PrintTo(const Entry& item, std::ostream* out) {
    *out << item.key << '=' << item.value;
}

struct ByKey {
    std::string_view operator()(const Entry& item) const { return item.key; }
};

using List = UniqueList<Entry, ByKey>;

/// Adds an entry as a kernel does; tells whether it is new.
bool add(List& list, std::string_view key, int value) {
    return list.findOrAdd(key, [&] { return Entry{std::string(key), value}; }).second;
}

List listOf(const std::vector<Entry>& entries) {
    List list;
    for (const Entry& item : entries) {
        list.append(item);
    }
    return list;
}

int valueOf(List& list, std::string_view key) {
    const Entry* item = list.find(key);
    return item == nullptr ? -1 : item->value;
}

TEST(UniqueList, ANewListIsEmpty) {
    List list;
    EXPECT_THAT(list.items(), IsEmpty());
    EXPECT_EQ(list.find("a"), nullptr);
}

TEST(UniqueList, ElementsStayInTheOrderInWhichTheyCame) {
    List list;
    EXPECT_TRUE(add(list, "c", 1));
    EXPECT_TRUE(add(list, "a", 2));
    EXPECT_TRUE(add(list, "b", 3));
    EXPECT_THAT(list.items(), ElementsAre(Entry{"c", 1}, Entry{"a", 2}, Entry{"b", 3}));
}

TEST(UniqueList, TheFirstElementOfAKeyWins) {
    List list;
    add(list, "a", 1);
    add(list, "b", 2);
    EXPECT_FALSE(add(list, "a", 3));
    EXPECT_THAT(list.items(), ElementsAre(Entry{"a", 1}, Entry{"b", 2}));
}

TEST(UniqueList, AKnownElementIsNotMadeASecondTime) {
    List list;
    add(list, "a", 1);
    const auto found = list.findOrAdd("a", []() -> Entry { throw std::string("made again"); });
    EXPECT_EQ(&found.first, list.items().data());
    EXPECT_FALSE(found.second);
}

TEST(UniqueList, AnElementMayTakeOverTheTextThatItsKeyIsAViewOf) {
    struct Text {
        std::string_view operator()(const std::string& text) const { return text; }
    };
    UniqueList<std::string, Text> list;
    for (const char* const text : {"a text of more than sixteen bytes", "short"}) {
        std::string given = text;
        EXPECT_TRUE(list.findOrAdd(given, [&] { return std::move(given); }).second);
        EXPECT_FALSE(list.findOrAdd(text, [] { return std::string(); }).second);
    }
    EXPECT_EQ(list.items().size(), 2);
}

TEST(UniqueList, TheElementFoundOrAddedCanBeChanged) {
    List list;
    list.findOrAdd("a", [] { return Entry{"a", 1}; }).first.value = 5;
    EXPECT_EQ(valueOf(list, "a"), 5);
    list.findOrAdd("a", [] { return Entry{"a", 1}; }).first.value = 6;
    EXPECT_EQ(valueOf(list, "a"), 6);
}

TEST(UniqueList, AnEmptyKeyIsAKeyLikeAnyOther) {
    List list;
    EXPECT_TRUE(add(list, "", 1));
    EXPECT_FALSE(add(list, "", 2));
    EXPECT_EQ(valueOf(list, ""), 1);
}

TEST(UniqueList, KeysAreComparedByteForByteAsAWhole) {
    List list;
    add(list, "a", 1);
    EXPECT_TRUE(add(list, "A", 2));
    EXPECT_TRUE(add(list, "a ", 3));
    EXPECT_TRUE(add(list, std::string_view("a\0", 2), 4));
    EXPECT_TRUE(add(list, std::string_view("a\0b", 3), 5));
    EXPECT_THAT(list.items(), SizeIs(5));
}

TEST(UniqueList, AppendKeepsDuplicates) {
    const List list = listOf({{"a", 1}, {"b", 2}, {"a", 3}});
    EXPECT_THAT(list.items(), ElementsAre(Entry{"a", 1}, Entry{"b", 2}, Entry{"a", 3}));
}

TEST(UniqueList, TheFirstOfSeveralAppendedDuplicatesIsFound) {
    List list = listOf({{"b", 0}, {"a", 1}, {"a", 2}, {"a", 3}});
    EXPECT_EQ(valueOf(list, "a"), 1);
    EXPECT_FALSE(add(list, "a", 4));
    EXPECT_THAT(list.items(), SizeIs(4));
}

TEST(UniqueList, AppendedElementsAreFoundAfterEarlierLookups) {
    List list;
    add(list, "a", 1);
    EXPECT_EQ(list.append({"b", 2}).value, 2);
    EXPECT_FALSE(add(list, "b", 3));
    list.append({"a", 4});
    EXPECT_EQ(valueOf(list, "a"), 1);
    EXPECT_EQ(valueOf(list, "b"), 2);
}

TEST(UniqueList, AFileFullOfEqualKeysStaysHarmless) {
    List list;
    for (int i = 0; i < 200'000; ++i) {
        list.append({"a", i});
    }
    EXPECT_FALSE(add(list, "a", -2));
    EXPECT_TRUE(add(list, "b", -3));
    EXPECT_EQ(valueOf(list, "a"), 0);
    EXPECT_THAT(list.items(), SizeIs(200'001));
}

TEST(UniqueList, EachElementCanBeChangedBelowItsKey) {
    List list = listOf({{"a", 1}, {"b", 2}});
    list.changeEach([](Entry& item) { item.value *= 10; });
    EXPECT_THAT(list.items(), ElementsAre(Entry{"a", 10}, Entry{"b", 20}));
    EXPECT_EQ(valueOf(list, "b"), 20);
}

TEST(UniqueList, ChangedKeysAreTheOnesThatCount) {
    List list = listOf({{"a", 1}, {"b", 2}});
    EXPECT_EQ(valueOf(list, "a"), 1);
    list.changeAll([](std::vector<Entry>& items) { items[0].key = "c"; });
    EXPECT_EQ(valueOf(list, "a"), -1);
    EXPECT_EQ(valueOf(list, "c"), 1);
    EXPECT_FALSE(add(list, "c", 3));
    EXPECT_TRUE(add(list, "a", 4));
}

TEST(UniqueList, RemovedElementsCanBeAddedAgain) {
    List list = listOf({{"a", 1}, {"b", 2}, {"c", 3}});
    EXPECT_EQ(valueOf(list, "c"), 3);
    list.changeAll([](std::vector<Entry>& items) { items.erase(items.begin()); });
    EXPECT_EQ(valueOf(list, "c"), 3);
    EXPECT_TRUE(add(list, "a", 4));
    EXPECT_THAT(list.items(), ElementsAre(Entry{"b", 2}, Entry{"c", 3}, Entry{"a", 4}));
}

TEST(UniqueList, AClearedListIsAsNew) {
    List list = listOf({{"a", 1}});
    EXPECT_EQ(valueOf(list, "a"), 1);
    list.clear();
    EXPECT_THAT(list.items(), IsEmpty());
    EXPECT_EQ(list.find("a"), nullptr);
    EXPECT_TRUE(add(list, "a", 2));
    EXPECT_EQ(valueOf(list, "a"), 2);
}

TEST(UniqueList, ACopyAndItsOriginalChangeApart) {
    List original;
    add(original, "a", 1);
    List copy = original;
    copy.find("a")->value = 5;
    EXPECT_TRUE(add(copy, "b", 6));
    EXPECT_THAT(original.items(), ElementsAre(Entry{"a", 1}));
    EXPECT_EQ(original.find("b"), nullptr);
    EXPECT_TRUE(add(original, "b", 7));
    EXPECT_THAT(copy.items(), ElementsAre(Entry{"a", 5}, Entry{"b", 6}));
}

TEST(UniqueList, AnAssignedCopyForgetsItsOwnElements) {
    List list = listOf({{"old", 1}});
    EXPECT_EQ(valueOf(list, "old"), 1);
    const List other = listOf({{"new", 2}});
    list = other;
    EXPECT_EQ(valueOf(list, "old"), -1);
    EXPECT_EQ(valueOf(list, "new"), 2);
}

TEST(UniqueList, AListMovedFromIsEmptyAndUsable) {
    List from;
    add(from, "a", 1);
    List moved(std::move(from));
    EXPECT_EQ(valueOf(moved, "a"), 1);
    // NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_THAT(from.items(), IsEmpty());
    EXPECT_EQ(from.find("a"), nullptr);
    EXPECT_TRUE(add(from, "a", 2));
    // NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
    EXPECT_EQ(valueOf(moved, "a"), 1);
}

TEST(UniqueList, AMoveAssignedListHoldsTheOtherOnesElements) {
    List from = listOf({{"a", 1}});
    List list = listOf({{"b", 2}});
    EXPECT_EQ(valueOf(list, "b"), 2);
    list = std::move(from);
    EXPECT_THAT(list.items(), ElementsAre(Entry{"a", 1}));
    EXPECT_EQ(list.find("b"), nullptr);
    EXPECT_FALSE(add(list, "a", 3));
    from.clear(); // NOLINT(bugprone-use-after-move)
    EXPECT_TRUE(add(from, "b", 4));
}

TEST(UniqueList, SwapExchangesElementsAndLookups) {
    List left = listOf({{"a", 1}});
    List right = listOf({{"b", 2}, {"c", 3}});
    EXPECT_EQ(valueOf(right, "c"), 3);
    left.swap(right);
    EXPECT_EQ(valueOf(left, "c"), 3);
    EXPECT_EQ(valueOf(left, "a"), -1);
    EXPECT_EQ(valueOf(right, "a"), 1);
    EXPECT_EQ(valueOf(right, "b"), -1);
}

/// A key whose hash says nothing, so that only the comparison of whole keys tells two apart.
struct Colliding {
    int number = 0;

    bool operator==(const Colliding&) const = default;
};

std::uint64_t keyHash(const Colliding& /*key*/) {
    return 1;
}

TEST(UniqueList, KeysOfEqualHashAreToldApart) {
    UniqueList<Colliding, std::identity> list;
    for (const int number : {1, 2, 3, 2, 1, 4}) {
        const Colliding key{number};
        list.findOrAdd(key, [&] { return key; });
    }
    EXPECT_THAT(list.items(), ElementsAre(Colliding{1}, Colliding{2}, Colliding{3}, Colliding{4}));
    EXPECT_EQ(list.find(Colliding{3})->number, 3);
    EXPECT_EQ(list.find(Colliding{5}), nullptr);
}

} // namespace
} // namespace consolidator::test
