// What a check of a database found.
#pragma once

#include "query/Severity.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace consolidator {

/// One thing in a database that is not as it should be, and where in the file.
struct Fault {
    Severity severity = Severity::Note;
    std::uint64_t offset = 0; ///< From the start of the file.
    std::string text;         ///< Printable, without a full stop.
};

/// The faults that one check found, in the order in which they came.
///
/// A hostile file holds millions of faults: of each severity, so many are kept, and others counted.
class Faults {
public:
    /// So many of each severity are kept.
    static constexpr std::uint64_t mostKept = 1000;

    /// Adds a finding with the text that makeText() gives, which is called only if it is kept.
    template <std::invocable Text>
    void add(Severity severity, std::uint64_t offset, Text makeText) {
        std::uint64_t& count = counts_[static_cast<std::size_t>(severity)];
        if (count++ < mostKept) {
            kept_.push_back({severity, offset, makeText()});
        }
    }

    /// The same with a text that is there already.
    void add(Severity severity, std::uint64_t offset, const std::string& text) {
        add(severity, offset, [&text] { return text; });
    }

    /// Those that were kept, in the order in which they were found.
    const std::vector<Fault>& kept() const { return kept_; }

    /// How many of a severity were found, those included that were not kept.
    std::uint64_t count(Severity severity) const {
        return counts_[static_cast<std::size_t>(severity)];
    }

private:
    std::vector<Fault> kept_;
    std::array<std::uint64_t, 3> counts_{};
};

} // namespace consolidator
