#include "tests/support/LimitedFile.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace consolidator::test {

namespace {

ssize_t takeBytes(void* cookie, const char*, std::size_t size) {
    auto& left = *static_cast<std::size_t*>(cookie);
    const std::size_t taken = std::min(size, left);
    left -= taken;
    return static_cast<ssize_t>(taken);
}

int freeCookie(void* cookie) {
    const std::unique_ptr<std::size_t> left(static_cast<std::size_t*>(cookie));
    return 0;
}

} // namespace

FileHandle fileOfCapacity(std::size_t capacity) {
    auto left = std::make_unique<std::size_t>(capacity);
    FileHandle file(fopencookie(left.get(), "w", {nullptr, takeBytes, nullptr, freeCookie}));
    if (!file) {
        throw std::runtime_error("cannot make a file of limited capacity");
    }
    static_cast<void>(left.release()); // freeCookie() has it now
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    return file;
}

std::size_t sizeOfWholePieces(const std::vector<std::string>& pieces, std::size_t capacity) {
    std::size_t sum = 0;
    for (const std::string& piece : pieces) {
        if (piece.size() > capacity - sum) {
            break;
        }
        sum += piece.size();
    }
    return sum;
}

} // namespace consolidator::test
