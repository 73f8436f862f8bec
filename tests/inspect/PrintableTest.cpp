#include "inspect/Printable.h"

#include <gtest/gtest.h>

#include <string_view>

namespace consolidator::inspect::test {

namespace {

TEST(Printable, LeavesNamesAlone) {
    EXPECT_EQ(printable("/top/k_1/inst/state_r[3]"), "/top/k_1/inst/state_r[3]");
    EXPECT_EQ(printable("gr\xC3\xB6\xC3\x9F"
                        "e \xF0\x9F\x94\xA7"),
              "gr\xC3\xB6\xC3\x9F"
              "e \xF0\x9F\x94\xA7");
}

TEST(Printable, EscapesWhatATerminalWouldObey) {
    EXPECT_EQ(printable(std::string_view("a\nb\tc\x1b[0m\x7f\0", 10)), R"(a\nb\tc\x1b[0m\x7f)");
    EXPECT_EQ(printable(std::string_view("\0", 1)), R"(\x00)");
    EXPECT_EQ(printable("\xC2\x9B"), R"(\xc2\x9b)");
    EXPECT_EQ(printable("\xC2\xA0"), "\xC2\xA0");
    EXPECT_EQ(printable("\xFF"), R"(\xff)");
    EXPECT_EQ(printable(R"(\n)"), R"(\\n)");
}

TEST(Printable, CountsCharactersAsColumns) {
    EXPECT_EQ(columns(""), 0U);
    EXPECT_EQ(columns("gr\xC3\xB6\xC3\x9F"), 4U);
}

} // namespace

} // namespace consolidator::inspect::test
