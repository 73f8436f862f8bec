#include "consolidated/LineCountingBuffer.h"

#include <algorithm>

namespace consolidator {

LineCountingBuffer::LineCountingBuffer(std::streambuf& source)
    : source_(source),
      block_(std::make_unique_for_overwrite<char[]>(blockSize)),
      counted_(block_.get()) {
    setg(block_.get(), block_.get(), block_.get());
}

std::uint64_t LineCountingBuffer::line() {
    countUpTo(gptr());
    return newlines_ + 1;
}

void LineCountingBuffer::skip(std::size_t bytes, std::uint64_t newlines) {
    countUpTo(gptr());
    setg(eback(), gptr() + bytes, egptr());
    // The caller has counted those of the skipped bytes while it looked at them.
    counted_ = gptr();
    newlines_ += newlines;
}

void LineCountingBuffer::countUpTo(const char* end) {
    if (counted_ < end) {
        newlines_ += static_cast<std::uint64_t>(std::count(counted_, end, '\n'));
        counted_ = end;
    }
}

LineCountingBuffer::int_type LineCountingBuffer::underflow() {
    countUpTo(egptr());
    // Until bytes have come the buffer is empty, also when the source throws.
    setg(block_.get(), block_.get(), block_.get());
    counted_ = block_.get();
    const std::streamsize came =
        source_.sgetn(block_.get(), static_cast<std::streamsize>(blockSize));
    if (came <= 0) {
        return traits_type::eof();
    }
    setg(block_.get(), block_.get(), block_.get() + came);
    arrived_ += static_cast<std::uint64_t>(came);
    if (listener_) {
        listener_(arrived_);
    }
    return traits_type::to_int_type(*gptr());
}

} // namespace consolidator
