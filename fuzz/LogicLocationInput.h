// Which logic locations the fuzz targets leave out that write registers.
#pragma once

#include <cstddef>
#include <string_view>

namespace consolidator::fuzz {

/// True when a bit index of more than five digits stands anywhere: a register of 2^24 bits takes
/// 128 MiB when it is written, which is no mistake but nothing to do thousands of times.
inline bool namesLargeBit(std::string_view text) {
    constexpr std::size_t mostDigits = 5;
    for (std::size_t open = text.find('['); open != std::string_view::npos;
         open = text.find('[', open + 1)) {
        const std::size_t first = text.find_first_not_of("+-0", open + 1);
        const std::size_t last = text.find_first_not_of("0123456789", first);
        if (first != std::string_view::npos &&
            (last == std::string_view::npos ? text.size() : last) - first > mostDigits) {
            return true;
        }
    }
    return false;
}

} // namespace consolidator::fuzz
