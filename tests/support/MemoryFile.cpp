#include "tests/support/MemoryFile.h"

#include <stdexcept>

namespace consolidator::test {

FileHandle fileWith(std::string_view bytes) {
    FileHandle file(std::tmpfile());
    // An empty view may have no bytes to point to, which fwrite does not take.
    const std::string content(bytes);
    if (!file || std::fwrite(content.data(), 1, content.size(), file.get()) != content.size()) {
        throw std::runtime_error("cannot make a temporary file");
    }
    std::rewind(file.get());
    return file;
}

std::string contentOf(std::FILE* file) {
    std::fseek(file, 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    return bytes;
}

} // namespace consolidator::test
