// Files that are damaged in every way that a byte or the end of a file can be.
//
//     forEachDamage(good, 20000, [](const std::string& what, const std::string& bytes) { … });
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace consolidator::test {

/// One damage; `number` is below damageCount(good).
struct Damage {
    Damage(const std::string& good, std::size_t number);

    std::string what; ///< For a failed test to tell.
    std::string bytes;
};

/// Per byte: the file cut before it, the byte as 0x00, as 0xFF, and with each of its bits flipped.
constexpr std::size_t damagesPerByte = 11;

inline std::size_t damageCount(const std::string& good) {
    return good.size() * damagesPerByte;
}

/// Calls check(what, bytes) for each damage of a file or, if there are more than `most`, for about
/// so many of them, taken evenly over all places and all kinds.
template <typename Check>
void forEachDamage(const std::string& good, std::size_t most, Check check) {
    std::size_t step = 1 + (damageCount(good) - 1) / most;
    if (step % damagesPerByte == 0) {
        ++step; // the kinds take turns only if the step shares no factor with their number
    }
    for (std::size_t number = 0; number < damageCount(good); number += step) {
        const Damage damage(good, number);
        if (damage.bytes != good) {
            check(damage.what, damage.bytes);
        }
    }
}

/// Calls check(what, bytes) for each place at which four bytes stand, once for each of the numbers
/// with which fields like to overflow.
template <typename Check>
void forEachNumber(const std::string& good, Check check) {
    for (const std::uint32_t number :
         {0xFFFFFFFFU, 0xFFFFFFFEU, 0x80000000U, 0x7FFFFFFFU, 0x20000001U, 0x00FFFFFFU, 256U}) {
        for (std::size_t place = 0; place + sizeof number <= good.size(); ++place) {
            std::string bytes = good;
            for (std::size_t i = 0; i < sizeof number; ++i) {
                bytes[place + i] = static_cast<char>(number >> (8 * i));
            }
            check("number " + std::to_string(number) + " at " + std::to_string(place), bytes);
        }
    }
}

} // namespace consolidator::test
