// The reading of logic locations in its plainest form, one stream operation after the other, for
// LLFile to be compared with.
#pragma once

#include "model/Kernel.h"

#include <string>
#include <vector>

namespace consolidator::test {

/// Reads the text of a logic-location file and adds the locations of the nets that belong to the
/// kernels. False for a text that cannot be used; the kernels keep what came before the fault.
bool readPlainLogicLocations(const std::string& text, std::vector<Kernel>& kernels);

} // namespace consolidator::test
