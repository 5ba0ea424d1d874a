// Recoding between narrow text in a code page and wide text, through the system's conversions and
// their two-step sizing call: first the needed length, then the conversion into a block of that size.
#include <mox/strings.h>

#include "platform/os.h"
#include "strings/string_core.h"

namespace {

using Narrow = mox::strings::Core<char>;
using Wide = mox::strings::Core<uint16_t>;

} // namespace

extern "C" {

// Intended: an empty text, or one in a page the system doesn't know, sizes to 0 and converts to 0
// units, and so gives an empty string and true.
MOX_API mox_bool mox_astring_to_wstring(mox_wstring* out, const char* text, uint32_t code_page) {
    if (out == nullptr || text == nullptr)
        return 0;
    auto length = static_cast<int32_t>(Narrow::length(text));
    int32_t needed = mox::os::MultiByteToWideChar(code_page, 0, text, length, nullptr, 0);
    if (!mox_wstring_set_length(out, static_cast<uint32_t>(needed)))
        return 0;
    return mox::os::MultiByteToWideChar(code_page, 0, text, length, *out, needed) == needed;
}

MOX_API mox_bool mox_wstring_to_astring(mox_astring* out, const uint16_t* text, uint32_t code_page) {
    if (out == nullptr || text == nullptr)
        return 0;
    auto length = static_cast<int32_t>(Wide::length(text));
    int32_t needed = mox::os::WideCharToMultiByte(code_page, 0, text, length, nullptr, 0, nullptr, nullptr);
    if (!mox_astring_set_length(out, static_cast<uint32_t>(needed)))
        return 0;
    return mox::os::WideCharToMultiByte(code_page, 0, text, length, *out, needed, nullptr, nullptr) == needed;
}

MOX_API mox_bool mox_astring_convert(mox_astring* slot, uint32_t to_page, uint32_t from_page) {
    if (slot == nullptr)
        return 0;
    mox_wstring wide = nullptr;
    mox_bool ok =
        mox_astring_to_wstring(&wide, *slot, from_page) && mox_wstring_to_astring(slot, wide, to_page);
    mox_memory_free(reinterpret_cast<void**>(&wide));
    return ok;
}

// Our decision: a null buffer, or one larger than the system conversions can count, is false. The
// bytes behind what the conversion writes stay as they were.
MOX_API mox_bool mox_astring_buffer_convert(char* buffer, uint32_t size, uint32_t to_page,
                                            uint32_t from_page) {
    if (buffer == nullptr || size > INT32_MAX)
        return 0;
    auto length = static_cast<int32_t>(size);
    int32_t units = mox::os::MultiByteToWideChar(from_page, 0, buffer, length, nullptr, 0);
    mox_wstring wide = nullptr;
    if (!mox_wstring_set_length(&wide, static_cast<uint32_t>(units)))
        return 0;
    mox::os::MultiByteToWideChar(from_page, 0, buffer, length, wide, units);
    int32_t written = mox::os::WideCharToMultiByte(to_page, 0, wide, units, buffer, length, nullptr, nullptr);
    mox_memory_free(reinterpret_cast<void**>(&wide));
    return written == units;
}

} // extern "C"
