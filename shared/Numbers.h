// Numbers as people write them: places in a file or a device in hexadecimal, and counts of things.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace consolidator {

/// "0x1f4", or with zeros in front, if `digits` asks for more: "0x000001f4".
inline std::string inHex(std::uint64_t number, std::size_t digits = 1) {
    std::string result;
    while (number > 0 || result.size() < digits) {
        result.insert(result.begin(), "0123456789abcdef"[number % 16]);
        number /= 16;
    }
    result.insert(0, "0x");
    return result;
}

/// "1 byte", "2 bytes".
inline std::string inWords(std::uint64_t count, std::string_view thing) {
    return std::to_string(count) + ' ' + std::string(thing) + (count == 1 ? "" : "s");
}

} // namespace consolidator
