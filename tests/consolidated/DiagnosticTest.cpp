// What a reader notes about its input: where it stopped, and the remarks that are kept and counted.

#include "consolidated/Diagnostic.h"

#include "tests/support/ReaderFindings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Diagnostic withRemarks(std::uint64_t count) {
    Diagnostic diagnostic;
    for (std::uint64_t i = 1; i <= count; ++i) {
        diagnostic.remark(i, Code::UnknownType, "remark " + std::to_string(i));
    }
    return diagnostic;
}

TEST(Diagnostic, IsEmptyAtFirst) {
    const Diagnostic diagnostic;
    EXPECT_EQ(diagnostic.stopped(), std::nullopt);
    EXPECT_THAT(diagnostic.remarks(), IsEmpty());
    EXPECT_EQ(diagnostic.remarkCount(), 0U);
}

TEST(Diagnostic, TellsNotesFromOtherRemarks) {
    Diagnostic diagnostic;
    diagnostic.remark(1, Code::UnknownType, "wrong");
    diagnostic.note(2, Code::BlockRam, "as it should be");
    EXPECT_THAT(diagnostic.remarks(), ElementsAre(warningAt(1, Code::UnknownType, "wrong"),
                                                  noteAt(2, Code::BlockRam, "as it should be")));
    EXPECT_EQ(diagnostic.remarkCount(), 2U);
}

TEST(Diagnostic, KeepsWhereAndWhyReadingStopped) {
    Diagnostic diagnostic;
    diagnostic.stop(31, "expected a number");
    EXPECT_EQ(diagnostic.stopped(), stopAt(31, "expected a number"));
    EXPECT_THAT(diagnostic.remarks(), IsEmpty());
}

TEST(Diagnostic, StopsOnceOnly) {
    Diagnostic diagnostic;
    diagnostic.stop(7, "the cause");
    diagnostic.stop(3, "the consequence");
    EXPECT_EQ(diagnostic.stopped(), stopAt(7, "the cause"));
}

TEST(Diagnostic, KeepsRemarksInTheOrderInWhichTheyWereMade) {
    Diagnostic diagnostic;
    diagnostic.remark(9, Code::UnknownType, "later line");
    diagnostic.remark(2, Code::UnknownType, "earlier line");
    diagnostic.remark(2, Code::UnknownType, "earlier line");
    EXPECT_THAT(diagnostic.remarks(), ElementsAre(warningAt(9, Code::UnknownType, "later line"),
                                                  warningAt(2, Code::UnknownType, "earlier line"),
                                                  warningAt(2, Code::UnknownType, "earlier line")));
    EXPECT_EQ(diagnostic.remarkCount(), 3U);
    EXPECT_EQ(diagnostic.stopped(), std::nullopt);
}

TEST(Diagnostic, KeepsAThousandRemarksAndCountsTheRest) {
    const Diagnostic full = withRemarks(1000);
    EXPECT_THAT(full.remarks(), SizeIs(1000));
    EXPECT_EQ(full.remarkCount(), 1000U);

    const Diagnostic overfull = withRemarks(1234);
    EXPECT_EQ(overfull.remarks(), full.remarks());
    EXPECT_EQ(overfull.remarks().back(), warningAt(1000, Code::UnknownType, "remark 1000"));
    EXPECT_EQ(overfull.remarkCount(), 1234U);
}

TEST(Diagnostic, StillNotesTheStopAfterTooManyRemarks) {
    Diagnostic diagnostic = withRemarks(1001);
    diagnostic.stop(1002, "the end of patience");
    EXPECT_EQ(diagnostic.stopped(), stopAt(1002, "the end of patience"));
    EXPECT_THAT(diagnostic.remarks(), SizeIs(1000));
}

TEST(Diagnostic, DescribesARemarkWithItsLine) {
    EXPECT_EQ(describe(stopAt(31, "expected \"path:\" after \"instance\"")),
              "line 31: expected \"path:\" after \"instance\"");
    EXPECT_EQ(describe(stopAt(18446744073709551615U, "far")), "line 18446744073709551615: far");
}

TEST(Diagnostic, CutsTextsThatAreTooLong) {
    Diagnostic diagnostic;
    diagnostic.remark(1, Code::UnknownType, std::string(Diagnostic::longestText, 'r'));
    diagnostic.remark(2, Code::UnknownType, std::string(Diagnostic::longestText + 1, 'r'));
    diagnostic.stop(3, std::string(1'000'000, 's'));
    EXPECT_EQ(diagnostic.remarks().at(0).text, std::string(4096, 'r'));
    EXPECT_EQ(diagnostic.remarks().at(1).text, std::string(4096, 'r') + "...");
    EXPECT_EQ(diagnostic.stopped().value().text, std::string(4096, 's') + "...");
}

TEST(Diagnostic, DescribesARemarkAboutTheWholeFileByItsTextAlone) {
    EXPECT_EQ(describe(stopAt(0, "cannot be opened")), "cannot be opened");
}

} // namespace

} // namespace consolidator::test
