#include "inspect/diff/KernelDiff.h"

#include "model/LocationList.h"
#include "model/LogicLocation.h"
#include "query/Bits.h"
#include "query/Words.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::inspect {

namespace {

/// Bits one after the other to which the same has happened.
struct BitChange {
    /// What is known of the bits in one of the databases.
    struct Side {
        enum class State {
            Absent,     ///< The register has fewer bits there.
            NotLocated, ///< A pair of zeros.
            Located,
        };

        State state = State::Absent;
        LogicLocation location =
            {}; ///< Of the first bit; those behind it follow in the same frame.

        bool operator==(const Side&) const = default;
    };

    std::uint32_t first = 0;
    std::uint32_t last = 0;
    Side before;
    Side after;
};

using Side = BitChange::Side;
using State = Side::State;

struct LocatedBit {
    std::uint32_t bit;
    LogicLocation location;
};

std::vector<LocatedBit> locatedBitsOf(const LocationList& list) {
    std::vector<LocatedBit> result;
    forEachLocatedBit(list, [&result](std::uint32_t bit, const LogicLocation& location) {
        result.push_back({bit, location});
    });
    return result;
}

/// One of the two lists, to be asked for ascending bits.
class BitCursor {
public:
    explicit BitCursor(const LocationList& list)
        : located_(locatedBitsOf(list)), size_(list.size()) {}

    /// The next bit with a location, or `none` if there is no more.
    std::uint64_t next(std::uint64_t none) const {
        return at_ < located_.size() ? located_[at_].bit : none;
    }

    /// What is known of a bit that is not beyond next(). Goes on behind it.
    Side take(std::uint64_t bit) {
        if (at_ < located_.size() && located_[at_].bit == bit) {
            return {State::Located, located_[at_++].location};
        }
        return {bit < size_ ? State::NotLocated : State::Absent};
    }

private:
    std::vector<LocatedBit> located_;
    std::uint32_t size_;
    std::size_t at_ = 0;
};

/// Whether a bit that is `distance` behind the first one of a side belongs to it.
bool goesOn(const Side& side, std::uint32_t distance, const Side& bit) {
    return bit.state == side.state && bit.location.address == side.location.address &&
           bit.location.offset ==
               side.location.offset + std::uint64_t{side.state == State::Located ? distance : 0};
}

/// Appends the change to the list, or to the list's last change if it goes on with it.
void append(std::vector<BitChange>& changes, const BitChange& change) {
    if (change.before == change.after) {
        return;
    }
    if (!changes.empty()) {
        BitChange& open = changes.back();
        const std::uint32_t distance = change.first - open.first;
        if (open.last + 1 == change.first && goesOn(open.before, distance, change.before) &&
            goesOn(open.after, distance, change.after)) {
            open.last = change.last;
            return;
        }
    }
    changes.push_back(change);
}

std::string sideInWords(const Side& side, std::uint32_t bits) {
    switch (side.state) {
    case State::Absent:
        return "none";
    case State::NotLocated:
        return "not located";
    case State::Located:
        break;
    }
    const std::uint32_t offset = side.location.offset;
    return addressText(side.location.address) + ' ' + rangeText(offset, offset + (bits - 1));
}

/// The changes by ascending bits, as few as possible; none if the lists are equal.
///
/// Takes time in the entries that are stored, and memory for those with a location: however many
/// bits without one a register claims, they make a change or two.
std::vector<BitChange> bitChanges(const LocationList& before, const LocationList& after) {
    std::vector<BitChange> changes;
    BitCursor left(before);
    BitCursor right(after);
    const std::uint64_t shorter = std::min(before.size(), after.size());
    const std::uint64_t end = std::max(before.size(), after.size());
    std::uint64_t bit = 0;
    while (bit < end) {
        // Up to the next location, bits differ only where one of the registers has none left.
        const std::uint64_t located = std::min(left.next(end), right.next(end));
        bit = std::max(bit, std::min(located, shorter));
        const std::uint64_t last = std::max(bit + 1, located) - 1;
        append(changes, {static_cast<std::uint32_t>(bit), static_cast<std::uint32_t>(last),
                         left.take(bit), right.take(bit)});
        bit = last + 1;
    }
    return changes;
}

/// "bits 0-3: not located -> 0x00002a01 166-169".
std::string changeText(const BitChange& change) {
    const std::uint32_t bits = change.last - change.first + 1;
    const std::string number = std::to_string(change.first);
    return (bits == 1 ? "bit " + number : "bits " + number + '-' + std::to_string(change.last)) +
           ": " + sideInWords(change.before, bits) + " -> " + sideInWords(change.after, bits);
}

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

template <typename Key, typename List, typename KeyOf>
std::vector<Key> keysOf(const List& elements, KeyOf keyOf) {
    std::vector<Key> keys;
    keys.reserve(elements.size());
    for (const auto& element : elements) {
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
template <typename List, typename Name, typename Describe, typename Compare>
void KernelDiff::compareLists(const std::string& word, const List& before, const List& after,
                              Name name, Describe describe, Compare compare) {
    const ListMatch match(keysOf<std::string_view>(before, name),
                          keysOf<std::string_view>(after, name));
    const auto shown = [&](const auto& element) {
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

void KernelDiff::compareVariables(const std::string& word, std::span<const Variable> before,
                                  std::span<const Variable> after) {
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
