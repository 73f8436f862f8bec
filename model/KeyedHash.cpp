#include "model/KeyedHash.h"

#include <array>
#include <bit>
#include <cstddef>
#include <random>

namespace consolidator {

namespace {

constexpr std::uint64_t prime = (std::uint64_t{1} << 61) - 1;

/// Pieces of 56 bits are below the prime, so different texts have different coefficients.
constexpr std::size_t pieceSize = 7;

__extension__ using Product = unsigned __int128;

/// The product modulo the prime, for factors below 2^61: as 2^61 is 1 modulo the prime, the bits
/// from 61 up are added to those below.
std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
    const Product product = static_cast<Product>(a) * b;
    const std::uint64_t sum =
        (static_cast<std::uint64_t>(product) & prime) + static_cast<std::uint64_t>(product >> 61);
    return sum >= prime ? sum - prime : sum;
}

std::uint64_t drawKey() {
    std::random_device device;
    const std::uint64_t drawn = (std::uint64_t{device()} << 32) | device();
    return drawn % (prime - 2) + 2; // neither 0 nor 1, which would hash little or nothing
}

std::uint64_t key() {
    static const std::uint64_t drawn = drawKey();
    return drawn;
}

} // namespace

void KeyedHash::addPiece(std::uint64_t piece) {
    const std::uint64_t sum = value_ + piece; // below 2^62
    value_ = multiply(sum >= prime ? sum - prime : sum, key());
}

KeyedHash& KeyedHash::add(std::string_view text) {
    addPiece(text.size());
    while (!text.empty()) {
        std::array<char, sizeof(std::uint64_t)> bytes{};
        text.remove_prefix(text.copy(bytes.data(), pieceSize));
        addPiece(std::bit_cast<std::uint64_t>(bytes));
    }
    return *this;
}

KeyedHash& KeyedHash::add(std::uint32_t number) {
    addPiece(number);
    return *this;
}

} // namespace consolidator
