// What of an HLS file does not reach its kernel.
#pragma once

#include "inspect/check/Findings.h"
#include "readers/HLSFile.h"

#include <string>

namespace consolidator::inspect {

/// Finds, in a file that was read to its end, the source lines of other files whose number was
/// taken, the variables of entries that do not count, and those that have a second register.
/// `path` is the file's. What a file has many times makes one finding.
void reportHlsLosses(const HLSFile& reader, const std::string& path, Findings& findings);

} // namespace consolidator::inspect
