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

/* ---- Narrow string conversion and parsing ------------------------------------------------------ */

/* Integers to text. Bases 2 and 16 pad to the type's width when `width` is 0; a narrower width
   cuts high digits; bases 2, 8 and 16 drop the sign; base 10 writes it over the lowest digit. A base
   below 2 is refused. */
MOX_API mox_bool mox_astring_from_i8(mox_astring* out, int8_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_astring_from_u8(mox_astring* out, uint8_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_astring_from_i16(mox_astring* out, int16_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_astring_from_u16(mox_astring* out, uint16_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_astring_from_i32(mox_astring* out, int32_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_astring_from_u32(mox_astring* out, uint32_t value, uint32_t base, uint32_t width);
/* 1 gives "true", 0 gives "false", anything else is refused. */
MOX_API mox_bool mox_astring_from_bool(mox_astring* out, uint8_t value);
/* Digits are cut, not rounded; `decimals` runs from 1 to 16; no exponent form. Infinities and NaN
   are refused. */
MOX_API mox_bool mox_astring_from_r32(mox_astring* out, float value, char separator, uint32_t decimals);
MOX_API mox_bool mox_astring_from_r64(mox_astring* out, double value, char separator, uint32_t decimals);
/* Text to integers: blanks anywhere are skipped, reading stops after the width's count of
   characters, values wrap. In base 10 a leading sign of either kind negates and hides the character
   behind it. A bad character clears the value and gives false. */
MOX_API mox_bool mox_astring_to_i8(const char* text, int8_t* value, uint32_t base);
MOX_API mox_bool mox_astring_to_u8(const char* text, uint8_t* value, uint32_t base);
MOX_API mox_bool mox_astring_to_i16(const char* text, int16_t* value, uint32_t base);
MOX_API mox_bool mox_astring_to_u16(const char* text, uint16_t* value, uint32_t base);
MOX_API mox_bool mox_astring_to_i32(const char* text, int32_t* value, uint32_t base);
MOX_API mox_bool mox_astring_to_u32(const char* text, uint32_t* value, uint32_t base);
/* "true" or "false" in any case; anything else leaves `*out` as it was. */
MOX_API mox_bool mox_astring_to_bool(const char* text, uint8_t* out);
/* At most `decimals` fraction digits are read; the 32-bit form rounds at every digit. */
MOX_API mox_bool mox_astring_to_r32(const char* text, float* value, char separator, uint32_t decimals);
MOX_API mox_bool mox_astring_to_r64(const char* text, double* value, char separator, uint32_t decimals);
/* Quick looks that skip blanks; an empty text is false. `is_dec` and `is_real` accept anything as
   the first character. */
MOX_API mox_bool mox_astring_is_bin(const char* text);
MOX_API mox_bool mox_astring_is_oct(const char* text);
MOX_API mox_bool mox_astring_is_dec(const char* text);
MOX_API mox_bool mox_astring_is_hex(const char* text);
MOX_API mox_bool mox_astring_is_real(const char* text, char separator);
/* Tokens between separators; empty tokens are never made. A text without tokens leaves the array
   as it was and gives false. */
MOX_API mox_bool mox_astring_parse_inc(const char* text, const char* separator, uint32_t* count);
MOX_API mox_bool mox_astring_parse(mox_astring_array* self, const char* text, const char* separator);
MOX_API mox_bool mox_astring_replace(mox_astring* out, const char* text, const char* from, const char* to);
/* The pairs in turn; a count of 0 applies the first pair once, a count of 1 applies it twice. */
MOX_API mox_bool mox_astring_replace_ext(mox_astring* out, const char* text, uint32_t count, const char** from,
                                    const char** to);
/* A 4-byte little-endian count of units, then the units little-endian, no terminator. */
MOX_API mox_bool mox_astring_save_to_file(const char* text, mox_file* file);
MOX_API mox_bool mox_astring_load_from_file(mox_astring* slot, mox_file* file);

/* Recoding through the system's code pages (0 and 1 are the ANSI and OEM pages, UTF-8 on Linux). */
MOX_API mox_bool mox_astring_to_wstring(mox_wstring* out, const char* text, uint32_t code_page);
MOX_API mox_bool mox_wstring_to_astring(mox_astring* out, const uint16_t* text, uint32_t code_page);
MOX_API mox_bool mox_astring_convert(mox_astring* slot, uint32_t to_page, uint32_t from_page);
/* In place, within `size` bytes; true when as many bytes came out as there were characters. */
MOX_API mox_bool mox_astring_buffer_convert(char* buffer, uint32_t size, uint32_t to_page, uint32_t from_page);

/* ---- Wide string conversion and parsing -------------------------------------------------------- */

/* Integers to text. Bases 2 and 16 pad to the type's width when `width` is 0; a narrower width
   cuts high digits; bases 2, 8 and 16 drop the sign; base 10 writes it over the lowest digit. A base
   below 2 is refused. */
MOX_API mox_bool mox_wstring_from_i8(mox_wstring* out, int8_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_wstring_from_u8(mox_wstring* out, uint8_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_wstring_from_i16(mox_wstring* out, int16_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_wstring_from_u16(mox_wstring* out, uint16_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_wstring_from_i32(mox_wstring* out, int32_t value, uint32_t base, uint32_t width);
MOX_API mox_bool mox_wstring_from_u32(mox_wstring* out, uint32_t value, uint32_t base, uint32_t width);
/* 1 gives "true", 0 gives "false", anything else is refused. */
MOX_API mox_bool mox_wstring_from_bool(mox_wstring* out, uint8_t value);
/* Digits are cut, not rounded; `decimals` runs from 1 to 16; no exponent form. Infinities and NaN
   are refused. */
MOX_API mox_bool mox_wstring_from_r32(mox_wstring* out, float value, uint16_t separator, uint32_t decimals);
MOX_API mox_bool mox_wstring_from_r64(mox_wstring* out, double value, uint16_t separator, uint32_t decimals);
/* Text to integers: blanks anywhere are skipped, reading stops after the width's count of
   characters, values wrap. In base 10 a leading sign of either kind negates and hides the character
   behind it. A bad character clears the value and gives false. */
MOX_API mox_bool mox_wstring_to_i8(const uint16_t* text, int8_t* value, uint32_t base);
MOX_API mox_bool mox_wstring_to_u8(const uint16_t* text, uint8_t* value, uint32_t base);
MOX_API mox_bool mox_wstring_to_i16(const uint16_t* text, int16_t* value, uint32_t base);
MOX_API mox_bool mox_wstring_to_u16(const uint16_t* text, uint16_t* value, uint32_t base);
MOX_API mox_bool mox_wstring_to_i32(const uint16_t* text, int32_t* value, uint32_t base);
MOX_API mox_bool mox_wstring_to_u32(const uint16_t* text, uint32_t* value, uint32_t base);
/* "true" or "false" in any case; anything else leaves `*out` as it was. */
MOX_API mox_bool mox_wstring_to_bool(const uint16_t* text, uint8_t* out);
/* At most `decimals` fraction digits are read; the 32-bit form rounds at every digit. */
MOX_API mox_bool mox_wstring_to_r32(const uint16_t* text, float* value, uint16_t separator, uint32_t decimals);
MOX_API mox_bool mox_wstring_to_r64(const uint16_t* text, double* value, uint16_t separator, uint32_t decimals);
/* Quick looks that skip blanks; an empty text is false. `is_dec` and `is_real` accept anything as
   the first character. */
MOX_API mox_bool mox_wstring_is_bin(const uint16_t* text);
MOX_API mox_bool mox_wstring_is_oct(const uint16_t* text);
MOX_API mox_bool mox_wstring_is_dec(const uint16_t* text);
MOX_API mox_bool mox_wstring_is_hex(const uint16_t* text);
MOX_API mox_bool mox_wstring_is_real(const uint16_t* text, uint16_t separator);
/* Tokens between separators; empty tokens are never made. A text without tokens leaves the array
   as it was and gives false. */
MOX_API mox_bool mox_wstring_parse_inc(const uint16_t* text, const uint16_t* separator, uint32_t* count);
MOX_API mox_bool mox_wstring_parse(mox_wstring_array* self, const uint16_t* text, const uint16_t* separator);
MOX_API mox_bool mox_wstring_replace(mox_wstring* out, const uint16_t* text, const uint16_t* from, const uint16_t* to);
/* The pairs in turn; a count of 0 applies the first pair once, a count of 1 applies it twice. */
MOX_API mox_bool mox_wstring_replace_ext(mox_wstring* out, const uint16_t* text, uint32_t count, const uint16_t** from,
                                    const uint16_t** to);
/* A 4-byte little-endian count of units, then the units little-endian, no terminator. */
MOX_API mox_bool mox_wstring_save_to_file(const uint16_t* text, mox_file* file);
MOX_API mox_bool mox_wstring_load_from_file(mox_wstring* slot, mox_file* file);

MOX_END_DECLS

#endif
