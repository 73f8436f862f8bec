#include "tests/support/Kernels.h"

#include "tests/support/MemoryFile.h"

#include <gtest/gtest.h>

namespace consolidator::test {

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
