// The JSON section of a database whose texts need no escapes is JSON, for a parser that shares
// nothing with this program, and says the same as the kernel section.

#include "tests/support/Bytes.h"
#include "tests/support/DriverRun.h"
#include "tests/support/NaiveDatabase.h"
#include "tests/support/RandomRecords.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using nlohmann::json;

constexpr std::uint32_t seeds = 200;

/// A list of what toJson() makes of each element.
template <typename Element, typename ToJson>
json listOf(const std::vector<Element>& elements, ToJson toJson) {
    json result = json::array();
    for (const Element& element : elements) {
        result.push_back(toJson(element));
    }
    return result;
}

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

json variableJson(const KnownVariable& variable) {
    const std::string& type = variable.typeText;
    const int width = contains(type, "*") ? 64 : contains(type, "char") ? 8 : 32;
    return json::array({variable.sourceName, variable.hardwareName, type, width});
}

json registerJson(const KnownRegister& known) {
    return {{"RTLName", known.netName},
            {"Logic Locations", listOf(known.places, [](const KnownPlace& place) {
                 return json::array({place.address, place.offset});
             })}};
}

json conditionJson(const KnownCondition& condition) {
    json result = {{"Cond", condition.text}};
    switch (condition.kind) {
    case 0:
        result["Start"] = true;
        break;
    case 1:
        result["Stop"] = true;
        break;
    case 2:
        result["File"] = condition.file;
        result["Line"] = condition.line;
        break;
    default:
        result["Error"] = 1;
    }
    return result;
}

std::string pathSuffix(const KnownKernel& kernel) {
    for (const KnownVariable& argument : kernel.arguments) {
        if (contains(argument.typeText, "float") || contains(argument.typeText, "double")) {
            return "/U0";
        }
    }
    return "/inst";
}

/// What the JSON form says of a kernel.
json kernelJson(const KnownKernel& kernel) {
    const std::array<std::string, 5> types = {"OpenCL", "C", "RTL", "Unknown", "HLS"};
    const std::string suffix = pathSuffix(kernel);
    json result = {
        {"Name", kernel.name},
        {"Instance Paths",
         listOf(kernel.instancePaths, [&](const std::string& path) { return path + suffix; })},
        {"Type", kernel.type < types.size() ? types.at(kernel.type) : "Unknown"},
        {"Arguments", listOf(kernel.arguments, variableJson)},
        {"Variables", listOf(kernel.variables, variableJson)},
        {"Breakable Conditions", listOf(kernel.conditions, conditionJson)}};
    if (!kernel.registers.empty()) {
        result["Hardware Variables"] = listOf(kernel.registers, registerJson);
    }
    if (!kernel.brams.empty()) {
        result["BRAMs"] = kernel.brams;
    }
    return result;
}

} // namespace

TEST(JsonProperties, TheJsonSectionSaysWhatTheKernelSectionHolds) {
    const TemporaryDirectory directory = TemporaryDirectory::inMemory();
    const std::string db = directory.path("db");
    const std::string dump = directory.path("json");
    const std::string nothing = directory.write("nothing.ll", "");
    for (std::uint32_t seed = 1; seed <= seeds && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomRecords random(seed, RandomRecords::Texts::Clean);
        // Locations of variables are left out: their form is not JSON.
        const std::vector<std::string> records = {knownRecord(random.kernel()),
                                                  knownRecord(random.kernel())};
        directory.write("db", DatabaseBuilder().section(3, "").section(2, list(records)).bytes());
        ASSERT_EQ(runDriver({"-f", db, "-l", nothing}), CommandResult{});
        ASSERT_EQ(runDriver({"-f", db, "-j", dump}), CommandResult{});
        std::string text = directory.read("json");
        ASSERT_FALSE(text.empty());
        ASSERT_EQ(text.back(), '\0');
        text.pop_back();
        const std::vector<KnownKernel> kernels = NaiveDatabase::read(directory.read("db")).kernels;
        ASSERT_EQ(kernels.size(), 2U);
        const json document = json::parse(text, nullptr, false);
        ASSERT_FALSE(document.is_discarded()) << text;
        EXPECT_EQ(document, (json{{"Kernels", listOf(kernels, kernelJson)}}));
    }
}

} // namespace consolidator::test
