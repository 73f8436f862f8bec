// `consolidator-inspect json`, to the letter.

#include "tests/support/Bytes.h"
#include "tests/support/ExampleProject.h"
#include "tests/support/InspectRun.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>

namespace consolidator::test {

namespace {

using testing::HasSubstr;

struct JsonCommand : testing::Test {
    /// What the command prints of a database.
    std::string json(const std::string& database, const std::vector<std::string>& options = {}) {
        std::vector<std::string> words{"json", directory.write("db", database)};
        words.insert(words.end(), options.begin(), options.end());
        const CommandResult result = inspectRun(words);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.err, "");
        return result.out;
    }

    TemporaryDirectory directory;
};

/// A database of one kernel.
std::string databaseOf(const Record& kernel) {
    return DatabaseBuilder().section(2, u32(1) + record(kernel)).bytes();
}

/// Bits of which each lies as far behind `firstOffset` as it is behind bit 0.
std::string places(unsigned address, unsigned firstOffset, std::initializer_list<unsigned> bits) {
    std::string result;
    for (const unsigned bit : bits) {
        result += (result.empty() ? R"({"bit":)" : R"(,{"bit":)") + std::to_string(bit) +
                  R"(,"address":)" + std::to_string(address) + R"(,"offset":)" +
                  std::to_string(firstOffset + bit) + "}";
    }
    return result;
}

/// The same, indented, a line for each.
std::string prettyPlaces(unsigned address, unsigned firstOffset,
                         std::initializer_list<unsigned> bits) {
    std::string result;
    for (const unsigned bit : bits) {
        result += (result.empty() ? R"(            {"bit": )" : ",\n            {\"bit\": ") +
                  std::to_string(bit) + R"(, "address": )" + std::to_string(address) +
                  R"(, "offset": )" + std::to_string(firstOffset + bit) + "}";
    }
    return result;
}

constexpr std::initializer_list<unsigned> fourBits{0, 1, 2, 3};
constexpr std::initializer_list<unsigned> eightBits{0, 1, 2, 3, 4, 5, 6, 7};
constexpr std::initializer_list<unsigned> allButBitSix{0, 1, 2, 3, 4, 5, 7};

// 0x1a00 is 6656, 0x2a00 is 10752, 0x3a00 is 14848.
TEST_F(JsonCommand, ShowsTheExampleProjectOnOneLine) {
    EXPECT_EQ(
        json(exampleDatabase()),
        R"({"format":1,"version":{"major":1,"minor":1},"complete":true,"project":"accelerator",)"
        R"("dwarf":{"size":38},"kernels":[)"
        R"({"name":"scale_rows","type":{"number":4,"name":"HLS"},)"
        R"("instances":["top/region_0/scale_rows_1","top/region_0/scale_rows_2"],"arguments":[)"
        R"({"source":"input","hardware":"input_r","type":"int*","width":64},)"
        R"({"source":"output","hardware":"output_r","type":"int*","width":64},)"
        R"({"source":"rows","hardware":"rows","type":"unsigned char","width":8},)"
        R"({"source":"gain","hardware":"gain","type":"float","width":32}],"variables":[)"
        R"({"source":"row","hardware":"row_reg","type":"int","width":32},)"
        R"({"source":"sum","hardware":"sum_reg","type":"int","width":32}],"registers":[)"
        R"({"net":"/top/region_0/scale_rows_1/U0/row_reg","hardware":"row_reg",)"
        R"("instance":"top/region_0/scale_rows_1","width":4,"bits":[)" +
            places(6656, 128, fourBits) +
            R"(]},{"net":"/top/region_0/scale_rows_1/U0/sum_reg","hardware":"sum_reg",)"
            R"("instance":"top/region_0/scale_rows_1","width":8,"bits":[)" +
            places(6657, 160, eightBits) +
            R"(]},{"net":"/top/region_0/scale_rows_1/U0/rows","hardware":"rows",)"
            R"("instance":"top/region_0/scale_rows_1","width":8,"bits":[)" +
            places(6658, 0, eightBits) +
            R"(]},{"net":"/top/region_0/scale_rows_2/U0/row_reg","hardware":"row_reg",)"
            R"("instance":"top/region_0/scale_rows_2","width":4,"bits":[)" +
            places(10752, 128, fourBits) +
            R"(]},{"net":"/top/region_0/scale_rows_2/U0/sum_reg","hardware":"sum_reg",)"
            R"("instance":"top/region_0/scale_rows_2","width":8,"bits":[)" +
            places(10753, 160, allButBitSix) +
            R"(]}],"conditions":[{"kind":"start","condition":"== 1'b1 $i/kc_start"},)"
            R"({"kind":"stop","condition":"== 1'b1 $i/kc_done"},)"
            R"({"kind":"line","file":"scale_rows.cpp","line":14,)"
            R"("condition":"== 1'b1 $i/fsm_state2"}],"brams":[]},)"
            R"({"name":"checksum","type":{"number":1,"name":"C"},)"
            R"("instances":["top/region_1/checksum_1"],"arguments":[)"
            R"({"source":"in","hardware":"in_r","type":"int","width":32},)"
            R"({"source":"length","hardware":"length_r","type":"int","width":32},)"
            R"({"source":"result","hardware":"result","type":"int","width":32}],"variables":[)"
            R"({"source":"crc","hardware":"crc_q","type":"int","width":32}],"registers":[)"
            R"({"net":"/top/region_1/checksum_1/inst/crc_q","hardware":"crc_q",)"
            R"("instance":"top/region_1/checksum_1","width":4,"bits":[)" +
            places(14848, 200, fourBits) +
            R"(]},{"net":"/top/region_1/checksum_1/inst/result","hardware":"result",)"
            R"("instance":"top/region_1/checksum_1","width":1,"bits":[)" +
            places(14849, 17, {0}) +
            R"(]}],"conditions":[{"kind":"line","file":"checksum.cpp","line":21,)"
            R"("condition":"== 1'b1 $i/last_word"}],"brams":[]}]})"
            "\n");
}

/// A register, as it stands in a pretty document.
std::string prettyRegister(const std::string& path, const std::string& inner,
                           const std::string& name, unsigned width, const std::string& bits) {
    return "        {\n"
           "          \"net\": \"/" +
           path + "/" + inner + "/" + name +
           "\",\n"
           "          \"hardware\": \"" +
           name +
           "\",\n"
           "          \"instance\": \"" +
           path +
           "\",\n"
           "          \"width\": " +
           std::to_string(width) +
           ",\n"
           "          \"bits\": [\n" +
           bits +
           "\n"
           "          ]\n"
           "        }";
}

TEST_F(JsonCommand, IndentsTheExampleProject) {
    const std::string first = "top/region_0/scale_rows_1";
    const std::string second = "top/region_0/scale_rows_2";
    const std::string third = "top/region_1/checksum_1";
    EXPECT_EQ(
        json(exampleDatabase(), {"--pretty"}),
        R"({
  "format": 1,
  "version": {
    "major": 1,
    "minor": 1
  },
  "complete": true,
  "project": "accelerator",
  "dwarf": {
    "size": 38
  },
  "kernels": [
    {
      "name": "scale_rows",
      "type": {
        "number": 4,
        "name": "HLS"
      },
      "instances": [
        "top/region_0/scale_rows_1",
        "top/region_0/scale_rows_2"
      ],
      "arguments": [
        {
          "source": "input",
          "hardware": "input_r",
          "type": "int*",
          "width": 64
        },
        {
          "source": "output",
          "hardware": "output_r",
          "type": "int*",
          "width": 64
        },
        {
          "source": "rows",
          "hardware": "rows",
          "type": "unsigned char",
          "width": 8
        },
        {
          "source": "gain",
          "hardware": "gain",
          "type": "float",
          "width": 32
        }
      ],
      "variables": [
        {
          "source": "row",
          "hardware": "row_reg",
          "type": "int",
          "width": 32
        },
        {
          "source": "sum",
          "hardware": "sum_reg",
          "type": "int",
          "width": 32
        }
      ],
      "registers": [
)" + prettyRegister(first, "U0", "row_reg", 4, prettyPlaces(6656, 128, fourBits)) +
            ",\n" + prettyRegister(first, "U0", "sum_reg", 8, prettyPlaces(6657, 160, eightBits)) +
            ",\n" + prettyRegister(first, "U0", "rows", 8, prettyPlaces(6658, 0, eightBits)) +
            ",\n" + prettyRegister(second, "U0", "row_reg", 4, prettyPlaces(10752, 128, fourBits)) +
            ",\n" +
            prettyRegister(second, "U0", "sum_reg", 8, prettyPlaces(10753, 160, allButBitSix)) +
            R"(
      ],
      "conditions": [
        {
          "kind": "start",
          "condition": "== 1'b1 $i/kc_start"
        },
        {
          "kind": "stop",
          "condition": "== 1'b1 $i/kc_done"
        },
        {
          "kind": "line",
          "file": "scale_rows.cpp",
          "line": 14,
          "condition": "== 1'b1 $i/fsm_state2"
        }
      ],
      "brams": []
    },
    {
      "name": "checksum",
      "type": {
        "number": 1,
        "name": "C"
      },
      "instances": [
        "top/region_1/checksum_1"
      ],
      "arguments": [
        {
          "source": "in",
          "hardware": "in_r",
          "type": "int",
          "width": 32
        },
        {
          "source": "length",
          "hardware": "length_r",
          "type": "int",
          "width": 32
        },
        {
          "source": "result",
          "hardware": "result",
          "type": "int",
          "width": 32
        }
      ],
      "variables": [
        {
          "source": "crc",
          "hardware": "crc_q",
          "type": "int",
          "width": 32
        }
      ],
      "registers": [
)" + prettyRegister(third, "inst", "crc_q", 4, prettyPlaces(14848, 200, fourBits)) +
            ",\n" + prettyRegister(third, "inst", "result", 1, prettyPlaces(14849, 17, {0})) +
            R"(
      ],
      "conditions": [
        {
          "kind": "line",
          "file": "checksum.cpp",
          "line": 21,
          "condition": "== 1'b1 $i/last_word"
        }
      ],
      "brams": []
    }
  ]
}
)");
}

TEST_F(JsonCommand, ShowsWhatIsNotThere) {
    EXPECT_EQ(json(DatabaseBuilder().bytes()),
              R"({"format":1,"version":{"major":1,"minor":1},"complete":true,"project":null,)"
              R"("dwarf":null,"kernels":[]})"
              "\n");
}

TEST_F(JsonCommand, ShowsTheBytesOfTheDwarfDataOnRequest) {
    EXPECT_THAT(json(DatabaseBuilder().section(1, "foob").bytes(), {"--dwarf"}),
                HasSubstr(R"("dwarf":{"size":4,"base64":"Zm9vYg=="},)"));
    EXPECT_THAT(json(DatabaseBuilder().section(1, "").bytes(), {"--dwarf", "--pretty"}),
                HasSubstr("\"dwarf\": {\n    \"size\": 0,\n    \"base64\": \"\"\n  },\n"));
}

// The examples of RFC 4648, section 10, and bytes that are no text.
TEST_F(JsonCommand, PadsDwarfDataToGroups) {
    const std::vector<std::pair<std::string, std::string>> examples{
        {"f", "Zg=="},           {"fo", "Zm8="},
        {"foo", "Zm9v"},         {"fooba", "Zm9vYmE="},
        {"foobar", "Zm9vYmFy"},  {std::string("\0\xFF\xFE\xFB\xF0", 5), "AP/++/A="},
        {"\xFF\xFF\xFF", "////"}};
    for (const auto& [bytes, text] : examples) {
        EXPECT_THAT(json(DatabaseBuilder().section(1, bytes).bytes(), {"--dwarf"}),
                    HasSubstr("\"base64\":\"" + text + "\"}"));
    }
}

TEST_F(JsonCommand, EncodesLargeDwarfDataWithoutASeam) {
    EXPECT_THAT(json(DatabaseBuilder().section(1, repeated("foo", 10000)).bytes(), {"--dwarf"}),
                HasSubstr(R"("base64":")" + repeated("Zm9v", 10000) + R"("})"));
}

TEST_F(JsonCommand, EscapesTexts) {
    EXPECT_THAT(json(databaseOf({.name = "a\"b\\c/d\b\f\n\r\t\x01\x1f\x7f"})),
                HasSubstr(R"("name":"a\"b\\c/d\b\f\n\r\t\u0001\u001F)"
                          "\x7f\","));
}

TEST_F(JsonCommand, PutsAReplacementInThePlaceOfWhatIsNoUtf8) {
    EXPECT_THAT(json(databaseOf({.name = "\xC3\xA4\xFF\xE2\x82z\xF0\x9F\x94\xA7\xF0\x9F"})),
                HasSubstr("\"name\":\"\xC3\xA4\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz"
                          "\xF0\x9F\x94\xA7\xEF\xBF\xBD\xEF\xBF\xBD\","));
}

TEST_F(JsonCommand, TakesNamesOfAnyLength) {
    const std::string name = repeated("\"\xFF", 1000000);
    EXPECT_THAT(json(databaseOf({.name = name})),
                HasSubstr(R"("name":")" + repeated("\\\"\xEF\xBF\xBD", 1000000) + R"(",)"));
}

TEST_F(JsonCommand, ListsOnlyBitsThatLieSomewhere) {
    EXPECT_THAT(json(databaseOf({.hardwareVariables = {hardwareVariable(
                                     "x", {location(0, 0), location(0, 7), location(0, 0),
                                           location(0xFFFFFFFF, 0), location(0, 0)})}})),
                HasSubstr(R"({"net":"x","hardware":"x","instance":null,"width":5,"bits":[)"
                          R"({"bit":1,"address":0,"offset":7},)"
                          R"({"bit":3,"address":4294967295,"offset":0}]})"));
}

TEST_F(JsonCommand, ShowsWhereAVariableLiesPerInstance) {
    const std::string variables =
        variable("a", "b", "char*", {list({location(0, 0), location(5, 6)}), list({})});
    EXPECT_THAT(json(databaseOf({.variables = {variables}})),
                HasSubstr(R"("variables":[{"source":"a","hardware":"b","type":"char*","width":64,)"
                          R"("locations":[{"width":2,"bits":[{"bit":1,"address":5,"offset":6}]},)"
                          R"({"width":0,"bits":[]}]}])"));
}

TEST_F(JsonCommand, KeepsNumbersThatHaveNoName) {
    const std::string text = json(databaseOf({.type = 77, .conditions = {condition(9, "x")}}));
    EXPECT_THAT(text, HasSubstr(R"("type":{"number":77,"name":"Unknown"})"));
    EXPECT_THAT(text,
                HasSubstr(R"("conditions":[{"kind":"error","number":9,"condition":"x"}],"brams")"));
}

TEST_F(JsonCommand, ListsBrams) {
    EXPECT_THAT(json(databaseOf({.brams = {"b", "b"}})), HasSubstr(R"("brams":["b","b"]})"));
}

TEST_F(JsonCommand, SaysThatADamagedDatabaseIsNotComplete) {
    std::string database = exampleDatabase();
    database.pop_back();
    const std::string path = directory.write("db", database);
    const CommandResult result = inspectRun({"json", path});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.out, HasSubstr(R"("complete":false,)"));
    EXPECT_THAT(result.out, HasSubstr(R"("kernels":[{"name":"scale_rows",)"));
    EXPECT_THAT(result.out, testing::EndsWith(R"("brams":[]}]})"
                                              "\n"));
    EXPECT_THAT(result.err, HasSubstr(path + ": error: is damaged"));
}

TEST_F(JsonCommand, PrintsTheStoredSectionAsItIs) {
    EXPECT_EQ(json(exampleDatabase(), {"--section"}), knownJson(exampleKernels()));
    EXPECT_EQ(json(DatabaseBuilder().section(3, "").section(3, "second").bytes(), {"--section"}),
              "");
    const std::string large = repeated("\xFF", 200000);
    EXPECT_EQ(json(DatabaseBuilder().section(3, large).bytes(), {"--section"}), large);
}

TEST_F(JsonCommand, PrintsTheStoredSectionWhateverIsBehindIt) {
    std::string database = exampleDatabase();
    database.pop_back();
    EXPECT_EQ(inspectRun({"json", "--section", directory.write("db", database)}),
              (CommandResult{0, knownJson(exampleKernels()), ""}));
}

TEST_F(JsonCommand, PrintsTheStoredSectionOfADatabaseOnly) {
    EXPECT_THAT(inspectRun({"json", "--section", directory.write("db", "none")}).err,
                HasSubstr("db: error: is no consolidated file: "));
    const CommandResult ofHalfATable =
        inspectRun({"json", "--section", directory.write("db", header(2) + entry(3, 38, 2))});
    EXPECT_EQ(ofHalfATable.status, 2);
    EXPECT_THAT(ofHalfATable.err, HasSubstr("db: error: is damaged at "));
}

TEST_F(JsonCommand, FindsNoStoredSection) {
    const std::string path = directory.write("db", DatabaseBuilder().bytes());
    EXPECT_EQ(inspectRun({"json", "--section", path}),
              (CommandResult{1, "", path + ": error: has no JSON section\n"}));
}

TEST_F(JsonCommand, PrintsNothingOfASectionThatIsCutOff) {
    for (const std::uint64_t offset : {39U, 41U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        const std::string path =
            directory.write("db", header(1) + entry(3, offset, 2) + (offset == 41 ? "x" : ""));
        EXPECT_EQ(
            inspectRun({"json", "--section", path}),
            (CommandResult{2, "", path + ": error: the file ends before its JSON section does\n"}))
            << offset;
    }
}

TEST_F(JsonCommand, PrintsTheStoredSectionOnlyAsItIs) {
    const std::string path = directory.write("db", exampleDatabase());
    EXPECT_EQ(inspectRun({"json", "--section", "--pretty", path}).status, 2);
    EXPECT_EQ(inspectRun({"json", "--section", "--dwarf", path}).status, 2);
}

TEST_F(JsonCommand, NoticesThatItsOutputIsLost) {
    directory.write("db", exampleDatabase());
    for (const char* option : {"--pretty", "--section"}) {
        EXPECT_EQ(
            runInspector(directory.path("."), {"json", option, "db"}, redirected(1, "/dev/full")),
            (CommandResult{2, "",
                           "consolidator-inspect: error: standard output cannot be written: No "
                           "space left on device\n"}));
    }
}

} // namespace

} // namespace consolidator::test
