// What the example project's files tell, worked out by hand.
#pragma once

#include "tests/support/KnownKernels.h"

#include <string>
#include <vector>

namespace consolidator::test {

/// The folder of its files, examples/.
std::string exampleFolder();

/// The kernels of examples/, as the command of scripts/demo leaves them.
std::vector<KnownKernel> exampleKernels();

/// The bytes of examples/program.dwarf.
std::string exampleDwarf();

/// The whole database that the command of scripts/demo makes, of project "accelerator".
std::string exampleDatabase();

} // namespace consolidator::test
