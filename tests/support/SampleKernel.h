// A kernel with something in each of its lists.
#pragma once

#include "model/Kernel.h"

#include <string>

namespace consolidator::test {

/// A kernel with two elements in each list, built by the add operations.
Kernel sampleKernel();

/// The binary form of sampleKernel().
std::string sampleRecord();

} // namespace consolidator::test
