// Long texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace consolidator::test {

/// The piece so many times.
inline std::string repeated(std::string_view piece, std::size_t times) {
    std::string result;
    result.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        result += piece;
    }
    return result;
}

} // namespace consolidator::test
