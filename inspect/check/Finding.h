// What `check` has to say about an input.
#pragma once

#include "query/Severity.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

/// One statement about a place, as compilers make them.
struct Finding {
    std::string file;       ///< Empty when it is about no file.
    std::uint64_t line = 0; ///< Counted from 1; 0 when it is about no line.
    Severity severity = Severity::Warning;
    std::string code; ///< For scripts: "wrong-kind". The codes are listed in docs/inspector.md.
    std::string text; ///< For users. As it comes, not printable() yet.

    bool operator==(const Finding&) const = default;
};

/// All findings of one check, in the order in which they were made.
class Findings {
public:
    /// So many are kept of a file, beside errors, of which there are few: a file full of mistakes
    /// costs no more memory.
    static constexpr std::size_t mostOfAFile = 1000;

    /// Counts the finding, and keeps it unless its file has so many already.
    void add(Finding finding);

    const std::vector<Finding>& kept() const { return kept_; }

    /// How many were made of this severity, those included that were not kept.
    std::uint64_t count(Severity severity) const;

    /// How many were made and not kept.
    std::uint64_t dropped() const { return dropped_; }

private:
    std::vector<Finding> kept_;
    std::unordered_map<std::string, std::size_t> keptOf_; ///< By file; their number is the user's.
    std::array<std::uint64_t, 3> counts_{};
    std::uint64_t dropped_ = 0;
};

/// The text between double quotes, for use in a finding; the end of a very long one is left out.
std::string quotedName(std::string_view text);

} // namespace consolidator::inspect
