#include "model/ConditionTranslation.h"

#include "shared/Words.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace consolidator {

namespace {

// Character classes of the C locale, whatever locale the program runs in.
bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The operands and the reductions of one condition.
///
/// A reduction refers to its operands instead of joining their texts, so that a long condition
/// does not copy the same text at every step.
class Reductions {
public:
    void pushOperand(std::string_view word) { push({word, none, none}); }

    /// Replaces the last two operands by their comparison; false when there are fewer than two.
    bool reduce(std::string_view operatorWord) {
        if (operands_.size() < 2) {
            return false;
        }
        const std::size_t right = popOperand();
        const std::size_t left = popOperand();
        push({operatorWord, right, left});
        return true;
    }

    /// The last operand as text; none when there is no operand.
    std::optional<std::string> text() const {
        if (operands_.empty()) {
            return std::nullopt;
        }
        std::string result;
        std::vector<std::size_t> pending{operands_.back()};
        while (!pending.empty()) {
            const Term& term = terms_[pending.back()];
            pending.pop_back();
            if (!result.empty()) {
                result += ' ';
            }
            result += term.word;
            if (term.right != none) {
                pending.push_back(term.left);
                pending.push_back(term.right); // comes out first
            }
        }
        return result;
    }

private:
    static constexpr auto none = static_cast<std::size_t>(-1);

    /// An operand's word, or an operator's with the terms that it compares.
    struct Term {
        std::string_view word;
        std::size_t right;
        std::size_t left;
    };

    void push(const Term& term) {
        operands_.push_back(terms_.size());
        terms_.push_back(term);
    }

    std::size_t popOperand() {
        const std::size_t operand = operands_.back();
        operands_.pop_back();
        return operand;
    }

    std::vector<Term> terms_;
    std::vector<std::size_t> operands_; ///< The operand stack, as positions in `terms_`.
};

} // namespace

bool isAlwaysTrue(std::string_view condition) {
    return condition == "(1'b1 == 1'b1)";
}

std::string translatedCondition(std::string_view condition) {
    return inPrefixForm(withQualifiedNames(withoutOuterParentheses(condition)));
}

std::string_view withoutOuterParentheses(std::string_view condition) {
    if (condition.starts_with('(')) {
        condition.remove_prefix(1);
    }
    if (condition.find(')') != std::string_view::npos) {
        condition.remove_suffix(1);
    }
    return condition;
}

std::string withQualifiedNames(std::string_view condition) {
    return joinedWords(condition, [](std::string_view word) {
        return std::string_view(isLetter(word.front()) ? "$i/" : "");
    });
}

std::string inPrefixForm(std::string_view condition) {
    Reductions reductions;
    // At most one operator waits at a time (none: empty): the next one reduces it and is dropped
    // itself.
    std::string_view waiting;
    std::string_view rest = condition;
    for (auto word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
        if (word.front() == '$' || isDigit(word.front())) {
            reductions.pushOperand(word);
        } else if (waiting.empty()) {
            waiting = word;
        } else if (!reductions.reduce(waiting)) {
            return std::string(condition);
        } else {
            waiting = {};
        }
    }
    if (!waiting.empty() && !reductions.reduce(waiting)) {
        return std::string(condition);
    }
    return reductions.text().value_or(std::string(condition));
}

} // namespace consolidator
