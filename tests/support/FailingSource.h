// A source whose reading fails half-way.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <utility>

namespace consolidator::test {

/// Gives its text once and fails after it, as a disk does.
class FailingSource : public std::streambuf {
public:
    explicit FailingSource(std::string text) : text_(std::move(text)) {}

protected:
    std::streamsize xsgetn(char* bytes, std::streamsize count) override {
        if (text_.empty()) {
            throw std::runtime_error("broken");
        }
        const std::size_t came = text_.copy(bytes, static_cast<std::size_t>(count));
        text_.erase(0, came);
        return static_cast<std::streamsize>(came);
    }

private:
    std::string text_;
};

} // namespace consolidator::test
