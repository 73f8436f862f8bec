// Tests the translation of breakable conditions from infix into prefix form: each of its steps, all
// of them together, and the condition list of a kernel that goes through it.
#include "model/ConditionTranslation.h"

#include "model/Kernel.h"
#include "tests/support/Bytes.h"
#include "tests/support/Conditions.h"
#include "tests/support/MemoryFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr std::string_view alwaysTrue = "(1'b1 == 1'b1)";

std::string stripped(std::string_view condition) {
    return std::string(withoutOuterParentheses(condition));
}

std::string repeated(std::string_view piece, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += piece;
    }
    return result;
}

bool isOneOf(char c, std::string_view characters) {
    return characters.find(c) != std::string_view::npos;
}

/// A kernel with one condition per text, of kind 0, 1, 2 and so on.
Kernel kernelWith(const std::vector<std::string_view>& texts) {
    Kernel kernel;
    std::uint32_t kind = 0;
    for (const std::string_view text : texts) {
        kernel.addBreakableCondition(kind++, text);
    }
    return kernel;
}

std::vector<std::string> textsOf(const Kernel& kernel) {
    std::vector<std::string> texts;
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        texts.push_back(condition.condition);
    }
    return texts;
}

std::vector<std::string> translated(const std::vector<std::string_view>& texts) {
    Kernel kernel = kernelWith(texts);
    kernel.translateConditions();
    return textsOf(kernel);
}

TEST(ConditionTranslation, OnlyOneTextIsAlwaysTrue) {
    EXPECT_TRUE(isAlwaysTrue("(1'b1 == 1'b1)"));
    for (const char* text : {"", " (1'b1 == 1'b1)", "(1'b1 == 1'b1) ", "(1'b1==1'b1)",
                             "(1'b1  == 1'b1)", "( 1'b1 == 1'b1)", "1'b1 == 1'b1", "(1'B1 == 1'b1)",
                             "((1'b1 == 1'b1))", "(1'b1 == 1'b0)"}) {
        EXPECT_FALSE(isAlwaysTrue(text)) << text;
    }
    EXPECT_FALSE(isAlwaysTrue(bytes("(1'b1 == 1'b1)\0")));
}

TEST(ConditionTranslation, ALeadingParenthesisGoes) {
    EXPECT_EQ(stripped("(a"), "a");
    EXPECT_EQ(stripped("("), "");
    EXPECT_EQ(stripped("((a"), "(a");
    EXPECT_EQ(stripped(" (a"), " (a");
}

TEST(ConditionTranslation, TheLastCharacterGoesIfAClosingParenthesisStandsAnywhere) {
    EXPECT_EQ(stripped("a == (b)"), "a == (b");
    EXPECT_EQ(stripped("(a) == b"), "a) == ");
    EXPECT_EQ(stripped("(a) "), "a)");
    EXPECT_EQ(stripped(")a"), ")");
    EXPECT_EQ(stripped(")"), "");
    EXPECT_EQ(stripped("()"), "");
}

TEST(ConditionTranslation, OnePairOfOuterParenthesesGoes) {
    EXPECT_EQ(stripped("(x == 1'b1)"), "x == 1'b1");
    EXPECT_EQ(stripped("((x))"), "(x)");
}

TEST(ConditionTranslation, ATextWithoutParenthesesIsLeftByTheFirstStep) {
    for (const char* text : {"", " ", "x", "x == 1'b1", "[x]", "{x}", "a ( b"}) {
        EXPECT_EQ(stripped(text), text);
    }
}

TEST(ConditionTranslation, WordsThatBeginWithALetterAreQualified) {
    EXPECT_EQ(withQualifiedNames("ap_start"), "$i/ap_start");
    EXPECT_EQ(withQualifiedNames("a == Z9 && z_1 != b'1"), "$i/a == $i/Z9 && $i/z_1 != $i/b'1");
}

TEST(ConditionTranslation, OtherWordsAreNotQualified) {
    for (const char* text : {"_x", "$i/x", "1'b1", "(x", ")x", "==", "!x", "-x", "\xE4x",
                             "\xC3\xA4", "\"x", "\\x", "@x", "[x", "`x", "{x"}) {
        EXPECT_EQ(withQualifiedNames(text), text);
    }
}

TEST(ConditionTranslation, WordsAreSeparatedByOneBlank) {
    EXPECT_EQ(withQualifiedNames("a  ==\t\t1"), "$i/a == 1");
    EXPECT_EQ(withQualifiedNames(" \t\n\v\f\ra \t\n\v\f\r== \t\n\v\f\r1"), "$i/a == 1");
    for (const char* blank : {" ", "\t", "\n", "\v", "\f", "\r", "\r\n"}) {
        EXPECT_EQ(withQualifiedNames(std::string("a") + blank + "1"), "$i/a 1");
    }
}

TEST(ConditionTranslation, WhiteSpaceAtTheEndShrinksToOneBlank) {
    EXPECT_EQ(withQualifiedNames("a "), "$i/a ");
    EXPECT_EQ(withQualifiedNames("a == \t\r\n"), "$i/a == ");
    EXPECT_EQ(withQualifiedNames("a\n"), "$i/a ");
}

TEST(ConditionTranslation, WhiteSpaceWithoutAWordGoes) {
    EXPECT_EQ(withQualifiedNames(""), "");
    EXPECT_EQ(withQualifiedNames(" \t\n\v\f\r"), "");
}

TEST(ConditionTranslation, ZeroAndHighBytesBelongToTheirWord) {
    EXPECT_EQ(withQualifiedNames(bytes("a\0b c\xA0 d\x85y")),
              "$i/" + bytes("a\0b $i/c\xA0 $i/d\x85y"));
    EXPECT_EQ(withQualifiedNames(bytes("\0a b")), bytes("\0a $i/b"));
    EXPECT_EQ(inPrefixForm(bytes("$i/a\0b == 1")), bytes("== 1 $i/a\0b"));
    EXPECT_EQ(inPrefixForm(bytes("1 \0 2")), bytes("\0 2 1"));
}

TEST(ConditionTranslation, EveryCharacterHasItsClass) {
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    for (int code = 0; code < 256; ++code) {
        const std::string word(1, static_cast<char>(code));
        if (isOneOf(word.front(), " \t\n\v\f\r")) {
            EXPECT_EQ(withQualifiedNames(word), "") << code;
            EXPECT_EQ(inPrefixForm("1 " + word + " 2"), "2") << code;
            continue;
        }
        const bool isLetter = isOneOf(word.front(), letters);
        EXPECT_EQ(withQualifiedNames(word), (isLetter ? "$i/" : "") + word) << code;
        const bool isOperand = isOneOf(word.front(), "$0123456789");
        EXPECT_EQ(inPrefixForm("1 " + word + " 2"), isOperand ? "2" : word + " 2 1") << code;
    }
}

TEST(ConditionTranslation, TheRightHandOperandComesFirst) {
    EXPECT_EQ(inPrefixForm("$i/x == 1'b1"), "== 1'b1 $i/x");
    EXPECT_EQ(inPrefixForm("0 != 9"), "!= 9 0");
}

TEST(ConditionTranslation, ADollarSignOrADigitMakesAnOperand) {
    EXPECT_EQ(inPrefixForm("$ == $x"), "== $x $");
    EXPECT_EQ(inPrefixForm("0x1f == 9'hFF"), "== 9'hFF 0x1f");
    EXPECT_EQ(inPrefixForm("$i/x == -1"), "$i/x == -1"); // -1 is an operator
}

TEST(ConditionTranslation, UnqualifiedNamesAreOperators) {
    EXPECT_EQ(inPrefixForm("1 and 2"), "and 2 1");
}

TEST(ConditionTranslation, ASecondOperatorReducesTheFirstAndIsDropped) {
    EXPECT_EQ(inPrefixForm("$i/a == 1 &&"), "== 1 $i/a");
    EXPECT_EQ(inPrefixForm("$i/a == 1 && $i/b"), "$i/b");
    EXPECT_EQ(inPrefixForm("$i/a && $i/b == 1"), "1");
}

TEST(ConditionTranslation, TheLastReductionIsTheResult) {
    EXPECT_EQ(inPrefixForm("$i/a == 1 && $i/b == 2"), "== 2 $i/b");
    EXPECT_EQ(inPrefixForm("$i/a == 1 && $i/b != 2 || $i/c < 3"), "< 3 $i/c");
}

TEST(ConditionTranslation, AReductionCanBeTheOperandOfAnother) {
    EXPECT_EQ(inPrefixForm("$a == $b + $c -"), "- $c == $b $a");
    EXPECT_EQ(inPrefixForm("$a $b $c == $d && +"), "+ == $d $c $b");
    EXPECT_EQ(inPrefixForm("$a == 1 && $b =="), "== $b == 1 $a");
}

TEST(ConditionTranslation, OperatorsMayStandBeforeOrBehindTheirOperands) {
    EXPECT_EQ(inPrefixForm("== 1'b1 $i/x"), "== $i/x 1'b1");
    EXPECT_EQ(inPrefixForm("1'b1 $i/x =="), "== $i/x 1'b1");
}

TEST(ConditionTranslation, OfOperandsAloneTheLastIsTheResult) {
    EXPECT_EQ(inPrefixForm("$i/a"), "$i/a");
    EXPECT_EQ(inPrefixForm("$i/a 1 $i/b"), "$i/b");
    EXPECT_EQ(inPrefixForm("$i/a $i/b "), "$i/b");
}

TEST(ConditionTranslation, TooFewOperandsLeaveTheWholeText) {
    for (const char* text : {"== 1", "1 ==", "! $i/a", "$i/a == && 1", "$i/a == (b",
                             "$i/a) == ", "$a == 1 && || -", "$a == 1 &&  || - "}) {
        EXPECT_EQ(inPrefixForm(text), text);
    }
}

TEST(ConditionTranslation, OperatorsAloneLeaveTheWholeText) {
    for (const char* text : {"==", "== &&", "== && ||", "(x", "_x", "!"}) {
        EXPECT_EQ(inPrefixForm(text), text);
    }
}

TEST(ConditionTranslation, NoWordsLeaveTheText) {
    EXPECT_EQ(inPrefixForm(""), "");
    EXPECT_EQ(inPrefixForm("  "), "  ");
}

TEST(ConditionTranslation, AComparisonInParenthesesIsTurnedRound) {
    EXPECT_EQ(translatedCondition("(x == 1'b1)"), "== 1'b1 $i/x");
    EXPECT_EQ(translatedCondition("(x != 0)"), "!= 0 $i/x");
    EXPECT_EQ(translatedCondition("(x == y)"), "== $i/y $i/x");
    EXPECT_EQ(translatedCondition("x == 1'b1"), "== 1'b1 $i/x");
    EXPECT_EQ(translatedCondition("($i/x == 1'b1)"), "== 1'b1 $i/x");
}

TEST(ConditionTranslation, ASingleNameIsQualified) {
    EXPECT_EQ(translatedCondition("x"), "$i/x");
    EXPECT_EQ(translatedCondition("(x)"), "$i/x");
    EXPECT_EQ(translatedCondition(" x "), "$i/x");
    EXPECT_EQ(translatedCondition("a b c"), "$i/c");
}

TEST(ConditionTranslation, ANameThatBeginsWithAnUnderscoreIsAnOperator) {
    EXPECT_EQ(translatedCondition("_x"), "_x");
    EXPECT_EQ(translatedCondition("a _x b"), "_x $i/b $i/a");
    EXPECT_EQ(translatedCondition("(_x == 1'b1)"), "_x == 1'b1");
}

TEST(ConditionTranslation, AParenthesisMakesItsWordAnOperator) {
    EXPECT_EQ(translatedCondition("a (x b"), "(x $i/b $i/a");
    EXPECT_EQ(translatedCondition("((x == 1'b1)"), "(x == 1'b1");
    EXPECT_EQ(translatedCondition("( x == 1'b1 )"), "== 1'b1 $i/x");
    EXPECT_EQ(translatedCondition("(( x == 1'b1 ))"), "( $i/x == 1'b1 )");
}

TEST(ConditionTranslation, ParenthesesGoByPositionWhateverTheyEnclose) {
    EXPECT_EQ(translatedCondition("a == (b)"), "$i/a == (b");
    EXPECT_EQ(translatedCondition("(a) == b"), "$i/a) == ");
    EXPECT_EQ(translatedCondition("(x == 1'b1) "), "== 1'b1) $i/x");
    EXPECT_EQ(translatedCondition("(a == 1) && (b == 2)"), "$i/a == 1) && (b == 2");
}

TEST(ConditionTranslation, SeveralOperatorsLeaveTheLastReduction) {
    EXPECT_EQ(translatedCondition("a == 1 && b == 2"), "== 2 $i/b");
    EXPECT_EQ(translatedCondition("(a == 1 && b == 2)"), "== 2 $i/b");
}

TEST(ConditionTranslation, WhiteSpaceOfEveryKindSeparatesWords) {
    EXPECT_EQ(translatedCondition("(x\t==\n1'b1)"), "== 1'b1 $i/x");
    EXPECT_EQ(translatedCondition("\v x\f==\r1'b1 \t"), "== 1'b1 $i/x");
}

TEST(ConditionTranslation, ATextThatCannotBeReducedIsQualifiedAllTheSame) {
    EXPECT_EQ(translatedCondition(""), "");
    EXPECT_EQ(translatedCondition("()"), "");
    EXPECT_EQ(translatedCondition(" \t\n"), "");
    EXPECT_EQ(translatedCondition("==\t&&\n"), "== && ");
    EXPECT_EQ(translatedCondition("(! x)"), "! $i/x");
}

TEST(ConditionTranslation, ASecondTranslationTurnsTheOperandsRoundAgain) {
    EXPECT_EQ(translatedCondition("== 1'b1 $i/x"), "== $i/x 1'b1");
    EXPECT_EQ(translatedCondition(translatedCondition("(x == 1'b1)")), "== $i/x 1'b1");
}

TEST(ConditionTranslation, AMillionWordsAreTranslated) {
    EXPECT_EQ(translatedCondition(repeated("a == 1 && ", 250'000)), "== 1 $i/a");
    EXPECT_EQ(translatedCondition(repeated("a ", 1'000'000)), "$i/a");
}

TEST(ConditionTranslation, AMillionWordsThatReduceIntoEachOtherAreTranslated) {
    const std::string condition = repeated("a ", 500'000) + repeated("+ - ", 250'000);
    const std::string expected = repeated("+ ", 250'000) + "$i/a" + repeated(" $i/a", 250'000);
    EXPECT_TRUE(translatedCondition(condition) == expected);
}

TEST(ConditionTranslation, AMillionOperatorsAreLeftAsTheyAre) {
    const std::string condition = repeated("&& ", 1'000'000);
    EXPECT_TRUE(translatedCondition(condition) == condition);
}

TEST(KernelTranslation, AKernelWithoutConditionsStaysSo) {
    EXPECT_THAT(translated({}), IsEmpty());
}

TEST(KernelTranslation, AlwaysTrueConditionsGo) {
    EXPECT_THAT(translated({alwaysTrue}), IsEmpty());
    EXPECT_THAT(translated({alwaysTrue, alwaysTrue, alwaysTrue}), IsEmpty());
}

TEST(KernelTranslation, JsonOfAKernelLeftWithoutConditionsShowsTheHeading) {
    for (const std::vector<std::string_view>& texts :
         {std::vector<std::string_view>{}, std::vector<std::string_view>{alwaysTrue, alwaysTrue}}) {
        Kernel kernel = kernelWith(texts);
        kernel.translateConditions();
        std::ostringstream out;
        kernel.writeJson(out);
        EXPECT_THAT(out.str(), EndsWith(R"(], "Breakable Conditions" : [] })"));
    }
}

TEST(KernelTranslation, TheConditionsBehindAnAlwaysTrueOneMoveUpInOrder) {
    EXPECT_THAT(translated({"(a)", alwaysTrue, alwaysTrue, "(b)", alwaysTrue, "(c)"}),
                ElementsAre("$i/a", "$i/b", "$i/c"));
    EXPECT_THAT(translated({alwaysTrue, "(a)", "(b)", alwaysTrue}), ElementsAre("$i/a", "$i/b"));
}

TEST(KernelTranslation, TheRemovedConditionsTakeTheirFieldsWithThem) {
    Kernel kernel;
    kernel.addBreakableCondition(0, alwaysTrue);
    kernel.addBreakableCondition(fileLine(alwaysTrue, 11, "a.cpp"));
    kernel.addBreakableCondition(fileLine("(x == 1)", 12, "b.cpp"));
    kernel.translateConditions();
    EXPECT_THAT(fieldsOf(kernel.breakableConditions()),
                ElementsAre(ConditionFields{2, "== 1 $i/x", 12, "b.cpp", true}));
}

TEST(KernelTranslation, ABlankBeforeAnAlwaysTrueTextKeepsIt) {
    EXPECT_THAT(translated({" (1'b1 == 1'b1)"}), ElementsAre("(1'b1 == 1'b1"));
}

TEST(KernelTranslation, ATextThatTurnsAlwaysTrueGoesWithTheNextTranslationOnly) {
    Kernel kernel = kernelWith({"((1'b1 == 1'b1))"});
    kernel.translateConditions();
    EXPECT_THAT(textsOf(kernel), ElementsAre("(1'b1 == 1'b1)"));
    kernel.translateConditions();
    EXPECT_THAT(textsOf(kernel), IsEmpty());
}

TEST(KernelTranslation, EmptyTextsAreKept) {
    EXPECT_THAT(translated({"", "(a)", ""}), ElementsAre("", "$i/a", ""));
}

TEST(KernelTranslation, EveryFieldButTheTextIsLeftAlone) {
    Kernel kernel;
    BreakableCondition incomplete = fileLine("(x == 1)", 12, "(src)/scale == 1.cpp");
    incomplete.valid = false;
    kernel.addBreakableCondition(incomplete);
    kernel.addBreakableCondition(1, "(x)");
    kernel.addBreakableCondition(0xFFFFFFFF, "(y)");
    kernel.translateConditions();
    EXPECT_THAT(fieldsOf(kernel.breakableConditions()),
                ElementsAre(ConditionFields{2, "== 1 $i/x", 12, "(src)/scale == 1.cpp", false},
                            ConditionFields{1, "$i/x", 0, "", true},
                            ConditionFields{0xFFFFFFFF, "$i/y", 0, "", true}));
}

TEST(KernelTranslation, TheRestOfTheKernelIsLeftAlone) {
    Kernel kernel;
    kernel.setName("(scale_rows)");
    kernel.setType(KernelType::RTL);
    kernel.addInstancePath("(top/k)");
    kernel.addArgument("(n)", "n == 1", "(int)");
    kernel.addBram("(bram)");
    const std::string before = binaryForm(kernel);
    kernel.translateConditions();
    EXPECT_EQ(binaryForm(kernel), before);
}

TEST(KernelTranslation, ASecondTranslationTranslatesTheTranslatedTexts) {
    Kernel kernel = kernelWith({"(x == 1'b1)", "(y)"});
    kernel.translateConditions();
    EXPECT_THAT(textsOf(kernel), ElementsAre("== 1'b1 $i/x", "$i/y"));
    kernel.translateConditions();
    EXPECT_THAT(textsOf(kernel), ElementsAre("== $i/x 1'b1", "$i/y"));
    kernel.translateConditions();
    EXPECT_THAT(textsOf(kernel), ElementsAre("== 1'b1 $i/x", "$i/y"));
}

TEST(KernelTranslation, WritingAfterwardsWritesTheTranslatedTexts) {
    Kernel kernel = kernelWith({"(x == 1'b1)"});
    kernel.translateConditions();
    EXPECT_EQ(binaryForm(kernel), record({.conditions = {condition(0, "== 1'b1 $i/x")}}));
}

TEST(KernelTranslation, ConditionsReadFromAFileAreTranslated) {
    const FileHandle file =
        fileWith(record({.conditions = {condition("(x == 1)", 12, "a.cpp"),
                                        condition(0, alwaysTrue), condition(0, alwaysTrue)}}));
    Kernel kernel;
    ASSERT_TRUE(kernel.read(file.get()));
    kernel.translateConditions();
    EXPECT_THAT(fieldsOf(kernel.breakableConditions()),
                ElementsAre(ConditionFields{2, "== 1 $i/x", 12, "a.cpp", true}));
}

TEST(KernelTranslation, ConditionsThatBecomeEqualBothStay) {
    Kernel kernel;
    kernel.addBreakableCondition(0, "(x == 1)");
    kernel.addBreakableCondition(0, "x == 1");
    kernel.translateConditions();
    EXPECT_THAT(textsOf(kernel), ElementsAre("== 1 $i/x", "== 1 $i/x"));
}

TEST(KernelTranslation, ALaterConditionIsComparedWithTheTranslatedTexts) {
    Kernel kernel;
    kernel.addBreakableCondition(0, "(x == 1)");
    kernel.addBreakableCondition(0, "x == 1");
    kernel.translateConditions();
    kernel.addBreakableCondition(0, "== 1 $i/x");
    EXPECT_THAT(textsOf(kernel), ElementsAre("== 1 $i/x", "== 1 $i/x"));
    kernel.addBreakableCondition(0, "(x == 1)");
    EXPECT_THAT(textsOf(kernel), ElementsAre("== 1 $i/x", "== 1 $i/x", "(x == 1)"));
}

TEST(KernelTranslation, ARemovedConditionCanBeAddedAgain) {
    Kernel kernel = kernelWith({alwaysTrue, "(x)"});
    kernel.translateConditions();
    kernel.addBreakableCondition(0, alwaysTrue);
    EXPECT_THAT(textsOf(kernel), ElementsAre("$i/x", alwaysTrue));
}

} // namespace
} // namespace consolidator::test
