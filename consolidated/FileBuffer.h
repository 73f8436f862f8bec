// A stream buffer that writes to a C file: text goes out as it is made, however long it gets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <streambuf>

namespace consolidator {

/// Passes what is written to a standard stream on to a C file, in blocks.
///
///     FileBuffer buffer(file, limit);
///     std::ostream out(&buffer);
///     out << text;
///     const bool all = buffer.finish();
///
/// When a block cannot be written, or the text gets longer than the limit, the stream's bad bit is
/// set and nothing goes out any more.
class FileBuffer final : public std::streambuf {
public:
    /// `file` is not owned and must outlive the buffer. At most `limit` bytes are written to it.
    FileBuffer(std::FILE* file, std::uint64_t limit);

    /// Passes on what is left. True when all that was written to the stream is in the file.
    bool finish();

    /// How many bytes have been passed on.
    std::uint64_t written() const { return written_; }

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize length) override;
    int sync() override;

private:
    bool pass(const char* text, std::size_t length);
    bool passBlock();

    std::FILE* file_;
    std::uint64_t limit_;
    std::uint64_t written_ = 0;
    bool failed_ = false;
    std::unique_ptr<char[]> block_;
};

} // namespace consolidator
