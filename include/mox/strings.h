/* Narrow and wide strings. */
#ifndef MOX_STRINGS_H
#define MOX_STRINGS_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- Narrow strings ----------------------------------------------------------------------------- */

MOX_API mox_bool mox_astring_construct(mox_astring* slot);
/* Releases the block and clears the slot; false for a null slot or a null string. */
MOX_API mox_bool mox_astring_destruct(mox_astring* slot);
/* Keeps the characters that were there; new ones are zero. */
MOX_API mox_bool mox_astring_set_length(mox_astring* slot, uint32_t length);
MOX_API mox_bool mox_astring_duplicate(mox_astring* out, const char* text);

/* Every entry below writes a fresh block into `out`, which must not hold one of its sources. */
MOX_API mox_bool mox_astring_copy(mox_astring* out, const char* text, uint32_t start, uint32_t count);
MOX_API mox_bool mox_astring_cut(mox_astring* out, const char* text, uint32_t start, uint32_t count);
/* A position beyond the length drops `insert` but keeps the block sized for both. */
MOX_API mox_bool mox_astring_paste(mox_astring* out, const char* text, const char* insert, uint32_t position);
MOX_API mox_bool mox_astring_concate_2(mox_astring* out, const char* a, const char* b);
MOX_API mox_bool mox_astring_concate_3(mox_astring* out, const char* a, const char* b, const char* c);
MOX_API mox_bool mox_astring_concate_4(mox_astring* out, const char* a, const char* b, const char* c,
                                       const char* d);
MOX_API mox_bool mox_astring_concate_5(mox_astring* out, const char* a, const char* b, const char* c,
                                       const char* d, const char* e);
/* Sources up to a null pointer. */
MOX_API mox_bool mox_astring_concate_ext(mox_astring* out, ...);
MOX_API mox_bool mox_astring_case_upper(mox_astring* out, const char* text);
MOX_API mox_bool mox_astring_case_lower(mox_astring* out, const char* text);
MOX_API mox_bool mox_astring_trim(mox_astring* out, const char* text);
MOX_API mox_bool mox_astring_trim_left(mox_astring* out, const char* text);
/* A text of blanks only comes back unchanged. */
MOX_API mox_bool mox_astring_trim_right(mox_astring* out, const char* text);

/* Equality only, a to z without case; no order. */
MOX_API mox_bool mox_astring_compare(const char* a, const char* b);
MOX_API mox_bool mox_astring_compare_case(const char* a, const char* b);
MOX_API mox_bool mox_astring_find_begin(const char* text, const char* pattern, uint32_t* position);
/* Blind to an occurrence at position 0. */
MOX_API mox_bool mox_astring_find_end(const char* text, const char* pattern, uint32_t* position);
/* Counts overlapping occurrences. */
MOX_API mox_bool mox_astring_inclusive(const char* text, const char* pattern, uint32_t* count);
MOX_API mox_bool mox_astring_find_begin_char(const char* text, char c, uint32_t* position);
MOX_API mox_bool mox_astring_find_end_char(const char* text, char c, uint32_t* position);
MOX_API mox_bool mox_astring_inclusive_char(const char* text, char c, uint32_t* count);
/* The number of characters; 0 for null. Both names are one entry. */
MOX_API uint32_t mox_astring_size(const char* text);
MOX_API uint32_t mox_astring_length(const char* text);
/* True for a non-null argument; exchanges nothing. */
MOX_API mox_bool mox_astring_swap(void* self);

#define MOX_ASTRING_ARRAY_CLASS_ID 0x041090D4u

typedef struct mox_astring_array {
    mox_object header;
    uint32_t length;
    mox_astring* items;
} mox_astring_array;

MOX_API mox_bool mox_astring_array_construct(mox_astring_array* self, void* owner);
MOX_API mox_bool mox_astring_array_destruct(mox_astring_array* self);
MOX_API mox_bool mox_astring_array_new(mox_astring_array** out, void* owner);
MOX_API mox_bool mox_astring_array_free(mox_astring_array** slot);
/* A length of 0 is refused: an array is not emptied this way. */
MOX_API mox_bool mox_astring_array_set_length(mox_astring_array* self, uint32_t length);

/* ---- Wide strings ------------------------------------------------------------------------------- */

MOX_API mox_bool mox_wstring_construct(mox_wstring* slot);
/* Releases the block and clears the slot; false for a null slot or a null string. */
MOX_API mox_bool mox_wstring_destruct(mox_wstring* slot);
/* Keeps the characters that were there; new ones are zero. */
MOX_API mox_bool mox_wstring_set_length(mox_wstring* slot, uint32_t length);
MOX_API mox_bool mox_wstring_duplicate(mox_wstring* out, const uint16_t* text);

/* Every entry below writes a fresh block into `out`, which must not hold one of its sources. */
MOX_API mox_bool mox_wstring_copy(mox_wstring* out, const uint16_t* text, uint32_t start, uint32_t count);
MOX_API mox_bool mox_wstring_cut(mox_wstring* out, const uint16_t* text, uint32_t start, uint32_t count);
/* A position beyond the length drops `insert` but keeps the block sized for both. */
MOX_API mox_bool mox_wstring_paste(mox_wstring* out, const uint16_t* text, const uint16_t* insert,
                                   uint32_t position);
MOX_API mox_bool mox_wstring_concate_2(mox_wstring* out, const uint16_t* a, const uint16_t* b);
MOX_API mox_bool mox_wstring_concate_3(mox_wstring* out, const uint16_t* a, const uint16_t* b,
                                       const uint16_t* c);
MOX_API mox_bool mox_wstring_concate_4(mox_wstring* out, const uint16_t* a, const uint16_t* b,
                                       const uint16_t* c, const uint16_t* d);
MOX_API mox_bool mox_wstring_concate_5(mox_wstring* out, const uint16_t* a, const uint16_t* b,
                                       const uint16_t* c, const uint16_t* d, const uint16_t* e);
/* Sources up to a null pointer. */
MOX_API mox_bool mox_wstring_concate_ext(mox_wstring* out, ...);
MOX_API mox_bool mox_wstring_case_upper(mox_wstring* out, const uint16_t* text);
MOX_API mox_bool mox_wstring_case_lower(mox_wstring* out, const uint16_t* text);
MOX_API mox_bool mox_wstring_trim(mox_wstring* out, const uint16_t* text);
MOX_API mox_bool mox_wstring_trim_left(mox_wstring* out, const uint16_t* text);
/* A text of blanks only comes back unchanged. */
MOX_API mox_bool mox_wstring_trim_right(mox_wstring* out, const uint16_t* text);

/* Equality only, a to z without case; no order. */
MOX_API mox_bool mox_wstring_compare(const uint16_t* a, const uint16_t* b);
MOX_API mox_bool mox_wstring_compare_case(const uint16_t* a, const uint16_t* b);
MOX_API mox_bool mox_wstring_find_begin(const uint16_t* text, const uint16_t* pattern, uint32_t* position);
/* Blind to an occurrence at position 0. */
MOX_API mox_bool mox_wstring_find_end(const uint16_t* text, const uint16_t* pattern, uint32_t* position);
/* Counts overlapping occurrences. */
MOX_API mox_bool mox_wstring_inclusive(const uint16_t* text, const uint16_t* pattern, uint32_t* count);
MOX_API mox_bool mox_wstring_find_begin_char(const uint16_t* text, uint16_t c, uint32_t* position);
MOX_API mox_bool mox_wstring_find_end_char(const uint16_t* text, uint16_t c, uint32_t* position);
MOX_API mox_bool mox_wstring_inclusive_char(const uint16_t* text, uint16_t c, uint32_t* count);
/* Units before the terminator, and bytes (two per unit). */
MOX_API uint32_t mox_wstring_length(const uint16_t* text);
MOX_API uint32_t mox_wstring_size(const uint16_t* text);
/* Exchanges the two bytes of every unit, in place. */
MOX_API mox_bool mox_wstring_swap(mox_wstring text);

#define MOX_WSTRING_ARRAY_CLASS_ID 0x10F2E9D3u

typedef struct mox_wstring_array {
    mox_object header;
    uint32_t length;
    mox_wstring* items;
} mox_wstring_array;

MOX_API mox_bool mox_wstring_array_construct(mox_wstring_array* self, void* owner);
MOX_API mox_bool mox_wstring_array_destruct(mox_wstring_array* self);
MOX_API mox_bool mox_wstring_array_new(mox_wstring_array** out, void* owner);
MOX_API mox_bool mox_wstring_array_free(mox_wstring_array** slot);
/* A length of 0 is refused: an array is not emptied this way. */
MOX_API mox_bool mox_wstring_array_set_length(mox_wstring_array* self, uint32_t length);

MOX_END_DECLS

#endif
