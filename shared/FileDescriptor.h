// Ownership of a file descriptor.
#pragma once

#include <unistd.h>
#include <utility>

namespace consolidator {

/// A file descriptor that is closed when its owner goes. Errors of closing are not told.
class FileDescriptor {
public:
    /// None.
    FileDescriptor() = default;

    /// Takes over what open() and the like return; negative stands for none.
    explicit FileDescriptor(int number) : number_(number) {}

    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        close();
        number_ = std::exchange(other.number_, -1);
        return *this;
    }

    bool isOpen() const { return number_ >= 0; }
    int number() const { return number_; }

    void close() {
        if (isOpen()) {
            ::close(std::exchange(number_, -1));
        }
    }

private:
    int number_ = -1;
};

} // namespace consolidator
