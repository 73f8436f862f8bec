// The registers of nets that came before, found by one look at the net's name.
#pragma once

#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// Remembers where the registers of a net are in a list of kernels: a bus has a line for each of
/// its bits, and its owners need to be found for the first one only.
///
/// Takes about 14 bytes for a net and 8 for each of its registers: a net's name is that of its
/// registers.
class KnownNets {
public:
    /// A register: a kernel of the list, and one of the kernel's hardware variables.
    struct Place {
        std::uint32_t kernel;
        std::uint32_t position;
    };

    /// The kernels must outlive this object and stay where they are, and so must their registers.
    explicit KnownNets(const std::vector<Kernel>& kernels);

    /// The registers of a net that was added; nothing for any other net. Holds until the next call
    /// of add().
    std::span<const Place> find(std::string_view net);

    /// Remembers the registers, at least one, that have this net as their name and belong to all
    /// its owners. The net must not be known.
    void add(std::string_view net, std::span<const Place> registers);

private:
    static constexpr auto none = static_cast<std::uint32_t>(-1);

    /// The places of one net.
    struct Run {
        std::uint32_t first;
        std::uint32_t count;
    };

    std::uint32_t& slotOf(std::string_view net);
    std::string_view nameOf(const Run& net) const;
    void grow();

    const std::vector<Kernel>& kernels_;
    std::vector<Place> places_; ///< Of the first net, of the second, …
    std::vector<Run> nets_;
    std::vector<std::uint32_t> slots_; ///< Positions of nets by hash, or none: a power of two.
};

} // namespace consolidator
