#include "query/HeldVariables.h"

#include "shared/Printable.h"

#include <algorithm>

namespace consolidator {

std::string HeldVariable::described() const {
    std::string text(kind());
    text += ' ';
    text += shortPrintable(variable->sourceName);
    return text;
}

HeldVariables::HeldVariables(const Kernel& kernel) {
    forEachVariable(kernel, [this](const HeldVariable& held) {
        byName_[held.variable->hardwareName].push_back(held);
    });
}

std::span<const HeldVariable> HeldVariables::of(std::string_view hardwareName) const {
    const auto found = byName_.find(hardwareName);
    return found == byName_.end() ? std::span<const HeldVariable>() : std::span(found->second);
}

std::string described(std::span<const HeldVariable> variables) {
    constexpr std::size_t most = 4;
    std::string text;
    for (const HeldVariable& held : variables.first(std::min(variables.size(), most))) {
        text += text.empty() ? "" : ", ";
        text += held.described();
    }
    if (variables.size() > most) {
        text += " and " + std::to_string(variables.size() - most) + " more";
    }
    return text;
}

} // namespace consolidator
