#include "inspect/check/ConditionCheck.h"

#include "model/ConditionTranslation.h"
#include "shared/Numbers.h"
#include "shared/Words.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

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

/// Translation names signals so; high-level synthesis does not.
bool wasTranslated(std::string_view condition) {
    return condition.find("$i/") != std::string_view::npos;
}

/// Whether both are the same equation but for the order of its sides.
bool isSwappedEquation(std::string_view first, std::string_view second) {
    const std::string_view comparison = takeWord(first);
    const std::string_view left = takeWord(first);
    const std::string_view right = takeWord(first);
    return (comparison == "==" || comparison == "!=") && takeWord(second) == comparison &&
           takeWord(second) == right && takeWord(second) == left && takeWord(first).empty() &&
           takeWord(second).empty();
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

void reportConditions(const Kernel& kernel, const std::string& path, Findings& findings) {
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        if (condition.kind != BreakableCondition::FileLine) {
            continue;
        }
        const std::optional<ConditionFault> fault = conditionFault(condition.condition);
        if (!fault) {
            continue;
        }
        std::string text = "condition of " + condition.file;
        text += ':' + std::to_string(condition.line) + ' ';
        if (fault->isDropped) {
            findings.add({path, 0, Severity::Note, Code::ConditionDropped,
                          text + "is always true and is left out: one cannot stop there"});
            continue;
        }
        findings.add({path, 0, Severity::Warning, Code::ConditionMangled,
                      text + quotedName(condition.condition) + " becomes " +
                          quotedName(fault->result) + ": " + fault->reason});
    }
}

void reportRepeatedConditions(const Kernel& kernel, const Kernel& known, const std::string& path,
                              Findings& findings) {
    using Place = std::tuple<std::uint32_t, std::string_view, std::uint32_t>;
    const auto placeOf = [](const BreakableCondition& condition) {
        return Place(condition.kind, condition.file, condition.line);
    };
    std::map<Place, std::set<std::string_view>> texts;
    for (const BreakableCondition& condition : known.breakableConditions()) {
        texts[placeOf(condition)].insert(condition.condition);
    }
    std::set<std::uint32_t> kinds;
    std::uint64_t lines = 0;
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        const auto place = texts.find(placeOf(condition));
        if (place != texts.end() && !place->second.contains(condition.condition)) {
            kinds.insert(condition.kind);
            lines += condition.kind == BreakableCondition::FileLine ? 1 : 0;
        }
    }
    std::string places;
    for (const std::uint32_t kind : kinds) { // Start, Stop, FileLine
        places += places.empty() ? "" : " and ";
        places += kind == BreakableCondition::Start ? "its start"
                  : kind == BreakableCondition::Stop
                      ? "its end"
                      : inWords(lines, "source line") + " of this file";
    }
    if (!places.empty()) {
        findings.add({path, 0, Severity::Warning, Code::RepeatedCondition,
                      "kernel " + quotedName(kernel.name()) + " has other conditions for " +
                          places + " already and keeps both: was the file added before?"});
    }
}

void reportTranslatedAgain(const std::vector<Kernel>& kernels, const std::string& path,
                           Findings& findings) {
    const BreakableCondition* first = nullptr;
    bool isChanged = false; // in its meaning, as the first one is
    std::uint64_t count = 0;
    for (const Kernel& kernel : kernels) {
        for (const BreakableCondition& condition : kernel.breakableConditions()) {
            if (!wasTranslated(condition.condition)) {
                continue;
            }
            const std::string result = translatedCondition(condition.condition);
            if (result == condition.condition) {
                continue;
            }
            ++count;
            const bool changes = !isSwappedEquation(condition.condition, result);
            if (first == nullptr || (changes && !isChanged)) {
                first = &condition;
                isChanged = changes;
            }
        }
    }
    if (first != nullptr) {
        findings.add({path, 0, isChanged ? Severity::Warning : Severity::Note,
                      Code::TranslatedAgain,
                      inWords(count, "condition") + " translated by the run before " +
                          (count == 1 ? "is" : "are") +
                          " translated again: " + quotedName(first->condition) + " becomes " +
                          quotedName(translatedCondition(first->condition))});
    }
}

} // namespace consolidator::inspect
