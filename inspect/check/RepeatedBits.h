// Finds bits that a logic-location file places twice: a wrong bit index, or files of two builds in
// one. The reader takes the later line without a word.
#pragma once

#include "inspect/check/Findings.h"
#include "readers/LogicLocationObserver.h"

#include <cstdint>
#include <string>

namespace consolidator::inspect {

/// Listens to the reader of one file for lines that place a bit of a register where an earlier line
/// of the file does not. A file with such lines makes one finding, about the first of them. Which
/// line it contradicts only a second reading can tell.
class RepeatedBits {
public:
    using Placement = LogicLocationObserver::Placement;

    /// What the first reading of the file tells.
    void look(const Placement& placement);

    /// Whether the file has such lines.
    bool any() const { return count_ > 0; }

    /// What a second reading tells; if any() is true.
    void lookAgain(const Placement& placement);

    /// Reports what was found in the file at `path`; if any() is true.
    void report(const std::string& path, Findings& findings) const;

private:
    std::uint64_t count_ = 0; ///< Of lines that contradict the one before them.

    // Of the first such line: the bit, where the line before it has placed it, and both lines.
    std::string net_;
    std::uint32_t bitIndex_ = 0;
    LogicLocation before_;
    std::uint64_t line_ = 0;
    std::uint64_t lineBefore_ = 0; ///< 0 until it is found.
};

} // namespace consolidator::inspect
