// Which kernels of a list have a hardware name, found by one look at the name.
#pragma once

#include "model/Kernel.h"
#include "shared/HashIndex.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// The distinct hardware names of the kernels' arguments and variables, each with its kernels.
///
/// A million variables may have a thousand names or a million, so names are not sorted, and what is
/// kept of each is a view, its number in a table of hashes, and its kernels. Most names that are
/// asked for belong to no kernel: the table tells so without a look at any name.
class HardwareNames {
public:
    static constexpr auto none = HashIndex<2>::none;

    /// The kernels must outlive this object, stay where they are, and keep their arguments and
    /// variables.
    explicit HardwareNames(const std::vector<Kernel>& kernels);

    /// Whether the name can be there: never false for one that is and, unless there are tens of
    /// thousands of names, seldom true for one that is not. Of most names in a file one bit shows
    /// that no kernel has them.
    bool mayHave(std::string_view name) const {
        const std::uint64_t bit = filterBit(name);
        return ((filter_[bit / 64] >> (bit % 64)) & 1) != 0;
    }

    /// The number of a name, or none. Names are numbered from 0 in the order of the kernels.
    std::uint32_t numberOf(std::string_view name) const;

    /// The positions of the kernels that have the name of this number, ascending and each once.
    std::span<const std::uint32_t> kernelsOf(std::uint32_t number) const {
        return std::span(kernels_).subspan(starts_[number], starts_[number + 1] - starts_[number]);
    }

    /// How many kernels all the names have, together.
    std::size_t entryCount() const { return kernels_.size(); }

private:
    /// As many bits as the processor's nearest cache has room for beside other things.
    static constexpr unsigned filterBits = 16;

    /// The bit of the filter that a name has, by its length and last characters, where names differ
    /// most. A file that is made so that all its names have the bits of others gains nothing: they
    /// are looked up then.
    static std::uint64_t filterBit(std::string_view name) {
        std::uint64_t last = 0;
        if (name.size() >= sizeof last) {
            std::memcpy(&last, name.data() + name.size() - sizeof last, sizeof last);
        } else {
            for (const char c : name) {
                last = last << 8 | static_cast<unsigned char>(c);
            }
        }
        constexpr std::uint64_t oddConstant = 0x9E3779B97F4A7C15; // 2^64 by the golden ratio
        return ((last ^ name.size()) * oddConstant) >> (64 - filterBits);
    }

    std::uint32_t numberOrAdd(std::string_view name);

    /// Whether the name of a number is this one.
    auto is(std::string_view name) const {
        return [this, name](std::uint32_t number) { return names_[number] == name; };
    }

    /// Fills starts_ and kernels_ from the numbers of all kernels' names, each once per kernel, and
    /// from where each kernel's numbers end.
    void listKernels(std::span<const std::uint32_t> numbers, std::span<const std::size_t> ends);

    std::vector<std::uint64_t> filter_; ///< A bit for each of the names.
    std::vector<std::string_view> names_;
    HashIndex<2> numbers_;               ///< Of the names: most that are asked for are not there.
    std::vector<std::uint32_t> starts_;  ///< Per name where its kernels begin; then the end.
    std::vector<std::uint32_t> kernels_; ///< The kernels of the first name, of the second, …
};

} // namespace consolidator
