// One statement about a place in a file: what readers remark on, what a check of inputs says, and
// what the check of a database's bytes finds.
//
// All of them are findings, and what differs is where they are kept: Diagnostic keeps those of one
// reader, inspect/check/Findings those of all inputs, query/integrity/DatabaseFindings those of one
// database. So the type is down here, where whoever makes one can reach it.
#pragma once

#include "shared/Code.h"
#include "shared/Severity.h"

#include <cstdint>
#include <string>

namespace consolidator {

/// Says what is odd, and where. The place is a line of a text or a byte of a binary file.
struct Finding {
    /// Empty when it is about no file, or when all findings beside it are about the same one.
    std::string file;
    std::uint64_t line = 0; ///< Counted from 1; 0 when it is about no line.
    Severity severity = Severity::Warning;
    Code code = Code::None; ///< For scripts.
    /// For users: without file and line, and without a full stop. As it comes, not printable() yet.
    std::string text;
    std::uint64_t offset = 0; ///< From the start of a binary file; 0 in a text.

    bool operator==(const Finding&) const = default;
};

} // namespace consolidator
