// Outputs that stop growing half-way: at the limit of file sizes and on a full device.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

using testing::IsEmpty;

constexpr std::size_t sectionCount = 3;
constexpr std::size_t tableEnd = 16 + 24 * sectionCount;

/// Whether `piece` could stand in the place of a whole header and table: cut off, never written
/// (a hole), or with sizes that are smaller because a payload did not go out.
bool isHeaderOf(std::string_view piece, std::string_view whole) {
    if (piece.find_first_not_of('\0') == std::string_view::npos) {
        return true;
    }
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const bool isSizeOrOffset = i >= 16 && (i - 16) % 24 >= 8;
        if (piece[i] != whole[i] && !isSizeOrOffset) {
            return false;
        }
    }
    return true;
}

/// The size that the table entry for the section of this type records.
std::string recordedSize(const std::string& database, std::uint32_t type) {
    for (std::size_t at = 16; at + 24 <= tableEnd; at += 24) {
        if (database.compare(at, 4, u32(type)) == 0) {
            return database.substr(at + 16, 4);
        }
    }
    return "";
}

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

    /// Whether `bytes` can be all that got out of the payloads. Where the JSON text did not get out
    /// whole, the kernel data begins in its place; behind what got out of that, the front of the
    /// text may still stand.
    bool arePayloads(std::string_view bytes) const {
        const std::string inOrder = blob + json + kernelData;
        if (inOrder.starts_with(bytes)) {
            return true;
        }
        if (!bytes.starts_with(blob)) {
            return false;
        }
        bytes.remove_prefix(blob.size());
        const auto differing = std::ranges::mismatch(bytes, kernelData).in1;
        const auto length = static_cast<std::size_t>(differing - bytes.begin());
        return bytes.size() <= json.size() &&
               json.compare(length, bytes.size() - length, bytes.substr(length)) == 0;
    }

    void expectPartOfWhole(const std::string& database, std::size_t limit) const {
        EXPECT_LE(database.size(), limit);
        const std::string_view part = database;
        EXPECT_TRUE(isHeaderOf(part.substr(0, tableEnd), whole)) << "limit " << limit;
        if (database.size() <= tableEnd) {
            return;
        }
        EXPECT_TRUE(arePayloads(part.substr(tableEnd))) << "limit " << limit;
        if (database.starts_with(std::string_view(whole).substr(0, 16))) {
            const std::string size = recordedSize(database, 3);
            EXPECT_TRUE(size == u32(0) || size == u32(static_cast<std::uint32_t>(json.size())))
                << "limit " << limit;
        }
    }

    /// Makes the database under a limit, and then reads what is there of it.
    void expectRunUnder(std::size_t limit) const {
        directory.write("db", "");
        auto rest = directory.contents();
        EXPECT_EQ(runConsolidator(directory.path("."),
                                  {"-f", "db", "-d", "dwarf", "-h", "good.hier"},
                                  limited(RLIMIT_FSIZE, limit)),
                  CommandResult{});
        rest["db"] = directory.read("db");
        expectPartOfWhole(rest["db"], limit);
        EXPECT_THAT(directory.differencesFrom(rest), IsEmpty()) << "limit " << limit;
    }

    TemporaryDirectory directory;
    std::string blob;
    std::string json;
    std::string kernelData;
    std::string whole;
};

TEST_F(FileSizeLimit, OfEverySizeLeavesTheFrontOfASmallDatabase) {
    prepare(10, 40);
    const std::size_t step = 3; // odd, so that every kind of place is met
    for (std::size_t limit = 0; limit < whole.size() && !HasFailure(); limit += step) {
        expectRunUnder(limit);
    }
    expectRunUnder(whole.size() - 1);
}

TEST_F(FileSizeLimit, OfAllBytesIsNone) {
    prepare(10, 40);
    expectRunUnder(whole.size());
    EXPECT_EQ(directory.read("db"), whole);
}

TEST_F(FileSizeLimit, LeavesTheFrontOfALargeDatabase) {
    prepare(50000, 40000);
    for (std::size_t limit = 0; limit < whole.size() && !HasFailure(); limit += 4999) {
        expectRunUnder(limit);
        // Whatever is left can be added to.
        EXPECT_EQ(runConsolidator(directory.path("."), {"-f", "db", "-h", "good.hier"}),
                  CommandResult{})
            << "limit " << limit;
    }
}

TEST_F(FileSizeLimit, NeverLeavesARecordOfAJsonTextThatIsMissing) {
    // The JSON text is longer than any buffer and goes beyond the limit. Whether the table can be
    // written after that depends on what is left in the buffer.
    prepare(200000, 400000);
    expectRunUnder(tableEnd + 400000 + 100000);
    const std::string database = directory.read("db");
    EXPECT_NE(recordedSize(database, 3), u32(static_cast<std::uint32_t>(json.size())));
}

TEST_F(FileSizeLimit, KeepsTheKernelDataWhereOnlyTheJsonTextIsTooLong) {
    std::string hierarchy;
    std::vector<std::string> names(2000);
    std::vector<KnownKernel> kernels;
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = "kernel_" + std::to_string(i);
        hierarchy += names[i] + "\ntype: c\n";
        kernels.push_back({names[i], 1});
    }
    directory.write("good.hier", hierarchy);
    expectSections("blob", kernels);
    ASSERT_GT(json.size(), 2 * kernelData.size());
    const std::string withoutJson =
        DatabaseBuilder().section(1, blob).section(3, "").section(2, kernelData).bytes();
    for (const std::size_t limit : {withoutJson.size(), json.size()}) {
        expectRunUnder(limit);
        EXPECT_TRUE(directory.read("db") == withoutJson) << limit;
    }
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
