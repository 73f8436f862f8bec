#include "inspect/text/Table.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

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

TEST(Table, LetsNoLongCellWidenItsColumn) {
    const std::string widest(Table::widestColumn, 'x');
    Table table({{"a"}, {"b", Table::Align::Right}, {"c"}});
    table.add({widest + 'x', "1", "y"});
    table.add({"z", widest + 'x', "y"});
    std::ostringstream out;
    table.print(out, "", false);
    EXPECT_EQ(out.str(), "a  b  c\n" + widest + "x  1  y\n" + "z  " + widest + "x  y\n");
    table.add({widest, "2", "y"});
    out.str("");
    table.print(out, "", false);
    EXPECT_TRUE(out.str().ends_with("\n" + widest + "  2  y\n")) << out.str();
    EXPECT_TRUE(out.str().starts_with("a" + std::string(widest.size() - 1, ' ') + "  b  c\n"))
        << out.str();
}

TEST(Table, MakesRowsOneByOne) {
    std::ostringstream out;
    const auto makeRow = [](std::size_t row) { return std::vector{std::string(row + 1, 'x')}; };
    printRows(out, {{"a", Table::Align::Right}}, 3, makeRow, " ", false);
    EXPECT_EQ(out.str(), "   a\n"
                         "   x\n"
                         "  xx\n"
                         " xxx\n");
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
