// What holds for every glob and text: the answer is that of the plainest matcher.

#include "query/NamePattern.h"
#include "shared/Printable.h"
#include "tests/support/PlainGlob.h"
#include "tests/support/RandomSource.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using namespace std::string_view_literals;

/// Characters, the first and last of their kinds among them, and bytes that are none or only a part
/// of one.
const std::vector<std::string_view>& characters() {
    static const std::vector<std::string_view> all{"a"sv,
                                                   "b"sv,
                                                   "-"sv,
                                                   "!"sv,
                                                   "^"sv,
                                                   "]"sv,
                                                   "\\"sv,
                                                   "*"sv,
                                                   "\0"sv,
                                                   "\n"sv,
                                                   "\x7F"sv,
                                                   "\x80"sv,
                                                   "\xA4"sv,
                                                   "\xBF"sv,
                                                   "\xC0"sv,
                                                   "\xC2\x80"sv,
                                                   "\xC3"sv,
                                                   "\xC3\xA4"sv,
                                                   "\xDF"sv,
                                                   "\xDF\xBF"sv,
                                                   "\xE0"sv,
                                                   "\xE0\xA0\x80"sv,
                                                   "\xE1\x80"sv,
                                                   "\xED\x9F\xBF"sv,
                                                   "\xED"sv,
                                                   "\xED\xA2\x80"sv,
                                                   "\xEE\x80\x80"sv,
                                                   "\xEF\xBF\xBF"sv,
                                                   "\xF0"sv,
                                                   "\xF0\x90\x80\x80"sv,
                                                   "\xF1"sv,
                                                   "\xF4"sv,
                                                   "\xF4\x8F\xBF\xBF"sv,
                                                   "\xF5"sv,
                                                   "\xFF"sv};
    return all;
}

class RandomGlobs {
public:
    explicit RandomGlobs(std::uint32_t seed) : random_(seed) {}

    std::string text() {
        std::string result;
        for (std::size_t count = random_.below(8); count > 0; --count) {
            result += character();
        }
        return result;
    }

    std::string glob() {
        std::string result;
        for (std::size_t count = random_.below(7); count > 0; --count) {
            switch (random_.below(4)) {
            case 0:
                result += '*';
                break;
            case 1:
                result += '?';
                break;
            case 2:
                result += set();
                break;
            default:
                result += literal();
            }
        }
        return result;
    }

private:
    /// Often one of two, so that texts match.
    std::string character() {
        return random_.onceIn(2) ? random_.anyOf({"a", "\xC3\xA4"}) : random_.anyOf(characters());
    }

    std::string literal() {
        const std::string wanted = character();
        return random_.onceIn(4) || wanted == "\\" || wanted == "*" ? '\\' + wanted : wanted;
    }

    std::string set() {
        std::string result = random_.anyOf({"[", "[!", "[^"});
        for (std::size_t count = 1 + random_.below(3); count > 0; --count) {
            result += '\\' + character();
            result += random_.onceIn(2) ? "-\\" + character() : "";
        }
        return result + ']';
    }

    RandomSource random_;
};

TEST(GlobProperties, AgreesWithThePlainMatcher) {
    constexpr std::uint32_t seeds = 3000;
    std::size_t matches = 0;
    for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
        RandomGlobs random(seed);
        const std::string pattern = random.glob();
        const NamePattern glob(pattern, NamePattern::Kind::Glob);
        ASSERT_EQ(glob.error(), "") << "seed " << seed << ": " << printable(pattern);
        for (int i = 0; i < 20; ++i) {
            const std::string text = random.text();
            const bool expected = plainGlobMatches(pattern, text);
            matches += expected ? 1 : 0;
            EXPECT_EQ(glob.matchesName(text), expected)
                << "seed " << seed << ": " << printable(pattern) << " and " << printable(text);
        }
    }
    EXPECT_GT(matches, seeds / 2); // otherwise the texts say little
}

/// Each range between two characters, on each character.
TEST(GlobProperties, HasTheCharactersOfARangeInTheOrderOfTheirBytes) {
    for (const std::string_view from : characters()) {
        for (const std::string_view to : characters()) {
            std::string set("[\\");
            set += from;
            set += "-\\";
            set += to;
            set += ']';
            const NamePattern glob(set, NamePattern::Kind::Glob);
            const NamePattern negated('[' + ("!" + set.substr(1)), NamePattern::Kind::Glob);
            for (const std::string_view text : characters()) {
                EXPECT_EQ(glob.matchesName(text), plainGlobMatches(set, text))
                    << printable(set) << " and " << printable(text);
                EXPECT_EQ(negated.matchesName(text), plainGlobMatches("[!" + set.substr(1), text))
                    << "not " << printable(set) << " and " << printable(text);
            }
        }
    }
}

} // namespace

} // namespace consolidator::test
