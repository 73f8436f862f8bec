// A pipe in the place of each text input gives what a file of the same bytes gives.

#include "tests/support/Command.h"
#include "tests/support/Fifo.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

struct Input {
    const char* option;
    std::string text;
};

std::string nameOf(const testing::TestParamInfo<Input>& info) {
    return info.param.option + 1;
}

const std::string hierarchy = "scale_rows\ntype: hls\ninstance path: top/scale_rows_1\n";
const std::string kernelXml =
    "<project name=\"p\"><platform><device><core>"
    "<kernel name=\"scale_rows\"><arg name=\"rows\" type=\"int\"/></kernel>"
    "</core></device></platform></project>";

struct Pipes : testing::TestWithParam<Input> {
    Pipes() {
        directory.write("system.hier", hierarchy);
        directory.write("kernel.xml", kernelXml);
        for (const char* folder : {"files", "pipes"}) {
            std::filesystem::create_directory(directory.path(folder));
        }
    }

    /// The database after a run over a hierarchy, a kernel description and one more input.
    std::string databaseWith(const std::string& input) const {
        EXPECT_EQ(runConsolidator(directory.path("."), {"-c", "-f", "db", "-h", "system.hier", "-k",
                                                        "kernel.xml", GetParam().option, input}),
                  CommandResult{});
        return directory.read("db");
    }

    TemporaryDirectory directory;
};

TEST_P(Pipes, GiveWhatAFileGives) {
    // One kind of reader makes a kernel of the file's name.
    directory.write("files/input.txt", GetParam().text);
    const FifoWithContent fifo(directory.path("pipes/input.txt"), GetParam().text);
    const std::string fromFile = databaseWith("files/input.txt");
    EXPECT_EQ(databaseWith("pipes/input.txt"), fromFile);
    if (std::string(GetParam().option) != "-r") { // which changes nothing
        EXPECT_NE(databaseWith("missing"), fromFile) << "the input matters";
    }
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, Pipes,
    testing::Values(
        Input{"-h", "checksum\ntype: c\n"},
        Input{"-k", "<project name=\"p\"><platform><device><core><kernel name=\"blend\"/></core>"
                    "</device></platform></project>"},
        Input{"-s", "RTL 1 state_1 (a == 1'b1)\nlocal sum\nat: x.cpp:12\nend sum_reg[7:0] 8\n"},
        Input{"-x", "<vd:acceleratorMap vd:functionName=\"blend\" >\n"},
        Input{"-l", "Bit 7 0x0000001f 12 SLICE_X1Y2 0 Net=top/scale_rows_1/rows[3]\n"},
        Input{"-r", "8. Block Ram / URAM Memory Power - Instantiated\n"}),
    nameOf);

} // namespace

} // namespace consolidator::test
