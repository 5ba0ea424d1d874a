// The process heap over the C allocator. The C allocator neither zero-fills a growth nor tells a
// block's size, so every block carries its size in a header in front of it.
#include "platform/os.h"

#include <cstdlib>
#include <cstring>

namespace mox::os {

namespace {

// Sixteen bytes keep the caller's part as aligned as the C allocator's own blocks.
struct alignas(16) BlockHeader {
    size_t size;
};

constexpr size_t kHeader = sizeof(BlockHeader);

BlockHeader* header_of(void* block) { return static_cast<BlockHeader*>(block) - 1; }

// There is one heap; its handle only has to be non-null.
int g_process_heap_tag;

} // namespace

HANDLE GetProcessHeap() { return &g_process_heap_tag; }

void* HeapAlloc(HANDLE, uint32_t flags, size_t bytes) {
    if (bytes > SIZE_MAX - kHeader)
        return nullptr;
    void* raw = (flags & HEAP_ZERO_MEMORY) ? std::calloc(1, kHeader + bytes) : std::malloc(kHeader + bytes);
    if (raw == nullptr)
        return nullptr;
    auto* header = static_cast<BlockHeader*>(raw);
    header->size = bytes;
    return header + 1;
}

void* HeapReAlloc(HANDLE heap, uint32_t flags, void* block, size_t bytes) {
    if (block == nullptr)
        return HeapAlloc(heap, flags, bytes);
    if (bytes > SIZE_MAX - kHeader)
        return nullptr;
    size_t old_size = header_of(block)->size;
    void* raw = std::realloc(header_of(block), kHeader + bytes);
    if (raw == nullptr)
        return nullptr;
    auto* header = static_cast<BlockHeader*>(raw);
    header->size = bytes;
    auto* data = reinterpret_cast<unsigned char*>(header + 1);
    if ((flags & HEAP_ZERO_MEMORY) && bytes > old_size)
        std::memset(data + old_size, 0, bytes - old_size);
    return data;
}

bool HeapFree(HANDLE, uint32_t, void* block) {
    if (block != nullptr)
        std::free(header_of(block));
    return true;
}

} // namespace mox::os
