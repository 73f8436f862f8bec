#include "fuzz/Fuzzing.h"

#include <cstdio>
#include <cstdlib>

namespace consolidator::fuzz {

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {data, data + size};
}

} // namespace consolidator::fuzz
