// Kernels as objects, short to make and to look at.
#pragma once

#include "model/Kernel.h"
#include "tests/support/Bytes.h"
#include "tests/support/KnownKernels.h"

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

Kernel kernelNamed(std::string_view name, KernelType type = KernelType::Unknown);

/// The kernel as it is read from a database that holds record(fields).
Kernel kernelOf(const Record& fields);

/// All that the kernel holds. What the JSON form derives from other fields has its default.
KnownKernel knownFrom(const Kernel& kernel);

std::vector<std::string> namesOf(const std::vector<Kernel>& kernels);

/// The JSON section of a database with one kernel, which has these start conditions and otherwise
/// nothing but its name.
std::string jsonWithStarts(std::string_view name, const std::vector<std::string>& conditions);

} // namespace consolidator::test
