// Tests the primitives of the binary records: exact bytes out, and in again from files that are cut
// short, lie about their lengths or hold zero bytes.
#include "model/BinaryForm.h"

#include "tests/support/Bytes.h"
#include "tests/support/LimitedFile.h"
#include "tests/support/MemoryFile.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace consolidator::test {
namespace {

constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();

/// What write(FILE*) puts into an empty file; the number that it returns has to agree.
template <typename Write>
std::string bytesWrittenBy(Write write) {
    const FileHandle file = fileWith({});
    const std::uint32_t reported = write(file.get());
    std::string bytes = contentOf(file.get());
    EXPECT_EQ(reported, bytes.size());
    return bytes;
}

std::string written(std::uint32_t number) {
    return bytesWrittenBy([&](std::FILE* file) { return writeNumber(file, number); });
}

std::string written(std::string_view text) {
    return bytesWrittenBy([&](std::FILE* file) { return writeText(file, text); });
}

std::string written(const std::vector<LogicLocation>& locations) {
    return bytesWrittenBy([&](std::FILE* file) { return writeLocations(file, locations); });
}

/// The rest of the file from where it stands.
std::string restOf(std::FILE* file) {
    std::string rest;
    for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
        rest += static_cast<char>(byte);
    }
    return rest;
}

std::vector<LogicLocation> manyLocations(std::uint32_t count) {
    std::vector<LogicLocation> locations;
    for (std::uint32_t i = 0; i < count; ++i) {
        locations.push_back({i, largest - i});
    }
    return locations;
}

TEST(BinaryForm, ANumberIsWrittenAsFourBytesLeastSignificantFirst) {
    EXPECT_EQ(written(0x04030201U), "\x01\x02\x03\x04");
    EXPECT_EQ(written(0U), bytes("\0\0\0\0"));
    EXPECT_EQ(written(largest), "\xFF\xFF\xFF\xFF");
}

TEST(BinaryForm, ANumberIsReadLeastSignificantByteFirst) {
    const FileHandle file = fileWith("\x01\x02\x03\xF4\x05");
    std::uint32_t number = 0;
    EXPECT_TRUE(readNumber(file.get(), number));
    EXPECT_EQ(number, 0xF4030201U);
    EXPECT_EQ(restOf(file.get()), "\x05");
}

TEST(BinaryForm, ANumberCutShortStaysAsItWas) {
    for (const char* bytes : {"", "\x01", "\x01\x02", "\x01\x02\x03"}) {
        const FileHandle file = fileWith(bytes);
        std::uint32_t number = 77;
        EXPECT_FALSE(readNumber(file.get(), number));
        EXPECT_EQ(number, 77U);
    }
}

TEST(BinaryForm, ATextIsWrittenAsItsLengthAndItsBytesWithoutTerminator) {
    EXPECT_EQ(written("top/k"), bytes("\x05\0\0\0top/k"));
    EXPECT_EQ(written(""), bytes("\0\0\0\0"));
}

TEST(BinaryForm, ATextIsWrittenWholeWhateverItsBytes) {
    EXPECT_EQ(written(bytes("a\0\"\\\xFF\n")), bytes("\x06\0\0\0a\0\"\\\xFF\n"));
}

TEST(BinaryForm, ATextIsReadUpToItsLength) {
    const FileHandle file = fileWith(bytes("\x03\0\0\0\"\\\xFFrest"));
    std::string text = "before";
    EXPECT_TRUE(readText(file.get(), text));
    EXPECT_EQ(text, "\"\\\xFF");
    EXPECT_EQ(restOf(file.get()), "rest");
}

TEST(BinaryForm, ATextOfLengthZeroReplacesByAnEmptyText) {
    const FileHandle file = fileWith(u32(0) + "rest");
    std::string text = "before";
    EXPECT_TRUE(readText(file.get(), text));
    EXPECT_EQ(text, "");
    EXPECT_EQ(restOf(file.get()), "rest");
}

TEST(BinaryForm, ATextIsReadToItsEndButKeptOnlyUpToItsFirstZeroByte) {
    const FileHandle file = fileWith(text(bytes("ab\0cd\0e")) + text(bytes("\0f")) + "rest");
    std::string first;
    std::string second = "before";
    EXPECT_TRUE(readText(file.get(), first));
    EXPECT_TRUE(readText(file.get(), second));
    EXPECT_EQ(first, "ab");
    EXPECT_EQ(second, "");
    EXPECT_EQ(restOf(file.get()), "rest");
}

TEST(BinaryForm, ATextIsReadInTheSameWayHoweverLongItIs) {
    for (const std::size_t length : {255U, 256U, 257U, 70000U}) {
        const std::string whole(length, 'x');
        const std::string form = written(whole);
        std::string read = "before";
        EXPECT_FALSE(readText(fileWith(form.substr(0, form.size() - 1)).get(), read)) << length;
        EXPECT_EQ(read, "before");
        EXPECT_TRUE(readText(fileWith(form).get(), read)) << length;
        EXPECT_EQ(read, whole);
        for (const std::size_t zero : {std::size_t{0}, length - 1}) {
            std::string text = whole;
            text[zero] = '\0';
            EXPECT_TRUE(readText(fileWith(written(text)).get(), read)) << length;
            EXPECT_EQ(read, whole.substr(0, zero));
        }
    }
}

TEST(BinaryForm, ATextCutShortAnywhereStaysAsItWas) {
    const std::string whole = text("size_r");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const FileHandle file = fileWith(std::string_view(whole).substr(0, length));
        std::string text = "before";
        EXPECT_FALSE(readText(file.get(), text)) << length;
        EXPECT_EQ(text, "before") << length;
    }
}

TEST(BinaryForm, ATextThatClaimsFourGigabytesInASmallFileFails) {
    for (const std::uint32_t claimed : {largest, largest - 1, largest / 2}) {
        const FileHandle file = fileWith(u32(claimed) + std::string(36, 'x'));
        std::string text = "before";
        EXPECT_FALSE(readText(file.get(), text));
        EXPECT_EQ(text, "before");
    }
}

TEST(BinaryForm, OnlyTheLargestLengthIsCapped) {
    EXPECT_EQ(cappedLength(0xFFFFFFFFU), 0xFFFFFFFEU);
    EXPECT_EQ(cappedLength(0xFFFFFFFEU), 0xFFFFFFFEU);
    EXPECT_EQ(cappedLength(0xFFFFFFFDU), 0xFFFFFFFDU);
    EXPECT_EQ(cappedLength(0x80000000U), 0x80000000U);
    EXPECT_EQ(cappedLength(0), 0U);
}

TEST(BinaryForm, BytesAreReadExactlyAndReplaceWhatWasThere) {
    const FileHandle file = fileWith(bytes("a\0b\0rest"));
    std::string read = "before";
    EXPECT_TRUE(readBytes(file.get(), 4, read));
    EXPECT_EQ(read, bytes("a\0b\0"));
    EXPECT_EQ(restOf(file.get()), "rest");
}

TEST(BinaryForm, NoBytesCanBeReadFromAnEmptyFile) {
    const FileHandle file = fileWith("");
    std::string read = "before";
    EXPECT_TRUE(readBytes(file.get(), 0, read));
    EXPECT_EQ(read, "");
}

TEST(BinaryForm, BytesCutShortLeaveThoseThatCame) {
    const FileHandle file = fileWith("abc");
    std::string read = "before";
    EXPECT_FALSE(readBytes(file.get(), largest - 1, read));
    EXPECT_EQ(read, "abc");
}

TEST(BinaryForm, LocationsAreWrittenAsAddressAndOffsetOfEach) {
    EXPECT_EQ(written({{0x1000, 31}, {largest, 0}}),
              bytes("\0\x10\0\0\x1F\0\0\0\xFF\xFF\xFF\xFF\0\0\0\0"));
    EXPECT_EQ(written(std::vector<LogicLocation>{}), "");
}

TEST(BinaryForm, LocationsAreReadOntoTheEndOfTheList) {
    const FileHandle file = fileWith(location(3, 4) + location(largest, 6) + "rest");
    std::vector<LogicLocation> locations{{1, 2}};
    EXPECT_TRUE(readLocations(file.get(), 2, locations));
    EXPECT_EQ(locations, (std::vector<LogicLocation>{{1, 2}, {3, 4}, {largest, 6}}));
    EXPECT_EQ(restOf(file.get()), "rest");
}

TEST(BinaryForm, LocationsCutShortLeaveTheWholePairsThatCame) {
    const std::string whole = location(1, 2) + location(3, 4);
    const std::vector<LogicLocation> all{{1, 2}, {3, 4}};
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const FileHandle file = fileWith(std::string_view(whole).substr(0, length));
        std::vector<LogicLocation> locations;
        EXPECT_EQ(readLocations(file.get(), 2, locations), length == whole.size()) << length;
        const auto came = static_cast<std::ptrdiff_t>(length / 8);
        EXPECT_EQ(locations, std::vector<LogicLocation>(all.begin(), all.begin() + came)) << length;
    }
}

TEST(BinaryForm, LocationsThatClaimTheLargestCountInASmallFileFail) {
    for (const std::uint32_t claimed : {largest, largest - 1}) {
        const FileHandle file = fileWith(location(1, 2) + location(3, 4));
        std::vector<LogicLocation> locations;
        EXPECT_FALSE(readLocations(file.get(), claimed, locations));
        EXPECT_EQ(locations, (std::vector<LogicLocation>{{1, 2}, {3, 4}}));
    }
}

TEST(BinaryForm, AListIsWrittenAsItsCountThenEachElement) {
    const std::vector<std::string> texts{"a", "", "bc"};
    EXPECT_EQ(bytesWrittenBy([&](std::FILE* file) {
                  const auto one = [=](const std::string& text) { return writeText(file, text); };
                  return writeList(file, texts, one);
              }),
              u32(3) + text("a") + text("") + text("bc"));
}

TEST(BinaryForm, AListCountsWhatItsElementsReport) {
    const FileHandle file = fileWith({});
    const std::vector<std::uint32_t> reports{100, 0, 7};
    EXPECT_EQ(writeList(file.get(), reports, [](std::uint32_t report) { return report; }), 111U);
    EXPECT_EQ(contentOf(file.get()), u32(3));
}

TEST(BinaryForm, AListIsReadElementByElementUntilOneFails) {
    const auto calls = [](const std::string& bytes, int failing, bool expected) {
        const FileHandle file = fileWith(bytes);
        int called = 0;
        EXPECT_EQ(readList(file.get(), [&] { return ++called != failing; }), expected);
        return called;
    };
    EXPECT_EQ(calls(u32(3), 0, true), 3);
    EXPECT_EQ(calls(u32(0), 0, true), 0);
    EXPECT_EQ(calls(u32(3), 3, false), 3);
    EXPECT_EQ(calls(u32(largest), 2, false), 2);
    EXPECT_EQ(calls("\x01\x01\x01", 0, false), 0);
}

TEST(BinaryForm, ALongTextComesBackWhole) {
    std::string longText;
    for (int i = 0; i < 1'000'003; ++i) {
        longText += static_cast<char>('a' + i % 23);
    }
    const FileHandle file = fileWith(written(longText) + "rest");
    std::string read;
    EXPECT_TRUE(readText(file.get(), read));
    EXPECT_TRUE(read == longText);
    EXPECT_EQ(restOf(file.get()), "rest");
}

TEST(BinaryForm, ManyLocationsComeBackWhole) {
    const std::vector<LogicLocation> locations = manyLocations(100'001);
    const FileHandle file = fileWith(written(locations));
    std::vector<LogicLocation> read;
    EXPECT_TRUE(readLocations(file.get(), 100'001, read));
    EXPECT_TRUE(read == locations);
}

TEST(BinaryForm, ManyLocationsCutShortLeaveTheWholePairsThatCame) {
    const std::vector<LogicLocation> locations = manyLocations(100'001);
    const std::string all = written(locations);
    const FileHandle file = fileWith(std::string_view(all).substr(0, all.size() - 1));
    std::vector<LogicLocation> read;
    EXPECT_FALSE(readLocations(file.get(), 100'001, read));
    EXPECT_TRUE(read == manyLocations(100'000));
}

TEST(BinaryForm, AFileOpenForReadingTakesNothing) {
    const FileHandle file = openFile("/dev/null", "r");
    ASSERT_TRUE(file);
    EXPECT_EQ(writeNumber(file.get(), 1), 0U);
    EXPECT_EQ(writeText(file.get(), "size"), 0U);
    EXPECT_EQ(writeText(file.get(), ""), 0U);
    EXPECT_EQ(writeLocations(file.get(), manyLocations(1)), 0U);
}

TEST(BinaryForm, AFileOpenForWritingDeliversNothing) {
    const FileHandle file = openFile("/dev/null", "w");
    ASSERT_TRUE(file);
    std::uint32_t number = 77;
    std::string text = "before";
    EXPECT_FALSE(readNumber(file.get(), number));
    EXPECT_FALSE(readText(file.get(), text));
    EXPECT_EQ(number, 77U);
    EXPECT_EQ(text, "before");
}

TEST(BinaryForm, ANumberWrittenInPartCountsNothing) {
    for (std::size_t room = 0; room < 4; ++room) {
        EXPECT_EQ(writeNumber(fileOfCapacity(room).get(), 1), 0U);
    }
    EXPECT_EQ(writeNumber(fileOfCapacity(4).get(), 1), 4U);
}

TEST(BinaryForm, ATextWrittenInPartCountsItsLengthOnly) {
    EXPECT_EQ(writeText(fileOfCapacity(3).get(), "size"), 0U);
    for (std::size_t room = 4; room < 8; ++room) {
        EXPECT_EQ(writeText(fileOfCapacity(room).get(), "size"), 4U);
    }
    EXPECT_EQ(writeText(fileOfCapacity(8).get(), "size"), 8U);
}

TEST(BinaryForm, LocationsWrittenInPartCountEachWholeNumber) {
    const std::vector<LogicLocation> locations{{1, 2}, {3, 4}};
    for (std::size_t room = 0; room <= 16; ++room) {
        EXPECT_EQ(writeLocations(fileOfCapacity(room).get(), locations), room / 4 * 4) << room;
    }
}

} // namespace
} // namespace consolidator::test
