// The kernel description reader: which kernels, arguments and conditions it takes from a document,
// which documents it refuses and what is said then.

#include "readers/KernelFile.h"

#include "consolidated/ConsolidatedFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"
#include "tests/support/EveryElement.h"
#include "tests/support/Fifo.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Reading.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::string failureMessage = "Could not parse kernel file\n";

/// What differs between the kernels of documents.
struct Found {
    std::string name;
    std::vector<VariableTexts> arguments = {}; ///< Source name, hardware name and type.

    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* out) {
    *out << testing::PrintToString(found.name) << " with "
         << testing::PrintToString(found.arguments);
}

/// The two conditions that every kernel has.
const std::vector<BreakableCondition> bothConditions = {{0, "== $i/kc_start 1'b1"},
                                                        {1, "== $i/kc_done 1'b1"}};

std::vector<Found> foundBy(const KernelFile& reader) {
    std::vector<Found> result;
    for (const Kernel& kernel : reader.kernels()) {
        EXPECT_EQ(kernel.type(), KernelType::Unknown);
        EXPECT_EQ(fieldsOf(kernel.breakableConditions()), fieldsOf(bothConditions));
        EXPECT_TRUE(kernel.instancePaths().empty() && kernel.variables().empty() &&
                    kernel.hardwareVariables().empty() && kernel.brams().empty());
        result.push_back({kernel.name(), textsOf(kernel.arguments())});
    }
    return result;
}

/// All that a read of a kernel description left behind.
struct Outcome {
    bool succeeded = false;
    std::vector<Found> kernels;
    std::string messages;
    Diagnostic diagnostic;

    /// Where and why the read stopped.
    Finding stop() const { return diagnostic.stopped().value_or(stopAt(0, "not stopped")); }
};

/// Lets a reader parse a path or a stream buffer. Either the read succeeds, or it stops, with one
/// message and no kernels.
template <typename Source>
Outcome outcomeOf(Source source) {
    std::ostringstream errors;
    KernelFile reader(std::move(source), errors);
    Outcome outcome;
    outcome.succeeded = reader.parse();
    outcome.kernels = foundBy(reader);
    outcome.messages = errors.str();
    outcome.diagnostic = reader.diagnostic();
    EXPECT_EQ(outcome.messages, outcome.succeeded ? "" : failureMessage);
    EXPECT_NE(outcome.diagnostic.stopped().has_value(), outcome.succeeded);
    EXPECT_TRUE(outcome.succeeded || outcome.kernels.empty());
    EXPECT_EQ(reader.version(), -1.0F);
    return outcome;
}

Outcome readDocument(const std::string& document) {
    return outcomeOf(std::make_unique<std::stringbuf>(document));
}

/// The kernels of a document that must be accepted.
std::vector<Found> kernelsOf(const std::string& document) {
    const Outcome outcome = readDocument(document);
    EXPECT_TRUE(outcome.succeeded) << document;
    return outcome.kernels;
}

void expectRefused(const std::string& document) {
    EXPECT_FALSE(readDocument(document).succeeded) << document;
}

/// The document of one core that holds `content`.
std::string documentOfCore(const std::string& content) {
    return "<project><platform><device><core>" + content + "</core></device></platform></project>";
}

/// The arguments of a document's one kernel, which holds `content`.
std::vector<VariableTexts> argumentsOf(const std::string& content) {
    const std::vector<Found> kernels =
        kernelsOf(documentOfCore("<kernel name=\"k\">" + content + "</kernel>"));
    EXPECT_THAT(kernels, SizeIs(1));
    return kernels.empty() ? std::vector<VariableTexts>() : kernels[0].arguments;
}

const std::string typicalDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<project name=\"demo\">\n"
    "  <platform name=\"board\">\n"
    "    <device name=\"fpga0\">\n"
    "      <core name=\"accelerator\">\n"
    "        <kernel name=\"scale_rows\" language=\"c\" hwControlProtocol=\"none\">\n"
    "          <port name=\"m0\" mode=\"master\"/>\n"
    "          <arg name=\"input_r\" addressQualifier=\"1\" id=\"0\" type=\"int*\"/>\n"
    "          <arg name=\"rows\" addressQualifier=\"0\" id=\"1\" type=\"unsigned int\"/>\n"
    "          <instance name=\"scale_rows_1\"/>\n"
    "        </kernel>\n"
    "      </core>\n"
    "    </device>\n"
    "  </platform>\n"
    "</project>\n";

const Found typicalKernel = {"scale_rows",
                             {{"input", "input_r", "int*"}, {"rows", "rows", "unsigned int"}}};

// Kernels

TEST(KernelFile, TakesNameArgumentsAndConditionsOfAKernel) {
    const Outcome outcome = readDocument(typicalDocument);
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_THAT(outcome.kernels, ElementsAre(typicalKernel));
    EXPECT_THAT(outcome.diagnostic.remarks(), IsEmpty());
}

TEST(KernelFile, MakesRecordsWithNothingElseInThem) {
    KernelFile reader(std::make_unique<std::stringbuf>(typicalDocument));
    EXPECT_TRUE(reader.parse());
    ASSERT_THAT(reader.kernels(), SizeIs(1));
    EXPECT_EQ(binaryForm(reader.kernels()[0]),
              record({.name = "scale_rows",
                      .type = 3,
                      .arguments = {variable("input", "input_r", "int*"),
                                    variable("rows", "rows", "unsigned int")},
                      .conditions = {condition(0, "== $i/kc_start 1'b1"),
                                     condition(1, "== $i/kc_done 1'b1")}}));
}

TEST(KernelFile, MakesWholeArgumentsAndConditions) {
    KernelFile reader(std::make_unique<std::stringbuf>(typicalDocument));
    EXPECT_TRUE(reader.parse());
    ASSERT_THAT(reader.kernels(), SizeIs(1));
    for (const Variable& argument : reader.kernels()[0].arguments()) {
        EXPECT_TRUE(argument.valid);
        EXPECT_THAT(argument.locations, IsEmpty());
    }
    const std::vector<BreakableCondition>& conditions = reader.kernels()[0].breakableConditions();
    EXPECT_THAT(fieldsOf(conditions),
                ElementsAre(ConditionFields{0, "== $i/kc_start 1'b1", 0, "", true},
                            ConditionFields{1, "== $i/kc_done 1'b1", 0, "", true}));
    EXPECT_THAT(conditions.at(0).condition, SizeIs(19));
    EXPECT_THAT(conditions.at(1).condition, SizeIs(18));
}

TEST(KernelFile, SucceedsWithoutKernels) {
    for (const std::string& document :
         {std::string("<project/>"), std::string("<project><platform/></project>"),
          documentOfCore(""), documentOfCore("<memories><instance/></memories>")}) {
        EXPECT_THAT(kernelsOf(document), IsEmpty());
    }
}

TEST(KernelFile, GivesAKernelWithoutArgumentsItsConditions) {
    EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\"k\"/>")), ElementsAre(Found{"k"}));
}

TEST(KernelFile, TakesKernelsInDocumentOrderWhereverTheyStand) {
    EXPECT_THAT(
        kernelsOf("<project>"
                  "<platform><device><core><kernel name=\"d\"/><kernel name=\"a\"/></core>"
                  "<core><kernel name=\"c\"/></core></device>"
                  "<device/><device><core/><core><kernel name=\"f\"/></core></device></platform>"
                  "<platform/>"
                  "<platform><device><core><kernel name=\"b\"/></core></device></platform>"
                  "</project>"),
        ElementsAre(Found{"d"}, Found{"a"}, Found{"c"}, Found{"f"}, Found{"b"}));
}

TEST(KernelFile, KeepsTwoRecordsOfOneName) {
    EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\"k\"/><kernel name=\"k\"/>")),
                ElementsAre(Found{"k"}, Found{"k"}));
}

TEST(KernelFile, TakesNoKernelsFromOtherPlaces) {
    EXPECT_THAT(kernelsOf("<project><kernel name=\"a\"/><core><kernel name=\"b\"/></core>"
                          "<platform><kernel name=\"c\"/><core><kernel name=\"d\"/></core>"
                          "<device><kernel name=\"e\"/><extra><core><kernel name=\"f\"/></core>"
                          "</extra><core><kernel name=\"g\"><kernel name=\"h\"/></kernel>"
                          "<Kernel name=\"i\"/></core></device></platform></project>"),
                ElementsAre(Found{"g"}));
}

TEST(KernelFile, TakesNothingElseOfAFullDescription) {
    EXPECT_THAT(kernelsOf(everyElementDocument()),
                ElementsAre(Found{"kernel name",
                                  {{"arg 1 name", "arg 1 name", "arg 1 type"},
                                   {"arg 2 name", "arg 2 name", "arg 2 type"}}},
                            Found{"kernel 2 name",
                                  {{"arg 1 name", "arg 1 name", "arg 1 type"},
                                   {"arg 2 name", "arg 2 name", "arg 2 type"}}}));
}

TEST(KernelFile, GivesEveryControlProtocolTheSameConditions) {
    for (const std::string protocol : {"", "none", "handshake"}) {
        EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\"k\" hwControlProtocol=\"" + protocol +
                                             "\"/>")),
                    ElementsAre(Found{"k"}));
    }
}

TEST(KernelFile, KeepsTheTypeUnknownWhateverTheLanguage) {
    for (const std::string language : {"c", "clc", "ip", "hls"}) {
        EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\"k\" language=\"" + language + "\"/>")),
                    ElementsAre(Found{"k"}));
    }
}

// Kernels of one document

TEST(KernelFile, PutsTheArgumentsOfEarlierKernelsInFrontOfAKernelsOwn) {
    EXPECT_THAT(
        kernelsOf(documentOfCore("<kernel name=\"k1\"><arg name=\"a\" type=\"int\"/>"
                                 "<arg name=\"b\" type=\"char\"/></kernel>"
                                 "<kernel name=\"k2\"><arg name=\"c\" type=\"long\"/>"
                                 "</kernel><kernel name=\"k3\"/>")),
        ElementsAre(Found{"k1", {{"a", "a", "int"}, {"b", "b", "char"}}},
                    Found{"k2", {{"a", "a", "int"}, {"b", "b", "char"}, {"c", "c", "long"}}},
                    Found{"k3", {{"a", "a", "int"}, {"b", "b", "char"}, {"c", "c", "long"}}}));
}

TEST(KernelFile, KeepsTheDescriptionThatAnEarlierKernelGaveAnArgument) {
    EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\"k1\"><arg name=\"n\" type=\"int\"/>"
                                         "</kernel><kernel name=\"k2\"><arg name=\"m\"/>"
                                         "<arg name=\"n\" type=\"float*\"/></kernel>")),
                ElementsAre(Found{"k1", {{"n", "n", "int"}}},
                            Found{"k2", {{"n", "n", "int"}, {"m", "m", ""}}}));
}

TEST(KernelFile, CarriesArgumentsOverToOtherCoresDevicesAndPlatforms) {
    for (const char* const border : {"</core><core>", "</core></device><device><core>",
                                     "</core></device></platform><platform><device><core>"}) {
        std::string content = "<kernel name=\"k1\"><arg name=\"a\" type=\"int\"/></kernel>";
        content += border;
        content += "<kernel name=\"k2\"><arg name=\"b\" type=\"int\"/></kernel>";
        EXPECT_THAT(kernelsOf(documentOfCore(content)),
                    ElementsAre(Found{"k1", {{"a", "a", "int"}}},
                                Found{"k2", {{"a", "a", "int"}, {"b", "b", "int"}}}));
    }
}

TEST(KernelFile, GivesEachOfManyKernelsOneStartAndOneStop) {
    std::string content;
    for (int i = 0; i < 50; ++i) {
        content += "<kernel name=\"k\"/>";
    }
    // What each kernel has is compared with bothConditions.
    EXPECT_THAT(kernelsOf(documentOfCore(content)), SizeIs(50));
}

TEST(KernelFile, CarriesNothingOverToAnotherDocument) {
    EXPECT_THAT(kernelsOf(typicalDocument), ElementsAre(typicalKernel));
    EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\"k\"><arg name=\"a\"/></kernel>")),
                ElementsAre(Found{"k", {{"a", "a", ""}}}));
}

// Arguments

TEST(KernelFile, GivesArgumentsTheirSourceNamesBack) {
    EXPECT_THAT(argumentsOf("<arg name=\"output_r\" type=\"int*\"/><arg name=\"myarg_r\"/>"
                            "<arg name=\"_r\"/><arg name=\"a_r_r\"/><arg name=\"Input_r\"/>"
                            "<arg name=\"reverse_range_r\"/><arg name=\"std_logic_r\"/>"),
                ElementsAre(VariableTexts{"output", "output_r", "int*"},
                            VariableTexts{"myarg_r", "myarg_r", ""}, VariableTexts{"_r", "_r", ""},
                            VariableTexts{"a_r_r", "a_r_r", ""},
                            VariableTexts{"Input_r", "Input_r", ""},
                            VariableTexts{"reverse_range_r", "reverse_range_r", ""},
                            VariableTexts{"std_logic", "std_logic_r", ""}));
}

TEST(KernelFile, FollowsTheOddSpellingsOfTwoReservedWords) {
    EXPECT_THAT(argumentsOf("<arg name=\"rtanif1_r\"/><arg name=\"rtranif1_r\"/>"
                            "<arg name=\"untis_r\"/><arg name=\"units_r\"/>"),
                ElementsAre(VariableTexts{"rtanif1", "rtanif1_r", ""},
                            VariableTexts{"rtranif1_r", "rtranif1_r", ""},
                            VariableTexts{"untis", "untis_r", ""},
                            VariableTexts{"units_r", "units_r", ""}));
}

TEST(KernelFile, KeepsTheFirstOfTwoArgumentsOfOneName) {
    EXPECT_THAT(argumentsOf("<arg name=\"n\" type=\"int\"/><arg name=\"n\" type=\"char\"/>"),
                ElementsAre(VariableTexts{"n", "n", "int"}));
}

TEST(KernelFile, KeepsTheFirstOfTwoArgumentsOfOneSourceName) {
    EXPECT_THAT(argumentsOf("<arg name=\"input_r\" type=\"int\"/><arg name=\"input\"/>"),
                ElementsAre(VariableTexts{"input", "input_r", "int"}));
    EXPECT_THAT(argumentsOf("<arg name=\"input\"/><arg name=\"input_r\" type=\"int\"/>"),
                ElementsAre(VariableTexts{"input", "input", ""}));
}

TEST(KernelFile, TakesArgumentsInDocumentOrderNotByTheirIds) {
    EXPECT_THAT(argumentsOf("<arg name=\"z\" id=\"2\"/><port name=\"p\"/><arg name=\"y\" id=\"0\"/>"
                            "<arg name=\"x\" id=\"1\"/>"),
                ElementsAre(VariableTexts{"z", "z", ""}, VariableTexts{"y", "y", ""},
                            VariableTexts{"x", "x", ""}));
}

TEST(KernelFile, TakesMissingAttributesAsEmpty) {
    EXPECT_THAT(kernelsOf(documentOfCore("<kernel><arg name=\"n\"/></kernel>")),
                ElementsAre(Found{"", {{"n", "n", ""}}}));
    EXPECT_THAT(argumentsOf("<arg type=\"int\"/><arg type=\"char\"/><arg/>"),
                ElementsAre(VariableTexts{"", "", "int"}));
}

TEST(KernelFile, TakesNamesAndTypesAsTheyStand) {
    EXPECT_THAT(kernelsOf(documentOfCore("<kernel name=\" k &lt;1&gt; \"><arg name=\"&#xFC; n\" "
                                         "type=\"vector&lt;int&gt; &amp;\" origName=\"o\"/>"
                                         "</kernel>")),
                ElementsAre(Found{" k <1> ", {{"\u00FC n", "\u00FC n", "vector<int> &"}}}));
}

TEST(KernelFile, TakesNoArgumentsFromOtherPlaces) {
    EXPECT_THAT(argumentsOf("<module><arg name=\"a\"/></module><extra><arg name=\"b\"/></extra>"
                            "<arg name=\"c\"><arg name=\"d\"/></arg><Arg name=\"e\"/>"),
                ElementsAre(VariableTexts{"c", "c", ""}));
}

TEST(KernelFile, TakesThousandsOfArguments) {
    std::string content;
    std::vector<VariableTexts> expected;
    for (int i = 0; i < 20'000; ++i) {
        const std::string name = "argument_" + std::to_string(i);
        content.append("<arg name=\"").append(name).append("\" type=\"int\"/>\n");
        expected.push_back({name, name, "int"});
    }
    EXPECT_TRUE(argumentsOf(content) == expected);
}

TEST(KernelFile, MapsNamesInBothDirections) {
    const KernelFile reader(std::make_unique<std::stringbuf>(""));
    EXPECT_EQ(reader.sourceName("wire_r"), "wire");
    EXPECT_EQ(reader.sourceName("data_r"), "data_r");
    EXPECT_EQ(reader.sourceName("_r"), "_r");
    EXPECT_EQ(reader.hardwareName("begin"), "begin_r");
    EXPECT_EQ(reader.hardwareName("count"), "count");
}

// Documents that cannot be used

TEST(KernelFile, RefusesDocumentsThatAreNotWellFormed) {
    expectRefused("");
    expectRefused("no document");
    expectRefused("<project>");
    expectRefused("<project></platform>");
    expectRefused(typicalDocument + typicalDocument);
    expectRefused("\n" + typicalDocument); // a declaration that does not come first
}

TEST(KernelFile, RefusesOtherRoots) {
    expectRefused("<design/>");
    expectRefused(documentOfCore("").substr(std::string_view("<project>").size()));
}

TEST(KernelFile, ReadsDocumentsWithATypeOfTheirOwn) {
    const std::string type = "<?xml version=\"1.0\"?>\n"
                             "<!DOCTYPE project SYSTEM \"missing.dtd\" [\n"
                             "  <!ELEMENT project (platform)*>\n"
                             "  <!ATTLIST arg name CDATA #REQUIRED type CDATA \"int\">\n"
                             "  <!ENTITY more '<arg name=\"c\" type=\"&t;&lt;8>\"/>'>\n"
                             "  <!ENTITY t \"uint\">\n"
                             "]>\n";
    EXPECT_EQ(kernelsOf(type + documentOfCore("<kernel name=\"k\"><arg name=\"a\"/>"
                                              "<arg name=\"b\" type=\"&t;\"/>&more;</kernel>")),
              kernelsOf(documentOfCore("<kernel name=\"k\"><arg name=\"a\" type=\"int\"/>"
                                       "<arg name=\"b\" type=\"uint\"/>"
                                       "<arg name=\"c\" type=\"uint&lt;8>\"/></kernel>")));
    EXPECT_THAT(kernelsOf("<!DOCTYPE project SYSTEM \"missing.dtd\"><project/>"), IsEmpty());
}

TEST(KernelFile, RefusesDocumentTypesThatWouldMakeItLarge) {
    expectRefused("<!DOCTYPE project [<!ENTITY a '" + repeated("<kernel/>", 1000) +
                  "'><!ENTITY b '" + repeated("&a;", 1000) + "'>]>" + documentOfCore("&b;"));
}

TEST(KernelFile, TakesNoKernelOfADocumentWithAFaultBehindIt) {
    const std::string kernel = "<kernel name=\"k\"><arg name=\"a\"/></kernel>";
    expectRefused("<project><platform><device><core>" + kernel);
    expectRefused(documentOfCore(kernel + "<kernel><arg addressQualifier=\"-1\"/></kernel>"));
    expectRefused(documentOfCore(kernel) + "text");
}

TEST(KernelFile, ExplainsWhyAndWhereItStopped) {
    const Outcome broken = readDocument("<project>\n<platform>\n</device>\n</project>\n");
    EXPECT_EQ(broken.stop().line, 3U);
    EXPECT_NE(broken.stop().text, "");
    const Outcome number = readDocument("<project><platform><device><core><kernel>\n"
                                        "<arg addressQualifier=\"0x1\"/>\n"
                                        "</kernel></core></device></platform></project>\n");
    EXPECT_EQ(number.stop().line, 2U);
    EXPECT_THAT(number.stop().text, HasSubstr("addressQualifier=\"0x1\""));
    const Outcome root = readDocument("\n<design/>");
    EXPECT_EQ(root.stop().line, 2U);
    EXPECT_THAT(root.stop().text, HasSubstr("design"));
}

TEST(KernelFile, KeepsItsKernelsWhenItIsAskedAgain) {
    std::ostringstream errors;
    KernelFile reader(std::make_unique<std::stringbuf>(typicalDocument), errors);
    EXPECT_TRUE(reader.parse());
    EXPECT_FALSE(reader.isOpen());
    EXPECT_FALSE(reader.parse());
    EXPECT_THAT(foundBy(reader), ElementsAre(typicalKernel));
    EXPECT_EQ(errors.str(), failureMessage);
}

TEST(KernelFile, RefusesEveryBeginningOfADocument) {
    const std::string whole = typicalDocument.substr(0, typicalDocument.size() - 1);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        expectRefused(whole.substr(0, length));
    }
    EXPECT_THAT(kernelsOf(whole), ElementsAre(typicalKernel));
}

TEST(KernelFile, ReadsADocumentWithAnyByteDamagedToAnEnd) {
    for (std::size_t i = 0; i < typicalDocument.size(); ++i) {
        for (const char byte : {'\0', '\xFF', '<', '"', 'a', ' '}) {
            std::string damaged = typicalDocument;
            damaged[i] = byte;
            readDocument(damaged); // which looks at messages and kernels
        }
    }
}

// Files

struct KernelFiles : testing::Test {
    const TemporaryDirectory directory;
};

TEST_F(KernelFiles, AreReadByTheirPath) {
    const std::string path = directory.write("kernel.xml", typicalDocument);
    EXPECT_THAT(outcomeOf(path).kernels, ElementsAre(typicalKernel));
    EXPECT_EQ(KernelFile(path).fileName(), path);
}

TEST_F(KernelFiles, MayBePipes) {
    const FifoWithContent pipe(directory.path("pipe"), typicalDocument);
    EXPECT_THAT(outcomeOf(directory.path("pipe")).kernels, ElementsAre(typicalKernel));
}

TEST_F(KernelFiles, ThatAreMissingAreNotOpenAndCannotBeParsed) {
    const std::string path = directory.path("missing.xml");
    EXPECT_FALSE(KernelFile(path).isOpen());
    const Outcome outcome = outcomeOf(path);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.stop().line, 0U);
    EXPECT_THAT(outcome.stop().text, HasSubstr("cannot be opened"));
}

TEST_F(KernelFiles, ThatAreDirectoriesCannotBeParsed) {
    EXPECT_TRUE(KernelFile(directory.path(".")).isOpen());
    const Outcome outcome = outcomeOf(directory.path("."));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.stop().line, 0U);
    EXPECT_THAT(outcome.stop().text, HasSubstr("cannot be read"));
}

TEST_F(KernelFiles, ThatAreEmptyCannotBeParsed) {
    EXPECT_FALSE(outcomeOf(directory.write("kernel.xml", "")).succeeded);
}

TEST(KernelFile, RefusesAWholeDocumentBehindWhichReadingFails) {
    const Outcome outcome = outcomeOf(std::make_unique<FailingSource>(typicalDocument));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_THAT(outcome.stop().text, HasSubstr("cannot be read"));
}

// Explanations

/// A document with these elements in its core.
std::string documentWith(const std::string& kernels) {
    return "<project><platform><device><core>" + kernels + "</core></device></platform></project>";
}

TEST(KernelFile, RemarksOnArgumentsThatComeTwiceAndDiffer) {
    EXPECT_THAT(
        readDocument(
            documentWith("<kernel name='k'><arg name='a' type='int'/><arg name='b' type='int'/>"
                         "<arg name='a' type='float'/><arg name='b' type='int'/></kernel>"
                         "<kernel name='m'><arg name='b' type='char'/></kernel>"))
            .diagnostic.remarks(),
        ElementsAre(warningAt(0, Code::RepeatedArgument,
                              "argument \"a\" of kernel \"k\" is passed over: type "
                              "\"float\" here, \"int\" before, and the first one counts"),
                    warningAt(0, Code::RepeatedArgument,
                              "argument \"b\" of kernel \"m\" is passed over: type "
                              "\"char\" here, \"int\" before, and the first one counts")));
    EXPECT_THAT(readDocument(documentWith("<kernel name='k'><arg name='input' type='int'/>"
                                          "<arg name='input_r' type='int'/></kernel>"))
                    .diagnostic.remarks(),
                ElementsAre(warningAt(0, Code::RepeatedArgument,
                                      "argument \"input\" of kernel \"k\" is passed over: hardware "
                                      "name \"input_r\" here, \"input\" before, and the first one "
                                      "counts")));
}

TEST(KernelFile, DoesNotCompareArgumentsWithoutEnd) {
    std::string arguments;
    for (int i = 0; i < 1000; ++i) {
        arguments += "<arg name='a" + std::to_string(i) + "' type='int'/>";
    }
    // The last of a thousand: a thousand comparisons each time.
    for (int i = 0; i < 200; ++i) {
        arguments += "<arg name='a999' type='float'/>";
    }
    const Outcome outcome =
        readDocument(documentWith("<kernel name='k'>" + arguments + "</kernel>"));
    EXPECT_EQ(outcome.diagnostic.remarkCount(), 100U);
}

// In a project

TEST_F(KernelFiles, AddNothingNewToAProjectTheSecondTime) {
    const std::string path = directory.write("kernel.xml", typicalDocument);
    ConsolidatedFile project;
    std::string once;
    for (int pass = 0; pass < 2; ++pass) {
        KernelFile reader(path);
        project.addInputFile(reader);
        ASSERT_THAT(project.kernels(), SizeIs(1));
        once = pass == 0 ? binaryForm(project.kernels()[0]) : once;
    }
    EXPECT_EQ(binaryForm(project.kernels()[0]), once);
    EXPECT_THAT(textsOf(project.kernels()[0].arguments()),
                testing::ElementsAreArray(typicalKernel.arguments));
}

TEST_F(KernelFiles, AddArgumentsAndConditionsToAKernelOfAKnownType) {
    ConsolidatedFile project;
    Kernel known;
    known.setName("scale_rows");
    known.setType(KernelType::HLS);
    known.addInstancePath("top/scale_rows_1");
    project.mergeKernel(known);
    KernelFile reader(directory.write("kernel.xml", typicalDocument));
    project.addInputFile(reader);
    ASSERT_THAT(project.kernels(), SizeIs(1));
    EXPECT_EQ(project.kernels()[0].type(), KernelType::HLS);
    EXPECT_THAT(project.kernels()[0].instancePaths(), ElementsAre("top/scale_rows_1"));
    EXPECT_THAT(project.kernels()[0].arguments(), SizeIs(2));
    EXPECT_THAT(project.kernels()[0].breakableConditions(), SizeIs(2));
}

TEST_F(KernelFiles, ThatCannotBeParsedAddNothingToAProject) {
    ConsolidatedFile project;
    std::ostringstream errors;
    KernelFile reader(directory.write("kernel.xml", typicalDocument + "<"), errors);
    project.addInputFile(reader);
    EXPECT_THAT(project.kernels(), IsEmpty());
    EXPECT_EQ(errors.str(), failureMessage);
}

} // namespace

} // namespace consolidator::test
