// Bits that a logic-location file places twice.

#include "inspect/check/RepeatedBits.h"

#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using consolidator::test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;

/// A kernel with the register "/top/k_1/r".
Kernel kernel() {
    Kernel result;
    result.addHardwareLocation("/top/k_1/r", 0, 1, 1);
    return result;
}

struct RepeatedBits : testing::Test {
    TemporaryDirectory directory;
    std::string path;

    std::vector<Finding> findingsOf(const std::string& text) {
        path = directory.write("a.ll", text);
        Findings findings;
        std::ostringstream out;
        Progress progress(out, false);
        reportRepeatedBits({kernel()}, {path}, findings, progress);
        return findings.kept();
    }

    Finding warning(std::uint64_t line, const std::string& text) const {
        return {path, line, Severity::Warning, "repeated-bit", text};
    }
};

TEST_F(RepeatedBits, AreFoundOncePerFile) {
    const auto found = findingsOf("Bit 1 0x1 7 DIE0 0 Net=top/k_1/r[2]\n"
                                  "Bit 1 0x1 8 DIE0 0 Net=top/k_1/r[3]\n"
                                  "; a comment\n"
                                  "Bit 1 0x1 9 DIE0 0 Net=top/k_1/r[2]\n"
                                  "Bit 1 0x2 8 DIE0 0 Net=top/k_1/r[3]\n"
                                  "Bit 1 0x2 9 DIE0 0 Net=top/k_1/r[3]\n");
    EXPECT_THAT(found, ElementsAre(warning(4, "line 1 places the same bit elsewhere, and the later "
                                              "line counts; there are 2 more such lines")));
}

TEST_F(RepeatedBits, AreFoundOnLinesThatAreNotUsual) {
    const auto found = findingsOf("Bit 1 0x1 7 DIE0 0 Net=top/k_1/r\n"
                                  "Bit 1 0x1 8 DIE0 0 Net=top/k_1/r[a] X\n");
    EXPECT_THAT(found, ElementsAre(warning(
                           2, "line 1 places the same bit elsewhere, and the later line counts")));
}

TEST_F(RepeatedBits, AreNoneAtOneAndTheSamePlace) {
    EXPECT_THAT(findingsOf("Bit 1 0x1 7 DIE0 0 Net=top/k_1/r[2]\n"
                           "Bit 2 0x1 7 DIE0 0 Net=top/k_1/r[2]\n"),
                IsEmpty());
}

TEST_F(RepeatedBits, AreNotLookedForInOtherLines) {
    EXPECT_THAT(findingsOf("Bit 1 0x1 7 DIE0 0 Net=top/k_1/other\n"
                           "Bit 1 0x1 8 DIE0 0 Net=top/k_1/other\n"
                           "Bit 1 0x1 7 DIE0 0 Net=top/k_1/r[0]\n"
                           "Bit 1 0x1 8 DIE0 0 Net=top/k_1/r[1]\n"
                           "Bit 1 0x1 9 DIE0 0 Revision Net=top/k_1/r[0]\n"
                           "; Bit 1 0x1 9 DIE0 0 Net=top/k_1/r[0]\n"
                           "Bit 1 Net=top/k_1/r[0]\n"
                           "Bit 1 0x1 7 DIE0 0\n"),
                IsEmpty());
}

} // namespace

} // namespace consolidator::inspect::test
