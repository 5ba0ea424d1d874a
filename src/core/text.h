// The one string operation the core frame needs before the string family: a copy of a terminated
// text into a string slot, with the rules of the string family (the block is resized to the exact
// length plus one; a slot that already holds the very text is left alone).
#pragma once

#include <mox/core.h>

#include <cstring>

namespace mox {

inline mox_bool duplicate_text(mox_astring* out, const char* text) {
    if (out == nullptr)
        return 0;
    if (*out == text)
        return 1;
    uint32_t length = text != nullptr ? static_cast<uint32_t>(std::strlen(text)) : 0;
    if (!mox_memory_resize(reinterpret_cast<void**>(out), length + 1) || *out == nullptr)
        return 0;
    (*out)[length] = '\0';
    if (length != 0)
        std::memcpy(*out, text, length);
    return 1;
}

} // namespace mox
