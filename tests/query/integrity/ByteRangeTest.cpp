#include "query/integrity/ByteRange.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace consolidator::test {

namespace {

using consolidator::test::TemporaryDirectory;

struct ByteRangeTest : testing::Test {
    const FileBytes& fileOf(const std::string& bytes) {
        EXPECT_TRUE(file.open(directory.write("file", bytes)));
        return file;
    }

    TemporaryDirectory directory;
    FileBytes file;
};

TEST_F(ByteRangeTest, ReadsFromItsBeginningToItsEnd) {
    ByteRange range(fileOf("0123456789"), 2, 6);
    std::array<char, 3> bytes{};
    EXPECT_TRUE(range.read(bytes));
    EXPECT_EQ(std::string(bytes.data(), 3), "234");
    EXPECT_EQ(range.position(), 5);
    EXPECT_EQ(range.left(), 1);
    EXPECT_FALSE(range.read(bytes)); // what comes next is beyond
}

TEST_F(ByteRangeTest, ReadsNumbers) {
    ByteRange range(fileOf("\x01\x02\x03\x84\x05"), 0, 5);
    EXPECT_EQ(range.number(), std::optional<std::uint32_t>(0x84030201));
    EXPECT_EQ(range.number(), std::nullopt);
    EXPECT_EQ(range.position(), 4);
}

TEST_F(ByteRangeTest, ReadsOverItsBlocks) {
    std::string bytes(200000, 'a');
    bytes[150000] = 'b';
    ByteRange range(fileOf(bytes), 1, 200000);
    std::string all(199999, '?');
    EXPECT_TRUE(range.read(all));
    EXPECT_EQ(all, bytes.substr(1));
    EXPECT_TRUE(range.peek().empty());
}

TEST_F(ByteRangeTest, SkipsFarAndNear) {
    std::string bytes(200000, 'a');
    bytes[3] = 'b';
    bytes[150000] = 'c';
    ByteRange range(fileOf(bytes), 0, 200000);
    range.skip(3);
    EXPECT_EQ(range.peek().front(), 'b');
    range.skip(149997);
    EXPECT_EQ(range.peek().front(), 'c');
}

TEST_F(ByteRangeTest, EndsWhereTheFileHasBecomeShorter) {
    ByteRange range(fileOf("0123"), 0, 4);
    directory.write("file", "01");
    std::array<char, 4> bytes{};
    EXPECT_FALSE(range.read(bytes));
}

TEST_F(ByteRangeTest, CannotOpenWhatIsNotThere) {
    EXPECT_FALSE(FileBytes().open(directory.path("none")));
}

} // namespace

} // namespace consolidator::test
