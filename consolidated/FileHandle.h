// Ownership of a C standard library file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace consolidator {

/// Closes a file for FileHandle.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }

    /// What the file is read or written through, if it is not the library's own small buffer. It
    /// must live until the file is closed.
    std::vector<char> buffer;
};

/// Closes its file when it goes out of scope.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// Opens `path` in a mode of std::fopen; null when that fails. Throws when there is no memory for
/// it, which says nothing about the file.
FileHandle openFile(const std::string& path, const char* mode);

/// Opens for writing what a descriptor leads to. The descriptor stays open when the file is closed.
/// Null, with errno, when that fails or there is none (-1).
FileHandle openDescriptor(int descriptor);

/// Gives a file that was just opened a buffer of this size: a system call moves so many bytes. If
/// the library does not take it, its own does as well.
void setBuffer(FileHandle& file, std::size_t size);

/// A file that keeps nothing of what is written to it but how far that reaches.
class CountedBytes {
public:
    /// Opens it for writing. This object must outlive the file.
    FileHandle open();

    /// The size that an ordinary file would have; complete when it is closed.
    std::uint64_t size() const { return size_; }

private:
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};

} // namespace consolidator
