/* Core frame: objects, library information, errors and exceptions, memory, byte utilities. */
#ifndef MOX_CORE_H
#define MOX_CORE_H

#include <mox/base.h>
#include <mox/containers.h>

MOX_BEGIN_DECLS

/* ---- The bare object --------------------------------------------------------------------------- */

MOX_API mox_bool mox_object_construct(void* self, void* owner, uint32_t class_id);
MOX_API mox_bool mox_object_destruct(void* self);
MOX_API mox_bool mox_object_new(void** out, void* owner, uint32_t class_id);
MOX_API mox_bool mox_object_free(void** slot);
/* Locking a locked object never returns; unlocking an unlocked object locks it. */
MOX_API mox_bool mox_object_lock(mox_object* self);
MOX_API mox_bool mox_object_unlock(mox_object* self);

/* ---- Library information ----------------------------------------------------------------------- */

MOX_API void mox_version(uint32_t* out);
MOX_API void mox_version_ext(uint8_t* a, uint8_t* b, uint16_t* c);
MOX_API mox_bool mox_author(mox_astring* out);
/* 0: the ANSI code page, 1: the OEM code page, anything else: 0. */
MOX_API uint32_t mox_get_code_page(int32_t which);
MOX_API void mox_set_code_page(void);

MOX_API mox_bool mox_support_ansistring(void);
MOX_API mox_bool mox_support_devil(void);
MOX_API mox_bool mox_support_widestring(void);
MOX_API mox_bool mox_support_directx3d9(void);
MOX_API mox_bool mox_support_freetype(void);
MOX_API mox_bool mox_support_mysql(void);
MOX_API mox_bool mox_support_opengl(void);
MOX_API mox_bool mox_support_socket(void);
MOX_API mox_bool mox_support_sqlite3(void);

/* ---- Errors ------------------------------------------------------------------------------------ */

#define MOX_ERROR_CLASS_ID 0xACF7D72Eu

struct mox_error;
/* A hook gets the error entry being told and one word: the posted text (as a `const char*`) on the
   hint and warning channels, the caller's value on the fatal channel. Its result is ignored. */
typedef mox_bool (*mox_error_hook)(struct mox_error* self, uintptr_t word);

typedef struct mox_error {
    mox_object header;
    struct mox_error* prev;
    mox_error_hook on_hint;
    mox_error_hook on_warning;
    mox_error_hook on_fatal;
} mox_error;

MOX_API mox_bool mox_error_construct(mox_error* self, void* owner);
MOX_API mox_bool mox_error_destruct(mox_error* self);
MOX_API mox_bool mox_error_new(mox_error** out, void* owner);
MOX_API mox_bool mox_error_free(mox_error** slot);
MOX_API mox_bool mox_error_hint(mox_error* self, const char* word);
MOX_API mox_bool mox_error_warning(mox_error* self, const char* word);
MOX_API mox_bool mox_error_fatal(mox_error* self, uint32_t value);

MOX_API mox_bool mox_global_error_startup(void);
MOX_API mox_bool mox_global_error_cleanup(void);
MOX_API mox_bool mox_global_error_set_on_hint(mox_error_hook hook);
MOX_API mox_bool mox_global_error_set_on_warning(mox_error_hook hook);
MOX_API mox_bool mox_global_error_set_on_fatal(mox_error_hook hook);
MOX_API mox_bool mox_global_error_hint(const char* word);
MOX_API mox_bool mox_global_error_warning(const char* word);
MOX_API mox_bool mox_global_error_fatal(uint32_t value);

/* ---- Exceptions -------------------------------------------------------------------------------- */

#define MOX_EXCEPTION_CLASS_ID 0x0DF4BBFAu

/* Told of an unhandled exception: where it happened, its code and its flags. Its result is ignored;
   once it returns, the process ends. */
typedef mox_bool (*mox_exception_hook)(void* address, uint32_t code, uint32_t flags);

typedef struct mox_exception {
    mox_object header;
    void* prev_filter;
    struct mox_exception* prev;
    mox_exception_hook on_exception;
} mox_exception;

MOX_API mox_bool mox_exception_construct(mox_exception* self, void* owner);
MOX_API mox_bool mox_exception_destruct(mox_exception* self);
MOX_API mox_bool mox_exception_new(mox_exception** out, void* owner);
MOX_API mox_bool mox_exception_free(mox_exception** slot);
MOX_API void mox_exception_raise(uint32_t code, uint32_t flags);

MOX_API mox_bool mox_global_exception_startup(void);
MOX_API mox_bool mox_global_exception_cleanup(void);

/* ---- Memory ------------------------------------------------------------------------------------ */

/* All heap memory of the library goes through these three; blocks come zero-filled. */
MOX_API mox_bool mox_memory_new(void** slot, uint32_t size);
MOX_API mox_bool mox_memory_free(void** slot);
MOX_API mox_bool mox_memory_resize(void** slot, uint32_t size);

MOX_API mox_bool mox_memory_fill_u8(uint8_t* dst, uint32_t value, uint32_t count);
MOX_API mox_bool mox_memory_fill_u16(uint16_t* dst, uint16_t value, uint32_t count);
MOX_API mox_bool mox_memory_fill_u32(uint32_t* dst, uint32_t value, uint32_t count);
/* Returns false on success too: only the posted hint tells a null argument apart. */
MOX_API mox_bool mox_memory_copy(void* dst, const void* src, uint32_t size);
MOX_API mox_bool mox_memory_copy_ext(void* dst, const void* src, uint32_t size, uint32_t repeat);
MOX_API mox_bool mox_memory_move(void* dst, const void* src, uint32_t size);
/* True when equal; gives no order. */
MOX_API mox_bool mox_memory_compare(const void* a, const void* b, uint32_t size);

/* ---- Swaps ------------------------------------------------------------------------------------- */

MOX_API void mox_swap_i8(int8_t* a, int8_t* b);
MOX_API void mox_swap_i16(int16_t* a, int16_t* b);
MOX_API void mox_swap_i32(int32_t* a, int32_t* b);
MOX_API void mox_swap_r32(float* a, float* b);
MOX_API void mox_swap_r64(double* a, double* b);
/* Unmasked: bits 8 to 11 of the result repeat the old high nibble. */
MOX_API uint32_t mox_swap_bit4(uint8_t x);
/* Unmasked: bits 16 to 23 of the result repeat the old high byte. */
MOX_API uint32_t mox_swap_bit8(uint16_t x);
/* Full byte reversals. */
MOX_API uint32_t mox_swap_bit16(uint32_t x);
MOX_API uint64_t mox_swap_bit32(uint64_t x);

/* ---- Actions ----------------------------------------------------------------------------------- */

#define MOX_ACTION_CLASS_ID 0xBCE9EA9Cu

struct mox_action;
/* Called with the registry, the identifier and the caller's argument word. Its result is ignored. */
typedef mox_bool (*mox_action_callback)(struct mox_action* action, uint32_t id, uintptr_t argument);

/* Identifiers mapped to callbacks: one note per identifier, `key` the identifier, `data` the
   callback. The family reports a null registry as "core.params". */
typedef struct mox_action {
    mox_object header;
    mox_list entries;
} mox_action;

MOX_API mox_bool mox_action_construct(mox_action* self, void* owner);
MOX_API mox_bool mox_action_destruct(mox_action* self);
MOX_API mox_bool mox_action_new(mox_action** out, void* owner);
MOX_API mox_bool mox_action_free(mox_action** slot);
/* A second registration of an identifier replaces the callback in place; a null callback is kept. */
MOX_API mox_bool mox_action_reg(mox_action* self, uint32_t id, mox_action_callback callback);
MOX_API mox_bool mox_action_unreg(mox_action* self, uint32_t id);
/* False for an unknown identifier or a null callback; otherwise true whatever the callback says. */
MOX_API mox_bool mox_action_call(mox_action* self, uint32_t id, uintptr_t argument);
/* A registry holds function pointers and has no file form: both are placeholders that check their
   two pointers and post "core.params" when one is null. */
MOX_API mox_bool mox_action_save_to_file(void* self, mox_file* file);
MOX_API mox_bool mox_action_load_from_file(void* self, mox_file* file);

MOX_END_DECLS

#endif
