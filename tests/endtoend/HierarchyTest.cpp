// From hierarchy files to the bytes of the database and its JSON text.

#include "tests/support/Bytes.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::test {

namespace {

const CommandResult success{};

CommandResult told(const std::string& messages) {
    return {0, "", messages};
}

struct Hierarchy : testing::Test {
    CommandResult run(const std::vector<std::string>& arguments) const {
        return runConsolidator(directory.path("."), arguments);
    }

    /// Adds a hierarchy file of this content, named "system.hier", to the database "db".
    CommandResult add(std::string_view text) const {
        directory.write("system.hier", text);
        return run({"-f", "db", "-h", "system.hier"});
    }

    /// That the file makes a new database of these kernels, without a message.
    void expectMade(std::string_view text, const std::vector<KnownKernel>& kernels) const {
        directory.write("db", "");
        EXPECT_EQ(add(text), success) << text;
        EXPECT_EQ(directory.read("db"), knownDatabase(kernels)) << text;
    }

    /// That the file adds nothing to a database, neither to a new one nor to one with a kernel.
    void expectNothingMade(std::string_view text, const std::string& messages) const {
        directory.write("db", "");
        EXPECT_EQ(add(text), told(messages)) << text;
        EXPECT_EQ(directory.read("db"), knownDatabase({})) << text;
        directory.write("db", knownDatabase({{"checksum", 1, {"top/c"}}}));
        EXPECT_EQ(add(text), told(messages)) << text;
        EXPECT_EQ(directory.read("db"), knownDatabase({{"checksum", 1, {"top/c"}}})) << text;
    }

    TemporaryDirectory directory;
};

const std::string typicalText = "# made by the linker\n"
                                "version: 1.0\n"
                                "scale_rows\n"
                                "type: hls\n"
                                "instance path: top/DIE0/scale_rows_1\n"
                                "instance path: top/DIE0/scale_rows_2\n"
                                "checksum\n"
                                "type: clc\n"
                                "blend\n";

const std::string typicalJson =
    bytes(R"({  "Kernels" : [ )"
          R"({ "Name" : "scale_rows", "Instance Paths" : [ "top/DIE0/scale_rows_1/inst", )"
          R"("top/DIE0/scale_rows_2/inst" ], "Type" : "HLS", "Arguments" : [ ], )"
          R"("Variables" : [ ], "Breakable Conditions" : [] }, )"
          R"({ "Name" : "checksum", "Instance Paths" : [  ], "Type" : "OpenCL", )"
          R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] }, )"
          R"({ "Name" : "blend", "Instance Paths" : [  ], "Type" : "Unknown", )"
          R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] } ] })"
          "\0");

TEST_F(Hierarchy, BecomesADatabaseOfJsonAndKernelData) {
    const std::string kernelData =
        u32(3) +
        // scale_rows
        text("scale_rows") + u32(2) + text("top/DIE0/scale_rows_1") +
        text("top/DIE0/scale_rows_2") + u32(4) + u32(0) + u32(0) + u32(0) + u32(0) + u32(0) +
        // checksum
        text("checksum") + u32(0) + u32(0) + u32(0) + u32(0) + u32(0) + u32(0) + u32(0) +
        // blend, although its name stands twice
        text("blend") + u32(0) + u32(3) + u32(0) + u32(0) + u32(0) + u32(0) + u32(0);
    const auto jsonSize = static_cast<std::uint32_t>(typicalJson.size());
    const auto kernelSize = static_cast<std::uint32_t>(kernelData.size());

    EXPECT_EQ(add(typicalText), success);
    EXPECT_EQ(directory.read("db"), header(2) + entry(3, 64, jsonSize) +
                                        entry(2, 64 + jsonSize, kernelSize) + typicalJson +
                                        kernelData);
}

TEST_F(Hierarchy, GivesAJsonTextThatCanBeCopiedOut) {
    EXPECT_EQ(add(typicalText), success);
    EXPECT_EQ(run({"-f", "db", "-j", "out.json"}), success);
    EXPECT_EQ(directory.read("out.json"), typicalJson);
}

TEST_F(Hierarchy, AddsNothingWhenItIsReadAgain) {
    EXPECT_EQ(add(typicalText), success);
    const std::string once = directory.read("db");
    EXPECT_EQ(add(typicalText), success);
    EXPECT_EQ(directory.read("db"), once);
    EXPECT_EQ(run({"-c", "-f", "db", "-h", "system.hier", "-h", "system.hier"}), success);
    EXPECT_EQ(directory.read("db"), once);
}

TEST_F(Hierarchy, GivesEachTypeWordItsCode) {
    expectMade("a type: clc b type: c d type: ip e type: other f type: hls g type: HLS",
               {{"a", 0}, {"b", 1}, {"d", 2}, {"e", 3}, {"f", 4}, {"g", 3}});
}

TEST_F(Hierarchy, GivesSettingsBeforeTheFirstNameToTheFirstKernel) {
    expectMade("type: ip\ninstance path: top/k\nk\nm", {{"k", 2, {"top/k"}}, {"m"}});
}

TEST_F(Hierarchy, ReadsLinesWithCarriageReturns) {
    expectMade("version: 1.0\r\nk\r\ntype: c\r\ninstance path: top/k\r\n# end\r\n",
               {{"k", 1, {"top/k"}}});
}

TEST_F(Hierarchy, MergesARepeatedLastName) {
    expectMade("k", {{"k"}});
    expectMade("k\n", {{"k"}});
    expectMade("type: hls instance path: top/k k\n", {{"k", 4, {"top/k"}}});
}

TEST_F(Hierarchy, MergesKernelsOfOneName) {
    expectMade("k instance path: top/a\nm\nk type: hls instance path: top/b instance path: top/a\n",
               {{"k", 4, {"top/a", "top/b"}}, {"m"}});
    expectMade("k type: ip\nk type: hls\n", {{"k", 2}});
    expectMade("k type: clc\nk type: hls\n", {{"k", 0}});
    expectMade("k type: hls\nk type: other\n", {{"k", 4}});
}

TEST_F(Hierarchy, MergesTheKernelsOfSeveralFiles) {
    directory.write("a.hier", "k type: other instance path: top/a\nm\n");
    directory.write("b.hier", "n type: c\nk type: ip instance path: top/b\n");
    EXPECT_EQ(run({"-f", "db", "-h", "a.hier", "-h", "b.hier"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"k", 2, {"top/a", "top/b"}}, {"m"}, {"n", 1}}));
}

TEST_F(Hierarchy, MergesWithTheKernelsOfTheDatabase) {
    directory.write("db", knownDatabase({{"k", 3, {"top/a"}}, {"m", 2}}));
    EXPECT_EQ(add("n type: c\nm type: hls\nk type: hls instance path: top/b\n"), success);
    EXPECT_EQ(directory.read("db"),
              knownDatabase({{"k", 4, {"top/a", "top/b"}}, {"m", 2}, {"n", 1}}));
}

TEST_F(Hierarchy, MakesOneNamelessKernelOfAnEmptyFile) {
    expectMade("", {{""}});
    expectMade("\n \r\n\t", {{""}});
}

TEST_F(Hierarchy, MakesNoKernelOfAFileWithoutNames) {
    expectNothingMade("version: 1.0\n", "");
    expectNothingMade("# nothing\n", "");
}

TEST_F(Hierarchy, WritesNamesAndPathsWithoutEscapes) {
    const std::string name = R"(a"b\c{}<&>)";
    const std::string path = R"(top/"x"\n,])";
    expectMade(name + "\ninstance path: " + path + "\n", {{name, 3, {path}}});
    const std::string high = "\xC3\xA9\xFF\x01";
    expectMade(high + "\ninstance path: " + high + "\n", {{high, 3, {high}}});
}

TEST_F(Hierarchy, WritesZeroBytesAndReadsUpToThem) {
    const std::string name = bytes("a\0b");
    const std::string path = bytes("top/a\0/x");
    expectMade(name + " type: c instance path: " + path + "\n", {{name, 1, {path}}});
    EXPECT_EQ(run({"-f", "db", "-h", "missing"}), success);
    EXPECT_EQ(directory.read("db"), knownDatabase({{"a", 1, {"top/a"}}}));
}

TEST_F(Hierarchy, WritesVeryLongNamesAndManyKernels) {
    const std::string name(70000, 'n');
    std::vector<std::string> names;
    names.reserve(3000);
    for (int i = 0; i < 3000; ++i) {
        names.push_back("kernel_" + std::to_string(i));
    }
    std::string text = name + " type: c\n";
    std::vector<KnownKernel> kernels{{name, 1}};
    for (const std::string& each : names) {
        text.append(each).append("\ninstance path: top/").append(each).append("\n");
        kernels.push_back({each, 3, {"top/" + each}});
    }
    EXPECT_EQ(add(text), success);
    EXPECT_TRUE(directory.read("db") == knownDatabase(kernels));
}

// Files that are refused

TEST_F(Hierarchy, TellsThatAVersionIsNotSupportedAndLeavesTheFileOut) {
    const auto messages = [](const std::string& version) {
        return "Unsupported hierarchy file: system.hier\nVersion: " + version +
               "\nSupported Version: 1\n";
    };
    expectNothingMade("version: 1.0001\nk type: hls\n", messages("1.0001"));
    expectNothingMade("version: 2.0\nk type: hls\n", messages("2"));
    expectNothingMade("a\nb\nc\nversion: 10\n", messages("10"));
    expectNothingMade("version: 1e999\n", messages("3.40282e+38"));
}

TEST_F(Hierarchy, AcceptsOlderVersions) {
    expectMade("version: 0.5\nk type: c\n", {{"k", 1}});
    expectMade("version: -3\nk type: c\n", {{"k", 1}});
    expectMade("k type: c\nversion:", {{"k", 1}});
}

TEST_F(Hierarchy, TellsTheNameOfAFileAsItWasGiven) {
    directory.write("two words.hier", "version: 2");
    EXPECT_EQ(run({"-f", "db", "-h", ".//two words.hier"}),
              told("Unsupported hierarchy file: .//two words.hier\nVersion: 2\n"
                   "Supported Version: 1\n"));
    EXPECT_EQ(directory.read("db"), knownDatabase({}));
}

TEST_F(Hierarchy, TellsAParseErrorAndLeavesTheFileOut) {
    expectNothingMade("k type: hls\ninstance top/k\nm\n", "Parse error\n");
    expectNothingMade("a\nb\nc\ninstance", "Parse error\n");
    expectNothingMade("a instance # path: top/a\n", "Parse error\n");
}

TEST_F(Hierarchy, LeavesOutInSilenceAFileWithATooLongComment) {
    expectNothingMade("k\n# " + std::string(254, 'c') + "\nm\n", "");
    expectMade("k\n# " + std::string(253, 'c') + "\nm type: c\n", {{"k"}, {"m", 1}});
}

TEST_F(Hierarchy, LeavesOutInSilenceAFileWhoseVersionIsNoNumber) {
    expectNothingMade("a\nb\nversion: abc\nc\n", "");
}

TEST_F(Hierarchy, GoesOnWithTheNextFileAfterARefusedOne) {
    directory.write("new.hier", "version: 2.0\na type: c\n");
    directory.write("bad.hier", "b type: c\ninstance wrong\n");
    directory.write("good.hier", "d type: c\n");
    EXPECT_EQ(run({"-f", "db", "-h", "missing", "-h", "new.hier", "-h", "bad.hier", "-h",
                   "good.hier", "-h", "bad.hier"}),
              told("Unsupported hierarchy file: new.hier\nVersion: 2\nSupported Version: 1\n"
                   "Parse error\nParse error\n"));
    EXPECT_EQ(directory.read("db"), knownDatabase({{"d", 1}}));
}

} // namespace

} // namespace consolidator::test
