// The two string families seen through one set of names, so that the conversion suites run once over
// narrow and once over wide text.
#pragma once

#include <mox/mox.h>

#include <gtest/gtest.h>

#include <string>

namespace convert_test {

struct Narrow {
    using Char = char;
    using Slot = mox_astring;
    using Array = mox_astring_array;
    static constexpr auto from_i8 = mox_astring_from_i8;
    static constexpr auto from_u8 = mox_astring_from_u8;
    static constexpr auto from_i16 = mox_astring_from_i16;
    static constexpr auto from_u16 = mox_astring_from_u16;
    static constexpr auto from_i32 = mox_astring_from_i32;
    static constexpr auto from_u32 = mox_astring_from_u32;
    static constexpr auto from_bool = mox_astring_from_bool;
    static constexpr auto from_r32 = mox_astring_from_r32;
    static constexpr auto from_r64 = mox_astring_from_r64;
    static constexpr auto to_i8 = mox_astring_to_i8;
    static constexpr auto to_u8 = mox_astring_to_u8;
    static constexpr auto to_i16 = mox_astring_to_i16;
    static constexpr auto to_u16 = mox_astring_to_u16;
    static constexpr auto to_i32 = mox_astring_to_i32;
    static constexpr auto to_u32 = mox_astring_to_u32;
    static constexpr auto to_bool = mox_astring_to_bool;
    static constexpr auto to_r32 = mox_astring_to_r32;
    static constexpr auto to_r64 = mox_astring_to_r64;
    static constexpr auto is_bin = mox_astring_is_bin;
    static constexpr auto is_oct = mox_astring_is_oct;
    static constexpr auto is_dec = mox_astring_is_dec;
    static constexpr auto is_hex = mox_astring_is_hex;
    static constexpr auto is_real = mox_astring_is_real;
    static constexpr auto parse_inc = mox_astring_parse_inc;
    static constexpr auto parse = mox_astring_parse;
    static constexpr auto replace = mox_astring_replace;
    static constexpr auto replace_ext = mox_astring_replace_ext;
    static constexpr auto save_to_file = mox_astring_save_to_file;
    static constexpr auto load_from_file = mox_astring_load_from_file;
    static constexpr auto destruct = mox_astring_destruct;
    static constexpr auto duplicate = mox_astring_duplicate;
    static constexpr auto length = mox_astring_length;
    static constexpr auto array_new = mox_astring_array_new;
    static constexpr auto array_free = mox_astring_array_free;
    static constexpr auto array_set_length = mox_astring_array_set_length;
};

struct Wide {
    using Char = uint16_t;
    using Slot = mox_wstring;
    using Array = mox_wstring_array;
    static constexpr auto from_i8 = mox_wstring_from_i8;
    static constexpr auto from_u8 = mox_wstring_from_u8;
    static constexpr auto from_i16 = mox_wstring_from_i16;
    static constexpr auto from_u16 = mox_wstring_from_u16;
    static constexpr auto from_i32 = mox_wstring_from_i32;
    static constexpr auto from_u32 = mox_wstring_from_u32;
    static constexpr auto from_bool = mox_wstring_from_bool;
    static constexpr auto from_r32 = mox_wstring_from_r32;
    static constexpr auto from_r64 = mox_wstring_from_r64;
    static constexpr auto to_i8 = mox_wstring_to_i8;
    static constexpr auto to_u8 = mox_wstring_to_u8;
    static constexpr auto to_i16 = mox_wstring_to_i16;
    static constexpr auto to_u16 = mox_wstring_to_u16;
    static constexpr auto to_i32 = mox_wstring_to_i32;
    static constexpr auto to_u32 = mox_wstring_to_u32;
    static constexpr auto to_bool = mox_wstring_to_bool;
    static constexpr auto to_r32 = mox_wstring_to_r32;
    static constexpr auto to_r64 = mox_wstring_to_r64;
    static constexpr auto is_bin = mox_wstring_is_bin;
    static constexpr auto is_oct = mox_wstring_is_oct;
    static constexpr auto is_dec = mox_wstring_is_dec;
    static constexpr auto is_hex = mox_wstring_is_hex;
    static constexpr auto is_real = mox_wstring_is_real;
    static constexpr auto parse_inc = mox_wstring_parse_inc;
    static constexpr auto parse = mox_wstring_parse;
    static constexpr auto replace = mox_wstring_replace;
    static constexpr auto replace_ext = mox_wstring_replace_ext;
    static constexpr auto save_to_file = mox_wstring_save_to_file;
    static constexpr auto load_from_file = mox_wstring_load_from_file;
    static constexpr auto destruct = mox_wstring_destruct;
    static constexpr auto duplicate = mox_wstring_duplicate;
    static constexpr auto length = mox_wstring_length;
    static constexpr auto array_new = mox_wstring_array_new;
    static constexpr auto array_free = mox_wstring_array_free;
    static constexpr auto array_set_length = mox_wstring_array_set_length;
};

using Families = ::testing::Types<Narrow, Wide>;

// A fixture that owns one output slot of the family and releases it at the end.
template <class F> class Family : public ::testing::Test {
public:
    using Char = typename F::Char;
    using Text = std::basic_string<Char>;

    void TearDown() override {
        if (out != nullptr)
            F::destruct(&out);
    }

    // A text in the family's units from ASCII or raw bytes; embedded zeros are kept.
    static Text T(const std::string& ascii) {
        Text text;
        for (char c : ascii)
            text.push_back(static_cast<Char>(static_cast<unsigned char>(c)));
        return text;
    }
    // The units of a slot up to its terminator.
    static Text held(const Char* slot) { return slot == nullptr ? Text() : Text(slot); }
    // Exactly `expected.size()` units of the slot, then a terminator: for results with zeros inside.
    static ::testing::AssertionResult holds_units(const Char* slot, const Text& expected) {
        if (slot == nullptr)
            return ::testing::AssertionFailure() << "no block";
        Text got(slot, expected.size());
        if (got != expected)
            return ::testing::AssertionFailure() << "units differ";
        if (slot[expected.size()] != 0)
            return ::testing::AssertionFailure() << "no terminator behind the units";
        return ::testing::AssertionSuccess();
    }

    typename F::Slot out = nullptr;
};

} // namespace convert_test
