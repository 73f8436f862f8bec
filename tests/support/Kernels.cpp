#include "tests/support/Kernels.h"

#include "tests/support/MemoryFile.h"

#include <gtest/gtest.h>

#include <span>

namespace consolidator::test {

namespace {

/// Locations by bit, however the program keeps them.
template <typename Locations>
std::vector<KnownPlace> placesOf(const Locations& locations) {
    std::vector<KnownPlace> places;
    for (std::uint32_t bit = 0; bit < locations.size(); ++bit) {
        const LogicLocation location = locations[bit];
        places.push_back({location.address, location.offset});
    }
    return places;
}

std::vector<KnownVariable> variablesOf(std::span<const Variable> variables) {
    std::vector<KnownVariable> result;
    for (const Variable& variable : variables) {
        KnownVariable known{variable.sourceName, variable.hardwareName, variable.typeText};
        for (const auto& locations : variable.locations) {
            known.instances.push_back(placesOf(locations));
        }
        result.push_back(known);
    }
    return result;
}

} // namespace

KnownKernel knownFrom(const Kernel& kernel) {
    KnownKernel result;
    result.name = kernel.name();
    result.instancePaths = kernel.instancePaths();
    result.type = static_cast<std::uint32_t>(kernel.type());
    result.arguments = variablesOf(kernel.arguments());
    result.variables = variablesOf(kernel.variables());
    for (const HardwareVariable& variable : kernel.hardwareVariables()) {
        result.registers.push_back({variable.name, placesOf(variable.locations)});
    }
    for (const BreakableCondition& condition : kernel.breakableConditions()) {
        result.conditions.push_back(
            {condition.kind, condition.condition, condition.line, condition.file});
    }
    result.brams = kernel.brams();
    return result;
}

Kernel kernelNamed(std::string_view name, KernelType type) {
    Kernel kernel;
    kernel.setName(name);
    kernel.setType(type);
    return kernel;
}

Kernel kernelOf(const Record& fields) {
    Kernel kernel;
    EXPECT_TRUE(kernel.read(fileWith(record(fields)).get()));
    return kernel;
}

std::vector<std::string> namesOf(const std::vector<Kernel>& kernels) {
    std::vector<std::string> names;
    names.reserve(kernels.size());
    for (const Kernel& kernel : kernels) {
        names.push_back(kernel.name());
    }
    return names;
}

std::string jsonWithStarts(std::string_view name, const std::vector<std::string>& conditions) {
    std::string result = R"({  "Kernels" : [ { "Name" : ")" + std::string(name) + R"(", )";
    result += R"("Instance Paths" : [  ], "Type" : "Unknown", "Arguments" : [ ], )";
    result += R"("Variables" : [ ], "Breakable Conditions" : [)";
    std::string_view separator;
    for (const std::string& condition : conditions) {
        result += separator;
        result += R"({ "Start":true, "Cond":")";
        result += condition;
        result += R"("})";
        separator = ", ";
    }
    return result + "] } ] }" + '\0';
}

} // namespace consolidator::test
