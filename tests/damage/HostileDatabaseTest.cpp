// Databases that were made to waste time or memory, and what they get: no more than their size
// deserves.

#include "tests/damage/DamagedRun.h"
#include "tests/support/Bytes.h"
#include "tests/support/Repeated.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

struct HostileDatabase : testing::Test {
    /// A run on the database must do what the naive database does.
    void expectNaiveRun(const std::string& what, const std::string& bytes,
                        const std::vector<std::string>& more = {}) {
        SCOPED_TRACE(what);
        run.begin(what);
        run.directory.write("db", bytes);
        NaiveDatabase expected = NaiveDatabase::read(bytes);
        std::vector<std::string> words{"-h", run.hierarchy};
        words.insert(words.end(), more.begin(), more.end());
        run.expectRun(words, bytes.size());
        expected.merge(run.stated);
        run.expectDatabase(expected);
    }

    /// A run on a database in which many entries stand for the same bytes. How much of them is kept
    /// is for the program to decide; what a reader sees of it must be whole.
    void expectModestRun(const std::string& what, const std::string& bytes) {
        if (HasFailure()) {
            return; // the first such database has eaten enough
        }
        SCOPED_TRACE(what);
        run.begin(what);
        run.directory.write("db", bytes);
        run.expectRun({"-h", run.hierarchy}, bytes.size());
        ASSERT_LE(std::filesystem::file_size(run.db), memoryLimit(bytes.size()));
        const NaiveDatabase written = NaiveDatabase::read(run.directory.read("db"));
        EXPECT_TRUE(written.complete);
        bool found = false;
        for (const KnownKernel& kernel : written.kernels) {
            found = found || kernel.name == run.stated.name;
        }
        EXPECT_TRUE(found);
    }

    DamagedRun run;
};

/// A database whose entries all have this type and lie over the same payload.
std::string overlapping(std::uint32_t type, std::uint32_t entries, const std::string& payload) {
    const std::uint32_t offset = 16 + 24 * entries;
    const auto size = static_cast<std::uint32_t>(payload.size());
    return header(entries) + repeated(entry(type, offset, size), entries) + payload;
}

} // namespace

TEST_F(HostileDatabase, TablesThatClaimMoreEntriesThanThereAre) {
    for (const std::uint32_t claimed : {4U, 1000U, 0x0AAAAAAAU, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        for (std::uint32_t type = 0; type < 5; ++type) {
            expectNaiveRun(std::to_string(claimed) + " entries of type " + std::to_string(type),
                           header(claimed) + repeated(entry(type, 16, 24), 3));
        }
    }
}

TEST_F(HostileDatabase, OffsetsThatPointAnywhere) {
    const std::string kernels = knownKernelData({{.name = "scale_rows"}});
    for (std::uint32_t type = 0; type < 3; ++type) {
        for (const std::uint64_t offset :
             {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{16}, std::uint64_t{0x7FFFFFFF},
              std::uint64_t{0x80000000}, std::uint64_t{0xFFFFFFFF}, (std::uint64_t{1} << 32) + 40,
              ~std::uint64_t{0}, (std::uint64_t{1} << 63) + 40}) {
            for (const std::uint32_t size : {0U, 1U, 24U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
                expectNaiveRun("type " + std::to_string(type) + " at " + std::to_string(offset) +
                                   ", " + std::to_string(size) + " bytes",
                               header(1) + entry(type, offset, size) + kernels);
            }
        }
    }
}

TEST_F(HostileDatabase, SectionsThatLieOverOneAnother) {
    const std::string kernels = knownKernelData({{.name = "scale_rows"}, {.name = "blend"}});
    const std::uint32_t start = 16 + 6 * 24;
    const auto size = static_cast<std::uint32_t>(kernels.size());
    expectNaiveRun("one payload as everything", header(6) + entry(2, start, size) +
                                                    entry(0, start, size) + entry(1, start, size) +
                                                    entry(2, start, 0) + entry(3, start, size) +
                                                    entry(1, 0, start + size) + kernels);
    expectNaiveRun("header and table as payloads",
                   header(6) + entry(0, 0, 16) + entry(1, 16, 6 * 24) + entry(3, 0, 4) +
                       entry(0, 16, 24) + entry(2, start, 1) + entry(0, 0, 0) + kernels);
}

TEST_F(HostileDatabase, ManyEntriesForTheSameBytes) {
    constexpr std::uint32_t entries = 4000;
    const std::string longName(100000, 'n');
    expectModestRun("project name", overlapping(0, entries, longName));
    expectModestRun("dwarf", overlapping(1, entries, longName));
    expectModestRun("a kernel", overlapping(2, entries, knownKernelData({{.name = longName}})));
    expectModestRun("json", overlapping(3, entries, longName));
    expectModestRun("many kernels",
                    overlapping(2, entries, u32(3000) + repeated(std::string(32, '\0'), 3000)));
}

TEST_F(HostileDatabase, ManySmallestElements) {
    constexpr std::uint32_t bytes = 256 * 1024;
    const std::string zero = u32(0);
    // The fields of a kernel named "checksum", which an input names too: its lists are searched.
    const std::string name = text("checksum");
    const std::string type = u32(3);
    const auto zeros = [](std::uint32_t count, std::uint32_t width) {
        return u32(count) + std::string(std::size_t{count} * width, '\0');
    };
    const std::string variableNames = zero + zero + zero;
    const std::vector<std::pair<std::string, std::string>> records = {
        {"paths", zeros(bytes / 4, 4) + type + zero + zero + zero + zero + zero},
        {"arguments", zero + type + zeros(bytes / 16, 16) + zero + zero + zero + zero},
        {"variables", zero + type + zero + zeros(bytes / 16, 16) + zero + zero + zero},
        {"instances",
         zero + type + zero + u32(1) + variableNames + zeros(bytes / 4, 4) + zero + zero + zero},
        {"instances with a location",
         zero + type + zero + u32(1) + variableNames + u32(bytes / 12) +
             repeated(u32(1) + u32(5) + u32(6), bytes / 12) + zero + zero + zero},
        {"registers", zero + type + zero + zero + zeros(bytes / 8, 8) + zero + zero},
        {"registers with a location", zero + type + zero + zero + u32(bytes / 16) +
                                          repeated(zero + u32(1) + u32(5) + u32(6), bytes / 16) +
                                          zero + zero},
        {"locations",
         zero + type + zero + zero + u32(1) + zero + zeros(bytes / 8, 8) + zero + zero},
        {"conditions", zero + type + zero + zero + zero + zeros(bytes / 8, 8) + zero},
        {"brams", zero + type + zero + zero + zero + zero + zeros(bytes / 4, 4)}};
    const std::string hls = run.directory.write("checksum.hls", "");
    const std::string ll = run.directory.write("top.ll", "Bit 1 2 3 TILE 0 Net=a/b[1]\n");
    const std::string ram = run.directory.write("ram.rpt", "");
    for (const auto& [what, record] : records) {
        expectNaiveRun(what, DatabaseBuilder().section(2, u32(1) + name + record).bytes(),
                       {"-s", hls, "-l", ll, "-r", ram});
    }
    expectNaiveRun("kernels", DatabaseBuilder().section(2, zeros(bytes / 32, 32)).bytes(),
                   {"-s", hls, "-l", ll, "-r", ram});
}

} // namespace consolidator::test
