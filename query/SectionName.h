// What the sections of a database are called.
#pragma once

#include "consolidated/SectionEntry.h"

#include <string>

namespace consolidator {

/// What a section holds, in words; "type 7 (unknown)" for a type that this program does not know.
std::string describe(const SectionEntry& entry);

} // namespace consolidator
