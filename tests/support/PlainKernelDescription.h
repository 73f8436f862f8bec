// The kernels of a kernel description as they stand in its tree, walked in the plainest way, for
// KernelFile to be compared with.
#pragma once

#include "model/Kernel.h"
#include "shared/schemas/KernelDescription.h"

#include <vector>

namespace consolidator::test {

/// The tree's kernels in document order. Each has the arguments of those before it, too.
std::vector<Kernel> plainKernelsOf(const Mekto::Project& project);

} // namespace consolidator::test
