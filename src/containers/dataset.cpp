// The dataset: named columns and rows of variant fields, in contiguous arrays that the dataset owns
// and makes its records in. The whole family is silent.
#include <mox/containers.h>
#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

#include "files/file_words.h"
#include "containers/free_instance.h"
#include "containers/variant.h"
#include "core/instance.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_dataset_column) == 24 && offsetof(mox_dataset_column, name) == 16 &&
              offsetof(mox_dataset_column, description) == 20);
static_assert(sizeof(mox_dataset_field) == 44 && offsetof(mox_dataset_field, value) == 16 &&
              offsetof(mox_dataset_field, column) == 40);
static_assert(sizeof(mox_dataset_row) == 24 && offsetof(mox_dataset_row, count) == 16 &&
              offsetof(mox_dataset_row, fields) == 20);
static_assert(sizeof(mox_dataset) == 40 && offsetof(mox_dataset, name) == 16 &&
              offsetof(mox_dataset, description) == 20 && offsetof(mox_dataset, column_count) == 24 &&
              offsetof(mox_dataset, columns) == 28 && offsetof(mox_dataset, row_count) == 32 &&
              offsetof(mox_dataset, rows) == 36);
#endif

namespace mox {

namespace {

// The fewest bytes a saved column (two empty strings) and a saved field (a bare tag) take in a file.
constexpr uint64_t kLeastColumnBytes = 8;
constexpr uint64_t kLeastFieldBytes = 4;

template <class Record> bool fits_byte_count(uint32_t count) {
    return static_cast<uint64_t>(count) * sizeof(Record) <= UINT32_MAX;
}

// Brings an array of records made in place to `wanted` records: the dropped ones from the end are
// destructed, the new ones constructed with `owner`. The resize's answer isn't looked at, but an
// array that the heap lost leaves no records to construct into, so it ends as empty and false.
template <class Record, mox_bool (*construct)(Record*, void*), mox_bool (*destruct)(Record*)>
bool resize_records(Record** array, uint32_t* count, uint32_t wanted, void* owner) {
    if (*count == wanted)
        return true;
    for (uint32_t i = wanted; i < *count; ++i)
        destruct(&(*array)[i]);
    mox_memory_resize(reinterpret_cast<void**>(array), wanted * static_cast<uint32_t>(sizeof(Record)));
    if (*array == nullptr) {
        *count = 0;
        return false;
    }
    for (uint32_t i = *count; i < wanted; ++i)
        construct(&(*array)[i], owner);
    *count = wanted;
    return true;
}

// A moved array leaves the owner words of its members' members behind; they are set again.
void refresh_field_owners(mox_dataset_row* row) {
    for (uint32_t i = 0; i < row->count; ++i) {
        row->fields[i].header.owner = row;
        row->fields[i].value.header.owner = &row->fields[i];
    }
}

mox_bool row_destruct_body(mox_dataset_row* self) {
    if (self->fields != nullptr) {
        for (uint32_t i = 0; i < self->count; ++i)
            mox_dataset_field_destruct(&self->fields[i]);
        mox_memory_free(reinterpret_cast<void**>(&self->fields));
    }
    self->count = 0;
    return mox_object_destruct(self);
}

mox_dataset_field* field_at(mox_dataset* self, uint32_t column, uint32_t row) {
    if (row >= self->row_count || column >= self->rows[row].count)
        return nullptr;
    return &self->rows[row].fields[column];
}

// Whether the rest of the file can hold the columns and fields that the counts promise; a lying
// count then can't make the load allocate more than the file could fill.
bool file_can_hold(mox_file* file, uint32_t column_count, uint32_t row_count) {
    uint64_t size = 0;
    if (!mox_file_get_size_u64(file, &size) || size < file->position)
        return false;
    uint64_t rest = size - file->position;
    if (column_count > rest / kLeastColumnBytes)
        return false;
    rest -= column_count * kLeastColumnBytes;
    if (column_count == 0)
        return true;
    return row_count <= rest / (kLeastFieldBytes * column_count);
}

} // namespace

} // namespace mox

extern "C" {

// ---- Column --------------------------------------------------------------------------------------

MOX_API mox_bool mox_dataset_column_construct(mox_dataset_column* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_DATASET_COLUMN_CLASS_ID))
        return 0;
    mox_astring_construct(&self->name);
    mox_astring_construct(&self->description);
    return 1;
}

MOX_API mox_bool mox_dataset_column_destruct(mox_dataset_column* self) {
    if (self == nullptr)
        return 0;
    mox_astring_destruct(&self->name);
    mox_astring_destruct(&self->description);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_dataset_column_new(mox_dataset_column** out, void* owner) {
    return mox::new_instance<mox_dataset_column, mox_dataset_column_construct, mox::NullArguments::silent>(
        out, owner);
}

MOX_API mox_bool mox_dataset_column_dree(mox_dataset_column** slot) {
    return mox::free_instance<mox_dataset_column, mox_dataset_column_destruct>(slot);
}

// ---- Field ---------------------------------------------------------------------------------------

MOX_API mox_bool mox_dataset_field_construct(mox_dataset_field* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_DATASET_FIELD_CLASS_ID))
        return 0;
    mox_var_construct(&self->value, self);
    self->column = nullptr;
    return 1;
}

MOX_API mox_bool mox_dataset_field_destruct(mox_dataset_field* self) {
    if (self == nullptr)
        return 0;
    mox_var_destruct(&self->value);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_dataset_field_new(mox_dataset_field** out, void* owner) {
    return mox::new_instance<mox_dataset_field, mox_dataset_field_construct, mox::NullArguments::silent>(
        out, owner);
}

MOX_API mox_bool mox_dataset_field_dree(mox_dataset_field** slot) {
    return mox::free_instance<mox_dataset_field, mox_dataset_field_destruct>(slot);
}

// ---- Row -----------------------------------------------------------------------------------------

MOX_API mox_bool mox_dataset_row_construct(mox_dataset_row* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_DATASET_ROW_CLASS_ID))
        return 0;
    self->count = 0;
    self->fields = nullptr;
    return 1;
}

MOX_API mox_bool mox_dataset_row_destruct(mox_dataset_row* self) {
    if (self == nullptr)
        return 0;
    return mox::row_destruct_body(self);
}

MOX_API mox_bool mox_dataset_row_new(mox_dataset_row** out, void* owner) {
    return mox::new_instance<mox_dataset_row, mox_dataset_row_construct, mox::NullArguments::silent>(out,
                                                                                                     owner);
}

MOX_API mox_bool mox_dataset_row_free(mox_dataset_row** slot) {
    return mox::free_instance<mox_dataset_row, mox_dataset_row_destruct>(slot);
}

MOX_API mox_bool mox_dataset_row_resize(mox_dataset_row* self, uint32_t count) {
    if (self == nullptr || count == 0)
        return 0;
    if (count == self->count)
        return 1;
    // A count whose byte size a 32-bit size can't hold is a failed growth like any other.
    if (!mox::fits_byte_count<mox_dataset_field>(count)) {
        mox::row_destruct_body(self);
        return 0;
    }
    uint32_t old_count = self->count;
    for (uint32_t i = count; i < old_count; ++i)
        mox_dataset_field_destruct(&self->fields[i]);
    mox_memory_resize(reinterpret_cast<void**>(&self->fields),
                      count * static_cast<uint32_t>(sizeof(mox_dataset_field)));
    // A growth that lost the array has taken the old fields with it: nothing is left to end but
    // the row, which ends with its header.
    if (self->fields == nullptr) {
        self->count = 0;
        mox::row_destruct_body(self);
        return 0;
    }
    self->count = count;
    for (uint32_t i = old_count; i < count; ++i)
        mox_dataset_field_construct(&self->fields[i], self);
    mox::refresh_field_owners(self);
    return 1;
}

// ---- Dataset -------------------------------------------------------------------------------------

MOX_API mox_bool mox_dataset_construct(mox_dataset* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_DATASET_CLASS_ID))
        return 0;
    mox_astring_construct(&self->name);
    mox_astring_construct(&self->description);
    self->column_count = 0;
    self->columns = nullptr;
    self->row_count = 0;
    self->rows = nullptr;
    return 1;
}

MOX_API mox_bool mox_dataset_destruct(mox_dataset* self) {
    if (self == nullptr)
        return 0;
    mox_astring_destruct(&self->name);
    mox_astring_destruct(&self->description);
    for (uint32_t i = 0; i < self->column_count; ++i)
        mox_dataset_column_destruct(&self->columns[i]);
    for (uint32_t i = 0; i < self->row_count; ++i)
        mox_dataset_row_destruct(&self->rows[i]);
    if (self->columns != nullptr)
        mox_memory_free(reinterpret_cast<void**>(&self->columns));
    if (self->rows != nullptr)
        mox_memory_free(reinterpret_cast<void**>(&self->rows));
    self->column_count = 0;
    self->row_count = 0;
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_dataset_new(mox_dataset** out, void* owner) {
    return mox::new_instance<mox_dataset, mox_dataset_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_dataset_free(mox_dataset** slot) {
    return mox::free_instance<mox_dataset, mox_dataset_destruct>(slot);
}

MOX_API mox_bool mox_dataset_resize(mox_dataset* self, uint32_t column_count, uint32_t row_count) {
    if (self == nullptr || column_count == 0 || row_count == 0)
        return 0;
    // Counts whose arrays a 32-bit byte size can't hold are refused before anything changes.
    if (!mox::fits_byte_count<mox_dataset_column>(column_count) ||
        !mox::fits_byte_count<mox_dataset_field>(column_count) ||
        !mox::fits_byte_count<mox_dataset_row>(row_count))
        return 0;
    bool ok =
        mox::resize_records<mox_dataset_column, mox_dataset_column_construct, mox_dataset_column_destruct>(
            &self->columns, &self->column_count, column_count, self);
    ok = mox::resize_records<mox_dataset_row, mox_dataset_row_construct, mox_dataset_row_destruct>(
             &self->rows, &self->row_count, row_count, self) &&
         ok;
    if (!ok)
        return 0;
    // This pass runs on every call: it is what points the fields at the columns again after a move.
    for (uint32_t r = 0; r < self->row_count; ++r) {
        mox_dataset_row* row = &self->rows[r];
        if (!mox_dataset_row_resize(row, self->column_count)) {
            ok = false;
            continue;
        }
        mox::refresh_field_owners(row);
        for (uint32_t c = 0; c < row->count; ++c)
            row->fields[c].column = &self->columns[c];
    }
    return ok ? 1 : 0;
}

MOX_API mox_bool mox_dataset_find_column(mox_dataset* self, const char* name, uint32_t* index) {
    if (self == nullptr || index == nullptr)
        return 0;
    for (uint32_t i = 0; i < self->column_count; ++i) {
        if (mox_astring_compare(self->columns[i].name, name)) {
            *index = i;
            return 1;
        }
    }
    return 0;
}

MOX_API mox_bool mox_dataset_get_column(mox_dataset* self, uint32_t index, mox_dataset_column** out) {
    // Intended: a slot that holds null on entry is refused although the index is good.
    if (self == nullptr || out == nullptr || *out == nullptr || index >= self->column_count)
        return 0;
    *out = &self->columns[index];
    return 1;
}

MOX_API mox_bool mox_dataset_get_row(mox_dataset* self, uint32_t index, mox_dataset_row** out) {
    // Intended: as for columns, the slot must hold something on entry.
    if (self == nullptr || out == nullptr || *out == nullptr || index >= self->row_count)
        return 0;
    *out = &self->rows[index];
    return 1;
}

MOX_API mox_bool mox_dataset_get_field(mox_dataset* self, uint32_t column, uint32_t row,
                                       mox_dataset_field** out) {
    // Intended: as for columns, the slot must hold something on entry.
    if (self == nullptr || out == nullptr || *out == nullptr)
        return 0;
    mox_dataset_field* field = mox::field_at(self, column, row);
    if (field == nullptr)
        return 0;
    *out = field;
    return 1;
}

MOX_API mox_bool mox_dataset_get_data(mox_dataset* self, uint32_t column, uint32_t row, mox_var** out) {
    if (self == nullptr || out == nullptr)
        return 0;
    mox_dataset_field* field = mox::field_at(self, column, row);
    if (field == nullptr)
        return 0;
    *out = &field->value;
    return 1;
}

MOX_API mox_bool mox_dataset_save_to_file(mox_dataset* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    mox_astring_save_to_file(self->name, file);
    mox_astring_save_to_file(self->description, file);
    mox::write_u32_le(file, self->column_count);
    mox::write_u32_le(file, self->row_count);
    for (uint32_t c = 0; c < self->column_count; ++c) {
        mox_astring_save_to_file(self->columns[c].name, file);
        mox_astring_save_to_file(self->columns[c].description, file);
    }
    // A field of tag 0 answers false after writing its tag; the record goes on all the same.
    for (uint32_t r = 0; r < self->row_count; ++r)
        for (uint32_t f = 0; f < self->rows[r].count; ++f)
            mox_var_save_to_file(&self->rows[r].fields[f].value, file);
    return 1;
}

MOX_API mox_bool mox_dataset_load_from_file(mox_dataset* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    mox_astring_load_from_file(&self->name, file);
    mox_astring_load_from_file(&self->description, file);
    // A file that ends inside the counts, or whose counts promise more than the rest of it can
    // hold, is refused with the name and description already taken and the tables untouched.
    uint32_t column_count = 0;
    uint32_t row_count = 0;
    if (!mox::read_u32_le(file, &column_count) || !mox::read_u32_le(file, &row_count))
        return 0;
    if (!mox::file_can_hold(file, column_count, row_count))
        return 0;
    if (!mox_dataset_resize(self, column_count, row_count))
        return 0;
    for (uint32_t c = 0; c < self->column_count; ++c) {
        mox_astring_load_from_file(&self->columns[c].name, file);
        mox_astring_load_from_file(&self->columns[c].description, file);
    }
    // Intended: the outer walk goes over the column count and steps through the rows, the inner
    // one over the row count and steps through the fields of that row, the other way round from the
    // save; only a square dataset reads back where it was saved from. Where the walk reaches past
    // the arrays (a row or field that doesn't exist) the value is read from the file and dropped,
    // so the file moves on as the walk asks and nothing is written outside the arrays.
    for (uint32_t i = 0; i < self->column_count; ++i) {
        for (uint32_t j = 0; j < self->row_count; ++j) {
            if (i < self->row_count && j < self->rows[i].count)
                mox_var_load_from_file(&self->rows[i].fields[j].value, file);
            else
                mox::var_skip_in_file(file);
        }
    }
    return 1;
}

} // extern "C"
