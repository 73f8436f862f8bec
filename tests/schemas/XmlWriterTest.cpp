// Trees written as XML documents, byte for byte, and read again.

#include "shared/schemas/XmlWriter.h"

#include "tests/support/Elements.h"
#include "tests/support/EveryElement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::HasSubstr;
using testing::Not;

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// A project of one platform with this name and these descriptions.
Mekto::Project projectWith(const std::string& name,
                           const std::vector<std::string>& descriptions = {}) {
    Mekto::Project project;
    project.platform.emplace_back();
    project.platform[0].name = given(name);
    project.platform[0].description = descriptions;
    return project;
}

/// What stands in the document between the quotes of the platform's name.
std::string writtenName(const std::string& name) {
    const std::string document = documentOf(projectWith(name));
    const std::string start = declaration + "<project>\n<platform name=\"";
    const std::string end = "\">\n</platform>\n</project>\n";
    EXPECT_TRUE(document.starts_with(start) && document.ends_with(end)) << document;
    return document.substr(start.size(), document.size() - start.size() - end.size());
}

/// What stands in the document between the tags of the platform's description.
std::string writtenText(const std::string& text) {
    const std::string document = documentOf(projectWith("p", {text}));
    const std::string start = declaration + "<project>\n<platform name=\"p\">\n<description>";
    const std::string end = "</description>\n</platform>\n</project>\n";
    EXPECT_TRUE(document.starts_with(start) && document.ends_with(end)) << document;
    return document.substr(start.size(), document.size() - start.size() - end.size());
}

// Layout

TEST(XmlWriter, WritesADeclarationAndTheRoot) {
    EXPECT_EQ(documentOf(Mekto::Project()), declaration + "<project>\n</project>\n");
}

TEST(XmlWriter, NamesTheRootAsTheCallerWants) {
    const Mekto::Host host{.architecture = given("x")};
    std::ostringstream out;
    lmx60::writeDocument(out, "machine", Mekto::Host::kind(), &host);
    EXPECT_EQ(out.str(), declaration + "<machine architecture=\"x\">\n</machine>\n");
}

TEST(XmlWriter, WritesEachTagOnALineOfItsOwn) {
    Mekto::Project project = projectWith("board", {"a < b", ""});
    project.name = given("demo");
    EXPECT_EQ(documentOf(project), declaration + "<project name=\"demo\">\n"
                                                 "<platform name=\"board\">\n"
                                                 "<description>a &lt; b</description>\n"
                                                 "<description></description>\n"
                                                 "</platform>\n"
                                                 "</project>\n");
}

TEST(XmlWriter, LeavesAbsentAttributesOut) {
    Mekto::Project project = projectWith("");
    EXPECT_THAT(documentOf(project), HasSubstr("<platform name=\"\">"));
    project.platform[0].name.present = false;
    EXPECT_THAT(documentOf(project), HasSubstr("<platform>"));
    project.platform[0].name.value = "there, but not present";
    EXPECT_THAT(documentOf(project), HasSubstr("<platform>"));
}

TEST(XmlWriter, WritesNumbersPlain) {
    EXPECT_THAT(documentOf(projectOf(
                    "<project><platform><device><core><kernel><arg addressQualifier=\" +007 \"/>"
                    "</kernel></core></device></platform></project>")),
                HasSubstr("<arg addressQualifier=\"7\">"));
}

TEST(XmlWriter, PutsChildrenIntoTheOrderOfTheTable) {
    const std::string document =
        documentOf(projectOf("<project><platform><device name=\"d1\"/><host architecture=\"h\"/>"
                             "<device name=\"d2\"/><version major=\"2\"/></platform></project>"));
    EXPECT_EQ(document, declaration + "<project>\n"
                                      "<platform>\n"
                                      "<version major=\"2\">\n</version>\n"
                                      "<host architecture=\"h\">\n</host>\n"
                                      "<device name=\"d1\">\n</device>\n"
                                      "<device name=\"d2\">\n</device>\n"
                                      "</platform>\n"
                                      "</project>\n");
}

TEST(XmlWriter, DropsWhatTheReaderSkipped) {
    EXPECT_EQ(documentOf(projectOf("<!-- c --><project color=\"red\">text<extra/></project>")),
              declaration + "<project>\n</project>\n");
}

// Escapes

TEST(XmlWriter, EscapesMarkupInAttributes) {
    EXPECT_EQ(writtenName("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e'f");
    EXPECT_EQ(writtenName("&amp;"), "&amp;amp;");
}

TEST(XmlWriter, EscapesMarkupInTexts) {
    EXPECT_EQ(writtenText("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e'f");
    EXPECT_EQ(writtenText("]]>"), "]]&gt;");
    EXPECT_EQ(writtenText("<!-- c -->"), "&lt;!-- c --&gt;");
}

TEST(XmlWriter, WritesWhiteSpaceButBlanksAsReferences) {
    EXPECT_EQ(writtenName("\ta\nb\r\nc d "), "&#9;a&#10;b&#13;&#10;c d ");
    EXPECT_EQ(writtenText("\ta\nb\r\nc d "), "&#9;a&#10;b&#13;&#10;c d ");
}

TEST(XmlWriter, LeavesOtherCharactersAsTheyAre) {
    const std::string text = "gr\u00FC\u00DFe \u0416 \u4E16 \U0001F600 \x7F %s \\n {}[]#;";
    EXPECT_EQ(writtenName(text), text);
    EXPECT_EQ(writtenText(text), text);
}

// Reading again

TEST(XmlWriter, WritesTheDocumentOfEveryElementAsItStands) {
    const Mekto::Project project = projectOf(everyElementDocument());
    EXPECT_EQ(documentOf(project), everyElementDocument());
    EXPECT_EQ(projectOf(documentOf(project)), project);
}

TEST(XmlWriter, WritesTheDocumentOfEveryElementWithoutAttributesAsItStands) {
    const Mekto::Project project = projectOf(everyBareElementDocument());
    EXPECT_THAT(documentOf(project), Not(HasSubstr("=\"\"")));
    EXPECT_EQ(documentOf(project), everyBareElementDocument());
    EXPECT_EQ(projectOf(documentOf(project)), project);
}

TEST(XmlWriter, WritesTheSameBytesAgain) {
    const Mekto::Project project = projectOf(everyElementDocument());
    EXPECT_EQ(documentOf(project), documentOf(project));
    EXPECT_EQ(documentOf(projectOf(documentOf(project))), documentOf(project));
}

TEST(XmlWriter, GivesEveryCharacterBack) {
    std::string text = "\t\n\r\r\n \u0080\u0085\u00A0\u07FF\u0800\u2028\uD7FF\uE000\uFFFD"
                       "\U00010000\U0010FFFF ";
    for (char c = ' '; c <= '~'; ++c) {
        text += c;
    }
    text += "\x7F \n";
    const Mekto::Project project = projectWith(text, {text, "", " ", "\n"});
    EXPECT_EQ(projectOf(documentOf(project)), project);
}

// Namespaces

using lmx60::NamespaceDeclaration;

/// A list whose tables declare two namespaces, of lists that do so too, and of others.
struct OtherList;
struct List {
    std::vector<List> list;
    std::vector<OtherList> other;
    static const lmx60::ElementKind& kind();
};
struct OtherList {
    std::vector<List> list;
    static const lmx60::ElementKind& kind();
};

const lmx60::ElementKind& List::kind() {
    static constexpr std::array namespaces{NamespaceDeclaration{"", "urn:list"},
                                           NamespaceDeclaration{"x", "urn:x&y"}};
    static constexpr std::array children{lmx60::child<&List::list>("list"),
                                         lmx60::child<&List::other>("other")};
    static constexpr lmx60::ElementKind table{.children = children, .namespaces = namespaces};
    return table;
}

const lmx60::ElementKind& OtherList::kind() {
    static constexpr std::array namespaces{NamespaceDeclaration{"", ""}};
    static constexpr std::array children{lmx60::child<&OtherList::list>("list")};
    static constexpr lmx60::ElementKind table{.children = children, .namespaces = namespaces};
    return table;
}

std::string documentOf(const List& list, std::span<const NamespaceDeclaration> namespaces = {}) {
    std::ostringstream out;
    lmx60::writeDocument(out, "list", List::kind(), &list, namespaces);
    return out.str().substr(declaration.size());
}

const std::string listTag = "<list xmlns=\"urn:list\" xmlns:x=\"urn:x&amp;y\">\n";

TEST(XmlWriter, DeclaresNamespacesWhereTheyAreNotInScope) {
    List list;
    EXPECT_EQ(documentOf(list), listTag + "</list>\n");
    list.list.resize(2);
    list.list[0].list.resize(1);
    EXPECT_EQ(documentOf(list), listTag + "<list>\n<list>\n</list>\n</list>\n<list>\n</list>\n"
                                          "</list>\n");
}

TEST(XmlWriter, DeclaresNamespacesAgainWhereAnotherOneHasTheirPrefix) {
    List list;
    list.other.resize(2);
    list.other[0].list.resize(2);
    EXPECT_EQ(documentOf(list), listTag + "<other xmlns=\"\">\n"
                                          "<list xmlns=\"urn:list\">\n</list>\n"
                                          "<list xmlns=\"urn:list\">\n</list>\n"
                                          "</other>\n"
                                          "<other xmlns=\"\">\n</other>\n</list>\n");
}

TEST(XmlWriter, DeclaresAtTheRootWhatItsCallerWants) {
    const std::array wanted{NamespaceDeclaration{"y", "urn:y"},
                            NamespaceDeclaration{"x", "urn:x&y"}};
    EXPECT_EQ(documentOf(List(), wanted),
              "<list xmlns:y=\"urn:y\" xmlns:x=\"urn:x&amp;y\" xmlns=\"urn:list\">\n</list>\n");
}

TEST(XmlWriter, DeclaresAPrefixOnceInATag) {
    const std::array wanted{NamespaceDeclaration{"", "urn:mine"},
                            NamespaceDeclaration{"", "urn:mine"},
                            NamespaceDeclaration{"x", "urn:mine"}};
    List list;
    list.list.resize(1);
    EXPECT_EQ(documentOf(list, wanted),
              "<list xmlns=\"urn:mine\" xmlns:x=\"urn:mine\">\n" + listTag + "</list>\n</list>\n");
}

TEST(XmlWriter, WritesNamespacesThatItsReaderPassesOver) {
    const std::array wanted{NamespaceDeclaration{"", "urn:demo"}};
    const Mekto::Project project = projectOf(everyElementDocument());
    std::ostringstream out;
    lmx60::writeDocument(out, "project", Mekto::Project::kind(), &project, wanted);
    EXPECT_THAT(out.str(), HasSubstr("<project xmlns=\"urn:demo\" "));
    EXPECT_EQ(projectOf(out.str()), project);
}

TEST(NamespaceScope, WritesWhatIsNotInScope) {
    lmx60::NamespaceScope scope;
    const auto written = [&](const NamespaceDeclaration& one) {
        std::ostringstream out;
        lmx60::conditionally_write_ns_attrs(out, std::array{one}, scope);
        return out.str();
    };
    scope.enter();
    EXPECT_EQ(written({"", ""}), "");
    EXPECT_EQ(written({"a", "1"}), " xmlns:a=\"1\"");
    EXPECT_EQ(written({"a", "1"}), "");
    EXPECT_EQ(written({"a", "2"}), ""); // it would be a second one in the tag
    scope.enter();
    EXPECT_EQ(written({"a", "1"}), "");
    EXPECT_EQ(written({"a", "2"}), " xmlns:a=\"2\"");
    EXPECT_EQ(written({"b", "\"3\n"}), " xmlns:b=\"&quot;3&#10;\"");
    scope.leave();
    scope.enter();
    EXPECT_EQ(written({"a", "1"}), "");
    EXPECT_EQ(written({"b", "3"}), " xmlns:b=\"3\"");
    scope.leave();
    scope.leave();
    scope.enter();
    EXPECT_EQ(written({"a", "1"}), " xmlns:a=\"1\"");
}

} // namespace

} // namespace consolidator::test
