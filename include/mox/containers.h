/* Containers: list, tree, array, stack, FIFO, variant, dataset. */
#ifndef MOX_CONTAINERS_H
#define MOX_CONTAINERS_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- List -------------------------------------------------------------------------------------- */

/* ---- Tree -------------------------------------------------------------------------------------- */

/* ---- Array, stack and FIFO --------------------------------------------------------------------- */

#define MOX_ARRAY_CLASS_ID 0x502685E8u
#define MOX_STACK_CLASS_ID 0xB0821035u
#define MOX_FIFO_CLASS_ID 0x682C2A55u

typedef struct mox_array mox_array;
typedef struct mox_stack mox_stack;
typedef struct mox_fifo mox_fifo;

/* Hooks called when a buffer has run out, so that the user can grow it. The result isn't looked at. */
typedef mox_bool (*mox_array_hook)(mox_array* self);
typedef mox_bool (*mox_stack_hook)(mox_stack* self);
typedef mox_bool (*mox_fifo_hook)(mox_fifo* self);

/* A byte buffer written and read forward from one position. */
struct mox_array {
    mox_object header;
    uint32_t size;
    uint32_t position;
    uint8_t* data;
    mox_array_hook on_full;
};

/* A byte buffer pushed and popped in blocks. */
struct mox_stack {
    mox_object header;
    uint32_t size;
    uint32_t position;
    uint8_t* data;
    mox_stack_hook on_limit;
};

/* A ring of bytes that overwrites its oldest ones. */
struct mox_fifo {
    mox_object header;
    uint32_t size;
    uint32_t count;
    uint32_t read_position;
    uint32_t write_position;
    uint32_t limit;
    uint8_t* data;
    mox_fifo_hook on_overflow;
};

MOX_API mox_bool mox_array_construct(mox_array* self, void* owner);
MOX_API mox_bool mox_array_destruct(mox_array* self);
MOX_API mox_bool mox_array_new(mox_array** out, void* owner);
MOX_API mox_bool mox_array_free(mox_array** slot);
MOX_API mox_bool mox_array_resize(mox_array* self, uint32_t size);
MOX_API mox_bool mox_array_write(mox_array* self, const void* data, uint32_t size);
MOX_API mox_bool mox_array_read(mox_array* self, void* data, uint32_t size);
MOX_API mox_bool mox_array_save_to_file(mox_array* self, mox_file* file);
MOX_API mox_bool mox_array_load_from_file(mox_array* self, mox_file* file);

MOX_API mox_bool mox_stack_construct(mox_stack* self, void* owner);
MOX_API mox_bool mox_stack_destruct(mox_stack* self);
MOX_API mox_bool mox_stack_new(mox_stack** out, void* owner);
MOX_API mox_bool mox_stack_free(mox_stack** slot);
MOX_API mox_bool mox_stack_resize(mox_stack* self, uint32_t size);
MOX_API mox_bool mox_stack_push(mox_stack* self, const void* data, uint32_t size);
MOX_API mox_bool mox_stack_pop(mox_stack* self, void* data, uint32_t size);
MOX_API mox_bool mox_stack_save_to_file(mox_stack* self, mox_file* file);
MOX_API mox_bool mox_stack_load_from_file(mox_stack* self, mox_file* file);

MOX_API mox_bool mox_fifo_construct(mox_fifo* self, void* owner);
MOX_API mox_bool mox_fifo_destruct(mox_fifo* self);
MOX_API mox_bool mox_fifo_new(mox_fifo** out, void* owner);
MOX_API mox_bool mox_fifo_free(mox_fifo** slot);
MOX_API mox_bool mox_fifo_resize(mox_fifo* self, uint32_t size);
MOX_API mox_bool mox_fifo_write(mox_fifo* self, const void* data, uint32_t size);
MOX_API mox_bool mox_fifo_read(mox_fifo* self, void* data, uint32_t size);
MOX_API mox_bool mox_fifo_copy(mox_fifo* self, void* data, uint32_t size);
MOX_API mox_bool mox_fifo_save_to_file(mox_fifo* self, mox_file* file);
MOX_API mox_bool mox_fifo_load_from_file(mox_fifo* self, mox_file* file);

MOX_END_DECLS

#endif
