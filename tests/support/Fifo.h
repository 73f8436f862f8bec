// Named pipes whose other end the test holds, without which opening one waits for ever.
#pragma once

#include <string>
#include <string_view>
#include <thread>

namespace consolidator::test {

/// A named pipe that whoever opens it for reading finds these bytes in, and then its end.
class FifoWithContent {
public:
    /// Makes the pipe at `path`, which must be free.
    FifoWithContent(const std::string& path, std::string_view bytes);
    ~FifoWithContent();
    FifoWithContent(const FifoWithContent&) = delete;
    FifoWithContent& operator=(const FifoWithContent&) = delete;

private:
    std::string path_;
    std::thread writer_;
};

/// A named pipe that takes some thousand bytes from whoever opens it for writing.
class CollectingFifo {
public:
    /// Makes the pipe at `path`, which must be free. `bytes` are in it from the start.
    explicit CollectingFifo(const std::string& path, std::string_view bytes = {});
    ~CollectingFifo();
    CollectingFifo(const CollectingFifo&) = delete;
    CollectingFifo& operator=(const CollectingFifo&) = delete;

    /// Takes out what is in the pipe.
    std::string take();

private:
    int descriptor_;
};

} // namespace consolidator::test
