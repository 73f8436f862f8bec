// Files and folders that the user of the program may not read or write. Tests that run as root lay
// their rights down for the run.

#include "tests/support/Command.h"
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

constexpr fs::perms forAll = fs::perms::all;
constexpr fs::perms readable =
    fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
constexpr fs::perms writable =
    fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

struct Permissions : testing::Test {
    void SetUp() override {
        permit(".", forAll);
        if (run({"-v"}).status != 0) {
            GTEST_SKIP() << "a user without rights cannot reach the executable";
        }
        directory.write("good.hier", "scale_rows\ntype: hls\n");
        permit("good.hier", readable);
    }

    void TearDown() override { permit(".", forAll); }

    void permit(const std::string& name, fs::perms permissions) const {
        fs::permissions(directory.path(name), permissions);
    }

    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments, withoutPrivileges());
    }

    /// A database that stands there before the run.
    void writeDatabase(fs::perms permissions) const {
        directory.write("db", old);
        permit("db", permissions);
    }

    /// The bytes of the database, whatever its permissions are.
    std::string database() const {
        permit("db", forAll);
        return directory.read("db");
    }

    TemporaryDirectory directory;
    const std::string good = knownDatabase({{"scale_rows", 4}});
    const std::string old = knownDatabase({{"checksum", 1}});
};

TEST_F(Permissions, ThatForbidReadingPassOverAnInputOfAnyKind) {
    directory.write("secret", "secret\n");
    permit("secret", fs::perms::none);
    for (const char* option : {"-d", "-h", "-k", "-s", "-x", "-l", "-r"}) {
        const CommandResult result = run({"-c", "-f", "db", option, "secret", "-h", "good.hier"});
        // A kernel description that cannot be opened is never begun, so that nothing is said.
        EXPECT_EQ(result, CommandResult{}) << option;
        EXPECT_EQ(database(), good) << option;
    }
    permit("secret", forAll);
    EXPECT_EQ(directory.read("secret"), "secret\n");
}

TEST_F(Permissions, ThatForbidWritingFailWithTheDatabaseAsItWas) {
    writeDatabase(readable);
    const CommandResult failed{1, "", "Unable to open db\n"};
    EXPECT_EQ(run({"-f", "db", "-h", "good.hier"}), failed);
    EXPECT_EQ(run({"-c", "-f", "db", "-h", "good.hier"}), failed);
    EXPECT_EQ(run({"-f", "db", "-j", "out"}), CommandResult{});
    EXPECT_EQ(directory.read("out"), knownJson({{"checksum", 1}}));
    EXPECT_EQ(database(), old);
}

TEST_F(Permissions, ThatForbidReadingTheDatabaseLetItBeginAfresh) {
    writeDatabase(writable);
    EXPECT_EQ(run({"-f", "db", "-j", "out"}), (CommandResult{1, "", "Unable to open db\n"}));
    EXPECT_FALSE(directory.has("out"));
    EXPECT_EQ(run({"-f", "db", "-h", "good.hier"}), CommandResult{});
    EXPECT_EQ(database(), good);
}

TEST_F(Permissions, OfTheFolderKeepNewFilesOut) {
    writeDatabase(readable | writable);
    permit(".", readable | fs::perms::others_exec | fs::perms::owner_exec);
    const auto before = directory.contents();
    EXPECT_EQ(run({"-f", "new", "-h", "good.hier"}),
              (CommandResult{1, "", "Unable to open new\n"}));
    EXPECT_EQ(run({"-f", "db", "-j", "out"}), CommandResult{});
    EXPECT_EQ(directory.contents(), before);
}

} // namespace

} // namespace consolidator::test
