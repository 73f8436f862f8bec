// A text of a database of which nothing is kept but what a check needs.
#pragma once

#include "query/integrity/ByteRange.h"
#include "shared/KeyedHash.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace consolidator {

/// Bytes in a file, however many. Readers of a database take a text up to its first zero byte, and
/// so do hash() and quoted().
class StoredText {
public:
    StoredText() = default;

    /// Takes the next `length` bytes off the range, which has them.
    StoredText(ByteRange& bytes, std::uint64_t length);

    /// The same for the same text, within one run of the program.
    std::uint64_t hash() const { return hash_.value(); }

    bool hasZero() const { return hasZero_; }
    bool empty() const { return beginning_.empty(); }

    /// Its beginning, printable and between double quotes; a longer text ends with "…".
    std::string quoted() const;

private:
    KeyedHash hash_;
    std::string beginning_; ///< With one byte more than is shown, if there is more.
    bool hasZero_ = false;
};

} // namespace consolidator
