// A register whose bits lie far apart: what is between them takes a database hundreds of megabytes
// to tell, but no command more than a line.

#include "tests/support/Bytes.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>

namespace consolidator::test {

namespace {

using testing::HasSubstr;

/// Writes a database with a register of which only bit 16,000,000 is located, and returns its path.
/// The zeros before it are a hole in the file.
std::string writeFarBit(const TemporaryDirectory& directory) {
    constexpr std::uint32_t before = 16'000'000;
    const std::string front = u32(1) + text("k") + list({text("t/k_1")}) + u32(4) + list({}) +
                              list({variable("sum", "sum_reg", "int")}) + u32(1) +
                              text("/t/k_1/inst/sum_reg") + u32(before + 1);
    const std::string end = location(0x1a01, 5) + list({}) + list({});
    const auto size =
        static_cast<std::uint32_t>(front.size() + 8 * std::size_t{before} + end.size());
    const std::string path = directory.write("db", header(1) + entry(2, 40, size) + front);
    std::ofstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(40 + size - end.size()));
    file << end;
    return path;
}

TEST(FarBit, TakesFewLines) {
    const TemporaryDirectory directory;
    const std::string path = writeFarBit(directory);
    EXPECT_THAT(inspectRun({"kernel", path, "k"}).out,
                HasSubstr("  instance 0: /t/k_1/inst/sum_reg\n"
                          "    bits 15999999:0         not located\n"
                          "    bit 16000000            frame 0x00001a01  offset 5\n"));
    EXPECT_EQ(inspectRun({"find", path, "sum"}),
              (CommandResult{0,
                             "kernel k, sum_reg\n"
                             "  variable sum, int, 32 bits\n"
                             "  instance 0: /t/k_1/inst/sum_reg\n"
                             "                  bit  address     offset\n"
                             "           15999999:0  not located\n"
                             "             16000000  0x00001a01  5\n",
                             ""}));
    EXPECT_EQ(inspectRun({"at", path, "0x1a01"}),
              (CommandResult{0,
                             "frame 0x00001a01\n"
                             "  offsets  bits      kernel  instance  register             holds\n"
                             "  5        16000000  k       0         /t/k_1/inst/sum_reg  variable "
                             "sum\n",
                             ""}));
}

} // namespace

} // namespace consolidator::test
