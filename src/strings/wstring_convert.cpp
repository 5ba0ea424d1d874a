// Wide strings to numbers and back, recognition, tokens, replacing and string files.
#include <mox/strings.h>

#include "strings/string_convert.h"

namespace {

using Convert = mox::strings::Convert<uint16_t>;
using Kind = Convert::Kind;

} // namespace

extern "C" {

MOX_API mox_bool mox_wstring_from_i8(mox_wstring* out, int8_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_wstring_from_u8(mox_wstring* out, uint8_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_wstring_from_i16(mox_wstring* out, int16_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_wstring_from_u16(mox_wstring* out, uint16_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_wstring_from_i32(mox_wstring* out, int32_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_wstring_from_u32(mox_wstring* out, uint32_t value, uint32_t base, uint32_t width) {
    return Convert::from_integer(out, value, base, width);
}
MOX_API mox_bool mox_wstring_from_bool(mox_wstring* out, uint8_t value) {
    return Convert::from_bool(out, value);
}
MOX_API mox_bool mox_wstring_from_r32(mox_wstring* out, float value, uint16_t separator, uint32_t decimals) {
    return Convert::from_real(out, value, separator, decimals);
}
MOX_API mox_bool mox_wstring_from_r64(mox_wstring* out, double value, uint16_t separator, uint32_t decimals) {
    return Convert::from_real(out, value, separator, decimals);
}

MOX_API mox_bool mox_wstring_to_i8(const uint16_t* text, int8_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_wstring_to_u8(const uint16_t* text, uint8_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_wstring_to_i16(const uint16_t* text, int16_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_wstring_to_u16(const uint16_t* text, uint16_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_wstring_to_i32(const uint16_t* text, int32_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_wstring_to_u32(const uint16_t* text, uint32_t* value, uint32_t base) {
    return Convert::to_integer(text, value, base);
}
MOX_API mox_bool mox_wstring_to_bool(const uint16_t* text, uint8_t* out) {
    return Convert::to_bool(text, out);
}
MOX_API mox_bool mox_wstring_to_r32(const uint16_t* text, float* value, uint16_t separator,
                                    uint32_t decimals) {
    return Convert::to_real(text, value, separator, decimals);
}
MOX_API mox_bool mox_wstring_to_r64(const uint16_t* text, double* value, uint16_t separator,
                                    uint32_t decimals) {
    return Convert::to_real(text, value, separator, decimals);
}

MOX_API mox_bool mox_wstring_is_bin(const uint16_t* text) { return Convert::recognise(text, Kind::bin); }
MOX_API mox_bool mox_wstring_is_oct(const uint16_t* text) { return Convert::recognise(text, Kind::oct); }
MOX_API mox_bool mox_wstring_is_dec(const uint16_t* text) { return Convert::recognise(text, Kind::dec); }
MOX_API mox_bool mox_wstring_is_hex(const uint16_t* text) { return Convert::recognise(text, Kind::hex); }
MOX_API mox_bool mox_wstring_is_real(const uint16_t* text, uint16_t separator) {
    return Convert::recognise(text, Kind::real, separator);
}

MOX_API mox_bool mox_wstring_parse_inc(const uint16_t* text, const uint16_t* separator, uint32_t* count) {
    return Convert::parse_inc(text, separator, count);
}
MOX_API mox_bool mox_wstring_parse(mox_wstring_array* self, const uint16_t* text, const uint16_t* separator) {
    return Convert::parse(self, text, separator);
}
MOX_API mox_bool mox_wstring_replace(mox_wstring* out, const uint16_t* text, const uint16_t* from,
                                     const uint16_t* to) {
    return Convert::replace(out, text, from, to);
}
MOX_API mox_bool mox_wstring_replace_ext(mox_wstring* out, const uint16_t* text, uint32_t count,
                                         const uint16_t** from, const uint16_t** to) {
    return Convert::replace_ext(out, text, count, from, to);
}

MOX_API mox_bool mox_wstring_save_to_file(const uint16_t* text, mox_file* file) {
    return Convert::save_to_file(text, file);
}
MOX_API mox_bool mox_wstring_load_from_file(mox_wstring* slot, mox_file* file) {
    return Convert::load_from_file(slot, file);
}

} // extern "C"
