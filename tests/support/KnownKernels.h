// Databases whose kernels have arguments, variables, registers and conditions: what all the input
// files together make, as bytes and as JSON.
//
//     knownDatabase({{.name = "scale_rows",
//                     .variables = {{"sum", "sum_reg", "int"}},
//                     .registers = {{"/top/k_1/sum_reg", {{6656, 3}}}}}})
//     knownDatabase({{"scale_rows", 4}}) // a name and a type
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

/// Where one bit lies.
struct KnownPlace {
    std::uint32_t address = 0;
    std::uint32_t offset = 0;

    bool operator==(const KnownPlace&) const = default;
};

/// An argument or local variable.
struct KnownVariable {
    std::string sourceName;
    std::string hardwareName;
    std::string typeText;
    unsigned bitWidth = 32;                              ///< In JSON only.
    std::vector<std::vector<KnownPlace>> instances = {}; ///< No input file gives these.

    bool operator==(const KnownVariable&) const = default;
};

struct KnownRegister {
    std::string netName;
    std::vector<KnownPlace> places;

    bool operator==(const KnownRegister&) const = default;
};

/// A condition; only one of kind 2, which belongs to a source line, has the last two fields.
struct KnownCondition {
    std::uint32_t kind = 0;
    std::string text;
    std::uint32_t line = 0;
    std::string file = {};

    bool operator==(const KnownCondition&) const = default;
};

struct KnownKernel {
    std::string name = {};
    std::uint32_t type = 3;
    std::vector<std::string> instancePaths = {};
    std::vector<KnownVariable> arguments = {};
    std::vector<KnownVariable> variables = {};
    std::vector<KnownRegister> registers = {};
    std::vector<KnownCondition> conditions = {}; ///< As they come out, translated.
    std::string pathSuffix = "/inst";            ///< In JSON only.
    std::vector<std::string> brams = {};         ///< No input file gives these.

    bool operator==(const KnownKernel&) const = default;
};

/// The kernel's binary form.
std::string knownRecord(const KnownKernel& kernel);

/// The payload of the JSON section.
std::string knownJson(const std::vector<KnownKernel>& kernels);

/// The payload of the kernel section.
std::string knownKernelData(const std::vector<KnownKernel>& kernels);

/// A new database with these kernels and without project or DWARF. Without kernels it has no
/// kernel section.
std::string knownDatabase(const std::vector<KnownKernel>& kernels);

} // namespace consolidator::test
