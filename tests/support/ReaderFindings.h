// What readers find, to compare with: a reader names no file, and each of its ways to note
// something has a severity.
#pragma once

#include "shared/Finding.h"

#include <cstdint>
#include <string>

namespace consolidator::test {

/// Where and why reading stopped.
inline Finding stopAt(std::uint64_t line, const std::string& reason) {
    return {"", line, Severity::Error, Code::ReadingStopped, reason};
}

inline Finding warningAt(std::uint64_t line, Code code, const std::string& text) {
    return {"", line, Severity::Warning, code, text};
}

inline Finding noteAt(std::uint64_t line, Code code, const std::string& text) {
    return {"", line, Severity::Note, code, text};
}

} // namespace consolidator::test
