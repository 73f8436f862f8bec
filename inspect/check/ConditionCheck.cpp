#include "inspect/check/ConditionCheck.h"

#include "inspect/check/Findings.h"
#include "model/ConditionTranslation.h"
#include "shared/Words.h"

#include <cstddef>
#include <string>

namespace consolidator::inspect {

namespace {

constexpr std::string_view operatorCharacters = "=!<>&|^+*/%~?";

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isOperandWord(std::string_view word) {
    return isLetter(word.front()) || word.front() == '$' ||
           (word.front() >= '0' && word.front() <= '9');
}

/// How the parentheses of a text stand to each other.
enum class Parentheses { None, AroundTheWhole, Inside, Unbalanced };

Parentheses parenthesesOf(std::string_view text) {
    std::size_t open = 0;
    bool any = false;
    bool isAround = text.starts_with('(') && text.ends_with(')');
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '(') {
            // A second one makes the inside more than words.
            isAround = isAround && !any;
            any = true;
            ++open;
        } else if (text[i] == ')') {
            if (open == 0) {
                return Parentheses::Unbalanced;
            }
            --open;
        }
    }
    if (open > 0) {
        return Parentheses::Unbalanced;
    }
    if (!any) {
        return Parentheses::None;
    }
    return isAround ? Parentheses::AroundTheWhole : Parentheses::Inside;
}

/// Why the words, without parentheses around them, are no name, number or comparison that the
/// translation understands; empty if they are.
std::string faultOfWords(std::string_view text) {
    std::size_t operands = 0;
    std::size_t operators = 0;
    bool operatorIsSecond = false;
    for (auto word = takeWord(text); !word.empty(); word = takeWord(text)) {
        if (isOperandWord(word)) {
            // Behind a "$" stands a path.
            if (word.front() != '$' &&
                word.find_first_of(operatorCharacters) != std::string_view::npos) {
                return "there is no blank around the operator in " + quotedName(word);
            }
            ++operands;
            continue;
        }
        if (word.find_first_not_of(operatorCharacters) != std::string_view::npos && word != "-") {
            return quotedName(word) + " begins with neither a letter nor a digit and counts as an "
                                      "operator";
        }
        ++operators;
        operatorIsSecond = operatorIsSecond || (operators == 1 && operands == 1);
        if (operators == 2) {
            return "the operator " + quotedName(word) + " is dropped";
        }
    }
    if (operands == 0) {
        return "it names no signal";
    }
    const bool isPlain = operators == 0 ? operands == 1 : operands == 2 && operatorIsSecond;
    return isPlain ? "" : "it is not one comparison of two operands";
}

std::string faultOf(std::string_view condition) {
    if (condition.empty()) {
        return "it is empty";
    }
    switch (parenthesesOf(condition)) {
    case Parentheses::Unbalanced:
        return "its parentheses are not balanced";
    case Parentheses::Inside:
        return condition.ends_with(") ") ? "a blank at its end is taken for the closing parenthesis"
                                         : "only parentheses around the whole are understood";
    case Parentheses::AroundTheWhole:
        return faultOfWords(condition.substr(1, condition.size() - 2));
    case Parentheses::None:
        break;
    }
    return faultOfWords(condition);
}

} // namespace

std::optional<ConditionFault> conditionFault(std::string_view condition) {
    if (isAlwaysTrue(condition)) {
        return ConditionFault{.isDropped = true, .reason = "", .result = ""};
    }
    std::string reason = faultOf(condition);
    if (reason.empty()) {
        return std::nullopt;
    }
    return ConditionFault{false, std::move(reason), translatedCondition(condition)};
}

} // namespace consolidator::inspect
