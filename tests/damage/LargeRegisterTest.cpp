// Logic locations of bits with large numbers: a few bytes of input stand for hundreds of megabytes
// of zeros in the database, which must come out to the byte and must not be kept in memory.

#include "tests/damage/DamagedRun.h"
#include "tests/support/Bytes.h"
#include "tests/support/HowBuilt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

/// A text that stands a number of times in a row.
using Run = std::pair<std::string, std::size_t>;

/// Compares the rest of a stream with a run, a block at a time.
bool startsWith(std::istream& file, const Run& expected) {
    constexpr std::size_t timesAtOnce = 8192;
    std::string block;
    std::string found;
    for (std::size_t left = expected.second; left > 0;) {
        const std::size_t times = std::min(left, timesAtOnce);
        block.resize(std::min(block.size(), times * expected.first.size()));
        while (block.size() < times * expected.first.size()) {
            block += expected.first;
        }
        found.resize(block.size());
        file.read(found.data(), static_cast<std::streamsize>(found.size()));
        if (!file || found != block) {
            return false;
        }
        left -= times;
    }
    return true;
}

bool fileConsistsOf(const std::string& path, const std::vector<Run>& runs) {
    std::ifstream file(path, std::ios::binary);
    for (const Run& expected : runs) {
        if (!startsWith(file, expected)) {
            return false;
        }
    }
    return file.peek() == std::ifstream::traits_type::eof();
}

/// The kernel whose register all tests are about.
KnownKernel kernelWith(const std::vector<KnownRegister>& registers) {
    KnownKernel kernel;
    kernel.name = "checksum";
    kernel.instancePaths = {"top/k"};
    kernel.type = 1;
    kernel.variables = {{"x", "x_reg", "int"}};
    kernel.registers = registers;
    return kernel;
}

/// What a database with a register of this one bit, at address 7 and offset 9, consists of.
std::vector<Run> databaseWithBit(std::uint32_t bit) {
    const std::string data = knownKernelData({kernelWith({{"/top/k/x_reg", {{7, 9}}}})});
    const std::string json = knownJson({kernelWith({{"/top/k/x_reg", {{7, 9}}}})});
    const std::size_t jsonPlace = json.find("[ 7, 9]");
    const std::size_t dataPlace = data.find(location(7, 9));
    const std::string zeroJson = "[ 0, 0], ";
    const auto jsonSize = static_cast<std::uint32_t>(json.size() + zeroJson.size() * bit);
    const auto dataSize = static_cast<std::uint32_t>(data.size() + std::size_t{8} * bit);
    return {{header(2) + entry(3, 64, jsonSize) + entry(2, 64 + jsonSize, dataSize), 1},
            {json.substr(0, jsonPlace), 1},
            {zeroJson, bit},
            {json.substr(jsonPlace), 1},
            {data.substr(0, dataPlace - 4) + u32(bit + 1), 1},
            {std::string(8, '\0'), bit},
            {data.substr(dataPlace), 1}};
}

/// Tests that run the driver on a database with the kernel.
struct LargeRegister : testing::Test {
    LargeRegister() {
        NaiveDatabase database;
        database.kernels = {kernelWith({})};
        run.directory.write("db", database.write());
    }

    void expectBit(std::uint32_t bit) {
        SCOPED_TRACE(bit);
        run.begin("bit " + std::to_string(bit));
        const std::string net = "top/k/x_reg[" + std::to_string(bit) + "]";
        const std::string line = "Bit 1 0x7 9 TILE 0 Net=" + net + "\n";
        run.expectRun({"-l", run.directory.write("top.ll", line)}, line.size());
        EXPECT_TRUE(fileConsistsOf(run.db, databaseWithBit(bit)));
    }

    DamagedRun run;
};

} // namespace

TEST_F(LargeRegister, ABitIsWrittenWithZerosBeforeIt) {
    expectBit(5000);
}

TEST_F(LargeRegister, AMillionBitsTakeLittleMemory) {
    expectBit((1U << 20) - 1);
}

TEST_F(LargeRegister, TheLastBitThatCountsTakesLittleMemory) {
    expectBit((1U << 24) - 1);
}

TEST_F(LargeRegister, BitsThatDoNotCountLeaveTheDatabaseAsItIs) {
    const std::string before = run.directory.read("db");
    for (const char* bit : {"16777216", "4294967295", "4294967296", "99999999999999999999"}) {
        SCOPED_TRACE(bit);
        const std::string line = "Bit 1 2 3 TILE 0 Net=top/k/x_reg[" + std::string(bit) + "]\n";
        run.expectRun({"-l", run.directory.write("top.ll", line)}, line.size());
        EXPECT_TRUE(run.directory.read("db") == before);
    }
}

TEST_F(LargeRegister, AnotherRunReadsThemWithLittleMemory) {
    constexpr std::uint32_t bit = (1U << 20) - 1;
    expectBit(bit);
    // The limit is that of a far smaller database on purpose: zeros are not kept.
    run.expectRun({"-h", run.hierarchy}, std::size_t{128} * 1024);
    EXPECT_TRUE(fileConsistsOf(run.db, databaseWithBit(bit)));
}

TEST_F(LargeRegister, ManyLargeRegistersTakeLittleMemory) {
    std::string lines;
    std::vector<KnownRegister> registers;
    KnownRegister expected;
    expected.places.resize(20001);
    constexpr int count = sanitized ? 20 : 200; // memory is not measured there, and time is short
    for (int i = 0; i < count; ++i) {
        expected.netName = "/top/k/" + std::to_string(i) + "/x_reg";
        expected.places.back() = {static_cast<std::uint32_t>(i), 1};
        registers.push_back(expected);
        lines += "Bit 1 " + std::string(i % 2 == 0 ? "" : "0x");
        constexpr std::string_view digits = "0123456789abcdef";
        lines += digits[static_cast<std::size_t>(i / 16)];
        lines += digits[static_cast<std::size_t>(i % 16)];
        lines += " 1 TILE 0 Net=" + expected.netName.substr(1) + "[20000]\n";
    }
    run.begin(std::to_string(count) + " registers");
    run.expectRun({"-l", run.directory.write("top.ll", lines)}, lines.size());
    NaiveDatabase database;
    database.kernels = {kernelWith(registers)};
    EXPECT_TRUE(run.directory.read("db") == database.write());
}

} // namespace consolidator::test
