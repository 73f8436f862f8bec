#include "tests/support/NaiveConditions.h"

#include <cctype>
#include <sstream>
#include <vector>

namespace consolidator::test {

namespace {

/// Both stacks of the conversion, with all texts written out.
struct Stacks {
    std::vector<std::string> operators;
    std::vector<std::string> operands;

    /// False when operands are missing.
    bool reduceAll() {
        while (!operators.empty()) {
            if (operands.size() < 2) {
                return false;
            }
            const std::string right = operands.back();
            operands.pop_back();
            operands.back() = operators.back() + ' ' + right + ' ' + operands.back();
            operators.pop_back();
        }
        return true;
    }
};

} // namespace

std::string naiveWithoutParentheses(std::string text) {
    if (text.starts_with('(')) {
        text.erase(0, 1);
    }
    if (text.find(')') != std::string::npos) {
        text.pop_back();
    }
    return text;
}

std::string naiveWithQualifiedNames(const std::string& text) {
    std::istringstream words(text);
    std::string result;
    std::string word;
    while (words >> word) {
        if (std::isalpha(static_cast<unsigned char>(word.front())) != 0) {
            result += "$i/";
        }
        result += word;
        if (!words.eof()) {
            result += ' ';
        }
    }
    return result;
}

std::string naivePrefixForm(const std::string& text) {
    Stacks stacks;
    std::istringstream words(text);
    std::string word;
    while (words >> word) {
        if (word.front() == '$' || std::isdigit(static_cast<unsigned char>(word.front())) != 0) {
            stacks.operands.push_back(word);
        } else if (stacks.operators.empty()) {
            stacks.operators.push_back(word);
        } else if (!stacks.reduceAll()) {
            return text;
        }
    }
    return stacks.reduceAll() && !stacks.operands.empty() ? stacks.operands.back() : text;
}

std::optional<std::string> naiveTranslation(const std::string& condition) {
    if (condition == "(1'b1 == 1'b1)") {
        return std::nullopt;
    }
    return naivePrefixForm(naiveWithQualifiedNames(naiveWithoutParentheses(condition)));
}

} // namespace consolidator::test
