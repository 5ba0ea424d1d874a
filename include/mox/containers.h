/* Containers: list, tree, array, stack, FIFO, variant, dataset. */
#ifndef MOX_CONTAINERS_H
#define MOX_CONTAINERS_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- List -------------------------------------------------------------------------------------- */

#define MOX_LIST_CLASS_ID 0xBA41E5C9u
#define MOX_LIST_NOTE_CLASS_ID 0xF84E106Au

/* Called with the address of a note's `data` word when the note ends; for a held child this is the
   child's own `free` entry, which takes that address as its slot. Its result is ignored. */
typedef mox_bool (*mox_list_destroy)(void* data_slot);

typedef struct mox_list_note {
    mox_object header; /* owner: the list that created the note */
    uint32_t key;
    uintptr_t data; /* usually a pointer to the child the note carries */
    struct mox_list_note* prev;
    struct mox_list_note* next;
    mox_list_destroy destroy;
} mox_list_note;

typedef struct mox_list {
    mox_object header;
    uint32_t count;
    mox_list_note* first;
    mox_list_note* last;
} mox_list;

MOX_API mox_bool mox_list_construct(mox_list* self, void* owner);
MOX_API mox_bool mox_list_destruct(mox_list* self);
MOX_API mox_bool mox_list_new(mox_list** out, void* owner);
MOX_API mox_bool mox_list_free(mox_list** slot);

MOX_API mox_bool mox_list_note_construct(mox_list_note* self, void* owner);
/* Runs `destroy` on the data word; does not unlink the note. */
MOX_API mox_bool mox_list_note_destruct(mox_list_note* self);
MOX_API mox_bool mox_list_note_new(mox_list_note** out, void* owner);
MOX_API mox_bool mox_list_note_free(mox_list_note** slot);
/* False unless the note's owner is a list. */
MOX_API mox_bool mox_list_note_get_index(mox_list_note* self, uint32_t* index);

/* Position 1 puts the new note at the head, any other value at the tail. */
MOX_API mox_bool mox_list_create_note(mox_list* self, mox_list_note** out, uint8_t position);
MOX_API mox_bool mox_list_delete_note(mox_list* self, mox_list_note** slot);
MOX_API mox_bool mox_list_delete_note_data(mox_list* self, uintptr_t data);
MOX_API mox_bool mox_list_clear_note(mox_list* self);
/* `*out` must be non-null on entry, or the search is not made and the result is false. */
MOX_API mox_bool mox_list_find_note(mox_list* self, uint32_t key, mox_list_note** out);
MOX_API mox_bool mox_list_find_index(mox_list* self, mox_list_note* note, uint32_t* index);

/* ---- Tree -------------------------------------------------------------------------------------- */

#define MOX_TREE_CLASS_ID 0x49B7430Du
#define MOX_TREE_NOTE_CLASS_ID 0x0203A5B4u

/* The first fields stand as in mox_list_note, so the list's search serves the tree. */
typedef struct mox_tree_note {
    mox_object header; /* owner: the tree or parent note that created it */
    uint32_t key;
    uintptr_t data;
    struct mox_tree_note* prev;
    struct mox_tree_note* next;
    uint32_t count;
    struct mox_tree_note* first;
    struct mox_tree_note* last;
    mox_list_destroy destroy;
} mox_tree_note;

typedef struct mox_tree {
    mox_object header;
    uint32_t count;
    mox_tree_note* first;
    mox_tree_note* last;
} mox_tree;

MOX_API mox_bool mox_tree_construct(mox_tree* self, void* owner);
MOX_API mox_bool mox_tree_destruct(mox_tree* self);
MOX_API mox_bool mox_tree_new(mox_tree** out, void* owner);
MOX_API mox_bool mox_tree_free(mox_tree** slot);

MOX_API mox_bool mox_tree_note_construct(mox_tree_note* self, void* owner);
/* Ends the subtree depth first, then runs `destroy` on the note's own data word. */
MOX_API mox_bool mox_tree_note_destruct(mox_tree_note* self);
MOX_API mox_bool mox_tree_note_new(mox_tree_note** out, void* owner);
MOX_API mox_bool mox_tree_note_free(mox_tree_note** slot);

MOX_API mox_bool mox_tree_create_note(mox_tree* self, mox_tree_note** out, uint8_t position);
MOX_API mox_bool mox_tree_note_create_note(mox_tree_note* self, mox_tree_note** out, uint8_t position);
MOX_API mox_bool mox_tree_delete_note(mox_tree* self, mox_tree_note** slot);
MOX_API mox_bool mox_tree_note_delete_note(mox_tree_note* self, mox_tree_note** slot);
/* Both searches need a non-null `*out` on entry, and look one level deep only. */
MOX_API mox_bool mox_tree_find_note(mox_tree* self, uint32_t key, mox_tree_note** out);
MOX_API mox_bool mox_tree_note_find_note(mox_tree_note* self, uint32_t key, mox_tree_note** out);
MOX_API mox_bool mox_tree_clear_note(mox_tree* self);
MOX_API mox_bool mox_tree_note_clear_note(mox_tree_note* self);

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

/* ---- Variant ----------------------------------------------------------------------------------- */

#define MOX_VAR_CLASS_ID 0x30D6209Eu

/* One value of one of twelve kinds. Tags 1 to 11 are plain byte values of 4, 1, 1, 2, 4, 1, 2, 4, 4,
   8 and 8 bytes; tag 12 is a narrow string, with `value` the string block itself; tag 0 is no value. */
typedef struct mox_var {
    mox_object header;
    uint32_t type;
    void* value; /* heap block sized by the tag, or the string of tag 12 */
} mox_var;

MOX_API mox_bool mox_var_construct(mox_var* self, void* owner);
MOX_API mox_bool mox_var_destruct(mox_var* self);
MOX_API mox_bool mox_var_new(mox_var** out, void* owner);
MOX_API mox_bool mox_var_free(mox_var** slot);
/* False for a tag above 12. */
MOX_API mox_bool mox_var_sizeof(mox_var* self, uint32_t* size);
/* An unknown tag is stored all the same, and the result is false. */
MOX_API mox_bool mox_var_set_type(mox_var* self, uint32_t type);
/* For tag 12 `data` is the text. */
MOX_API mox_bool mox_var_set(mox_var* self, const void* data);
/* For tag 12 `out` is a string slot that receives a copy. */
MOX_API mox_bool mox_var_get(mox_var* self, void* out);
/* Tags 1 to 11 write the `value` word itself, not the bytes it points at, so a load brings back the
   tag and not the value. */
MOX_API mox_bool mox_var_save_to_file(mox_var* self, mox_file* file);
MOX_API mox_bool mox_var_load_from_file(mox_var* self, mox_file* file);

/* ---- Dataset ----------------------------------------------------------------------------------- */

#define MOX_DATASET_COLUMN_CLASS_ID 0x8E4CCDE0u
#define MOX_DATASET_FIELD_CLASS_ID 0xFDCE934Au
#define MOX_DATASET_ROW_CLASS_ID 0x0DE6814Au
#define MOX_DATASET_CLASS_ID 0x50E349B1u

typedef struct mox_dataset_column {
    mox_object header; /* owner: the dataset */
    mox_astring name;
    mox_astring description;
} mox_dataset_column;

typedef struct mox_dataset_field {
    mox_object header; /* owner: the row */
    mox_var value;
    mox_dataset_column* column; /* not owned */
} mox_dataset_field;

typedef struct mox_dataset_row {
    mox_object header; /* owner: the dataset */
    uint32_t count;
    mox_dataset_field* fields; /* `count` records, owned */
} mox_dataset_row;

/* A table of named columns and rows of variant fields, in arrays the dataset owns. A resize moves the
   arrays: every earlier pointer into them is stale afterwards. */
typedef struct mox_dataset {
    mox_object header;
    mox_astring name;
    mox_astring description;
    uint32_t column_count;
    mox_dataset_column* columns;
    uint32_t row_count;
    mox_dataset_row* rows;
} mox_dataset;

MOX_API mox_bool mox_dataset_column_construct(mox_dataset_column* self, void* owner);
MOX_API mox_bool mox_dataset_column_destruct(mox_dataset_column* self);
MOX_API mox_bool mox_dataset_column_new(mox_dataset_column** out, void* owner);
/* The class's `free`, spelled so. */
MOX_API mox_bool mox_dataset_column_dree(mox_dataset_column** slot);

MOX_API mox_bool mox_dataset_field_construct(mox_dataset_field* self, void* owner);
MOX_API mox_bool mox_dataset_field_destruct(mox_dataset_field* self);
MOX_API mox_bool mox_dataset_field_new(mox_dataset_field** out, void* owner);
/* The class's `free`, spelled so. */
MOX_API mox_bool mox_dataset_field_dree(mox_dataset_field** slot);

MOX_API mox_bool mox_dataset_row_construct(mox_dataset_row* self, void* owner);
MOX_API mox_bool mox_dataset_row_destruct(mox_dataset_row* self);
MOX_API mox_bool mox_dataset_row_new(mox_dataset_row** out, void* owner);
MOX_API mox_bool mox_dataset_row_free(mox_dataset_row** slot);
/* False for a count of 0; a failed growth ends the row. */
MOX_API mox_bool mox_dataset_row_resize(mox_dataset_row* self, uint32_t count);

MOX_API mox_bool mox_dataset_construct(mox_dataset* self, void* owner);
MOX_API mox_bool mox_dataset_destruct(mox_dataset* self);
MOX_API mox_bool mox_dataset_new(mox_dataset** out, void* owner);
MOX_API mox_bool mox_dataset_free(mox_dataset** slot);
/* False if either count is 0. Gives every row `column_count` fields pointing at their columns. */
MOX_API mox_bool mox_dataset_resize(mox_dataset* self, uint32_t column_count, uint32_t row_count);
/* Compares names without regard to ASCII case. */
MOX_API mox_bool mox_dataset_find_column(mox_dataset* self, const char* name, uint32_t* index);
/* The three getters need a non-null `*out` on entry, or they answer false and store nothing. */
MOX_API mox_bool mox_dataset_get_column(mox_dataset* self, uint32_t index, mox_dataset_column** out);
MOX_API mox_bool mox_dataset_get_row(mox_dataset* self, uint32_t index, mox_dataset_row** out);
MOX_API mox_bool mox_dataset_get_field(mox_dataset* self, uint32_t column, uint32_t row,
                                       mox_dataset_field** out);
/* Stores the address of the field's value; `*out` may be null on entry. */
MOX_API mox_bool mox_dataset_get_data(mox_dataset* self, uint32_t column, uint32_t row, mox_var** out);
MOX_API mox_bool mox_dataset_save_to_file(mox_dataset* self, mox_file* file);
MOX_API mox_bool mox_dataset_load_from_file(mox_dataset* self, mox_file* file);

MOX_END_DECLS

#endif
