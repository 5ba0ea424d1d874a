// What the library says about itself: version, author, code pages, the facilities of this build.
#include <mox/core.h>
#include <mox/strings.h>

#include "core/stub.h"
#include "platform/os.h"

namespace {

constexpr const char* kAuthorName = "The mox developers";

} // namespace

extern "C" {

MOX_API void mox_version(uint32_t* out) {
    if (out != nullptr)
        *out = 0x00010000;
}

// The fields of the mox_version value, from the top byte down.
MOX_API void mox_version_ext(uint8_t* a, uint8_t* b, uint16_t* c) {
    if (a != nullptr)
        *a = 0;
    if (b != nullptr)
        *b = 1;
    if (c != nullptr)
        *c = 0;
}

MOX_API mox_bool mox_author(mox_astring* out) { return mox_astring_duplicate(out, kAuthorName); }

MOX_API uint32_t mox_get_code_page(int32_t which) {
    switch (which) {
    case 0:
        return mox::os::GetACP();
    case 1:
        return mox::os::GetOEMCP();
    default:
        return 0;
    }
}

// The code page cannot be set.
MOX_API void mox_set_code_page(void) {}

MOX_API mox_bool mox_support_ansistring(void) { return mox::stub::plain_success(); }
MOX_API mox_bool mox_support_devil(void) { return mox::stub::plain_success(); }
// Intended: the wide string family is there and works, and still this answers false.
MOX_API mox_bool mox_support_widestring(void) { return mox::stub::plain_failure(); }
MOX_API mox_bool mox_support_directx3d9(void) { return mox::stub::plain_failure(); }
MOX_API mox_bool mox_support_freetype(void) { return mox::stub::plain_failure(); }
MOX_API mox_bool mox_support_mysql(void) { return mox::stub::plain_failure(); }
MOX_API mox_bool mox_support_opengl(void) { return mox::stub::plain_failure(); }
MOX_API mox_bool mox_support_socket(void) { return mox::stub::plain_failure(); }
MOX_API mox_bool mox_support_sqlite3(void) { return mox::stub::plain_failure(); }

} // extern "C"
