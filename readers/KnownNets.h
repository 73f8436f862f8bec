// The registers of nets that came before, found by one look at the net's name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// Remembers where the registers of a net are in a list of kernels: a bus has a line for each of
/// its bits, and its owners need to be found for the first one only.
///
/// The lines of a file come in no order that a cache could follow, so what a look costs is how many
/// places in memory it has to wait for, one after the other. There are two: the slot of the table,
/// which tells where the register is, and the net's text. The texts are kept here once more for it.
/// Beside its text a net takes some 30 bytes.
class KnownNets {
public:
    /// A register: a kernel of the list, and one of the kernel's hardware variables.
    struct Register {
        std::uint32_t kernel;
        std::uint32_t position;
    };

    /// The most bytes that a net may have.
    static constexpr std::size_t longestNet = 65535;

    KnownNets();

    /// A net that is looked for, and what is found.
    struct Query {
        std::string_view net;
        std::uint64_t hash = 0;
        std::span<const Register> registers;
    };

    /// The registers of a net that was added; nothing for any other net. Holds until the next call
    /// of add().
    std::span<const Register> find(std::string_view net) const;

    /// Does the same for several nets. The waits for memory, most of what a look costs, overlap.
    void findAll(std::span<Query> queries) const;

    /// Remembers the registers, at least one, that belong to this net, which must not be known.
    /// (When there is no room for more it does nothing.)
    void add(std::string_view net, std::span<const Register> registers);

private:
    static constexpr auto none = static_cast<std::uint32_t>(-1);

    static constexpr std::size_t slotsAtFirst = 1024;

    /// An entry of the hash table, of which four share a cache line.
    struct Slot {
        std::uint32_t hash = 0; ///< A part of the hash that tells the net from nearly all others.
        std::uint32_t text = none; ///< Where its text begins in texts_; none in a free slot.
        Register single{};         ///< With the kernel none, a position in lists_.
    };

    std::size_t slotOf(std::string_view net, std::uint64_t hash) const;
    std::span<const Register> registersAt(const Slot& slot) const;
    std::string_view textAt(std::size_t position) const;
    void grow();

    std::vector<Slot> slots_; ///< A power of two.
    std::size_t used_ = 0;    ///< So many slots are not free; three quarters at most.
    std::vector<char> texts_; ///< Each with its length, in two bytes, in front.
    std::vector<std::vector<Register>> lists_; ///< The registers of nets that have several.
};

} // namespace consolidator
