// A source that gives its bytes bit by bit, as a slow pipe does.
#pragma once

#include "tests/support/RandomSource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <streambuf>
#include <string>
#include <utility>

namespace consolidator::test {

/// Whoever asks for a block gets 1 to `most` bytes, so that blocks end inside lines and words. The
/// same seed gives the same pieces everywhere.
class Trickle final : public std::streambuf {
public:
    explicit Trickle(std::string text, std::size_t most = 1, std::uint32_t seed = 1)
        : text_(std::move(text)), most_(most), random_(seed) {}

protected:
    std::streamsize xsgetn(char* bytes, std::streamsize count) override {
        const std::size_t piece =
            std::min(1 + random_.below(most_), static_cast<std::size_t>(count));
        const std::size_t came = text_.copy(bytes, piece, position_);
        position_ += came;
        return static_cast<std::streamsize>(came);
    }

private:
    std::string text_;
    std::size_t position_ = 0;
    std::size_t most_;
    RandomSource random_;
};

} // namespace consolidator::test
