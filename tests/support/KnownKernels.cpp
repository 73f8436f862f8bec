#include "tests/support/KnownKernels.h"

#include "tests/support/Bytes.h"

#include <array>
#include <string_view>

namespace consolidator::test {

namespace {

/// The elements' texts, one behind the other with a comma and a blank between them.
template <typename Element, typename ToText>
std::string joined(const std::vector<Element>& elements, ToText toText) {
    std::string result;
    std::string separator;
    for (const Element& element : elements) {
        result += separator;
        result += toText(element);
        separator = ", ";
    }
    return result;
}

/// The elements' binary forms.
template <typename Element, typename ToBytes>
std::vector<std::string> each(const std::vector<Element>& elements, ToBytes toBytes) {
    std::vector<std::string> result;
    result.reserve(elements.size());
    for (const Element& element : elements) {
        result.push_back(toBytes(element));
    }
    return result;
}

std::string quote(const std::string& name) {
    return '"' + name + '"';
}

/// Address and offset, between brackets that the caller chooses.
std::string placeText(const KnownPlace& known) {
    return std::to_string(known.address) + ", " + std::to_string(known.offset);
}

std::string placeJson(const KnownPlace& known) {
    return "[ " + placeText(known) + "]";
}

std::string instancesJson(const std::vector<std::vector<KnownPlace>>& instances) {
    std::size_t number = 0;
    return ", [ " +
           joined(instances,
                  [&](const std::vector<KnownPlace>& places) {
                      const auto bitJson = [](const KnownPlace& place) {
                          return "{ " + placeText(place) + "}";
                      };
                      return R"({ "Instance" : )" + std::to_string(number++) + R"(, "Bits" : [)" +
                             joined(places, bitJson) + "]}";
                  }) +
           "]";
}

std::string variableJson(const KnownVariable& known) {
    return "[ " + quote(known.sourceName) + ", " + quote(known.hardwareName) + ", " +
           quote(known.typeText) + ", " + std::to_string(known.bitWidth) +
           (known.instances.empty() ? "" : instancesJson(known.instances)) + "]";
}

std::string registerJson(const KnownRegister& known) {
    return R"({ "RTLName" : )" + quote(known.netName) + R"(, "Logic Locations" : [ )" +
           joined(known.places, placeJson) + "] } ";
}

std::string conditionJson(const KnownCondition& known) {
    std::string result = "{ ";
    if (known.kind == 0) {
        result += R"("Start":true, )";
    } else if (known.kind == 1) {
        result += R"("Stop":true, )";
    } else if (known.kind == 2) {
        result += R"("File":)" + quote(known.file) + R"(, "Line":)" + std::to_string(known.line);
        result += ", ";
    } else {
        result += R"("Error":1, )";
    }
    return result + R"("Cond":)" + quote(known.text) + "}";
}

std::string kernelJson(const KnownKernel& known) {
    constexpr std::array<const char*, 5> typeLabels = {"OpenCL", "C", "RTL", "Unknown", "HLS"};
    const auto pathJson = [&](const std::string& path) { return quote(path + known.pathSuffix); };
    std::string result = R"({ "Name" : )" + quote(known.name);
    result += R"(, "Instance Paths" : [ )" + joined(known.instancePaths, pathJson);
    result += R"( ], "Type" : )" +
              quote(known.type < typeLabels.size() ? typeLabels[known.type] : "Unknown");
    result += R"(, "Arguments" : [ )" + joined(known.arguments, variableJson);
    result += R"(], "Variables" : [ )" + joined(known.variables, variableJson);
    if (!known.registers.empty()) {
        result += R"(], "Hardware Variables" : [ )" + joined(known.registers, registerJson);
    }
    result += R"(], "Breakable Conditions" : [)" + joined(known.conditions, conditionJson);
    if (!known.brams.empty()) {
        result += R"(], "BRAMs" : [ )" + joined(known.brams, quote);
    }
    return result + "] }";
}

std::string placeBytes(const KnownPlace& known) {
    return location(known.address, known.offset);
}

std::string instanceBytes(const std::vector<KnownPlace>& places) {
    return list(each(places, placeBytes));
}

std::string variableBytes(const KnownVariable& known) {
    return variable(known.sourceName, known.hardwareName, known.typeText,
                    each(known.instances, instanceBytes));
}

std::string registerBytes(const KnownRegister& known) {
    return hardwareVariable(known.netName, each(known.places, placeBytes));
}

std::string conditionBytes(const KnownCondition& known) {
    return known.kind == 2 ? condition(known.text, known.line, known.file)
                           : condition(known.kind, known.text);
}

} // namespace

std::string knownRecord(const KnownKernel& known) {
    return record({.name = known.name,
                   .instancePaths = known.instancePaths,
                   .type = known.type,
                   .arguments = each(known.arguments, variableBytes),
                   .variables = each(known.variables, variableBytes),
                   .hardwareVariables = each(known.registers, registerBytes),
                   .conditions = each(known.conditions, conditionBytes),
                   .brams = known.brams});
}

std::string knownJson(const std::vector<KnownKernel>& kernels) {
    return R"({  "Kernels" : [ )" + joined(kernels, kernelJson) + " ] }" + '\0';
}

std::string knownKernelData(const std::vector<KnownKernel>& kernels) {
    return list(each(kernels, knownRecord));
}

std::string knownDatabase(const std::vector<KnownKernel>& kernels) {
    DatabaseBuilder database;
    database.section(3, knownJson(kernels));
    if (!kernels.empty()) {
        database.section(2, knownKernelData(kernels));
    }
    return database.bytes();
}

} // namespace consolidator::test
