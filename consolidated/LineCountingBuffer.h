// The stream buffer under every reader: large blocks in, a line number out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <streambuf>
#include <string_view>
#include <utility>

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
    /// The most bytes that are in memory at a time.
    static constexpr std::size_t blockSize = std::size_t{256} * 1024;

    /// Is told how many bytes have come from the source so far, with each block.
    using Listener = std::function<void(std::uint64_t)>;

    /// `source` is not owned and must outlive this buffer.
    explicit LineCountingBuffer(std::streambuf& source);

    /// The line, counted from 1, of the next byte to be read.
    std::uint64_t line();

    /// The bytes that are in the block already and will be read next. Reading a file a byte at a
    /// time through its stream costs many times what looking at them here does.
    std::string_view ahead() const { return {gptr(), egptr()}; }

    /// Goes on behind the first `bytes` of ahead(), among which there are so many newlines.
    void skip(std::size_t bytes, std::uint64_t newlines);

    /// Has `listener` told from now on; an empty one ends that.
    void watch(Listener listener) { listener_ = std::move(listener); }

protected:
    int_type underflow() override;

private:
    void countUpTo(const char* end);

    std::streambuf& source_;
    std::unique_ptr<char[]> block_; ///< Not filled with zeros first.
    Listener listener_;             ///< May be empty.
    std::uint64_t arrived_ = 0;     ///< Bytes that have come from the source.
    std::uint64_t newlines_ = 0;    ///< Newlines before `counted_`.
    const char* counted_;           ///< Newlines of the block are counted up to here.
};

} // namespace consolidator
