// Tests the breakable condition: how it is made and compared, its JSON form and its binary form,
// cut off at every length.
#include "model/BreakableCondition.h"

#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"
#include "tests/support/LimitedFile.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/Truncation.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>
#include <string>

namespace consolidator::test {
namespace {

constexpr std::FILE* noStream = nullptr;

std::string json(const BreakableCondition& condition) {
    std::ostringstream out;
    condition.writeJson(out);
    return out.str();
}

ConditionFields readFrom(std::string_view bytes) {
    const FileHandle file = fileWith(bytes);
    return fieldsOf(BreakableCondition(file.get()));
}

ConditionFields readFields(std::FILE* file) {
    return fieldsOf(BreakableCondition(file));
}

TEST(BreakableCondition, IsAnIncompleteStartWithoutTextsByDefault) {
    EXPECT_EQ(fieldsOf(BreakableCondition()), ConditionFields{});
}

TEST(BreakableCondition, IsCompleteWhenMadeFromKindAndText) {
    EXPECT_EQ(fieldsOf(BreakableCondition(1, "== $i/kc_done 1'b1")),
              (ConditionFields{1, "== $i/kc_done 1'b1", 0, "", true}));
    EXPECT_EQ(fieldsOf(BreakableCondition(0xFFFFFFFF, "")),
              (ConditionFields{0xFFFFFFFF, "", 0, "", true}));
}

TEST(BreakableCondition, TheKindsHaveTheirStoredNumbers) {
    EXPECT_EQ(static_cast<std::uint32_t>(BreakableCondition::Start), 0U);
    EXPECT_EQ(static_cast<std::uint32_t>(BreakableCondition::Stop), 1U);
    EXPECT_EQ(static_cast<std::uint32_t>(BreakableCondition::FileLine), 2U);
}

TEST(BreakableCondition, ACopyHasAllFieldsTheValidFlagIncluded) {
    BreakableCondition original = fileLine("x", 12, "scale.cpp");
    const BreakableCondition complete = original;
    EXPECT_EQ(fieldsOf(complete), (ConditionFields{2, "x", 12, "scale.cpp", true}));
    original.valid = false;
    const BreakableCondition incomplete = original;
    EXPECT_EQ(fieldsOf(incomplete), (ConditionFields{2, "x", 12, "scale.cpp", false}));
}

TEST(BreakableCondition, EqualityLooksAtKindTextLineAndFile) {
    const BreakableCondition condition = fileLine("x", 12, "scale.cpp");
    EXPECT_EQ(condition, fileLine("x", 12, "scale.cpp"));
    EXPECT_NE(condition, fileLine("X", 12, "scale.cpp"));
    EXPECT_NE(condition, fileLine("x", 13, "scale.cpp"));
    EXPECT_NE(condition, fileLine("x", 12, "scale.h"));
    BreakableCondition other = condition;
    other.kind = 3;
    EXPECT_NE(condition, other);
}

TEST(BreakableCondition, LineAndFileCountInTheEqualityOfEveryKind) {
    BreakableCondition start(0, "x");
    start.line = 1;
    EXPECT_NE(start, BreakableCondition(0, "x"));
    BreakableCondition stop(1, "x");
    stop.file = "scale.cpp";
    EXPECT_NE(stop, BreakableCondition(1, "x"));
}

TEST(BreakableCondition, EqualityAndHashLeaveTheValidFlagOut) {
    const BreakableCondition complete = fileLine("x", 12, "scale.cpp");
    BreakableCondition incomplete = complete;
    incomplete.valid = false;
    EXPECT_EQ(complete, incomplete);
    EXPECT_EQ(keyHash(complete), keyHash(incomplete));
}

TEST(BreakableCondition, TextsAreComparedBehindAZeroByteToo) {
    EXPECT_NE(BreakableCondition(0, bytes("a\0b")), BreakableCondition(0, bytes("a\0c")));
    EXPECT_NE(BreakableCondition(0, bytes("a\0b")), BreakableCondition(0, "a"));
}

TEST(BreakableCondition, JsonTellsTheKind) {
    EXPECT_EQ(json(BreakableCondition(0, "== $i/kc_start 1'b1")),
              R"({ "Start":true, "Cond":"== $i/kc_start 1'b1"})");
    EXPECT_EQ(json(BreakableCondition(1, "== $i/kc_done 1'b1")),
              R"({ "Stop":true, "Cond":"== $i/kc_done 1'b1"})");
    EXPECT_EQ(json(fileLine("x", 12, "src/scale.cpp")),
              R"({ "File":"src/scale.cpp", "Line":12, "Cond":"x"})");
}

TEST(BreakableCondition, JsonOfEveryOtherKindIsAnError) {
    for (const std::uint32_t kind : {3U, 4U, 0x80000000U, 0xFFFFFFFFU}) {
        EXPECT_EQ(json(BreakableCondition(kind, "x")), R"({ "Error":1, "Cond":"x"})") << kind;
    }
}

TEST(BreakableCondition, JsonShowsLineAndFileOfAFileLineOnly) {
    BreakableCondition condition = fileLine("x", 12, "scale.cpp");
    condition.kind = BreakableCondition::Stop;
    EXPECT_EQ(json(condition), R"({ "Stop":true, "Cond":"x"})");
    condition.kind = 3;
    EXPECT_EQ(json(condition), R"({ "Error":1, "Cond":"x"})");
}

TEST(BreakableCondition, JsonShowsEmptyFieldsToo) {
    EXPECT_EQ(json(fileLine("", 0, "")), R"({ "File":"", "Line":0, "Cond":""})");
    EXPECT_EQ(json(BreakableCondition()), R"({ "Start":true, "Cond":""})");
}

TEST(BreakableCondition, JsonWritesTheLargestLineInDecimal) {
    EXPECT_EQ(json(fileLine("", 0xFFFFFFFF, "")), R"({ "File":"", "Line":4294967295, "Cond":""})");
}

TEST(BreakableCondition, JsonEscapesNothing) {
    EXPECT_EQ(json(fileLine(bytes("a\"\\\0\xFF"), 1, "C:\\dir\\\"f\"")),
              bytes("{ \"File\":\"C:\\dir\\\"f\"\", \"Line\":1, \"Cond\":\"a\"\\\0\xFF\"}"));
}

TEST(BreakableCondition, BinaryFormOfAStartIsKindAndText) {
    EXPECT_EQ(binaryForm(BreakableCondition(0, "ab")), bytes("\0\0\0\0\x02\0\0\0ab"));
    EXPECT_EQ(binaryForm(BreakableCondition(1, "")), bytes("\x01\0\0\0\0\0\0\0"));
}

TEST(BreakableCondition, BinaryFormOfAFileLineHasLineAndFileBehindTheText) {
    EXPECT_EQ(binaryForm(fileLine("ab", 258, "f.c")),
              bytes("\x02\0\0\0\x02\0\0\0ab\x02\x01\0\0\x03\0\0\0f.c"));
}

TEST(BreakableCondition, BinaryFormOfAFileLineHasLineZeroAndAnEmptyFileToo) {
    EXPECT_EQ(binaryForm(fileLine("ab", 0, "")), u32(2) + text("ab") + u32(0) + u32(0));
}

TEST(BreakableCondition, BinaryFormOfEveryOtherKindHasNeitherLineNorFile) {
    for (const std::uint32_t kind : {0U, 1U, 3U, 0xFFFFFFFFU}) {
        BreakableCondition condition = fileLine("ab", 12, "scale.cpp");
        condition.kind = kind;
        EXPECT_EQ(binaryForm(condition), u32(kind) + text("ab"));
    }
}

TEST(BreakableCondition, WriteReturnsTheNumberOfBytes) {
    const FileHandle file = fileWith({});
    EXPECT_EQ(fileLine("ab", 12, "f.c").write(file.get()), 4U + 4U + 2U + 4U + 4U + 3U);
    EXPECT_EQ(BreakableCondition(3, "ab").write(file.get()), 4U + 4U + 2U);
    EXPECT_EQ(contentOf(file.get()).size(), 31U);
}

TEST(BreakableCondition, WriteWithoutAStreamReturnsNothing) {
    EXPECT_EQ(fileLine("ab", 12, "f.c").write(nullptr), 0U);
}

TEST(BreakableCondition, ShortWritesShowInTheCount) {
    expectShortWritesToShow(fileLine("ab", 12, "f.c"),
                            {u32(2), u32(2), "ab", u32(12), u32(3), "f.c"});
    expectShortWritesToShow(BreakableCondition(1, "ab"), {u32(1), u32(2), "ab"});
}

TEST(BreakableCondition, ReadingTakesBackWhatWasWritten) {
    for (const BreakableCondition& condition :
         {BreakableCondition(0, "a"), BreakableCondition(1, ""), fileLine("x", 0xFFFFFFFF, "f.c"),
          fileLine("", 0, ""), BreakableCondition(3, "b"), BreakableCondition(0xFFFFFFFF, "c")}) {
        const std::string written = binaryForm(condition);
        const FileHandle file = fileWith(written);
        const BreakableCondition read(file.get());
        EXPECT_EQ(fieldsOf(read), fieldsOf(condition));
        EXPECT_EQ(binaryForm(read), written);
    }
}

TEST(BreakableCondition, ReadingStopsBehindTheRecord) {
    const FileHandle file =
        fileWith(condition(3, "a") + condition("b", 12, "f.c") + condition(1, "c"));
    EXPECT_EQ(readFields(file.get()), (ConditionFields{3, "a", 0, "", true}));
    EXPECT_EQ(readFields(file.get()), (ConditionFields{2, "b", 12, "f.c", true}));
    EXPECT_EQ(readFields(file.get()), (ConditionFields{1, "c", 0, "", true}));
}

TEST(BreakableCondition, TextsAreWrittenWholeAndReadUpToTheirFirstZeroByte) {
    const std::string written = binaryForm(fileLine(bytes("a\"\0b"), 12, bytes("\\\xFF\0f")));
    EXPECT_EQ(written, bytes("\x02\0\0\0\x04\0\0\0a\"\0b\x0C\0\0\0\x04\0\0\0\\\xFF\0f"));
    EXPECT_EQ(readFrom(written), (ConditionFields{2, "a\"", 12, "\\\xFF", true}));
}

TEST(BreakableCondition, ReadingAFileLineCutOffAnywhereKeepsWhatCameWhole) {
    const Stages<ConditionFields> stages{
        {u32(2), [](ConditionFields& read) { read.kind = 2; }},
        {text("x"), [](ConditionFields& read) { read.condition = "x"; }},
        {u32(12), [](ConditionFields& read) { read.line = 12; }},
        {text("scale.cpp"),
         [](ConditionFields& read) {
             read.file = "scale.cpp";
             read.valid = true;
         }},
    };
    expectEveryPrefixRead(stages, readFields);
}

TEST(BreakableCondition, ReadingAStopCutOffAnywhereKeepsWhatCameWhole) {
    const Stages<ConditionFields> stages{
        {u32(1), [](ConditionFields& read) { read.kind = 1; }},
        {text("== $i/x 1"),
         [](ConditionFields& read) {
             read.condition = "== $i/x 1";
             read.valid = true;
         }},
    };
    expectEveryPrefixRead(stages, readFields);
}

TEST(BreakableCondition, ReadingWithoutAStreamGivesTheDefault) {
    EXPECT_EQ(fieldsOf(BreakableCondition(noStream)), ConditionFields{});
}

TEST(BreakableCondition, ATextThatClaimsFourGigabytesInASmallFileEndsTheRead) {
    for (const std::uint32_t claimed : {0xFFFFFFFFU, 0xFFFFFFFEU}) {
        EXPECT_EQ(readFrom(u32(1) + u32(claimed) + std::string(32, 'x')),
                  (ConditionFields{1, "", 0, "", false}));
        EXPECT_EQ(readFrom(u32(2) + text("x") + u32(12) + u32(claimed) + std::string(23, 'x')),
                  (ConditionFields{2, "x", 12, "", false}));
    }
}

} // namespace
} // namespace consolidator::test
