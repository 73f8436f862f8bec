#include "shared/KeyedHash.h"

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

/// The number modulo the prime: as 2^61 is 1 modulo the prime, the bits from 61 up are added to
/// those below. For numbers below 2^125, whose upper bits need adding twice.
std::uint64_t reduced(Product number) {
    std::uint64_t sum =
        (static_cast<std::uint64_t>(number) & prime) + static_cast<std::uint64_t>(number >> 61);
    sum = (sum & prime) + (sum >> 61);
    return sum >= prime ? sum - prime : sum;
}

std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
    return reduced(static_cast<Product>(a) * b);
}

/// Without the system's random numbers, the time and where the stack lies have to do: a run must
/// not fail for want of a secret.
std::uint64_t drawKey() {
    std::uint64_t drawn = 0;
    // Soon after a boot the system may have no random numbers yet: a run does not wait for them.
    if (getrandom(&drawn, sizeof drawn, GRND_NONBLOCK) != sizeof drawn) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
        drawn = static_cast<std::uint64_t>(now) ^ reinterpret_cast<std::uintptr_t>(&drawn);
    }
    return drawn % (prime - 2) + 2; // neither 0 nor 1, which would hash little or nothing
}

/// The key and its powers, modulo the prime.
struct Key {
    std::uint64_t first = drawKey();
    std::uint64_t second = multiply(first, first);
    std::uint64_t third = multiply(second, first);
    std::uint64_t fourth = multiply(third, first);
};

/// Drawn at the first hash and then kept for the whole process, as tables keep hashes.
const Key& key() {
    static const Key drawn;
    return drawn;
}

/// The piece of a text, of eight bytes or more, that begins at this position. The last one is made
/// of the text's last bytes, some of which may have come before.
std::uint64_t longTextPiece(std::string_view text, std::size_t at) {
    std::uint64_t bytes = 0;
    if (at + sizeof bytes <= text.size()) {
        std::memcpy(&bytes, text.data() + at, sizeof bytes);
        return bytes & pieceMask;
    }
    if (at < text.size()) {
        std::memcpy(&bytes, text.data() + text.size() - sizeof bytes, sizeof bytes);
    }
    // Pieces behind the end are zeros. The length, which is hashed too, tells them from zero bytes.
    return bytes >> 8;
}

std::uint64_t shortTextPiece(std::string_view text) {
    std::uint64_t bytes = 0;
    for (const char c : text) {
        bytes = bytes << 8 | static_cast<unsigned char>(c);
    }
    return bytes;
}

} // namespace

void KeyedHash::addPiece(std::uint64_t piece) {
    value_ = multiply(value_ + piece, key().first);
}

void KeyedHash::addPieces(std::uint64_t a, std::uint64_t b, std::uint64_t c, std::uint64_t d) {
    // The sum stays below 2^123, so that one reduction does for four products.
    const Key& power = key();
    value_ = reduced(
        static_cast<Product>(value_ + a) * power.fourth + static_cast<Product>(b) * power.third +
        static_cast<Product>(c) * power.second + static_cast<Product>(d) * power.first);
}

std::uint64_t KeyedHash::value() const {
    // The finalizer of MurmurHash3 (fmix64), which maps no two values to the same.
    std::uint64_t mixed = value_;
    mixed = (mixed ^ (mixed >> 33)) * 0xFF51AFD7ED558CCD;
    mixed = (mixed ^ (mixed >> 33)) * 0xC4CEB9FE1A85EC53;
    return mixed ^ (mixed >> 33);
}

KeyedHash& KeyedHash::add(std::string_view text) {
    // Of a text this short no eight bytes can be loaded.
    if (text.size() <= pieceSize) {
        addPiece(text.size());
        addPiece(shortTextPiece(text));
        return *this;
    }
    const auto piece = [text](std::size_t number) {
        return longTextPiece(text, number * pieceSize);
    };
    addPieces(text.size(), piece(0), piece(1), piece(2));
    for (std::size_t next = 3; next * pieceSize < text.size(); next += 4) {
        addPieces(piece(next), piece(next + 1), piece(next + 2), piece(next + 3));
    }
    return *this;
}

KeyedHash& KeyedHash::add(std::uint32_t number) {
    addPiece(number);
    return *this;
}

} // namespace consolidator
