// Ownership of a C standard library file.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace consolidator {

/// Closes a file for FileHandle.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// Closes its file when it goes out of scope.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// Opens `path` in a mode of std::fopen; null when that fails.
inline FileHandle openFile(const std::string& path, const char* mode) {
    return FileHandle(std::fopen(path.c_str(), mode));
}

} // namespace consolidator
