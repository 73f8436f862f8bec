// What input files of all kinds tell about the same kernels comes together in one record for each.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult success{};

using Texts = std::vector<std::string>;

/// A kernel.xml with one kernel for each list: its name, and then its arguments, a port's name and
/// a type each.
std::string kernelXml(const std::vector<Texts>& kernels) {
    std::string result = "<project><platform><device><core>";
    for (const Texts& kernel : kernels) {
        result += "<kernel name=\"" + kernel[0] + "\">";
        for (std::size_t i = 1; i + 1 < kernel.size(); i += 2) {
            result += "<arg name=\"" + kernel[i] + "\" type=\"" + kernel[i + 1] + "\"/>";
        }
        result += "</kernel>";
    }
    return result + "</core></device></platform></project>";
}

/// An auxiliary XML: the kernel's name, and its arguments' port names.
std::string auxiliaryXml(const std::string& name, const Texts& arguments) {
    std::string result = "<vd:acceleratorMap vd:functionName=\"" + name + "\" >\n";
    for (const std::string& argument : arguments) {
        result += "<vd:arg vd:originalName=\"" + argument + "\" vd:busTypeRef=\"bus\" />\n";
    }
    return result;
}

/// An entry of an HLS file: a source line of "file.cpp", its condition and a variable.
std::string hlsEntry(const std::string& line, const std::string& condition,
                     const std::string& variable) {
    return "RTL 1 state " + condition + "\nlocal " + variable + "\nat: file.cpp:" + line +
           "\nend " + variable + "_reg[7:0] 8\n";
}

KnownVariable intNamed(const std::string& source, const std::string& hardware) {
    return {source, hardware, "int"};
}

/// The variable of an hlsEntry().
KnownVariable local(const std::string& name) {
    return intNamed(name, name + "_reg");
}

const KnownCondition startCondition{0, "== 1'b1 $i/kc_start"};
const KnownCondition stopCondition{1, "== 1'b1 $i/kc_done"};

KnownCondition sourceLine(std::uint32_t line, const std::string& text) {
    return {2, text, line, "file.cpp"};
}

struct Merging : testing::Test {
    CommandResult run(Texts arguments) const {
        arguments.insert(arguments.begin(), {"-f", "db"});
        return runConsolidator(directory.path("."), arguments);
    }

    /// That a run of these inputs ends well and in silence and leaves these kernels.
    void expectMerged(const Texts& arguments, const std::vector<KnownKernel>& kernels) const {
        EXPECT_EQ(run(arguments), success);
        expectKernels(kernels);
    }

    /// The same for a run that makes the database afresh.
    void expectMade(Texts arguments, const std::vector<KnownKernel>& kernels) const {
        arguments.insert(arguments.begin(), "-c");
        expectMerged(arguments, kernels);
    }

    void expectKernels(const std::vector<KnownKernel>& kernels) const {
        EXPECT_EQ(directory.read("db"), knownDatabase(kernels));
    }

    TemporaryDirectory directory;
};

// One kernel known to every kind

struct MergingOneKernel : Merging {
    MergingOneKernel() {
        directory.write("system.hier",
                        "scale_rows\ntype: ip\ninstance path: top/k_1\ninstance path: top/k_2\n");
        directory.write("kernel.xml",
                        kernelXml({{"scale_rows", "input_r", "float*", "rows", "char"}}));
        directory.write("scale_rows.hls", hlsEntry("7", "(a == 1'b1)", "sum") +
                                              hlsEntry("9", "(1'b1 == 1'b1)", "row"));
        directory.write("scale.aux.xml", auxiliaryXml("scale_rows", {"rows", "in_r", "input_r"}));
        directory.write("top.ll", "Bit 1 0x10 5 DIE0 0 Net=top/k_2/U0/sum_reg[1]\n"
                                  "Bit 1 0x20 6 DIE0 0 Net=top/k_1/U0/in_r\n");
        directory.write("ram.rpt", "8. Block Ram / URAM Memory Power - Instantiated\n"
                                   "3. Memory Utilization - Inferred\n"
                                   "| top/k_1/buffer | RAMB18 |\n");
    }

    std::vector<KnownKernel> expected{
        {.name = "scale_rows",
         .type = 2,
         .instancePaths = {"top/k_1", "top/k_2"},
         .arguments = {{"input", "input_r", "float*", 64},
                       {"rows", "rows", "char", 8},
                       intNamed("in", "in_r")},
         .variables = {local("sum"), local("row")},
         .registers = {{"/top/k_2/U0/sum_reg", {{0, 0}, {16, 5}}}, {"/top/k_1/U0/in_r", {{32, 6}}}},
         .conditions = {startCondition, stopCondition, sourceLine(7, "== 1'b1 $i/a")},
         .pathSuffix = "/U0"}};

    /// The inputs of each kind.
    const std::vector<Texts> kinds{{"-h", "system.hier"},    {"-k", "kernel.xml"},
                                   {"-s", "scale_rows.hls"}, {"-x", "scale.aux.xml"},
                                   {"-l", "top.ll"},         {"-r", "ram.rpt"}};
};

TEST_F(MergingOneKernel, MakesOneRecordOfAllKinds) {
    const std::string json = bytes(
        R"({  "Kernels" : [ { "Name" : "scale_rows", )"
        R"("Instance Paths" : [ "top/k_1/U0", "top/k_2/U0" ], "Type" : "RTL", )"
        R"("Arguments" : [ [ "input", "input_r", "float*", 64], [ "rows", "rows", "char", 8], )"
        R"([ "in", "in_r", "int", 32]], )"
        R"("Variables" : [ [ "sum", "sum_reg", "int", 32], [ "row", "row_reg", "int", 32]], )"
        R"("Hardware Variables" : [ { "RTLName" : "/top/k_2/U0/sum_reg", )"
        R"("Logic Locations" : [ [ 0, 0], [ 16, 5]] } , { "RTLName" : "/top/k_1/U0/in_r", )"
        R"("Logic Locations" : [ [ 32, 6]] } ], "Breakable Conditions" : [)"
        R"({ "Start":true, "Cond":"== 1'b1 $i/kc_start"}, )"
        R"({ "Stop":true, "Cond":"== 1'b1 $i/kc_done"}, )"
        R"({ "File":"file.cpp", "Line":7, "Cond":"== 1'b1 $i/a"}] } ] })"
        "\0");
    Texts arguments;
    for (const Texts& kind : kinds) {
        arguments.insert(arguments.end(), kind.begin(), kind.end());
    }
    expectMerged(arguments, expected);
    EXPECT_EQ(run({"-j", "out.json"}), success);
    EXPECT_EQ(directory.read("out.json"), json);
}

TEST_F(MergingOneKernel, TakesTheKindsInItsOwnOrder) {
    for (std::size_t first = 0; first < kinds.size(); ++first) {
        Texts backwards;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            const Texts& kind = kinds[(first + kinds.size() - i) % kinds.size()];
            backwards.insert(backwards.end(), kind.begin(), kind.end());
        }
        expectMade(backwards, expected);
    }
}

TEST_F(MergingOneKernel, MakesTheSameOfTheSameInputsAfresh) {
    const Texts arguments{"-h", "system.hier",   "-k", "kernel.xml", "-s", "scale_rows.hls",
                          "-x", "scale.aux.xml", "-l", "top.ll"};
    expectMade(arguments, expected);
    expectMade(arguments, expected);
}

TEST_F(MergingOneKernel, AddsConditionsAgainThatTheDatabaseHoldsTranslated) {
    const Texts arguments{"-h", "system.hier",   "-k", "kernel.xml", "-s", "scale_rows.hls",
                          "-x", "scale.aux.xml", "-l", "top.ll"};
    expectMerged(arguments, expected);
    // What the database holds is turned round, what is new comes behind it.
    expected[0].conditions = {{0, "== $i/kc_start 1'b1"},
                              {1, "== $i/kc_done 1'b1"},
                              sourceLine(7, "== $i/a 1'b1"),
                              startCondition,
                              stopCondition,
                              sourceLine(7, "== 1'b1 $i/a")};
    expectMerged(arguments, expected);
    // Now the start and stop conditions are known; that of the source line is not.
    expected[0].conditions = {startCondition,
                              stopCondition,
                              sourceLine(7, "== 1'b1 $i/a"),
                              {0, "== $i/kc_start 1'b1"},
                              {1, "== $i/kc_done 1'b1"},
                              sourceLine(7, "== $i/a 1'b1"),
                              sourceLine(7, "== 1'b1 $i/a")};
    expectMerged(arguments, expected);
}

TEST_F(MergingOneKernel, MakesTheSameOfOneKindARunUpToTheConditions) {
    for (const Texts& kind : kinds) {
        EXPECT_EQ(run(kind), success);
    }
    // Five runs have turned the start and stop conditions round, four that of the source line.
    expected[0].conditions = {startCondition, stopCondition, sourceLine(7, "== $i/a 1'b1")};
    expectKernels(expected);
}

// Names

TEST_F(Merging, KeepsANameApartThatOnlyOneFileKnows) {
    directory.write("system.hier", "from_hier type: c\n");
    directory.write("kernel.xml", kernelXml({{"from_xml", "n", "int"}}));
    directory.write("from_hls.hls", hlsEntry("3", "x", "v"));
    directory.write("a.xml", auxiliaryXml("from_aux", {"m"}));
    expectMerged(
        {"-x", "a.xml", "-s", "from_hls.hls", "-k", "kernel.xml", "-h", "system.hier"},
        {{.name = "from_hier", .type = 1},
         {.name = "from_xml",
          .arguments = {intNamed("n", "n")},
          .conditions = {startCondition, stopCondition}},
         {.name = "from_hls", .variables = {local("v")}, .conditions = {sourceLine(3, "$i/x")}},
         {.name = "from_aux", .arguments = {intNamed("m", "m")}}});
}

TEST_F(Merging, ComparesNamesAsTheyAre) {
    directory.write("system.hier", "scale type: c\nscale_ type: c\nSCALE type: c\n");
    directory.write("a.xml", auxiliaryXml("Scale", {"a"}));
    directory.write("scale_rows.hls", "");
    directory.write("b.xml", auxiliaryXml("scale_", {"b"}));
    expectMerged({"-h", "system.hier", "-x", "a.xml", "-s", "scale_rows.hls", "-x", "b.xml"},
                 {{.name = "scale", .type = 1},
                  {.name = "scale_", .type = 1, .arguments = {intNamed("b", "b")}},
                  {.name = "SCALE", .type = 1},
                  {.name = "scale_rows"},
                  {.name = "Scale", .arguments = {intNamed("a", "a")}}});
}

TEST_F(Merging, NamesTheKernelOfAnHlsFileAfterTheFile) {
    directory.write("system.hier", "krnl type: hls\n");
    std::filesystem::create_directory(directory.path("dir.d"));
    for (const auto& [path, name] : std::vector<std::pair<std::string, std::string>>{
             {"krnl.hls", "krnl"},
             {"krnl.xyz", "krnl"},
             {"krnl1234", "krnl"},
             {"dir.d/krnl.hls", "krnl"},
             {"./dir.d/../krnl.hls", "krnl"},
             {"other.json", "other."},
             {"kr.hls", "kr"},
             {".hls", ""},
             {"abc", "abc"},
             {"dir.d/ab", "ab"},
         }) {
        directory.write(path, hlsEntry("3", "x", "v"));
        std::vector<KnownKernel> kernels{{.name = "krnl", .type = 4}};
        if (name != "krnl") {
            kernels.push_back({.name = name});
        }
        kernels.back().variables = {local("v")};
        kernels.back().conditions = {sourceLine(3, "$i/x")};
        SCOPED_TRACE(path);
        expectMade({"-h", "system.hier", "-s", path}, kernels);
    }
}

TEST_F(Merging, MakesOneRecordOfAllKernelsWithoutAName) {
    directory.write("system.hier", "\n");
    directory.write("kernel.xml", kernelXml({{"", "n", "int"}}));
    directory.write(".hls", hlsEntry("3", "x", "v"));
    directory.write("a.xml", "<vd:arg vd:originalName=\"m\" />\n");
    directory.write("b.xml", "");
    expectMerged(
        {"-h", "system.hier", "-k", "kernel.xml", "-s", ".hls", "-x", "a.xml", "-x", "b.xml"},
        {{.name = "",
          .arguments = {intNamed("n", "n"), {"m", "m", ""}},
          .variables = {local("v")},
          .conditions = {startCondition, stopCondition, sourceLine(3, "$i/x")}}});
}

// Order

TEST_F(Merging, KeepsTheFilesOfAKindInTheirOrder) {
    directory.write("a.xml", auxiliaryXml("a", {"n_r"}));
    directory.write("b.xml", auxiliaryXml("b", {"n_r"}));
    const KnownKernel a{.name = "a", .arguments = {intNamed("n_r", "n_r")}};
    const KnownKernel b{.name = "b", .arguments = {intNamed("n_r", "n_r")}};
    expectMade({"-x", "a.xml", "-x", "b.xml"}, {a, b});
    expectMade({"-x", "b.xml", "-x", "a.xml"}, {b, a});
}

TEST_F(Merging, OrdersKernelsByTheirFirstAppearance) {
    directory.write("db", knownDatabase({{.name = "z"}, {.name = "m"}}));
    directory.write("a.hier", "k type: c\nm type: c\n");
    directory.write("b.hier", "b type: c\nk type: hls\nz type: ip\n");
    directory.write("kernel.xml", kernelXml({{"x"}, {"b"}, {"a"}}));
    directory.write("a.xml", auxiliaryXml("y", {}));
    directory.write("b.xml", auxiliaryXml("x", {"n"}));
    expectMerged({"-x", "a.xml", "-x", "b.xml", "-k", "kernel.xml", "-h", "a.hier", "-h", "b.hier"},
                 {{.name = "z", .type = 2},
                  {.name = "m", .type = 1},
                  {.name = "k", .type = 1},
                  {.name = "b", .type = 1, .conditions = {startCondition, stopCondition}},
                  {.name = "x",
                   .arguments = {intNamed("n", "n")},
                   .conditions = {startCondition, stopCondition}},
                  {.name = "a", .conditions = {startCondition, stopCondition}},
                  {.name = "y"}});
}

// Types

TEST_F(Merging, GivesAKernelItsTypeWhenALaterRunNamesIt) {
    directory.write("a.xml", auxiliaryXml("k", {"n"}));
    directory.write("system.hier", "k type: hls instance path: top/k\n");
    expectMerged({"-x", "a.xml"}, {{.name = "k", .arguments = {intNamed("n", "n")}}});
    expectMerged(
        {"-h", "system.hier"},
        {{.name = "k", .type = 4, .instancePaths = {"top/k"}, .arguments = {intNamed("n", "n")}}});
}

TEST_F(Merging, KeepsATypeThatIsKnown) {
    directory.write("unknown.hier", "k type: other\n");
    directory.write("rtl.hier", "k type: ip\n");
    directory.write("hls.hier", "k type: hls\n");
    directory.write("a.xml", auxiliaryXml("k", {}));
    expectMade({"-h", "unknown.hier", "-h", "hls.hier", "-h", "rtl.hier"},
               {{.name = "k", .type = 4}});
    expectMade({"-h", "rtl.hier", "-h", "hls.hier", "-h", "unknown.hier"},
               {{.name = "k", .type = 2}});
    expectMerged({"-h", "hls.hier", "-x", "a.xml"}, {{.name = "k", .type = 2}});
}

TEST_F(Merging, LeavesATypeUnknownThatNoFileNames) {
    directory.write("kernel.xml", kernelXml({{"k"}}));
    directory.write("k.hls", "");
    directory.write("a.xml", auxiliaryXml("k", {}));
    expectMerged({"-k", "kernel.xml", "-s", "k.hls", "-x", "a.xml"},
                 {{.name = "k", .type = 3, .conditions = {startCondition, stopCondition}}});
}

// Arguments, variables, conditions and paths

TEST_F(Merging, LetsTheFirstDescriptionOfAnArgumentWin) {
    directory.write("kernel.xml", kernelXml({{"k", "in_r", "double", "n", "char"}}));
    directory.write("a.xml", auxiliaryXml("k", {"n", "in", "in_r", "m"}));
    expectMerged(
        {"-x", "a.xml", "-k", "kernel.xml"},
        {{.name = "k",
          .arguments = {{"in", "in_r", "double"}, {"n", "n", "char", 8}, intNamed("m", "m")},
          .conditions = {startCondition, stopCondition},
          .pathSuffix = "/U0"}});
}

TEST_F(Merging, LetsTheDescriptionOfAnEarlierRunWin) {
    directory.write("kernel.xml", kernelXml({{"k", "in_r", "double", "m", "char"}}));
    directory.write("a.xml", auxiliaryXml("k", {"n", "in"}));
    EXPECT_EQ(run({"-x", "a.xml"}), success);
    expectMerged({"-k", "kernel.xml"},
                 {{.name = "k",
                   .arguments = {intNamed("n", "n"), intNamed("in", "in"), {"m", "m", "char", 8}},
                   .conditions = {startCondition, stopCondition}}});
}

TEST_F(Merging, AddsNothingForAKernelXmlThatIsGivenTwice) {
    directory.write("kernel.xml", kernelXml({{"k", "in_r", "int*"}, {"m", "n", "char"}}));
    const std::vector<KnownKernel> expected{
        {.name = "k",
         .arguments = {{"in", "in_r", "int*", 64}},
         .conditions = {startCondition, stopCondition}},
        {.name = "m",
         .arguments = {{"in", "in_r", "int*", 64}, {"n", "n", "char", 8}},
         .conditions = {startCondition, stopCondition}}};
    expectMade({"-k", "kernel.xml"}, expected);
    expectMade({"-k", "kernel.xml", "-k", "kernel.xml"}, expected);
}

TEST_F(Merging, AddsNothingForOtherFilesThatAreGivenTwice) {
    directory.write("system.hier", "k type: c instance path: top/k\n");
    directory.write("k.hls", hlsEntry("3", "(x == 1)", "v"));
    directory.write("a.xml", auxiliaryXml("k", {"n"}));
    expectMerged({"-h", "system.hier", "-s", "k.hls", "-x", "a.xml", "-h", "system.hier", "-s",
                  "k.hls", "-x", "a.xml"},
                 {{.name = "k",
                   .type = 1,
                   .instancePaths = {"top/k"},
                   .arguments = {intNamed("n", "n")},
                   .variables = {local("v")},
                   .conditions = {sourceLine(3, "== 1 $i/x")}}});
}

TEST_F(Merging, AddsTheVariablesAndConditionsOfSeveralHlsFiles) {
    for (const char* folder : {"a", "b"}) {
        std::filesystem::create_directory(directory.path(folder));
    }
    directory.write("a/k.hls", hlsEntry("3", "(x == 1)", "v") + hlsEntry("4", "(y == 1)", "w"));
    directory.write("b/k.hls", "RTL 1 state (x == 1)\nlocal v\nat: file.cpp:3\nend other[1:0] 2\n" +
                                   hlsEntry("4", "(z == 1)", "u"));
    expectMerged({"-s", "a/k.hls", "-s", "b/k.hls"},
                 {{.name = "k",
                   .variables = {local("v"), local("w"), local("u")},
                   .conditions = {sourceLine(3, "== 1 $i/x"), sourceLine(4, "== 1 $i/y"),
                                  sourceLine(4, "== 1 $i/z")}}});
}

TEST_F(Merging, KeepsArgumentsAndVariablesOfOneNameApart) {
    directory.write("k.hls", hlsEntry("3", "x", "n"));
    directory.write("a.xml", auxiliaryXml("k", {"n"}));
    expectMerged({"-s", "k.hls", "-x", "a.xml"}, {{.name = "k",
                                                   .arguments = {intNamed("n", "n")},
                                                   .variables = {local("n")},
                                                   .conditions = {sourceLine(3, "$i/x")}}});
}

TEST_F(Merging, AddsTheInstancePathsOfSeveralFiles) {
    directory.write("a.hier", "k type: c instance path: top/a instance path: top/b\n");
    directory.write("b.hier", "k instance path: top/b instance path: top/c type: c\n");
    expectMerged({"-h", "a.hier", "-h", "b.hier"},
                 {{.name = "k", .type = 1, .instancePaths = {"top/a", "top/b", "top/c"}}});
}

TEST_F(Merging, KeepsWhatTheDatabaseHoldsOfAKernel) {
    const std::string places = u32(1) + location(5, 6);
    const auto kernelOf = [&](std::uint32_t type, const Texts& arguments) {
        return list({record({.name = "k",
                             .instancePaths = {"top/k"},
                             .type = type,
                             .arguments = arguments,
                             .hardwareVariables = {hardwareVariable("/r", {})},
                             .brams = {"buffer", "buffer"}})});
    };
    const std::string located = variable("n", "n_r", "char", {places});
    const std::string json =
        R"({  "Kernels" : [ )"
        R"({ "Name" : "k", "Instance Paths" : [ "top/k/inst" ], "Type" : "C", )"
        R"("Arguments" : [ [ "n", "n_r", "char", 8, )"
        R"([ { "Instance" : 0, "Bits" : [{ 5, 6}]}]], )"
        R"([ "m", "m", "int", 32]], "Variables" : [ ], )"
        R"("Hardware Variables" : [ )"
        R"({ "RTLName" : "/r", "Logic Locations" : [ ] } ], )"
        R"("Breakable Conditions" : [], "BRAMs" : [ "buffer", "buffer"] } ] })";
    directory.write(
        "db", DatabaseBuilder().section(3, "old text").section(2, kernelOf(3, {located})).bytes());
    directory.write("system.hier", "k type: c\n");
    directory.write("a.xml", auxiliaryXml("k", {"n", "m"}));
    directory.write("top.ll", "; nothing\n");
    EXPECT_EQ(run({"-h", "system.hier", "-x", "a.xml", "-l", "top.ll"}), success);
    EXPECT_EQ(directory.read("db"),
              DatabaseBuilder()
                  .section(3, json + '\0')
                  .section(2, kernelOf(1, {located, variable("m", "m", "int")}))
                  .bytes());
}

// Inputs that add nothing

TEST_F(Merging, GoesOnAfterInputsOfEveryKindThatCannotBeUsed) {
    directory.write("bad.hier", "k type: hls\nj\ninstance wrong\n");
    directory.write("bad.xml", "<project><platform>");
    directory.write("k.hls", hlsEntry("3", "x", "v") + "word\n");
    directory.write("short.xml", auxiliaryXml("k", {"n"}) + "<vd:arg vd:originalName=\n");
    directory.write("good.hier", "m type: c\n");
    directory.write("good.xml", auxiliaryXml("m", {"n"}));
    EXPECT_EQ(run({"-h", "bad.hier", "-h", "good.hier", "-k", "bad.xml", "-s", "k.hls", "-x",
                   "short.xml", "-x", "good.xml", "-l", ".", "-r", "."}),
              (CommandResult{0, "", "Parse error\nCould not parse kernel file\n"}));
    expectKernels({{.name = "m", .type = 1, .arguments = {intNamed("n", "n")}}});
}

TEST_F(Merging, PassesOverMissingInputsOfEveryKind) {
    directory.write("good.xml", auxiliaryXml("m", {"n"}));
    EXPECT_EQ(run({"-h", "no", "-k", "no", "-s", "no", "-x", "no", "-l", "no", "-r", "no", "-x",
                   "good.xml"}),
              success);
    expectKernels({{.name = "m", .arguments = {intNamed("n", "n")}}});
}

} // namespace

} // namespace consolidator::test
