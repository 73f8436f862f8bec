// Running the driver in this process: thousands of runs a second, for tests that need many.
#pragma once

#include "tests/support/Command.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace consolidator::test {

/// Runs the driver; `words` come behind the program's name.
CommandResult runDriver(std::vector<std::string> words);

/// The same on streams of the caller; returns the exit status.
int runDriver(std::vector<std::string> words, std::ostream& out, std::ostream& err);

} // namespace consolidator::test
