// Databases whose kernels have nothing but a name, a type and instance paths: what a hierarchy file
// alone makes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

/// One such kernel.
struct PlainKernel {
    std::string_view name;
    std::uint32_t type = 3; ///< At most 4.
    std::vector<std::string> instancePaths = {};
};

/// The payload of the JSON section.
std::string plainJson(const std::vector<PlainKernel>& kernels);

/// The payload of the kernel section.
std::string plainKernelData(const std::vector<PlainKernel>& kernels);

/// A new database with these kernels and without project or DWARF. Without kernels it has no
/// kernel section.
std::string plainDatabase(const std::vector<PlainKernel>& kernels);

} // namespace consolidator::test
