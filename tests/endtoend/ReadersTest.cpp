// From kernel descriptions, auxiliary XML, HLS metadata and RAM reports to the bytes of the
// database and its JSON text.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult success{};
const CommandResult notParsed{0, "", "Could not parse kernel file\n"};

/// A kernel.xml with this content where kernels stand.
std::string kernelXml(const std::string& kernels) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<project name=\"demo\">\n"
           "  <platform name=\"board\"><device name=\"DIE0\"><core name=\"accelerator\">\n" +
           kernels + "\n  </core></device></platform>\n</project>\n";
}

/// The lines of an auxiliary XML for a kernel with one argument.
std::string auxiliaryXml(const std::string& kernel, const std::string& argument) {
    return "<vd:acceleratorMap vd:functionName=\"" + kernel + "\" >\n  <vd:arg vd:originalName=\"" +
           argument + "\" vd:busTypeRef=\"bus\" />\n";
}

/// The lines of an HLS file for one condition at line 12 and one variable.
std::string hlsMetadata(const std::string& condition) {
    return "RTL 1 state_1 " + condition + "\nlocal sum\nat: scale.cpp:12\nend sum_reg[7:0] 8\n";
}

// The conditions of a kernel description as it brings them, and as they are translated: with their
// operands in the other order. Every further translation turns them round again.
const KnownCondition freshStart{0, "== $i/kc_start 1'b1"};
const KnownCondition freshStop{1, "== $i/kc_done 1'b1"};
const KnownCondition turnedStart{0, "== 1'b1 $i/kc_start"};
const KnownCondition turnedStop{1, "== 1'b1 $i/kc_done"};

/// The condition of a line of that source.
KnownCondition sourceLine(std::uint32_t line, const std::string& text) {
    return {2, text, line, "scale.cpp"};
}

/// What hlsMetadata() makes, with these conditions in its place.
KnownKernel scaleWith(const std::vector<std::string>& conditions) {
    KnownKernel kernel{.name = "scale", .variables = {{"sum", "sum_reg", "int"}}};
    for (const std::string& text : conditions) {
        kernel.conditions.push_back(sourceLine(12, text));
    }
    return kernel;
}

struct Readers : testing::Test {
    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments);
    }

    /// Adds one input of that kind to the database "db".
    void add(const std::string& option, const std::string& name, const std::string& text) const {
        directory.write(name, text);
        EXPECT_EQ(run({"-f", "db", option, name}), success);
    }

    /// That "db" holds these bytes, and a dump these of them.
    void expectDatabase(const std::string& json, const std::vector<std::string>& records) const {
        EXPECT_EQ(directory.read("db"),
                  DatabaseBuilder().section(3, json).section(2, list(records)).bytes());
        EXPECT_EQ(run({"-f", "db", "-j", "out.json"}), success);
        EXPECT_EQ(directory.read("out.json"), json);
    }

    TemporaryDirectory directory;
};

// Kernel descriptions

const std::vector<std::string> startAndStop = {condition(0, "== 1'b1 $i/kc_start"),
                                               condition(1, "== 1'b1 $i/kc_done")};

TEST_F(Readers, MakeADatabaseOfAKernelDescription) {
    add("-k", "kernel.xml", kernelXml(R"(
        <kernel name="scale_rows" language="c" hwControlProtocol="none">
          <port name="CONTROL" mode="slave" range="0x1000"/>
          <arg name="input_r" addressQualifier="1" id="0" type="int*"/>
          <arg name="rows" id="1" type="unsigned char"/>
          <arg name="rows" id="2" type="int"/>
        </kernel>
        <kernel name="checksum"><arg name="data_r" type="float"/><arg/></kernel>)"));
    const std::string json =
        bytes(R"({  "Kernels" : [ )"
              R"({ "Name" : "scale_rows", "Instance Paths" : [  ], "Type" : "Unknown", )"
              R"("Arguments" : [ [ "input", "input_r", "int*", 64], )"
              R"([ "rows", "rows", "unsigned char", 8]], "Variables" : [ ], )"
              R"("Breakable Conditions" : [{ "Start":true, "Cond":"== 1'b1 $i/kc_start"}, )"
              R"({ "Stop":true, "Cond":"== 1'b1 $i/kc_done"}] }, )"
              R"({ "Name" : "checksum", "Instance Paths" : [  ], "Type" : "Unknown", )"
              R"("Arguments" : [ [ "input", "input_r", "int*", 64], )"
              R"([ "rows", "rows", "unsigned char", 8], [ "data_r", "data_r", "float", 32], )"
              R"([ "", "", "", 32]], "Variables" : [ ], )"
              R"("Breakable Conditions" : [{ "Start":true, "Cond":"== 1'b1 $i/kc_start"}, )"
              R"({ "Stop":true, "Cond":"== 1'b1 $i/kc_done"}] } ] })"
              "\0");
    const std::vector<std::string> arguments = {
        variable("input", "input_r", "int*"), variable("rows", "rows", "unsigned char"),
        variable("data_r", "data_r", "float"), variable("", "", "")};
    expectDatabase(
        json, {record({.name = "scale_rows",
                       .arguments = {arguments[0], arguments[1]},
                       .conditions = startAndStop}),
               record({.name = "checksum", .arguments = arguments, .conditions = startAndStop})});
}

TEST_F(Readers, MakeNoKernelOfADescriptionWithoutKernels) {
    add("-k", "kernel.xml", kernelXml(""));
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

TEST_F(Readers, TellThatAKernelDescriptionIsNotParsed) {
    const std::string whole = kernelXml("<kernel name=\"k\"/>");
    directory.write("cut.xml", whole.substr(0, whole.find("</core>")));
    directory.write("empty.xml", "");
    directory.write("text.xml", "text\n");
    std::filesystem::create_directory(directory.path("folder"));
    for (const char* name : {"cut.xml", "empty.xml", "text.xml", "folder"}) {
        EXPECT_EQ(run({"-c", "-f", "db", "-k", name}), notParsed) << name;
        EXPECT_EQ(directory.read("db"), knownDatabase({})) << name;
    }
}

TEST_F(Readers, SayNothingAboutAMissingKernelDescription) {
    EXPECT_EQ(run({"-f", "db", "-k", "missing.xml"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

// Auxiliary XML

TEST_F(Readers, MakeADatabaseOfAnAuxiliaryXml) {
    add("-x", "k_auxiliary.xml",
        "<?xml version=\"1.0\"?>\n"
        "<vd:component>\n"
        "  <vd:acceleratorMap vd:functionName=\"checksum\" vd:componentRef=\"c\" >\n"
        "    <vd:arg vd:originalName=\"in_r\" vd:busTypeRef=\"acc_fifo\" />\n"
        "    <vd:arg vd:originalName=\"stream\" vd:busTypeRef=\"\"acc_fifo\" />\n"
        "    <vd:arg vd:originalName=\"n\"/>\n"
        "  </vd:acceleratorMap>\n"
        "</vd:component>\n");
    const std::string json =
        bytes(R"({  "Kernels" : [ { "Name" : "checksum", "Instance Paths" : [  ], )"
              R"("Type" : "Unknown", "Arguments" : [ [ "in", "in_r", "int", 32], )"
              R"([ "stream", "stream", "int*", 64], [ "n"/", "n"/", "", 32]], )"
              R"("Variables" : [ ], "Breakable Conditions" : [] } ] })"
              "\0");
    expectDatabase(json, {record({.name = "checksum",
                                  .arguments = {variable("in", "in_r", "int"),
                                                variable("stream", "stream", "int*"),
                                                variable("n\"/", "n\"/", "")}})});
}

TEST_F(Readers, MakeANamelessKernelOfAnEmptyAuxiliaryXml) {
    add("-x", "k_auxiliary.xml", "");
    EXPECT_EQ(directory.read("db"), knownDatabase({{""}}));
}

TEST_F(Readers, LeaveOutAnAuxiliaryXmlWithAnAttributeThatHasNoValue) {
    directory.write("bad.xml", auxiliaryXml("checksum", "n") + "<vd:arg vd:originalName=\n");
    EXPECT_EQ(run({"-f", "db", "-x", "bad.xml"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

TEST_F(Readers, LeaveOutAnAuxiliaryXmlWithALongLine) {
    directory.write("bad.xml", auxiliaryXml("checksum", "n") + std::string(1024, ' '));
    EXPECT_EQ(run({"-f", "db", "-x", "bad.xml"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

// HLS metadata

TEST_F(Readers, MakeADatabaseOfHlsMetadata) {
    add("-s", "scale_rows.hls",
        "Begin Function scale_rows\n"
        "RTL 1 state_1 (1'b1 == 1'b1)\n"
        "local row\n"
        "at: scale.cpp:12\n"
        "end row_reg[3:0] 4\n"
        "RTL 2 state_2 (fsm_state2 == 1'b1)\n"
        "local sum\n"
        "at: scale.cpp:14\n"
        "reg: sum_reg[7:0]\n"
        "end sum_reg[7:0] 8\n"
        "RTL 3 state_3 (fsm_state3 == 1'b1)\n"
        "local other\n"
        "at: other.cpp:14\n"
        "\n"
        "End Function scale_rows\n");
    const std::string json =
        bytes(R"({  "Kernels" : [ { "Name" : "scale_rows", "Instance Paths" : [  ], )"
              R"("Type" : "Unknown", "Arguments" : [ ], )"
              R"("Variables" : [ [ "row", "row_reg", "int", 32], [ "sum", "sum_reg", "int", 32]], )"
              R"("Breakable Conditions" : [{ "File":"scale.cpp", "Line":14, )"
              R"("Cond":"== 1'b1 $i/fsm_state2"}] } ] })"
              "\0");
    expectDatabase(json,
                   {record({.name = "scale_rows",
                            .variables = {variable("row", "row_reg", "int"),
                                          variable("sum", "sum_reg", "int")},
                            .conditions = {condition("== 1'b1 $i/fsm_state2", 14, "scale.cpp")}})});
}

TEST_F(Readers, LeaveOutHlsMetadataThatIsRefused) {
    for (const std::string& text :
         {hlsMetadata("(x)") + "text\n", "Begin Function f\n" + hlsMetadata("(x)"),
          hlsMetadata("(x)") + "End Function f\n", std::string("local v\n"),
          hlsMetadata("(x)") + std::string(1023, ' ')}) {
        directory.write("scale.hls", text);
        EXPECT_EQ(run({"-c", "-f", "db", "-s", "scale.hls"}), success) << text;
        EXPECT_EQ(directory.read("db"), knownDatabase({})) << text;
    }
}

TEST_F(Readers, TranslateAConditionWithABlankBehindItAsItIs) {
    // The blank of the line's end is the last character, and goes in place of the parenthesis.
    add("-s", "scale.hls",
        "RTL 1 s (x == 1'b1)\r\nlocal v\r\nat: scale.cpp:1\r\nend v_reg\r\n"
        "RTL 1 s (1'b1 == 1'b1)\r\nlocal w\r\nat: scale.cpp:2\r\nend w_reg\r\n");
    EXPECT_EQ(directory.read("db"),
              knownDatabase({{.name = "scale",
                              .variables = {{"v", "v_reg", "int"}, {"w", "w_reg", "int"}},
                              .conditions = {sourceLine(1, "== 1'b1) $i/x"),
                                             sourceLine(2, "== 1'b1) 1'b1")}}}));
}

// RAM reports

/// A report that names block RAMs of instance top/k_1 in both of its tables.
const std::string ramReport = "8. Block Ram / URAM Memory Power - Instantiated\n"
                              "3. Memory Utilization - Inferred\n"
                              "--------------------------------\n"
                              "+-----------------+----------+\n"
                              "| Memory Name     | Type     |\n"
                              "+-----------------+----------+\n"
                              "| top/k_1/ram_reg | RAMB_BIG |\n"
                              "4. Memory Performance - Inferred\n"
                              "6. Memory Utilization - Instantiated\n"
                              "| top/k_1/fifo    | RAMB_BIG |\n"
                              "7. Memory Utilization - Instantiated\n";

TEST_F(Readers, LeaveTheProjectAsItIsAfterARamReport) {
    directory.write("ram.rpt", ramReport);
    directory.write("system.hier", "scale_rows\ntype: hls\ninstance path: top/k_1\n");
    EXPECT_EQ(run({"-f", "db", "-h", "system.hier", "-r", "ram.rpt"}), success);
    const std::string json =
        bytes(R"({  "Kernels" : [ { "Name" : "scale_rows", )"
              R"("Instance Paths" : [ "top/k_1/inst" ], "Type" : "HLS", "Arguments" : [ ], )"
              R"("Variables" : [ ], "Breakable Conditions" : [] } ] })"
              "\0");
    expectDatabase(json, {record({.name = "scale_rows", .instancePaths = {"top/k_1"}, .type = 4})});
    EXPECT_EQ(run({"-f", "db", "-r", "ram.rpt", "-r", "ram.rpt"}), success);
    expectDatabase(json, {record({.name = "scale_rows", .instancePaths = {"top/k_1"}, .type = 4})});
}

TEST_F(Readers, KeepStoredBlockRamsAfterARamReport) {
    const std::string kernelData =
        list({record({.name = "k", .instancePaths = {"top/k_1"}, .brams = {"old", "old"}})});
    const std::string json =
        bytes(R"({  "Kernels" : [ { "Name" : "k", "Instance Paths" : [ "top/k_1/inst" ], )"
              R"("Type" : "Unknown", "Arguments" : [ ], "Variables" : [ ], )"
              R"("Breakable Conditions" : [], "BRAMs" : [ "old", "old"] } ] })"
              "\0");
    const std::string before = DatabaseBuilder().section(3, json).section(2, kernelData).bytes();
    directory.write("db", before);
    add("-r", "ram.rpt", ramReport);
    EXPECT_EQ(directory.read("db"), before);
}

TEST_F(Readers, MakeNoKernelOfARamReport) {
    add("-r", "ram.rpt", ramReport);
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
    add("-r", "ram.rpt", ramReport + std::string(5000, 'x') + "\n");
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

// Several inputs

TEST_F(Readers, PassOverKernelDescriptionsThatFailInTheMiddle) {
    directory.write("good.xml", kernelXml("<kernel name=\"a\"/>"));
    directory.write("bad.xml", kernelXml("<kernel name=\"lost\"/><kernel name=\"a\">"));
    directory.write("more.xml", kernelXml("<kernel name=\"b\"/>"));
    EXPECT_EQ(run({"-f", "db", "-k", "good.xml", "-k", "bad.xml", "-k", "more.xml"}), notParsed);
    EXPECT_EQ(directory.read("db"),
              knownDatabase({{.name = "a", .conditions = {turnedStart, turnedStop}},
                             {.name = "b", .conditions = {turnedStart, turnedStop}}}));
}

TEST_F(Readers, PassOverTextFilesThatFailInTheMiddle) {
    for (const char* name : {"good.hls", "more.hls"}) {
        directory.write(name, "");
    }
    directory.write("lost.hls", hlsMetadata("(x)") + "text\n");
    directory.write("good_aux.xml", auxiliaryXml("a", "n"));
    directory.write("lost_aux.xml", auxiliaryXml("a", "lost") + "<vd:arg vd:busTypeRef=\n");
    directory.write("more_aux.xml", auxiliaryXml("b", "m"));
    EXPECT_EQ(run({"-f", "db", "-s", "good.hls", "-s", "lost.hls", "-s", "more.hls", "-x",
                   "good_aux.xml", "-x", "lost_aux.xml", "-x", "more_aux.xml"}),
              success);
    EXPECT_EQ(directory.read("db"),
              knownDatabase({{.name = "good"},
                             {.name = "more"},
                             {.name = "a", .arguments = {{"n", "n", "int"}}},
                             {.name = "b", .arguments = {{"m", "m", "int"}}}}));
}

TEST_F(Readers, TellEachKernelDescriptionThatIsNotParsed) {
    directory.write("bad.xml", "<project>");
    EXPECT_EQ(run({"-f", "db", "-k", "bad.xml", "-k", "missing", "-k", "bad.xml"}),
              (CommandResult{0, "", notParsed.err + notParsed.err}));
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

TEST_F(Readers, PassOverDirectoriesInSilence) {
    directory.write("db", knownDatabase({{"k", 1}}));
    std::filesystem::create_directory(directory.path("folder"));
    EXPECT_EQ(run({"-f", "db", "-s", "folder", "-x", "folder", "-r", "folder"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"k", 1}}));
}

// The same input again

TEST_F(Readers, AddNothingWhenALaterRunReadsAnAuxiliaryXmlAgain) {
    const std::string expected =
        knownDatabase({{.name = "scale", .arguments = {{"n", "n", "int"}}}});
    for (int i = 0; i < 3; ++i) {
        add("-x", "aux.xml", auxiliaryXml("scale", "n"));
        EXPECT_EQ(directory.read("db"), expected) << i;
    }
}

TEST_F(Readers, AddStartAndStopOnceMoreInASecondRunAndNoMoreInAThird) {
    const auto expectConditions = [this](const std::vector<KnownCondition>& conditions) {
        add("-k", "kernel.xml", kernelXml("<kernel name=\"k\"><arg name=\"n\"/></kernel>"));
        EXPECT_EQ(directory.read("db"),
                  knownDatabase(
                      {{.name = "k", .arguments = {{"n", "n", ""}}, .conditions = conditions}}));
    };
    expectConditions({turnedStart, turnedStop});
    // Read back as they were turned, they differ from the fresh ones, which are added behind them.
    // Then all turn round.
    expectConditions({freshStart, freshStop, turnedStart, turnedStop});
    // Now both are there, and all that happens is that they turn round.
    expectConditions({turnedStart, turnedStop, freshStart, freshStop});
    expectConditions({freshStart, freshStop, turnedStart, turnedStop});
}

TEST_F(Readers, AddAnHlsConditionOnceMoreInEveryRun) {
    const auto expectConditions = [this](const std::vector<std::string>& conditions) {
        add("-s", "scale.hls", hlsMetadata("(fsm == 1'b1)"));
        EXPECT_EQ(directory.read("db"), knownDatabase({scaleWith(conditions)}));
    };
    // What is stored never has the form in which the file states it.
    const std::string prefix = "== 1'b1 $i/fsm";
    const std::string turned = "== $i/fsm 1'b1";
    expectConditions({prefix});
    expectConditions({turned, prefix});
    expectConditions({prefix, turned, prefix});
}

TEST_F(Readers, StoreTwiceAConditionOfOneNameThatASecondRunReads) {
    add("-s", "scale.hls", hlsMetadata("(fsm)"));
    add("-s", "scale.hls", hlsMetadata("(fsm)"));
    EXPECT_EQ(directory.read("db"), knownDatabase({scaleWith({"$i/fsm", "$i/fsm"})}));
}

TEST_F(Readers, DropAnAlwaysTrueConditionInEveryRun) {
    for (int i = 0; i < 3; ++i) {
        add("-s", "scale.hls", hlsMetadata("(1'b1 == 1'b1)"));
        EXPECT_EQ(directory.read("db"), knownDatabase({scaleWith({})})) << i;
    }
}

TEST_F(Readers, KeepConditionsAsTheyAreInADatabaseWhoseKernelsComeFirst) {
    directory.write("db", DatabaseBuilder().section(2, list({})).section(3, knownJson({})).bytes());
    // The kernels are written before their conditions are translated.
    const std::string expected = DatabaseBuilder()
                                     .section(2, knownKernelData({scaleWith({"(fsm == 1'b1)"})}))
                                     .section(3, knownJson({scaleWith({"== 1'b1 $i/fsm"})}))
                                     .bytes();
    for (int i = 0; i < 2; ++i) {
        add("-s", "scale.hls", hlsMetadata("(fsm == 1'b1)"));
        EXPECT_EQ(directory.read("db"), expected) << i;
    }
}

} // namespace

} // namespace consolidator::test
