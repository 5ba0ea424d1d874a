// The stack of exception entries. Each entry installs the library's unhandled-exception filter and
// keeps the filter it replaced; the filter tells the hook of whichever entry is on top.
#include <mox/core.h>

#include "core/instance.h"
#include "core/words.h"
#include "platform/os.h"
#include <cstddef>

// On a 32-bit target the records have the library's defined layout.
#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_exception) == 28 && offsetof(mox_exception, prev_filter) == 16 &&
              offsetof(mox_exception, prev) == 20 && offsetof(mox_exception, on_exception) == 24);
#endif

namespace {

mox_exception* g_exception_top = nullptr;

int32_t library_filter(mox::os::EXCEPTION_POINTERS* pointers) {
    mox_exception* top = g_exception_top;
    if (top == nullptr || top->on_exception == nullptr)
        return mox::os::EXCEPTION_CONTINUE_SEARCH;
    const mox::os::EXCEPTION_RECORD* record = pointers->ExceptionRecord;
    top->on_exception(record->ExceptionAddress, record->ExceptionCode, record->ExceptionFlags);
    return mox::os::EXCEPTION_EXECUTE_HANDLER;
}

void* as_word(mox::os::TopLevelExceptionFilter filter) { return reinterpret_cast<void*>(filter); }

mox::os::TopLevelExceptionFilter as_filter(void* word) {
    return reinterpret_cast<mox::os::TopLevelExceptionFilter>(word);
}

} // namespace

extern "C" {

MOX_API mox_bool mox_exception_construct(mox_exception* self, void* owner) {
    if (self == nullptr)
        return mox::fail_params();
    mox_object_construct(self, owner, MOX_EXCEPTION_CLASS_ID);
    self->prev_filter = as_word(mox::os::SetUnhandledExceptionFilter(library_filter));
    self->prev = g_exception_top != self ? g_exception_top : nullptr;
    self->on_exception = nullptr;
    g_exception_top = self;
    return 1;
}

MOX_API mox_bool mox_exception_destruct(mox_exception* self) {
    if (self == nullptr)
        return mox::fail_params();
    mox::os::SetUnhandledExceptionFilter(as_filter(self->prev_filter));
    g_exception_top = self->prev;
    mox_object_destruct(self);
    return 1;
}

MOX_API mox_bool mox_exception_new(mox_exception** out, void* owner) {
    return mox::new_instance<mox_exception, mox_exception_construct, mox::NullArguments::posted>(out, owner);
}

// As with error entries, the block goes through a copy of the pointer and the slot keeps it.
MOX_API mox_bool mox_exception_free(mox_exception** slot) {
    if (slot == nullptr)
        return mox::fail_params();
    mox_exception* block = *slot;
    if (block == nullptr)
        mox::hint_params();
    else
        mox_exception_destruct(block);
    return mox_memory_free(reinterpret_cast<void**>(&block));
}

MOX_API void mox_exception_raise(uint32_t code, uint32_t flags) {
    mox::os::RaiseException(code, flags, 0, nullptr);
}

MOX_API mox_bool mox_global_exception_startup(void) {
    if (g_exception_top != nullptr) {
        mox::hint_params();
        return 1;
    }
    mox_exception* entry = nullptr;
    if (!mox_memory_new(reinterpret_cast<void**>(&entry), sizeof(mox_exception)))
        return 0;
    return mox_exception_construct(entry, nullptr);
}

MOX_API mox_bool mox_global_exception_cleanup(void) {
    if (g_exception_top == nullptr) {
        mox::hint_params();
        return 1;
    }
    return mox_exception_free(&g_exception_top);
}

} // extern "C"
