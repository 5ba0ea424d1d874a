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
    mox_astring text = NULL;
    mox_astring number = NULL;
    mox_file file;
    uint32_t size = 0;
    char back[32];
    uint8_t digest[16];
    mox_crc crc;
    mox_vector3_r32 x_axis = {1.0f, 0.0f, 0.0f}, y_axis = {0.0f, 1.0f, 0.0f}, z_axis;
    mox_time day;

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

    printf("\nstrings:\n");
    mox_astring_from_i32(&number, 2024, 10, 0);
    mox_astring_concate_2(&text, "year ", number);
    printf("  concatenated: \"%s\"\n", text);
    mox_astring_case_upper(&text, "upper case");
    printf("  upper case: \"%s\"\n", text);
    mox_astring_from_i32(&number, -123, 10, 6);
    printf("  -123 in six places: \"%s\" (the sign takes the last place)\n", number);

    printf("\nfiles:\n");
    mox_file_construct(&file, NULL);
    if (mox_file_create(&file, "mox-demo.bin", MOX_FILE_READ | MOX_FILE_WRITE, 0)) {
        printf("  wrote %u bytes\n", mox_file_write(&file, "hello, file", 11));
        mox_file_get_size_u32(&file, &size);
        mox_file_set_pointer_u32(&file, 0);
        memset(back, 0, sizeof back);
        printf("  size %u, read back %u bytes: \"%s\"\n", size, mox_file_read(&file, back, 11), back);
        mox_file_close(&file);
        mox_delete_file("mox-demo.bin");
    } else {
        printf("  could not create mox-demo.bin in the current folder\n");
    }
    mox_file_destruct(&file);

    printf("\nchecksums:\n");
    mox_md5_call("abc", 3, digest);
    printf("  MD5 of \"abc\": ");
    for (i = 0; i < 16; ++i)
        printf("%02x", digest[i]);
    printf("\n");
    mox_crc_construct(&crc, NULL);
    mox_crc_preset(&crc, 300);
    mox_crc_make(&crc);
    printf("  CRC preset 300 of \"123456789\": 0x%08x\n",
           (uint32_t)mox_crc_calc(&crc, (const uint8_t*)"123456789", 9));
    mox_crc_destruct(&crc);

    printf("\nmathematics:\n");
    mox_vector3_r32_cross(&z_axis, x_axis, y_axis);
    printf("  x cross y = (%g, %g, %g)\n", z_axis.x, z_axis.y, z_axis.z);

    printf("\ntime:\n");
    day = mox_time_code(2000, 1, 1, 0, 0, 0, 0);
    mox_time_to_string(day, &text, "$y-$m-$d");
    printf("  1 January 2000 is day %g, written %s\n", day, text);
    printf("  its noon is Julian Date %.1f\n", mox_jtime_code(2000, 1, 1, 12, 0, 0));

    mox_memory_free((void**)&text);
    mox_memory_free((void**)&number);
    return 0;
}
