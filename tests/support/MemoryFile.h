// C files with known content, for records that are read from and written to them.
#pragma once

#include "consolidated/FileHandle.h"

#include <string>
#include <string_view>

namespace consolidator::test {

/// A nameless temporary file that holds `bytes` and stands at its start, open for both directions.
FileHandle fileWith(std::string_view bytes);

/// All bytes of the file, whatever its position.
std::string contentOf(std::FILE* file);

/// The bytes that write(FILE*) puts into an empty file.
template <typename Record>
std::string binaryForm(const Record& record) {
    const FileHandle file = fileWith({});
    record.write(file.get());
    return contentOf(file.get());
}

} // namespace consolidator::test
