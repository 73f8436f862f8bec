// The bytes of a file, at any place of it.
#pragma once

#include "consolidated/FileHandle.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace consolidator {

/// A file whose bytes are read where they are wanted. None of them are kept.
class FileBytes {
public:
    /// Opens the file at `path` for reading. False if it cannot be opened or has no length, as a
    /// pipe.
    bool open(const std::string& path);

    /// As it was when the file was opened.
    std::uint64_t size() const { return size_; }

    /// Fills the front of `bytes` with what stands at `offset`. Returns how many came: fewer than
    /// asked for at the end of the file, and where the disk fails.
    std::size_t read(std::uint64_t offset, std::span<char> bytes) const;

private:
    FileHandle file_;
    std::uint64_t size_ = 0;
};

} // namespace consolidator
