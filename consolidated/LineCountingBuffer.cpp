#include "consolidated/LineCountingBuffer.h"

#include <algorithm>

namespace consolidator {

LineCountingBuffer::LineCountingBuffer(std::streambuf& source)
    : source_(source), block_(blockSize), counted_(block_.data()) {
    setg(block_.data(), block_.data(), block_.data());
}

std::uint64_t LineCountingBuffer::line() {
    countUpTo(gptr());
    return newlines_ + 1;
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
    setg(block_.data(), block_.data(), block_.data());
    counted_ = block_.data();
    const std::streamsize came =
        source_.sgetn(block_.data(), static_cast<std::streamsize>(block_.size()));
    if (came <= 0) {
        return traits_type::eof();
    }
    setg(block_.data(), block_.data(), block_.data() + came);
    return traits_type::to_int_type(*gptr());
}

} // namespace consolidator
