// The one body of the narrow and the wide string families. Both are terminated blocks of units held
// in a slot; they differ only in the unit, in what counts as a blank, and in what their size entry
// counts, which the traits below give.
#pragma once

#include <mox/core.h>
#include <mox/strings.h>

#include <cstdarg>
#include <cstddef>

#include "core/instance.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_astring_array) == 24 && offsetof(mox_astring_array, items) == 20);
static_assert(sizeof(mox_wstring_array) == 24 && offsetof(mox_wstring_array, items) == 20);
#endif

namespace mox::strings {

template <class Char> struct Traits;

template <> struct Traits<char> {
    using Array = mox_astring_array;
    static constexpr uint32_t array_class_id = MOX_ASTRING_ARRAY_CLASS_ID;
    // Intended: read as a signed byte, so every byte from 0x80 up is a blank as well.
    static bool is_blank(char c) { return static_cast<signed char>(c) <= 32; }
};

template <> struct Traits<uint16_t> {
    using Array = mox_wstring_array;
    static constexpr uint32_t array_class_id = MOX_WSTRING_ARRAY_CLASS_ID;
    static bool is_blank(uint16_t c) { return c <= 32; }
};

template <class Char> struct Core {
    using Array = typename Traits<Char>::Array;

    // A null text counts as empty.
    static uint32_t length(const Char* text) {
        uint32_t count = 0;
        if (text != nullptr)
            while (text[count] != 0)
                ++count;
        return count;
    }

    // Sizes the slot for exactly `count` units and the terminator, and writes the terminator. The
    // units before it are whatever the resize kept. Null when the resize failed.
    static Char* reserve(Char** out, uint32_t count) {
        if (!mox_memory_resize(reinterpret_cast<void**>(out), (count + 1) * sizeof(Char)) || *out == nullptr)
            return nullptr;
        (*out)[count] = 0;
        return *out;
    }

    static void put(Char* target, const Char* source, uint32_t count) {
        for (uint32_t i = 0; i < count; ++i)
            target[i] = source[i];
    }

    // Writes `count` units of `source` as the whole string in `out`.
    static mox_bool assign(Char** out, const Char* source, uint32_t count) {
        Char* block = reserve(out, count);
        if (block == nullptr)
            return 0;
        put(block, source, count);
        return 1;
    }

    static mox_bool set_length(Char** slot, uint32_t count) {
        if (slot == nullptr)
            return 0;
        return reserve(slot, count) != nullptr;
    }

    // Intended: the check for the slot's own text comes first, so a null slot given a null text
    // stays null instead of becoming an empty string.
    static mox_bool duplicate(Char** out, const Char* text) {
        if (out == nullptr)
            return 0;
        if (*out == text)
            return 1;
        return assign(out, text, length(text));
    }

    static bool fits(uint32_t start, uint32_t count, uint32_t total) {
        return static_cast<uint64_t>(start) + count <= total;
    }

    static mox_bool copy(Char** out, const Char* text, uint32_t start, uint32_t count) {
        if (out == nullptr || !fits(start, count, length(text)))
            return 0;
        return assign(out, text + start, count);
    }

    static mox_bool cut(Char** out, const Char* text, uint32_t start, uint32_t count) {
        if (out == nullptr)
            return 0;
        uint32_t total = length(text);
        if (!fits(start, count, total))
            return 0;
        Char* block = reserve(out, total - count);
        if (block == nullptr)
            return 0;
        put(block, text, start);
        put(block + start, text + start + count, total - start - count);
        return 1;
    }

    // Intended: a position past the end drops `insert`, yet the block keeps the size of both, and
    // what lies between the copied text and the terminator is what the slot held before.
    static mox_bool paste(Char** out, const Char* text, const Char* insert, uint32_t position) {
        if (out == nullptr)
            return 0;
        uint32_t text_length = length(text);
        uint32_t insert_length = length(insert);
        Char* block = reserve(out, text_length + insert_length);
        if (block == nullptr)
            return 0;
        if (position > text_length) {
            put(block, text, text_length);
            return 1;
        }
        put(block, text, position);
        put(block + position, insert, insert_length);
        put(block + position + insert_length, text + position, text_length - position);
        return 1;
    }

    static mox_bool concate(Char** out, const Char* const* sources, uint32_t count) {
        if (out == nullptr)
            return 0;
        uint32_t total = 0;
        for (uint32_t i = 0; i < count; ++i)
            total += length(sources[i]);
        Char* block = reserve(out, total);
        if (block == nullptr)
            return 0;
        for (uint32_t i = 0; i < count; ++i) {
            uint32_t part = length(sources[i]);
            put(block, sources[i], part);
            block += part;
        }
        return 1;
    }

    // The sources of a variadic entry, up to the null pointer that ends them.
    static mox_bool concate_list(Char** out, va_list sources) {
        if (out == nullptr)
            return 0;
        va_list counting;
        va_copy(counting, sources);
        uint32_t total = 0;
        for (const Char* source = va_arg(counting, const Char*); source != nullptr;
             source = va_arg(counting, const Char*))
            total += length(source);
        va_end(counting);
        Char* block = reserve(out, total);
        if (block == nullptr)
            return 0;
        for (const Char* source = va_arg(sources, const Char*); source != nullptr;
             source = va_arg(sources, const Char*)) {
            uint32_t part = length(source);
            put(block, source, part);
            block += part;
        }
        return 1;
    }

    static mox_bool change_case(Char** out, const Char* text, Char from, Char to, int shift) {
        if (out == nullptr)
            return 0;
        uint32_t count = length(text);
        Char* block = reserve(out, count);
        if (block == nullptr)
            return 0;
        for (uint32_t i = 0; i < count; ++i) {
            Char c = text[i];
            block[i] = (c >= from && c <= to) ? static_cast<Char>(c + shift) : c;
        }
        return 1;
    }

    static mox_bool case_upper(Char** out, const Char* text) { return change_case(out, text, 'a', 'z', -32); }
    static mox_bool case_lower(Char** out, const Char* text) { return change_case(out, text, 'A', 'Z', 32); }

    static uint32_t leading_blanks(const Char* text, uint32_t count) {
        uint32_t lead = 0;
        while (lead < count && Traits<Char>::is_blank(text[lead]))
            ++lead;
        return lead;
    }

    // One past the last non-blank at or after `from`; `from` itself if there is none.
    static uint32_t end_of_content(const Char* text, uint32_t from, uint32_t count) {
        uint32_t end = count;
        while (end > from && Traits<Char>::is_blank(text[end - 1]))
            --end;
        return end;
    }

    static mox_bool trim(Char** out, const Char* text) {
        if (out == nullptr)
            return 0;
        uint32_t count = length(text);
        uint32_t lead = leading_blanks(text, count);
        return assign(out, text + lead, end_of_content(text, lead, count) - lead);
    }

    static mox_bool trim_left(Char** out, const Char* text) {
        if (out == nullptr)
            return 0;
        uint32_t count = length(text);
        uint32_t lead = leading_blanks(text, count);
        return assign(out, text + lead, count - lead);
    }

    // Intended: the leading blanks are counted apart and given back, so a text of blanks only is
    // returned whole, unlike the other two trims.
    static mox_bool trim_right(Char** out, const Char* text) {
        if (out == nullptr)
            return 0;
        uint32_t count = length(text);
        uint32_t lead = leading_blanks(text, count);
        return assign(out, text, end_of_content(text, lead, count));
    }

    static Char fold(Char c) { return (c >= 'A' && c <= 'Z') ? static_cast<Char>(c + 32) : c; }

    static mox_bool compare(const Char* a, const Char* b, bool ignore_case) {
        if (a == nullptr || b == nullptr)
            return 0;
        for (uint32_t i = 0;; ++i) {
            Char x = ignore_case ? fold(a[i]) : a[i];
            Char y = ignore_case ? fold(b[i]) : b[i];
            if (x != y)
                return 0;
            if (x == 0)
                return 1;
        }
    }

    // Whether `pattern` stands at `text[at]`; the text may end inside it, and then its terminator
    // differs from the pattern's unit.
    static bool matches_at(const Char* text, uint32_t at, const Char* pattern) {
        for (uint32_t i = 0; pattern[i] != 0; ++i)
            if (text[at + i] != pattern[i])
                return false;
        return true;
    }

    enum class Search { first, last, count };

    // The walk every search entry shares. The out value is zeroed before anything else; an empty
    // text or pattern never matches.
    static mox_bool search(const Char* text, const Char* pattern, uint32_t* result, Search kind) {
        if (text == nullptr || pattern == nullptr || result == nullptr)
            return 0;
        *result = 0;
        uint32_t count = length(text);
        if (count == 0 || pattern[0] == 0)
            return 0;
        if (kind == Search::first) {
            for (uint32_t at = 0; at < count; ++at)
                if (text[at] == pattern[0] && matches_at(text, at, pattern)) {
                    *result = at;
                    return 1;
                }
            return 0;
        }
        if (kind == Search::last) {
            // Intended: the backward walk stops before position 0, so a match there is never told.
            for (uint32_t at = count - 1; at > 0; --at)
                if (text[at] == pattern[0] && matches_at(text, at, pattern)) {
                    *result = at;
                    return 1;
                }
            return 0;
        }
        uint32_t found = 0;
        for (uint32_t at = 0; at < count; ++at)
            if (text[at] == pattern[0] && matches_at(text, at, pattern))
                ++found;
        *result = found;
        return found != 0;
    }

    static mox_bool search_char(const Char* text, Char c, uint32_t* result, Search kind) {
        const Char pattern[2] = {c, 0};
        return search(text, pattern, result, kind);
    }

    static mox_bool array_construct(Array* self, void* owner) {
        if (!mox_object_construct(self, owner, Traits<Char>::array_class_id))
            return 0;
        self->length = 0;
        self->items = nullptr;
        return 1;
    }

    static mox_bool array_destruct(Array* self) {
        if (self == nullptr)
            return 0;
        for (uint32_t i = 0; i < self->length; ++i)
            mox_memory_free(reinterpret_cast<void**>(&self->items[i]));
        self->length = 0;
        mox_memory_free(reinterpret_cast<void**>(&self->items));
        return mox_object_destruct(self);
    }

    static mox_bool array_new(Array** out, void* owner) {
        return new_instance<Array, array_construct, NullArguments::silent>(out, owner);
    }

    static mox_bool array_free(Array** slot) {
        if (slot == nullptr)
            return 0;
        if (*slot != nullptr)
            array_destruct(*slot);
        return mox_memory_free(reinterpret_cast<void**>(slot));
    }

    // Intended: a length of 0 is refused. A failed resize loses the items and leaves length 0.
    static mox_bool array_set_length(Array* self, uint32_t count) {
        if (self == nullptr || count == 0)
            return 0;
        for (uint32_t i = count; i < self->length; ++i)
            mox_memory_free(reinterpret_cast<void**>(&self->items[i]));
        if (!mox_memory_resize(reinterpret_cast<void**>(&self->items), count * sizeof(Char*)) ||
            self->items == nullptr) {
            self->length = 0;
            return 0;
        }
        self->length = count;
        return 1;
    }
};

} // namespace mox::strings
