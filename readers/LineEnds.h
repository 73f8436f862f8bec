// Finds the ends of many lines at once.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// Where the lines of a text end.
///
/// A search for the next newline is quick, but begins where the one before has ended, and so waits
/// for it: for lines of 80 bytes that is most of the time. So the text is cut in four, and four
/// searches that need not wait for each other take turns. That halves the time.
class LineEnds {
public:
    /// The positions of all newlines of a text below 4 GiB, ascending. The result, for which up to
    /// four bytes per byte of the text are kept, holds until the next call.
    std::span<const std::uint32_t> find(std::string_view text);

private:
    std::vector<std::uint32_t> ends_;
};

} // namespace consolidator
