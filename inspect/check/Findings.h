// What `check` has to say about inputs: all its findings, so many of a file.
#pragma once

#include "shared/Finding.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

/// All findings of one check, in the order in which they were made. Each names its file, if it is
/// about one.
class Findings {
public:
    /// So many are kept of a file, beside errors, of which there are few: a file full of mistakes
    /// costs no more memory.
    static constexpr std::size_t mostOfAFile = 1000;

    /// Counts the finding, and keeps it unless its file has so many already.
    void add(Finding finding);

    const std::vector<Finding>& kept() const { return kept_; }

    /// How many were made of this severity, those included that were not kept.
    std::uint64_t count(Severity severity) const { return counts_.of(severity); }

    /// How many were made and not kept.
    std::uint64_t dropped() const { return dropped_; }

private:
    std::vector<Finding> kept_;
    std::unordered_map<std::string, std::size_t> keptOf_; ///< By file; their number is the user's.
    SeverityCounts counts_;
    std::uint64_t dropped_ = 0;
};

/// The text between double quotes, for use in a finding; the end of a very long one is left out.
std::string quotedName(std::string_view text);

} // namespace consolidator::inspect
