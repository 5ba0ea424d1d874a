// Narrow strings: terminated blocks of 8-bit units held in a slot. The body is shared with the wide
// family; these entries only forward.
#include <mox/strings.h>

#include "strings/string_core.h"

namespace {

using Core = mox::strings::Core<char>;
using Search = Core::Search;

} // namespace

extern "C" {

MOX_API mox_bool mox_astring_construct(mox_astring* slot) {
    if (slot == nullptr)
        return 0;
    *slot = nullptr;
    return 1;
}

// A string is one heap block in one slot, so ending it is releasing the block.
MOX_API mox_bool mox_astring_destruct(mox_astring* slot) {
    return mox_object_free(reinterpret_cast<void**>(slot));
}

// Size and length are one entry for narrow strings.
MOX_API uint32_t mox_astring_size(const char* text) {
    return Core::length(text);
}
MOX_API uint32_t mox_astring_length(const char* text) {
    return Core::length(text);
}

MOX_API mox_bool mox_astring_set_length(mox_astring* slot, uint32_t length) {
    return Core::set_length(slot, length);
}
MOX_API mox_bool mox_astring_duplicate(mox_astring* out, const char* text) {
    return Core::duplicate(out, text);
}

MOX_API mox_bool mox_astring_copy(mox_astring* out, const char* text, uint32_t start, uint32_t count) {
    return Core::copy(out, text, start, count);
}
MOX_API mox_bool mox_astring_cut(mox_astring* out, const char* text, uint32_t start, uint32_t count) {
    return Core::cut(out, text, start, count);
}
MOX_API mox_bool mox_astring_paste(mox_astring* out, const char* text, const char* insert,
                                   uint32_t position) {
    return Core::paste(out, text, insert, position);
}
MOX_API mox_bool mox_astring_concate_2(mox_astring* out, const char* a, const char* b) {
    const char* sources[] = {a, b};
    return Core::concate(out, sources, 2);
}
MOX_API mox_bool mox_astring_concate_3(mox_astring* out, const char* a, const char* b, const char* c) {
    const char* sources[] = {a, b, c};
    return Core::concate(out, sources, 3);
}
MOX_API mox_bool mox_astring_concate_4(mox_astring* out, const char* a, const char* b, const char* c,
                                       const char* d) {
    const char* sources[] = {a, b, c, d};
    return Core::concate(out, sources, 4);
}
MOX_API mox_bool mox_astring_concate_5(mox_astring* out, const char* a, const char* b, const char* c,
                                       const char* d, const char* e) {
    const char* sources[] = {a, b, c, d, e};
    return Core::concate(out, sources, 5);
}
MOX_API mox_bool mox_astring_concate_ext(mox_astring* out, ...) {
    va_list sources;
    va_start(sources, out);
    mox_bool result = Core::concate_list(out, sources);
    va_end(sources);
    return result;
}
MOX_API mox_bool mox_astring_case_upper(mox_astring* out, const char* text) {
    return Core::case_upper(out, text);
}
MOX_API mox_bool mox_astring_case_lower(mox_astring* out, const char* text) {
    return Core::case_lower(out, text);
}
MOX_API mox_bool mox_astring_trim(mox_astring* out, const char* text) {
    return Core::trim(out, text);
}
MOX_API mox_bool mox_astring_trim_left(mox_astring* out, const char* text) {
    return Core::trim_left(out, text);
}
MOX_API mox_bool mox_astring_trim_right(mox_astring* out, const char* text) {
    return Core::trim_right(out, text);
}

MOX_API mox_bool mox_astring_compare(const char* a, const char* b) {
    return Core::compare(a, b, true);
}
MOX_API mox_bool mox_astring_compare_case(const char* a, const char* b) {
    return Core::compare(a, b, false);
}
MOX_API mox_bool mox_astring_find_begin(const char* text, const char* pattern, uint32_t* position) {
    return Core::search(text, pattern, position, Search::first);
}
MOX_API mox_bool mox_astring_find_end(const char* text, const char* pattern, uint32_t* position) {
    return Core::search(text, pattern, position, Search::last);
}
MOX_API mox_bool mox_astring_inclusive(const char* text, const char* pattern, uint32_t* count) {
    return Core::search(text, pattern, count, Search::count);
}
MOX_API mox_bool mox_astring_find_begin_char(const char* text, char c, uint32_t* position) {
    return Core::search_char(text, c, position, Search::first);
}
MOX_API mox_bool mox_astring_find_end_char(const char* text, char c, uint32_t* position) {
    return Core::search_char(text, c, position, Search::last);
}
MOX_API mox_bool mox_astring_inclusive_char(const char* text, char c, uint32_t* count) {
    return Core::search_char(text, c, count, Search::count);
}

MOX_API mox_bool mox_astring_array_construct(mox_astring_array* self, void* owner) {
    return Core::array_construct(self, owner);
}
MOX_API mox_bool mox_astring_array_destruct(mox_astring_array* self) {
    return Core::array_destruct(self);
}
MOX_API mox_bool mox_astring_array_new(mox_astring_array** out, void* owner) {
    return Core::array_new(out, owner);
}
MOX_API mox_bool mox_astring_array_free(mox_astring_array** slot) {
    return Core::array_free(slot);
}
MOX_API mox_bool mox_astring_array_set_length(mox_astring_array* self, uint32_t length) {
    return Core::array_set_length(self, length);
}

} // extern "C"
