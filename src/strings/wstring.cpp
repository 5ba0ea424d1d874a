// Wide strings: terminated blocks of 16-bit units held in a slot, with the body of the narrow family.
#include <mox/strings.h>

#include "strings/string_core.h"

namespace {

using Core = mox::strings::Core<uint16_t>;
using Search = Core::Search;

} // namespace

extern "C" {

// A slot is a slot whatever its units: these are the narrow entries themselves.
MOX_API mox_bool mox_wstring_construct(mox_wstring* slot) {
    return mox_astring_construct(reinterpret_cast<mox_astring*>(slot));
}
MOX_API mox_bool mox_wstring_destruct(mox_wstring* slot) {
    return mox_astring_destruct(reinterpret_cast<mox_astring*>(slot));
}

MOX_API uint32_t mox_wstring_length(const uint16_t* text) {
    return Core::length(text);
}
MOX_API uint32_t mox_wstring_size(const uint16_t* text) {
    return Core::length(text) * 2;
}

MOX_API mox_bool mox_wstring_swap(mox_wstring text) {
    if (text == nullptr)
        return 0;
    for (uint16_t* unit = text; *unit != 0; ++unit)
        *unit = static_cast<uint16_t>((*unit >> 8) | (*unit << 8));
    return 1;
}

MOX_API mox_bool mox_wstring_set_length(mox_wstring* slot, uint32_t length) {
    return Core::set_length(slot, length);
}
MOX_API mox_bool mox_wstring_duplicate(mox_wstring* out, const uint16_t* text) {
    return Core::duplicate(out, text);
}

MOX_API mox_bool mox_wstring_copy(mox_wstring* out, const uint16_t* text, uint32_t start, uint32_t count) {
    return Core::copy(out, text, start, count);
}
MOX_API mox_bool mox_wstring_cut(mox_wstring* out, const uint16_t* text, uint32_t start, uint32_t count) {
    return Core::cut(out, text, start, count);
}
MOX_API mox_bool mox_wstring_paste(mox_wstring* out, const uint16_t* text, const uint16_t* insert,
                                   uint32_t position) {
    return Core::paste(out, text, insert, position);
}
MOX_API mox_bool mox_wstring_concate_2(mox_wstring* out, const uint16_t* a, const uint16_t* b) {
    const uint16_t* sources[] = {a, b};
    return Core::concate(out, sources, 2);
}
MOX_API mox_bool mox_wstring_concate_3(mox_wstring* out, const uint16_t* a, const uint16_t* b,
                                       const uint16_t* c) {
    const uint16_t* sources[] = {a, b, c};
    return Core::concate(out, sources, 3);
}
MOX_API mox_bool mox_wstring_concate_4(mox_wstring* out, const uint16_t* a, const uint16_t* b,
                                       const uint16_t* c, const uint16_t* d) {
    const uint16_t* sources[] = {a, b, c, d};
    return Core::concate(out, sources, 4);
}
MOX_API mox_bool mox_wstring_concate_5(mox_wstring* out, const uint16_t* a, const uint16_t* b,
                                       const uint16_t* c, const uint16_t* d, const uint16_t* e) {
    const uint16_t* sources[] = {a, b, c, d, e};
    return Core::concate(out, sources, 5);
}
MOX_API mox_bool mox_wstring_concate_ext(mox_wstring* out, ...) {
    va_list sources;
    va_start(sources, out);
    mox_bool result = Core::concate_list(out, sources);
    va_end(sources);
    return result;
}
MOX_API mox_bool mox_wstring_case_upper(mox_wstring* out, const uint16_t* text) {
    return Core::case_upper(out, text);
}
MOX_API mox_bool mox_wstring_case_lower(mox_wstring* out, const uint16_t* text) {
    return Core::case_lower(out, text);
}
MOX_API mox_bool mox_wstring_trim(mox_wstring* out, const uint16_t* text) {
    return Core::trim(out, text);
}
MOX_API mox_bool mox_wstring_trim_left(mox_wstring* out, const uint16_t* text) {
    return Core::trim_left(out, text);
}
MOX_API mox_bool mox_wstring_trim_right(mox_wstring* out, const uint16_t* text) {
    return Core::trim_right(out, text);
}

MOX_API mox_bool mox_wstring_compare(const uint16_t* a, const uint16_t* b) {
    return Core::compare(a, b, true);
}
MOX_API mox_bool mox_wstring_compare_case(const uint16_t* a, const uint16_t* b) {
    return Core::compare(a, b, false);
}
MOX_API mox_bool mox_wstring_find_begin(const uint16_t* text, const uint16_t* pattern, uint32_t* position) {
    return Core::search(text, pattern, position, Search::first);
}
MOX_API mox_bool mox_wstring_find_end(const uint16_t* text, const uint16_t* pattern, uint32_t* position) {
    return Core::search(text, pattern, position, Search::last);
}
MOX_API mox_bool mox_wstring_inclusive(const uint16_t* text, const uint16_t* pattern, uint32_t* count) {
    return Core::search(text, pattern, count, Search::count);
}
MOX_API mox_bool mox_wstring_find_begin_char(const uint16_t* text, uint16_t c, uint32_t* position) {
    return Core::search_char(text, c, position, Search::first);
}
MOX_API mox_bool mox_wstring_find_end_char(const uint16_t* text, uint16_t c, uint32_t* position) {
    return Core::search_char(text, c, position, Search::last);
}
MOX_API mox_bool mox_wstring_inclusive_char(const uint16_t* text, uint16_t c, uint32_t* count) {
    return Core::search_char(text, c, count, Search::count);
}

MOX_API mox_bool mox_wstring_array_construct(mox_wstring_array* self, void* owner) {
    return Core::array_construct(self, owner);
}
MOX_API mox_bool mox_wstring_array_destruct(mox_wstring_array* self) {
    return Core::array_destruct(self);
}
MOX_API mox_bool mox_wstring_array_new(mox_wstring_array** out, void* owner) {
    return Core::array_new(out, owner);
}
MOX_API mox_bool mox_wstring_array_free(mox_wstring_array** slot) {
    return Core::array_free(slot);
}
MOX_API mox_bool mox_wstring_array_set_length(mox_wstring_array* self, uint32_t length) {
    return Core::array_set_length(self, length);
}

} // extern "C"
