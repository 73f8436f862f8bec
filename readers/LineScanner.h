// Finds many lines of a logic-location file at once, in what of it is in memory already.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// Cuts a text that goes by into pieces of whole lines. A piece stays in the processor's nearest
/// cache while it is looked at several times: for the ends of its lines, for nets, for each line.
class LineScanner {
public:
    /// Whole lines that follow each other.
    struct Piece {
        std::string_view text;               ///< Has no zero byte; may go on behind the last line.
        std::span<const std::uint32_t> ends; ///< Where the newline of each line stands in it.

        std::size_t lineCount() const { return ends.size(); }

        /// Where a line begins; for the number of lines, what is behind the last one.
        std::size_t startOf(std::size_t line) const {
            return line == 0 ? std::size_t{0} : std::size_t{ends[line - 1]} + 1;
        }

        /// A line without its newline.
        std::string_view line(std::size_t line) const {
            return text.substr(startOf(line), ends[line] - startOf(line));
        }
    };

    /// Lines have at most so many bytes; a longer one ends what can be found.
    explicit LineScanner(std::size_t longestLine) : longestLine_(longestLine) {}

    /// The next lines of a text, which is what lies ahead in memory. No line if the first one is
    /// too long, has a zero byte, or ends elsewhere. Holds until the next call.
    Piece next(std::string_view ahead);

    /// Notes how many lines of the piece were of use. When one was not, the next piece is no
    /// larger than twice what was taken of this one, so that a file full of such lines is not
    /// searched over and over.
    void took(const Piece& piece, std::size_t lines);

private:
    static constexpr std::size_t smallestPiece = 64;
    static constexpr std::size_t largestPiece = std::size_t{32} * 1024;

    Piece pieceOf(std::string_view ahead, std::size_t size);

    std::size_t longestLine_;
    std::size_t pieceSize_ = smallestPiece;
    std::vector<std::uint32_t> ends_; ///< Room for the ends of as many lines as a piece may have.
};

} // namespace consolidator
