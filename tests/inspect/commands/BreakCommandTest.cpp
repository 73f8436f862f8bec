// `consolidator-inspect break`, to the letter.

#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace consolidator::test {

namespace {

using testing::HasSubstr;
using testing::Not;

struct BreakCommand : testing::Test {
    TemporaryDirectory directory;

    CommandResult stops(const std::string& database, const std::string& place) const {
        return inspectRun({"break", directory.write("db", database), place});
    }

    CommandResult complaint(const std::string& reason) const {
        return {1, "", directory.path("db") + ": error: " + reason + "\n"};
    }
};

/// Two kernels with lines of three files, in no order.
std::string severalFiles() {
    return knownDatabase({{.name = "one",
                           .conditions = {{2, "c30", 30, "src/a.cpp"},
                                          {0, "start", 0, ""},
                                          {2, "c7", 7, "src/a.cpp"},
                                          {2, "other", 7, "src/ba.cpp"}}},
                          {.name = "two",
                           .conditions = {{2, "d30", 30, "src/a.cpp"},
                                          {2, "d30", 30, "src/a.cpp"},
                                          {2, "d9", 9, "old/src/a.cpp"}}}});
}

TEST_F(BreakCommand, ShowsTheExampleProject) {
    const CommandResult expected{0,
                                 "scale_rows.cpp\n"
                                 "  line  kernel      condition\n"
                                 "    14  scale_rows  == 1'b1 $i/fsm_state2\n",
                                 ""};
    EXPECT_EQ(stops(exampleDatabase(), "scale_rows.cpp"), expected);
    EXPECT_EQ(stops(exampleDatabase(), "scale_rows.cpp:14"), expected);
}

TEST_F(BreakCommand, ShowsEachFileWithThisEnd) {
    EXPECT_EQ(stops(severalFiles(), "a.cpp"), (CommandResult{0,
                                                             "old/src/a.cpp\n"
                                                             "  line  kernel  condition\n"
                                                             "     9  two     d9\n"
                                                             "\n"
                                                             "src/a.cpp\n"
                                                             "  line  kernel  condition\n"
                                                             "     7  one     c7\n"
                                                             "    30  one     c30\n"
                                                             "    30  two     d30\n"
                                                             "    30  two     d30\n",
                                                             ""}));
    EXPECT_EQ(stops(severalFiles(), "old/src/a.cpp").out, "old/src/a.cpp\n"
                                                          "  line  kernel  condition\n"
                                                          "     9  two     d9\n");
    EXPECT_EQ(stops(severalFiles(), "ba.cpp").out, "src/ba.cpp\n"
                                                   "  line  kernel  condition\n"
                                                   "     7  one     other\n");
}

TEST_F(BreakCommand, ShowsOneLine) {
    EXPECT_EQ(stops(severalFiles(), "src/a.cpp:7"), (CommandResult{0,
                                                                   "src/a.cpp\n"
                                                                   "  line  kernel  condition\n"
                                                                   "     7  one     c7\n",
                                                                   ""}));
}

TEST_F(BreakCommand, NamesTheNearestLinesInstead) {
    EXPECT_EQ(stops(severalFiles(), "ba.cpp:7").status, 0);
    EXPECT_EQ(stops(severalFiles(), "ba.cpp:6"),
              complaint("no kernel can be stopped at src/ba.cpp:6; nearest lines: none before, 7 "
                        "after"));
    EXPECT_EQ(stops(severalFiles(), "ba.cpp:8"),
              complaint("no kernel can be stopped at src/ba.cpp:8; nearest lines: 7 before, none "
                        "after"));
    EXPECT_EQ(stops(severalFiles(), "a.cpp:10").err,
              directory.path("db") +
                  ": error: no kernel can be stopped at old/src/a.cpp:10; nearest lines: 9 before, "
                  "none after\n" +
                  directory.path("db") +
                  ": error: no kernel can be stopped at src/a.cpp:10; nearest lines: 7 before, 30 "
                  "after\n");
}

TEST_F(BreakCommand, NamesTheNearestFilesInstead) {
    EXPECT_EQ(stops(exampleDatabase(), "/home/dev/Scale_rows.cpp:14"),
              complaint("no kernel can be stopped in \"/home/dev/Scale_rows.cpp\"; did you mean "
                        "\"scale_rows.cpp\"?"));
    EXPECT_EQ(stops(exampleDatabase(), "rows.cpp"),
              complaint("no kernel can be stopped in \"rows.cpp\""));
    EXPECT_EQ(stops(knownDatabase({}), "\x1b"), complaint("no kernel can be stopped in \"\\x1b\""));
}

TEST_F(BreakCommand, WantsAFile) {
    EXPECT_EQ(stops(exampleDatabase(), "").status, 2);
    EXPECT_EQ(stops(exampleDatabase(), ":14").status, 2);
}

TEST_F(BreakCommand, RefusesWhatIsNoLineNumber) {
    for (const std::string text : {"", "abc", "-1", "+1", " 1", "1a", "4294967296"}) {
        EXPECT_EQ(stops(exampleDatabase(), "scale_rows.cpp:" + text),
                  (CommandResult{2, "",
                                 "consolidator-inspect break: error: \"" + text +
                                     "\" is no line number up to 4294967295\n"}));
    }
    EXPECT_EQ(stops(exampleDatabase(), "a.cpp:\x1b").err,
              "consolidator-inspect break: error: \"\\x1b\" is no line number up to 4294967295\n");
}

TEST_F(BreakCommand, TakesAColonForAPartOfTheNameWhereItIs) {
    const std::string database =
        knownDatabase({{.name = "k", .conditions = {{2, "c", 7, "src:new/a.cpp:x1"}}}});
    EXPECT_EQ(stops(database, "a.cpp:x1").status, 0);
    EXPECT_EQ(stops(database, "a.cpp:x1:7").status, 0);
    EXPECT_EQ(stops(database, "src:new/b.cpp"),
              complaint("no kernel can be stopped in \"src:new/b.cpp\""));
}

TEST_F(BreakCommand, LetsNoNameDriveTheTerminal) {
    const std::string bad = "\x1b[2J";
    const KnownKernel hostile{.name = bad, .conditions = {{2, bad, 7, bad + "/a.cpp"}}};
    for (const char* place : {"a.cpp", "a.cpp:8"}) {
        const CommandResult result = stops(knownDatabase({hostile}), place);
        EXPECT_THAT(result.out + result.err, HasSubstr("\\x1b[2J/a.cpp"));
        EXPECT_THAT(result.out + result.err, Not(HasSubstr("\x1b")));
    }
}

// A long name for many lines, and one long condition among them.
TEST_F(BreakCommand, GrowsWithTheDatabaseOnly) {
    KnownKernel hostile{.name = std::string(1'000'000, 'x'),
                        .conditions = {{2, std::string(1'000'000, 'c'), 0, "a.cpp"}}};
    for (std::uint32_t line = 1; line < 1000; ++line) {
        hostile.conditions.push_back({2, "c", line, "a.cpp"});
    }
    const CommandResult result = stops(knownDatabase({hostile}), "a.cpp");
    EXPECT_EQ(result.status, 0);
    EXPECT_LT(result.out.size(), 2'000'000U);
}

// A ":" in the name of a file, and the largest and smallest lines.
TEST_F(BreakCommand, TakesDigitsBehindTheLastColonForALine) {
    const std::string database = knownDatabase(
        {{.name = "k",
          .conditions = {
              {2, "zero", 0, "a:1"}, {2, "c14", 14, "a:1"}, {2, "most", 4294967295, "a:1"}}}});
    EXPECT_THAT(stops(database, "a:1:14").out, HasSubstr("  14  k       c14\n"));
    EXPECT_THAT(stops(database, "a:1:0").out, HasSubstr("  0  k       zero\n"));
    EXPECT_THAT(stops(database, "a:1:4294967295").out, HasSubstr("  4294967295  k       most\n"));
    for (const char* line : {"14", "0", "4294967295"}) {
        const std::string out = stops(database, std::string("a:1:") + line).out;
        EXPECT_EQ(std::ranges::count(out, '\n'), 3) << line; // the file, the heading, one row
    }
}

} // namespace

} // namespace consolidator::test
