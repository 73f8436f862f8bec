// What all fuzz targets share: their entry, and how they fail.
//
// A target is one .cpp file that defines LLVMFuzzerTestOneInput(). Built for fuzzing, libFuzzer
// calls it with bytes of its own making; in every other build, ReplayMain.cpp calls it with the
// files of the target's corpus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace consolidator::fuzz {

/// Ends the process, as a crash does, unless `holds`; `what` says what was expected to hold.
void require(bool holds, const char* what);

/// The input as text.
std::string textOf(const std::uint8_t* data, std::size_t size);

} // namespace consolidator::fuzz
