// The search for many paths at once: by hand on small sets, and against a plain search for one path
// after the other.

#include "shared/PathFinder.h"

#include "tests/support/Bytes.h"
#include "tests/support/RandomSource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::string_view>;
using Numbers = std::vector<std::uint32_t>;

Numbers foundBy(PathFinder& finder, std::string_view text) {
    Numbers result;
    finder.forEachIn(text, [&](std::uint32_t path) {
        result.push_back(path);
        return true;
    });
    return result;
}

Numbers found(const Texts& paths, std::string_view text) {
    PathFinder finder(paths);
    return foundBy(finder, text);
}

TEST(PathFinder, FindsPathsInTheOrderOfTheirEnds) {
    const Texts paths = {"he", "hers", "his", "she"};
    EXPECT_THAT(found(paths, "ushers"), ElementsAre(3, 0, 1));
    EXPECT_THAT(found(paths, "hishe"), ElementsAre(2, 3, 0));
    EXPECT_THAT(found(paths, "hi/s/h/ers"), IsEmpty());
    EXPECT_THAT(found(paths, ""), IsEmpty());
}

TEST(PathFinder, FindsPathsThatBeginEndOrLieInOthers) {
    const Texts paths = {"/top/k_1", "k_1", "op", "top", "top/k_1", "top/k_10"};
    EXPECT_THAT(found(paths, "/top/k_1/x"), ElementsAre(3, 2, 0, 4, 1));
    EXPECT_THAT(found(paths, "top/k_10"), ElementsAre(3, 2, 4, 1, 5));
    EXPECT_THAT(found(paths, "/to/k_10"), ElementsAre(1));
    EXPECT_THAT(found(paths, "stop"), ElementsAre(3, 2));
}

TEST(PathFinder, GoesOnWithTheLongestEndThatCanStillBecomeAPath) {
    EXPECT_THAT(found({"aab"}, "aaab"), ElementsAre(0));
    EXPECT_THAT(found({"abac", "acx", "bad"}, "abad"), ElementsAre(2));
    EXPECT_THAT(found({"top/top/k"}, "top/top/top/k"), ElementsAre(0));
}

TEST(PathFinder, FindsAnEmptyPathInEveryText) {
    EXPECT_THAT(found({""}, ""), ElementsAre(0));
    EXPECT_THAT(found({""}, "abc"), ElementsAre(0));
    EXPECT_THAT(found({"", "b"}, "abcb"), ElementsAre(0, 1));
}

TEST(PathFinder, FindsNothingWithoutPaths) {
    EXPECT_THAT(found({}, ""), IsEmpty());
    EXPECT_THAT(found({}, "abc"), IsEmpty());
}

TEST(PathFinder, FindsAPathOnceInEachText) {
    const Texts paths = {"/", "//", "a"};
    PathFinder finder(paths);
    for (int i = 0; i < 3; ++i) {
        EXPECT_THAT(foundBy(finder, "a/a//a///"), ElementsAre(2, 0, 1));
        EXPECT_THAT(foundBy(finder, "/x/"), ElementsAre(0));
        EXPECT_THAT(foundBy(finder, ""), IsEmpty());
    }
}

TEST(PathFinder, StopsWhenItIsTold) {
    const Texts paths = {"", "a", "ab", "b", "c"};
    PathFinder finder(paths);
    for (std::size_t most = 1; most <= 5; ++most) {
        Numbers result;
        finder.forEachIn("abc", [&](std::uint32_t path) {
            result.push_back(path);
            return result.size() < most;
        });
        const Numbers all = {0, 1, 2, 3, 4};
        EXPECT_EQ(result, Numbers(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(most)));
    }
}

TEST(PathFinder, TakesBytesOfEveryValue) {
    std::string all;
    for (int value = 0; value < 256; ++value) {
        all += static_cast<char>(value);
    }
    Texts paths;
    for (std::size_t i = 0; i < all.size(); ++i) {
        paths.push_back(std::string_view(all).substr(i, 1));
    }
    const Numbers numbers = found(paths, all);
    ASSERT_EQ(numbers.size(), 256);
    for (std::uint32_t i = 0; i < 256; ++i) {
        EXPECT_EQ(numbers[i], i);
    }
    const std::string zero = bytes("a\0b");
    EXPECT_THAT(found({std::string_view(zero).substr(1, 1), zero, "ab"}, bytes("aab\0a\0b")),
                ElementsAre(2, 0, 1));
}

TEST(PathFinder, VisitsEachOfManyNestedPathsOnlyOnce) {
    constexpr std::size_t depth = 1000;
    const std::string longest(depth, 'a');
    Texts paths;
    for (std::size_t size = 1; size <= depth; ++size) {
        paths.push_back(std::string_view(longest).substr(0, size));
    }
    // One byte after the other adds one path, however many the text ends with.
    EXPECT_EQ(found(paths, std::string(2 * depth, 'a')).size(), depth);
    EXPECT_EQ(found(paths, std::string(depth / 2, 'a')).size(), depth / 2);
}

TEST(PathFinder, TakesLongPaths) {
    constexpr std::size_t size = 1000000;
    const std::string path = std::string(size, 'a') + 'b';
    const Texts paths = {path};
    PathFinder finder(paths);
    EXPECT_THAT(foundBy(finder, "a" + path), ElementsAre(0));
    EXPECT_THAT(foundBy(finder, path.substr(1)), IsEmpty());
    EXPECT_THAT(foundBy(finder, path.substr(0, size)), IsEmpty());
}

/// A small text over few letters, so that such texts lie in one another.
std::string randomText(RandomSource& random, std::size_t longest, std::size_t letters) {
    std::string result;
    for (std::size_t size = random.below(longest + 1); size > 0; --size) {
        result += "/ab\xFFk"[random.below(letters)];
    }
    return result;
}

TEST(PathFinder, AgreesWithAPlainSearch) {
    RandomSource random(20260131);
    std::size_t hits = 0;
    for (int i = 0; i < 3000 && !testing::Test::HasFailure(); ++i) {
        const std::size_t letters = 1 + random.below(5);
        std::set<std::string> distinct;
        for (std::size_t count = random.below(30); count > 0; --count) {
            distinct.insert(randomText(random, 6, letters));
        }
        const Texts paths(distinct.begin(), distinct.end());
        PathFinder finder(paths);
        for (int j = 0; j < 10; ++j) {
            const std::string text = randomText(random, 20, letters);
            Numbers expected;
            for (std::uint32_t path = 0; path < paths.size(); ++path) {
                if (text.find(paths[path]) != std::string::npos) {
                    expected.push_back(path);
                }
            }
            hits += expected.size();
            EXPECT_THAT(foundBy(finder, text), testing::UnorderedElementsAreArray(expected))
                << testing::PrintToString(paths) << " in " << testing::PrintToString(text);
        }
    }
    EXPECT_GT(hits, 30000);
}

} // namespace

} // namespace consolidator::test
