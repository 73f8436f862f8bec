// Running the inspector.
#pragma once

#include "tests/support/Command.h"

#include <string>
#include <vector>

namespace consolidator::test {

/// Runs the inspector in this process, without colour and progress: `arguments` come after its
/// name.
CommandResult inspectRun(const std::vector<std::string>& arguments);

/// The same with colour.
CommandResult inspectRunInColour(const std::vector<std::string>& arguments);

/// Runs the built program in the folder `directory`.
CommandResult runInspector(const std::string& directory, const std::vector<std::string>& arguments,
                           const Preparation& prepare = {});

} // namespace consolidator::test
