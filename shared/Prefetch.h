// Asks for memory that is going to be needed soon.
#pragma once

namespace consolidator {

/// Has the processor fetch what is at the address, if it can, and does not wait for it. The address
/// need not be valid.
inline void prefetch(const void* address) {
    __builtin_prefetch(address);
}

} // namespace consolidator
