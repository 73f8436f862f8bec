// Hashes that nobody can aim at.
//
// Names come from files that may have been made to break this program. With a hash that is the same
// in every run, such a file could give all its names the same hash and turn every lookup into a
// walk over all of them. So each process draws a key of its own.
//
// No library's hash was taken. This needs one of which it is proved how few keys let chosen names
// collide, and that costs little more than one without a key on names of 10 to 60 bytes. The seed
// of xxHash is no key: names can be chosen that collide under each seed. SipHash and HighwayHash,
// which Debian has, rest on nobody having found such names, and take 1.3 to 2.5 times as long on
// names of up to 40 bytes; docs/performance.md has the numbers ("The hash of names").
#pragma once

#include <cstdint>
#include <string_view>

namespace consolidator {

/// A running hash over texts and numbers.
///
/// It is the value of a polynomial at the key, modulo the prime 2^61 - 1, with the pieces of the
/// input as coefficients (Carter and Wegman's construction): whatever two different inputs of n
/// bytes are chosen, at most about n in 2^61 keys give them the same value. Inputs that differ in
/// one place have values in arithmetic progression, so the bits are mixed at the end.
class KeyedHash {
public:
    /// Adds a text, with its length: "ab" and "c" are another input than "a" and "bc".
    KeyedHash& add(std::string_view text);

    KeyedHash& add(std::uint32_t number);

    /// The hash of what was added so far. All its bits depend on all of the input.
    std::uint64_t value() const;

private:
    void addPiece(std::uint64_t piece);

    /// The same as adding one piece after the other, but the multiplications do not wait for each
    /// other.
    void addPieces(std::uint64_t a, std::uint64_t b, std::uint64_t c, std::uint64_t d);

    std::uint64_t value_ = 0;
};

/// The hash of one text.
inline std::uint64_t keyHash(std::string_view text) {
    return KeyedHash().add(text).value();
}

/// What a hash table may keep of a hash: its lower bits choose the slot, these tell apart nearly
/// all that share one.
inline std::uint32_t upperHalf(std::uint64_t hash) {
    return static_cast<std::uint32_t>(hash >> 32);
}

} // namespace consolidator
