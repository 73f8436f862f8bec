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
    if (!share(input, kernel.argumentList(), origin)) {
        addDescriptions(input, true, kernel.arguments(), origin, ignored);
    }
    addDescriptions(input, false, kernel.variables(), origin, ignored);
    return ignored;
}

bool KernelOrigins::share(std::uint32_t input, const ArgumentList& arguments, Origin& origin) {
    const bool isFirst = origin.sharedArguments.items().empty() && origin.arguments.empty();
    const bool goesOn = input == origin.sharedInput && arguments.sharesWith(origin.sharedArguments);
    if (!arguments.isShared() || !(isFirst || goesOn)) {
        return false;
    }
    origin.sharedArguments.merge(arguments);
    origin.sharedInput = input;
    return true;
}

void KernelOrigins::addDescriptions(std::uint32_t input, bool areArguments,
                                    std::span<const Variable> variables, Origin& origin,
                                    Ignored& ignored) {
    Descriptions& known = areArguments ? origin.arguments : origin.variables;
    const auto compare = [&](const Variable& variable, const auto& first, std::uint32_t told) {
        if (told != input &&
            (first.hardwareName != variable.hardwareName || first.typeText != variable.typeText)) {
            ignored.descriptions.push_back({areArguments, variable.sourceName,
                                            variable.hardwareName, variable.typeText,
                                            first.hardwareName, first.typeText, told});
        }
    };
    for (const Variable& variable : variables) {
        const Variable* const shared =
            areArguments ? origin.sharedArguments.find(variable.sourceName) : nullptr;
        if (shared != nullptr) {
            compare(variable, *shared, origin.sharedInput);
            continue;
        }
        const auto [entry, isNew] = known.try_emplace(
            variable.sourceName, Description{variable.hardwareName, variable.typeText, input});
        if (!isNew) {
            compare(variable, entry->second, entry->second.input);
        }
    }
}

const std::vector<std::uint32_t>& KernelOrigins::inputsOf(std::string_view kernel) const {
    static const std::vector<std::uint32_t> none;
    const auto origin = origins_.find(std::string(kernel));
    return origin == origins_.end() ? none : origin->second.inputs;
}

} // namespace consolidator::inspect
