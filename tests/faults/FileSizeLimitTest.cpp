// Outputs that stop growing half-way, at the limit of file sizes and on a full device: a database
// is left as it was then, and a merge says so.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/InspectRun.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

using testing::EndsWith;
using testing::IsEmpty;

struct FileSizeLimit : testing::Test {
    /// A run that makes a database of a blob and one kernel with a name of this length.
    void prepare(std::size_t nameLength, std::size_t blobLength) {
        const std::string name(nameLength, 'k');
        directory.write("good.hier", name + "\ntype: c\n");
        expectSections(repeated("blob", blobLength / 4), {{name, 1}});
    }

    void expectSections(const std::string& blobBytes, const std::vector<KnownKernel>& kernels) {
        blob = blobBytes;
        directory.write("dwarf", blob);
        json = knownJson(kernels);
        kernelData = knownKernelData(kernels);
        whole = DatabaseBuilder().section(1, blob).section(3, json).section(2, kernelData).bytes();
    }

    /// Runs under a limit that the new database does not fit: the old one stays, or there is none.
    void expectNothingUnder(std::size_t limit) const {
        for (const bool isThere : {true, false}) {
            if (isThere) {
                directory.write("db", old);
            } else {
                std::filesystem::remove(directory.path("db"));
            }
            const auto before = directory.contents();
            EXPECT_EQ(runConsolidator(directory.path("."),
                                      {"-c", "-f", "db", "-d", "dwarf", "-h", "good.hier"},
                                      limited(RLIMIT_FSIZE, limit)),
                      CommandResult{});
            EXPECT_THAT(directory.differencesFrom(before), IsEmpty()) << "limit " << limit;
        }
    }

    const std::string old = knownDatabase({{"old", 4}});
    TemporaryDirectory directory;
    std::string blob;
    std::string json;
    std::string kernelData;
    std::string whole;
};

TEST_F(FileSizeLimit, OfEverySizeLeavesTheOldDatabase) {
    prepare(10, 40);
    const std::size_t step = 3; // odd, so that every kind of place is met
    for (std::size_t limit = 0; limit < whole.size() && !HasFailure(); limit += step) {
        expectNothingUnder(limit);
    }
    expectNothingUnder(whole.size() - 1);
}

TEST_F(FileSizeLimit, OfAllBytesIsNone) {
    prepare(10, 40);
    EXPECT_EQ(runConsolidator(directory.path("."), {"-f", "db", "-d", "dwarf", "-h", "good.hier"},
                              limited(RLIMIT_FSIZE, whole.size())),
              CommandResult{});
    EXPECT_EQ(directory.read("db"), whole);
}

TEST_F(FileSizeLimit, LeavesTheOldInsteadOfALargeDatabase) {
    prepare(50000, 40000);
    for (std::size_t limit = 0; limit < whole.size() && !HasFailure(); limit += 4999) {
        expectNothingUnder(limit);
    }
}

TEST_F(FileSizeLimit, InsideTheJsonTextIsNoneOfTheFormat) {
    // The JSON text is longer than any buffer and goes beyond the limit. Of what the format has no
    // room for, nothing but an empty section would be written.
    prepare(200000, 400000);
    expectNothingUnder(16 + 3 * 24 + 400000 + 100000);
}

TEST_F(FileSizeLimit, IsNoticedByAMerge) {
    prepare(50000, 40000);
    const std::vector<std::string> arguments = {"merge", "-c",    "-f", "db",       "--keep-going",
                                                "-d",    "dwarf", "-h", "good.hier"};
    directory.write("db", old);
    const auto before = directory.contents();
    // What is printed has room: the streams of tests are files, too.
    for (const std::size_t limit : {std::size_t{60000}, whole.size() - 1}) {
        const CommandResult result =
            runInspector(directory.path("."), arguments, limited(RLIMIT_FSIZE, limit));
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.err, "db: error: cannot be written: File too large\n");
        EXPECT_THAT(result.out, EndsWith("\ndb: not written: File too large\n"));
        EXPECT_THAT(directory.differencesFrom(before), IsEmpty()) << limit;
    }
    const CommandResult result =
        runInspector(directory.path("."), arguments, limited(RLIMIT_FSIZE, whole.size()));
    EXPECT_THAT(result.out, EndsWith("\ndb: written\n"));
    EXPECT_TRUE(directory.read("db") == whole);
}

TEST_F(FileSizeLimit, CutsADumpOff) {
    prepare(20000, 20000);
    directory.write("db", whole);
    for (const std::size_t limit : {0U, 1U, 4095U, 4096U, 4097U, 19999U, 20000U}) {
        const auto inDump = [=](const std::string& text) { return text.substr(0, limit); };
        const auto limitation = limited(RLIMIT_FSIZE, limit);
        auto expected = directory.contents();
        expected["out"] = inDump(blob);
        EXPECT_EQ(runConsolidator(directory.path("."), {"-f", "db", "-u", "out"}, limitation),
                  CommandResult{});
        EXPECT_THAT(directory.differencesFrom(expected), IsEmpty()) << limit;
        expected["out"] = inDump(json);
        EXPECT_EQ(runConsolidator(directory.path("."), {"-f", "db", "-j", "out"}, limitation),
                  CommandResult{});
        EXPECT_THAT(directory.differencesFrom(expected), IsEmpty()) << limit;
    }
}

TEST_F(FileSizeLimit, OfNothingLetsFailuresBeSaid) {
    EXPECT_EQ(runConsolidator(directory.path("."), {"-f", "missing/db", "-u", "out"},
                              [] {
                                  limited(RLIMIT_FSIZE, 0)();
                                  unread(STDOUT_FILENO)();
                                  redirected(STDERR_FILENO, "/dev/full")();
                              }),
              (CommandResult{1, "", ""}));
}

TEST_F(FileSizeLimit, IsNotNeededForAFullDevice) {
    prepare(200000, 400000);
    const auto before = directory.contents();
    EXPECT_EQ(
        runConsolidator(directory.path("."), {"-f", "/dev/full", "-d", "dwarf", "-h", "good.hier"}),
        CommandResult{});
    EXPECT_THAT(directory.differencesFrom(before), IsEmpty());
    directory.write("db", whole);
    const auto withDatabase = directory.contents();
    for (const char* option : {"-u", "-j"}) {
        EXPECT_EQ(runConsolidator(directory.path("."), {"-f", "db", option, "/dev/full"}),
                  CommandResult{});
        EXPECT_THAT(directory.differencesFrom(withDatabase), IsEmpty()) << option;
    }
}

} // namespace

} // namespace consolidator::test
