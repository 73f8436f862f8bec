#include "inspect/Table.h"

#include <gtest/gtest.h>

#include <sstream>

namespace consolidator::inspect::test {

namespace {

TEST(Table, AlignsItsColumns) {
    Table table({{"type"}, {"size", Table::Align::Right}, {"note"}});
    EXPECT_TRUE(table.empty());
    table.add({"kernel data", "5", ""});
    table.add({"\xC3\xA4", "1432", "x"});
    EXPECT_FALSE(table.empty());
    std::ostringstream out;
    table.print(out, "  ", false);
    EXPECT_EQ(out.str(), "  type         size  note\n"
                         "  kernel data     5\n"
                         "  \xC3\xA4            1432  x\n");
}

TEST(Table, SetsItsHeadingsInBold) {
    Table table({{"a"}});
    table.add({"b"});
    std::ostringstream out;
    table.print(out, "", true);
    EXPECT_EQ(out.str(), "\x1b[1ma\x1b[0m\nb\n");
}

} // namespace

} // namespace consolidator::inspect::test
