#include "model/KeyedHash.h"

#include <chrono>
#include <cstddef>
#include <cstring>
#include <sys/random.h>

namespace consolidator {

namespace {

constexpr std::uint64_t prime = (std::uint64_t{1} << 61) - 1;

/// Pieces of 56 bits are below the prime, so different texts have different coefficients.
constexpr std::size_t pieceSize = 7;
constexpr std::uint64_t pieceMask = (std::uint64_t{1} << (8 * pieceSize)) - 1;

__extension__ using Product = unsigned __int128;

/// The product modulo the prime, for factors below 2^61: as 2^61 is 1 modulo the prime, the bits
/// from 61 up are added to those below.
std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
    const Product product = static_cast<Product>(a) * b;
    const std::uint64_t sum =
        (static_cast<std::uint64_t>(product) & prime) + static_cast<std::uint64_t>(product >> 61);
    return sum >= prime ? sum - prime : sum;
}

/// Without the system's random numbers, the time and where the stack lies have to do: a run must
/// not fail for want of a secret.
std::uint64_t drawKey() {
    std::uint64_t drawn = 0;
    if (getrandom(&drawn, sizeof drawn, GRND_NONBLOCK) != sizeof drawn) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        drawn = static_cast<std::uint64_t>(now) ^ reinterpret_cast<std::uintptr_t>(&drawn);
    }
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

std::uint64_t KeyedHash::value() const {
    // The finalizer of MurmurHash3 (fmix64), which maps no two values to the same.
    std::uint64_t mixed = value_;
    mixed = (mixed ^ (mixed >> 33)) * 0xFF51AFD7ED558CCD;
    mixed = (mixed ^ (mixed >> 33)) * 0xC4CEB9FE1A85EC53;
    return mixed ^ (mixed >> 33);
}

KeyedHash& KeyedHash::add(std::string_view text) {
    addPiece(text.size());
    std::uint64_t piece = 0;
    while (text.size() >= sizeof piece) {
        std::memcpy(&piece, text.data(), sizeof piece);
        addPiece(piece & pieceMask);
        text.remove_prefix(pieceSize);
    }
    piece = 0;
    for (const char c : text) {
        piece = piece << 8 | static_cast<unsigned char>(c);
    }
    addPiece(piece);
    return *this;
}

KeyedHash& KeyedHash::add(std::uint32_t number) {
    addPiece(number);
    return *this;
}

} // namespace consolidator
