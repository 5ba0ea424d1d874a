// Heap blocks held in slots, and the byte utilities.
#include "core/memory.h"

#include <mox/core.h>

#include <cstring>

#include "core/words.h"
#include "platform/os.h"

namespace mox {

namespace {

MemoryCounters g_counters = {0, 0};

// Whole 32-bit words first, then the last 0 to 3 bytes, front to back: overlapping blocks come out
// as this order makes them, which is what the copy entries promise.
void copy_forward(uint8_t* dst, const uint8_t* src, size_t size) {
    size_t words = size / 4;
    for (size_t i = 0; i < words; ++i) {
        uint32_t word;
        std::memcpy(&word, src + 4 * i, 4);
        std::memcpy(dst + 4 * i, &word, 4);
    }
    for (size_t i = words * 4; i < size; ++i)
        dst[i] = src[i];
}

} // namespace

MemoryCounters memory_counters() { return g_counters; }

} // namespace mox

using mox::fail_params;

extern "C" {

// The slot gets whatever the heap gave, null included.
MOX_API mox_bool mox_memory_new(void** slot, uint32_t size) {
    if (slot == nullptr)
        return fail_params();
    *slot = mox::os::HeapAlloc(mox::os::GetProcessHeap(), mox::os::HEAP_ZERO_MEMORY, size);
    if (*slot == nullptr)
        return 0;
    ++mox::g_counters.allocations;
    return 1;
}

MOX_API mox_bool mox_memory_free(void** slot) {
    if (slot == nullptr)
        return fail_params();
    if (*slot == nullptr)
        return 0;
    if (!mox::os::HeapFree(mox::os::GetProcessHeap(), 0, *slot))
        return 0;
    ++mox::g_counters.releases;
    *slot = nullptr;
    return 1;
}

MOX_API mox_bool mox_memory_resize(void** slot, uint32_t size) {
    if (slot == nullptr)
        return fail_params();
    if (size == 0)
        return mox_memory_free(slot);
    if (*slot == nullptr)
        return mox_memory_new(slot, size);
    // Intended: a failed reallocation loses the old block, leaves the slot null and still answers
    // true; the counters stay as they are.
    *slot = mox::os::HeapReAlloc(mox::os::GetProcessHeap(), mox::os::HEAP_ZERO_MEMORY, *slot, size);
    return 1;
}

MOX_API mox_bool mox_memory_fill_u8(uint8_t* dst, uint32_t value, uint32_t count) {
    if (dst == nullptr)
        return fail_params();
    if (count != 0)
        std::memset(dst, static_cast<int>(value & 0xFF), count);
    return 1;
}

MOX_API mox_bool mox_memory_fill_u16(uint16_t* dst, uint16_t value, uint32_t count) {
    if (dst == nullptr)
        return fail_params();
    uint32_t pair = static_cast<uint32_t>(value) | (static_cast<uint32_t>(value) << 16);
    auto* bytes = reinterpret_cast<uint8_t*>(dst);
    uint32_t pairs = count / 2;
    for (uint32_t i = 0; i < pairs; ++i)
        std::memcpy(bytes + 4 * size_t(i), &pair, 4);
    if (count & 1)
        std::memcpy(bytes + 4 * size_t(pairs), &value, 2);
    return 1;
}

MOX_API mox_bool mox_memory_fill_u32(uint32_t* dst, uint32_t value, uint32_t count) {
    if (dst == nullptr)
        return fail_params();
    for (uint32_t i = 0; i < count; ++i)
        dst[i] = value;
    return 1;
}

// Intended: false on success too. Callers ignore the result; only the hint tells a null apart.
MOX_API mox_bool mox_memory_copy(void* dst, const void* src, uint32_t size) {
    if (dst == nullptr || src == nullptr)
        return fail_params();
    mox::copy_forward(static_cast<uint8_t*>(dst), static_cast<const uint8_t*>(src), size);
    return 0;
}

MOX_API mox_bool mox_memory_copy_ext(void* dst, const void* src, uint32_t size, uint32_t repeat) {
    if (dst == nullptr || src == nullptr)
        return fail_params();
    auto* out = static_cast<uint8_t*>(dst);
    for (uint32_t i = 0; i < repeat; ++i)
        mox::copy_forward(out + size_t(i) * size, static_cast<const uint8_t*>(src), size);
    return 1;
}

MOX_API mox_bool mox_memory_move(void* dst, const void* src, uint32_t size) {
    if (dst == nullptr || src == nullptr)
        return fail_params();
    auto* out = static_cast<uint8_t*>(dst);
    const auto* in = static_cast<const uint8_t*>(src);
    if (out > in) {
        for (uint32_t i = size; i > 0; --i)
            out[i - 1] = in[i - 1];
    } else {
        for (uint32_t i = 0; i < size; ++i)
            out[i] = in[i];
    }
    return 1;
}

MOX_API mox_bool mox_memory_compare(const void* a, const void* b, uint32_t size) {
    if (a == nullptr || b == nullptr)
        return fail_params();
    return size == 0 || std::memcmp(a, b, size) == 0;
}

} // extern "C"
