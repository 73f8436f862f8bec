// The auxiliary XML reader: which kernel the lines of a file give, and which files are refused.

#include "readers/AuxiliaryXMLFile.h"

#include "tests/support/Bytes.h"
#include "tests/support/Kernels.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Reading.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Reading readAux(const std::string& text) {
    return readText<AuxiliaryXMLFile>(text);
}

/// The one kernel of a text that must be read to its end.
Kernel kernelIn(const std::string& text) {
    const Reading reading = readAux(text);
    EXPECT_TRUE(reading.succeeded) << text;
    EXPECT_FALSE(reading.diagnostic.stopped()) << text;
    EXPECT_EQ(reading.kernels.size(), 1U) << text;
    return reading.kernels.empty() ? Kernel() : reading.kernels.front();
}

std::string nameOf(const std::string& text) {
    return kernelIn(text).name();
}

std::vector<VariableTexts> argumentsOf(const std::string& text) {
    return textsOf(kernelIn(text).arguments());
}

/// The one argument of a line with these words.
VariableTexts argumentOf(const std::string& words) {
    const std::vector<VariableTexts> arguments = argumentsOf("<vd:arg " + words + "\n");
    EXPECT_EQ(arguments.size(), 1U) << words;
    return arguments.empty() ? VariableTexts{} : arguments.front();
}

std::string typeOf(const std::string& word) {
    const auto [source, hardware, type] = argumentOf(word);
    EXPECT_EQ(source, "");
    EXPECT_EQ(hardware, "");
    return type;
}

VariableTexts plain(const std::string& name, const std::string& type = "") {
    return {name, name, type};
}

void expectSilentFailure(const std::string& text) {
    const Reading reading = readAux(text);
    EXPECT_FALSE(reading.succeeded);
    EXPECT_THAT(reading.kernels, IsEmpty());
}

/// That parsing throws, says why and leaves no kernel.
void expectThrown(const std::string& text, const Finding& reason) {
    std::ostringstream errors;
    AuxiliaryXMLFile reader(std::make_unique<std::stringbuf>(text), errors);
    EXPECT_THROW(reader.parse(), std::out_of_range) << text;
    EXPECT_THAT(reader.kernels(), IsEmpty()) << text;
    EXPECT_EQ(reader.diagnostic().stopped(), reason) << text;
    EXPECT_EQ(errors.str(), "") << text;
}

std::vector<Finding> remarksOn(const std::string& text) {
    const Reading reading = readAux(text);
    EXPECT_TRUE(reading.succeeded) << text;
    return reading.diagnostic.remarks();
}

const std::string typicalText =
    "<?xml version=\"1.0\"?>\n"
    "<vd:component xmlns:vd=\"urn:demo\">\n"
    "  <vd:acceleratorMap vd:functionName=\"scale_rows\" vd:componentRef=\"scale\" >\n"
    "    <vd:arg vd:originalName=\"input_r\" vd:direction=\"in\" vd:busTypeRef=\"acc_fifo\" />\n"
    "    <vd:arg vd:busTypeRef=\"\"acc_fifo\" vd:originalName=\"data_r\" />\n"
    "    <vd:arg vd:originalName=\"rows\" />\n"
    "  </vd:acceleratorMap>\n"
    "</vd:component>\n";

const std::string typicalRecord =
    record({.name = "scale_rows",
            .arguments = {variable("input", "input_r", "int"), variable("data_r", "data_r", "int*"),
                          variable("rows", "rows", "")}});

// The kernel

TEST(AuxiliaryXMLFile, ReadsTheFunctionAndItsArguments) {
    EXPECT_EQ(binaryForm(kernelIn(typicalText)), typicalRecord);
    EXPECT_THAT(remarksOn(typicalText), IsEmpty());
}

TEST(AuxiliaryXMLFile, ReadsAFileNamedByItsPath) {
    const TemporaryDirectory directory;
    const Reading reading =
        readFile<AuxiliaryXMLFile>(directory.write("k_auxiliary.xml", typicalText));
    EXPECT_TRUE(reading.succeeded);
    ASSERT_EQ(reading.kernels.size(), 1U);
    EXPECT_EQ(binaryForm(reading.kernels.front()), typicalRecord);
}

TEST(AuxiliaryXMLFile, MakesOneNamelessKernelOfAFileWithoutKnownLines) {
    for (const char* text : {"", "\n", "\n\n\n", " \t ", "\r\n", "text", "text\n",
                             "<vd:component>\n</vd:component>\n", "vd:originalName=\"n\"\n"}) {
        EXPECT_EQ(binaryForm(kernelIn(text)), record({})) << testing::PrintToString(text);
    }
}

TEST(AuxiliaryXMLFile, ReadsNothingFromAReaderThatIsNotOpen) {
    const TemporaryDirectory directory;
    std::ostringstream errors;
    AuxiliaryXMLFile reader(directory.path("missing"), errors);
    EXPECT_FALSE(reader.isOpen());
    EXPECT_FALSE(reader.parse());
    EXPECT_THAT(reader.kernels(), IsEmpty());
    EXPECT_EQ(errors.str(), "");
}

TEST(AuxiliaryXMLFile, ReadsItsFileOnce) {
    AuxiliaryXMLFile reader(std::make_unique<std::stringbuf>(typicalText));
    EXPECT_TRUE(reader.parse());
    EXPECT_FALSE(reader.parse());
    EXPECT_THAT(namesOf(reader.kernels()), ElementsAre("scale_rows"));
}

TEST(AuxiliaryXMLFile, IsNoXmlReader) {
    EXPECT_EQ(binaryForm(kernelIn("</wrong>\n"
                                  "<!-- \n"
                                  "<vd:arg vd:originalName=\"n\"\n"
                                  "-->\n"
                                  "<vd:acceleratorMap vd:functionName=\"k\"\n")),
              record({.name = "k", .arguments = {variable("n", "n", "")}}));
}

// First words

TEST(AuxiliaryXMLFile, FindsIndentedLines) {
    for (const char* indent : {" ", "\t", "        ", " \t\v\f\r "}) {
        const std::string text = indent + std::string("<vd:arg vd:originalName=\"n\"\n") + indent +
                                 "<vd:acceleratorMap vd:functionName=\"k\"";
        EXPECT_EQ(binaryForm(kernelIn(text)),
                  record({.name = "k", .arguments = {variable("n", "n", "")}}));
    }
}

TEST(AuxiliaryXMLFile, IgnoresLinesWithAnyOtherFirstWord) {
    for (const char* word :
         {"<vd:args", "<vd:arg>", "<vd:arg/>", "<vd:argument", "<vd:ar", "vd:arg", "<VD:ARG",
          "<vd:Arg", "<<vd:arg", "< vd:arg", "x <vd:arg", "</vd:arg", "\xA0<vd:arg"}) {
        EXPECT_THAT(argumentsOf(word + std::string(" vd:originalName=\"n\"\n")), IsEmpty()) << word;
    }
    for (const char* word :
         {"<vd:acceleratorMaps", "<vd:acceleratorMap>", "<vd:acceleratormap", "<vd:accelerator",
          "vd:acceleratorMap", "x <vd:acceleratorMap", "</vd:acceleratorMap"}) {
        EXPECT_EQ(nameOf(word + std::string(" vd:functionName=\"k\"\n")), "") << word;
    }
}

TEST(AuxiliaryXMLFile, KeepsToOneLine) {
    EXPECT_THAT(argumentsOf("<vd:arg\nvd:originalName=\"n\"\n"), ElementsAre(plain("")));
    EXPECT_EQ(nameOf("<vd:acceleratorMap\nvd:functionName=\"k\"\n"), "");
}

TEST(AuxiliaryXMLFile, LooksForNoSecondElementOnALine) {
    EXPECT_THAT(argumentsOf("<vd:arg vd:originalName=\"a\" <vd:arg vd:originalName=\"b\"\n"),
                ElementsAre(plain("b")));
    EXPECT_THAT(argumentsOf("<vd:acceleratorMap vd:functionName=\"k\" <vd:arg"), IsEmpty());
}

// Arguments

TEST(AuxiliaryXMLFile, TakesTheWordsOfAnArgumentInAnyOrder) {
    EXPECT_EQ(argumentOf("vd:originalName=\"n\" vd:busTypeRef=\"bus\""), plain("n", "int"));
    EXPECT_EQ(argumentOf("vd:busTypeRef=\"bus\" vd:originalName=\"n\""), plain("n", "int"));
    EXPECT_EQ(argumentOf("a vd:busTypeRef=\"bus\" b=\"c\" vd:originalName=\"n\" />"),
              plain("n", "int"));
}

TEST(AuxiliaryXMLFile, TakesEveryKindOfWhiteSpaceBetweenWords) {
    EXPECT_EQ(argumentOf("\t\vvd:originalName=\"n\"\f\r  vd:busTypeRef=\"bus\"\t "),
              plain("n", "int"));
    EXPECT_EQ(nameOf("<vd:acceleratorMap\t\t\v\f\rvd:functionName=\"k\" \t"), "k");
}

TEST(AuxiliaryXMLFile, AddsAnArgumentForALineThatSaysNothing) {
    for (const char* line : {"<vd:arg", "<vd:arg ", "<vd:arg \t\r", "<vd:arg />", "<vd:arg a=\"b\"",
                             "<vd:arg\n<vd:arg\n<vd:arg"}) {
        EXPECT_THAT(argumentsOf(line), ElementsAre(plain(""))) << line;
    }
}

TEST(AuxiliaryXMLFile, StartsEachLineAfresh) {
    EXPECT_THAT(argumentsOf("<vd:arg vd:originalName=\"a\" vd:busTypeRef=\"bus\"\n"
                            "<vd:arg vd:originalName=\"b\"\n"
                            "<vd:arg vd:busTypeRef=\"\"acc_fifo\"\n"
                            "<vd:arg vd:originalName=\"c\"\n"),
                ElementsAre(plain("a", "int"), plain("b"), plain("", "int*"), plain("c")));
}

TEST(AuxiliaryXMLFile, KeepsTheFirstArgumentOfAName) {
    EXPECT_THAT(argumentsOf("<vd:arg vd:originalName=\"n\" vd:busTypeRef=\"bus\"\n"
                            "<vd:arg vd:originalName=\"m\"\n"
                            "<vd:arg vd:originalName=\"n\" vd:busTypeRef=\"\"acc_fifo\"\n"),
                ElementsAre(plain("n", "int"), plain("m")));
}

TEST(AuxiliaryXMLFile, ComparesSourceNamesForThat) {
    EXPECT_THAT(argumentsOf("<vd:arg vd:originalName=\"out_r\"\n"
                            "<vd:arg vd:originalName=\"out\"\n"),
                ElementsAre(VariableTexts{"out", "out_r", ""}));
    EXPECT_THAT(argumentsOf("<vd:arg vd:originalName=\"out\"\n"
                            "<vd:arg vd:originalName=\"out_r\"\n"),
                ElementsAre(plain("out")));
}

TEST(AuxiliaryXMLFile, GivesReservedWordsTheirSourceNames) {
    EXPECT_EQ(argumentOf("vd:originalName=\"out_r\""), (VariableTexts{"out", "out_r", ""}));
    EXPECT_EQ(argumentOf("vd:originalName=\"std_logic_r\""),
              (VariableTexts{"std_logic", "std_logic_r", ""}));
    for (const char* name : {"out", "data_r", "Out_r", "out_r_r", "_r", "out_R"}) {
        EXPECT_EQ(argumentOf("vd:originalName=\"" + std::string(name) + '"'), plain(name)) << name;
    }
}

TEST(AuxiliaryXMLFile, MapsTheNameAfterDroppingTheLastCharacter) {
    EXPECT_EQ(argumentOf("vd:originalName=\"out_rr"), (VariableTexts{"out", "out_r", ""}));
    EXPECT_EQ(argumentOf("vd:originalName=\"out_r\"/>"), plain("out_r\"/"));
}

// Values

TEST(AuxiliaryXMLFile, DropsTheQuoteAndTheLastCharacterOfAName) {
    EXPECT_EQ(argumentOf("vd:originalName=\"n\"/>"), plain("n\"/"));
    EXPECT_EQ(argumentOf("vd:originalName=\"n\">"), plain("n\""));
    EXPECT_EQ(argumentOf("vd:originalName='n'"), plain("n"));
    EXPECT_EQ(argumentOf("vd:originalName=name"), plain("am"));
    EXPECT_EQ(argumentOf("vd:originalName=\"vd:originalName=\"n\""), plain("vd:originalName=\"n"));
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\"/>"), "k\"/");
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\">"), "k\"");
}

TEST(AuxiliaryXMLFile, EndsANameAtItsFirstBlank) {
    EXPECT_EQ(argumentOf("vd:originalName=\"two words\""), plain("tw"));
    EXPECT_EQ(argumentOf("vd:originalName=\"n n\""), plain(""));
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"two words\""), "tw");
}

TEST(AuxiliaryXMLFile, TakesVeryShortNamesForEmptyOnes) {
    EXPECT_EQ(argumentOf("vd:originalName=\"\"n"), plain("\""));
    for (const char* word : {"vd:originalName=\"", "vd:originalName=\"\"", "vd:originalName=ab"}) {
        EXPECT_EQ(argumentOf(word), plain("")) << word;
    }
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"\"k"), "\"");
    for (const char* word : {"vd:functionName=\"", "vd:functionName=\"\"", "vd:functionName=ab"}) {
        EXPECT_EQ(nameOf("<vd:acceleratorMap " + std::string(word)), "") << word;
    }
}

TEST(AuxiliaryXMLFile, IgnoresWordsThatOnlyResembleAnAttribute) {
    for (const char* word :
         {"vd:originalName", "originalName=\"n\"", "vd:OriginalName=\"n\"",
          "xvd:originalName=\"n\"", "vd:originalNames=\"n\"", "\"vd:originalName=\"n\"",
          "vd:busTypeRef", "vd:busTypeRe", "busTypeRef=\"bus\"", "vd:bustyperef=\"bus\"",
          "vd:functionName=\"n\""}) {
        EXPECT_EQ(argumentOf(word), plain("")) << word;
    }
    for (const char* word : {"vd:functionName", "functionName=\"k\"", "vd:FunctionName=\"k\"",
                             "vd:originalName=\"k\"", "vd:busTypeRef=\"k\""}) {
        EXPECT_EQ(nameOf("<vd:acceleratorMap " + std::string(word)), "") << word;
    }
}

TEST(AuxiliaryXMLFile, LetsLaterWordsOverwriteEarlierOnes) {
    EXPECT_EQ(argumentOf("vd:originalName=\"a\" vd:originalName=\"out_r\""),
              (VariableTexts{"out", "out_r", ""}));
    EXPECT_EQ(argumentOf("vd:originalName=\"a\" vd:originalName=\"\""), plain(""));
    EXPECT_EQ(typeOf("vd:busTypeRef=\"\"acc_fifo\" vd:busTypeRef=\"bus\""), "int");
    EXPECT_EQ(typeOf("vd:busTypeRef=\"bus\" vd:busTypeRef=\"\"acc_fifo\""), "int*");
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\" vd:functionName=\"m\""), "m");
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\" vd:functionName=\"\""), "");
}

// Types

TEST(AuxiliaryXMLFile, ComparesTheBusTypeFromBehindItsFirstQuote) {
    EXPECT_EQ(typeOf("vd:busTypeRef=\"acc_fifo\""), "int");
    EXPECT_EQ(typeOf("vd:busTypeRef=\"\"acc_fifo\""), "int*");
}

TEST(AuxiliaryXMLFile, TakesAnyCharacterInPlaceOfThatQuote) {
    EXPECT_EQ(typeOf("vd:busTypeRef=x\"acc_fifo\""), "int*");
    EXPECT_EQ(typeOf("vd:busTypeRef='\"acc_fifo\""), "int*");
}

TEST(AuxiliaryXMLFile, TakesEveryOtherBusTypeForAnInt) {
    for (const char* value :
         {"\"", "\"\"", "\"a", "\"acc_scalar\"", "acc_fifo", "\"\"acc_fifo", "\"acc_fifo\"\"",
          "\"\"acc_fifo\"\"", "\"\"acc_fifo\"/>", "\"\"ACC_FIFO\"", "\"'acc_fifo'", "\"int*\""}) {
        EXPECT_EQ(typeOf("vd:busTypeRef=" + std::string(value)), "int") << value;
    }
}

TEST(AuxiliaryXMLFile, EndsABusTypeAtItsFirstBlank) {
    EXPECT_EQ(typeOf("vd:busTypeRef=\" \"acc_fifo\""), "int");
    EXPECT_EQ(typeOf("vd:busTypeRef=\"\"acc_fifo\" \""), "int*");
}

// Attributes without a value

TEST(AuxiliaryXMLFile, ThrowsOnAnAttributeThatEndsBeforeItsValue) {
    expectThrown("<vd:arg vd:originalName=", stopAt(1, "\"vd:originalName=\" has no value"));
    expectThrown("<vd:arg vd:busTypeRef=\n", stopAt(1, "\"vd:busTypeRef=\" has no value"));
    expectThrown("<vd:acceleratorMap vd:functionName=\n",
                 stopAt(1, "\"vd:functionName=\" has no value"));
}

TEST(AuxiliaryXMLFile, ThrowsAwayAllThatCameBeforeSuchAnAttribute) {
    expectThrown(typicalText + "\n <vd:arg vd:originalName=\"n\" vd:busTypeRef= \"bus\" />\n",
                 stopAt(10, "\"vd:busTypeRef=\" has no value"));
}

TEST(AuxiliaryXMLFile, ThrowsBeforeALaterWordCanMendIt) {
    expectThrown("<vd:arg vd:originalName= vd:originalName=\"n\"\n",
                 stopAt(1, "\"vd:originalName=\" has no value"));
    expectThrown("<vd:acceleratorMap vd:functionName= vd:functionName=\"k\"\n",
                 stopAt(1, "\"vd:functionName=\" has no value"));
}

TEST(AuxiliaryXMLFile, DoesNotThrowOnLinesThatTheAttributeDoesNotBelongTo) {
    EXPECT_EQ(binaryForm(kernelIn("<vd:other vd:originalName= vd:busTypeRef= vd:functionName=\n"
                                  "<vd:arg vd:functionName= vd:originalName=\"n\"\n"
                                  "<vd:acceleratorMap vd:originalName= vd:busTypeRef=\n")),
              record({.arguments = {variable("n", "n", "")}}));
}

// Accelerator maps

TEST(AuxiliaryXMLFile, KeepsTheNameOfTheLastAcceleratorMap) {
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\"\n"
                     "<vd:acceleratorMap vd:functionName=\"m\"\n"),
              "m");
}

TEST(AuxiliaryXMLFile, NamesTheKernelNothingAfterAMapWithoutAFunction) {
    for (const char* line : {"<vd:acceleratorMap", "<vd:acceleratorMap ", "<vd:acceleratorMap />",
                             "<vd:acceleratorMap vd:componentRef=\"c\"\n"}) {
        EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\"\n" + std::string(line)), "")
            << line;
    }
}

TEST(AuxiliaryXMLFile, TakesTheArgumentsOfAllMapsForOneKernel) {
    EXPECT_EQ(binaryForm(kernelIn("<vd:arg vd:originalName=\"a\"\n"
                                  "<vd:acceleratorMap vd:functionName=\"k\"\n"
                                  "<vd:arg vd:originalName=\"b\"\n"
                                  "<vd:acceleratorMap vd:functionName=\"m\"\n"
                                  "<vd:arg vd:originalName=\"c\"\n")),
              record({.name = "m",
                      .arguments = {variable("a", "a", ""), variable("b", "b", ""),
                                    variable("c", "c", "")}}));
}

TEST(AuxiliaryXMLFile, KeepsAFunctionNameThatIsAReservedWordAsItIs) {
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"out_r\"\n"), "out_r");
}

// Lines

TEST(AuxiliaryXMLFile, ReadsLinesWithCarriageReturns) {
    std::string text;
    for (const char c : typicalText) {
        text += c == '\n' ? "\r\n" : std::string(1, c);
    }
    EXPECT_EQ(binaryForm(kernelIn(text)), typicalRecord);
    EXPECT_EQ(argumentOf("vd:busTypeRef=\"\"acc_fifo\"\r"), plain("", "int*"));
    EXPECT_EQ(argumentOf("vd:originalName=\"n\"\r"), plain("n"));
}

TEST(AuxiliaryXMLFile, EndsLinesAtLineFeedsOnly) {
    EXPECT_THAT(argumentsOf("text\r<vd:arg vd:originalName=\"n\"\r\v\f"), IsEmpty());
}

TEST(AuxiliaryXMLFile, NeedsNoNewlineBehindTheLastLine) {
    EXPECT_THAT(argumentsOf("<vd:arg vd:originalName=\"n\""), ElementsAre(plain("n")));
    EXPECT_EQ(nameOf("<vd:acceleratorMap vd:functionName=\"k\""), "k");
}

TEST(AuxiliaryXMLFile, EndsALineAtItsFirstZeroByte) {
    EXPECT_THAT(argumentsOf(bytes("<vd:arg vd:originalName=\"a\"\0 vd:busTypeRef=\"bus\"\n"
                                  "<vd:arg vd:originalName=\"bc\0d\"\n"
                                  "\0<vd:arg vd:originalName=\"e\"\n"
                                  "<vd:arg\0vd:originalName=\"f\"\n"
                                  "<vd:arg vd:originalName=\"g\" vd:busTypeRef=\"bus\"\n")),
                ElementsAre(plain("a"), plain("b"), plain(""), plain("g", "int")));
}

TEST(AuxiliaryXMLFile, ThrowsWhenAZeroByteCutsAnAttributeOff) {
    expectThrown(bytes("<vd:arg vd:originalName=\0\"n\"\n"),
                 stopAt(1, "\"vd:originalName=\" has no value"));
}

TEST(AuxiliaryXMLFile, TakesHighBytesAsPartsOfNames) {
    EXPECT_EQ(argumentOf("vd:originalName=\"\xC3\xA9\xFF\xA0\x85\""),
              plain("\xC3\xA9\xFF\xA0\x85"));
}

/// An argument whose line has so many characters.
struct LongLine {
    explicit LongLine(std::size_t length)
        : name(length - std::string_view("<vd:arg vd:originalName=\"\"").size(), 'n'),
          text("<vd:arg vd:originalName=\"" + name + '"') {
        EXPECT_EQ(text.size(), length);
    }

    std::string name;
    std::string text;
};

TEST(AuxiliaryXMLFile, ReadsLinesOfUpTo1023Characters) {
    const std::string more = "\n<vd:arg vd:originalName=\"m\"\n";
    for (const std::size_t length : {1022U, 1023U}) {
        const LongLine line(length);
        EXPECT_THAT(argumentsOf(line.text), ElementsAre(plain(line.name))) << length;
        EXPECT_THAT(argumentsOf(line.text + "\n"), ElementsAre(plain(line.name))) << length;
        EXPECT_THAT(argumentsOf(line.text + more), ElementsAre(plain(line.name), plain("m")))
            << length;
    }
}

/// The line amid others.
std::string amidOthers(const std::string& line) {
    return typicalText + line + "\n" + typicalText;
}

TEST(AuxiliaryXMLFile, FailsInSilenceOnALongerLine) {
    for (const std::size_t length : {1024U, 1025U, 100000U}) {
        const LongLine line(length);
        expectSilentFailure(line.text);
        expectSilentFailure(line.text + "\n");
        expectSilentFailure(amidOthers(line.text));
        expectSilentFailure(std::string(length, ' '));
        expectSilentFailure(std::string(length, '\0') + "\n");
    }
}

TEST(AuxiliaryXMLFile, CountsACarriageReturnAsACharacterOfTheLine) {
    const LongLine line(1022);
    EXPECT_THAT(argumentsOf(line.text + "\r\n"), ElementsAre(plain(line.name)));
    expectSilentFailure(LongLine(1023).text + "\r\n");
}

// Files that cannot be read

TEST(AuxiliaryXMLFile, FailsInSilenceOnADirectory) {
    const TemporaryDirectory directory;
    const Reading reading = readFile<AuxiliaryXMLFile>(directory.path("."));
    EXPECT_FALSE(reading.succeeded);
    EXPECT_THAT(reading.kernels, IsEmpty());
    EXPECT_EQ(reading.stop(), stopAt(1, "the file cannot be read"));
}

TEST(AuxiliaryXMLFile, FailsInSilenceWhereReadingBreaksOff) {
    for (const std::string& text : {typicalText, std::string("<vd:arg")}) {
        const Reading reading = readBroken<AuxiliaryXMLFile>(text);
        EXPECT_FALSE(reading.succeeded) << text;
        EXPECT_THAT(reading.kernels, IsEmpty()) << text;
        EXPECT_EQ(reading.stop().text, "the file cannot be read") << text;
    }
}

// Explanations

TEST(AuxiliaryXMLFile, ExplainsThatALineIsTooLong) {
    EXPECT_EQ(readAux("\n<vd:arg\n" + std::string(1024, 'x') + "\n<vd:arg\n").stop(),
              stopAt(3, "the line has more than 1023 characters"));
}

TEST(AuxiliaryXMLFile, ExplainsThatTheFileCannotBeOpened) {
    const TemporaryDirectory directory;
    EXPECT_EQ(AuxiliaryXMLFile(directory.path("missing")).diagnostic().stopped(),
              stopAt(0, "cannot be opened: No such file or directory"));
}

TEST(AuxiliaryXMLFile, StatesTheLineOfAnAttributeWithoutAValue) {
    expectThrown("\n\n<vd:arg\n<vd:arg vd:busTypeRef=\n",
                 stopAt(4, "\"vd:busTypeRef=\" has no value"));
}

TEST(AuxiliaryXMLFile, RemarksOnNamesThatAreMissing) {
    EXPECT_THAT(
        remarksOn("<vd:arg\n\n<vd:acceleratorMap\n<vd:arg vd:originalName=\"\"\n"
                  "<vd:acceleratorMap vd:functionName=\"\n"),
        ElementsAre(warningAt(1, Code::NamelessArgument, "an argument without a name is made"),
                    warningAt(3, Code::NamelessMap, "the accelerator map names no function"),
                    warningAt(4, Code::RepeatedArgument,
                              "argument \"\" came before; this one is passed over"),
                    warningAt(5, Code::NamelessMap, "the accelerator map names no function")));
}

TEST(AuxiliaryXMLFile, RemarksOnAFileWithoutAnAcceleratorMap) {
    EXPECT_THAT(remarksOn("<vd:arg vd:originalName=\"n\"\n<vd:acceleratorMap>\n"),
                ElementsAre(warningAt(
                    0, Code::NoAcceleratorMap,
                    "no line begins with \"<vd:acceleratorMap\": the kernel has no name")));
}

// Damaged files

TEST(AuxiliaryXMLFile, ThrowsOnThoseBeginningsOfAFileThatEndBeforeAValue) {
    for (std::size_t size = 0; size <= typicalText.size(); ++size) {
        const std::string text = typicalText.substr(0, size);
        if (text.ends_with("vd:originalName=") || text.ends_with("vd:busTypeRef=") ||
            text.ends_with("vd:functionName=")) {
            EXPECT_THROW(readAux(text), std::out_of_range) << text;
        } else {
            EXPECT_TRUE(readAux(text).succeeded) << text;
        }
    }
}

TEST(AuxiliaryXMLFile, ReadsAFileOfManyArguments) {
    std::string text;
    std::vector<VariableTexts> expected;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = "arg_" + std::to_string(i);
        text.append("<vd:arg vd:originalName=\"").append(name).append("\" />\n");
        expected.push_back(plain(name));
    }
    EXPECT_TRUE(argumentsOf(text) == expected);
}

} // namespace

} // namespace consolidator::test
