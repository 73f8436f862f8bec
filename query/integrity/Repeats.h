// Finds what stands more than once in a list that is too long to be kept.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace consolidator {

/// The keys of one list's elements, by their hashes (see KeyedHash.h), and where they stand: 16
/// bytes for each element.
class Repeats {
public:
    /// A key that more than one element has.
    struct Repeat {
        std::uint64_t first = 0;  ///< The offset of the first element that has it …
        std::uint64_t second = 0; ///< … and of the next one.
        std::size_t count = 0;    ///< How many have it in all.
    };

    /// Elements come in the order of their offsets.
    void add(std::uint64_t keyHash, std::uint64_t offset) {
        elements_.push_back({keyHash, offset});
    }

    /// The keys that were added more than once, by their second offsets. Forgets all elements.
    std::vector<Repeat> take();

private:
    struct Element {
        std::uint64_t keyHash;
        std::uint64_t offset;
    };

    std::vector<Element> elements_;
};

} // namespace consolidator
