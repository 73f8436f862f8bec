// Feeds condition texts to their translation: the whole input as one text, and its lines as the
// conditions of a kernel.
//
// Checks each step, and all of them in a kernel, against the plain steps of the tests; and that no
// text grows beyond a small multiple of its length.

#include "fuzz/Fuzzing.h"
#include "model/ConditionTranslation.h"
#include "model/Kernel.h"
#include "tests/support/NaiveConditions.h"

#include <sstream>
#include <string>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

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
    std::vector<std::string> expected;
    for (const std::string& text : textsOf(kernel)) {
        if (const auto translated = test::naiveTranslation(text)) {
            expected.push_back(*translated);
        }
    }
    kernel.translateConditions();
    fuzz::require(textsOf(kernel) == expected, "a kernel's conditions are all translated");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::textOf(data, size);
    fuzz::require(isAlwaysTrue(text) == (text == "(1'b1 == 1'b1)"), "one text is always true");
    fuzz::require(withoutOuterParentheses(text) == test::naiveWithoutParentheses(text),
                  "parentheses go");
    fuzz::require(withQualifiedNames(text) == test::naiveWithQualifiedNames(text),
                  "names are qualified");
    fuzz::require(inPrefixForm(text) == test::naivePrefixForm(text),
                  "words are put into prefix form");

    const std::string translated = translatedCondition(text);
    fuzz::require(isAlwaysTrue(text) || translated == test::naiveTranslation(text),
                  "the steps follow one another");
    // A one-letter word and its blank become five characters.
    fuzz::require(translated.size() <= 3 * text.size() + 4, "a translation stays short");
    checkKernel(text);
    return 0;
}
