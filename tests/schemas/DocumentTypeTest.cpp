// What a document type does to its document: entities, default values, what is outside, and how
// much it may make of a small document.

#include "shared/schemas/Exceptions.h"
#include "shared/schemas/XmlReader.h"
#include "tests/support/Elements.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/inotify.h>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

using lmx60::ErrorCode;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

/// All that reading a document left behind.
struct Outcome {
    Mekto::Project project;
    ErrorCode code = ErrorCode::None;
    std::string message = {};
    std::uint64_t line = 0;
};

Outcome read(const std::string& document) {
    Outcome outcome;
    try {
        outcome.project.readMemory(document);
    } catch (const lmx60::c_lmx_reader_exception& exception) {
        outcome.code = exception.code();
        outcome.message = exception.what();
        outcome.line = exception.line();
    }
    return outcome;
}

void expectRefused(const std::string& document, ErrorCode code) {
    const Outcome outcome = read(document);
    EXPECT_EQ(outcome.code, code) << document.substr(0, 1000) << '\n' << outcome.message;
}

/// The type with this internal subset.
std::string typeWith(std::string_view declarations) {
    return "<!DOCTYPE project [" + std::string(declarations) + "]>";
}

/// The document of a platform that holds `content`, with these declarations.
std::string documentWith(std::string_view declarations, std::string_view content) {
    return typeWith(declarations) + "<project><platform>" + std::string(content) +
           "</platform></project>";
}

/// The project's name if it stands in the document so, with these declarations.
std::string nameWith(std::string_view declarations, std::string_view value) {
    const Outcome outcome =
        read(typeWith(declarations) + "<project name=\"" + std::string(value) + "\"/>");
    EXPECT_EQ(outcome.message, "");
    return outcome.project.name.value;
}

/// The platform's descriptions if it holds `content`, with these declarations.
std::vector<std::string> descriptionsWith(std::string_view declarations, std::string_view content) {
    const Outcome outcome = read(documentWith(declarations, content));
    EXPECT_EQ(outcome.message, "");
    return outcome.project.platform.at(0).description;
}

TEST(DocumentType, MayBeAnything) {
    for (const char* const type :
         {"<!DOCTYPE project>", "<!DOCTYPE design>", "<!DOCTYPE project SYSTEM \"missing.dtd\">",
          "<!DOCTYPE project PUBLIC \"-//demo\" \"missing.dtd\">",
          "<!DOCTYPE project SYSTEM \"http://localhost:9/missing.dtd\">", "<!DOCTYPE project []>",
          "<!DOCTYPE project [ ]>", "<!DOCTYPE project SYSTEM \"missing.dtd\" []>",
          "<!DOCTYPE project [<!ENTITY a \"b\">]>",
          "<!DOCTYPE project [<!ELEMENT project ANY><!ELEMENT host EMPTY>"
          "<!ELEMENT core (kernel*, (a | b)?, c+)><!ELEMENT d (#PCDATA|e)*>]>",
          "<!DOCTYPE project [<!ATTLIST project name CDATA #IMPLIED a ID #REQUIRED\n"
          "b (x|y) 'x' c NMTOKENS #IMPLIED d CDATA #FIXED '1'>]>",
          "<!DOCTYPE project [<!NOTATION n SYSTEM \"n\"><!NOTATION m PUBLIC \"m\">"
          "<!ENTITY picture SYSTEM \"p.png\" NDATA n>]>",
          "<!DOCTYPE project [<!-- <!ENTITY a> ]> --><?tool ]> ?>\n]>",
          "<!DOCTYPE project [<!ENTITY % a \"<!ENTITY b 'c'>\"> %a; ]>",
          "<!DOCTYPE project [<!ENTITY % a SYSTEM \"missing.dtd\"> %a;]>",
          "<!DOCTYPE project [%unknown;]>",
          "<!DOCTYPE project [<!ENTITY a SYSTEM \"missing.txt\">]>"}) {
        const Outcome outcome = read(std::string(type) + "<project name=\"demo\"/>");
        EXPECT_EQ(outcome.message, "") << type;
        EXPECT_EQ(outcome.project.name, given("demo")) << type;
    }
}

TEST(DocumentType, MustBeWellFormedItself) {
    for (const char* const document :
         {"<!DOCTYPE>", "<!DOCTYPE project SYSTEM><project/>",
          "<!DOCTYPE project><!DOCTYPE project><project/>", "<project/><!DOCTYPE project>",
          "<!DOCTYPE project [<!ENTITY a>]><project/>",
          "<!DOCTYPE project [<!ELEMENT a>]><project/>",
          "<!DOCTYPE project [<!ATTLIST a b>]><project/>", "<!DOCTYPE project [text]><project/>",
          "<!DOCTYPE project [<a/>]><project/>", "<!DOCTYPE project [<!-- ]><project/>",
          "<!DOCTYPE project [<!ENTITY % a '<!ENTITY'> %a; b 'c'>]><project/>"}) {
        expectRefused(document, ErrorCode::NotWellFormed);
    }
}

// Entities

TEST(Entity, StandsForItsText) {
    EXPECT_EQ(nameWith("<!ENTITY a 'scale'>", "&a;_rows"), "scale_rows");
    EXPECT_EQ(nameWith("<!ENTITY a 'x&b;z'><!ENTITY b 'y'>", "&a;&a;"), "xyzxyz");
    EXPECT_EQ(nameWith("<!ENTITY a 'first'><!ENTITY a 'second'>", "&a;"), "first");
    EXPECT_EQ(nameWith("<!ENTITY a '&#38;#60;'>", "&a;"), "<");
    EXPECT_EQ(nameWith("<!ENTITY a 'two\nlines'>", "&a;"), "two lines");
    EXPECT_THAT(
        descriptionsWith("<!ENTITY a 'b&#60;![CDATA[<]]>'>", "<description>-&a;-</description>"),
        ElementsAre("-b<-"));
}

TEST(Entity, MayHoldElements) {
    EXPECT_THAT(descriptionsWith("<!ENTITY e '<description>one</description>&f;'>"
                                 "<!ENTITY f '<description>two</description><other>&e2;</other>'>"
                                 "<!ENTITY e2 '<description/>'>",
                                 "&e;<description>three</description>&f;"),
                ElementsAre("one", "two", "three", "two"));
}

TEST(Entity, MayBeDeclaredByAParameterEntity) {
    EXPECT_EQ(nameWith("<!ENTITY % p \"<!ENTITY a 'b'>\"> %p; <!ENTITY c 'd'>", "&a;&c;"), "bd");
    EXPECT_EQ(nameWith("<!ENTITY % p \"b\"><!ENTITY % q \"<!ENTITY a '&#37;p;'>\"> %q;", "&a;"),
              "b");
}

TEST(Entity, MustHoldWholeElements) {
    for (const char* const text : {"<description>", "</description>", "<host", "&#38;"}) {
        expectRefused(documentWith("<!ENTITY a '" + std::string(text) + "'>",
                                   "<description>&a;</description>"),
                      ErrorCode::NotWellFormed);
    }
    expectRefused(typeWith("<!ENTITY a '&#60;'>") + "<project name=\"&a;\"/>",
                  ErrorCode::NotWellFormed);
}

TEST(Entity, MustNotHoldItself) {
    for (const char* const declarations :
         {"<!ENTITY a '&a;'>", "<!ENTITY a '&b;'><!ENTITY b '&a;'>"}) {
        expectRefused(typeWith(declarations) + "<project name=\"&a;\"/>", ErrorCode::NotWellFormed);
        expectRefused(documentWith(declarations, "&a;"), ErrorCode::NotWellFormed);
    }
    expectRefused(typeWith("<!ENTITY % a '&#37;a;'>%a;") + "<project/>", ErrorCode::NotWellFormed);
}

TEST(Entity, MustBeDeclaredUnlessThatMayBeOutside) {
    expectRefused(documentWith("", "&a;"), ErrorCode::NotWellFormed);
    expectRefused(typeWith("") + "<project name=\"&a;\"/>", ErrorCode::NotWellFormed);
    expectRefused("<?xml version='1.0' standalone='yes'?><!DOCTYPE project SYSTEM 'x.dtd'>"
                  "<project name='&a;'/>",
                  ErrorCode::NotWellFormed);
    const std::string outside = "<!ENTITY % p SYSTEM 'missing.dtd'>%p;<!ENTITY a 'late'>";
    EXPECT_EQ(nameWith(outside, "-&a;-"), "--");
    EXPECT_THAT(descriptionsWith(outside, "<description>-&a;-</description>"), ElementsAre("--"));
}

TEST(Entity, OutsideReadsAsNothingInTextAndIsAFaultInAttributes) {
    for (const char* const kind : {"SYSTEM 'missing.txt'", "PUBLIC '-//demo' 'missing.txt'"}) {
        const std::string declaration = "<!ENTITY a " + std::string(kind) + ">";
        EXPECT_THAT(descriptionsWith(declaration, "<description>-&a;-</description>"),
                    ElementsAre("--"));
        expectRefused(typeWith(declaration) + "<project name=\"&a;\"/>", ErrorCode::NotWellFormed);
    }
    expectRefused(documentWith("<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'p.png' NDATA n>", "&a;"),
                  ErrorCode::NotWellFormed);
}

TEST(Entity, HasThePlaceOfItsReference) {
    const Outcome outcome = read(
        "<!DOCTYPE project [\n<!ENTITY a '\n\n<device><core><kernel>\n<arg "
        "addressQualifier=\"x\"/>\n"
        "</kernel></core></device>'>\n]>\n<project>\n<platform>&a;\n</platform>\n</project>\n");
    EXPECT_EQ(outcome.code, ErrorCode::InvalidValue);
    EXPECT_EQ(outcome.line, 9U);
    const Outcome behind = read("<!DOCTYPE project [\n<!ENTITY a '\n\n\n'>\n]>\n<project>\n"
                                "&a;&a;\n</platform>\n</project>\n");
    EXPECT_EQ(behind.code, ErrorCode::NotWellFormed);
    EXPECT_EQ(behind.line, 9U);
}

// Default values

TEST(DefaultValue, CountsAsIfItStoodInTheDocument) {
    const std::string declarations =
        "<!ATTLIST project name CDATA 'demo'>"
        "<!ATTLIST arg type CDATA \"int\" addressQualifier NMTOKEN '7'>"
        "<!ATTLIST kernel type (C|HLS) 'HLS' name CDATA #FIXED 'k'>"
        "<!ATTLIST platform name CDATA #IMPLIED>"
        "<!ATTLIST platform name CDATA 'too late'>";
    const Outcome outcome =
        read(documentWith(declarations, "<device><core><kernel><arg name=\"a\"/>"
                                        "<arg name=\"b\" type=\"char\" addressQualifier=\"8\"/>"
                                        "</kernel></core></device>"));
    EXPECT_EQ(outcome.message, "");
    EXPECT_EQ(outcome.project.name, given("demo"));
    EXPECT_FALSE(outcome.project.platform.at(0).name.present);
    const Mekto::Kernel& kernel = outcome.project.platform[0].device.at(0).core.at(0).kernel.at(0);
    EXPECT_EQ(kernel.name, given("k"));
    ASSERT_THAT(kernel.arg, SizeIs(2));
    EXPECT_EQ(kernel.arg[0].type, given("int"));
    EXPECT_EQ(kernel.arg[0].addressQualifier, given(7U));
    EXPECT_EQ(kernel.arg[1].type, given("char"));
    EXPECT_EQ(kernel.arg[1].addressQualifier, given(8U));
}

TEST(DefaultValue, MayReferToEntities) {
    EXPECT_EQ(read(typeWith("<!ENTITY a 'b'><!ATTLIST project name CDATA '&a;c'>") + "<project/>")
                  .project.name,
              given("bc"));
    EXPECT_EQ(
        read(typeWith("<!ENTITY % a \"<!ATTLIST project name CDATA 'd'>\">%a;") + "<project/>")
            .project.name,
        given("d"));
}

TEST(DefaultValue, MustBeOfItsAttributesKind) {
    const Outcome outcome = read(documentWith(
        "<!ATTLIST arg addressQualifier CDATA 'x'>",
        "<device><core><kernel><arg addressQualifier='1'/>\n<arg/></kernel></core></device>"));
    EXPECT_EQ(outcome.code, ErrorCode::InvalidValue);
    EXPECT_EQ(outcome.line, 2U);
}

TEST(DefaultValue, HasItsTypesWhiteSpace) {
    const std::string value = "\" a  b \"";
    EXPECT_EQ(read(typeWith("<!ATTLIST project name NMTOKENS #IMPLIED>") +
                   "<project name=" + value + "/>")
                  .project.name,
              given("a b"));
    EXPECT_EQ(
        read(typeWith("<!ATTLIST project name CDATA #IMPLIED>") + "<project name=" + value + "/>")
            .project.name,
        given(" a  b "));
}

// What is outside

/// Notices whether a file gets opened.
class OpeningWatch {
public:
    explicit OpeningWatch(const std::string& path)
        : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (inotify_add_watch(descriptor_, path.c_str(), IN_OPEN) < 0) {
            throw std::runtime_error("cannot watch " + path);
        }
    }
    ~OpeningWatch() { close(descriptor_); }
    OpeningWatch(const OpeningWatch&) = delete;
    OpeningWatch& operator=(const OpeningWatch&) = delete;

    /// True if it was opened since this was asked last.
    bool wasOpened() const {
        std::array<char, 4096> events{};
        return ::read(descriptor_, events.data(), events.size()) > 0;
    }

private:
    int descriptor_;
};

TEST(DocumentType, IsNeverFetched) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("project.dtd", "<!ENTITY outside \"fetched\">\n"
                                                            "<!ATTLIST project name CDATA "
                                                            "\"fetched\">\n");
    const OpeningWatch watch(path);
    EXPECT_EQ(directory.read("project.dtd").substr(0, 8), "<!ENTITY");
    EXPECT_TRUE(watch.wasOpened());
    const std::string content =
        "<project><platform><description>&outside;</description></platform></project>";
    for (const std::string& id : {path, "file://" + path}) {
        for (const std::string kind : {"SYSTEM", "PUBLIC \"-//demo\""}) {
            const std::string where = kind + " \"" + id + "\"";
            for (const std::string& type :
                 {" " + where, " " + where + " []", " [<!ENTITY outside " + where + ">]",
                  " [<!ENTITY % p " + where + ">%p;]"}) {
                const Outcome outcome = read("<!DOCTYPE project" + type + ">" + content);
                EXPECT_EQ(outcome.message, "");
                EXPECT_FALSE(outcome.project.name.present);
                EXPECT_THAT(outcome.project.platform.at(0).description, ElementsAre(""));
            }
        }
    }
    EXPECT_FALSE(watch.wasOpened());
}

// Growth

/// Declares e0, which is `text`, and further ones up to e`last`, each ten times the one before.
std::string tenfold(const std::string& text, int last, const std::string& sign) {
    const std::string reference = sign == "%" ? "&#37;e" : "&e";
    const std::string before = sign == "%" ? "<!ENTITY % e" : "<!ENTITY e";
    std::string declarations = before + "0 \"" + text + "\">";
    for (int i = 1; i <= last; ++i) {
        declarations += before + std::to_string(i) + " \"" +
                        repeated(reference + std::to_string(i - 1) + ";", 10) + "\">";
    }
    return declarations;
}

TEST(Growth, ByEntitiesIsFreeUpToAMebibyte) {
    // 1 KiB 1000 times: what remains is for the references.
    const std::string declaration = "<!ENTITY a '" + std::string(1024, 'x') + "'>";
    EXPECT_THAT(
        descriptionsWith(declaration, "<description>" + repeated("&a;", 1000) + "</description>"),
        ElementsAre(SizeIs(1'024'000)));
    expectRefused(
        documentWith(declaration, "<description>" + repeated("&a;", 1030) + "</description>"),
        ErrorCode::UnsafeDocument);
}

TEST(Growth, ByEntitiesMayBeFourTimesALargeDocument) {
    const std::string declaration = "<!ENTITY a '" + std::string(100'000, 'x') + "'>";
    const std::string filler(900'000, ' ');
    EXPECT_THAT(descriptionsWith(declaration,
                                 filler + "<description>" + repeated("&a;", 39) + "</description>"),
                ElementsAre(SizeIs(3'900'000)));
    expectRefused(documentWith(declaration,
                               filler + "<description>" + repeated("&a;", 41) + "</description>"),
                  ErrorCode::UnsafeDocument);
}

TEST(Growth, ByEntitiesThatHoldOneAnotherIsBounded) {
    const std::string general = tenfold("xxxxxxxxxx", 19, "&");
    expectRefused(typeWith(general) + "<project name=\"&e19;\"/>", ErrorCode::UnsafeDocument);
    expectRefused(documentWith(general, "<description>&e19;</description>"),
                  ErrorCode::UnsafeDocument);
    expectRefused(documentWith(general, "&e19;"), ErrorCode::UnsafeDocument);
    expectRefused(typeWith(general + "<!ATTLIST project name CDATA '&e19;'>") + "<project/>",
                  ErrorCode::UnsafeDocument);
    expectRefused(typeWith(tenfold("<!-- xxx -->", 19, "%") + "%e19;") + "<project/>",
                  ErrorCode::UnsafeDocument);
    EXPECT_EQ(read(typeWith(general) + "<project/>").code, ErrorCode::None);
}

TEST(Growth, ByDefaultValuesIsBounded) {
    const auto outcomeOf = [](std::size_t length, std::size_t elements) {
        return read(documentWith("<!ATTLIST extra a CDATA '" + std::string(length, 'x') + "'>",
                                 repeated("<extra/>", elements)));
    };
    EXPECT_EQ(outcomeOf(1000, 1000).message, "");
    // Documents of 11,9xx and 12,1xx bytes: 100 times that, and 1 MiB, is 2.24 MB and 2.26 MB.
    EXPECT_EQ(outcomeOf(10'000, 220).message, "");
    EXPECT_EQ(outcomeOf(10'000, 250).code, ErrorCode::UnsafeDocument);
    EXPECT_EQ(outcomeOf(100'000, 100'000).code, ErrorCode::UnsafeDocument);
}

TEST(Growth, ByManyDefaultValuesIsBounded) {
    std::string declaration = "<!ATTLIST extra";
    for (int i = 0; i < 20'000; ++i) {
        declaration += " a" + std::to_string(i) + " CDATA ''";
    }
    expectRefused(documentWith(declaration + ">", repeated("<extra/>", 100'000)),
                  ErrorCode::UnsafeDocument);
}

TEST(Growth, OfTheAttributesThatAreDeclaredIsBounded) {
    const auto codeOf = [](int count) {
        std::string declaration = "<!ATTLIST extra";
        for (int i = 0; i < count; ++i) {
            declaration += " a" + std::to_string(i) + " CDATA ''";
        }
        return read(documentWith(declaration + ">", "<extra/>")).code;
    };
    EXPECT_EQ(codeOf(32'768), ErrorCode::None);
    EXPECT_EQ(codeOf(32'769), ErrorCode::UnsafeDocument);
}

/// A document that refers to the last of `count` entities, each of which but the first refers to
/// the one before.
std::string chainOf(int count, const std::string& sign) {
    const bool isParameter = sign == "%";
    const std::string before = isParameter ? "<!ENTITY % e" : "<!ENTITY e";
    std::string declarations = before + "0 \"" + (isParameter ? "<!ENTITY a ''>" : "x") + "\">";
    for (int i = 1; i < count; ++i) {
        declarations += before + std::to_string(i) + " \"" + (isParameter ? "&#37;e" : "&e") +
                        std::to_string(i - 1) + ";\">";
    }
    const std::string last = sign + "e" + std::to_string(count - 1) + ";";
    return isParameter ? typeWith(declarations + last) + "<project/>"
                       : documentWith(declarations,
                                      "<description a=\"" + last + "\">" + last + "</description>");
}

TEST(Growth, OfTheDepthOfEntitiesIsBounded) {
    for (const std::string sign : {"&", "%"}) {
        EXPECT_EQ(read(chainOf(1001, sign)).message, "");
        expectRefused(chainOf(1002, sign), ErrorCode::UnsafeDocument);
        expectRefused(chainOf(200'000, sign), ErrorCode::UnsafeDocument);
    }
    std::string plain;
    for (int i = 0; i < 10'000; ++i) {
        plain += "<!ENTITY e" + std::to_string(i) + " 'x'>";
    }
    EXPECT_EQ(nameWith(plain, "&e0;&e9999;"), "xx");
}

TEST(Growth, IsRefusedWhereItWouldTakePlace) {
    const Outcome outcome =
        read("<?xml version=\"1.0\"?>\n<!DOCTYPE project [\n" + tenfold("x", 9, "&") +
             "]>\n\n<project>\n<platform name=\"&e9;\"/>");
    EXPECT_EQ(outcome.code, ErrorCode::UnsafeDocument);
    EXPECT_EQ(outcome.line, 6U);
    EXPECT_THAT(outcome.message, HasSubstr("amplification"));
}

// Watching

/// Notes the lines of elements, their names and those of their attributes.
class Notes final : public lmx60::DocumentWatcher {
public:
    std::vector<std::string> notes;

    void onElement(const Element& element, std::uint64_t line,
                   std::span<const std::string_view> attributes) override {
        notes.push_back(std::to_string(line) + ' ' + std::string(element.name));
        for (const std::string_view attribute : attributes) {
            notes.back() += ' ' + std::string(attribute);
        }
    }

    void onUnknownElement(const Element& parent, std::uint64_t line,
                          std::string_view name) override {
        notes.push_back(std::to_string(line) + ' ' + std::string(parent.name) + '/' +
                        std::string(name));
    }
};

TEST(DocumentWatcher, IsToldOfEntitiesAtTheirReferencesAndOfDefaultValues) {
    std::istringstream stream("<!DOCTYPE project [\n<!ENTITY a '\n<host/>\n<other/>'>\n"
                              "<!ATTLIST host architecture CDATA 'x'>]>\n"
                              "<project>\n<platform>&a;\n<host/>&a;</platform></project>");
    Notes notes;
    lmx60::watchDocument(stream, "kernel.xml", "project", Mekto::Project::kind(), notes);
    EXPECT_THAT(notes.notes,
                ElementsAre("6 project", "7 platform", "7 host architecture", "7 platform/other",
                            "8 host architecture", "8 host architecture", "8 platform/other"));
}

} // namespace

} // namespace consolidator::test
