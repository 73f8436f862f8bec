#include "readers/LocationBudget.h"

namespace consolidator {

bool LocationBudget::takeEmptyBits(std::uint64_t count) {
    if (count > emptyBitsLeft_) {
        return false;
    }
    emptyBitsLeft_ -= count;
    return true;
}

std::size_t LocationBudget::mostOwners() const {
    // Rounded up, as mayShare() lets the last location go beyond what is left.
    const std::uint64_t left = mayShare() ? sharingAllowed_ - sharing_ : 0;
    const std::uint64_t paid = (left + locationBytes - 1) / locationBytes;
    return static_cast<std::size_t>(paid) + 2;
}

} // namespace consolidator
