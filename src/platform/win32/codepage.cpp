// Code pages are the system's own: the ANSI and OEM pages are those of the user's settings.
#include "platform/win32/system.h"

namespace mox::os {

uint32_t GetACP() { return ::GetACP(); }
uint32_t GetOEMCP() { return ::GetOEMCP(); }

// 16-bit units are the system's wide characters.
static_assert(sizeof(wchar_t) == sizeof(uint16_t));

int32_t MultiByteToWideChar(uint32_t code_page, uint32_t flags, const char* source, int32_t source_length,
                            uint16_t* target, int32_t target_size) {
    return ::MultiByteToWideChar(code_page, flags, source, source_length, reinterpret_cast<wchar_t*>(target),
                                 target_size);
}

int32_t WideCharToMultiByte(uint32_t code_page, uint32_t flags, const uint16_t* source, int32_t source_length,
                            char* target, int32_t target_size, const char* default_char, bool* used_default) {
    if (used_default != nullptr)
        *used_default = false;
    // The system takes neither a default character nor the question for UTF-8, where a unit without
    // a character becomes U+FFFD.
    const uint32_t page = code_page == CP_ACP ? ::GetACP() : code_page == CP_OEMCP ? ::GetOEMCP() : code_page;
    if (page == CP_UTF8)
        return ::WideCharToMultiByte(code_page, flags, reinterpret_cast<const wchar_t*>(source),
                                     source_length, target, target_size, nullptr, nullptr);
    BOOL defaulted = FALSE;
    const int32_t result = ::WideCharToMultiByte(code_page, flags, reinterpret_cast<const wchar_t*>(source),
                                                 source_length, target, target_size, default_char,
                                                 used_default != nullptr ? &defaulted : nullptr);
    if (used_default != nullptr)
        *used_default = defaulted != FALSE;
    return result;
}

} // namespace mox::os
