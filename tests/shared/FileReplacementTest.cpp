#include "shared/FileReplacement.h"

#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using Existing = consolidator::FileReplacement::Existing;

struct FileReplacement : testing::Test {
    void fill(std::string_view content = "new") {
        ASSERT_EQ(write(file.begin(), content.data(), content.size()),
                  static_cast<ssize_t>(content.size()));
    }

    TemporaryDirectory directory;
    std::string path = directory.path("out");
    consolidator::FileReplacement file;
};

TEST_F(FileReplacement, OfAFileChangesNothingUntilItIsPutInPlace) {
    directory.write("out", "old");
    ASSERT_TRUE(file.open(path));
    fill();
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "old")));
    EXPECT_TRUE(file.commit());
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new")));
}

TEST_F(FileReplacement, OfNothingMakesNothingUntilItIsPutInPlace) {
    ASSERT_TRUE(file.open(path));
    fill();
    EXPECT_THAT(directory.contents(), IsEmpty());
    EXPECT_TRUE(file.commit());
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new")));
}

TEST_F(FileReplacement, LeavesNothingUnlessItIsPutInPlace) {
    {
        consolidator::FileReplacement given;
        ASSERT_TRUE(given.make(path));
        ASSERT_EQ(write(given.begin(), "new", 3), 3);
    }
    EXPECT_THAT(directory.contents(), IsEmpty());
}

TEST_F(FileReplacement, OfANewFileReplacesAnotherOneOnlyOnRequest) {
    directory.write("out", "old");
    ASSERT_TRUE(file.make(path));
    fill();
    EXPECT_FALSE(file.commit(Existing::Keep));
    EXPECT_EQ(errno, EEXIST);
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "old")));
    EXPECT_TRUE(file.commit(Existing::Replace));
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new")));
}

TEST_F(FileReplacement, OfNothingReplacesWhatHasComeMeanwhile) {
    ASSERT_TRUE(file.open(path));
    fill();
    directory.write("out", "of somebody else");
    EXPECT_TRUE(file.commit());
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new")));
}

TEST_F(FileReplacement, NeedsItsFolder) {
    EXPECT_FALSE(file.make(directory.path("missing/out")));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.open(directory.path("missing/out")));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.open(""));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.open(directory.path(".")));
    EXPECT_EQ(errno, EISDIR);
    EXPECT_FALSE(file.open(directory.path("missing/")));
    EXPECT_FALSE(file.isOpen());
}

TEST_F(FileReplacement, OfNothingIsReadableForWhomTheMaskAllowsIt) {
    const mode_t before = umask(027);
    EXPECT_TRUE(file.open(path));
    fill();
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(umask(before), mode_t{027});
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
}

TEST_F(FileReplacement, OfAFileWithTwoNamesChangesBoth) {
    directory.write("out", "a longer old content");
    std::filesystem::create_hard_link(path, directory.path("twin"));
    ASSERT_TRUE(file.open(path));
    fill();
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "a longer old content"),
                                                  Pair("twin", "a longer old content")));
    EXPECT_TRUE(file.commit());
    EXPECT_THAT(directory.contents(), ElementsAre(Pair("out", "new"), Pair("twin", "new")));
}

TEST_F(FileReplacement, GoesInPlaceWhereThereIsRoomForOne) {
    directory.write("out", "a longer old content");
    ASSERT_TRUE(file.open(path));
    fill("too much");
    ASSERT_TRUE(file.canGoInPlace());
    ASSERT_TRUE(file.beginInPlace(3));
    EXPECT_TRUE(file.isInPlace());
    EXPECT_EQ(directory.read("out"), "a longer old content");
    fill();
    EXPECT_EQ(directory.read("out"), "newonger old content"); // the caller cuts it off
    EXPECT_TRUE(file.commit());
}

TEST_F(FileReplacement, OfADeletedFileIsWrittenInPlace) {
    directory.write("out", "old");
    const int open = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    std::filesystem::remove(path);
    ASSERT_TRUE(file.open("/proc/self/fd/" + std::to_string(open)));
    fill();
    EXPECT_TRUE(file.commit());
    std::array<char, 4> content{};
    EXPECT_EQ(pread(open, content.data(), content.size(), 0), 3);
    EXPECT_STREQ(content.data(), "new");
    EXPECT_THAT(directory.contents(), IsEmpty());
    close(open);
}

TEST_F(FileReplacement, KnowsItsTargetByAnyName) {
    directory.write("out", "old");
    std::filesystem::create_symlink("out", directory.path("link"));
    std::filesystem::create_hard_link(path, directory.path("twin"));
    directory.write("other", "old");
    ASSERT_TRUE(file.open(directory.path("link")));
    for (const char* name : {"out", "link", "twin", "./out"}) {
        EXPECT_TRUE(file.isTarget(directory.path(name))) << name;
    }
    EXPECT_FALSE(file.isTarget(directory.path("other")));
    EXPECT_FALSE(file.isTarget(directory.path("missing")));
}

TEST_F(FileReplacement, KnowsATargetThatIsNotThereYet) {
    std::filesystem::create_directory(directory.path("folder"));
    ASSERT_TRUE(file.open(path));
    EXPECT_TRUE(file.isTarget(path));
    EXPECT_TRUE(file.isTarget(directory.path("folder/../out")));
    EXPECT_FALSE(file.isTarget(directory.path("folder/out")));
    EXPECT_FALSE(file.isTarget(directory.path("other")));
}

} // namespace

} // namespace consolidator::test
