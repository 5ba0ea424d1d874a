// Narrow strings to numbers and back, recognition, tokens, replacing and string files.
#include <mox/strings.h>

#include "strings/string_convert.h"

namespace {

using Convert = mox::strings::Convert<char>;
using Kind = Convert::Kind;

} // namespace

extern "C" {

MOX_API mox_bool mox_astring_from_i8(mox_astring* out, int8_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_astring_from_u8(mox_astring* out, uint8_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_astring_from_i16(mox_astring* out, int16_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_astring_from_u16(mox_astring* out, uint16_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_astring_from_i32(mox_astring* out, int32_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_astring_from_u32(mox_astring* out, uint32_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_astring_from_bool(mox_astring* out, uint8_t value) {
    return Convert::from_bool(out, value);
}
MOX_API mox_bool mox_astring_from_r32(mox_astring* out, float value, char separator, uint32_t decimals) {
    return Convert::from_real(out, value, separator, decimals);
}
MOX_API mox_bool mox_astring_from_r64(mox_astring* out, double value, char separator, uint32_t decimals) {
    return Convert::from_real(out, value, separator, decimals);
}

MOX_API mox_bool mox_astring_to_i8(const char* text, int8_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_astring_to_u8(const char* text, uint8_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_astring_to_i16(const char* text, int16_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_astring_to_u16(const char* text, uint16_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_astring_to_i32(const char* text, int32_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_astring_to_u32(const char* text, uint32_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_astring_to_bool(const char* text, uint8_t* out) { return Convert::to_bool(text, out); }
MOX_API mox_bool mox_astring_to_r32(const char* text, float* value, char separator, uint32_t decimals) {
    return Convert::to_real(text, value, separator, decimals);
}
MOX_API mox_bool mox_astring_to_r64(const char* text, double* value, char separator, uint32_t decimals) {
    return Convert::to_real(text, value, separator, decimals);
}

MOX_API mox_bool mox_astring_is_bin(const char* text) { return Convert::recognise(text, Kind::bin); }
MOX_API mox_bool mox_astring_is_oct(const char* text) { return Convert::recognise(text, Kind::oct); }
MOX_API mox_bool mox_astring_is_dec(const char* text) { return Convert::recognise(text, Kind::dec); }
MOX_API mox_bool mox_astring_is_hex(const char* text) { return Convert::recognise(text, Kind::hex); }
MOX_API mox_bool mox_astring_is_real(const char* text, char separator) {
    return Convert::recognise(text, Kind::real, separator);
}

MOX_API mox_bool mox_astring_parse_inc(const char* text, const char* separator, uint32_t* count) {
    return Convert::parse_inc(text, separator, count);
}
MOX_API mox_bool mox_astring_parse(mox_astring_array* self, const char* text, const char* separator) {
    return Convert::parse(self, text, separator);
}
MOX_API mox_bool mox_astring_replace(mox_astring* out, const char* text, const char* from, const char* to) {
    return Convert::replace(out, text, from, to);
}
MOX_API mox_bool mox_astring_replace_ext(mox_astring* out, const char* text, uint32_t count,
                                         const char** from, const char** to) {
    return Convert::replace_ext(out, text, count, from, to);
}

MOX_API mox_bool mox_astring_save_to_file(const char* text, mox_file* file) {
    return Convert::save_to_file(text, file);
}
MOX_API mox_bool mox_astring_load_from_file(mox_astring* slot, mox_file* file) {
    return Convert::load_from_file(slot, file);
}

} // extern "C"
