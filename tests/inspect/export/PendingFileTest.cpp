#include "inspect/export/PendingFile.h"

#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

namespace consolidator::inspect::test {

namespace {

using consolidator::test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

struct PendingFile : testing::Test {
    TemporaryDirectory directory;
    inspect::PendingFile file{directory.path("out")};
};

void fill(const inspect::PendingFile& file) {
    std::ofstream(file.path()) << "new";
}

TEST_F(PendingFile, StandsBesideItsTargetUntilItIsPutInPlace) {
    ASSERT_TRUE(file.make());
    fill(file);
    EXPECT_THAT(file.path(), StartsWith(directory.path("out.")));
    EXPECT_FALSE(directory.has("out"));
    EXPECT_TRUE(file.putInPlace(inspect::PendingFile::Existing::Keep));
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new")));
}

TEST_F(PendingFile, IsRemovedUnlessItIsPutInPlace) {
    {
        inspect::PendingFile given(directory.path("given"));
        ASSERT_TRUE(given.make());
        EXPECT_FALSE(directory.contents().empty());
    }
    EXPECT_THAT(directory.contents(), IsEmpty());
}

TEST_F(PendingFile, ReplacesAnotherFileOnlyOnRequest) {
    directory.write("out", "old");
    ASSERT_TRUE(file.make());
    fill(file);
    EXPECT_FALSE(file.putInPlace(inspect::PendingFile::Existing::Keep));
    EXPECT_EQ(file.error(), "File exists");
    EXPECT_EQ(directory.read("out"), "old");
    EXPECT_TRUE(file.putInPlace(inspect::PendingFile::Existing::Replace));
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new")));
}

TEST_F(PendingFile, NeedsItsFolder) {
    inspect::PendingFile lost(directory.path("missing/out"));
    EXPECT_FALSE(lost.make());
    EXPECT_EQ(lost.error(), "No such file or directory");
}

TEST_F(PendingFile, IsReadableForWhomTheMaskAllowsIt) {
    const mode_t before = umask(027);
    EXPECT_TRUE(file.make());
    EXPECT_EQ(umask(before), mode_t{027});
    struct stat status = {};
    ASSERT_EQ(stat(file.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

} // namespace

} // namespace consolidator::inspect::test
