// What a reader can tell a user about its input beside the kernels that it found there.
#pragma once

#include "shared/Finding.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Where and why reading stopped, and what was passed over or is not what it seems to be.
///
/// The consolidator prints none of it: an input that it cannot use is dropped in silence. It is
/// there for tools that explain a database. All findings are about the one input, whose path, which
/// a reader need not have, they leave out; line 0 stands for the input as a whole.
class Diagnostic {
public:
    /// Only so many remarks are kept, so that a file full of mistakes costs no more memory.
    static constexpr std::size_t mostRemarks = 1000;

    /// Texts quote what a file holds; what is longer than this many bytes is cut and ends in "...".
    static constexpr std::size_t longestText = 4096;

    /// Notes where and why reading ended before the end of the input, as an error with the code
    /// ReadingStopped. The first call counts.
    void stop(std::uint64_t line, std::string reason);

    /// Notes something that reading went on after, as a warning.
    void remark(std::uint64_t line, Code code, std::string text);

    /// Notes something that is as it should be and still may explain what a user does not find.
    void note(std::uint64_t line, Code code, std::string text);

    /// Why reading stopped; nothing when the input was read to its end.
    const std::optional<Finding>& stopped() const { return stopped_; }

    /// The first remarks, in the order in which they were made.
    const std::vector<Finding>& remarks() const { return remarks_; }

    /// How many remarks were made, those included that were not kept.
    std::uint64_t remarkCount() const { return remarkCount_; }

private:
    void keep(Finding remark);

    std::optional<Finding> stopped_;
    std::vector<Finding> remarks_;
    std::uint64_t remarkCount_ = 0;
};

/// The remark as a user reads it: "line 31: expected "path:" after "instance"", or the text alone
/// when it is about the file as a whole.
std::string describe(const Finding& remark);

/// The text between double quotes, for use in a remark. (With the name quoted() the standard
/// library's function would be meant too wherever its header comes in.)
std::string inQuotes(std::string_view text);

} // namespace consolidator
