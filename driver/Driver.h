// One run of the consolidator, from the command line to the exit status.
#pragma once

#include <iosfwd>

namespace consolidator {

/// Runs the program on a command line as main() gets it and returns the exit status: 1 when the
/// consolidated file cannot be opened, belongs to another project or is of a newer major version,
/// else 0. Usage and option problems go to `out`, failures of files to `err`.
int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

} // namespace consolidator
