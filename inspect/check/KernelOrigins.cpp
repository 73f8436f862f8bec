#include "inspect/check/KernelOrigins.h"

namespace consolidator::inspect {

KernelOrigins::Ignored KernelOrigins::add(std::uint32_t input, const Kernel& kernel) {
    Origin& origin = origins_[kernel.name()];
    if (origin.inputs.empty() || origin.inputs.back() != input) {
        origin.inputs.push_back(input);
    }
    Ignored ignored;
    if (origin.type == KernelType::Unknown) {
        origin.type = kernel.type();
        origin.typeInput = input;
    } else if (kernel.type() != KernelType::Unknown && kernel.type() != origin.type) {
        ignored.types.push_back({kernel.type(), origin.type, origin.typeInput});
    }
    addDescriptions(input, true, kernel.arguments(), origin.arguments, ignored);
    addDescriptions(input, false, kernel.variables(), origin.variables, ignored);
    return ignored;
}

void KernelOrigins::addDescriptions(std::uint32_t input, bool areArguments,
                                    const std::vector<Variable>& variables, Descriptions& known,
                                    Ignored& ignored) {
    for (const Variable& variable : variables) {
        const auto [entry, isNew] = known.try_emplace(
            variable.sourceName, Description{variable.hardwareName, variable.typeText, input});
        const Description& first = entry->second;
        if (!isNew && first.input != input &&
            (first.hardwareName != variable.hardwareName || first.typeText != variable.typeText)) {
            ignored.descriptions.push_back({areArguments, variable.sourceName,
                                            variable.hardwareName, variable.typeText,
                                            first.hardwareName, first.typeText, first.input});
        }
    }
}

const std::vector<std::uint32_t>& KernelOrigins::inputsOf(std::string_view kernel) const {
    static const std::vector<std::uint32_t> none;
    const auto origin = origins_.find(std::string(kernel));
    return origin == origins_.end() ? none : origin->second.inputs;
}

} // namespace consolidator::inspect
