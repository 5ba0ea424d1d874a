#include <mox/mox.h>

#include <gtest/gtest.h>

#include "support/error_listener.h"

TEST(Swap, ExchangesValuesOfEveryWidth) {
    int8_t a8 = -1, b8 = 100;
    mox_swap_i8(&a8, &b8);
    EXPECT_EQ(a8, 100);
    EXPECT_EQ(b8, -1);
    int16_t a16 = -30000, b16 = 12345;
    mox_swap_i16(&a16, &b16);
    EXPECT_EQ(a16, 12345);
    EXPECT_EQ(b16, -30000);
    int32_t a32 = INT32_MIN, b32 = 7;
    mox_swap_i32(&a32, &b32);
    EXPECT_EQ(a32, 7);
    EXPECT_EQ(b32, INT32_MIN);
    float ar = 1.5f, br = -0.25f;
    mox_swap_r32(&ar, &br);
    EXPECT_EQ(ar, -0.25f);
    EXPECT_EQ(br, 1.5f);
    double ad = 1e300, bd = -2.5;
    mox_swap_r64(&ad, &bd);
    EXPECT_EQ(ad, -2.5);
    EXPECT_EQ(bd, 1e300);
}

TEST(Swap, ExchangeWithItselfKeepsTheValue) {
    int32_t value = 42;
    mox_swap_i32(&value, &value);
    EXPECT_EQ(value, 42);
}

TEST(Swap, Bit4IsNotMasked) {
    EXPECT_EQ(mox_swap_bit4(0x12), 0x121u);
    EXPECT_EQ(mox_swap_bit4(0x12) & 0xFF, 0x21u);
    EXPECT_EQ(mox_swap_bit4(0xF0), 0xF0Fu);
    EXPECT_EQ(mox_swap_bit4(0x0F), 0xF0u);
    EXPECT_EQ(mox_swap_bit4(0), 0u);
}

TEST(Swap, Bit8IsNotMasked) {
    EXPECT_EQ(mox_swap_bit8(0x1234), 0x123412u);
    EXPECT_EQ(mox_swap_bit8(0x1234) & 0xFFFF, 0x3412u);
    EXPECT_EQ(mox_swap_bit8(0xFF00), 0xFF00FFu);
    EXPECT_EQ(mox_swap_bit8(0x00FF), 0xFF00u);
}

TEST(Swap, Bit16AndBit32ReverseAllBytes) {
    EXPECT_EQ(mox_swap_bit16(0x11223344u), 0x44332211u);
    EXPECT_EQ(mox_swap_bit16(0xFF000000u), 0x000000FFu);
    EXPECT_EQ(mox_swap_bit32(0x1122334455667788ull), 0x8877665544332211ull);
    EXPECT_EQ(mox_swap_bit32(0x00000000FFFFFFFFull), 0xFFFFFFFF00000000ull);
}

TEST(Swap, NothingIsPosted) {
    mox_test::ErrorListener listener;
    int8_t a = 1, b = 2;
    mox_swap_i8(&a, &b);
    mox_swap_bit4(1);
    mox_swap_bit8(1);
    mox_swap_bit16(1);
    mox_swap_bit32(1);
    EXPECT_TRUE(listener.silent());
}
