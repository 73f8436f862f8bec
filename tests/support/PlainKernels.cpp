#include "tests/support/PlainKernels.h"

#include "tests/support/Bytes.h"

#include <array>

namespace consolidator::test {

namespace {

constexpr std::array<std::string_view, 5> typeLabels = {"OpenCL", "C", "RTL", "Unknown", "HLS"};

std::string plainJsonObject(const PlainKernel& kernel) {
    std::string result = R"({ "Name" : ")" + std::string(kernel.name) + R"(", )";
    result += R"("Instance Paths" : [ )";
    std::string separator;
    for (const std::string& path : kernel.instancePaths) {
        result.append(separator).append("\"").append(path).append("/inst\"");
        separator = ", ";
    }
    result += R"( ], "Type" : ")" + std::string(typeLabels.at(kernel.type)) + R"(", )";
    return result + R"("Arguments" : [ ], "Variables" : [ ], "Breakable Conditions" : [] })";
}

} // namespace

std::string plainJson(const std::vector<PlainKernel>& kernels) {
    std::string result = R"({  "Kernels" : [ )";
    std::string separator;
    for (const PlainKernel& kernel : kernels) {
        result.append(separator).append(plainJsonObject(kernel));
        separator = ", ";
    }
    return result + " ] }" + '\0';
}

std::string plainKernelData(const std::vector<PlainKernel>& kernels) {
    std::vector<std::string> records;
    records.reserve(kernels.size());
    for (const PlainKernel& kernel : kernels) {
        records.push_back(record(
            {.name = kernel.name, .instancePaths = kernel.instancePaths, .type = kernel.type}));
    }
    return list(records);
}

std::string plainDatabase(const std::vector<PlainKernel>& kernels) {
    DatabaseBuilder database;
    database.section(3, plainJson(kernels));
    if (!kernels.empty()) {
        database.section(2, plainKernelData(kernels));
    }
    return database.bytes();
}

} // namespace consolidator::test
