// The hierarchy reader: which kernels a text gives, which texts are refused and what is said then.

#include "readers/HierarchyFile.h"

#include "tests/support/Bytes.h"
#include "tests/support/FailingSource.h"
#include "tests/support/ReaderFindings.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The three things that a hierarchy file says about a kernel.
struct Found {
    std::string name;
    KernelType type = KernelType::Unknown;
    std::vector<std::string> instancePaths = {};

    bool operator==(const Found&) const = default;
};

/// A kernel of unknown type with these instance paths.
Found unknownAt(const std::string& name, const std::vector<std::string>& instancePaths) {
    return {name, KernelType::Unknown, instancePaths};
}

void PrintTo(const Found& found, std::ostream* out) {
    *out << testing::PrintToString(found.name) << " of type " << label(found.type) << " at "
         << testing::PrintToString(found.instancePaths);
}

std::vector<Found> foundBy(const HierarchyFile& reader) {
    std::vector<Found> result;
    for (const Kernel& kernel : reader.kernels()) {
        EXPECT_TRUE(kernel.arguments().empty() && kernel.variables().empty() &&
                    kernel.hardwareVariables().empty() && kernel.breakableConditions().empty() &&
                    kernel.brams().empty());
        result.push_back({kernel.name(), kernel.type(), kernel.instancePaths()});
    }
    return result;
}

/// All that a read left behind.
struct Reading {
    bool succeeded = false;
    std::vector<Found> kernels;
    float version = 0;
    std::string messages;
    bool messagesWentBad = false;
    Diagnostic diagnostic;
};

Reading readWith(HierarchyFile& reader, const std::ostringstream& errors) {
    EXPECT_TRUE(reader.isOpen());
    Reading result;
    result.succeeded = reader.parse();
    result.kernels = foundBy(reader);
    result.version = reader.version();
    result.messages = errors.str();
    result.messagesWentBad = errors.bad();
    result.diagnostic = reader.diagnostic();
    EXPECT_NE(result.succeeded, result.diagnostic.stopped().has_value());
    return result;
}

Reading readFrom(std::unique_ptr<std::streambuf> source) {
    std::ostringstream errors;
    HierarchyFile reader(std::move(source), errors);
    return readWith(reader, errors);
}

Reading readText(const std::string& text) {
    return readFrom(std::make_unique<std::stringbuf>(text));
}

Reading readFile(const std::string& path) {
    std::ostringstream errors;
    HierarchyFile reader(path, errors);
    return readWith(reader, errors);
}

/// The kernels of a text that must be read to its end without a message.
std::vector<Found> kernelsOf(const std::string& text) {
    const Reading reading = readText(text);
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.messages, "");
    return reading.kernels;
}

void expectParseError(const std::string& text) {
    const Reading reading = readText(text);
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(reading.messages, "Parse error\n");
}

void expectSilentFailure(const std::string& text) {
    const Reading reading = readText(text);
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(reading.messages, "");
}

/// The message about a file of this version, which is read from a file named "system.hier".
std::string messagesAboutVersion(const std::string& number) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("system.hier", "version: " + number + "\n");
    const Reading reading = readFile(path);
    EXPECT_FALSE(reading.succeeded);
    const std::string start = "Unsupported hierarchy file: " + path + "\n";
    EXPECT_TRUE(reading.messages.starts_with(start)) << reading.messages;
    return reading.messages.substr(std::min(start.size(), reading.messages.size()));
}

void expectAcceptedVersion(const std::string& number, float version) {
    const Reading reading = readText("version: " + number + "\n");
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.version, version);
    EXPECT_EQ(reading.messages, "");
    EXPECT_THAT(reading.kernels, IsEmpty());
}

Finding stopOf(const std::string& text) {
    return readText(text).diagnostic.stopped().value_or(stopAt(0, "not stopped"));
}

std::vector<Finding> remarksOn(const std::string& text) {
    return readText(text).diagnostic.remarks();
}

const std::string typicalText = "# made by the linker\n"
                                "version: 1.0\n"
                                "scale_rows\n"
                                "type: hls\n"
                                "instance path: top/scale_rows_1\n"
                                "instance path: top/scale_rows_2\n"
                                "# the next one\n"
                                "checksum\n"
                                "type: clc\n"
                                "instance path: top/checksum_1\n";

const std::vector<Found> typicalKernels = {
    {"scale_rows", KernelType::HLS, {"top/scale_rows_1", "top/scale_rows_2"}},
    {"checksum", KernelType::OpenCL, {"top/checksum_1"}}};

// Kernels and what belongs to them

TEST(HierarchyFile, ReadsNamesTypesAndInstancePathsInFileOrder) {
    const Reading reading = readText(typicalText);
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.kernels, typicalKernels);
    EXPECT_EQ(reading.version, 1.0F);
    EXPECT_EQ(reading.messages, "");
    EXPECT_THAT(reading.diagnostic.remarks(), IsEmpty());
}

TEST(HierarchyFile, ReadsAFileNamedByItsPath) {
    const TemporaryDirectory directory;
    const Reading reading = readFile(directory.write("system.hier", typicalText));
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.kernels, typicalKernels);
    EXPECT_EQ(reading.messages, "");
}

TEST(HierarchyFile, KnowsTheNameOfAFileAndNoneOfATextInMemory) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("system.hier", typicalText);
    EXPECT_EQ(HierarchyFile(path).fileName(), path);
    EXPECT_EQ(HierarchyFile(std::make_unique<std::stringbuf>(typicalText)).fileName(),
              std::nullopt);
}

TEST(HierarchyFile, IsNotOpenWhenThereIsNoFile) {
    const TemporaryDirectory directory;
    std::ostringstream errors;
    const HierarchyFile reader(directory.path("missing.hier"), errors);
    EXPECT_FALSE(reader.isOpen());
    EXPECT_THAT(reader.kernels(), IsEmpty());
    EXPECT_EQ(reader.version(), -1.0F);
    EXPECT_EQ(errors.str(), "");
}

TEST(HierarchyFile, TakesTheLastKernelWithoutANameBehindIt) {
    EXPECT_THAT(kernelsOf("scale_rows type: ip"),
                ElementsAre(Found{"scale_rows", KernelType::RTL}));
}

TEST(HierarchyFile, GivesBareNamesNoTypeAndNoPaths) {
    EXPECT_THAT(kernelsOf("scale_rows\nchecksum"),
                ElementsAre(Found{"scale_rows"}, Found{"checksum"}));
}

TEST(HierarchyFile, StartsEachKernelAfreshAfterTheOneBefore) {
    EXPECT_THAT(kernelsOf("scale_rows type: hls instance path: top/s checksum"),
                ElementsAre(Found{"scale_rows", KernelType::HLS, {"top/s"}}, Found{"checksum"}));
}

TEST(HierarchyFile, KeepsTwoRecordsOfOneName) {
    EXPECT_THAT(
        kernelsOf("scale_rows type: c scale_rows instance path: top/s\n"),
        ElementsAre(Found{"scale_rows", KernelType::C}, unknownAt("scale_rows", {"top/s"})));
}

TEST(HierarchyFile, NeedsNoLineEndsBetweenWords) {
    std::string text = typicalText.substr(typicalText.find('\n') + 1);
    text.erase(text.find("# the next one\n"), std::string_view("# the next one\n").size());
    std::replace(text.begin(), text.end(), '\n', '\t');
    EXPECT_EQ(kernelsOf(text), typicalKernels);
}

TEST(HierarchyFile, TakesEveryKindOfWhiteSpaceBetweenWords) {
    EXPECT_THAT(kernelsOf(" \t\r\v\f\n scale_rows\vtype:\f\n\nhls\rinstance\n\npath:\n \ntop/s \n"),
                ElementsAre(Found{"scale_rows", KernelType::HLS, {"top/s"}}));
}

TEST(HierarchyFile, ReadsCarriageReturnsAsWhiteSpace) {
    EXPECT_THAT(kernelsOf("# comment\r\nversion: 1.0\r\nscale_rows\r\ntype: hls\r\n"
                          "instance path: top/s\r\n"),
                ElementsAre(Found{"scale_rows", KernelType::HLS, {"top/s"}}));
}

TEST(HierarchyFile, GivesSettingsBeforeTheFirstNameToTheFirstKernel) {
    EXPECT_THAT(kernelsOf("type: ip\nscale_rows\nchecksum"),
                ElementsAre(Found{"scale_rows", KernelType::RTL}, Found{"checksum"}));
    EXPECT_THAT(kernelsOf("instance path: top/a\nscale_rows\ninstance path: top/b\nchecksum"),
                ElementsAre(unknownAt("scale_rows", {"top/a", "top/b"}), Found{"checksum"}));
}

TEST(HierarchyFile, DropsSettingsThatNoNameFollows) {
    EXPECT_THAT(kernelsOf("type: ip\ninstance path: top/a\n"), IsEmpty());
}

TEST(HierarchyFile, KeepsAnInstancePathOnce) {
    EXPECT_THAT(kernelsOf("k instance path: top/a instance path: top/b instance path: top/a\n"),
                ElementsAre(unknownAt("k", {"top/a", "top/b"})));
}

TEST(HierarchyFile, AllowsTwoKernelsTheSamePath) {
    EXPECT_THAT(kernelsOf("k instance path: top/a\nm instance path: top/a\n"),
                ElementsAre(unknownAt("k", {"top/a"}), unknownAt("m", {"top/a"})));
}

TEST(HierarchyFile, TakesTheLastOfSeveralTypes) {
    EXPECT_THAT(kernelsOf("k type: hls type: c\n"), ElementsAre(Found{"k", KernelType::C}));
    EXPECT_THAT(kernelsOf("k type: hls type: other\n"), ElementsAre(Found{"k"}));
}

class HierarchyFileType : public testing::TestWithParam<std::pair<std::string, KernelType>> {};

TEST_P(HierarchyFileType, IsReadFromItsWord) {
    const auto& [word, type] = GetParam();
    EXPECT_THAT(kernelsOf("k\ntype: " + word + "\n"), ElementsAre(Found{"k", type}));
}

INSTANTIATE_TEST_SUITE_P(
    Words, HierarchyFileType,
    testing::Values(std::pair("clc", KernelType::OpenCL), std::pair("c", KernelType::C),
                    std::pair("ip", KernelType::RTL), std::pair("hls", KernelType::HLS),
                    std::pair("unknown", KernelType::Unknown),
                    std::pair("HLS", KernelType::Unknown), std::pair("CLC", KernelType::Unknown),
                    std::pair("C", KernelType::Unknown), std::pair("IP", KernelType::Unknown),
                    std::pair("hls_", KernelType::Unknown), std::pair("cl", KernelType::Unknown),
                    std::pair("type:", KernelType::Unknown), std::pair("#", KernelType::Unknown),
                    std::pair("4", KernelType::Unknown)));

// Words that are almost keywords

TEST(HierarchyFile, TakesEveryUnknownWordForAName) {
    EXPECT_THAT(kernelsOf("path: version type instance: Version: Type: Instance VERSION: a#b"),
                ElementsAre(Found{"path:"}, Found{"version"}, Found{"type"}, Found{"instance:"},
                            Found{"Version:"}, Found{"Type:"}, Found{"Instance"}, Found{"VERSION:"},
                            Found{"a#b"}));
}

TEST(HierarchyFile, TakesAKeywordGluedToItsValueForAName) {
    EXPECT_THAT(kernelsOf("version:1.0 type:hls path:top/a"),
                ElementsAre(Found{"version:1.0"}, Found{"type:hls"}, Found{"path:top/a"}));
}

TEST(HierarchyFile, TakesKeywordsAsValues) {
    EXPECT_THAT(kernelsOf("k instance path: type: instance path: instance hls"),
                ElementsAre(unknownAt("k", {"type:", "instance"}), Found{"hls"}));
    EXPECT_THAT(kernelsOf("k type: instance path: top/a"),
                ElementsAre(Found{"k"}, Found{"path:"}, Found{"top/a"}));
}

TEST(HierarchyFile, TakesZeroBytesAndHighBytesAsPartsOfWords) {
    const std::string text = bytes("k\0m\ninstance path: top/\xE4\x85\xA0\xFF\0\n\0\n\xFF");
    EXPECT_THAT(kernelsOf(text),
                ElementsAre(unknownAt(bytes("k\0m"), {bytes("top/\xE4\x85\xA0\xFF\0")}),
                            Found{bytes("\0")}, Found{"\xFF"}));
}

TEST(HierarchyFile, TakesVeryLongWords) {
    const std::string name(200000, 'n');
    const std::string path(300000, 'p');
    EXPECT_THAT(kernelsOf(name + "\ninstance path: " + path + "\n"),
                ElementsAre(unknownAt(name, {path})));
}

TEST(HierarchyFile, ReadsAFileOfManyKernels) {
    constexpr int count = 20000;
    std::string text;
    std::vector<Found> expected;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        text.append("kernel_").append(number).append("\n# nothing\ntype: c\n");
        text.append("instance path: top/k_").append(number).append("\n");
        expected.push_back({"kernel_" + number, KernelType::C, {"top/k_" + number}});
    }
    EXPECT_TRUE(kernelsOf(text) == expected);
    EXPECT_EQ(stopOf(text + "instance\nwrong"),
              stopAt(4 * count + 1, "expected \"path:\" after \"instance\""));
}

// The end of the file

TEST(HierarchyFile, RepeatsANameThatEndsTheFileWithWhiteSpaceBehindIt) {
    EXPECT_THAT(kernelsOf("k\n"), ElementsAre(Found{"k"}, Found{"k"}));
    EXPECT_THAT(kernelsOf("k "), ElementsAre(Found{"k"}, Found{"k"}));
    EXPECT_THAT(kernelsOf("k\r\n"), ElementsAre(Found{"k"}, Found{"k"}));
    EXPECT_THAT(kernelsOf("k\n\n \n\n"), ElementsAre(Found{"k"}, Found{"k"}));
}

TEST(HierarchyFile, DoesNotRepeatANameThatIsTheVeryEnd) {
    EXPECT_THAT(kernelsOf("k"), ElementsAre(Found{"k"}));
    EXPECT_THAT(kernelsOf("a\nk"), ElementsAre(Found{"a"}, Found{"k"}));
}

TEST(HierarchyFile, GivesTypeAndPathsToNeitherOfTheRepeatedNames) {
    EXPECT_THAT(kernelsOf("a type: hls instance path: top/a\nk\n"),
                ElementsAre(Found{"a", KernelType::HLS, {"top/a"}}, Found{"k"}, Found{"k"}));
}

TEST(HierarchyFile, GivesEarlySettingsToTheFirstOfTheRepeatedNames) {
    EXPECT_THAT(kernelsOf("type: ip\nk\n"), ElementsAre(Found{"k", KernelType::RTL}, Found{"k"}));
}

TEST(HierarchyFile, RepeatsNothingAfterAValueWithWhiteSpaceBehindIt) {
    EXPECT_THAT(kernelsOf("k type: hls\n\n"), ElementsAre(Found{"k", KernelType::HLS}));
    EXPECT_THAT(kernelsOf("k instance path: top/k\n\n"), ElementsAre(unknownAt("k", {"top/k"})));
    EXPECT_THAT(kernelsOf("k version: 1.0\n\n"), ElementsAre(Found{"k"}));
}

TEST(HierarchyFile, RepeatsNothingAfterACommentAtTheEnd) {
    for (const char* comment : {"# end\n", "# end", "#\n", "#", "#end\n", "# end\n\n  \n"}) {
        EXPECT_THAT(kernelsOf(std::string("k\n") + comment), ElementsAre(Found{"k"})) << comment;
    }
}

TEST(HierarchyFile, MakesOneNamelessKernelOfAFileWithoutWords) {
    for (const char* text : {"", "\n", "\r\n", " \t\n\n \v\f "}) {
        EXPECT_THAT(kernelsOf(text), ElementsAre(Found{""})) << testing::PrintToString(text);
    }
}

TEST(HierarchyFile, MakesNoKernelOfAFileWithoutNames) {
    for (const char* text : {"version: 1.0\n", "version: 1.0", "# nothing\n", "# nothing", "#",
                             "type: hls\n", "instance path: top/a"}) {
        EXPECT_THAT(kernelsOf(text), IsEmpty()) << text;
    }
}

TEST(HierarchyFile, TakesAMissingTypeForAnUnknownOne) {
    for (const char* text : {"k type: hls type:", "k type: hls type:\n"}) {
        EXPECT_THAT(kernelsOf(text), ElementsAre(Found{"k"})) << text;
    }
    EXPECT_THAT(kernelsOf("type:"), IsEmpty());
}

TEST(HierarchyFile, TakesAMissingPathForTheWordBeforeIt) {
    for (const char* text : {"k instance path:", "k instance path:\n", "k instance\npath: \n\n"}) {
        EXPECT_THAT(kernelsOf(text), ElementsAre(unknownAt("k", {"path:"}))) << text;
    }
}

TEST(HierarchyFile, AcceptsAMissingVersion) {
    for (const char* text : {"version:", "version:\n", "version: \n\n"}) {
        const Reading reading = readText(text);
        EXPECT_TRUE(reading.succeeded) << text;
        EXPECT_EQ(reading.version, -1.0F) << text;
        EXPECT_EQ(reading.messages, "") << text;
        EXPECT_THAT(reading.kernels, IsEmpty()) << text;
    }
    EXPECT_THAT(kernelsOf("k version:"), ElementsAre(Found{"k"}));
}

// Comments

TEST(HierarchyFile, SkipsTheLineOfAWordThatBeginsWithAHash) {
    EXPECT_THAT(kernelsOf("a # b type: hls\n#c d\n  ##e f\n\t#instance nothing\ng"),
                ElementsAre(Found{"a"}, Found{"g"}));
}

TEST(HierarchyFile, GoesOnBehindACommentThatIsAHashAlone) {
    EXPECT_THAT(kernelsOf("#\na\n#\n#\ntype: hls\n"), ElementsAre(Found{"a", KernelType::HLS}));
}

TEST(HierarchyFile, EndsACommentAtALineFeedOnly) {
    EXPECT_THAT(kernelsOf("# one\rtwo\vthree\nk"), ElementsAre(Found{"k"}));
}

TEST(HierarchyFile, SkipsZeroBytesInComments) {
    EXPECT_THAT(kernelsOf(bytes("# a\0b\nk")), ElementsAre(Found{"k"}));
}

TEST(HierarchyFile, SkipsTheRestOfALineBehindAType) {
    EXPECT_THAT(kernelsOf("k type: hls # or c\ninstance path: top/k # and more\nm"),
                ElementsAre(Found{"k", KernelType::HLS, {"top/k"}}, Found{"m"}));
}

TEST(HierarchyFile, SkipsTheRestOfALineBehindAVersion) {
    EXPECT_THAT(kernelsOf("version: 1.0 # scale_rows\nchecksum"), ElementsAre(Found{"checksum"}));
    EXPECT_THAT(kernelsOf("version: 1.0# scale_rows\nchecksum"), ElementsAre(Found{"checksum"}));
}

TEST(HierarchyFile, TakesAHashAsAValue) {
    EXPECT_THAT(kernelsOf("k instance path: #x y"),
                ElementsAre(unknownAt("k", {"#x"}), Found{"y"}));
    EXPECT_THAT(kernelsOf("k type: #x y"), ElementsAre(Found{"k"}, Found{"y"}));
}

TEST(HierarchyFile, RefusesACommentBehindInstance) {
    expectParseError("k instance # path: top/k\npath: top/k\n");
    expectParseError("k instance #x");
}

TEST(HierarchyFile, TakesCommentsOfUpTo254CharactersBehindTheirFirstWord) {
    for (const std::size_t length : {253U, 254U}) {
        // The blank behind the first word counts; the first word does not, however long it is.
        const std::string rest = ' ' + std::string(length - 1, 'c');
        for (const std::string& word : {std::string("#"), '#' + std::string(1000, 'w')}) {
            const std::string comment = word + rest;
            EXPECT_THAT(kernelsOf(comment + "\nk"), ElementsAre(Found{"k"})) << length;
            EXPECT_THAT(kernelsOf("k\n" + comment), ElementsAre(Found{"k"})) << length;
            EXPECT_THAT(kernelsOf("k\n" + comment + "\n"), ElementsAre(Found{"k"})) << length;
        }
    }
}

TEST(HierarchyFile, StopsInSilenceAtALongerComment) {
    for (const std::size_t length : {255U, 256U, 100000U}) {
        const std::string comment = "# " + std::string(length - 1, 'c');
        expectSilentFailure(comment + "\nk");
        expectSilentFailure(comment + "\n");
        expectSilentFailure(comment);
    }
}

TEST(HierarchyFile, CountsTheBytesOfACommentWhateverTheyAre) {
    EXPECT_THAT(kernelsOf('#' + std::string(1, ' ') + std::string(253, '\0') + "\nk"),
                ElementsAre(Found{"k"}));
    expectSilentFailure("# " + std::string(254, '\xFF') + "\nk");
    expectSilentFailure('#' + std::string(255, ' ') + "\nk");
    expectSilentFailure("# " + std::string(253, 'c') + "\r\nk");
}

TEST(HierarchyFile, TakesACommentWithoutBlanksOfAnyLength) {
    EXPECT_THAT(kernelsOf('#' + std::string(100000, 'c') + "\nk"), ElementsAre(Found{"k"}));
}

TEST(HierarchyFile, KeepsTheKernelsBeforeACommentThatIsTooLong) {
    const Reading reading = readText("a type: c\nb\n# " + std::string(254, 'c') + "\nd\n");
    EXPECT_FALSE(reading.succeeded);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"a", KernelType::C}));
}

// The version

TEST(HierarchyFile, HasNoVersionWithoutAVersionLine) {
    const Reading reading = readText("k type: hls\n");
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.version, -1.0F);
}

TEST(HierarchyFile, AcceptsVersionsUpToOne) {
    expectAcceptedVersion("1.0", 1.0F);
    expectAcceptedVersion("1", 1.0F);
    expectAcceptedVersion("+1.", 1.0F);
    expectAcceptedVersion("10e-1", 1.0F);
    expectAcceptedVersion("0.5", 0.5F);
    expectAcceptedVersion(".5", 0.5F);
    expectAcceptedVersion("0", 0.0F);
    expectAcceptedVersion("-3", -3.0F);
    expectAcceptedVersion("-1e30", -1e30F);
}

TEST(HierarchyFile, AcceptsAVersionThatIsOneAsA32BitNumber) {
    expectAcceptedVersion("1.00000001", 1.0F);
}

TEST(HierarchyFile, AcceptsAVersionThatIsTheVeryEnd) {
    const Reading reading = readText("k\nversion: 0.5");
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.version, 0.5F);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"k"}));
}

TEST(HierarchyFile, AcceptsAVersionBetweenKernels) {
    const Reading reading = readText("k\nversion: 0.5\ntype: hls\nm");
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.version, 0.5F);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"k", KernelType::HLS}, Found{"m"}));
}

TEST(HierarchyFile, TakesTheLastOfSeveralVersions) {
    const Reading reading = readText("version: 1.0\nversion: 0.5\nk");
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.version, 0.5F);
}

TEST(HierarchyFile, TakesTheRestOfAWordBehindAVersionForAName) {
    const Reading reading = readText("version: 1.0gh m");
    EXPECT_TRUE(reading.succeeded);
    EXPECT_EQ(reading.version, 1.0F);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"gh"}, Found{"m"}));
    EXPECT_THAT(kernelsOf("version: 1.0abc\n"), ElementsAre(Found{"abc"}, Found{"abc"}));
    EXPECT_THAT(kernelsOf("version: 0.5.5"), ElementsAre(Found{".5"}));
}

TEST(HierarchyFile, RefusesANewerVersionWithAMessageOfThreeLines) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("system.hier", "version: 1.0001\nk");
    const Reading reading = readFile(path);
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(reading.messages, "Unsupported hierarchy file: " + path +
                                    "\n"
                                    "Version: 1.0001\n"
                                    "Supported Version: 1\n");
    EXPECT_EQ(reading.version, 1.0001F);
    EXPECT_THAT(reading.kernels, IsEmpty());
}

TEST(HierarchyFile, ShowsTheRefusedVersionWithSixDigits) {
    EXPECT_EQ(messagesAboutVersion("2.0"), "Version: 2\nSupported Version: 1\n");
    EXPECT_EQ(messagesAboutVersion("1.1"), "Version: 1.1\nSupported Version: 1\n");
    EXPECT_EQ(messagesAboutVersion("1.0000002"), "Version: 1\nSupported Version: 1\n");
    EXPECT_EQ(messagesAboutVersion("1234.5678"), "Version: 1234.57\nSupported Version: 1\n");
    EXPECT_EQ(messagesAboutVersion("16777217"), "Version: 1.67772e+07\nSupported Version: 1\n");
}

TEST(HierarchyFile, RefusesAVersionTooLargeForItsNumberAsTheLargest) {
    EXPECT_EQ(messagesAboutVersion("1e999"), "Version: 3.40282e+38\nSupported Version: 1\n");
    EXPECT_EQ(readText("version: 1e999").version, std::numeric_limits<float>::max());
}

TEST(HierarchyFile, RefusesANewerVersionThatIsTheVeryEnd) {
    EXPECT_FALSE(readText("version: 2").succeeded);
}

TEST(HierarchyFile, RefusesANewerVersionBehindAnAcceptedOne) {
    const Reading reading = readText("version: 1.0\na\nb\nversion: 1.5\nc");
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(reading.version, 1.5F);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"a"}));
}

TEST(HierarchyFile, EndsItsMessageWhereTheNameOfATextInMemoryWouldStand) {
    const Reading reading = readText("version: 2.0\nk");
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(reading.messages, "Unsupported hierarchy file: ");
    EXPECT_TRUE(reading.messagesWentBad);
}

TEST(HierarchyFile, LeavesTheMessageStreamGoodOtherwise) {
    EXPECT_FALSE(readText("instance").messagesWentBad);
    EXPECT_FALSE(readText("version: abc").messagesWentBad);
}

TEST(HierarchyFile, StopsInSilenceAtAVersionThatIsNoNumber) {
    for (const char* text : {"version: abc\nk", "version: v1.0\nk", "version: # 1.0\nk",
                             "version: -\nk", "version: .\nk", "version: nan\nk", "version: inf\nk",
                             "version: version: 1.0\nk", "version: -1e999\nk", "version: abc"}) {
        expectSilentFailure(text);
    }
}

TEST(HierarchyFile, KeepsTheKernelsBeforeAVersionThatIsNoNumber) {
    const Reading reading = readText("a\nb type: hls\nc\nversion: abc\nd\n");
    EXPECT_FALSE(reading.succeeded);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"a"}, Found{"b", KernelType::HLS}));
}

// Other faults

TEST(HierarchyFile, RefusesInstanceWithoutPath) {
    for (const char* text :
         {"k instance top/k\n", "k instance path top/k\n", "k instance Path: top/k\n",
          "k instance path:top/k\n", "k instance instance path: top/k\n", "instance :"}) {
        expectParseError(text);
    }
}

TEST(HierarchyFile, RefusesInstanceAtTheEnd) {
    for (const char* text : {"k instance", "k instance\n", "instance", "instance  \n\n"}) {
        expectParseError(text);
    }
}

TEST(HierarchyFile, KeepsTheKernelsBeforeAParseError) {
    const Reading reading = readText("a type: c\nb instance path: top/b\nc instance wrong\nd\n");
    EXPECT_FALSE(reading.succeeded);
    EXPECT_THAT(reading.kernels, ElementsAre(Found{"a", KernelType::C}, unknownAt("b", {"top/b"})));
    EXPECT_THAT(readText("a instance wrong").kernels, IsEmpty());
}

TEST(HierarchyFile, StopsInSilenceWhereTheFileCannotBeRead) {
    for (const char* text : {"", "a\nb\n", "a\nb type: hls\n"}) {
        const Reading reading = readFrom(std::make_unique<FailingSource>(text));
        EXPECT_FALSE(reading.succeeded) << text;
        EXPECT_EQ(reading.messages, "") << text;
        EXPECT_EQ(reading.kernels.size(), *text == 'a' ? 1U : 0U) << text;
    }
}

TEST(HierarchyFile, StopsInSilenceAtADirectory) {
    const TemporaryDirectory directory;
    const Reading reading = readFile(directory.path("."));
    EXPECT_FALSE(reading.succeeded);
    EXPECT_EQ(reading.messages, "");
    EXPECT_THAT(reading.kernels, IsEmpty());
}

// Explanations

TEST(HierarchyFile, ExplainsWhyItStoppedAndWhere) {
    EXPECT_EQ(stopOf("k\ntype: hls\ninstance wrong\n"),
              stopAt(3, "expected \"path:\" after \"instance\""));
    EXPECT_EQ(stopOf("k\n\n# " + std::string(254, 'c') + "\nm\n"),
              stopAt(3, "the comment is longer than 254 characters"));
    EXPECT_EQ(stopOf("# one\nversion: abc\n"), stopAt(2, "expected a number after \"version:\""));
    EXPECT_EQ(stopOf("\nversion: 2.0\nk\n"),
              stopAt(2, "version 2 is above 1, the highest that is known"));
}

TEST(HierarchyFile, StatesTheLineOfTheKeywordNotOfWhatFollows) {
    EXPECT_EQ(stopOf("k\ninstance\n\nwrong\n").line, 2U);
    EXPECT_EQ(stopOf("version:\n\n\nabc\n").line, 1U);
    EXPECT_EQ(stopOf("version:\n\n\n2\n").line, 1U);
}

TEST(HierarchyFile, ExplainsThatTheFileCannotBeReadOrOpened) {
    const TemporaryDirectory directory;
    EXPECT_EQ(readFile(directory.path(".")).diagnostic.stopped(),
              stopAt(1, "the file cannot be read"));
    EXPECT_EQ(HierarchyFile(directory.path("missing")).diagnostic().stopped(),
              stopAt(0, "cannot be opened: No such file or directory"));
}

TEST(HierarchyFile, RemarksOnWhatIsNotWhatItSeems) {
    EXPECT_THAT(remarksOn("k\ntype: HLS\nm\ntype:\n\tfpga\n"),
                ElementsAre(warningAt(2, Code::UnknownType,
                                      "type \"HLS\" is none of clc, c, ip, hls and counts as "
                                      "unknown"),
                            warningAt(4, Code::UnknownType,
                                      "type \"fpga\" is none of clc, c, ip, hls and counts as "
                                      "unknown")));
    EXPECT_THAT(remarksOn("a\nk\n\n"),
                ElementsAre(warningAt(2, Code::NameAtEnd,
                                      "kernel name \"k\" ends the file; a second, empty record of "
                                      "that name is made")));
    EXPECT_THAT(remarksOn("k\ninstance path:\n\n"),
                ElementsAre(warningAt(2, Code::MissingPath,
                                      "the file ends after \"instance path:\"; the path is taken "
                                      "to be \"path:\"")));
    EXPECT_THAT(remarksOn(""),
                ElementsAre(warningAt(0, Code::NoWord,
                                      "the file holds no word; a kernel without a name is made")));
}

TEST(HierarchyFile, RemarksOnAnInstanceThatIsTakenForAKernel) {
    EXPECT_THAT(remarksOn("k\ninstance: top/k_1\ntype: c\n"),
                ElementsAre(warningAt(2, Code::InstanceAsKernel,
                                      "\"instance:\" is taken for the name of a kernel; "
                                      "is \"instance path:\" meant?")));
}

TEST(HierarchyFile, RemarksOnNothingInAPlainFile) {
    for (const char* text : {"k", "k type: hls\n", "k\n# end\n", "k instance path: top/k", "#",
                             "version: 1.0\n", "k instance path: path:\n"}) {
        EXPECT_THAT(remarksOn(text), IsEmpty()) << text;
    }
}

// Damaged files

TEST(HierarchyFile, ReadsEveryBeginningOfAFileToAnEnd) {
    const std::string_view whole = "instance path:";
    for (std::size_t size = 0; size <= typicalText.size(); ++size) {
        const std::string text = typicalText.substr(0, size);
        const std::string lastLine = text.substr(text.rfind('\n') + 1);
        const bool cutInstance = lastLine.starts_with("instance") && lastLine.size() < whole.size();
        const Reading reading = readText(text);
        EXPECT_EQ(reading.succeeded, !cutInstance) << text;
        EXPECT_EQ(reading.messages, cutInstance ? "Parse error\n" : "") << text;
    }
}

TEST(HierarchyFile, ReadsAFileWithAnyByteDamagedToAnEnd) {
    for (std::size_t i = 0; i < typicalText.size(); ++i) {
        for (const char byte : {'#', ' ', '\n', '\0', '9', '\xFF'}) {
            std::string text = typicalText;
            text[i] = byte;
            const Reading reading = readText(text);
            EXPECT_LE(reading.kernels.size(), 10U) << text;
            // Only a number that cannot be read, which counts as 0, ends a read in silence.
            EXPECT_EQ(reading.messages.empty(), reading.succeeded || reading.version == 0) << text;
        }
    }
}

} // namespace

} // namespace consolidator::test
