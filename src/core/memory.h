// What the memory entries keep beside the heap.
#pragma once

#include <cstdint>

namespace mox {

// Successful allocations and releases since the library was loaded. They only ever rise, and are
// plain words: under threads they may miss counts.
struct MemoryCounters {
    uint32_t allocations;
    uint32_t releases;
};

MemoryCounters memory_counters();

} // namespace mox
