// Which conditions are translated as they are meant, and what is said of the others.

#include "inspect/check/ConditionCheck.h"

#include <gtest/gtest.h>

#include <string>

namespace consolidator::inspect::test {

namespace {

/// "REASON -> RESULT"; "dropped", or "fine".
std::string judged(const std::string& condition) {
    const auto fault = conditionFault(condition);
    if (!fault) {
        return "fine";
    }
    return fault->isDropped ? "dropped" : fault->reason + " -> " + fault->result;
}

TEST(ConditionCheck, FindsNothingWrongWithPlainConditions) {
    EXPECT_EQ(judged("(fsm_state2 == 1'b1)"), "fine");
    EXPECT_EQ(judged("fsm_state2 == 1'b1"), "fine");
    EXPECT_EQ(judged("(x)"), "fine");
    EXPECT_EQ(judged("x"), "fine");
    EXPECT_EQ(judged("count[3:0] >= 4'd7 "), "fine");
    EXPECT_EQ(judged("== $i/kc_start 1'b1"), "it is not one comparison of two operands -> "
                                             "== 1'b1 $i/kc_start");
}

TEST(ConditionCheck, KnowsTheOneThatIsAlwaysTrue) {
    EXPECT_EQ(judged("(1'b1 == 1'b1)"), "dropped");
    EXPECT_EQ(judged("(1'b1  == 1'b1)"), "fine");
}

TEST(ConditionCheck, FindsOperatorsThatAreDropped) {
    EXPECT_EQ(judged("(a == 1 && b == 2)"), "the operator \"&&\" is dropped -> == 2 $i/b");
    EXPECT_EQ(judged("a + b - c"), "the operator \"-\" is dropped -> $i/c");
}

TEST(ConditionCheck, FindsParenthesesThatAreNotUnderstood) {
    EXPECT_EQ(judged("a == (b)"), "only parentheses around the whole are understood -> $i/a == (b");
    EXPECT_EQ(judged("((a == 1))"), "only parentheses around the whole are understood -> (a == 1)");
    EXPECT_EQ(judged("(a == 1"), "its parentheses are not balanced -> == 1 $i/a");
    EXPECT_EQ(judged("a == 1)"), "its parentheses are not balanced -> == 1 $i/a");
    EXPECT_EQ(judged(")a("), "its parentheses are not balanced -> )a");
    EXPECT_EQ(judged("(a == 1) "),
              "a blank at its end is taken for the closing parenthesis -> == 1) $i/a");
}

TEST(ConditionCheck, FindsWordsThatCountAsSomethingElse) {
    EXPECT_EQ(judged("(a==1)"), "there is no blank around the operator in \"a==1\" -> $i/a==1");
    EXPECT_EQ(judged("(_a == 1)"), "\"_a\" begins with neither a letter nor a digit and counts as "
                                   "an operator -> _a == 1");
    EXPECT_EQ(judged(""), "it is empty -> ");
    EXPECT_EQ(judged("()"), "it names no signal -> ");
    EXPECT_EQ(judged("== 1"), "it is not one comparison of two operands -> == 1");
    EXPECT_EQ(judged("a b"), "it is not one comparison of two operands -> $i/b");
}

} // namespace

} // namespace consolidator::inspect::test
