#include "query/integrity/ByteRange.h"

#include <algorithm>
#include <array>

namespace consolidator {

namespace {

constexpr std::size_t blockSize = std::size_t{64} * 1024;

} // namespace

ByteRange::ByteRange(const FileBytes& file, std::uint64_t begin, std::uint64_t end)
    : file_(&file), position_(begin), end_(end) {}

std::string_view ByteRange::peek() {
    const bool isInBlock =
        position_ >= blockBegin_ && position_ - blockBegin_ < std::uint64_t{block_.size()};
    if (!isInBlock) {
        blockBegin_ = position_;
        block_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left(), blockSize)));
        block_.resize(file_->read(position_, block_));
    }
    return std::string_view(block_.data(), block_.size())
        .substr(static_cast<std::size_t>(position_ - blockBegin_));
}

bool ByteRange::read(std::span<char> bytes) {
    while (!bytes.empty()) {
        const std::string_view next = peek().substr(0, bytes.size());
        if (next.empty()) {
            return false;
        }
        std::ranges::copy(next, bytes.begin());
        bytes = bytes.subspan(next.size());
        skip(next.size());
    }
    return true;
}

std::optional<std::uint32_t> ByteRange::number() {
    std::array<char, sizeof(std::uint32_t)> bytes{};
    if (left() < bytes.size() || !read(bytes)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(littleEndian(bytes));
}

std::uint64_t littleEndian(std::span<const char> bytes) {
    std::uint64_t result = 0;
    for (std::size_t i = bytes.size(); i > 0; --i) {
        result = result << 8U | static_cast<std::uint8_t>(bytes[i - 1]);
    }
    return result;
}

} // namespace consolidator
