// The process heap is the system's own; HEAP_ZERO_MEMORY zero-fills new blocks and the part a growth
// adds, as the library relies on.
#include "platform/win32/system.h"

namespace mox::os {

HANDLE GetProcessHeap() { return ::GetProcessHeap(); }

void* HeapAlloc(HANDLE heap, uint32_t flags, size_t bytes) { return ::HeapAlloc(heap, flags, bytes); }

void* HeapReAlloc(HANDLE heap, uint32_t flags, void* block, size_t bytes) {
    // The system refuses a null block; the stand-in, like the C allocator, takes it as a new one.
    if (block == nullptr)
        return ::HeapAlloc(heap, flags, bytes);
    return ::HeapReAlloc(heap, flags, block, bytes);
}

bool HeapFree(HANDLE heap, uint32_t flags, void* block) {
    if (block == nullptr)
        return true;
    return ::HeapFree(heap, flags, block) != FALSE;
}

} // namespace mox::os
