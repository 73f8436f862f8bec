#include "query/integrity/StoredText.h"

#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace consolidator::test {

namespace {

using consolidator::test::TemporaryDirectory;

struct StoredTextTest : testing::Test {
    /// The text that stands behind `offset` other bytes, and takes all that is left.
    StoredText read(const std::string& text, std::size_t offset = 0) const {
        FileBytes file;
        EXPECT_TRUE(file.open(directory.write("file", std::string(offset, 'x') + text)));
        ByteRange bytes(file, offset, file.size());
        const StoredText result(bytes, text.size());
        EXPECT_EQ(bytes.left(), 0);
        return result;
    }

    TemporaryDirectory directory;
};

TEST_F(StoredTextTest, QuotesAShortText) {
    EXPECT_EQ(read("").quoted(), "\"\"");
    EXPECT_TRUE(read("").empty());
    EXPECT_EQ(read("top/k\n").quoted(), "\"top/k\\n\"");
    EXPECT_EQ(read(std::string(80, 'a')).quoted(), '"' + std::string(80, 'a') + '"');
}

TEST_F(StoredTextTest, QuotesTheBeginningOfALongText) {
    EXPECT_EQ(read(std::string(81, 'a')).quoted(), '"' + std::string(80, 'a') + "…\"");
    EXPECT_EQ(read(std::string(79, 'a') + "\u00e9").quoted(), '"' + std::string(79, 'a') + "…\"");
    const std::string whole = std::string(78, 'a') + "\u00e9";
    EXPECT_EQ(read(whole + 'b').quoted(), '"' + whole + "…\"");
    EXPECT_EQ(read(std::string(200000, 'a')).quoted(), '"' + std::string(80, 'a') + "…\"");
}

TEST_F(StoredTextTest, EndsAtAZeroByte) {
    const std::string longer = std::string(5000, 'a') + '\0' + std::string(5000, 'b');
    EXPECT_TRUE(read(longer).hasZero());
    EXPECT_EQ(read(longer).hash(), read(std::string(5000, 'a')).hash());
    EXPECT_EQ(read(std::string(1, '\0')).quoted(), "\"\"");
    EXPECT_FALSE(read("abc").hasZero());
}

TEST_F(StoredTextTest, HasTheSameHashWhereverItStands) {
    const std::string text(100000, 'a');
    EXPECT_EQ(read(text).hash(), read(text, 1).hash());
    EXPECT_EQ(read(text).hash(), read(text, 65535).hash());
    EXPECT_NE(read(text).hash(), read(text + 'b').hash());
    EXPECT_NE(read("a").hash(), read("b").hash());
}

} // namespace

} // namespace consolidator::test
