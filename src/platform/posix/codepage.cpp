// Code pages on Linux: text is UTF-8 both for programs and for the console, so the ANSI and OEM pages
// are UTF-8, converted here by hand; every other page number goes through iconv.
#include "platform/os.h"

#include <cerrno>
#include <cstring>
#include <iconv.h>

namespace mox::os {

uint32_t GetACP() { return CP_UTF8; }
uint32_t GetOEMCP() { return CP_UTF8; }

namespace {

constexpr uint16_t kReplacementUnit = 0xFFFD;

#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
constexpr const char* kUnitEncoding = "UTF-16LE";
#else
constexpr const char* kUnitEncoding = "UTF-16BE";
#endif

uint32_t resolve_page(uint32_t page) {
    if (page == CP_ACP)
        return GetACP();
    if (page == CP_OEMCP)
        return GetOEMCP();
    return page;
}

// iconv's name for a page number: a few pages have names of their own, the rest are "CP" and the
// number, which is how glibc knows the Windows and DOS pages.
void page_name(uint32_t page, char (&name)[16]) {
    struct Named {
        uint32_t page;
        const char* name;
    };
    static constexpr Named kNamed[] = {
        {20127, "ASCII"},       {20866, "KOI8-R"},      {21866, "KOI8-U"},     {28591, "ISO-8859-1"},
        {28592, "ISO-8859-2"},  {28593, "ISO-8859-3"},  {28594, "ISO-8859-4"}, {28595, "ISO-8859-5"},
        {28596, "ISO-8859-6"},  {28597, "ISO-8859-7"},  {28598, "ISO-8859-8"}, {28599, "ISO-8859-9"},
        {28603, "ISO-8859-13"}, {28605, "ISO-8859-15"}, {51932, "EUC-JP"},     {51949, "EUC-KR"},
        {54936, "GB18030"},     {936, "GBK"},           {950, "BIG5"},         {65000, "UTF-7"},
    };
    for (const Named& named : kNamed)
        if (named.page == page) {
            std::strcpy(name, named.name);
            return;
        }
    char digits[10];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + page % 10);
        page /= 10;
    } while (page != 0);
    name[0] = 'C';
    name[1] = 'P';
    int at = 2;
    while (count > 0)
        name[at++] = digits[--count];
    name[at] = 0;
}

// Where converted units go: counted only while `target` is null, otherwise written.
template <class Unit> struct Output {
    Unit* target;
    int64_t count = 0;
    void put(Unit unit) {
        if (target != nullptr)
            target[count] = unit;
        ++count;
    }
};

// One code point from UTF-8, or U+FFFD for a byte that starts no valid sequence; that byte alone is
// then passed over, as the Windows conversion does since Vista.
uint32_t decode_utf8(const unsigned char* bytes, size_t left, size_t* taken) {
    unsigned char lead = bytes[0];
    *taken = 1;
    if (lead < 0x80)
        return lead;
    size_t length;
    uint32_t point;
    uint32_t lowest;
    if ((lead & 0xE0) == 0xC0) {
        length = 2, point = lead & 0x1F, lowest = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, point = lead & 0x0F, lowest = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, point = lead & 0x07, lowest = 0x10000;
    } else {
        return kReplacementUnit;
    }
    if (left < length)
        return kReplacementUnit;
    for (size_t i = 1; i < length; ++i) {
        if ((bytes[i] & 0xC0) != 0x80)
            return kReplacementUnit;
        point = (point << 6) | (bytes[i] & 0x3F);
    }
    if (point < lowest || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF))
        return kReplacementUnit;
    *taken = length;
    return point;
}

void utf8_to_units(const char* source, size_t length, Output<uint16_t>& out) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(source);
    size_t at = 0;
    while (at < length) {
        size_t taken = 0;
        uint32_t point = decode_utf8(bytes + at, length - at, &taken);
        at += taken;
        if (point >= 0x10000) {
            point -= 0x10000;
            out.put(static_cast<uint16_t>(0xD800 + (point >> 10)));
            out.put(static_cast<uint16_t>(0xDC00 + (point & 0x3FF)));
        } else {
            out.put(static_cast<uint16_t>(point));
        }
    }
}

// A lone surrogate has no UTF-8 form and becomes U+FFFD.
void units_to_utf8(const uint16_t* source, size_t length, Output<char>& out, bool* used_default) {
    size_t at = 0;
    while (at < length) {
        uint32_t point = source[at++];
        if (point >= 0xD800 && point <= 0xDBFF && at < length && source[at] >= 0xDC00 && source[at] <= 0xDFFF)
            point = 0x10000 + ((point - 0xD800) << 10) + (source[at++] - 0xDC00);
        else if (point >= 0xD800 && point <= 0xDFFF) {
            point = kReplacementUnit;
            if (used_default != nullptr)
                *used_default = true;
        }
        if (point < 0x80) {
            out.put(static_cast<char>(point));
        } else if (point < 0x800) {
            out.put(static_cast<char>(0xC0 | (point >> 6)));
            out.put(static_cast<char>(0x80 | (point & 0x3F)));
        } else if (point < 0x10000) {
            out.put(static_cast<char>(0xE0 | (point >> 12)));
            out.put(static_cast<char>(0x80 | ((point >> 6) & 0x3F)));
            out.put(static_cast<char>(0x80 | (point & 0x3F)));
        } else {
            out.put(static_cast<char>(0xF0 | (point >> 18)));
            out.put(static_cast<char>(0x80 | ((point >> 12) & 0x3F)));
            out.put(static_cast<char>(0x80 | ((point >> 6) & 0x3F)));
            out.put(static_cast<char>(0x80 | (point & 0x3F)));
        }
    }
}

// How many bytes of wide input one unconvertible character spans: a surrogate pair is one.
size_t wide_skip(const char* in, size_t left) {
    if (left < 4)
        return left < 2 ? left : 2;
    uint16_t first, second;
    std::memcpy(&first, in, 2);
    std::memcpy(&second, in + 2, 2);
    return (first >= 0xD800 && first <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF) ? 4 : 2;
}

// Converts through iconv into `target` (`room` bytes), or only counts the bytes while `target` is
// null. Input it cannot convert becomes `replacement` and is passed over by one character. The byte
// count, or -1 when iconv doesn't know the pair or the target is too small.
int64_t convert_through_iconv(const char* to, const char* from, const char* source, size_t source_bytes,
                              char* target, size_t room, const char* replacement, size_t replacement_bytes,
                              bool wide_input, bool* used_default) {
    iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1))
        return -1;
    char scratch[256];
    bool counting = target == nullptr;
    char* out = counting ? scratch : target;
    size_t out_left = counting ? sizeof scratch : room;
    int64_t total = 0;
    auto* in = const_cast<char*>(source);
    size_t in_left = source_bytes;
    bool failed = false;
    // Frees the scratch buffer when counting; false when a real target is full.
    auto make_room = [&](size_t needed) {
        if (out_left >= needed)
            return true;
        if (!counting)
            return false;
        total += out - scratch;
        out = scratch;
        out_left = sizeof scratch;
        return true;
    };
    for (;;) {
        size_t result = iconv(converter, &in, &in_left, &out, &out_left);
        if (result != static_cast<size_t>(-1)) {
            if (iconv(converter, nullptr, nullptr, &out, &out_left) == static_cast<size_t>(-1) &&
                errno == E2BIG) {
                if (!make_room(sizeof scratch)) {
                    failed = true;
                    break;
                }
                continue;
            }
            break;
        }
        if (errno == E2BIG) {
            if (!counting || out_left == sizeof scratch) {
                failed = true;
                break;
            }
            make_room(sizeof scratch);
            continue;
        }
        // An invalid or incomplete character.
        if (!make_room(replacement_bytes)) {
            failed = true;
            break;
        }
        std::memcpy(out, replacement, replacement_bytes);
        out += replacement_bytes;
        out_left -= replacement_bytes;
        size_t skip = wide_input ? wide_skip(in, in_left) : 1;
        in += skip;
        in_left -= skip;
        if (used_default != nullptr)
            *used_default = true;
    }
    total += out - (counting ? scratch : target);
    iconv_close(converter);
    return failed ? -1 : total;
}

bool valid_call(const void* source, int32_t source_length, const void* target, int32_t target_size) {
    return source != nullptr && source_length != 0 && source_length >= -1 && target_size >= 0 &&
           (target_size == 0 || target != nullptr);
}

} // namespace

int32_t MultiByteToWideChar(uint32_t code_page, uint32_t /*flags*/, const char* source, int32_t source_length,
                            uint16_t* target, int32_t target_size) {
    if (!valid_call(source, source_length, target, target_size))
        return 0;
    size_t length = source_length == -1 ? std::strlen(source) + 1 : static_cast<size_t>(source_length);
    uint32_t page = resolve_page(code_page);
    int64_t needed;
    if (page == CP_UTF8) {
        Output<uint16_t> counter{nullptr};
        utf8_to_units(source, length, counter);
        needed = counter.count;
    } else {
        char name[16];
        page_name(page, name);
        static constexpr uint16_t kReplacement[] = {kReplacementUnit};
        needed = convert_through_iconv(kUnitEncoding, name, source, length, nullptr, 0,
                                       reinterpret_cast<const char*>(kReplacement), 2, false, nullptr);
        if (needed < 0)
            return 0;
        needed /= 2;
    }
    if (needed > INT32_MAX)
        return 0;
    if (target_size == 0)
        return static_cast<int32_t>(needed);
    if (needed > target_size)
        return 0;
    if (page == CP_UTF8) {
        Output<uint16_t> writer{target};
        utf8_to_units(source, length, writer);
    } else {
        char name[16];
        page_name(page, name);
        static constexpr uint16_t kReplacement[] = {kReplacementUnit};
        convert_through_iconv(kUnitEncoding, name, source, length, reinterpret_cast<char*>(target),
                              static_cast<size_t>(target_size) * 2,
                              reinterpret_cast<const char*>(kReplacement), 2, false, nullptr);
    }
    return static_cast<int32_t>(needed);
}

int32_t WideCharToMultiByte(uint32_t code_page, uint32_t /*flags*/, const uint16_t* source,
                            int32_t source_length, char* target, int32_t target_size,
                            const char* default_char, bool* used_default) {
    if (!valid_call(source, source_length, target, target_size))
        return 0;
    size_t length = static_cast<size_t>(source_length);
    if (source_length == -1) {
        length = 1;
        while (source[length - 1] != 0)
            ++length;
    }
    if (used_default != nullptr)
        *used_default = false;
    uint32_t page = resolve_page(code_page);
    char name[16];
    page_name(page, name);
    const char replacement = default_char != nullptr ? default_char[0] : '?';
    auto run = [&](char* into, size_t room) -> int64_t {
        if (page == CP_UTF8) {
            Output<char> out{into};
            units_to_utf8(source, length, out, used_default);
            return out.count;
        }
        return convert_through_iconv(name, kUnitEncoding, reinterpret_cast<const char*>(source), length * 2,
                                     into, room, &replacement, 1, true, used_default);
    };
    int64_t needed = run(nullptr, 0);
    if (needed < 0 || needed > INT32_MAX)
        return 0;
    if (target_size == 0)
        return static_cast<int32_t>(needed);
    if (needed > target_size)
        return 0;
    run(target, static_cast<size_t>(target_size));
    return static_cast<int32_t>(needed);
}

} // namespace mox::os
