#include "query/Words.h"

#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <algorithm>

namespace consolidator {

std::string sectionText(const SectionEntry& entry) {
    switch (static_cast<SectionType>(entry.type)) {
    case SectionType::ProjectName:
        return "project name";
    case SectionType::Dwarf:
        return "DWARF";
    case SectionType::KernelData:
        return "kernel data";
    case SectionType::KernelJson:
        return "kernel JSON";
    }
    return "type " + std::to_string(entry.type) + " (unknown)";
}

std::string typeText(KernelType type) {
    std::string text(label(type));
    if (type != KernelType::Unknown && text == label(KernelType::Unknown)) {
        text += " (" + std::to_string(static_cast<std::uint32_t>(type)) + ')';
    }
    return text;
}

std::string_view conditionKind(const BreakableCondition& condition) {
    switch (condition.kind) {
    case BreakableCondition::Start:
        return "start";
    case BreakableCondition::Stop:
        return "stop";
    case BreakableCondition::FileLine:
        return "line";
    default:
        return "error";
    }
}

std::string conditionPlace(const BreakableCondition& condition) {
    if (condition.kind == BreakableCondition::FileLine) {
        return nameText(condition.file) + ':' + std::to_string(condition.line);
    }
    std::string text(conditionKind(condition));
    if (condition.kind > BreakableCondition::FileLine) {
        text += " (kind " + std::to_string(condition.kind) + ')';
    }
    return text;
}

std::string nameText(std::string_view name) {
    return name.empty() ? "\"\"" : printable(name);
}

std::string instanceText(std::optional<std::uint32_t> instance) {
    return instance ? "instance " + std::to_string(*instance) : "no instance";
}

std::string variableText(const SourceVariable& variable) {
    std::string text(variable.kind());
    text += ' ';
    text += shortPrintable(variable.variable->sourceName);
    return text;
}

std::string variablesText(std::span<const SourceVariable> variables) {
    constexpr std::size_t most = 4;
    std::string text;
    for (const SourceVariable& variable : variables.first(std::min(variables.size(), most))) {
        text += text.empty() ? "" : ", ";
        text += variableText(variable);
    }
    if (variables.size() > most) {
        text += " and " + std::to_string(variables.size() - most) + " more";
    }
    return text;
}

std::string rangeText(std::uint32_t from, std::uint32_t to) {
    std::string text = std::to_string(from);
    if (to != from) {
        text += '-' + std::to_string(to);
    }
    return text;
}

std::string bitsText(const BitRun& run) {
    std::string text = std::to_string(run.last);
    if (run.last != run.first) {
        text += ':' + std::to_string(run.first);
    }
    return text;
}

std::size_t bitsWidth(std::uint32_t bits) {
    const std::size_t digits = std::to_string(std::max(bits, 1U) - 1).size();
    return bits <= 1 ? digits : 2 * digits + 1;
}

std::string addressText(std::uint32_t address) {
    constexpr std::size_t digits = 8;
    return inHex(address, digits);
}

std::string placeText(const BitRun& run) {
    if (!run.isLocated()) {
        return "not located";
    }
    return "frame " + addressText(run.place.address) +
           (run.first == run.last ? "  offset " : "  offsets ") +
           rangeText(run.place.offset, run.lastOffset());
}

} // namespace consolidator
