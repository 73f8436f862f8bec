#include "model/BinaryForm.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace consolidator {

namespace {

constexpr std::uint32_t largestLength = std::numeric_limits<std::uint32_t>::max() - 1;

/// Bytes asked for at first; later steps double what has already come.
constexpr std::size_t firstStep = std::size_t{64} * 1024;

/// Names are no longer than this, but for those of odd files.
constexpr std::size_t longestName = 256;

// What std::fread and std::fwrite do, for streams that no other thread uses. A record is many small
// pieces, and a lock for each took a tenth of a whole run.

std::size_t readPieces(void* pieces, std::size_t size, std::size_t count, std::FILE* stream) {
    return fread_unlocked(pieces, size, count, stream);
}

std::size_t writePieces(const void* pieces, std::size_t size, std::size_t count,
                        std::FILE* stream) {
    return fwrite_unlocked(pieces, size, count, stream);
}

/// Reads `count` elements onto the end of `elements`, making room in steps that never exceed what
/// the stream has already delivered (or `firstStep`). Returns false when fewer came; those stay.
template <typename Container>
bool readOnto(std::FILE* stream, std::size_t count, Container& elements) {
    using Element = typename Container::value_type;
    std::size_t left = count;
    std::size_t step = firstStep / sizeof(Element);
    while (left > 0) {
        const std::size_t wanted = std::min(left, step);
        const std::size_t before = elements.size();
        elements.resize(before + wanted);
        const std::size_t came =
            readPieces(elements.data() + before, sizeof(Element), wanted, stream);
        if (came < wanted) {
            elements.resize(before + came);
            return false;
        }
        left -= wanted;
        step = elements.size();
    }
    return true;
}

/// A string that grows to its length takes up to twice the memory of one that is made from its
/// bytes, and a project holds millions of names.
bool readName(std::FILE* stream, std::size_t length, std::string& text) {
    std::array<char, longestName> bytes; // NOLINT(cppcoreguidelines-pro-type-member-init)
    if (readPieces(bytes.data(), 1, length, stream) < length) {
        return false;
    }
    const std::string_view all(bytes.data(), length);
    text = std::string(all.substr(0, all.find('\0')));
    return true;
}

bool readLongText(std::FILE* stream, std::size_t length, std::string& text) {
    std::string bytes;
    if (!readBytes(stream, length, bytes)) {
        return false;
    }
    bytes.resize(std::min(bytes.size(), bytes.find('\0')));
    text = std::move(bytes);
    return true;
}

} // namespace

std::uint32_t writeNumber(std::FILE* stream, std::uint32_t number) {
    return writePieces(&number, sizeof number, 1, stream) == 1 ? sizeof number : 0;
}

std::uint32_t writeText(std::FILE* stream, std::string_view text) {
    // A text too long for its length field is cut, so that the record stays readable.
    const auto length =
        static_cast<std::uint32_t>(std::min<std::size_t>(text.size(), largestLength));
    std::uint32_t written = writeNumber(stream, length);
    if (writePieces(text.data(), 1, length, stream) == length) {
        written += length;
    }
    return written;
}

std::uint32_t writeLocations(std::FILE* stream, std::span<const LogicLocation> locations) {
    // Without elements there may be no address either, which fwrite must not be given.
    if (locations.empty()) {
        return 0;
    }
    const std::size_t numbers =
        writePieces(locations.data(), sizeof(std::uint32_t), 2 * locations.size(), stream);
    return static_cast<std::uint32_t>(numbers * sizeof(std::uint32_t));
}

std::uint32_t cappedLength(std::uint32_t length) {
    return std::min(length, largestLength);
}

bool readNumber(std::FILE* stream, std::uint32_t& number) {
    // Into a value of its own: a read that comes short may have written some of the bytes.
    std::uint32_t value = 0;
    if (readPieces(&value, sizeof value, 1, stream) != 1) {
        return false;
    }
    number = value;
    return true;
}

bool readText(std::FILE* stream, std::string& text) {
    std::uint32_t length = 0;
    if (!readNumber(stream, length)) {
        return false;
    }
    length = cappedLength(length);
    return length <= longestName ? readName(stream, length, text)
                                 : readLongText(stream, length, text);
}

bool readLocations(std::FILE* stream, std::uint32_t count, std::vector<LogicLocation>& locations) {
    return readOnto(stream, count, locations);
}

bool readBytes(std::FILE* stream, std::size_t size, std::string& bytes) {
    bytes.clear();
    return readOnto(stream, size, bytes);
}

bool skipText(std::FILE* stream) {
    std::uint32_t length = 0;
    return readNumber(stream, length) && skipBytes(stream, cappedLength(length));
}

bool skipLocations(std::FILE* stream, std::uint32_t count) {
    return skipBytes(stream, std::uint64_t{count} * sizeof(LogicLocation));
}

bool skipBytes(std::FILE* stream, std::uint64_t size) {
    // Seeking would be no quicker over the few bytes of a record, and goes behind the end as well.
    std::array<char, 4096> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
    while (size > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, block.size()));
        if (readPieces(block.data(), 1, wanted, stream) < wanted) {
            return false;
        }
        size -= wanted;
    }
    return true;
}

} // namespace consolidator
