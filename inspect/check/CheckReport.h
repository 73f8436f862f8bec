// The output of `check` and `merge`, for people and for scripts.
#pragma once

#include "inspect/check/Coverage.h"
#include "inspect/check/Findings.h"
#include "inspect/commands/Console.h"

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace consolidator::inspect {

/// What became of the database of a merge.
struct MergeOutcome {
    std::string path;
    std::string reason;     ///< Why it is not written, in words; empty if it is.
    bool hasFailed = false; ///< It was to be written.

    bool isWritten() const { return reason.empty(); }
};

/// What a check has found.
struct CheckReport {
    const Findings& findings;
    const std::vector<KernelCoverage>& coverage;
    std::size_t kernelsOfWrongKind; ///< Those of files that were given with a wrong option.
    bool searchedNets; ///< A logic-location file was read, and searched for missing names.
    const std::optional<MergeOutcome>& outcome; ///< Nothing of a check.
};

/// As a compiler prints it, with tables behind it:
///
///     top.ll:30: error: line begins with "Info", not "Bit": reading stops here and nothing of …
///
///     Coverage
///       kernel      instances  arguments  variables  registers
///       scale_rows          2     1 of 4     2 of 2          5
///
///     Without a location
///       kernel      name            hardware name  nearest net
///       scale_rows  argument input  input_r        none
///
///     1 error, 0 warnings, 0 notes
///
/// Of a merge, one more line says whether the database was written: "DB: written", or
/// "DB: not written: 1 error".
///
/// Without logic-location files that could be searched, there is no column of nearest nets, and a
/// line says so.
void printText(const CheckReport& report, Console& console);

/// As one JSON document, with a newline behind it; see docs/inspector.md.
void printJson(const CheckReport& report, std::ostream& out);

} // namespace consolidator::inspect
