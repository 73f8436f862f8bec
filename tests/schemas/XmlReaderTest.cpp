// What is taken from an XML document and what is skipped, which documents are refused and what is
// said then.

#include "shared/schemas/XmlReader.h"

#include "shared/schemas/Exceptions.h"
#include "tests/support/Bytes.h"
#include "tests/support/Elements.h"
#include "tests/support/Repeated.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

using lmx60::ErrorCode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// All that reading a document left behind.
struct Outcome {
    Mekto::Project project;
    ErrorCode code = ErrorCode::None;
    std::string message = {}; ///< What the exception says.
    std::uint64_t line = 0;
    std::uint64_t column = 0;
    std::string reason = {};
};

Outcome read(const std::string& document) {
    std::istringstream stream(document);
    Outcome outcome;
    try {
        lmx60::readDocument(stream, "kernel.xml", "project", Mekto::Project::kind(),
                            &outcome.project);
    } catch (const lmx60::c_lmx_reader_exception& exception) {
        outcome.code = exception.code();
        outcome.message = exception.what();
        outcome.line = exception.line();
        outcome.column = exception.column();
        outcome.reason = exception.reason();
    }
    return outcome;
}

/// The tree of a document that must be accepted.
Mekto::Project accepted(const std::string& document) {
    const Outcome outcome = read(document);
    EXPECT_EQ(outcome.message, "") << document;
    return outcome.project;
}

void expectRefused(const std::string& document, ErrorCode code = ErrorCode::NotWellFormed) {
    const Outcome outcome = read(document);
    EXPECT_EQ(outcome.code, code) << document << '\n' << outcome.message;
}

/// The document of a platform that holds `content`.
std::string documentAround(std::string_view content) {
    return "<project><platform>" + std::string(content) + "</platform></project>";
}

/// The platform that holds `content`, which must be accepted.
Mekto::Platform platformAround(std::string_view content) {
    const Mekto::Project project = accepted(documentAround(content));
    return project.platform.empty() ? Mekto::Platform() : project.platform[0];
}

/// The text of a description that holds `content`.
std::string textOf(std::string_view content) {
    const auto texts =
        platformAround("<description>" + std::string(content) + "</description>").description;
    return texts.size() == 1 ? texts[0] : "there are " + std::to_string(texts.size());
}

/// The project's name if it stands in the document so.
std::string nameOf(std::string_view attribute) {
    return accepted("<project name=" + std::string(attribute) + "/>").name.value;
}

// What is skipped

TEST(XmlReader, SkipsUnknownElementsWithAllThatIsInside) {
    EXPECT_EQ(accepted("<project><extra><platform name=\"inner\"><extra/><host/></platform>"
                       "<project/>text</extra><platform name=\"outer\"/></project>"),
              accepted("<project><platform name=\"outer\"/></project>"));
}

TEST(XmlReader, FindsTheEndOfUnknownElementsOfOneNameInEachOther) {
    const Mekto::Platform platform =
        platformAround("<extra><extra><extra/></extra><host/></extra><host architecture=\"a\"/>");
    EXPECT_THAT(platform.host, ElementsAre(Mekto::Host{given("a")}));
}

TEST(XmlReader, SkipsKnownElementsThatStandElsewhere) {
    EXPECT_EQ(accepted("<project><project/><kernel><arg/></kernel><host/></project>"),
              Mekto::Project());
    EXPECT_EQ(platformAround("<kernel name=\"k\"/><platform/><core><kernel/></core>"),
              Mekto::Platform());
}

TEST(XmlReader, SkipsUnknownAttributes) {
    EXPECT_EQ(accepted("<project color=\"red\" name=\"demo\" vendor=\"v\" Name=\"x\"/>"),
              accepted("<project name=\"demo\"/>"));
    EXPECT_THAT(platformAround("<description language=\"en\">text</description>").description,
                ElementsAre("text"));
}

TEST(XmlReader, DoesNotCheckTheAttributesOfWhatItSkips) {
    EXPECT_EQ(platformAround("<extra><arg addressQualifier=\"none\"/></extra>"), Mekto::Platform());
}

TEST(XmlReader, StillRefusesWhatIsNotWellFormedInsideOfWhatItSkips) {
    expectRefused(documentAround("<extra><a></b></extra>"));
    expectRefused(documentAround("<extra a=\"1\" a=\"2\"/>"));
    expectRefused(documentAround("<extra>&undefined;</extra>"));
}

TEST(XmlReader, SkipsTextBetweenElements) {
    EXPECT_EQ(platformAround(" a <host/> b <![CDATA[<host/>]]> c "), platformAround("<host/>"));
}

TEST(XmlReader, SkipsCommentsAndProcessingInstructionsEverywhere) {
    EXPECT_EQ(accepted("<!-- a --><?b c?>\n<project><!-- <platform/> --><?d?><platform/>"
                       "</project>\n<!-- e --><?f?>\n"),
              accepted("<project><platform/></project>"));
}

TEST(XmlReader, TakesPrefixedNamesAsTheyStand) {
    EXPECT_EQ(accepted("<project xmlns:p=\"urn:p\" p:name=\"x\" xmlns=\"urn:q\">"
                       "<p:platform/></project>"),
              Mekto::Project());
    expectRefused("<p:project xmlns:p=\"urn:p\"/>", ErrorCode::UnexpectedRoot);
}

TEST(XmlReader, SkipsUnknownElementsNestedAMillionDeep) {
    constexpr std::size_t depth = 1'000'000;
    const Mekto::Platform platform =
        platformAround(repeated("<a>", depth) + "<host/>" + repeated("</a>", depth) +
                       "<host architecture=\"x\"/>");
    EXPECT_THAT(platform.host, ElementsAre(Mekto::Host{given("x")}));
}

// Texts and attribute values

TEST(XmlReader, TakesTextsAsTheyStand) {
    EXPECT_EQ(textOf("plain"), "plain");
    EXPECT_EQ(textOf(""), "");
    EXPECT_EQ(textOf(" \n\ta  b\n "), " \n\ta  b\n ");
    EXPECT_THAT(platformAround("<description/>").description, ElementsAre(""));
}

TEST(XmlReader, ResolvesReferencesInTexts) {
    EXPECT_EQ(textOf("&lt;a&gt; &amp;amp; &quot;b&apos;"), "<a> &amp; \"b'");
    EXPECT_EQ(textOf("&#65;&#x42;&#x63;&#xE9;&#x1F600;"), "ABc\u00E9\U0001F600");
    EXPECT_EQ(textOf("&#9;&#10;&#13;"), "\t\n\r");
}

TEST(XmlReader, TakesCharacterDataSections) {
    EXPECT_EQ(textOf("a<![CDATA[<b>&amp;</b>]]>c"), "a<b>&amp;</b>c");
    EXPECT_EQ(textOf("<![CDATA[]]>"), "");
    EXPECT_EQ(textOf("<![CDATA[]]]]><![CDATA[>]]>"), "]]>");
}

TEST(XmlReader, JoinsTheTextAroundMarkup) {
    EXPECT_EQ(textOf("a<!-- b -->c<?d?>e"), "ace");
    EXPECT_EQ(textOf("a<b>c<d>e</d></b>f<description>g</description>h"), "afh");
}

TEST(XmlReader, EndsLinesOfTextsWithNewlines) {
    EXPECT_EQ(textOf("a\r\nb\rc\nd\r\r\ne"), "a\nb\nc\nd\n\ne");
    EXPECT_EQ(textOf("<![CDATA[a\r\nb]]>"), "a\nb");
}

TEST(XmlReader, TakesAttributesInEitherQuotes) {
    EXPECT_EQ(nameOf("\"it's\""), "it's");
    EXPECT_EQ(nameOf("'a \"b\"'"), "a \"b\"");
    EXPECT_EQ(nameOf("\"\""), "");
    EXPECT_EQ(nameOf("\"> /> ]]> --\""), "> /> ]]> --");
}

TEST(XmlReader, ResolvesReferencesInAttributes) {
    EXPECT_EQ(nameOf("\"&lt;a&gt; &amp;amp; &quot;b&apos;\""), "<a> &amp; \"b'");
    EXPECT_EQ(nameOf("\"&#65;&#x42;&#xE9;&#9;&#10;&#13;\""), "AB\u00E9\t\n\r");
}

TEST(XmlReader, TurnsWhiteSpaceInAttributesIntoBlanks) {
    EXPECT_EQ(nameOf("\" a\tb\nc\r\nd  e \""), " a b c d  e ");
}

TEST(XmlReader, TakesWhiteSpaceInTags) {
    EXPECT_EQ(accepted("<project\n\tname = \"demo\"\r\n></project >\n"),
              accepted("<project name=\"demo\"/>"));
}

TEST(XmlReader, TakesValuesLargerThanAnyBlockOfTheFile) {
    // With and without a byte in front, so that one of the two has a character across a border.
    const std::string value = repeated("\u00E9", 300'000);
    EXPECT_TRUE(textOf(value) == value);
    EXPECT_TRUE(textOf("-" + value) == "-" + value);
    EXPECT_TRUE(nameOf("\"" + value + "\"") == value);
    EXPECT_TRUE(nameOf("\"-" + value + "\"") == "-" + value);
}

// Numbers

/// The address qualifier of an argument that has this one.
std::optional<std::uint32_t> qualifierOf(const std::string& text) {
    const Outcome outcome = read(documentAround("<device><core><kernel><arg addressQualifier=\"" +
                                                text + "\"/></kernel></core></device>"));
    const Mekto::Arg argument =
        outcome.project.platform.at(0).device.at(0).core.at(0).kernel.at(0).arg.at(0);
    EXPECT_EQ(argument.addressQualifier.present, outcome.code == ErrorCode::None);
    if (outcome.code == ErrorCode::None) {
        return argument.addressQualifier.value;
    }
    EXPECT_EQ(outcome.code, ErrorCode::InvalidValue);
    EXPECT_THAT(outcome.message, HasSubstr("addressQualifier=\"" + text + "\""));
    EXPECT_EQ(argument.addressQualifier.value, 0U);
    return std::nullopt;
}

TEST(XmlReader, TakesNumbersOf32Bits) {
    EXPECT_EQ(qualifierOf("0"), 0U);
    EXPECT_EQ(qualifierOf("4294967295"), 4294967295U);
    EXPECT_EQ(qualifierOf(" 7 "), 7U);
    EXPECT_EQ(qualifierOf("+7"), 7U);
    EXPECT_EQ(qualifierOf("007"), 7U);
}

TEST(XmlReader, RefusesNumbersOutOfRangeAndWhatIsNone) {
    for (const char* const text :
         {"4294967296", "18446744073709551616", "-1", "", "  ", "0x1", "1a", "1 2", "one", "1.0"}) {
        EXPECT_EQ(qualifierOf(text), std::nullopt);
    }
}

TEST(XmlReader, ResolvesReferencesInNumbers) {
    const Mekto::Platform platform = platformAround(
        "<device><core><kernel><arg addressQualifier=\"&#10;&#x34;2\"/></kernel></core></device>");
    EXPECT_EQ(platform.device.at(0).core.at(0).kernel.at(0).arg.at(0).addressQualifier, given(42U));
}

// Roots

TEST(XmlReader, RefusesAnotherRoot) {
    for (const char* const document :
         {"<design/>", "<Project/>", "<projects><project/></projects>", "<platform/>"}) {
        expectRefused(document, ErrorCode::UnexpectedRoot);
    }
}

TEST(XmlReader, NamesTheRootThatItFoundAndTheOneItWanted) {
    const Outcome outcome = read("<!-- c -->\n  <design name=\"demo\"/>");
    EXPECT_THAT(outcome.reason, HasSubstr("design"));
    EXPECT_THAT(outcome.reason, HasSubstr("project"));
    EXPECT_EQ(outcome.line, 2U);
    EXPECT_EQ(outcome.column, 3U);
    EXPECT_EQ(outcome.project, Mekto::Project());
}

// Documents that are not well-formed

TEST(XmlReader, RefusesDocumentsWithoutRoot) {
    for (const char* const document :
         {"", " \n", "<?xml version=\"1.0\"?>", "<!-- c -->", "<!DOCTYPE project>", "project"}) {
        expectRefused(document);
    }
}

TEST(XmlReader, RefusesASecondRootAndTextBehindTheFirst) {
    expectRefused("<project/><project/>");
    expectRefused("<project></project><platform/>");
    expectRefused("<project/>text");
    expectRefused("<project/><![CDATA[]]>");
    expectRefused("<project/>&amp;");
    expectRefused("text<project/>");
}

TEST(XmlReader, RefusesTagsThatDoNotMatch) {
    expectRefused("<project>");
    expectRefused("<project></platform>");
    expectRefused("<project></Project>");
    expectRefused("</project>");
    expectRefused("<project/></project>");
    expectRefused("<project><platform></project></platform>");
}

TEST(XmlReader, RefusesBrokenTags) {
    for (const char* const document :
         {"<project", "<project name", "<project name=", "<project name=demo/>",
          "<project name=\"a/>", "<project name=\"a'/>", "<project name/>",
          "<project name=\"a\"vendor=\"b\"/>", "<project name=\"a<b\"/>", "< project/>",
          "<project/ >", "<pro ject/>", "<1project/>", "<project =\"a\"/>", "<>"}) {
        expectRefused(document);
    }
}

TEST(XmlReader, RefusesAnAttributeThatComesTwice) {
    expectRefused("<project name=\"a\" name=\"b\"/>");
    expectRefused("<project name=\"a\" name=\"a\"/>");
    expectRefused("<project color=\"a\" color=\"b\"/>");
}

TEST(XmlReader, RefusesReferencesThatMeanNothing) {
    for (const char* const reference :
         {"&undefined;", "&amp", "&;", "&", "& ", "&AMP;", "&#0;", "&#8;", "&#xD800;", "&#xFFFE;",
          "&#x110000;", "&#;", "&#x;", "&#a;", "&#65", "&nbsp;"}) {
        expectRefused(documentAround("<description>" + std::string(reference) + "</description>"));
        expectRefused("<project name=\"" + std::string(reference) + "\"/>");
    }
}

TEST(XmlReader, RefusesBrokenMarkup) {
    for (const char* const content :
         {"<!-- c", "<!-- a -- b -->", "<![CDATA[ a", "a]]>b", "<?", "<?a", "<?xml?>", "<!x>"}) {
        expectRefused(documentAround(content));
    }
    expectRefused("\n<?xml version=\"1.0\"?><project/>");
    expectRefused("<?xml version=\"1.0\" encoding=\"utf-8\" version=\"1.0\"?><project/>");
    expectRefused("<?xml encoding=\"utf-8\"?><project/>");
}

TEST(XmlReader, RefusesControlCharacters) {
    for (char c = 0; c < ' '; ++c) {
        if (c != '\t' && c != '\n' && c != '\r') {
            expectRefused(documentAround(std::string("<description>") + c + "</description>"));
            expectRefused(std::string("<project name=\"") + c + "\"/>");
            expectRefused(std::string("<project/>") + c);
        }
    }
}

TEST(XmlReader, RefusesWhatIsNotUtf8) {
    const std::vector<std::string> malformed = {
        "\xFF",             // no first byte
        "\x80",             // a following byte without a first one
        "\xC3(",            // a first byte without a following one
        "\xC0\xAF",         // too long for its character
        "\xE0\x80\xAF",     // too long for its character
        "\xED\xA0\x80",     // half of a pair
        "\xF4\x90\x80\x80", // behind the last character
        "\xEF\xBF\xBE",     // no character
        "\xE4\xB8",         // cut off
        "gr\xFC\xDF"        // another encoding
    };
    for (const std::string& bytes : malformed) {
        expectRefused(documentAround("<description>" + bytes + "</description>"));
        expectRefused("<project name=\"" + bytes + "\"/>");
        expectRefused("<project/><!--" + bytes + "-->");
    }
}

TEST(XmlReader, NamesPlaceAndKindOfAFault) {
    const Outcome outcome = read("<project>\n <platform>\n  <host></device>\n</project>\n");
    EXPECT_EQ(outcome.code, ErrorCode::NotWellFormed);
    EXPECT_EQ(outcome.line, 3U);
    EXPECT_GT(outcome.column, 8U);
    EXPECT_NE(outcome.reason, "");
    EXPECT_EQ(outcome.message, "kernel.xml:3:" + std::to_string(outcome.column) + ": " +
                                   std::string(get_error_description(outcome.code)) + ": " +
                                   outcome.reason);
}

TEST(XmlReader, NamesThePlaceOfTheElementWithAWrongValue) {
    const Outcome outcome = read("<project><platform>\n<device><core><kernel>\n"
                                 "  <arg name=\"n\"/>\n    <arg addressQualifier=\"1a\"/>\n");
    EXPECT_EQ(outcome.code, ErrorCode::InvalidValue);
    EXPECT_EQ(outcome.line, 4U);
    EXPECT_EQ(outcome.column, 5U);
    EXPECT_THAT(outcome.message, HasSubstr("kernel.xml:4:5: "));
    EXPECT_THAT(outcome.message, HasSubstr(get_error_description(ErrorCode::InvalidValue)));
    EXPECT_THAT(outcome.message, HasSubstr(outcome.reason));
}

TEST(XmlReader, CountsLinesOverAllBlocksOfAFile) {
    const Outcome outcome = read("<project>" + std::string(400'000, '\n') + "</platform>");
    EXPECT_EQ(outcome.code, ErrorCode::NotWellFormed);
    EXPECT_EQ(outcome.line, 400'001U);
}

TEST(XmlReader, KeepsWhatCameBeforeAFault) {
    const Outcome outcome =
        read("<project name=\"demo\"><platform name=\"p\"><description>a</description>"
             "<host architecture=\"h\"/><board></x>");
    EXPECT_EQ(outcome.code, ErrorCode::NotWellFormed);
    EXPECT_EQ(outcome.project.name, given("demo"));
    ASSERT_THAT(outcome.project.platform, SizeIs(1));
    EXPECT_EQ(outcome.project.platform[0].name, given("p"));
    EXPECT_THAT(outcome.project.platform[0].description, ElementsAre("a"));
    EXPECT_THAT(outcome.project.platform[0].host, ElementsAre(Mekto::Host{given("h")}));
}

TEST(XmlReader, TakesNothingBehindAWrongValue) {
    const Outcome outcome =
        read(documentAround("<device><core><kernel><arg addressQualifier=\"x\"/><arg/></kernel>"
                            "</core></device><host/>"));
    EXPECT_EQ(outcome.code, ErrorCode::InvalidValue);
    const Mekto::Platform& platform = outcome.project.platform.at(0);
    EXPECT_THAT(platform.host, IsEmpty());
    EXPECT_THAT(platform.device.at(0).core.at(0).kernel.at(0).arg, SizeIs(1));
}

// Encodings

std::string utf16(std::u16string_view text, bool bigEndian) {
    std::string result;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        result += bigEndian ? high : low;
        result += bigEndian ? low : high;
    }
    return result;
}

TEST(Encoding, IsUtf8UnlessTheDocumentSaysOtherwise) {
    EXPECT_EQ(accepted("<project name=\"gr\xC3\xBC\xC3\x9F\"/>").name, given("gr\u00FC\u00DF"));
    EXPECT_EQ(accepted("<?xml version=\"1.0\"?><project name=\"\u00FC\"/>").name, given("\u00FC"));
    EXPECT_EQ(accepted("<?xml version=\"1.0\" encoding=\"utf-8\"?><project name=\"\u00FC\"/>").name,
              given("\u00FC"));
}

TEST(Encoding, MayBeMarkedByTheFirstBytes) {
    EXPECT_EQ(accepted("\xEF\xBB\xBF<project name=\"\u00FC\"/>").name, given("\u00FC"));
    EXPECT_EQ(accepted("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
                       "<project name=\"\u00FC\"/>")
                  .name,
              given("\u00FC"));
}

TEST(Encoding, MayBeLatin1) {
    EXPECT_EQ(accepted("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                       "<project name=\"gr\xFC\xDF\xA0\"/>")
                  .name,
              given("gr\u00FC\u00DF\u00A0"));
}

TEST(Encoding, MayBeAsciiWithoutOtherBytes) {
    const std::string declaration = "<?xml version=\"1.0\" encoding=\"US-ASCII\"?>";
    EXPECT_EQ(accepted(declaration + "<project name=\"demo\"/>").name, given("demo"));
    expectRefused(declaration + "<project name=\"gr\xFC\xDF\"/>");
}

TEST(Encoding, MayBeUtf16OfEitherOrder) {
    constexpr std::u16string_view document =
        u"\uFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"?>"
        u"<project name=\"gr\u00FC\u00DF \u4E16 \U0001F600\"/>";
    for (const bool bigEndian : {false, true}) {
        EXPECT_EQ(accepted(utf16(document, bigEndian)).name,
                  given("gr\u00FC\u00DF \u4E16 \U0001F600"));
    }
}

TEST(Encoding, OfUtf16MustBeWhole) {
    const std::string document = utf16(u"\uFEFF<project name=\"\U0001F600\"/>", false);
    for (std::size_t length = 0; length < document.size(); ++length) {
        expectRefused(document.substr(0, length));
    }
    expectRefused(
        utf16(std::u16string(u"\uFEFF<project name=\"") + char16_t(0xD83D) + u"\"/>", true));
}

TEST(Encoding, MustBeKnown) {
    expectRefused("<?xml version=\"1.0\" encoding=\"x-unknown\"?><project/>");
    expectRefused("<?xml version=\"1.0\" encoding=\"UTF-16\"?><project/>");
}

// Damaged documents

/// A document with every kind of markup that is accepted.
const std::string mixedDocument =
    "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE project SYSTEM \"project.dtd\">\n"
    "<?style plain?><!-- a comment -->\n"
    "<project name='demo &amp; more' xmlns=\"urn:demo\">\n"
    "  <platform name=\"gr\xC3\xBC\xC3\x9F\">\n"
    "    <description>a<![CDATA[<b>]]>&#x63;&lt;<!-- d --></description>\n"
    "    <unknown><host/>&gt;</unknown>\n"
    "    <device><core><kernel name=\"k\"><arg addressQualifier=\"12\"/></kernel></core></device>\n"
    "  </platform>\n"
    "</project>";

TEST(XmlReader, RefusesEveryBeginningOfADocument) {
    for (std::size_t length = 0; length < mixedDocument.size(); ++length) {
        expectRefused(mixedDocument.substr(0, length));
    }
    EXPECT_THAT(accepted(mixedDocument).platform, SizeIs(1));
    EXPECT_THAT(accepted(mixedDocument + "\n").platform, SizeIs(1));
}

TEST(XmlReader, GivesWholeTreesOfDamagedDocumentsOrRefusesThem) {
    for (std::size_t i = 0; i < mixedDocument.size(); ++i) {
        for (const char byte : bytes("\0\x01\t\x80\xC3\xFF<>&\"'/!?[];=a1 ")) {
            std::string damaged = mixedDocument;
            damaged[i] = byte;
            const Outcome outcome = read(damaged);
            EXPECT_EQ(outcome.code == ErrorCode::None, outcome.message.empty());
            if (outcome.code == ErrorCode::None) {
                EXPECT_EQ(accepted(documentOf(outcome.project)), outcome.project) << damaged;
            }
        }
    }
}

// Documents that keep no tree

/// Collects the names of nested lists and of their items in the order of their ends.
class Names {
public:
    static const lmx60::ElementKind& listKind() {
        static constexpr std::array children{lmx60::inPlace("list", listKind),
                                             lmx60::inPlace("item", itemKind)};
        static constexpr lmx60::ElementKind table{.children = children,
                                                  .end = lmx60::call<&Names::endList>};
        return table;
    }

    std::string collected;

private:
    static const lmx60::ElementKind& itemKind() {
        static constexpr std::array attributes{lmx60::attribute<&Names::name_>("name")};
        static constexpr lmx60::ElementKind table{.attributes = attributes,
                                                  .end = lmx60::call<&Names::endItem>};
        return table;
    }

    void endList() { collected += '.'; }
    void endItem() {
        if (name_.value == "bad") {
            throw lmx60::Refusal("no room for it");
        }
        collected += name_.value;
        name_ = {};
    }

    lmx60::Attribute<std::string> name_;
};

Names namesOf(const std::string& document) {
    std::istringstream stream(document);
    Names names;
    lmx60::readDocument(stream, "names.xml", "list", Names::listKind(), &names);
    return names;
}

TEST(XmlReader, ReadsElementsIntoOneObjectAndTellsTheirEnds) {
    EXPECT_EQ(namesOf("<list><item name='a'/><list><item name='b'><item name='x'/></item><item/>"
                      "<extra><item name='y'/></extra></list>text<item name='c'/></list>")
                  .collected,
              "ab.c.");
}

TEST(XmlReader, TellsWhereAnElementWasRefused) {
    try {
        namesOf("<list>\n<item name='a'/>\n  <item name='bad'/>\n<broken");
        FAIL() << "it was accepted";
    } catch (const lmx60::c_lmx_reader_exception& exception) {
        EXPECT_EQ(exception.code(), ErrorCode::TooLarge);
        EXPECT_EQ(exception.line(), 3U);
        EXPECT_EQ(exception.column(), 21U); // behind it, where it has ended
        EXPECT_EQ(exception.reason(), "no room for it");
    }
}

// Exceptions

TEST(ErrorDescription, SaysSomethingElseAboutEveryCode) {
    std::set<std::string_view> descriptions;
    for (const ErrorCode code :
         {ErrorCode::None, ErrorCode::CannotOpen, ErrorCode::CannotRead, ErrorCode::NotWellFormed,
          ErrorCode::UnexpectedRoot, ErrorCode::InvalidValue, ErrorCode::UnsafeDocument,
          ErrorCode::TooLarge}) {
        const std::string_view description = lmx60::get_error_description(code);
        EXPECT_FALSE(description.empty());
        EXPECT_TRUE(descriptions.insert(description).second) << description;
    }
    EXPECT_FALSE(lmx60::get_error_description(static_cast<ErrorCode>(99)).empty());
}

// Watching

/// Notes what it is told: "2 kernel name hash", and "2 core/other" for what is unknown.
class Notes final : public lmx60::DocumentWatcher {
public:
    std::vector<std::string> notes;

    void onElement(const Element& element, std::uint64_t line,
                   std::span<const std::string_view> attributes) override {
        std::string note = std::to_string(line) + ' ' + std::string(element.name);
        for (const std::string_view attribute : attributes) {
            note += ' ' + std::string(attribute);
        }
        notes.push_back(note);
    }

    void onUnknownElement(const Element& parent, std::uint64_t line,
                          std::string_view name) override {
        notes.push_back(std::to_string(line) + ' ' + std::string(parent.name) + '/' +
                        std::string(name));
    }
};

void watch(const std::string& document, lmx60::DocumentWatcher& watcher) {
    std::istringstream stream(document);
    lmx60::watchDocument(stream, "kernel.xml", "project", Mekto::Project::kind(), watcher);
}

TEST(DocumentWatcher, IsToldOfKnownElementsAndOfTheOutermostUnknownOnes) {
    Notes notes;
    watch("<project other=\"\" name=\"\">\n<other><platform/></other>\n"
          "<platform><description>text</description><platform/></platform></project>",
          notes);
    EXPECT_THAT(notes.notes, ElementsAre("1 project other name", "2 project/other", "3 platform",
                                         "3 description", "3 platform/platform"));
}

TEST(DocumentWatcher, IsToldOfElementsWhateverTheirValuesAre) {
    Notes notes;
    watch(documentAround("<device><core><kernel><arg addressQualifier=\"x\"/></kernel></core>"
                         "</device>"),
          notes);
    EXPECT_EQ(notes.notes.back(), "1 arg addressQualifier");
}

TEST(DocumentWatcher, GetsToTheFault) {
    Notes notes;
    EXPECT_THROW(watch("<project><platform></project>", notes), lmx60::c_lmx_reader_exception);
    EXPECT_THAT(notes.notes, ElementsAre("1 project", "1 platform"));
    EXPECT_THROW(watch("<other/>", notes), lmx60::c_lmx_reader_exception);
    EXPECT_THAT(notes.notes, SizeIs(2));
}

TEST(DocumentWatcher, MayEndIt) {
    struct Impatient final : lmx60::DocumentWatcher {
        void onElement(const Element& /*element*/, std::uint64_t /*line*/,
                       std::span<const std::string_view> /*attributes*/) override {
            throw std::length_error("enough");
        }
        void onUnknownElement(const Element& /*parent*/, std::uint64_t /*line*/,
                              std::string_view /*name*/) override {}
    } impatient;
    EXPECT_THROW(watch("<project/>", impatient), std::length_error);
}

TEST(Exception, OfAnyKindHasOneBaseWithCodeAndText) {
    Mekto::Project project;
    for (const auto& [document, code] : {std::pair("<project", ErrorCode::NotWellFormed),
                                         std::pair("<design/>", ErrorCode::UnexpectedRoot)}) {
        try {
            project.readMemory(document);
            FAIL() << document;
        } catch (const lmx60::lmx_exception& exception) {
            EXPECT_EQ(exception.code(), code);
            EXPECT_THAT(exception.what(), HasSubstr("document:1:"));
        }
    }
    try {
        project.readFile("missing/kernel.xml");
        FAIL();
    } catch (const lmx60::lmx_exception& exception) {
        EXPECT_EQ(exception.code(), ErrorCode::CannotOpen);
        EXPECT_THAT(exception.what(), HasSubstr("missing/kernel.xml"));
    }
}

TEST(Exception, HoldsCodeAndText) {
    const lmx60::c_lmx_exception exception(ErrorCode::CannotOpen, "kernel.xml: is not there");
    EXPECT_EQ(exception.code(), ErrorCode::CannotOpen);
    EXPECT_STREQ(exception.what(), "kernel.xml: is not there");
}

TEST(ReaderException, PutsPlaceAndReasonIntoItsText) {
    const lmx60::c_lmx_reader_exception exception(ErrorCode::InvalidValue, "kernel.xml", 12, 34,
                                                  "no number");
    EXPECT_EQ(exception.code(), ErrorCode::InvalidValue);
    EXPECT_EQ(exception.line(), 12U);
    EXPECT_EQ(exception.column(), 34U);
    EXPECT_EQ(exception.reason(), "no number");
    EXPECT_EQ(exception.what(),
              "kernel.xml:12:34: " + std::string(get_error_description(ErrorCode::InvalidValue)) +
                  ": no number");
}

TEST(ReaderException, IsCaughtAsTheGeneralOne) {
    const auto fail = [] {
        throw lmx60::c_lmx_reader_exception(ErrorCode::NotWellFormed, "kernel.xml", 1, 1, "x");
    };
    EXPECT_THROW(fail(), lmx60::c_lmx_exception);
    EXPECT_THROW(fail(), lmx60::lmx_exception);
    EXPECT_THROW(fail(), std::runtime_error);
}

} // namespace

} // namespace consolidator::test
