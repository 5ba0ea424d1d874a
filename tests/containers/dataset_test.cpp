#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"
#include "support/disc_file.h"

using mox_test::ErrorListener;

namespace {

using Bytes = std::vector<uint8_t>;

void append_u32(Bytes& out, uint32_t value) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

void append_string(Bytes& out, const std::string& text) {
    append_u32(out, static_cast<uint32_t>(text.size()));
    out.insert(out.end(), text.begin(), text.end());
}

// A saved variant of tag 12 holding `text`.
void append_text_value(Bytes& out, const std::string& text) {
    append_u32(out, 12);
    append_string(out, text);
}

// The text whose address a load of tag 12 leaves in the first word of the variant's block.
std::string loaded_text(const mox_var& v) {
    mox_astring text;
    std::memcpy(&text, v.value, sizeof text);
    return text == nullptr ? std::string("<null>") : std::string(text);
}

// Loaded texts are reachable only through that word, so the tests release them themselves.
void release_loaded_text(mox_var& v) {
    if (v.type != 12 || v.value == nullptr)
        return;
    mox_astring text;
    std::memcpy(&text, v.value, sizeof text);
    mox_astring_destruct(&text);
    std::memset(v.value, 0, sizeof text);
}

struct DatasetTest : ::testing::Test {
    mox_dataset set{};
    mox_test::DiscFile disc{"d.bin"};
    mox_file& file = disc.file;
    void SetUp() override { ASSERT_EQ(mox_dataset_construct(&set, nullptr), 1); }
    void TearDown() override { mox_dataset_destruct(&set); }
    void open_file(const Bytes& bytes) { ASSERT_TRUE(disc.open_with(bytes)); }
    Bytes file_bytes() { return disc.on_disc(); }
    mox_var& value(uint32_t column, uint32_t row) { return set.rows[row].fields[column].value; }
    void set_text(uint32_t column, uint32_t row, const char* text) {
        ASSERT_EQ(mox_var_set_type(&value(column, row), 12), 1);
        ASSERT_EQ(mox_var_set(&value(column, row), text), 1);
    }
    void release_loaded_texts() {
        for (uint32_t r = 0; r < set.row_count; ++r)
            for (uint32_t c = 0; c < set.rows[r].count; ++c)
                release_loaded_text(value(c, r));
    }
};

} // namespace

// ---- Column, field and row on their own ------------------------------------------------------------

TEST(DatasetColumn, ConstructNewDestructAndDree) {
    ErrorListener listener;
    mox_dataset_column column;
    std::memset(&column, 0x6B, sizeof column);
    int owner = 0;
    EXPECT_EQ(mox_dataset_column_construct(&column, &owner), 1);
    EXPECT_EQ(column.header.class_id, 0x8E4CCDE0u);
    EXPECT_EQ(column.header.owner, &owner);
    EXPECT_EQ(column.header.flags, 0u);
    EXPECT_EQ(column.name, nullptr);
    EXPECT_EQ(column.description, nullptr);
    ASSERT_EQ(mox_astring_duplicate(&column.name, "id"), 1);
    ASSERT_EQ(mox_astring_duplicate(&column.description, "key"), 1);
    EXPECT_EQ(mox_dataset_column_destruct(&column), 1);
    EXPECT_EQ(column.name, nullptr);
    EXPECT_EQ(column.description, nullptr);

    mox_dataset_column* made = nullptr;
    ASSERT_EQ(mox_dataset_column_new(&made, &owner), 1);
    EXPECT_EQ(made->header.class_id, MOX_DATASET_COLUMN_CLASS_ID);
    ASSERT_EQ(mox_astring_duplicate(&made->name, "held"), 1);
    EXPECT_EQ(mox_dataset_column_dree(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(mox_dataset_column_dree(&made), 0);
    EXPECT_EQ(mox_dataset_column_dree(nullptr), 0);
    EXPECT_EQ(mox_dataset_column_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_dataset_column_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_dataset_column_destruct(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(DatasetField, ConstructNewDestructAndDree) {
    ErrorListener listener;
    mox_dataset_field field;
    std::memset(&field, 0x6B, sizeof field);
    int owner = 0;
    EXPECT_EQ(mox_dataset_field_construct(&field, &owner), 1);
    EXPECT_EQ(field.header.class_id, 0xFDCE934Au);
    EXPECT_EQ(field.header.owner, &owner);
    // The embedded variant is a member, so the field is its owner.
    EXPECT_EQ(field.value.header.class_id, MOX_VAR_CLASS_ID);
    EXPECT_EQ(field.value.header.owner, &field);
    EXPECT_EQ(field.value.type, 0u);
    EXPECT_EQ(field.value.value, nullptr);
    EXPECT_EQ(field.column, nullptr);
    ASSERT_EQ(mox_var_set_type(&field.value, 12), 1);
    ASSERT_EQ(mox_var_set(&field.value, "text"), 1);
    EXPECT_EQ(mox_dataset_field_destruct(&field), 1);
    EXPECT_EQ(field.value.value, nullptr);

    mox_dataset_field* made = nullptr;
    ASSERT_EQ(mox_dataset_field_new(&made, &owner), 1);
    EXPECT_EQ(made->header.class_id, MOX_DATASET_FIELD_CLASS_ID);
    EXPECT_EQ(made->value.header.owner, made);
    ASSERT_EQ(mox_var_set_type(&made->value, 10), 1);
    EXPECT_EQ(mox_dataset_field_dree(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(mox_dataset_field_dree(&made), 0);
    EXPECT_EQ(mox_dataset_field_dree(nullptr), 0);
    EXPECT_EQ(mox_dataset_field_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_dataset_field_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_dataset_field_destruct(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(DatasetRow, ConstructNewDestructAndFree) {
    ErrorListener listener;
    mox_dataset_row row;
    std::memset(&row, 0x6B, sizeof row);
    int owner = 0;
    EXPECT_EQ(mox_dataset_row_construct(&row, &owner), 1);
    EXPECT_EQ(row.header.class_id, 0x0DE6814Au);
    EXPECT_EQ(row.header.owner, &owner);
    EXPECT_EQ(row.count, 0u);
    EXPECT_EQ(row.fields, nullptr);
    ASSERT_EQ(mox_dataset_row_resize(&row, 2), 1);
    ASSERT_EQ(mox_var_set_type(&row.fields[1].value, 12), 1);
    ASSERT_EQ(mox_var_set(&row.fields[1].value, "x"), 1);
    EXPECT_EQ(mox_dataset_row_destruct(&row), 1);
    EXPECT_EQ(row.count, 0u);
    EXPECT_EQ(row.fields, nullptr);

    mox_dataset_row* made = nullptr;
    ASSERT_EQ(mox_dataset_row_new(&made, &owner), 1);
    EXPECT_EQ(made->header.class_id, MOX_DATASET_ROW_CLASS_ID);
    ASSERT_EQ(mox_dataset_row_resize(made, 3), 1);
    EXPECT_EQ(mox_dataset_row_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(mox_dataset_row_free(&made), 0);
    EXPECT_EQ(mox_dataset_row_free(nullptr), 0);
    EXPECT_EQ(mox_dataset_row_new(nullptr, nullptr), 0);
    EXPECT_EQ(mox_dataset_row_construct(nullptr, nullptr), 0);
    EXPECT_EQ(mox_dataset_row_destruct(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(DatasetRow, ResizeMakesEmptyFieldsOwnedByTheRow) {
    mox_dataset_row row;
    mox_dataset_row_construct(&row, nullptr);
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_row_resize(&row, 3), 1);
    EXPECT_EQ(row.count, 3u);
    for (uint32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(row.fields[i].header.class_id, MOX_DATASET_FIELD_CLASS_ID) << i;
        EXPECT_EQ(row.fields[i].header.owner, &row) << i;
        EXPECT_EQ(row.fields[i].value.header.owner, &row.fields[i]) << i;
        EXPECT_EQ(row.fields[i].value.type, 0u) << i;
        EXPECT_EQ(row.fields[i].column, nullptr) << i;
    }
    EXPECT_TRUE(listener.silent());
    mox_dataset_row_destruct(&row);
}

TEST(DatasetRow, ResizeKeepsValuesAndDropsTheEnd) {
    mox_dataset_row row;
    mox_dataset_row_construct(&row, nullptr);
    ASSERT_EQ(mox_dataset_row_resize(&row, 3), 1);
    const uint32_t first = 0xA1A2A3A4;
    ASSERT_EQ(mox_var_set_type(&row.fields[0].value, 5), 1);
    ASSERT_EQ(mox_var_set(&row.fields[0].value, &first), 1);
    ASSERT_EQ(mox_var_set_type(&row.fields[2].value, 12), 1);
    ASSERT_EQ(mox_var_set(&row.fields[2].value, "dropped"), 1);
    EXPECT_EQ(mox_dataset_row_resize(&row, 2), 1);
    EXPECT_EQ(row.count, 2u);
    EXPECT_EQ(mox_dataset_row_resize(&row, 5), 1);
    EXPECT_EQ(row.count, 5u);
    uint32_t out = 0;
    EXPECT_EQ(mox_var_get(&row.fields[0].value, &out), 1);
    EXPECT_EQ(out, first);
    // The field that came back in the dropped place is a new, empty one.
    EXPECT_EQ(row.fields[2].value.type, 0u);
    EXPECT_EQ(row.fields[2].value.value, nullptr);
    EXPECT_EQ(row.fields[4].value.header.owner, &row.fields[4]);
    mox_dataset_row_destruct(&row);
}

TEST(DatasetRow, ResizeRefusesZeroAndAcceptsTheSameCount) {
    mox_dataset_row row;
    mox_dataset_row_construct(&row, nullptr);
    ASSERT_EQ(mox_dataset_row_resize(&row, 2), 1);
    mox_dataset_field* fields = row.fields;
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_row_resize(&row, 0), 0);
    EXPECT_EQ(row.count, 2u);
    EXPECT_EQ(row.fields, fields);
    EXPECT_EQ(mox_dataset_row_resize(&row, 2), 1);
    EXPECT_EQ(row.fields, fields);
    EXPECT_EQ(mox_dataset_row_resize(nullptr, 2), 0);
    EXPECT_TRUE(listener.silent());
    mox_dataset_row_destruct(&row);
}

// A count whose array can't be sized by a 32-bit byte count is a failed growth: the row ends.
TEST(DatasetRow, AnImpossibleGrowthEndsTheRow) {
    mox_dataset_row row;
    mox_dataset_row_construct(&row, nullptr);
    ASSERT_EQ(mox_dataset_row_resize(&row, 2), 1);
    EXPECT_EQ(mox_dataset_row_resize(&row, 0xFFFFFFFFu), 0);
    EXPECT_EQ(row.count, 0u);
    EXPECT_EQ(row.fields, nullptr);
}

// ---- Dataset --------------------------------------------------------------------------------------

TEST_F(DatasetTest, ConstructEmptiesEveryField) {
    mox_dataset other;
    std::memset(&other, 0x6B, sizeof other);
    int owner = 0;
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_construct(&other, &owner), 1);
    EXPECT_EQ(other.header.class_id, 0x50E349B1u);
    EXPECT_EQ(other.header.owner, &owner);
    EXPECT_EQ(other.header.user, 0u);
    EXPECT_EQ(other.name, nullptr);
    EXPECT_EQ(other.description, nullptr);
    EXPECT_EQ(other.column_count, 0u);
    EXPECT_EQ(other.columns, nullptr);
    EXPECT_EQ(other.row_count, 0u);
    EXPECT_EQ(other.rows, nullptr);
    EXPECT_EQ(mox_dataset_construct(nullptr, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, DestructReleasesEverything) {
    ASSERT_EQ(mox_astring_duplicate(&set.name, "n"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.description, "d"), 1);
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].name, "c"), 1);
    set_text(1, 1, "v");
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_destruct(&set), 1);
    EXPECT_EQ(set.name, nullptr);
    EXPECT_EQ(set.description, nullptr);
    EXPECT_EQ(set.columns, nullptr);
    EXPECT_EQ(set.rows, nullptr);
    EXPECT_EQ(set.column_count, 0u);
    EXPECT_EQ(set.row_count, 0u);
    EXPECT_EQ(mox_dataset_destruct(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, NewAndFree) {
    ErrorListener listener;
    mox_dataset* made = nullptr;
    ASSERT_EQ(mox_dataset_new(&made, &set), 1);
    EXPECT_EQ(made->header.class_id, MOX_DATASET_CLASS_ID);
    EXPECT_EQ(made->header.owner, &set);
    ASSERT_EQ(mox_dataset_resize(made, 2, 3), 1);
    EXPECT_EQ(mox_dataset_free(&made), 1);
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(mox_dataset_free(&made), 0);
    EXPECT_EQ(mox_dataset_free(nullptr), 0);
    EXPECT_EQ(mox_dataset_new(nullptr, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, ResizeRefusesAZeroCountAndChangesNothing) {
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_resize(&set, 0, 5), 0);
    EXPECT_EQ(mox_dataset_resize(&set, 5, 0), 0);
    EXPECT_EQ(mox_dataset_resize(nullptr, 1, 1), 0);
    EXPECT_EQ(set.column_count, 0u);
    EXPECT_EQ(set.row_count, 0u);
    EXPECT_EQ(set.columns, nullptr);
    EXPECT_EQ(set.rows, nullptr);
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    mox_dataset_row* rows = set.rows;
    EXPECT_EQ(mox_dataset_resize(&set, 0, 5), 0);
    EXPECT_EQ(set.column_count, 2u);
    EXPECT_EQ(set.row_count, 2u);
    EXPECT_EQ(set.rows, rows);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, ResizePointsEveryFieldAtItsColumn) {
    EXPECT_EQ(mox_dataset_resize(&set, 3, 2), 1);
    EXPECT_EQ(set.column_count, 3u);
    EXPECT_EQ(set.row_count, 2u);
    EXPECT_EQ(set.rows[1].fields[2].column, &set.columns[2]);
    for (uint32_t c = 0; c < 3; ++c) {
        EXPECT_EQ(set.columns[c].header.class_id, MOX_DATASET_COLUMN_CLASS_ID);
        EXPECT_EQ(set.columns[c].header.owner, &set);
    }
    for (uint32_t r = 0; r < 2; ++r) {
        EXPECT_EQ(set.rows[r].header.class_id, MOX_DATASET_ROW_CLASS_ID);
        EXPECT_EQ(set.rows[r].header.owner, &set);
        ASSERT_EQ(set.rows[r].count, 3u);
        for (uint32_t c = 0; c < 3; ++c) {
            EXPECT_EQ(set.rows[r].fields[c].column, &set.columns[c]);
            EXPECT_EQ(set.rows[r].fields[c].header.owner, &set.rows[r]);
        }
    }
}

TEST_F(DatasetTest, ResizeKeepsValuesWhereTheyWere) {
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].name, "kept"), 1);
    set_text(1, 1, "stays");
    ASSERT_EQ(mox_dataset_resize(&set, 4, 5), 1);
    EXPECT_STREQ(set.columns[1].name, "kept");
    EXPECT_STREQ(static_cast<const char*>(value(1, 1).value), "stays");
    EXPECT_EQ(set.rows[1].fields[1].column, &set.columns[1]);
    EXPECT_EQ(set.rows[4].fields[3].column, &set.columns[3]);
    EXPECT_EQ(set.rows[4].count, 4u);
}

TEST_F(DatasetTest, ShrinkingDropsTheLastColumnAndTheLastFieldOfEachRow) {
    ASSERT_EQ(mox_dataset_resize(&set, 3, 2), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[2].name, "third"), 1);
    set_text(2, 0, "a");
    set_text(2, 1, "b");
    set_text(1, 1, "kept");
    EXPECT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    EXPECT_EQ(set.column_count, 2u);
    EXPECT_EQ(set.rows[0].count, 2u);
    EXPECT_EQ(set.rows[1].count, 2u);
    EXPECT_STREQ(static_cast<const char*>(value(1, 1).value), "kept");
    // Growing again shows fresh records where the dropped ones stood.
    ASSERT_EQ(mox_dataset_resize(&set, 3, 2), 1);
    EXPECT_EQ(set.columns[2].name, nullptr);
    EXPECT_EQ(value(2, 0).type, 0u);
    EXPECT_EQ(value(2, 1).value, nullptr);
}

TEST_F(DatasetTest, ShrinkingRowsDropsTheLastRows) {
    ASSERT_EQ(mox_dataset_resize(&set, 1, 3), 1);
    set_text(0, 2, "gone");
    set_text(0, 0, "first");
    EXPECT_EQ(mox_dataset_resize(&set, 1, 1), 1);
    EXPECT_EQ(set.row_count, 1u);
    EXPECT_STREQ(static_cast<const char*>(value(0, 0).value), "first");
}

// The pointing pass runs even when no count changes.
TEST_F(DatasetTest, ResizeWithTheSameCountsPointsTheFieldsAgain) {
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    set.rows[0].fields[1].column = nullptr;
    set.rows[1].fields[0].column = &set.columns[1];
    EXPECT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    EXPECT_EQ(set.rows[0].fields[1].column, &set.columns[1]);
    EXPECT_EQ(set.rows[1].fields[0].column, &set.columns[0]);
}

TEST_F(DatasetTest, ResizeRefusesCountsNoByteSizeCanHold) {
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    EXPECT_EQ(mox_dataset_resize(&set, 0xFFFFFFFFu, 2), 0);
    EXPECT_EQ(mox_dataset_resize(&set, 2, 0xFFFFFFFFu), 0);
    EXPECT_EQ(set.column_count, 2u);
    EXPECT_EQ(set.row_count, 2u);
}

TEST_F(DatasetTest, FindColumnIgnoresCase) {
    ASSERT_EQ(mox_dataset_resize(&set, 3, 1), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[0].name, "id"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].name, "Name"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[2].name, "name"), 1);
    ErrorListener listener;
    uint32_t index = 99;
    EXPECT_EQ(mox_dataset_find_column(&set, "NAME", &index), 1);
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(mox_dataset_find_column(&set, "ID", &index), 1);
    EXPECT_EQ(index, 0u);
    index = 99;
    EXPECT_EQ(mox_dataset_find_column(&set, "other", &index), 0);
    EXPECT_EQ(mox_dataset_find_column(&set, nullptr, &index), 0);
    EXPECT_EQ(index, 99u);
    EXPECT_EQ(mox_dataset_find_column(nullptr, "id", &index), 0);
    EXPECT_EQ(mox_dataset_find_column(&set, "id", nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, FindColumnWithNoColumnsIsFalse) {
    uint32_t index = 7;
    EXPECT_EQ(mox_dataset_find_column(&set, "", &index), 0);
    EXPECT_EQ(index, 7u);
}

// Intended: the three getters refuse a slot that holds null on entry, with a good index as well.
TEST_F(DatasetTest, GettersWantANonNullSlot) {
    ASSERT_EQ(mox_dataset_resize(&set, 3, 2), 1);
    ErrorListener listener;
    mox_dataset_column* column = nullptr;
    EXPECT_EQ(mox_dataset_get_column(&set, 1, &column), 0);
    EXPECT_EQ(column, nullptr);
    mox_dataset_row* row = nullptr;
    EXPECT_EQ(mox_dataset_get_row(&set, 1, &row), 0);
    EXPECT_EQ(row, nullptr);
    mox_dataset_field* field = nullptr;
    EXPECT_EQ(mox_dataset_get_field(&set, 1, 1, &field), 0);
    EXPECT_EQ(field, nullptr);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, GettersGiveTheAddressesInTheArrays) {
    ASSERT_EQ(mox_dataset_resize(&set, 3, 2), 1);
    auto* column = reinterpret_cast<mox_dataset_column*>(&set);
    EXPECT_EQ(mox_dataset_get_column(&set, 2, &column), 1);
    EXPECT_EQ(column, &set.columns[2]);
    auto* row = reinterpret_cast<mox_dataset_row*>(&set);
    EXPECT_EQ(mox_dataset_get_row(&set, 1, &row), 1);
    EXPECT_EQ(row, &set.rows[1]);
    auto* field = reinterpret_cast<mox_dataset_field*>(&set);
    EXPECT_EQ(mox_dataset_get_field(&set, 2, 1, &field), 1);
    EXPECT_EQ(field, &set.rows[1].fields[2]);
    mox_var* data = nullptr;
    EXPECT_EQ(mox_dataset_get_data(&set, 2, 1, &data), 1);
    EXPECT_EQ(data, &set.rows[1].fields[2].value);
}

TEST_F(DatasetTest, GettersRefuseIndexesOutOfRange) {
    ASSERT_EQ(mox_dataset_resize(&set, 3, 2), 1);
    auto* marker = reinterpret_cast<void*>(&set);
    auto* column = static_cast<mox_dataset_column*>(marker);
    auto* row = static_cast<mox_dataset_row*>(marker);
    auto* field = static_cast<mox_dataset_field*>(marker);
    auto* data = static_cast<mox_var*>(marker);
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_get_column(&set, 3, &column), 0);
    EXPECT_EQ(mox_dataset_get_row(&set, 2, &row), 0);
    EXPECT_EQ(mox_dataset_get_field(&set, 3, 0, &field), 0);
    EXPECT_EQ(mox_dataset_get_field(&set, 0, 2, &field), 0);
    EXPECT_EQ(mox_dataset_get_data(&set, 3, 0, &data), 0);
    EXPECT_EQ(mox_dataset_get_data(&set, 0, 2, &data), 0);
    EXPECT_EQ(static_cast<void*>(column), marker);
    EXPECT_EQ(static_cast<void*>(row), marker);
    EXPECT_EQ(static_cast<void*>(field), marker);
    EXPECT_EQ(static_cast<void*>(data), marker);
    EXPECT_EQ(mox_dataset_get_column(nullptr, 0, &column), 0);
    EXPECT_EQ(mox_dataset_get_column(&set, 0, nullptr), 0);
    EXPECT_EQ(mox_dataset_get_row(nullptr, 0, &row), 0);
    EXPECT_EQ(mox_dataset_get_row(&set, 0, nullptr), 0);
    EXPECT_EQ(mox_dataset_get_field(nullptr, 0, 0, &field), 0);
    EXPECT_EQ(mox_dataset_get_field(&set, 0, 0, nullptr), 0);
    EXPECT_EQ(mox_dataset_get_data(nullptr, 0, 0, &data), 0);
    EXPECT_EQ(mox_dataset_get_data(&set, 0, 0, nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST_F(DatasetTest, GettersOnAnEmptyDatasetAreFalse) {
    auto* column = reinterpret_cast<mox_dataset_column*>(&set);
    mox_var* data = nullptr;
    EXPECT_EQ(mox_dataset_get_column(&set, 0, &column), 0);
    EXPECT_EQ(mox_dataset_get_data(&set, 0, 0, &data), 0);
    EXPECT_EQ(data, nullptr);
}

TEST_F(DatasetTest, SaveWritesTheLayout) {
    ASSERT_EQ(mox_astring_duplicate(&set.name, "ds"), 1);
    ASSERT_EQ(mox_dataset_resize(&set, 2, 1), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[0].name, "a"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].name, "B"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].description, "xy"), 1);
    set_text(1, 0, "hi");
    open_file({});
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    EXPECT_TRUE(listener.silent());
    Bytes expected;
    append_string(expected, "ds");
    append_string(expected, "");
    append_u32(expected, 2);
    append_u32(expected, 1);
    append_string(expected, "a");
    append_string(expected, "");
    append_string(expected, "B");
    append_string(expected, "xy");
    append_u32(expected, 0); // field 0: tag 0, nothing after it
    append_text_value(expected, "hi");
    EXPECT_EQ(file.position, expected.size());
    EXPECT_EQ(file_bytes(), expected);
}

TEST_F(DatasetTest, SaveGoesRowByRow) {
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    set_text(0, 0, "r0c0");
    set_text(1, 0, "r0c1");
    set_text(0, 1, "r1c0");
    set_text(1, 1, "r1c1");
    open_file({});
    EXPECT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    Bytes expected;
    append_string(expected, "");
    append_string(expected, "");
    append_u32(expected, 2);
    append_u32(expected, 2);
    for (int i = 0; i < 2; ++i) {
        append_string(expected, "");
        append_string(expected, "");
    }
    for (const char* text : {"r0c0", "r0c1", "r1c0", "r1c1"})
        append_text_value(expected, text);
    EXPECT_EQ(file_bytes(), expected);
}

TEST_F(DatasetTest, SaveAndLoadRefuseNullsSilently) {
    open_file({});
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_save_to_file(nullptr, &file), 0);
    EXPECT_EQ(mox_dataset_save_to_file(&set, nullptr), 0);
    EXPECT_EQ(mox_dataset_load_from_file(nullptr, &file), 0);
    EXPECT_EQ(mox_dataset_load_from_file(&set, nullptr), 0);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(file.position, 0u);
}

// Intended: an empty dataset saves, and its file can't be loaded because the resize refuses the counts.
TEST_F(DatasetTest, AnEmptyDatasetSavesButDoesNotLoad) {
    ASSERT_EQ(mox_astring_duplicate(&set.name, "e"), 1);
    open_file({});
    EXPECT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    EXPECT_EQ(file.position, 17u);
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_dataset loaded;
    mox_dataset_construct(&loaded, nullptr);
    EXPECT_EQ(mox_dataset_load_from_file(&loaded, &file), 0);
    EXPECT_STREQ(loaded.name, "e");
    EXPECT_EQ(loaded.column_count, 0u);
    mox_dataset_destruct(&loaded);
}

TEST_F(DatasetTest, ATwoByTwoDatasetSurvivesASaveAndALoad) {
    ASSERT_EQ(mox_astring_duplicate(&set.name, "people"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.description, "a test"), 1);
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[0].name, "id"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].name, "name"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].description, "given"), 1);
    set_text(1, 0, "ann");
    set_text(0, 1, "bob");
    open_file({});
    ASSERT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    uint64_t saved_end = file.position;
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);

    mox_dataset loaded;
    mox_dataset_construct(&loaded, nullptr);
    ErrorListener listener;
    EXPECT_EQ(mox_dataset_load_from_file(&loaded, &file), 1);
    EXPECT_TRUE(listener.silent());
    EXPECT_EQ(file.position, saved_end);
    EXPECT_STREQ(loaded.name, "people");
    EXPECT_STREQ(loaded.description, "a test");
    ASSERT_EQ(loaded.column_count, 2u);
    ASSERT_EQ(loaded.row_count, 2u);
    EXPECT_STREQ(loaded.columns[0].name, "id");
    EXPECT_STREQ(loaded.columns[0].description, "");
    EXPECT_STREQ(loaded.columns[1].name, "name");
    EXPECT_STREQ(loaded.columns[1].description, "given");
    EXPECT_EQ(loaded.rows[1].fields[1].column, &loaded.columns[1]);
    EXPECT_EQ(loaded.rows[0].fields[0].value.type, 0u);
    EXPECT_EQ(loaded.rows[1].fields[1].value.type, 0u);
    ASSERT_EQ(loaded.rows[0].fields[1].value.type, 12u);
    ASSERT_EQ(loaded.rows[1].fields[0].value.type, 12u);
    // The texts come back in their places, reachable through the first word of the blocks.
    EXPECT_EQ(loaded_text(loaded.rows[0].fields[1].value), "ann");
    EXPECT_EQ(loaded_text(loaded.rows[1].fields[0].value), "bob");
    release_loaded_text(loaded.rows[0].fields[1].value);
    release_loaded_text(loaded.rows[1].fields[0].value);
    mox_dataset_destruct(&loaded);
}

// With no values to lose, a saved and loaded dataset saves to the very same bytes.
TEST_F(DatasetTest, ALoadedDatasetSavesTheSameBytes) {
    ASSERT_EQ(mox_astring_duplicate(&set.name, "grid"), 1);
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[0].name, "x"), 1);
    ASSERT_EQ(mox_astring_duplicate(&set.columns[1].description, "y axis"), 1);
    open_file({});
    ASSERT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    Bytes first = file_bytes();
    ASSERT_EQ(first.size(), 8u + 4 + 8 + 9 + 14 + 16);

    mox_dataset loaded;
    mox_dataset_construct(&loaded, nullptr);
    open_file(first);
    EXPECT_EQ(mox_dataset_load_from_file(&loaded, &file), 1);
    mox_file_close(&file);
    open_file({});
    EXPECT_EQ(mox_dataset_save_to_file(&loaded, &file), 1);
    EXPECT_EQ(file_bytes(), first);
    mox_dataset_destruct(&loaded);
}

// Intended: with more columns than rows the outer walk goes through rows that don't exist; those
// values are read and dropped.
TEST_F(DatasetTest, LoadWithMoreColumnsThanRowsDropsWhatFallsOutside) {
    Bytes bytes;
    append_string(bytes, "");
    append_string(bytes, "");
    append_u32(bytes, 3);
    append_u32(bytes, 1);
    for (int i = 0; i < 3; ++i) {
        append_string(bytes, "c");
        append_string(bytes, "");
    }
    for (const char* text : {"p", "q", "r"})
        append_text_value(bytes, text);
    bytes.push_back(0xEE);
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 1);
    EXPECT_EQ(file.position, bytes.size() - 1);
    ASSERT_EQ(set.row_count, 1u);
    ASSERT_EQ(set.rows[0].count, 3u);
    EXPECT_EQ(loaded_text(value(0, 0)), "p");
    EXPECT_EQ(value(1, 0).type, 0u);
    EXPECT_EQ(value(2, 0).type, 0u);
    release_loaded_texts();
}

TEST_F(DatasetTest, LoadWithMoreRowsThanColumnsDropsWhatFallsOutside) {
    Bytes bytes;
    append_string(bytes, "");
    append_string(bytes, "");
    append_u32(bytes, 1);
    append_u32(bytes, 3);
    append_string(bytes, "only");
    append_string(bytes, "");
    for (const char* text : {"p", "q", "r"})
        append_text_value(bytes, text);
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 1);
    EXPECT_EQ(file.position, bytes.size());
    ASSERT_EQ(set.row_count, 3u);
    EXPECT_STREQ(set.columns[0].name, "only");
    EXPECT_EQ(loaded_text(value(0, 0)), "p");
    EXPECT_EQ(value(0, 1).type, 0u);
    EXPECT_EQ(value(0, 2).type, 0u);
    release_loaded_texts();
}

// Intended: two columns by three rows, saved row by row, read back with the bounds exchanged: row 0
// takes values 0 and 1, drops 2; row 1 takes values 3 and 4, drops 5; row 2 keeps nothing.
TEST_F(DatasetTest, LoadOfANonSquareDatasetWalksWithTheBoundsExchanged) {
    ASSERT_EQ(mox_dataset_resize(&set, 2, 3), 1);
    const char* texts[6] = {"v0", "v1", "v2", "v3", "v4", "v5"};
    for (uint32_t i = 0; i < 6; ++i)
        set_text(i % 2, i / 2, texts[i]);
    open_file({});
    ASSERT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    uint64_t end = file.position;
    ASSERT_EQ(mox_file_set_pointer_u32(&file, 0), 1);
    mox_dataset loaded;
    mox_dataset_construct(&loaded, nullptr);
    EXPECT_EQ(mox_dataset_load_from_file(&loaded, &file), 1);
    EXPECT_EQ(file.position, end);
    EXPECT_EQ(loaded_text(loaded.rows[0].fields[0].value), "v0");
    EXPECT_EQ(loaded_text(loaded.rows[0].fields[1].value), "v1");
    EXPECT_EQ(loaded_text(loaded.rows[1].fields[0].value), "v3");
    EXPECT_EQ(loaded_text(loaded.rows[1].fields[1].value), "v4");
    EXPECT_EQ(loaded.rows[2].fields[0].value.type, 0u);
    EXPECT_EQ(loaded.rows[2].fields[1].value.type, 0u);
    for (uint32_t r = 0; r < 2; ++r)
        for (uint32_t c = 0; c < 2; ++c)
            release_loaded_text(loaded.rows[r].fields[c].value);
    mox_dataset_destruct(&loaded);
}

TEST_F(DatasetTest, LoadOfAFileCutInsideTheCountsIsFalse) {
    ASSERT_EQ(mox_dataset_resize(&set, 1, 1), 1);
    Bytes bytes;
    append_string(bytes, "nm");
    append_string(bytes, "");
    append_u32(bytes, 2);
    bytes.push_back(2);
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 0);
    EXPECT_STREQ(set.name, "nm");
    EXPECT_EQ(set.column_count, 1u);
    EXPECT_EQ(set.row_count, 1u);
}

// Counts that promise more than the rest of the file can hold are refused before any allocation.
TEST_F(DatasetTest, LoadRefusesCountsTheFileCannotHold) {
    Bytes bytes;
    append_string(bytes, "");
    append_string(bytes, "");
    append_u32(bytes, 0xFFFFFFFFu);
    append_u32(bytes, 0xFFFFFFFFu);
    append_string(bytes, "");
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 0);
    EXPECT_EQ(set.column_count, 0u);
    EXPECT_EQ(set.columns, nullptr);
    EXPECT_EQ(set.rows, nullptr);
}

TEST_F(DatasetTest, LoadRefusesAFileCutInsideTheValues) {
    ASSERT_EQ(mox_dataset_resize(&set, 2, 2), 1);
    open_file({});
    ASSERT_EQ(mox_dataset_save_to_file(&set, &file), 1);
    mox_file_close(&file);
    Bytes bytes = disc.on_disc();
    bytes.resize(bytes.size() - 1);
    mox_dataset_resize(&set, 1, 1);
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 0);
    EXPECT_EQ(set.column_count, 1u);
    EXPECT_EQ(set.row_count, 1u);
}

TEST_F(DatasetTest, LoadRefusesZeroCounts) {
    Bytes bytes;
    append_string(bytes, "");
    append_string(bytes, "");
    append_u32(bytes, 0);
    append_u32(bytes, 4);
    bytes.insert(bytes.end(), 64, 0);
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 0);
    EXPECT_EQ(set.row_count, 0u);
}

// Values with lying tags or string counts land in the fields as the variant's load leaves them.
TEST_F(DatasetTest, LoadOfLyingValuesStaysInsideTheArrays) {
    Bytes bytes;
    append_string(bytes, "");
    append_string(bytes, "");
    append_u32(bytes, 2);
    append_u32(bytes, 2);
    for (int i = 0; i < 2; ++i) {
        append_string(bytes, "");
        append_string(bytes, "");
    }
    append_u32(bytes, 77); // an unknown tag: the field keeps it and the load goes on
    append_u32(bytes, 12); // a string whose count no block can hold
    append_u32(bytes, 0xFFFFFFFFu);
    append_u32(bytes, 5);
    append_u32(bytes, 0x01020304);
    append_u32(bytes, 0);
    open_file(bytes);
    EXPECT_EQ(mox_dataset_load_from_file(&set, &file), 1);
    EXPECT_EQ(file.position, bytes.size());
    EXPECT_EQ(value(0, 0).type, 77u);
    EXPECT_EQ(value(0, 0).value, nullptr);
    EXPECT_EQ(value(1, 0).type, 12u);
    EXPECT_EQ(loaded_text(value(1, 0)), "<null>");
    EXPECT_EQ(value(0, 1).type, 5u);
    EXPECT_EQ(value(1, 1).type, 0u);
}
