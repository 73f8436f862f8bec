// What a kernel.xml has that its schema does not know, and what its arguments lack.

#include "inspect/check/KernelXmlLook.h"

#include "consolidated/Diagnostic.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::inspect::test {

namespace {

using consolidator::test::TemporaryDirectory;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Each with its line, severity and code.
std::vector<std::string> findingsIn(const std::string& document) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("kernel.xml", document);
    Findings findings;
    lookAtKernelXml(path, findings);
    std::vector<std::string> result;
    for (const Finding& finding : findings.kept()) {
        EXPECT_EQ(finding.file, path);
        result.push_back(std::to_string(finding.line) + ' ' + std::string(label(finding.severity)) +
                         ' ' + std::string(word(finding.code)) + ": " + finding.text);
    }
    return result;
}

/// The kernel's start tag stands in line 1, and so does what it begins with.
std::string kernelOf(const std::string& content) {
    return "<project><platform><device><core><kernel name=\"k\">" + content +
           "</kernel></core></device></platform></project>";
}

TEST(KernelXmlLook, SaysNothingOfWhatTheSchemaKnows) {
    EXPECT_THAT(findingsIn(kernelOf("<port base=\"0\"/><arg name=\"a\" type=\"int\" id=\"0\"/>"
                                    "<module><module><rtlPort/></module></module>"
                                    "<FIFOInformation><FIFOInst><Name>f</Name></FIFOInst>"
                                    "</FIFOInformation>")),
                IsEmpty());
}

TEST(KernelXmlLook, NotesUnknownElementsAndAttributesOnceWithTheirCount) {
    EXPECT_THAT(
        findingsIn(kernelOf("<port width=\"8\"/>\n<extra><arg/></extra>\n"
                            "<port width=\"9\" colour=\"red\"/><extra/><extra/>")),
        ElementsAre("1 note unknown-xml: attribute \"width\" of element \"port\" is unknown "
                    "and passed over (2 times)",
                    "2 note unknown-xml: element \"extra\" in \"kernel\" is unknown and "
                    "passed over with all that is in it (3 times)",
                    "3 note unknown-xml: attribute \"colour\" of element \"port\" is "
                    "unknown and passed over"));
}

TEST(KernelXmlLook, TellsNamesApartByTheElementAroundThem) {
    EXPECT_THAT(
        findingsIn("<project x=\"\"><x/>\n<platform x=\"\"/></project>"),
        ElementsAre("1 note unknown-xml: element \"x\" in \"project\" is unknown and passed "
                    "over with all that is in it",
                    "1 note unknown-xml: attribute \"x\" of element \"project\" is unknown "
                    "and passed over",
                    "2 note unknown-xml: attribute \"x\" of element \"platform\" is unknown "
                    "and passed over"));
}

TEST(KernelXmlLook, WarnsOfSlipsThatLoseSomething) {
    EXPECT_THAT(findingsIn("<project><platform><device><core>\n<Kernel name=\"k\"/>\n"
                           "<kernel Name=\"l\">\n<arg name=\"a\" tpye=\"int\"/></kernel>"
                           "</core></device></platform></project>"),
                ElementsAre("2 warning unknown-xml: element \"Kernel\" in \"core\" is unknown and "
                            "passed over with all that is in it; did you mean \"kernel\"?",
                            "3 warning unknown-xml: attribute \"Name\" of element \"kernel\" is "
                            "unknown and passed over; did you mean \"name\"?",
                            // Two letters that changed places are two of four.
                            "4 note unknown-xml: attribute \"tpye\" of element \"arg\" is unknown "
                            "and passed over",
                            "4 warning missing-attribute: element \"arg\" has no attribute "
                            "\"type\": the argument's stays empty"));
}

TEST(KernelXmlLook, DoesNotMissWhatWasMeantByAnotherName) {
    EXPECT_THAT(
        findingsIn(kernelOf("<arg name=\"a\" typ=\"int\"/>"
                            "<arg name=\"b\" typ=\"int\"/>\n<arg type=\"int\"/>")),
        ElementsAre("1 warning unknown-xml: attribute \"typ\" of element \"arg\" is unknown "
                    "and passed over (2 times); did you mean \"type\"?",
                    "2 warning missing-attribute: element \"arg\" has no attribute \"name\": "
                    "the argument's stays empty"));
}

TEST(KernelXmlLook, OnlyNotesSlipsThatLoseNothing) {
    EXPECT_THAT(
        findingsIn(kernelOf("<arg name=\"a\" type=\"int\" hostSizes=\"8\"/><Port/>")),
        ElementsAre("1 note unknown-xml: element \"Port\" in \"kernel\" is unknown and passed "
                    "over with all that is in it; did you mean \"port\"?",
                    "1 note unknown-xml: attribute \"hostSizes\" of element \"arg\" is "
                    "unknown and passed over; did you mean \"hostSize\"?"));
}

TEST(KernelXmlLook, WarnsOfKernelsAndArgumentsInTheWrongPlace) {
    EXPECT_THAT(
        findingsIn("<project><kernel name=\"k\"/>\n<platform><arg/></platform></project>"),
        ElementsAre("1 warning unknown-xml: element \"kernel\" in \"project\" is unknown and "
                    "passed over with all that is in it",
                    "2 warning unknown-xml: element \"arg\" in \"platform\" is unknown and "
                    "passed over with all that is in it"));
}

TEST(KernelXmlLook, TakesNoOffenceAtNamespaces) {
    EXPECT_THAT(findingsIn("<project xmlns=\"urn:x\" xmlns:y=\"urn:y\" y:place=\"here\"/>"),
                IsEmpty());
}

TEST(KernelXmlLook, MakesSoManyFindingsAndCountsTheRest) {
    std::string content;
    for (std::size_t i = 0; i < mostXmlNames; ++i) {
        content += "<u" + std::to_string(i) + "/>";
    }
    EXPECT_THAT(findingsIn(kernelOf(content + "<u0/>")), SizeIs(mostXmlNames));
    const std::vector<std::string> findings = findingsIn(kernelOf(content + "<v/><v/><u0/><w/>"));
    ASSERT_THAT(findings, SizeIs(mostXmlNames + 1));
    EXPECT_EQ(findings.back(), "0 note unknown-xml: elements and attributes of more names are "
                               "unknown or missing (3 times)");
}

TEST(KernelXmlLook, KeepsTheBeginningOfALongName) {
    const std::string name(Diagnostic::longestText + 1, 'n');
    EXPECT_THAT(findingsIn("<project " + name + "x=\"\" " + name + "y=\"\"/>"),
                ElementsAre("1 note unknown-xml: attribute \"" + name.substr(1) +
                            "...\" of element \"project\" is unknown and passed over (2 times)"));
}

TEST(KernelXmlLook, SaysWhatCameBeforeAFault) {
    EXPECT_THAT(findingsIn("<project a=\"\"><b"),
                ElementsAre("1 note unknown-xml: attribute \"a\" of element \"project\" is unknown "
                            "and passed over"));
}

} // namespace

} // namespace consolidator::inspect::test
