// The base of all readers: one input file, the kernels found in it, and how reading it went.
#pragma once

#include "consolidated/Diagnostic.h"
#include "consolidated/LineCountingBuffer.h"
#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// Reads one input into a list of kernels, which ConsolidatedFile::addInputFile then merges into
/// the project. A reader lives for one input only.
///
///     HierarchyFile reader("system.hier");
///     if (reader.isOpen() && reader.parse()) {
///         use(reader.kernels());
///     }
class InputFile {
public:
    /// Opens the file. Failure shows in isOpen(). Messages of the reader go to `errors`.
    explicit InputFile(const std::string& path, std::ostream& errors = std::cerr);

    /// Reads from `source`, for example a text in memory; there is no file name then.
    explicit InputFile(std::unique_ptr<std::streambuf> source, std::ostream& errors = std::cerr);

    virtual ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// True when the input was opened and no reading has failed or met the end yet.
    virtual bool isOpen() const;

    /// Reads the whole input and fills the kernel list. False when the input cannot be used; the
    /// list then holds what came before the fault.
    virtual bool parse() = 0;

    /// Reads an empty file instead, whatever is in this one, and also if there is none yet. For a
    /// file that the run itself is going to replace; to be called before anything is read.
    void beEmpty();

    /// Runs parse() if the input is open. False when it fails or throws, which is noted then; but
    /// lack of memory is thrown on.
    bool tryToParse();

    const std::vector<Kernel>& kernels() const { return kernels_; }

    /// Hands the kernels over to the caller; the reader has none any more.
    std::vector<Kernel> takeKernels() { return std::exchange(kernels_, {}); }

    /// Version of the input's format as the reader finds it; -1 until it finds one.
    float version() const { return version_; }

    /// The path as it was given; nothing for an input that is no file.
    const std::optional<std::string>& fileName() const { return fileName_; }

    const Diagnostic& diagnostic() const { return diagnostic_; }

    /// Has `listener` told from time to time how many bytes have come from the input. To be called
    /// before parse().
    void watch(LineCountingBuffer::Listener listener) { buffer_.watch(std::move(listener)); }

protected:
    /// The line, counted from 1, of the next byte that the stream will deliver.
    std::uint64_t line() { return buffer_.line(); }

    /// What of the input is in memory already, for readers of huge files: they may take lines from
    /// there, skip what they took, and go on with the stream, which must be good. The bytes hold,
    /// also those that were skipped, until the stream reads behind them. See LineCountingBuffer.
    std::string_view ahead() const { return buffer_.ahead(); }
    void skip(std::size_t bytes, std::uint64_t newlines) { buffer_.skip(bytes, newlines); }

    /// Reads one line as std::istream::getline does and returns it up to its first zero byte; it
    /// lives in `buffer`. A line that does not fit into all but one of the buffer's characters
    /// comes in part and leaves the stream failed; so does a line at the end of the stream, which
    /// is empty.
    std::string_view readLine(std::span<char> buffer);

    /// True when the stream has failed before its end: no later read will get any further.
    bool stuck() const { return stream_.fail() && !stream_.eof(); }

    /// Notes where and why reading stops. Returns false, for parse() to pass on.
    bool stop(std::uint64_t atLine, std::string reason);

    /// The same for a line that left the stream stuck: it has more than `most` characters, or the
    /// file cannot be read.
    bool stopAtLine(std::uint64_t atLine, std::size_t most);

    float version_ = -1.0F;
    std::optional<std::string> fileName_;

private:
    // The stream reads through the two buffers and so comes after them.
    std::unique_ptr<std::streambuf> source_;
    LineCountingBuffer buffer_{*source_};

protected:
    std::istream stream_{&buffer_};
    std::vector<Kernel> kernels_;
    Diagnostic diagnostic_;
    std::ostream& errors_;
};

} // namespace consolidator
