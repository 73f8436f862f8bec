// What a reader can tell a user about its input beside the kernels that it found there.
#pragma once

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
/// there for tools that explain a database.
class Diagnostic {
public:
    /// One statement about a place in the input.
    struct Remark {
        std::uint64_t line; ///< Counted from 1; 0 when it is about the file as a whole.
        std::string text;   ///< Without a line number, in words that a user understands.
        /// Nothing is wrong with it: inputs without a fault have such places too.
        bool isNote = false;

        bool operator==(const Remark&) const = default;
    };

    /// Only so many remarks are kept, so that a file full of mistakes costs no more memory.
    static constexpr std::size_t mostRemarks = 1000;

    /// Texts quote what a file holds; what is longer than this many bytes is cut and ends in "...".
    static constexpr std::size_t longestText = 4096;

    /// Notes where and why reading ended before the end of the input. The first call counts.
    void stop(std::uint64_t line, std::string reason);

    /// Notes something that reading went on after.
    void remark(std::uint64_t line, std::string text);

    /// Notes something that is as it should be and still may explain what a user does not find.
    void note(std::uint64_t line, std::string text);

    /// Why reading stopped; nothing when the input was read to its end.
    const std::optional<Remark>& stopped() const { return stopped_; }

    /// The first remarks, in the order in which they were made.
    const std::vector<Remark>& remarks() const { return remarks_; }

    /// How many remarks were made, those included that were not kept.
    std::uint64_t remarkCount() const { return remarkCount_; }

private:
    void keep(Remark remark);

    std::optional<Remark> stopped_;
    std::vector<Remark> remarks_;
    std::uint64_t remarkCount_ = 0;
};

/// The remark as a user reads it: "line 31: expected "path:" after "instance"", or the text alone
/// when it is about the file as a whole.
std::string describe(const Diagnostic::Remark& remark);

/// The text between double quotes, for use in a remark. (With the name quoted() the standard
/// library's function would be meant too wherever its header comes in.)
std::string inQuotes(std::string_view text);

} // namespace consolidator
