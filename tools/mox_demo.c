/* Goes through what the library offers so far and says what it did. */
#include <mox/mox.h>

#include <stdio.h>
#include <string.h>

static mox_bool print_hint(mox_error* self, uintptr_t word) {
    (void)self;
    printf("  hint heard: \"%s\"\n", (const char*)word);
    return 1;
}

static mox_bool print_warning(mox_error* self, uintptr_t word) {
    (void)self;
    printf("  warning heard: \"%s\"\n", (const char*)word);
    return 1;
}

static const char* yes_no(mox_bool value) { return value ? "yes" : "no"; }

int main(void) {
    uint32_t version = 0;
    uint8_t major = 0, minor = 0;
    uint16_t patch = 0;
    mox_astring author = NULL;
    mox_object* object = NULL;
    mox_object header;
    uint8_t* block = NULL;
    char pattern[16];
    uint32_t i;

    printf("mox demonstration\n\n");

    mox_version(&version);
    mox_version_ext(&major, &minor, &patch);
    mox_author(&author);
    printf("library: version 0x%08x (%u.%u.%u), by %s\n", version, major, minor, patch, author);
    mox_memory_free((void**)&author);
    printf("code pages: ANSI %u, OEM %u\n", mox_get_code_page(0), mox_get_code_page(1));
    printf("this build has: narrow strings %s, image files %s, wide-string flag %s, OpenGL %s, sockets %s, "
           "SQLite %s\n",
           yes_no(mox_support_ansistring()), yes_no(mox_support_devil()), yes_no(mox_support_widestring()),
           yes_no(mox_support_opengl()), yes_no(mox_support_socket()), yes_no(mox_support_sqlite3()));

    printf("\nobjects:\n");
    mox_object_new((void**)&object, NULL, 0xC0FFEE00u);
    printf("  new object with class id 0x%08x, flags %u\n", object->class_id, object->flags);
    mox_object_free((void**)&object);
    printf("  freed; the slot is %s\n", object == NULL ? "null" : "still set");
    mox_object_construct(&header, NULL, 1);
    mox_object_unlock(&header);
    printf("  unlocking an unlocked object leaves flags at %u\n", header.flags);

    printf("\nerrors: hooks on the global entry\n");
    mox_global_error_set_on_hint(print_hint);
    mox_global_error_set_on_warning(print_warning);
    printf("  mox_memory_new with no slot gives %u\n", mox_memory_new(NULL, 8));
    printf("  mox_opengl_startup gives %u\n", mox_opengl_startup(NULL));
    mox_global_error_set_on_hint(NULL);
    mox_global_error_set_on_warning(NULL);

    printf("\nmemory:\n");
    mox_memory_new((void**)&block, 4);
    memset(block, 0xAB, 4);
    mox_memory_resize((void**)&block, 8);
    printf("  a 4-byte block grown to 8:");
    for (i = 0; i < 8; ++i)
        printf(" %02x", block[i]);
    printf("\n");
    mox_memory_free((void**)&block);
    memset(pattern, 0, sizeof pattern);
    mox_memory_copy_ext(pattern, "mox-", 4, 3);
    printf("  \"mox-\" repeated three times: %s\n", pattern);
    printf("  mox_memory_copy answers %u even when it copies\n", mox_memory_copy(pattern, "MOX", 3));
    printf("  now: %s\n", pattern);

    printf("\nswaps:\n");
    printf("  mox_swap_bit4(0x12)  = 0x%x\n", mox_swap_bit4(0x12));
    printf("  mox_swap_bit8(0x1234) = 0x%x\n", mox_swap_bit8(0x1234));
    printf("  mox_swap_bit16(0x11223344) = 0x%08x\n", mox_swap_bit16(0x11223344u));
    printf("  mox_swap_bit32(0x1122334455667788) = 0x%016llx\n",
           (unsigned long long)mox_swap_bit32(0x1122334455667788ull));
    return 0;
}
