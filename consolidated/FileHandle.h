// Ownership of a C standard library file.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <tuple>
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
inline FileHandle openFile(const std::string& path, const char* mode) {
    FileHandle file(std::fopen(path.c_str(), mode));
    if (!file && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return file;
}

/// Gives a file that was just opened a buffer of this size: a system call moves so many bytes. If
/// the library does not take it, its own does as well.
inline void setBuffer(FileHandle& file, std::size_t size) {
    if (file) {
        std::vector<char>& buffer = file.get_deleter().buffer;
        buffer.resize(size);
        std::ignore = std::setvbuf(file.get(), buffer.data(), _IOFBF, buffer.size());
    }
}

} // namespace consolidator
