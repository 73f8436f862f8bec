// Finds bits that a logic-location file places twice: a wrong bit index, or files of two builds in
// one. The reader takes the later line without a word, and has no time to look.
#pragma once

#include "inspect/check/Finding.h"
#include "inspect/text/Progress.h"
#include "model/Kernel.h"

#include <string>
#include <vector>

namespace consolidator::inspect {

/// Looks through logic-location files, of which every line can be read, for lines that place a bit
/// of one of the kernels' registers where an earlier line of the file does not. Each file with such
/// lines makes one finding. It holds 24 bytes for each line about a register.
void reportRepeatedBits(const std::vector<Kernel>& kernels, const std::vector<std::string>& paths,
                        Findings& findings, Progress& progress);

} // namespace consolidator::inspect
