// One file in two places of the command line. Opening for writing empties a file, whoever else
// reads it.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

struct SameFile : testing::Test {
    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments);
    }

    TemporaryDirectory directory;
    const std::string whole = DatabaseBuilder()
                                  .section(1, "blob")
                                  .section(3, knownJson({{"scale_rows", 4}}))
                                  .section(2, knownKernelData({{"scale_rows", 4}}))
                                  .bytes();
};

TEST_F(SameFile, AsDatabaseAndDumpIsEmptied) {
    for (const char* option : {"-u", "-j"}) {
        directory.write("db", whole);
        EXPECT_EQ(run({"-f", "db", option, "db"}), CommandResult{});
        EXPECT_EQ(directory.contents(), (std::map<std::string, std::string>{{"db", ""}}));
    }
}

TEST_F(SameFile, UnderASecondNameIsStillTheSame) {
    directory.write("db", whole);
    std::filesystem::create_hard_link(directory.path("db"), directory.path("other"));
    EXPECT_EQ(run({"-f", "db", "-u", "other"}), CommandResult{});
    EXPECT_EQ(directory.read("db"), "");
}

TEST_F(SameFile, AsDatabaseAndInputIsAnEmptyInput) {
    for (const char* option : {"-d", "-k", "-l", "-r"}) {
        directory.write("db", whole);
        const CommandResult result = run({"-f", "db", option, "db"});
        EXPECT_EQ(result.status, 0) << option;
        EXPECT_EQ(result.err, std::string(option) == "-k" ? "Could not parse kernel file\n" : "");
        EXPECT_EQ(directory.read("db"), whole) << option;
    }
}

TEST_F(SameFile, AsInputTwiceIsMergedOnce) {
    directory.write("system.hier", "scale_rows\ntype: hls\n");
    EXPECT_EQ(run({"-f", "db", "-h", "system.hier", "-h", "system.hier"}), CommandResult{});
    EXPECT_EQ(directory.read("db"), knownDatabase({{"scale_rows", 4}}));
}

} // namespace

} // namespace consolidator::test
