// Directories, pipes, devices and files that cannot be opened, in each place of the command line.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/Fifo.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

namespace fs = std::filesystem;

const CommandResult success{};

CommandResult unableToOpen(const std::string& name) {
    return {1, "", "Unable to open " + name + "\n"};
}

bool permissionsMeanNothing() {
    return geteuid() == 0;
}

const std::string whySkipped = "root may read and write everything";

/// Names in the folder of the tests that nobody can open for reading, whoever runs the tests.
const std::vector<std::string> unreadableNames = {
    "missing", "missing/file", "dangling", "circle", "good.hier/file", std::string(300, 'n')};

/// Names under which no file can be written either.
const std::vector<std::string> unwritableNames = {"missing/file", "circle", "good.hier/file",
                                                  "folder", std::string(300, 'n')};

struct FileKinds : testing::Test {
    FileKinds() {
        directory.write("good.hier", "scale_rows\ntype: hls\n");
        directory.write("dwarf", "blob");
        fs::create_directory(directory.path("folder"));
        fs::create_symlink("nowhere", directory.path("dangling"));
        fs::create_symlink("circle", directory.path("circle"));
    }

    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments);
    }

    /// That the hierarchy file `name` adds nothing and does not keep the next one from being read.
    void expectPassedOver(const std::string& name) const {
        EXPECT_EQ(run({"-c", "-f", "db", "-h", name, "-h", "good.hier"}), success) << name;
        EXPECT_EQ(directory.read("db"), good) << name;
    }

    /// That the DWARF file `name` adds no section.
    void expectNoDwarf(const std::string& name) const {
        EXPECT_EQ(run({"-c", "-f", "db", "-d", name, "-h", "good.hier"}), success) << name;
        EXPECT_EQ(directory.read("db"), good) << name;
    }

    void forbid(const std::string& name, fs::perms permissions) const {
        fs::permissions(directory.path(name), permissions);
    }

    TemporaryDirectory directory;
    std::string good = knownDatabase({{"scale_rows", 4}});
    std::string full = DatabaseBuilder()
                           .section(1, "blob")
                           .section(3, knownJson({{"scale_rows", 4}}))
                           .section(2, knownKernelData({{"scale_rows", 4}}))
                           .bytes();
};

// Names

TEST_F(FileKinds, TakesNamesWithBlanksAndOddCharacters) {
    const std::string odd = " a \"b\" $c;*\n\xC3\xA9 ";
    directory.write("h" + odd, "scale_rows\ntype: hls\n");
    directory.write("d" + odd, "blob");
    EXPECT_EQ(run({"-f", "f" + odd, "-h", "h" + odd, "-d", "d" + odd}), success);
    EXPECT_EQ(directory.read("f" + odd), full);
    EXPECT_EQ(run({"-f", "f" + odd, "-u", "u" + odd}), success);
    EXPECT_EQ(directory.read("u" + odd), "blob");
}

TEST_F(FileKinds, FollowsSymbolicLinks) {
    for (const char* name : {"good.hier", "dwarf", "db", "out"}) {
        fs::create_symlink(name, directory.path(std::string("link to ") + name));
    }
    EXPECT_EQ(run({"-f", "link to db", "-h", "link to good.hier", "-d", "link to dwarf"}), success);
    EXPECT_EQ(directory.read("db"), full);
    EXPECT_EQ(run({"-f", "link to db", "-u", "link to out"}), success);
    EXPECT_EQ(directory.read("out"), "blob");
    EXPECT_TRUE(fs::is_symlink(directory.path("link to db")));
}

// Files that cannot be opened

TEST_F(FileKinds, PassesOverInputsThatCannotBeOpened) {
    for (const std::string& name : unreadableNames) {
        expectPassedOver(name);
        expectNoDwarf(name);
    }
    expectPassedOver("");
}

TEST_F(FileKinds, FailsOnADatabaseThatCannotBeWritten) {
    for (const std::string& name : unwritableNames) {
        EXPECT_EQ(run({"-f", name, "-h", "good.hier"}), unableToOpen(name)) << name;
        EXPECT_EQ(run({"-c", "-f", name, "-h", "good.hier"}), unableToOpen(name)) << name;
    }
}

TEST_F(FileKinds, FailsToDumpFromADatabaseThatCannotBeRead) {
    for (const std::string& name : unreadableNames) {
        EXPECT_EQ(run({"-f", name, "-j", "out"}), unableToOpen(name)) << name;
        EXPECT_FALSE(directory.has("out")) << name;
    }
}

TEST_F(FileKinds, MakesTheDatabaseThatADanglingLinkPointsTo) {
    EXPECT_EQ(run({"-f", "dangling", "-h", "good.hier"}), success);
    EXPECT_EQ(directory.read("nowhere"), good);
}

TEST_F(FileKinds, SaysNothingOfADumpThatCannotBeWritten) {
    directory.write("db", full);
    for (const std::string& name : unwritableNames) {
        EXPECT_EQ(run({"-f", "db", "-u", name}), success) << name;
        EXPECT_EQ(run({"-f", "db", "-j", name}), success) << name;
    }
    EXPECT_EQ(directory.read("db"), full);
}

TEST_F(FileKinds, PassesOverInputsThatMayNotBeRead) {
    if (permissionsMeanNothing()) {
        GTEST_SKIP() << whySkipped;
    }
    directory.write("secret", "secret\n");
    forbid("secret", fs::perms::none);
    expectPassedOver("secret");
    expectNoDwarf("secret");
}

TEST_F(FileKinds, FailsOnADatabaseThatMayNotBeWritten) {
    if (permissionsMeanNothing()) {
        GTEST_SKIP() << whySkipped;
    }
    directory.write("db", full);
    forbid("db", fs::perms::owner_read);
    EXPECT_EQ(run({"-f", "db", "-h", "good.hier"}), unableToOpen("db"));
    EXPECT_EQ(directory.read("db"), full);
    EXPECT_EQ(run({"-f", "db", "-u", "out"}), success);
    EXPECT_EQ(directory.read("out"), "blob");
}

TEST_F(FileKinds, StartsADatabaseAfreshThatMayNotBeRead) {
    if (permissionsMeanNothing()) {
        GTEST_SKIP() << whySkipped;
    }
    directory.write("db", full);
    forbid("db", fs::perms::owner_write);
    EXPECT_EQ(run({"-f", "db", "-u", "out"}), unableToOpen("db"));
    EXPECT_EQ(run({"-f", "db", "-h", "good.hier"}), success);
    forbid("db", fs::perms::owner_read);
    EXPECT_EQ(directory.read("db"), good);
}

// Directories

TEST_F(FileKinds, PassesOverADirectoryAsInput) {
    expectPassedOver("folder");
    expectPassedOver(".");
    expectNoDwarf("folder");
}

TEST_F(FileKinds, TakesADirectoryToDumpFromForAnEmptyDatabase) {
    for (const char* option : {"-u", "-j"}) {
        directory.write("out", "old");
        EXPECT_EQ(run({"-f", "folder", option, "out"}), success);
        EXPECT_EQ(directory.read("out"), "");
    }
}

// Pipes

TEST_F(FileKinds, ReadsAHierarchyFromAPipe) {
    const FifoWithContent fifo(directory.path("fifo"), "checksum\ntype: c\n");
    EXPECT_EQ(run({"-f", "db", "-h", "fifo", "-h", "good.hier"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"checksum", 1}, {"scale_rows", 4}}));
}

TEST_F(FileKinds, TakesAnEmptyPipeForAnEmptyHierarchy) {
    const FifoWithContent fifo(directory.path("fifo"), "");
    EXPECT_EQ(run({"-f", "db", "-h", "fifo"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{""}}));
}

TEST_F(FileKinds, TakesNoDwarfFromAPipe) {
    const FifoWithContent fifo(directory.path("fifo"), "blob");
    expectNoDwarf("fifo");
}

TEST_F(FileKinds, DumpsIntoAPipe) {
    directory.write("db", full);
    CollectingFifo fifo(directory.path("fifo"));
    EXPECT_EQ(run({"-f", "db", "-u", "fifo"}), success);
    EXPECT_EQ(fifo.take(), "blob");
    EXPECT_EQ(run({"-f", "db", "-j", "fifo"}), success);
    EXPECT_EQ(fifo.take(), knownJson({{"scale_rows", 4}}));
}

TEST_F(FileKinds, WritesTheTableButNoSectionsOfADatabaseIntoAPipe) {
    CollectingFifo fifo(directory.path("fifo"));
    EXPECT_EQ(run({"-c", "-f", "fifo", "-d", "dwarf", "-h", "good.hier"}), success);
    EXPECT_EQ(fifo.take(), header(3) + entry(1, 0, 4) + entry(3, 0, 0) + entry(2, 0, 0));
}

TEST_F(FileKinds, TakesAPipeThatHoldsNoDatabaseForANewOne) {
    CollectingFifo fifo(directory.path("fifo"), std::string(16, 'x'));
    EXPECT_EQ(run({"-f", "fifo", "-d", "dwarf"}), success);
    EXPECT_EQ(fifo.take(), header(2) + entry(1, 0, 4) + entry(3, 0, 0));
}

// Devices

TEST_F(FileKinds, TakesTheNullDeviceForAnEmptyFile) {
    EXPECT_EQ(run({"-f", "db", "-h", "/dev/null"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{""}}));
    expectNoDwarf("/dev/null");
}

TEST_F(FileKinds, WritesADatabaseToTheNullDevice) {
    EXPECT_EQ(run({"-f", "/dev/null", "-h", "good.hier", "-d", "dwarf"}), success);
    EXPECT_EQ(run({"-c", "-f", "/dev/null", "-h", "good.hier"}), success);
}

TEST_F(FileKinds, DumpsNothingFromTheNullDevice) {
    for (const char* option : {"-u", "-j"}) {
        directory.write("out", "old");
        EXPECT_EQ(run({"-f", "/dev/null", option, "out"}), success);
        EXPECT_EQ(directory.read("out"), "");
    }
}

TEST_F(FileKinds, DumpsToTheNullDevice) {
    directory.write("db", full);
    EXPECT_EQ(run({"-f", "db", "-u", "/dev/null"}), success);
    EXPECT_EQ(directory.read("db"), full);
}

TEST_F(FileKinds, SaysNothingWhenThereIsNoRoomForTheDatabase) {
    EXPECT_EQ(run({"-c", "-f", "/dev/full", "-h", "good.hier", "-d", "dwarf"}), success);
}

TEST_F(FileKinds, SaysNothingWhenThereIsNoRoomForTheDump) {
    directory.write("db", full);
    EXPECT_EQ(run({"-f", "db", "-u", "/dev/full"}), success);
    EXPECT_EQ(run({"-f", "db", "-j", "/dev/full"}), success);
    EXPECT_EQ(directory.read("db"), full);
}

// Files in two places at once

TEST_F(FileKinds, ReadsTheDatabaseItselfAsDwarf) {
    directory.write("db", good);
    EXPECT_EQ(run({"-f", "db", "-d", "db"}), success);
    EXPECT_EQ(directory.read("db"), good) << "the database is already empty when it is read";
}

TEST_F(FileKinds, OverwritesAnInputThatIsAlsoTheDatabase) {
    EXPECT_EQ(run({"-f", "good.hier", "-h", "good.hier"}), success);
    EXPECT_EQ(directory.read("good.hier"), knownDatabase({{""}}));
}

// Inputs that are no hierarchy

TEST_F(FileKinds, ReadsTheSecondHierarchyAfterAFirstThatFails) {
    directory.write("bad.hier", "lost\nblend\ninstance nowhere\n");
    EXPECT_EQ(run({"-f", "db", "-h", "bad.hier", "-h", "good.hier"}),
              (CommandResult{0, "", "Parse error\n"}));
    EXPECT_EQ(directory.read("db"), good);
}

TEST_F(FileKinds, TakesTheWordsOfAnyOtherFileForKernels) {
    EXPECT_EQ(run({"-f", "db", "-h", "dwarf"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"blob"}}));
}

} // namespace

} // namespace consolidator::test
