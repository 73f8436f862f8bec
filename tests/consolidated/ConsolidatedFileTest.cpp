// The database in memory: what comes of a file, of a project name and of a DWARF file, and what
// writing leaves behind.

#include "consolidated/ConsolidatedFile.h"

#include "tests/support/Bytes.h"
#include "tests/support/Fifo.h"
#include "tests/support/Kernels.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint32_t largest = 0xFFFFFFFF;

SectionEntry tableEntry(std::uint32_t type, std::uint64_t offset, std::uint32_t size) {
    return {.type = type, .offset = offset, .size = size};
}

/// A database of one section that lies at this offset, and the bytes behind the table, which begin
/// at offset 40.
std::string oneSection(std::uint32_t type, std::uint64_t offset, std::uint32_t size,
                       std::string_view payload) {
    return header(1) + entry(type, offset, size) + std::string(payload);
}

std::string kernelData(const std::vector<std::string>& names) {
    std::vector<std::string> records;
    records.reserve(names.size());
    for (const std::string& name : names) {
        records.push_back(record({.name = name}));
    }
    return list(records);
}

/// A database in memory and a directory for its file.
class ConsolidatedFileTest : public testing::Test {
protected:
    /// Reads a file that holds these bytes into a new object, and returns whether it was found
    /// whole.
    bool read(std::string_view content) {
        file_ = ConsolidatedFile();
        return file_.readExisting(directory_.write("db.bin", content));
    }

    std::vector<std::uint32_t> sectionTypes() const {
        std::vector<std::uint32_t> types;
        for (const SectionEntry& section : file_.sections()) {
            types.push_back(section.type);
        }
        return types;
    }

    void expectUntouched() const {
        EXPECT_EQ(file_.header().majorVersion, 1U);
        EXPECT_EQ(file_.header().minorVersion, 1U);
        EXPECT_EQ(file_.header().sectionCount, 0U);
        EXPECT_THAT(file_.sections(), IsEmpty());
        EXPECT_EQ(file_.project(), "");
        EXPECT_EQ(file_.dwarf(), std::nullopt);
        EXPECT_THAT(file_.kernels(), IsEmpty());
    }

    TemporaryDirectory directory_;
    ConsolidatedFile file_;
};

/// Lets a database write itself and gives the file's bytes.
template <typename Fill>
std::string writtenAfter(Fill fill) {
    const TemporaryDirectory directory;
    {
        ConsolidatedFile file;
        EXPECT_TRUE(file.open(directory.path("new.bin"), true, false));
        fill(file);
        file.write();
    }
    return directory.read("new.bin");
}

using Opening = ConsolidatedFileTest;

TEST_F(Opening, ANewFileFindsNothingAndMakesNoneYet) {
    EXPECT_TRUE(file_.open(directory_.path("db.bin"), false, false));
    EXPECT_EQ(file_.header().magic, 0xBEEFDAD4U);
    expectUntouched();
    EXPECT_FALSE(directory_.has("db.bin"));
}

TEST_F(Opening, ReadsTheFileAndLeavesItUntilItIsWritten) {
    const std::string content = DatabaseBuilder().section(0, "demo").bytes();
    EXPECT_TRUE(file_.open(directory_.write("db.bin", content), false, false));
    EXPECT_EQ(file_.project(), "demo");
    EXPECT_EQ(directory_.read("db.bin"), content);
}

TEST_F(Opening, ForADumpReadsTheFileAndLeavesIt) {
    const std::string content = DatabaseBuilder().section(0, "demo").bytes();
    EXPECT_TRUE(file_.open(directory_.write("db.bin", content), false, true));
    EXPECT_EQ(file_.project(), "demo");
    EXPECT_EQ(directory_.read("db.bin"), content);
}

/// Sections in every order that matters: what is behind the last project name, before it, and
/// between two of them, whole and not.
std::vector<std::string> databasesToDumpFrom() {
    const std::string kernels = list({record({.name = "k", .brams = {"b"}}), record({})});
    const std::string blob(70, 'd');
    return {
        DatabaseBuilder().section(0, "demo").section(1, blob).section(2, kernels).bytes(),
        DatabaseBuilder().section(2, kernels).section(0, "demo").section(1, blob).bytes(),
        DatabaseBuilder().section(0, "a").section(2, kernels).section(0, "b").bytes(),
        DatabaseBuilder().section(0, "a").section(2, u32(3) + kernels).section(0, "b").bytes(),
        DatabaseBuilder().section(1, blob).section(3, "json").section(0, "demo").bytes(),
        DatabaseBuilder().section(0, "a").section(7, "").section(0, "b").bytes(),
        DatabaseBuilder().section(1, blob).section(2, kernels).bytes(),
        header(3) + entry(0, 88, 1) + entry(1, 88, 200000) + entry(0, 89, 1) + "ab",
        header(3) + entry(0, 88, 1) + entry(2, 1000, 5) + entry(0, 89, 1) + "ab",
        header(3) + entry(2, 88, 8) + entry(0, 88, largest) + entry(0, 89, 1) + u32(0),
    };
}

TEST_F(Opening, ForADumpFindsTheProjectThatReadingFindsAndKeepsNoPayload) {
    for (const std::string& whole : databasesToDumpFrom()) {
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            read(whole.substr(0, length));
            ConsolidatedFile dumped;
            ASSERT_TRUE(dumped.open(directory_.path("db.bin"), false, true));
            EXPECT_EQ(dumped.project(), file_.project());
            EXPECT_EQ(dumped.header().majorVersion, file_.header().majorVersion);
            EXPECT_EQ(dumped.sections().size(), file_.sections().size());
            EXPECT_EQ(dumped.dwarf(), std::nullopt);
            EXPECT_THAT(dumped.kernels(), IsEmpty());
        }
    }
}

TEST_F(Opening, ForADumpStopsWhereReadingStopsOnOverlappingSections) {
    for (const std::uint32_t count : {1U, 3U, 60U, 61U, 70U, 80U, 200U}) {
        // Each section is the blob, behind whose last one the project gets another name.
        const std::string blob(1100, 'd');
        const std::uint32_t payload = 16 + 24 * (count + 1);
        std::string content = header(count + 1);
        for (std::uint32_t i = 0; i < count; ++i) {
            content += entry(1, payload, 1100);
        }
        content += entry(0, payload, 1) + blob;
        read(content);
        ConsolidatedFile dumped;
        ASSERT_TRUE(dumped.open(directory_.path("db.bin"), false, true));
        EXPECT_EQ(dumped.project(), file_.project()) << count;
    }
}

TEST_F(Opening, InCreateModeDoesNotReadTheFile) {
    const std::string content = DatabaseBuilder().section(0, "demo").version(2, 7).bytes();
    EXPECT_TRUE(file_.open(directory_.write("db.bin", content), true, false));
    expectUntouched();
    EXPECT_EQ(directory_.read("db.bin"), content);
}

TEST_F(Opening, InCreateModeForADumpNeitherReadsNorEmptiesTheFile) {
    const std::string content = DatabaseBuilder().section(0, "demo").version(2, 7).bytes();
    EXPECT_TRUE(file_.open(directory_.write("db.bin", content), true, true));
    expectUntouched();
    EXPECT_EQ(directory_.read("db.bin"), content);
}

TEST_F(Opening, SucceedsOnAFileThatIsNoDatabase) {
    EXPECT_TRUE(file_.open(directory_.write("db.bin", "a letter to a friend"), false, false));
    expectUntouched();
}

TEST_F(Opening, FailsWhenTheFileCannotBeMade) {
    EXPECT_FALSE(file_.open(directory_.path("missing/db.bin"), false, false));
    EXPECT_FALSE(file_.open(directory_.path("missing/db.bin"), true, false));
}

TEST_F(Opening, OfATargetReadsNothing) {
    const std::string content = DatabaseBuilder().section(0, "demo").bytes();
    const std::string path = directory_.write("db.bin", content);
    EXPECT_TRUE(file_.openTarget(path));
    expectUntouched();
    EXPECT_TRUE(file_.isReplaced(path));
    EXPECT_EQ(directory_.read("db.bin"), content);
    EXPECT_TRUE(file_.write());
    EXPECT_EQ(directory_.read("db.bin"), knownDatabase({}));
}

TEST_F(Opening, OfATargetTellsWhyItFails) {
    EXPECT_FALSE(file_.openTarget(directory_.path("missing/db.bin")));
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Opening, IsNeededForWriting) {
    EXPECT_FALSE(file_.write());
    EXPECT_EQ(errno, EBADF);
    ConsolidatedFile full;
    EXPECT_TRUE(full.openTarget("/dev/full"));
    EXPECT_FALSE(full.write());
    EXPECT_EQ(errno, ENOSPC);
}

TEST_F(Opening, ForADumpFailsOnAMissingFileAndDoesNotMakeIt) {
    EXPECT_FALSE(file_.open(directory_.path("db.bin"), false, true));
    EXPECT_FALSE(file_.open(directory_.path("db.bin"), true, true));
    EXPECT_FALSE(directory_.has("db.bin"));
}

using Reading = ConsolidatedFileTest;

TEST_F(Reading, TakesInEverySection) {
    const std::string first = record({.name = "scale_rows", .instancePaths = {"top/k_1"}});
    const std::string second = record({.name = "checksum", .type = 1});
    EXPECT_TRUE(read(DatabaseBuilder()
                         .section(0, "demo")
                         .section(1, bytes("\x7F"
                                           "blob\0\xFF"))
                         .section(3, "not looked at")
                         .section(2, u32(2) + first + second)
                         .bytes()));
    EXPECT_EQ(file_.header().sectionCount, 4U);
    EXPECT_EQ(file_.sections().size(), 4U);
    EXPECT_EQ(file_.sections().at(1), tableEntry(1, 16 + 4 * 24 + 4, 7));
    EXPECT_EQ(file_.project(), "demo");
    EXPECT_EQ(file_.dwarf(), bytes("\x7F"
                                   "blob\0\xFF"));
    ASSERT_THAT(file_.kernels(), SizeIs(2));
    EXPECT_EQ(binaryForm(file_.kernels()[0]), first);
    EXPECT_EQ(binaryForm(file_.kernels()[1]), second);
}

TEST_F(Reading, OfAMissingFileFails) {
    EXPECT_FALSE(file_.readExisting(directory_.path("missing")));
    expectUntouched();
}

TEST_F(Reading, OfAFileShorterThanAHeaderFindsNothing) {
    const std::string content = DatabaseBuilder().section(0, "demo").version(7, 9).bytes();
    for (std::size_t length = 0; length < 16; ++length) {
        EXPECT_FALSE(read(content.substr(0, length))) << length;
        expectUntouched();
    }
}

TEST_F(Reading, OfAFileWithAnotherMagicNumberFindsNothing) {
    for (const std::size_t byte : {0U, 1U, 2U, 3U}) {
        std::string content = DatabaseBuilder().section(0, "demo").version(7, 9).bytes();
        content[byte] ^= 1;
        EXPECT_FALSE(read(content)) << byte;
        expectUntouched();
    }
}

TEST_F(Reading, OfAHeaderThatPromisesNoSectionsSucceeds) {
    EXPECT_TRUE(read(header(0, 7, 9)));
    EXPECT_EQ(file_.header().majorVersion, 7U);
    EXPECT_EQ(file_.header().minorVersion, 9U);
    EXPECT_THAT(file_.sections(), IsEmpty());
}

TEST_F(Reading, DoesNotLookBehindAnEmptyTable) {
    EXPECT_TRUE(read(header(0) + "x"));
    EXPECT_THAT(file_.sections(), IsEmpty());
}

TEST_F(Reading, FailsOnATableThatIsCutShortButKeepsTheVersionsAndWholeEntries) {
    EXPECT_FALSE(read(header(1, 7, 9) + "x"));
    EXPECT_EQ(file_.header().majorVersion, 7U);
    EXPECT_EQ(file_.header().minorVersion, 9U);
    EXPECT_THAT(file_.sections(), IsEmpty());

    EXPECT_FALSE(read(header(2) + entry(0, 40, 4) + entry(1, 40, 4).substr(0, 23)));
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(0, 40, 4)));
}

TEST_F(Reading, TakesNoPayloadWhenTheTableIsCutShort) {
    EXPECT_FALSE(read(header(3) + entry(0, 64, 4) + entry(2, 68, 8) + "demo" + u32(0)));
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(0, 64, 4), tableEntry(2, 68, 8)));
    EXPECT_EQ(file_.project(), "");
}

TEST_F(Reading, EndsWithTheFileWhenTheTableIsSaidToBeEndless) {
    EXPECT_FALSE(read(header(largest) + entry(3, 0, 0) + entry(0, 0, 0)));
    EXPECT_EQ(sectionTypes(), (std::vector<std::uint32_t>{3, 0}));
}

TEST_F(Reading, KeepsThePaddingOfTableEntries) {
    EXPECT_TRUE(read(header(1) + u32(3) + "pad1" + u64(40) + u32(5) + "pad2"));
    ASSERT_THAT(file_.sections(), SizeIs(1));
    EXPECT_EQ(u32(file_.sections()[0].padding1), "pad1");
    EXPECT_EQ(u32(file_.sections()[0].padding2), "pad2");
}

TEST_F(Reading, StopsAtASectionOfAnotherTypeAndKeepsWhatCameBefore) {
    for (const std::uint32_t type : {4U, 0x80000000U, largest}) {
        EXPECT_FALSE(read(DatabaseBuilder()
                              .section(0, "demo")
                              .section(2, kernelData({"k"}))
                              .section(type, "payload")
                              .section(1, "blob")
                              .section(0, "later")
                              .bytes()));
        EXPECT_THAT(file_.sections(), SizeIs(5));
        EXPECT_EQ(file_.project(), "demo");
        EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("k"));
        EXPECT_EQ(file_.dwarf(), std::nullopt);
    }
}

TEST_F(Reading, LowersTheLargestSizeByOneUpToTheEntryThatCannotBeRead) {
    EXPECT_FALSE(read(header(5) + entry(3, 0, largest) + entry(2, 136, largest) +
                      entry(4, 0, largest) + entry(4, 0, largest) + entry(3, 0, largest) +
                      kernelData({"k"})));
    EXPECT_THAT(file_.sections(),
                ElementsAre(tableEntry(3, 0, largest - 1), tableEntry(2, 136, largest - 1),
                            tableEntry(4, 0, largest - 1), tableEntry(4, 0, largest),
                            tableEntry(3, 0, largest)));
    EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("k"));
}

TEST_F(Reading, FailsOnAProjectNameOrBlobOfTheLargestSize) {
    for (const std::uint32_t type : {0U, 1U}) {
        EXPECT_FALSE(read(oneSection(type, 40, largest, "demo")));
        EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(type, 40, largest - 1)));
        EXPECT_EQ(file_.project(), "");
        EXPECT_EQ(file_.dwarf(), std::nullopt);
    }
}

TEST_F(Reading, LeavesTheSecondLargestSizeAsItIs) {
    EXPECT_TRUE(read(oneSection(3, 40, largest - 1, "")));
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(3, 40, largest - 1)));
}

TEST_F(Reading, FindsPayloadsByTheirOffsetsWhereverTheyLie) {
    EXPECT_TRUE(read(header(2) + entry(1, 73, 4) + entry(0, 68, 4) + "gap demo blob"));
    EXPECT_EQ(file_.dwarf(), "blob");
    EXPECT_EQ(file_.project(), "demo");
}

TEST_F(Reading, FailsOnOffsetsBehindTheEnd) {
    for (const std::uint32_t type : {0U, 1U, 2U}) {
        for (const std::uint32_t offset : {41U, 1000U, 0x7FFFFFFFU}) {
            EXPECT_FALSE(read(oneSection(type, offset, 4, u32(1)))) << type << " at " << offset;
            EXPECT_EQ(file_.project(), "");
            EXPECT_EQ(file_.dwarf(), std::nullopt);
        }
    }
}

TEST_F(Reading, FailsOnOffsetsThatAreNegativeInThirtyTwoBits) {
    for (const std::uint32_t type : {0U, 1U, 2U}) {
        for (const std::uint64_t offset :
             {std::uint64_t{0xFFFFFFFF}, std::uint64_t{0x80000000}, ~std::uint64_t{0}}) {
            EXPECT_FALSE(read(oneSection(type, offset, 0, u32(0)))) << type << " at " << offset;
            EXPECT_EQ(file_.dwarf(), std::nullopt);
        }
    }
}

TEST_F(Reading, LooksOnlyAtTheLowerHalfOfAnOffset) {
    EXPECT_TRUE(read(oneSection(0, 0x100000000 + 41, 4, "?demo")));
    EXPECT_EQ(file_.project(), "demo");
    EXPECT_TRUE(read(oneSection(2, 0xFFFFFFFF00000028, 0, kernelData({"k"}))));
    EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("k"));
}

TEST_F(Reading, DoesNotLookAtTheJsonSection) {
    EXPECT_TRUE(read(header(2) + entry(3, largest, 1000) + entry(0, 64, 4) + "demo"));
    EXPECT_EQ(file_.project(), "demo");
}

TEST_F(Reading, CutsTheProjectNameAtItsFirstZeroByte) {
    EXPECT_TRUE(read(DatabaseBuilder().section(0, bytes("de\0mo\0")).bytes()));
    EXPECT_EQ(file_.project(), "de");
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(0, 40, 6)));
}

TEST_F(Reading, TakesTheLastOfSeveralProjectNames) {
    EXPECT_TRUE(read(DatabaseBuilder().section(0, "first").section(0, "last").bytes()));
    EXPECT_EQ(file_.project(), "last");
}

TEST_F(Reading, TakesAnEmptyProjectNameToo) {
    EXPECT_TRUE(read(DatabaseBuilder().section(0, "first").section(0, "").bytes()));
    EXPECT_EQ(file_.project(), "");
}

TEST_F(Reading, KeepsTheProjectNameWhenTheNextOneCannotBeRead) {
    EXPECT_FALSE(read(header(2) + entry(0, 64, 4) + entry(0, 65, 4) + "demo"));
    EXPECT_EQ(file_.project(), "demo");
}

TEST_F(Reading, TakesABlobOfNoBytes) {
    EXPECT_TRUE(read(oneSection(1, 1000, 0, "")));
    EXPECT_EQ(file_.dwarf(), "");
}

TEST_F(Reading, TakesTheLastOfSeveralBlobs) {
    EXPECT_TRUE(read(DatabaseBuilder().section(1, "first").section(1, "last").bytes()));
    EXPECT_EQ(file_.dwarf(), "last");
}

TEST_F(Reading, DropsTheBlobWhenTheNextOneIsCutShort) {
    EXPECT_FALSE(read(header(2) + entry(1, 64, 4) + entry(1, 64, 5) + "blob"));
    EXPECT_EQ(file_.dwarf(), std::nullopt);
}

// Nothing has been read yet when the place of the next blob cannot be reached.
TEST_F(Reading, KeepsTheBlobWhenThePlaceOfTheNextOneCannotBeReached) {
    EXPECT_FALSE(read(header(2) + entry(1, 64, 4) + entry(1, largest, 4) + "blob"));
    EXPECT_EQ(file_.dwarf(), "blob");
}

TEST_F(Reading, DoesNotLookAtTheSizeOfKernelData) {
    EXPECT_TRUE(read(oneSection(2, 40, 0, kernelData({"scale_rows", "checksum"}))));
    EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("scale_rows", "checksum"));
}

TEST_F(Reading, TakesKernelDataWithoutKernels) {
    EXPECT_TRUE(read(DatabaseBuilder().section(2, u32(0)).section(0, "demo").bytes()));
    EXPECT_THAT(file_.kernels(), IsEmpty());
    EXPECT_EQ(file_.project(), "demo");
}

TEST_F(Reading, FailsOnAKernelCountThatIsCutShort) {
    EXPECT_FALSE(read(oneSection(2, 40, 4, u32(0).substr(0, 3))));
    EXPECT_THAT(file_.kernels(), IsEmpty());
}

TEST_F(Reading, KeepsTheWholeKernelsBeforeOneThatIsCutShort) {
    const std::string whole = u32(largest) + record({.name = "scale_rows"});
    const std::string next = record({.name = "checksum", .instancePaths = {"top/checksum_1"}});
    for (const std::size_t length : {std::size_t{0}, std::size_t{13}, next.size() - 1}) {
        EXPECT_FALSE(read(oneSection(2, 40, 0, whole + next.substr(0, length)))) << length;
        EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("scale_rows")) << length;
    }
}

TEST_F(Reading, ChainsTheKernelsOfSeveralSections) {
    EXPECT_TRUE(read(DatabaseBuilder()
                         .section(2, kernelData({"scale_rows", "checksum"}))
                         .section(2, kernelData({"blend", "checksum"}))
                         .bytes()));
    EXPECT_THAT(namesOf(file_.kernels()),
                ElementsAre("scale_rows", "checksum", "blend", "checksum"));
}

TEST_F(Reading, TakesNamesOfAnyBytesUpToAZeroByte) {
    EXPECT_TRUE(read(DatabaseBuilder()
                         .section(2, kernelData({"\"quoted\"", "back\\slash", "\xFF\x80\n",
                                                 bytes("cut\0off"), ""}))
                         .bytes()));
    EXPECT_THAT(namesOf(file_.kernels()),
                ElementsAre("\"quoted\"", "back\\slash", "\xFF\x80\n", "cut", ""));
}

/// A database whose sections all are this payload, which stands in the file once.
std::string overlapping(std::uint32_t type, std::uint32_t sections, std::string_view payload) {
    std::string bytes = header(sections);
    for (std::uint32_t i = 0; i < sections; ++i) {
        bytes += entry(type, 16 + 24 * sections, static_cast<std::uint32_t>(payload.size()));
    }
    return bytes.append(payload);
}

TEST_F(Reading, TakesSectionsThatOverlapAsOftenAsTheyAreNamed) {
    EXPECT_TRUE(read(overlapping(2, 3, kernelData({"a", "b"}))));
    EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("a", "b", "a", "b", "a", "b"));
}

// The file has 16 + 24 * 1000 + 100,000 bytes: with 65,536 more they are 189,552 bytes, which the
// second section exceeds.
TEST_F(Reading, StopsWhenOverlappingSectionsAddUpToMoreThanTheFile) {
    const std::string record100k = record({.name = std::string(100'000 - 36, 'n')});
    EXPECT_FALSE(read(overlapping(2, 1000, u32(1) + record100k)));
    EXPECT_THAT(file_.kernels(), SizeIs(2));
    EXPECT_THAT(file_.sections(), SizeIs(1000));
}

TEST_F(Reading, CountsNeitherJsonNorSectionsWithoutBytesAsReading) {
    std::string bytes = header(2000);
    for (int i = 0; i < 1000; ++i) {
        bytes += entry(3, 16, 48'000) + entry(0, 16, 0);
    }
    EXPECT_TRUE(read(bytes));
}

using SettingTheProject = ConsolidatedFileTest;

TEST_F(SettingTheProject, AddsASectionEachTime) {
    file_.setProject("demo");
    file_.setProject("accelerator");
    EXPECT_EQ(file_.project(), "accelerator");
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(0, 0, 4), tableEntry(0, 0, 11)));
}

TEST_F(SettingTheProject, DoesNotLookForASectionOfTheFile) {
    ASSERT_TRUE(read(DatabaseBuilder().section(0, "demo").section(3, "").bytes()));
    file_.setProject("demo");
    EXPECT_EQ(sectionTypes(), (std::vector<std::uint32_t>{0, 3, 0}));
}

using AddingDwarf = ConsolidatedFileTest;

TEST_F(AddingDwarf, TakesTheFileByteForByte) {
    std::string blob;
    for (int i = 0; i < 1000; ++i) {
        blob += static_cast<char>(i);
    }
    file_.addDwarf(directory_.write("program.dwarf", blob));
    EXPECT_EQ(file_.dwarf(), blob);
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(1, 0, 1000)));
}

TEST_F(AddingDwarf, TakesTheFirstFileOnly) {
    file_.addDwarf(directory_.write("first.dwarf", "first"));
    file_.addDwarf(directory_.write("second.dwarf", "second"));
    EXPECT_EQ(file_.dwarf(), "first");
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(1, 0, 5)));
}

TEST_F(AddingDwarf, DoesNotReplaceABlobOfTheDatabase) {
    ASSERT_TRUE(read(DatabaseBuilder().section(1, "stored").bytes()));
    file_.addDwarf(directory_.write("program.dwarf", "new"));
    EXPECT_EQ(file_.dwarf(), "stored");
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(1, 40, 6)));
}

TEST_F(AddingDwarf, DoesNotReplaceABlobThatCouldNotBeRead) {
    ASSERT_FALSE(read(oneSection(1, 40, 100, "too short")));
    file_.addDwarf(directory_.write("program.dwarf", "new"));
    EXPECT_EQ(file_.dwarf(), std::nullopt);
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(1, 40, 100)));
}

TEST_F(AddingDwarf, DoesNothingWithoutBytes) {
    file_.addDwarf(directory_.path("missing"));
    file_.addDwarf(directory_.write("empty", ""));
    file_.addDwarf(directory_.path(""));
    file_.addDwarf("/dev/null");
    file_.addDwarf("");
    expectUntouched();
}

TEST_F(AddingDwarf, DoesNothingWithAFileWhoseSizeIsNegativeInThirtyTwoBits) {
    const std::string path = directory_.write("huge.dwarf", "");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 31);
    file_.addDwarf(path);
    expectUntouched();
}

TEST_F(AddingDwarf, TakesTheNextFileAfterOneWithoutBytes) {
    file_.addDwarf(directory_.write("empty", ""));
    file_.addDwarf(directory_.write("program.dwarf", "blob"));
    EXPECT_EQ(file_.dwarf(), "blob");
}

using Writing = ConsolidatedFileTest;

TEST_F(Writing, WithoutAnOpenFileDoesNothing) {
    file_.setProject("demo");
    file_.write();
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(0, 0, 4)));
}

TEST_F(Writing, AnEmptyDatabaseGivesAnEmptyJsonSection) {
    EXPECT_EQ(writtenAfter([](ConsolidatedFile&) {}),
              bytes("\xD4\xDA\xEF\xBE\1\0\0\0\1\0\0\0\1\0\0\0"
                    "\3\0\0\0\0\0\0\0\x28\0\0\0\0\0\0\0\x16\0\0\0\0\0\0\0"
                    "{  \"Kernels\" : [  ] }\0"));
}

TEST_F(Writing, PutsSectionsIntoTheOrderInWhichTheyCame) {
    directory_.write("program.dwarf", "blob");
    EXPECT_EQ(writtenAfter([&](ConsolidatedFile& file) {
                  file.mergeKernel(kernelNamed("k"));
                  file.addDwarf(directory_.path("program.dwarf"));
                  file.setProject("demo");
              }),
              DatabaseBuilder()
                  .section(1, "blob")
                  .section(0, "demo")
                  .section(3, knownJson({{.name = "k"}}))
                  .section(2, kernelData({"k"}))
                  .bytes());
}

TEST_F(Writing, StoresTheConditionsOfANewDatabaseTranslated) {
    EXPECT_EQ(writtenAfter([](ConsolidatedFile& file) {
                  Kernel kernel = kernelNamed("k");
                  kernel.addBreakableCondition(BreakableCondition::Start, "(1'b1 == 1'b1)");
                  kernel.addBreakableCondition(BreakableCondition::Start, "(x == 1'b1)");
                  file.mergeKernel(kernel);
              }),
              DatabaseBuilder()
                  .section(3, jsonWithStarts("k", {"== 1'b1 $i/x"}))
                  .section(2, u32(1) + record({.name = "k",
                                               .conditions = {condition(0, "== 1'b1 $i/x")}}))
                  .bytes());
}

TEST_F(Writing, TranslatesTheKernelsInMemory) {
    ASSERT_TRUE(file_.open(directory_.path("db.bin"), true, false));
    Kernel kernel = kernelNamed("k");
    kernel.addBreakableCondition(BreakableCondition::Stop, "(x != 0)");
    file_.mergeKernel(kernel);
    file_.write();
    EXPECT_THAT(file_.kernels().at(0).breakableConditions(),
                ElementsAre(BreakableCondition(BreakableCondition::Stop, "!= 0 $i/x")));
}

/// A kernel with something in each of its lists.
Record wholeRecord() {
    return {
        .name = "scale_rows",
        .instancePaths = {"top/scale_rows_1", "top/scale_rows_2"},
        .type = 4,
        .arguments = {variable("data", "data_r", "float*"), variable("size", "size_r", "int")},
        .variables = {variable("row", "row_reg", "char", {list({location(4096, 31)}), list({})})},
        .hardwareVariables = {hardwareVariable("/top/a", {location(0, 0), location(8192, 7)})},
        .conditions = {condition("(x)", 12, "scale.cpp"), condition(9, "odd )")},
        .brams = {"ram_0", "ram_0"}};
}

TEST_F(Writing, StoresEverythingThatAKernelHas) {
    Record translated = wholeRecord();
    translated.conditions = {condition("$i/x", 12, "scale.cpp"), condition(9, "$i/odd")};
    const std::string json = bytes(
        R"({  "Kernels" : [ { "Name" : "scale_rows", "Instance Paths" : [ )"
        R"("top/scale_rows_1/U0", "top/scale_rows_2/U0" ], "Type" : "HLS", "Arguments" : [ )"
        R"([ "data", "data_r", "float*", 64], [ "size", "size_r", "int", 32]], "Variables" : [ )"
        R"([ "row", "row_reg", "char", 8, [ { "Instance" : 0, "Bits" : [{ 4096, 31}]}, )"
        R"({ "Instance" : 1, "Bits" : []}]]], "Hardware Variables" : [ )"
        R"({ "RTLName" : "/top/a", "Logic Locations" : [ [ 0, 0], [ 8192, 7]] } )"
        R"(], "Breakable Conditions" : [{ "File":"scale.cpp", "Line":12, "Cond":"$i/x"}, )"
        R"({ "Error":1, "Cond":"$i/odd"}], "BRAMs" : [ "ram_0", "ram_0"] } ] })"
        "\0");
    EXPECT_EQ(
        writtenAfter([](ConsolidatedFile& file) { file.mergeKernel(kernelOf(wholeRecord())); }),
        DatabaseBuilder().section(3, json).section(2, u32(1) + record(translated)).bytes());
}

TEST_F(Writing, EscapesNothing) {
    const std::string name = bytes("\"\\n\0\xFF\n");
    EXPECT_EQ(writtenAfter([&](ConsolidatedFile& file) {
                  Kernel kernel = kernelNamed(name);
                  kernel.addInstancePath(name);
                  file.mergeKernel(kernel);
                  file.setProject(name);
              }),
              DatabaseBuilder()
                  .section(0, name)
                  .section(3, knownJson({{.name = name, .instancePaths = {name}}}))
                  .section(2, u32(1) + record({.name = name, .instancePaths = {name}}))
                  .bytes());
}

TEST_F(Writing, KeepsTheTableInMemoryAsItIsWritten) {
    ASSERT_TRUE(file_.open(directory_.path("db.bin"), true, false));
    file_.setProject("demo");
    file_.write();
    EXPECT_THAT(file_.sections(), ElementsAre(tableEntry(0, 64, 4), tableEntry(3, 68, 22)));
}

// The table then stands at the front, where there is no going back to.
TEST_F(Writing, ToAPipeGivesTheTableWithoutPlacesAndPayloads) {
    CollectingFifo pipe(directory_.path("pipe"));
    {
        ConsolidatedFile file;
        ASSERT_TRUE(file.open(directory_.path("pipe"), true, false));
        file.setProject("demo");
        file.mergeKernel(kernelNamed("k"));
        file.write();
    }
    EXPECT_EQ(pipe.take(), header(3) + entry(0, 0, 4) + entry(3, 0, 0) + entry(2, 0, 0));
}

TEST_F(Writing, OfAJsonTextThatDoesNotGoOutMakesItsSizeZero) {
    ASSERT_TRUE(file_.open("/dev/full", true, false));
    file_.mergeKernel(kernelNamed(std::string(std::size_t{1} << 20, 'k')));
    file_.write();
    ASSERT_EQ(sectionTypes(), (std::vector<std::uint32_t>{3, 2}));
    EXPECT_EQ(file_.sections()[0].size, 0U);
}

/// The sections that are left of 2,001 with a project name of this length when the file is written
/// again.
std::size_t namesWritten(std::size_t length) {
    const TemporaryDirectory directory;
    const std::string content = overlapping(0, 2000, "");
    ConsolidatedFile file;
    EXPECT_TRUE(file.open(directory.write("db.bin", content), false, false));
    file.setProject(std::string(length, 'p'));
    file.write();
    EXPECT_EQ(file.sections().back().type, 3U);
    return file.sections().size() - 1;
}

TEST_F(Writing, RepeatsProjectNamesWhileTheyHoldAMebibyteMoreThanThereWas) {
    // There were 16 + 2000 * 24 bytes in the file, and the name.
    EXPECT_EQ(namesWritten(20), 2001U);
    EXPECT_EQ(namesWritten(1000),
              1098U); // 1,048,576 + 48,016 + 1000 bytes, of which 1097 leave some
    EXPECT_EQ(namesWritten(1'048'575), 3U);
    EXPECT_EQ(namesWritten(3'000'000), 2U);
}

TEST_F(Writing, LeavesNoEntryForASectionThatIsNotRepeated) {
    DatabaseBuilder database;
    for (int i = 0; i < 3; ++i) {
        database.section(2, kernelData({std::string(400'000, 'n')}));
    }
    const std::string path = directory_.write("db.bin", database.bytes());
    {
        ConsolidatedFile file;
        EXPECT_TRUE(file.open(path, false, false));
        EXPECT_THAT(file.kernels(), SizeIs(3));
        file.write(); // the first section has all three kernels, more than a mebibyte
        EXPECT_EQ(file.header().sectionCount, 2U);
        EXPECT_EQ(file.sections()[0].offset, 16U + 24 * 4); // where the table of four would end
    }
    EXPECT_TRUE(file_.readExisting(path));
    EXPECT_THAT(file_.kernels(), SizeIs(3));
}

TEST_F(Writing, KeepsEveryEntryOfAnUnknownTypeWhateverItsSize) {
    const std::string content =
        header(3) + entry(4, 88, 9'000'000) + entry(4, 88, 9'000'000) + entry(5, 88, 9'000'000);
    ConsolidatedFile file;
    EXPECT_TRUE(file.open(directory_.write("db.bin", content), false, false));
    file.write();
    EXPECT_THAT(file.sections(), SizeIs(4)); // and JSON
}

// A thousand documents of 40 MB each would take minutes.
TEST_F(Writing, RendersNoMoreJsonOnceItDoesNotGoOut) {
    Kernel kernel = kernelNamed("k");
    kernel.addHardwareLocation("/top/k/n", 4'000'000, 1, 2);
    const std::string content = overlapping(3, 1000, "");
    ASSERT_FALSE(file_.readExisting(directory_.path("none")));
    ASSERT_TRUE(file_.readExisting(directory_.write("db.bin", content)));
    ASSERT_TRUE(file_.open("/dev/full", true, false));
    file_.mergeKernel(kernel);
    file_.write();
    for (const SectionEntry& section : file_.sections()) {
        EXPECT_TRUE(section.type != 3 || section.size == 0);
    }
}

TEST_F(Writing, ReadsBackWhatItWrote) {
    const std::string content = writtenAfter([&](ConsolidatedFile& file) {
        file.setProject("demo");
        file.addDwarf(directory_.write("program.dwarf", "blob"));
        file.mergeKernel(kernelOf(wholeRecord()));
        file.mergeKernel(kernelNamed(""));
    });
    EXPECT_TRUE(read(content));
    EXPECT_EQ(file_.project(), "demo");
    EXPECT_EQ(file_.dwarf(), "blob");
    EXPECT_THAT(namesOf(file_.kernels()), ElementsAre("scale_rows", ""));
}

using RepeatedSections = ConsolidatedFileTest;

TEST_F(RepeatedSections, AreAllKeptWhenTheyAreTheProjectNamesOfRuns) {
    const std::string path = directory_.path("db.bin");
    const std::string name(100'000, 'n');
    for (std::size_t runs = 1; runs <= 25; ++runs) { // 2.5 MB in the end
        {
            ConsolidatedFile file;
            ASSERT_TRUE(file.open(path, runs == 1, false));
            file.setProject(name);
            file.write();
        }
        ConsolidatedFile written;
        ASSERT_TRUE(written.readExisting(path));
        ASSERT_EQ(std::ranges::count_if(written.sections(),
                                        [&](const SectionEntry& entry) {
                                            return entry.is(SectionType::ProjectName) &&
                                                   entry.size == name.size();
                                        }),
                  runs);
    }
}

TEST_F(RepeatedSections, AreAllKeptWhenOneRunSetsManyNames) {
    ASSERT_TRUE(file_.open(directory_.path("db.bin"), true, false));
    for (int i = 0; i < 25; ++i) {
        file_.setProject(std::string(100'000, 'n'));
    }
    file_.write();
    EXPECT_THAT(file_.sections(), SizeIs(26)); // and the JSON
}

TEST_F(RepeatedSections, GoWhenManyProjectNamesLieOverOneAnother) {
    constexpr std::uint32_t entries = 4000;
    const std::string name(100'000, 'n');
    const std::string path = directory_.write(
        "db.bin", header(entries) + repeated(entry(0, 16 + 24 * entries, 100'000), entries) + name);
    for (int run = 0; run < 3; ++run) {
        ConsolidatedFile file;
        ASSERT_TRUE(file.open(path, false, false));
        EXPECT_EQ(file.project(), name);
        file.write();
        // The file has 196,016 bytes, and 1 MiB is 1,048,576: the 13th name gets beyond both.
        EXPECT_THAT(file.sections(), SizeIs(13 + 1));
    }
}

TEST_F(RepeatedSections, OfOtherKindsGoBeyondAMebibyte) {
    const std::string blob(100'000, 'b');
    DatabaseBuilder builder;
    for (int i = 0; i < 25; ++i) {
        builder.section(1, blob);
    }
    ASSERT_TRUE(file_.open(directory_.write("db.bin", builder.bytes()), false, false));
    file_.write();
    EXPECT_THAT(file_.sections(), SizeIs(11 + 1));
}

using Dumping = ConsolidatedFileTest;

TEST_F(Dumping, WithoutAnOpenFileDoesNotMakeTheOutput) {
    file_.dumpSection(SectionType::KernelJson, directory_.path("out.json"));
    EXPECT_FALSE(directory_.has("out.json"));
}

TEST_F(Dumping, CopiesTheSectionOfTheGivenType) {
    const std::string content =
        DatabaseBuilder().section(0, "demo").section(3, "json").section(2, u32(0)).bytes();
    ASSERT_TRUE(file_.open(directory_.write("db.bin", content), false, true));
    for (const auto& [type, payload] : {std::pair(SectionType::ProjectName, std::string("demo")),
                                        std::pair(SectionType::KernelJson, std::string("json")),
                                        std::pair(SectionType::KernelData, u32(0)),
                                        std::pair(SectionType::Dwarf, std::string())}) {
        file_.dumpSection(type, directory_.path("out"));
        EXPECT_EQ(directory_.read("out"), payload);
    }
}

TEST_F(Dumping, CopiesSectionsOfAnySize) {
    for (const std::size_t size : {0U, 1U, 4096U, 131071U, 131072U, 131073U, 600000U}) {
        std::string payload(size, 'j');
        for (std::size_t i = 0; i < size; i += 1000) {
            payload[i] = static_cast<char>(i / 1000);
        }
        const std::string path =
            directory_.write("db.bin", DatabaseBuilder().section(3, payload).bytes() + "behind");
        ConsolidatedFile file;
        ASSERT_TRUE(file.open(path, false, true));
        file.dumpSection(SectionType::KernelJson, directory_.path("out"));
        EXPECT_TRUE(directory_.read("out") == payload) << size;
    }
}

TEST_F(Dumping, OfASectionThatReachesBehindTheEndGivesNothing) {
    const std::string whole = DatabaseBuilder().section(3, std::string(600000, 'j')).bytes();
    for (const std::size_t missing : {1U, 300000U, 600000U}) {
        directory_.write("db.bin", whole.substr(0, whole.size() - missing));
        ConsolidatedFile file;
        ASSERT_TRUE(file.open(directory_.path("db.bin"), false, true));
        directory_.write("out", "before");
        file.dumpSection(SectionType::KernelJson, directory_.path("out"));
        EXPECT_EQ(directory_.read("out"), "") << missing;
    }
}

/// A database whose reading can be cut off anywhere, and where its parts end.
struct Sample {
    std::string json = knownJson({});
    std::string first = record(wholeRecord());
    std::string second = record({.name = "checksum", .instancePaths = {"top/checksum_1"}});
    std::string all = DatabaseBuilder()
                          .section(0, "demo")
                          .section(1, "blob bytes")
                          .section(3, json)
                          .section(2, u32(2) + first + second)
                          .bytes();
    std::size_t table = 16;
    std::size_t project = table + std::size_t{4} * 24;
    std::size_t dwarf = project + 4;
    std::size_t kernels = dwarf + 10 + json.size() + 4;
};

void expectPartsOf(const Sample& sample, std::size_t length, const ConsolidatedFile& file) {
    const std::size_t entries = length < sample.table ? 0 : (length - sample.table) / 24;
    EXPECT_EQ(file.sections().size(), std::min<std::size_t>(entries, 4));
    EXPECT_EQ(file.project(), length >= sample.project + 4 ? "demo" : "");
    EXPECT_EQ(file.dwarf().has_value(), length >= sample.dwarf + 10);
    std::vector<std::string> names;
    if (length >= sample.kernels + sample.first.size()) {
        names.emplace_back("scale_rows");
    }
    if (length >= sample.all.size()) {
        names.emplace_back("checksum");
    }
    EXPECT_EQ(namesOf(file.kernels()), names);
}

std::vector<std::string> binaryForms(const std::vector<Kernel>& kernels) {
    std::vector<std::string> forms;
    forms.reserve(kernels.size());
    for (const Kernel& kernel : kernels) {
        forms.push_back(binaryForm(kernel));
    }
    return forms;
}

using Truncation = ConsolidatedFileTest;

TEST_F(Truncation, LeavesTheWholePartsInFrontOfTheCut) {
    const Sample sample;
    for (std::size_t length = 0; length <= sample.all.size(); ++length) {
        SCOPED_TRACE(length);
        EXPECT_EQ(read(sample.all.substr(0, length)), length == sample.all.size());
        expectPartsOf(sample, length, file_);
    }
}

TEST_F(Truncation, IsMendedByWriting) {
    const Sample sample;
    for (std::size_t length = 0; length <= sample.all.size(); ++length) {
        SCOPED_TRACE(length);
        const std::string path = directory_.write("db.bin", sample.all.substr(0, length));
        std::string project;
        std::string dwarf;
        std::vector<std::string> kernels;
        {
            ConsolidatedFile file;
            ASSERT_TRUE(file.open(path, false, false));
            file.write();
            project = file.project();
            dwarf = file.dwarf().value_or("");
            kernels = binaryForms(file.kernels());
        }
        ConsolidatedFile mended;
        EXPECT_TRUE(mended.readExisting(path));
        EXPECT_EQ(mended.project(), project);
        EXPECT_EQ(mended.dwarf().value_or(""), dwarf);
        EXPECT_EQ(binaryForms(mended.kernels()), kernels);
    }
}

using PrintingTheHeader = ConsolidatedFileTest;

std::string printed(const ConsolidatedFile& file) {
    std::ostringstream out;
    file.printHeader(out);
    return out.str();
}

TEST_F(PrintingTheHeader, OfANewDatabaseListsTheInitialValues) {
    EXPECT_EQ(printed(file_), "Magic number: 3203390164\n"
                              "Major Version: 1\n"
                              "Minor Version: 1\n"
                              "Num sections: 0\n");
}

TEST_F(PrintingTheHeader, ListsEverySectionAsItWasRead) {
    EXPECT_FALSE(read(header(3, 4000000000, 9) + entry(0, 0x100000000 + 88, 4) +
                      entry(7, 0xFFFFFFFFFFFFFFFF, largest) + entry(3, 0, largest) + "demo"));
    EXPECT_EQ(printed(file_), "Magic number: 3203390164\n"
                              "Major Version: 4000000000\n"
                              "Minor Version: 9\n"
                              "Num sections: 3\n"
                              "Section 0: 0\n"
                              "Offset: 4294967384\n"
                              "Size: 4\n"
                              "Section 1: 7\n"
                              "Offset: 18446744073709551615\n"
                              "Size: 4294967294\n"
                              "Section 2: 3\n"
                              "Offset: 0\n"
                              "Size: 4294967295\n");
}

TEST_F(PrintingTheHeader, AfterWritingCountsTheSectionsThatWereWritten) {
    ASSERT_TRUE(file_.open(directory_.path("db.bin"), true, false));
    file_.setProject("demo");
    file_.write();
    EXPECT_EQ(printed(file_), "Magic number: 3203390164\n"
                              "Major Version: 1\n"
                              "Minor Version: 1\n"
                              "Num sections: 2\n"
                              "Section 0: 0\n"
                              "Offset: 64\n"
                              "Size: 4\n"
                              "Section 1: 3\n"
                              "Offset: 68\n"
                              "Size: 22\n");
}

TEST_F(PrintingTheHeader, GoesToStandardOutputByDefault) {
    std::ostringstream out;
    std::streambuf* const standard = std::cout.rdbuf(out.rdbuf());
    file_.printHeader();
    std::cout.rdbuf(standard);
    EXPECT_EQ(out.str(), printed(file_));
}

} // namespace

} // namespace consolidator::test
