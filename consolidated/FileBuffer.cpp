#include "consolidated/FileBuffer.h"

namespace consolidator {

namespace {

constexpr std::size_t blockSize = std::size_t{64} * 1024;

} // namespace

FileBuffer::FileBuffer(std::FILE* file, std::uint64_t limit)
    : file_(file), limit_(limit), block_(std::make_unique_for_overwrite<char[]>(blockSize)) {
    setp(block_.get(), block_.get() + blockSize);
}

bool FileBuffer::finish() {
    // The C file has a buffer too, and would tell only later that there is no room for it.
    return passBlock() && std::fflush(file_) == 0;
}

FileBuffer::int_type FileBuffer::overflow(int_type character) {
    if (!passBlock()) {
        return traits_type::eof();
    }
    if (!traits_type::eq_int_type(character, traits_type::eof())) {
        *pptr() = traits_type::to_char_type(character);
        pbump(1);
    }
    return traits_type::not_eof(character);
}

std::streamsize FileBuffer::xsputn(const char* text, std::streamsize length) {
    // What is longer than the block need not go through it.
    if (length < static_cast<std::streamsize>(blockSize)) {
        return std::streambuf::xsputn(text, length);
    }
    return passBlock() && pass(text, static_cast<std::size_t>(length)) ? length : 0;
}

int FileBuffer::sync() {
    return passBlock() ? 0 : -1;
}

bool FileBuffer::pass(const char* text, std::size_t length) {
    // Once failed, always failed: what came later would stand behind a gap.
    failed_ =
        failed_ || length > limit_ - written_ || std::fwrite(text, 1, length, file_) != length;
    written_ += failed_ ? 0 : length;
    return !failed_;
}

bool FileBuffer::passBlock() {
    const auto length = static_cast<std::size_t>(pptr() - pbase());
    setp(block_.get(), block_.get() + blockSize);
    return length == 0 ? !failed_ : pass(block_.get(), length);
}

} // namespace consolidator
