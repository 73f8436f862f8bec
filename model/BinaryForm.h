// The primitives of every binary record in a consolidated file: numbers, texts, runs of locations.
//
//   number     4 bytes, unsigned, little-endian
//   text       its length as a number, then its bytes; no terminator
//   locations  their count as a number, then address and offset of each as two numbers
//
//   "top/k"    05 00 00 00  74 6f 70 2f 6b
//
// Reading never believes a length or a count: room is made as bytes really arrive, so a file that
// claims four gigabytes and holds forty bytes fails after forty bytes.
#pragma once

#include "model/LogicLocation.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

// Numbers and locations are written as memory images.
static_assert(std::endian::native == std::endian::little);

/// Each writer returns the number of bytes that really went out: 4 for each whole number, a text's
/// bytes only if all of them did. None of them may be given a null stream.
std::uint32_t writeNumber(std::FILE* stream, std::uint32_t number);
std::uint32_t writeText(std::FILE* stream, std::string_view text);
/// Only the pairs: their count is written before them as a number.
std::uint32_t writeLocations(std::FILE* stream, std::span<const LogicLocation> locations);

/// 0xFFFFFFFF becomes 0xFFFFFFFE, every other value stays. Programs that read these files put a
/// terminator behind what they read, and so keep every length one below the largest number.
std::uint32_t cappedLength(std::uint32_t length);

/// Reads one number; on a short read returns false and leaves `number` as it was.
bool readNumber(std::FILE* stream, std::uint32_t& number);

/// Reads a length and that many bytes. `text` becomes the bytes before the first zero byte. On a
/// short read returns false and leaves `text` as it was.
bool readText(std::FILE* stream, std::string& text);

/// Reads `count` address and offset pairs onto the end of `locations`. On a short read returns
/// false; the whole pairs that came stay.
bool readLocations(std::FILE* stream, std::uint32_t count, std::vector<LogicLocation>& locations);

/// Each passes over what its namesake above reads: it takes as many bytes off the stream and
/// returns the same, but keeps nothing.
bool skipText(std::FILE* stream);
bool skipLocations(std::FILE* stream, std::uint32_t count);
bool skipBytes(std::FILE* stream, std::uint64_t size);

/// Writes the count of the elements, then each one by writeOne(element), which returns the bytes
/// that went out.
template <typename Elements, typename WriteOne>
std::uint32_t writeList(std::FILE* stream, const Elements& elements, WriteOne writeOne) {
    std::uint32_t written = writeNumber(stream, static_cast<std::uint32_t>(elements.size()));
    for (const auto& element : elements) {
        written += writeOne(element);
    }
    return written;
}

/// Reads a count and calls readOne() as often. False when the count came short, and as soon as a
/// call returns false.
template <typename ReadOne>
bool readList(std::FILE* stream, ReadOne readOne) {
    std::uint32_t count = 0;
    if (!readNumber(stream, count)) {
        return false;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        if (!readOne()) {
            return false;
        }
    }
    return true;
}

/// Reads exactly `size` bytes into `bytes`, replacing what it holds. On a short read returns false
/// and leaves the bytes that came.
bool readBytes(std::FILE* stream, std::size_t size, std::string& bytes);

} // namespace consolidator
