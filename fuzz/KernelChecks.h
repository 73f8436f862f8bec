// What fuzz targets ask of kernels.
#pragma once

#include "model/Kernel.h"

#include <vector>

namespace consolidator::fuzz {

/// Whether every field of the two is the same.
bool same(const Kernel& left, const Kernel& right);
bool same(const std::vector<Kernel>& left, const std::vector<Kernel>& right);

/// Requires that no list of named elements in the kernel holds two of the same name.
void requireUniqueNames(const Kernel& kernel);

/// The same, and that no two conditions are equal.
void requireUniqueLists(const Kernel& kernel);

} // namespace consolidator::fuzz
