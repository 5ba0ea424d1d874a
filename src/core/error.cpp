// The stack of error entries. Whichever entry is on top is the one told; an entry ended out of order
// takes every entry above it off the stack with it.
#include <mox/core.h>

#include "core/instance.h"
#include <cstddef>

// On a 32-bit target the records have the library's defined layout.
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_error) == 32 && offsetof(mox_error, prev) == 16 &&
              offsetof(mox_error, on_hint) == 20 && offsetof(mox_error, on_warning) == 24 &&
              offsetof(mox_error, on_fatal) == 28);
#endif

namespace {

mox_error* g_error_top = nullptr;

mox_bool tell(mox_error* self, mox_error_hook mox_error::*channel, uintptr_t word) {
    if (self == nullptr)
        return 0;
    mox_error_hook hook = self->*channel;
    if (hook != nullptr)
        hook(self, word);
    return 1;
}

mox_bool set_global_hook(mox_error_hook mox_error::*channel, mox_error_hook hook) {
    if (g_error_top == nullptr)
        return 0;
    g_error_top->*channel = hook;
    return 1;
}

uintptr_t word_of(const char* text) { return reinterpret_cast<uintptr_t>(text); }

} // namespace

extern "C" {

MOX_API mox_bool mox_error_construct(mox_error* self, void* owner) {
    if (self == nullptr)
        return 0;
    mox_object_construct(self, owner, MOX_ERROR_CLASS_ID);
    self->on_hint = nullptr;
    self->on_warning = nullptr;
    self->on_fatal = nullptr;
    // Constructing the top again must not make it its own predecessor; it cuts the stack below
    // instead, as it always has.
    self->prev = g_error_top != self ? g_error_top : nullptr;
    g_error_top = self;
    return 1;
}

MOX_API mox_bool mox_error_destruct(mox_error* self) {
    if (self == nullptr)
        return 0;
    // Whether or not self is on top: entries above it are forgotten.
    g_error_top = self->prev;
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_error_new(mox_error** out, void* owner) {
    return mox::new_instance<mox_error, mox_error_construct, mox::NullArguments::silent>(out, owner);
}

// The block is released through a copy of the pointer, so the slot keeps the stale pointer: the slot
// may be the very word that holds the top.
MOX_API mox_bool mox_error_free(mox_error** slot) {
    if (slot == nullptr)
        return 0;
    mox_error* block = *slot;
    if (block != nullptr)
        mox_error_destruct(block);
    return mox_memory_free(reinterpret_cast<void**>(&block));
}

MOX_API mox_bool mox_error_hint(mox_error* self, const char* word) {
    return tell(self, &mox_error::on_hint, word_of(word));
}

MOX_API mox_bool mox_error_warning(mox_error* self, const char* word) {
    return tell(self, &mox_error::on_warning, word_of(word));
}

MOX_API mox_bool mox_error_fatal(mox_error* self, uint32_t value) {
    return tell(self, &mox_error::on_fatal, value);
}

// A failed allocation is silent and leaves no top; every global error entry then answers false.
MOX_API mox_bool mox_global_error_startup(void) {
    if (g_error_top != nullptr)
        return 1;
    mox_error* entry = nullptr;
    mox_memory_new(reinterpret_cast<void**>(&entry), sizeof(mox_error));
    return mox_error_construct(entry, nullptr);
}

MOX_API mox_bool mox_global_error_cleanup(void) {
    if (g_error_top == nullptr)
        return 1;
    return mox_error_free(&g_error_top);
}

MOX_API mox_bool mox_global_error_set_on_hint(mox_error_hook hook) {
    return set_global_hook(&mox_error::on_hint, hook);
}

MOX_API mox_bool mox_global_error_set_on_warning(mox_error_hook hook) {
    return set_global_hook(&mox_error::on_warning, hook);
}

MOX_API mox_bool mox_global_error_set_on_fatal(mox_error_hook hook) {
    return set_global_hook(&mox_error::on_fatal, hook);
}

MOX_API mox_bool mox_global_error_hint(const char* word) { return mox_error_hint(g_error_top, word); }

MOX_API mox_bool mox_global_error_warning(const char* word) { return mox_error_warning(g_error_top, word); }

MOX_API mox_bool mox_global_error_fatal(uint32_t value) { return mox_error_fatal(g_error_top, value); }

} // extern "C"
