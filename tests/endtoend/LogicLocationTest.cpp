// From logic-location files to the registers of the database, their bytes and their JSON text.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/Fifo.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult success{};

/// A kernel that a database of some earlier run holds: the variable n in the register n_r.
KnownKernel kernelAt(const std::vector<std::string>& paths,
                     const std::vector<KnownRegister>& registers = {},
                     const std::string& name = "scale_rows") {
    return {.name = name,
            .type = 4,
            .instancePaths = paths,
            .variables = {{"n", "n_r", "int"}},
            .registers = registers};
}

/// A line about one bit of a net.
std::string bitOf(const std::string& net, const std::string& place = "0x1a00 64") {
    return "Bit 1000 " + place + " TILE_X1Y2 0 Latch=Q Net=" + net + "\n";
}

const KnownPlace place{6656, 64}; // where bitOf() says

struct LogicLocations : testing::Test {
    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments);
    }

    /// Makes "db" a database of these kernels.
    void start(const std::vector<KnownKernel>& kernels) const {
        directory.write("db", knownDatabase(kernels));
    }

    /// Adds a logic-location file to the database, which must end well and in silence.
    void add(std::string_view text) const {
        directory.write("top.ll", text);
        EXPECT_EQ(run({"-f", "db", "-l", "top.ll"}), success) << text;
    }

    void expectKernels(const std::vector<KnownKernel>& kernels) const {
        EXPECT_EQ(directory.read("db"), knownDatabase(kernels));
    }

    /// That a file gives a kernel at top/k_1 these registers.
    void expectRegisters(std::string_view text, const std::vector<KnownRegister>& registers) const {
        start({kernelAt({"top/k_1"})});
        add(text);
        EXPECT_EQ(directory.read("db"), knownDatabase({kernelAt({"top/k_1"}, registers)})) << text;
    }

    TemporaryDirectory directory;
};

// Files that add nothing

TEST_F(LogicLocations, ThatCannotBeOpenedLeaveKernelsOfOneNameApart) {
    KnownKernel first = kernelAt({"top/k_1"});
    first.type = 3;
    const std::vector<KnownKernel> kernels{first, kernelAt({"top/k_2"})};
    start(kernels);
    EXPECT_EQ(run({"-f", "db", "-l", "missing.ll"}), success);
    expectKernels(kernels);
}

TEST_F(LogicLocations, OfAFileThatFailsTakeNothingFromTheNextOne) {
    start({kernelAt({"top/k_1"})});
    std::string bad;
    for (char group = 'a'; group < 'h'; ++group) { // all empty bits that one run may add
        bad += bitOf(std::string("top/k_1/") + group + "/n_r[16777215]");
    }
    directory.write("bad.ll", bad + "X\n");
    directory.write("good.ll", bitOf("top/k_1/z/n_r[31]"));
    EXPECT_EQ(run({"-f", "db", "-l", "bad.ll", "-l", "good.ll"}), success);
    std::vector<KnownPlace> places(32);
    places.back() = place;
    expectKernels({kernelAt({"top/k_1"}, {{"/top/k_1/z/n_r", places}})});
}

// From file to database

TEST_F(LogicLocations, BecomeRegistersOfTheKernelDataAndOfTheJson) {
    start({kernelAt({"/top/k_1"})});
    add("; logic locations\n"
        "Revision 3\n"
        "Bit 1000 0x00001a00 64 TILE_X1Y2 0 Latch=Q Net=top/k_1/inst/n_r[3]\n"
        "Bit 1001 0x00001a01 17 TILE_X1Y2 0 Latch=Q Net=top/k_1/n_r\n");
    const std::string json = bytes(
        R"({  "Kernels" : [ { "Name" : "scale_rows", "Instance Paths" : [ "/top/k_1/inst" ], )"
        R"("Type" : "HLS", "Arguments" : [ ], "Variables" : [ [ "n", "n_r", "int", 32]], )"
        R"("Hardware Variables" : [ { "RTLName" : "/top/k_1/inst/n_r", )"
        R"("Logic Locations" : [ [ 0, 0], [ 0, 0], [ 0, 0], [ 6656, 64]] } , )"
        R"({ "RTLName" : "/top/k_1/n_r", "Logic Locations" : [ [ 6657, 17]] } ], )"
        R"("Breakable Conditions" : [] } ] })"
        "\0");
    const std::string kernelData =
        u32(1) + text("scale_rows") + u32(1) + text("/top/k_1") + u32(4) + u32(0) +
        // variables: their count, three names and no locations
        u32(1) + text("n") + text("n_r") + text("int") + u32(0) +
        // registers
        u32(2) + text("/top/k_1/inst/n_r") + u32(4) + u32(0) + u32(0) + u32(0) + u32(0) + u32(0) +
        u32(0) + u32(6656) + u32(64) + text("/top/k_1/n_r") + u32(1) + u32(6657) + u32(17) +
        // conditions and block RAMs
        u32(0) + u32(0);
    EXPECT_EQ(directory.read("db"),
              DatabaseBuilder().section(3, json).section(2, kernelData).bytes());
    EXPECT_EQ(run({"-f", "db", "-j", "out.json"}), success);
    EXPECT_EQ(directory.read("out.json"), json);
}

struct OfAWholeBuild : LogicLocations {
    OfAWholeBuild() {
        directory.write("system.hier", "scale_rows\ntype: hls\ninstance path: top/k_1\n");
        directory.write("kernel.xml",
                        "<project><platform><device><core><kernel name=\"scale_rows\">"
                        "<arg name=\"input_r\" type=\"double*\"/>"
                        "</kernel></core></device></platform></project>");
        directory.write("scale_rows.hls", "RTL 1 s1 (run == 1'b1)\nlocal sum\nat: file.cpp:3\n"
                                          "end sum_reg[1:0] 2\n");
        directory.write("scale_rows_auxiliary.xml",
                        "<vd:acceleratorMap vd:functionName=\"scale_rows\" >\n"
                        "<vd:arg vd:originalName=\"gain\" vd:busTypeRef=\"b\" />\n");
        directory.write("top.ll", bitOf("top/k_1/U0/input_r", "0x10 1") +
                                      bitOf("top/k_1/U0/input", "0x20 2") +
                                      bitOf("top/k_1/U0/sum_reg[1]", "0x30 3") +
                                      bitOf("top/k_1/U0/gain", "0x40 4"));
    }

    std::string expected =
        knownDatabase({{.name = "scale_rows",
                        .type = 4,
                        .instancePaths = {"top/k_1"},
                        .arguments = {{"input", "input_r", "double*", 64}, {"gain", "gain", "int"}},
                        .variables = {{"sum", "sum_reg", "int"}},
                        .registers = {{"/top/k_1/U0/input_r", {{16, 1}}},
                                      {"/top/k_1/U0/sum_reg", {{0, 0}, {48, 3}}},
                                      {"/top/k_1/U0/gain", {{64, 4}}}},
                        .conditions = {{0, "== 1'b1 $i/kc_start"},
                                       {1, "== 1'b1 $i/kc_done"},
                                       {2, "== 1'b1 $i/run", 3, "file.cpp"}},
                        .pathSuffix = "/U0"}});
};

TEST_F(OfAWholeBuild, AreFoundForWhatAllTheOtherFilesOfTheRunNamed) {
    EXPECT_EQ(run({"-f", "db", "-h", "system.hier", "-k", "kernel.xml", "-s", "scale_rows.hls",
                   "-x", "scale_rows_auxiliary.xml", "-l", "top.ll"}),
              success);
    EXPECT_EQ(directory.read("db"), expected);
}

TEST_F(OfAWholeBuild, AreReadAfterTheOtherFilesWhereverTheyStandOnTheCommandLine) {
    EXPECT_EQ(run({"-l", "top.ll", "-x", "scale_rows_auxiliary.xml", "-s", "scale_rows.hls", "-k",
                   "kernel.xml", "-h", "system.hier", "-f", "db"}),
              success);
    EXPECT_EQ(directory.read("db"), expected);
}

TEST_F(LogicLocations, AloneMakeNoKernel) {
    add(bitOf("top/k_1/n_r"));
    expectKernels({});
}

TEST_F(LogicLocations, AreNotFoundForKernelsThatALaterRunNames) {
    directory.write("top.ll", bitOf("top/k_1/n_r"));
    directory.write("system.hier", "scale_rows type: hls instance path: top/k_1\n");
    EXPECT_EQ(run({"-f", "db", "-l", "top.ll"}), success);
    EXPECT_EQ(run({"-f", "db", "-h", "system.hier"}), success);
    EXPECT_EQ(directory.read("db"),
              knownDatabase({{.name = "scale_rows", .type = 4, .instancePaths = {"top/k_1"}}}));
}

// Nets and bits

TEST_F(LogicLocations, KeepTheLaterLineForABit) {
    expectRegisters(bitOf("top/k_1/n_r[1]", "0x1 1") + bitOf("top/k_1/n_r[0]", "0x2 2") +
                        bitOf("top/k_1/n_r[1]", "0x3 3"),
                    {{"/top/k_1/n_r", {{2, 2}, {3, 3}}}});
}

TEST_F(LogicLocations, KeepTheLow32BitsOfAddresses) {
    expectRegisters(bitOf("top/k_1/n_r", "0xABCDEF0112345678 4294967295"),
                    {{"/top/k_1/n_r", {{0x12345678, 4294967295}}}});
}

TEST_F(LogicLocations, SkipBitsThatNoRegisterHas) {
    expectRegisters(bitOf("top/k_1/a/n_r[16777216]") + bitOf("top/k_1/n_r") +
                        bitOf("top/k_1/n_r[4294967295]") + bitOf("top/k_1/n_r[-1]") +
                        bitOf("top/k_1/n_r[4294967296]") + bitOf("top/k_1/n_r[1]"),
                    {{"/top/k_1/n_r", {place, place}}});
}

TEST_F(LogicLocations, AreWrittenWithoutEscapes) {
    expectRegisters(bitOf(R"(top/k_1/"a"\b/n_r)"), {{R"(/top/k_1/"a"\b/n_r)", {place}}});
}

TEST_F(LogicLocations, KeepBracketsThatAreNoIndex) {
    KnownKernel kernel = kernelAt({"top"});
    kernel.variables = {{"a", "a[2]_x", "int"}, {"b", "n]", "int"}, {"c", "", "int"}};
    start({kernel});
    add(bitOf("top/a[2]_x") + bitOf("top/n]") + bitOf("top/") + bitOf("") + bitOf("top/n[]]"));
    kernel.registers = {{"/top/a[2]_x", {place}}, {"/top/n]", {place}}, {"/top/", {place}}};
    expectKernels({kernel});
}

TEST_F(LogicLocations, OfANetThatSeveralKernelsOwnAreGivenToEach) {
    start({kernelAt({"top/k_1"}, {}, "a"), kernelAt({"top/k_10"}, {}, "b"),
           kernelAt({"top/k_2"}, {}, "c"), kernelAt({""}, {}, "d")});
    add(bitOf("top/k_10/n_r") + bitOf("top/k_1/n_r"));
    const KnownRegister inTen{"/top/k_10/n_r", {place}};
    const KnownRegister inOne{"/top/k_1/n_r", {place}};
    expectKernels({kernelAt({"top/k_1"}, {inTen, inOne}, "a"), kernelAt({"top/k_10"}, {inTen}, "b"),
                   kernelAt({"top/k_2"}, {}, "c"), kernelAt({""}, {inTen, inOne}, "d")});
}

TEST_F(LogicLocations, OfSeveralInstancesAreRegistersOfTheirOwn) {
    start({kernelAt({"top/k_1", "top/k_2"})});
    add(bitOf("top/k_2/n_r[1]") + bitOf("top/k_1/n_r") + bitOf("top/k_2/n_r"));
    expectKernels({kernelAt({"top/k_1", "top/k_2"},
                            {{"/top/k_2/n_r", {place, place}}, {"/top/k_1/n_r", {place}}})});
}

TEST_F(LogicLocations, OfANetThatMatchesSeveralTimesAreOneRegister) {
    KnownKernel kernel = kernelAt({"top", "top/k_1"});
    kernel.arguments = {{"a", "n_r", "char", 8}, {"b", "n_r", "int"}};
    start({kernel});
    add(bitOf("top/k_1/n_r"));
    kernel.registers = {{"/top/k_1/n_r", {place}}};
    expectKernels({kernel});
}

TEST_F(LogicLocations, OfLinesWithoutAUsableNetChangeNothing) {
    expectRegisters("Bit 1 0x1 1 TILE 0 Ram=B:BIT0\n"
                    "Bit 1 0x1 1 TILE 0 Net=\n"
                    "Bit 1 0x1 1 TILE 0 xNet=top/k_1/n_r\n"
                    "Bit 1 0x 1 TILE 0 Net=top/k_1/n_r\n"
                    "Bit 1 0x1 1 TILE Net=top/k_1/n_r\n"
                    "Bit 1 0x1 1 TILE 0 Net=top/k_2/n_r\n"
                    "Bit 1 0x1 1 TILE 0 Net=top/k_1/n\n"
                    "Bit\n",
                    {});
}

// Lines

TEST_F(LogicLocations, AreReadFromLinesOfEveryEnding) {
    expectRegisters("; comment\r\nRevision 3\r\n\r\n\tBit\t1\t0x1a00\t64\tTILE\t0\tNet=top/k_1/"
                    "n_r[0]\t\r\n \t Bit 1 0x1a00 64 TILE 0 Net=top/k_1/n_r[1]",
                    {{"/top/k_1/n_r", {place, place}}});
}

TEST_F(LogicLocations, AreReadFromLinesUpToTheirZeroBytes) {
    expectRegisters(bytes("Bit 1 0x1a00 64 TILE 0 Net=top/k_1/n_r\0[5]\n; \0\n") +
                        bitOf("top/k_1/n_r[1]"),
                    {{"/top/k_1/n_r", {place, place}}});
}

TEST_F(LogicLocations, AreReadFromLinesOfUpTo2046Characters) {
    std::string line = "Bit 1 0x1a00 64 TILE 0 Net=top/k_1/n_r ";
    line.resize(2046, 'x');
    const std::vector<KnownRegister> both{{"/top/k_1/n_r", {place, place}}};
    expectRegisters(line + "\n" + bitOf("top/k_1/n_r[1]"), both);
    expectRegisters(bitOf("top/k_1/n_r[1]") + line, both);
    expectRegisters(line + "x\n" + bitOf("top/k_1/n_r[1]"), {});
    expectRegisters(bitOf("top/k_1/n_r[1]") + line + "x", {});
}

// Files that add nothing

TEST_F(LogicLocations, OfAFileWithAStrangeLineAreAllLeftOutInSilence) {
    for (const char* line : {"word\n", "bit 1 0x1 1 TILE 0 Net=top/k_1/n_r\n", "Bits"}) {
        expectRegisters(bitOf("top/k_1/n_r") + line, {});
        expectRegisters(line + bitOf("top/k_1/n_r"), {});
    }
    expectRegisters("\n" + bitOf("top/k_1/n_r"), {});
    expectRegisters(" ; comment\n" + bitOf("top/k_1/n_r"), {});
    expectRegisters(bitOf("top/k_1/n_r") + bytes("\0\n"), {});
}

TEST_F(LogicLocations, OfEmptyFilesAreNone) {
    for (const char* text : {"", "\n", " \t\r\n", "; comment\n", "Revision 3"}) {
        expectRegisters(text, {});
    }
}

TEST_F(LogicLocations, AreReadFromTheNextFileAfterOneThatCannotBeUsed) {
    start({kernelAt({"top/k_1"})});
    directory.write("bad.ll", bitOf("top/k_1/n_r") + "word\n");
    directory.write("empty.ll", "");
    directory.write("good.ll", bitOf("top/k_1/n_r[1]"));
    EXPECT_EQ(run({"-f", "db", "-l", "missing", "-l", ".", "-l", "bad.ll", "-l", "empty.ll", "-l",
                   "good.ll", "-l", "bad.ll"}),
              success);
    expectKernels({kernelAt({"top/k_1"}, {{"/top/k_1/n_r", {{0, 0}, place}}})});
}

TEST_F(LogicLocations, AreReadFromAPipe) {
    start({kernelAt({"top/k_1"})});
    const FifoWithContent pipe(directory.path("top.ll"), bitOf("top/k_1/n_r"));
    EXPECT_EQ(run({"-f", "db", "-l", "top.ll"}), success);
    expectKernels({kernelAt({"top/k_1"}, {{"/top/k_1/n_r", {place}}})});
}

// Several files and runs

TEST_F(LogicLocations, OfARegisterThatIsThereAlreadyStayAsTheyAre) {
    start({kernelAt({"top/k_1"}, {{"/top/k_1/n_r", {{1, 1}}}})});
    add(bitOf("top/k_1/n_r[0]") + bitOf("top/k_1/n_r[1]") + bitOf("top/k_1/other/n_r"));
    expectKernels(
        {kernelAt({"top/k_1"}, {{"/top/k_1/n_r", {{1, 1}}}, {"/top/k_1/other/n_r", {place}}})});
}

TEST_F(LogicLocations, OfARegisterInASecondFileOfTheRunAreDropped) {
    start({kernelAt({"top/k_1"})});
    directory.write("a.ll", bitOf("top/k_1/n_r[0]", "0x1 1"));
    directory.write("b.ll", bitOf("top/k_1/n_r[1]", "0x2 2") + bitOf("top/k_1/b/n_r", "0x3 3"));
    EXPECT_EQ(run({"-f", "db", "-l", "a.ll", "-l", "b.ll"}), success);
    expectKernels(
        {kernelAt({"top/k_1"}, {{"/top/k_1/n_r", {{1, 1}}}, {"/top/k_1/b/n_r", {{3, 3}}}})});
    start({kernelAt({"top/k_1"})});
    EXPECT_EQ(run({"-f", "db", "-l", "b.ll", "-l", "a.ll"}), success);
    expectKernels({kernelAt({"top/k_1"},
                            {{"/top/k_1/n_r", {{0, 0}, {2, 2}}}, {"/top/k_1/b/n_r", {{3, 3}}}})});
}

TEST_F(LogicLocations, ReadAgainAddNothing) {
    start({kernelAt({"top/k_1"})});
    add(bitOf("top/k_1/n_r[0]") + bitOf("top/k_1/n_r[1]"));
    const std::string once = directory.read("db");
    EXPECT_EQ(run({"-f", "db", "-l", "top.ll", "-l", "top.ll"}), success);
    EXPECT_EQ(directory.read("db"), once);
}

TEST_F(LogicLocations, StayWhenTheDatabaseIsReadAndWrittenAgain) {
    start({kernelAt({"top/k_1"})});
    add(bitOf("top/k_1/n_r[2]"));
    const std::string once = directory.read("db");
    EXPECT_EQ(run({"-f", "db", "-l", "missing"}), success);
    EXPECT_EQ(directory.read("db"), once);
}

TEST_F(LogicLocations, OfASecondKernelOfTheSameNameReachTheFirst) {
    start({kernelAt({"top/a"}), kernelAt({"top/b"})});
    add(bitOf("top/b/n_r") + bitOf("top/a/n_r"));
    expectKernels({kernelAt({"top/a", "top/b"}, {{"/top/a/n_r", {place}}, {"/top/b/n_r", {place}}}),
                   kernelAt({"top/b"})});
}

} // namespace

} // namespace consolidator::test
