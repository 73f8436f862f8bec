// Ownership of a C standard library file.
#pragma once

#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>
#include <string>

namespace consolidator {

/// Closes a file for FileHandle.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
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

} // namespace consolidator
