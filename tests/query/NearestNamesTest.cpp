#include "query/NearestNames.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NearestNames, PutsTheNearestFirst) {
    NearestNames nearest("scale_rows");
    for (const char* name : {"checksum", "scale_row_x", "scale_row", "scale_rows_2", "Scale_Rows",
                             "scale_row", "scale_rov"}) {
        nearest.add(name);
    }
    // Distances 2 for scale_row_x, scale_rows_2 and scale_rov, which come too late.
    EXPECT_THAT(nearest.names(), ElementsAre("Scale_Rows", "scale_row", "scale_row_x"));
    EXPECT_EQ(nearest.question(), R"(; did you mean "Scale_Rows", "scale_row" or "scale_row_x"?)");
}

TEST(NearestNames, KeepsSilentAboutWhatDiffersTooMuch) {
    NearestNames nearest("sum");
    nearest.add("row");
    nearest.add("");
    EXPECT_THAT(nearest.names(), IsEmpty());
    EXPECT_EQ(nearest.question(), "");
}

TEST(NearestNames, ShowsNoNameThatDrivesTheTerminal) {
    NearestNames nearest("sum_");
    nearest.add("sum\x1b");
    EXPECT_EQ(nearest.question(), R"(; did you mean "sum\x1b"?)");
}

} // namespace

} // namespace consolidator::test
