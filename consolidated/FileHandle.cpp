#include "consolidated/FileHandle.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/types.h>
#include <tuple>
#include <unistd.h>

namespace consolidator {

namespace {

CountedBytes& countedBytes(void* cookie) {
    return *static_cast<CountedBytes*>(cookie);
}

} // namespace

FileHandle openFile(const std::string& path, const char* mode) {
    FileHandle file(std::fopen(path.c_str(), mode));
    if (!file && errno == ENOMEM) {
        throw std::bad_alloc();
    }
    return file;
}

FileHandle openDescriptor(int descriptor) {
    const int copy = descriptor < 0 ? -1 : fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    FileHandle stream(copy < 0 ? nullptr : fdopen(copy, "w"));
    if (!stream && copy >= 0) {
        close(copy);
    }
    return stream;
}

FileHandle CountedBytes::open() {
    cookie_io_functions_t functions = {};
    functions.write = [](void* cookie, const char*, std::size_t count) {
        CountedBytes& bytes = countedBytes(cookie);
        bytes.position_ += count;
        bytes.size_ = std::max(bytes.size_, bytes.position_);
        return static_cast<ssize_t>(count);
    };
    functions.seek = [](void* cookie, off64_t* offset, int whence) {
        CountedBytes& bytes = countedBytes(cookie);
        *offset += whence == SEEK_CUR ? static_cast<off64_t>(bytes.position_) : 0;
        bytes.position_ = static_cast<std::uint64_t>(*offset);
        return 0;
    };
    return FileHandle(fopencookie(this, "w", functions));
}

void setBuffer(FileHandle& file, std::size_t size) {
    if (file) {
        std::vector<char>& buffer = file.get_deleter().buffer;
        buffer.resize(size);
        std::ignore = std::setvbuf(file.get(), buffer.data(), _IOFBF, buffer.size());
    }
}

} // namespace consolidator
