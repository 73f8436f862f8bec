// A stream onto a C file: everything arrives, in order, and what does not fit is told.
#include "consolidated/FileBuffer.h"

#include "tests/support/LimitedFile.h"
#include "tests/support/MemoryFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

namespace consolidator::test {
namespace {

constexpr std::uint64_t noLimit = 1'000'000'000;

/// What arrives in the file when pieces of this length go out.
std::string passedOn(std::size_t pieces, std::size_t length) {
    const FileHandle file = fileWith({});
    FileBuffer buffer(file.get(), noLimit);
    std::ostream out(&buffer);
    for (std::size_t i = 0; i < pieces; ++i) {
        out << std::string(length, static_cast<char>('a' + i % 26));
    }
    EXPECT_TRUE(buffer.finish());
    EXPECT_TRUE(out.good());
    EXPECT_EQ(buffer.written(), pieces * length);
    return contentOf(file.get());
}

std::string plain(std::size_t pieces, std::size_t length) {
    std::string result;
    for (std::size_t i = 0; i < pieces; ++i) {
        result.append(length, static_cast<char>('a' + i % 26));
    }
    return result;
}

TEST(FileBuffer, NothingGivesNothing) {
    EXPECT_EQ(passedOn(0, 0), "");
}

TEST(FileBuffer, PiecesOfAnyLengthArriveInOrder) {
    for (const std::size_t length : {1U, 7U, 1000U, 65'535U, 65'536U, 65'537U, 200'000U}) {
        const std::size_t pieces = 200'000 / length + 3;
        EXPECT_TRUE(passedOn(pieces, length) == plain(pieces, length)) << length;
    }
}

TEST(FileBuffer, SingleCharactersArriveToo) {
    const FileHandle file = fileWith({});
    FileBuffer buffer(file.get(), noLimit);
    std::ostream out(&buffer);
    for (int i = 0; i < 70'000; ++i) {
        out.put('x');
    }
    out << std::flush << '\0';
    EXPECT_TRUE(buffer.finish());
    EXPECT_TRUE(contentOf(file.get()) == std::string(70'000, 'x') + '\0');
}

TEST(FileBuffer, ATextAsLongAsTheLimitFits) {
    const FileHandle file = fileWith({});
    FileBuffer buffer(file.get(), 5);
    std::ostream out(&buffer);
    out << "12345";
    EXPECT_TRUE(buffer.finish());
    EXPECT_EQ(contentOf(file.get()), "12345");
}

TEST(FileBuffer, ATextLongerThanTheLimitDoesNotGoOut) {
    const FileHandle file = fileWith({});
    FileBuffer buffer(file.get(), 5);
    std::ostream out(&buffer);
    out << "123456";
    EXPECT_FALSE(buffer.finish());
    EXPECT_EQ(buffer.written(), 0U);
    EXPECT_EQ(contentOf(file.get()), "");
}

TEST(FileBuffer, ALongTextStopsAtTheBlockThatExceedsTheLimit) {
    const FileHandle file = fileWith({});
    FileBuffer buffer(file.get(), 100'000);
    std::ostream out(&buffer);
    for (int i = 0; i < 300'000; ++i) {
        out.put('x');
    }
    EXPECT_FALSE(out.good());
    EXPECT_FALSE(buffer.finish());
    EXPECT_EQ(contentOf(file.get()).size(), 65'536U);
}

TEST(FileBuffer, AFileThatTakesNoMoreShowsAndNothingFollows) {
    const FileHandle file = fileOfCapacity(70'000);
    FileBuffer buffer(file.get(), noLimit);
    std::ostream out(&buffer);
    out << std::string(65'536, 'a');
    EXPECT_TRUE(out.good());
    out << std::string(65'536, 'b');
    EXPECT_FALSE(out.good());
    out.clear();
    out << "c";
    EXPECT_FALSE(buffer.finish());
    EXPECT_FALSE(buffer.finish());
}

} // namespace
} // namespace consolidator::test
