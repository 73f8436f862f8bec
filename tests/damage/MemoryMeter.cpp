#include "tests/damage/MemoryMeter.h"

#include "tests/support/HowBuilt.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

// Replaced operators can only count in variables of the program. There are other threads.
constinit std::atomic<std::size_t> bytesInUse = 0;
constinit std::atomic<std::size_t> mostBytesInUse = 0;

#if !CONSOLIDATOR_SANITIZED
void countIn(void* memory) {
    const std::size_t size = malloc_usable_size(memory);
    const std::size_t now = bytesInUse.fetch_add(size, std::memory_order_relaxed) + size;
    std::size_t most = mostBytesInUse.load(std::memory_order_relaxed);
    while (now > most && !mostBytesInUse.compare_exchange_weak(most, now)) {
    }
}
#endif

} // namespace

#if !CONSOLIDATOR_SANITIZED
// The other forms of new and delete lead to these.
void* operator new(std::size_t size) {
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    countIn(memory);
    return memory;
}

void operator delete(void* memory) noexcept {
    bytesInUse.fetch_sub(malloc_usable_size(memory), std::memory_order_relaxed);
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}
#endif

namespace consolidator::test {

MemoryMeter::MemoryMeter() : before_(bytesInUse) {
    mostBytesInUse = before_;
}

std::size_t MemoryMeter::peak() const {
    return mostBytesInUse - before_;
}

} // namespace consolidator::test
