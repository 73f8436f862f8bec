// How much the logic-location files of a run may make of little.
#pragma once

#include <cstddef>
#include <cstdint>

namespace consolidator {

/// What the files of a run may still add to a database beyond what their own bytes pay for.
///
/// There are two ways to make gigabytes out of a small file, and real files use neither. A line for
/// a high bit of a register adds pairs of zeros for all the bits below that no line names. And a
/// line whose net belongs to thousands of kernels adds a location to each of them.
class LocationBudget {
public:
    /// So many pairs of zeros may be added. Each takes 8 bytes in the kernel data and 9 in the JSON
    /// ("[ 0, 0], "): this is what a database below 2 GiB, the end of its signed offsets, has room
    /// for. One register may take a seventh of it.
    static constexpr std::uint64_t emptyBitLimit = std::uint64_t{7} << 24;

    /// So many bytes may be added by giving lines to more kernels than one: a part that is there
    /// from the start, enough for any real design, and one that grows with the file, so that a
    /// large file whose nets have a dozen owners each is read whole.
    static constexpr std::uint64_t freeSharing = std::uint64_t{64} << 20;
    static constexpr std::uint64_t sharingPerByte = 16;

    /// A budget of other sizes shows at the tenth line what this one shows at the millionth.
    explicit LocationBudget(std::uint64_t emptyBits = emptyBitLimit,
                            std::uint64_t sharing = freeSharing)
        : emptyBitsLeft_(emptyBits), sharingAllowed_(sharing) {}

    /// Notes that a line of this many bytes was read.
    void lineRead(std::size_t bytes) { sharingAllowed_ += sharingPerByte * bytes; }

    /// Takes so many pairs of zeros off the budget; false, taking none, when there are not so many
    /// left.
    bool takeEmptyBits(std::uint64_t count);

    /// Whether a line may be given to one more kernel.
    bool mayShare() const { return sharing_ < sharingAllowed_; }

    /// Notes that a location was set in a second or further kernel.
    void shareLocation() { sharing_ += locationBytes; }

    /// Notes that a register of this name was made for it there.
    void shareRegister(std::size_t nameBytes) { sharing_ += registerBytes + nameBytes; }

    /// How many owners of a net can matter: the first one, those that may have a location each, and
    /// one more that shows that there are others.
    std::size_t mostOwners() const;

private:
    static constexpr std::uint64_t locationBytes = 8;
    static constexpr std::uint64_t registerBytes = 128; ///< The record and its place in the index.

    std::uint64_t emptyBitsLeft_;
    std::uint64_t sharing_ = 0; ///< May pass what is allowed by one location and its register.
    std::uint64_t sharingAllowed_;
};

} // namespace consolidator
