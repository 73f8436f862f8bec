// Feeds condition texts to their translation: the whole input as one text, and its lines as the
// conditions of a kernel.
//
// Checks each step, and all of them in a kernel, against the same steps written down again in the
// plainest way, pass by pass; and that no text grows beyond a small multiple of its length.

#include "fuzz/Fuzzing.h"
#include "model/ConditionTranslation.h"

#include <cctype>
#include <sstream>
#include <stack>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

std::string plainStripped(std::string text) {
    if (text.substr(0, 1) == "(") {
        text.erase(0, 1);
    }
    if (text.find(')') != std::string::npos) {
        text.pop_back();
    }
    return text;
}

std::string plainQualified(const std::string& text) {
    std::istringstream words(text);
    std::string result;
    std::string word;
    while (words >> word) {
        if (std::isalpha(static_cast<unsigned char>(word[0])) != 0) {
            result += "$i/";
        }
        result += word;
        if (!words.eof()) {
            result += " ";
        }
    }
    return result;
}

/// Both stacks of the conversion, with all texts written out.
struct Stacks {
    std::stack<std::string> operators;
    std::stack<std::string> operands;

    bool reduceAll() {
        while (!operators.empty()) {
            if (operands.size() < 2) {
                return false;
            }
            const std::string right = operands.top();
            operands.pop();
            const std::string left = operands.top();
            operands.pop();
            operands.push(operators.top().append(" ").append(right).append(" ").append(left));
            operators.pop();
        }
        return true;
    }
};

std::string plainPrefixForm(const std::string& text) {
    Stacks stacks;
    std::istringstream words(text);
    std::string word;
    while (words >> word) {
        if (word[0] == '$' || std::isdigit(static_cast<unsigned char>(word[0])) != 0) {
            stacks.operands.push(word);
        } else if (stacks.operators.empty()) {
            stacks.operators.push(word);
        } else if (!stacks.reduceAll()) {
            return text;
        }
    }
    if (!stacks.reduceAll() || stacks.operands.empty()) {
        return text;
    }
    return stacks.operands.top();
}

std::string plainTranslated(const std::string& text) {
    return plainPrefixForm(plainQualified(plainStripped(text)));
}

std::vector<std::string> textsOf(const Kernel& kernel) {
    std::vector<std::string> texts;
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        texts.push_back(condition.condition);
    }
    return texts;
}

void checkKernel(const std::string& lines) {
    Kernel kernel;
    std::istringstream stream(lines);
    std::uint32_t kind = 0;
    for (std::string line; std::getline(stream, line); ++kind) {
        kernel.addBreakableCondition(kind, line); // kinds differ, so none is dropped
    }
    std::vector<std::string> expected = textsOf(kernel);
    std::erase(expected, "(1'b1 == 1'b1)");
    for (std::string& text : expected) {
        text = plainTranslated(text);
    }
    kernel.translateConditions();
    fuzz::require(textsOf(kernel) == expected, "a kernel's conditions are all translated");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::textOf(data, size);
    fuzz::require(isAlwaysTrue(text) == (text == "(1'b1 == 1'b1)"), "one text is always true");
    fuzz::require(withoutOuterParentheses(text) == plainStripped(text), "parentheses go");
    fuzz::require(withQualifiedNames(text) == plainQualified(text), "names are qualified");
    fuzz::require(inPrefixForm(text) == plainPrefixForm(text), "words are put into prefix form");

    const std::string translated = translatedCondition(text);
    fuzz::require(translated == plainTranslated(text), "the steps follow one another");
    // A one-letter word and its blank become five characters.
    fuzz::require(translated.size() <= 3 * text.size() + 4, "a translation stays short");
    checkKernel(text);
    return 0;
}
