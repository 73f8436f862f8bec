#include "inspect/diff/KernelDiff.h"

#include "inspect/diff/BitChanges.h"
#include "query/Bits.h"
#include "query/Words.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>

namespace consolidator::inspect {

namespace {

std::string describeVariable(const Variable& variable) {
    std::string result = ": hardware name " + nameText(variable.hardwareName) + ", type " +
                         quotedPrintable(variable.typeText);
    if (!variable.locations.empty()) {
        result += ", locations of " + inWords(variable.locations.size(), "instance");
    }
    return result;
}

std::string describeRegister(const HardwareVariable& variable) {
    return ": " + inWords(variable.locations.size(), "bit") + ", " +
           std::to_string(locatedBits(variable.locations)) + " located";
}

std::string describeCondition(const BreakableCondition& condition) {
    return "condition " + conditionPlace(condition) + ": " + quotedPrintable(condition.condition);
}

ConditionKey wholeKey(const BreakableCondition& condition) {
    return {condition.kind, condition.line, condition.file, condition.condition};
}

ConditionKey placeKey(const BreakableCondition& condition) {
    return {condition.kind, condition.line, condition.file, ""};
}

/// The keys of the elements at these positions.
template <typename Element, typename KeyOf>
auto keysAt(const std::vector<Element>& elements, const std::vector<std::uint32_t>& positions,
            KeyOf keyOf) {
    std::vector<ConditionKey> keys;
    keys.reserve(positions.size());
    for (const std::uint32_t position : positions) {
        keys.push_back(keyOf(elements[position]));
    }
    return keys;
}

template <typename Key, typename Element, typename KeyOf>
std::vector<Key> keysOf(const std::vector<Element>& elements, KeyOf keyOf) {
    std::vector<Key> keys;
    keys.reserve(elements.size());
    for (const Element& element : elements) {
        keys.push_back(keyOf(element));
    }
    return keys;
}

} // namespace

void KernelDiff::run() {
    compareTypes();
    compareTexts("instance", before_->instancePaths(), after_->instancePaths());
    compareVariables("argument", before_->arguments(), after_->arguments());
    compareVariables("variable", before_->variables(), after_->variables());
    compareRegisters();
    compareConditions();
    compareTexts("BRAM", before_->brams(), after_->brams());
}

void KernelDiff::compareTypes() {
    if (before_->type() != after_->type()) {
        printer_->changed("type: " + typeText(before_->type()) + " -> " + typeText(after_->type()));
    }
}

/// Compares two lists whose elements belong together by their names. name(element) gives that,
/// describe(element) what is shown behind it of an element that is alone, and
/// compare(before, after) compares a pair.
template <typename Element, typename Name, typename Describe, typename Compare>
void KernelDiff::compareLists(const std::string& word, const std::vector<Element>& before,
                              const std::vector<Element>& after, Name name, Describe describe,
                              Compare compare) {
    const ListMatch match(keysOf<std::string_view>(before, name),
                          keysOf<std::string_view>(after, name));
    const auto shown = [&](const Element& element) {
        return word + ' ' + nameText(name(element)) + describe(element);
    };
    for (std::uint32_t position = 0; position < before.size(); ++position) {
        if (const auto partner = match.partner(position)) {
            compare(before[position], after[*partner]);
        } else {
            printer_->removed(shown(before[position]));
        }
    }
    for (const std::uint32_t position : match.added()) {
        printer_->added(shown(after[position]));
    }
    const auto nameAfter = [&](std::uint32_t position) { return nameText(name(after[position])); };
    reportOrder(word, match, nameAfter, *printer_);
}

void KernelDiff::compareTexts(const std::string& word, const std::vector<std::string>& before,
                              const std::vector<std::string>& after) {
    compareLists(
        word, before, after, [](const std::string& text) { return std::string_view(text); },
        [](const std::string&) { return ""; }, [](const std::string&, const std::string&) {});
}

void KernelDiff::compareVariables(const std::string& word, const std::vector<Variable>& before,
                                  const std::vector<Variable>& after) {
    compareLists(
        word, before, after,
        [](const Variable& variable) { return std::string_view(variable.sourceName); },
        describeVariable,
        [&](const Variable& left, const Variable& right) { compareVariable(word, left, right); });
}

void KernelDiff::compareVariable(const std::string& word, const Variable& before,
                                 const Variable& after) {
    const std::string name = word + ' ' + nameText(before.sourceName);
    std::string changes;
    if (before.hardwareName != after.hardwareName) {
        changes += ": hardware name " + nameText(before.hardwareName) + " -> " +
                   nameText(after.hardwareName);
    }
    if (before.typeText != after.typeText) {
        changes += changes.empty() ? ": type " : ", type ";
        changes += quotedPrintable(before.typeText) + " -> " + quotedPrintable(after.typeText);
    }
    if (!changes.empty()) {
        printer_->changed(name + changes);
    }
    // No run writes locations here, and only few files have them: one of those may have a name of
    // megabytes, and instances without end.
    const std::string instance = word + ' ' + shortPrintable(before.sourceName) + ", instance ";
    const std::size_t instances = std::max(before.locations.size(), after.locations.size());
    for (std::size_t i = 0; i < instances; ++i) {
        const auto bitsOf = [i](const Variable& variable) {
            return i < variable.locations.size() ? LocationList(variable.locations[i])
                                                 : LocationList();
        };
        compareBits(instance + std::to_string(i), bitsOf(before), bitsOf(after));
    }
    if (before.locations.size() != after.locations.size()) {
        printer_->changed(name + ": locations of " + inWords(before.locations.size(), "instance") +
                          " -> " + std::to_string(after.locations.size()));
    }
}

void KernelDiff::compareRegisters() {
    compareLists(
        "register", before_->hardwareVariables(), after_->hardwareVariables(),
        [](const HardwareVariable& variable) { return std::string_view(variable.name); },
        describeRegister,
        [this](const HardwareVariable& left, const HardwareVariable& right) {
            compareBits("register " + nameText(left.name), left.locations, right.locations);
        });
}

/// One change stands on the line of the register, several below it.
void KernelDiff::compareBits(const std::string& what, const LocationList& before,
                             const LocationList& after) {
    const std::vector<BitChange> changes = bitChanges(before, after);
    if (changes.size() == 1) {
        printer_->changed(what + ": " + changeText(changes.front()));
    } else if (!changes.empty()) {
        printer_->changed(what);
        for (const BitChange& change : changes) {
            printer_->detail(changeText(change));
        }
    }
}

/// Equal ones belong together first. What is left of a place in the source are changed ones.
void KernelDiff::compareConditions() {
    const std::vector<BreakableCondition>& before = before_->breakableConditions();
    const std::vector<BreakableCondition>& after = after_->breakableConditions();
    const ListMatch equal(keysOf<ConditionKey>(before, wholeKey),
                          keysOf<ConditionKey>(after, wholeKey));
    const ListMatch match(keysAt(before, equal.removed(), placeKey),
                          keysAt(after, equal.added(), placeKey));
    for (std::uint32_t i = 0; i < equal.removed().size(); ++i) {
        const BreakableCondition& old = before[equal.removed()[i]];
        if (const auto partner = match.partner(i)) {
            const BreakableCondition& changed = after[equal.added()[*partner]];
            printer_->changed(describeCondition(old) + " -> " + quotedPrintable(changed.condition));
        } else {
            printer_->removed(describeCondition(old));
        }
    }
    for (const std::uint32_t i : match.added()) {
        printer_->added(describeCondition(after[equal.added()[i]]));
    }
    reportOrder(
        "condition", equal, [&](std::uint32_t position) { return conditionPlace(after[position]); },
        *printer_);
}

} // namespace consolidator::inspect
