#include "tests/support/Fifo.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace consolidator::test {

namespace {

void makeFifo(const std::string& path) {
    if (mkfifo(path.c_str(), 0600) != 0) {
        throw std::runtime_error("cannot make the pipe " + path);
    }
}

bool writeTo(int descriptor, std::string_view bytes) {
    return write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

/// Waits for a reader and serves it.
void serve(const std::string& path, const std::string& bytes) {
    // A reader may leave before the bytes have come: that must not end the tests.
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
    const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor >= 0) {
        (void)writeTo(descriptor, bytes);
        close(descriptor);
    }
}

} // namespace

FifoWithContent::FifoWithContent(const std::string& path, std::string_view bytes) : path_(path) {
    makeFifo(path);
    writer_ = std::thread(serve, path, std::string(bytes));
}

FifoWithContent::~FifoWithContent() {
    // A writer that nobody has read from still waits; this lets it go on.
    const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    writer_.join();
    close(reader);
}

CollectingFifo::CollectingFifo(const std::string& path, std::string_view bytes) {
    makeFifo(path);
    descriptor_ = open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor_ < 0 || !writeTo(descriptor_, bytes)) {
        throw std::runtime_error("cannot fill the pipe " + path);
    }
}

CollectingFifo::~CollectingFifo() {
    close(descriptor_);
}

std::string CollectingFifo::take() {
    std::string result;
    std::array<char, 4096> block{};
    for (ssize_t came = 0; (came = read(descriptor_, block.data(), block.size())) > 0;) {
        result.append(block.data(), static_cast<std::size_t>(came));
    }
    return result;
}

} // namespace consolidator::test
