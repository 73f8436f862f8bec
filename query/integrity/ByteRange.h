// A part of a file, from its first byte to its last.
#pragma once

#include "query/integrity/FileBytes.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// Goes through the bytes from one place of a file to another, block by block. Nothing beyond is
/// touched, whatever the bytes claim.
class ByteRange {
public:
    /// From `begin` up to `end`, which lies in the file. The file must outlive the range.
    ByteRange(const FileBytes& file, std::uint64_t begin, std::uint64_t end);

    /// Where in the file the next byte stands.
    std::uint64_t position() const { return position_; }

    /// How many bytes are to come.
    std::uint64_t left() const { return end_ - position_; }

    /// Some of the next bytes, which stay to come. Empty at the end, and where the file has become
    /// shorter meanwhile.
    std::string_view peek();

    /// Passes over so many bytes; not more than are left.
    void skip(std::uint64_t count) { position_ += count; }

    /// Fills `bytes` with the next ones. False if there are fewer.
    bool read(std::span<char> bytes);

    /// The next four bytes as a number, least significant first. Nothing if there are fewer.
    std::optional<std::uint32_t> number();

private:
    const FileBytes* file_;
    std::uint64_t position_;
    std::uint64_t end_;
    std::vector<char> block_;
    std::uint64_t blockBegin_ = 0; ///< Where the block stands in the file.
};

/// Four or eight bytes as a number, least significant first.
std::uint64_t littleEndian(std::span<const char> bytes);

} // namespace consolidator
