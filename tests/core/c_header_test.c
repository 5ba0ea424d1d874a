/* The public headers compile as C99, and a C program can use the library through them. */
#include <mox/mox.h>

#include <stdio.h>
#include <string.h>

static int g_failures = 0;
static int g_hints = 0;

#define CHECK(condition)                                                                                     \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #condition);                          \
            ++g_failures;                                                                                    \
        }                                                                                                    \
    } while (0)

static mox_bool count_hint(mox_error* self, uintptr_t word) {
    (void)self;
    if (strcmp((const char*)word, "core.params") == 0)
        ++g_hints;
    return 1;
}

int main(void) {
    uint32_t version = 0;
    mox_object* object = NULL;
    mox_astring author = NULL;
    char target[8];

    mox_version(&version);
    CHECK(version == 0x00010000u);

    CHECK(mox_object_new((void**)&object, NULL, 0x1234u) == 1);
    CHECK(object != NULL && object->class_id == 0x1234u && object->flags == 0);
    CHECK(mox_object_free((void**)&object) == 1 && object == NULL);

    CHECK(mox_author(&author) == 1 && author != NULL && author[0] != '\0');
    CHECK(mox_memory_free((void**)&author) == 1);

    CHECK(mox_global_error_set_on_hint(count_hint) == 1);
    CHECK(mox_memory_new(NULL, 1) == 0);
    CHECK(g_hints == 1);
    CHECK(mox_global_error_set_on_hint(NULL) == 1);

    memset(target, 0, sizeof target);
    CHECK(mox_memory_copy_ext(target, "xy", 2, 3) == 1);
    CHECK(memcmp(target, "xyxyxy", 7) == 0);
    CHECK(mox_swap_bit4(0x12) == 0x121u);
    CHECK(mox_opengl_render_begin(NULL) == 0);
    CHECK(mox_support_widestring() == 0);

    if (g_failures == 0)
        printf("C interface: all checks passed\n");
    return g_failures == 0 ? 0 : 1;
}
