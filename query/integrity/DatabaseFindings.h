// What a check of a database's bytes found: so many of each severity.
#pragma once

#include "shared/Finding.h"

#include <concepts>
#include <cstdint>
#include <string>
#include <vector>

namespace consolidator {

/// What one check found in a database that is not as it should be, in the order in which it came.
/// All of it is about the one file, at offsets of it; texts are printable, and no code is given, as
/// `verify` shows none.
///
/// A hostile file holds millions of faults: of each severity, so many are kept, and others counted.
class DatabaseFindings {
public:
    static constexpr std::uint64_t mostKept = 1000;

    /// Adds a finding with the text that makeText() gives, which is called only if it is kept.
    template <std::invocable Text>
    void add(Severity severity, std::uint64_t offset, Text makeText) {
        if (counts_.add(severity) <= mostKept) {
            kept_.push_back({"", 0, severity, Code::None, makeText(), offset});
        }
    }

    void add(Severity severity, std::uint64_t offset, const std::string& text) {
        add(severity, offset, [&text] { return text; });
    }

    const std::vector<Finding>& kept() const { return kept_; }

    /// Those included that were not kept.
    std::uint64_t count(Severity severity) const { return counts_.of(severity); }

private:
    std::vector<Finding> kept_;
    SeverityCounts counts_;
};

} // namespace consolidator
