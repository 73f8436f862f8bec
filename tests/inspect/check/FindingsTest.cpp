// Findings are counted by severity, and only so many of a file are kept.

#include "inspect/check/Findings.h"

#include <gtest/gtest.h>

namespace consolidator::inspect::test {

namespace {

TEST(Findings, AreKeptInTheirOrderAndCounted) {
    Findings findings;
    const Finding first{"a", 3, Severity::Error, Code::Empty, "text"};
    const Finding second{"", 0, Severity::Note, Code::Empty, "text"};
    findings.add(first);
    findings.add(second);
    EXPECT_EQ(findings.kept(), (std::vector<Finding>{first, second}));
    EXPECT_EQ(findings.count(Severity::Error), 1U);
    EXPECT_EQ(findings.count(Severity::Warning), 0U);
    EXPECT_EQ(findings.count(Severity::Note), 1U);
}

TEST(Findings, OfOneFileDoNotFillTheMemory) {
    Findings findings;
    for (std::size_t i = 0; i < Findings::mostOfAFile + 2; ++i) {
        findings.add({"a", i, Severity::Warning, Code::Empty, "text"});
    }
    findings.add({"b", 1, Severity::Warning, Code::Empty, "text"});
    findings.add({"a", 1, Severity::Error, Code::Empty, "text"});
    EXPECT_EQ(findings.kept().size(), Findings::mostOfAFile + 2);
    EXPECT_EQ(findings.kept()[Findings::mostOfAFile].file, "b");
    EXPECT_EQ(findings.kept().back().severity, Severity::Error);
    EXPECT_EQ(findings.dropped(), 2U);
    EXPECT_EQ(findings.count(Severity::Warning), Findings::mostOfAFile + 3);
}

TEST(Findings, QuoteNamesUpToALength) {
    EXPECT_EQ(quotedName("k"), "\"k\"");
    EXPECT_EQ(quotedName(std::string(5000, 'k')), "\"" + std::string(4096, 'k') + "...\"");
    EXPECT_EQ(quotedName(std::string(4095, 'k') + "\u00e9"),
              "\"" + std::string(4095, 'k') + "...\"");
}

} // namespace

} // namespace consolidator::inspect::test
