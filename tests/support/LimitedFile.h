// C files that refuse what is written to them, for writers that report what really went out.
#pragma once

#include "consolidated/FileHandle.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace consolidator::test {

/// An unbuffered file that takes so many bytes and refuses every byte after them.
FileHandle fileOfCapacity(std::size_t capacity);

/// The bytes of the leading pieces that fit whole into `capacity`.
std::size_t sizeOfWholePieces(const std::vector<std::string>& pieces, std::size_t capacity);

/// Writes the record to files of every capacity from nothing to all of it. A piece is a number or
/// the bytes of a text: what write() counts when it went out whole.
template <typename Record>
void expectShortWritesToShow(const Record& record, const std::vector<std::string>& pieces) {
    const std::size_t all = sizeOfWholePieces(pieces, static_cast<std::size_t>(-1));
    for (std::size_t capacity = 0; capacity <= all; ++capacity) {
        const FileHandle file = fileOfCapacity(capacity);
        EXPECT_EQ(record.write(file.get()), sizeOfWholePieces(pieces, capacity))
            << "with room for " << capacity << " bytes";
    }
}

} // namespace consolidator::test
