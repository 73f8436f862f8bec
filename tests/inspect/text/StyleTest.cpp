// The word for each severity, and its colour.

#include "inspect/text/Style.h"

#include <gtest/gtest.h>

namespace consolidator::inspect::test {

namespace {

TEST(Severity, HasAWord) {
    EXPECT_EQ(label(Severity::Note), "note");
    EXPECT_EQ(label(Severity::Warning), "warning");
    EXPECT_EQ(label(Severity::Error), "error");
}

TEST(Severity, HasTheColourThatCompilersGiveIt) {
    EXPECT_EQ(styledLabel(Severity::Note, true), "\x1b[1mnote\x1b[0m");
    EXPECT_EQ(styledLabel(Severity::Warning, true), "\x1b[33mwarning\x1b[0m");
    EXPECT_EQ(styledLabel(Severity::Error, true), "\x1b[31merror\x1b[0m");
    EXPECT_EQ(styledLabel(Severity::Error, false), "error");
}

} // namespace

} // namespace consolidator::inspect::test
