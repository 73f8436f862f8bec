// Bits that a logic-location file places twice, by what two readings of the file tell.

#include "inspect/check/RepeatedBits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using testing::ElementsAre;

using Lines = std::vector<RepeatedBits::Placement>;

const LogicLocation here{1, 7};
const LogicLocation there{1, 8};
const LogicLocation elsewhere{2, 7};

RepeatedBits::Placement placed(std::uint64_t line, std::string_view net, std::uint32_t bitIndex,
                               LogicLocation location,
                               std::optional<LogicLocation> before = std::nullopt) {
    return {net, bitIndex, location, line, before};
}

Finding warning(std::uint64_t line, const std::string& text) {
    return {"a.ll", line, Severity::Warning, Code::RepeatedBit, text};
}

std::vector<Finding> findingsOf(const Lines& first, const Lines& second) {
    RepeatedBits bits;
    for (const auto& line : first) {
        bits.look(line);
    }
    EXPECT_TRUE(bits.any());
    for (const auto& line : second) {
        bits.lookAgain(line);
    }
    Findings findings;
    bits.report("a.ll", findings);
    return findings.kept();
}

TEST(RepeatedBits, NameTheFirstAndTheLineBeforeIt) {
    const Lines lines{placed(1, "r", 2, here), placed(2, "q", 2, here), placed(3, "r", 1, here),
                      placed(4, "r", 2, there, here)};
    EXPECT_THAT(findingsOf(lines, lines),
                ElementsAre(warning(4, "line 1 places the same bit elsewhere, and the later line "
                                       "counts")));
}

TEST(RepeatedBits, CountTheOthersAndNotThoseAtOneAndTheSamePlace) {
    const Lines lines{placed(1, "r", 2, here),        placed(2, "r", 2, here, here),
                      placed(3, "r", 2, there, here), placed(4, "r", 2, elsewhere, there),
                      placed(5, "r", 3, here),        placed(6, "r", 2, here, elsewhere)};
    EXPECT_THAT(findingsOf(lines, lines),
                ElementsAre(warning(3, "line 2 places the same bit elsewhere, and the later line "
                                       "counts; there are 2 more such lines")));
}

TEST(RepeatedBits, NameNoLineBeforeThatIsGone) {
    EXPECT_THAT(findingsOf({placed(1, "r", 2, here), placed(2, "r", 2, there, here)}, {}),
                ElementsAre(warning(2, "an earlier line places the same bit elsewhere, and the "
                                       "later line counts")));
}

TEST(RepeatedBits, AreNoneWhereNothingIsContradicted) {
    RepeatedBits bits;
    bits.look(placed(1, "r", 2, here));
    bits.look(placed(2, "r", 2, here, here));
    EXPECT_FALSE(bits.any());
}

} // namespace

} // namespace consolidator::inspect::test
