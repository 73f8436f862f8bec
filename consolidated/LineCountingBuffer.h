// The stream buffer under every reader: large blocks in, a line number out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <streambuf>
#include <vector>

namespace consolidator {

/// Passes on the bytes of another stream buffer and knows at which line reading stands.
///
/// Readers take words and lines off a standard stream, which keeps no line number. This buffer
/// counts newlines by block, not by character, so asking for the line costs one look at each byte
/// however often it is asked, and not asking costs nothing more than that.
///
/// It asks its source for large blocks, which spares small reads, and works on pipes. When the
/// source throws (a directory was opened, a disk failed), the exception reaches the stream, which
/// sets its bad bit.
class LineCountingBuffer final : public std::streambuf {
public:
    /// `source` is not owned and must outlive this buffer.
    explicit LineCountingBuffer(std::streambuf& source);

    /// The line, counted from 1, of the next byte to be read.
    std::uint64_t line();

protected:
    int_type underflow() override;

private:
    static constexpr std::size_t blockSize = std::size_t{64} * 1024;

    void countUpTo(const char* end);

    std::streambuf& source_;
    std::vector<char> block_;
    std::uint64_t newlines_ = 0; ///< Newlines before `counted_`.
    const char* counted_;        ///< Newlines of the block are counted up to here.
};

} // namespace consolidator
