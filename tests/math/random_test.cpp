#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstdint>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

// What the generators give first in this process. The draws run while the test program starts, before
// any test, so they see the state as the library starts it whichever tests run and in what order.
struct StartDraws {
    uint32_t linear[2];
    uint32_t kiss[3];
    double mother_unseeded[2];
    uint32_t mother_seed_result;
    double mother_seeded[2];
};

StartDraws draw_at_start() {
    StartDraws draws{};
    draws.linear[0] = mox_random_linear_u32();
    draws.linear[1] = mox_random_linear_u32();
    for (uint32_t& value : draws.kiss)
        value = mox_random_kiss_u32();
    draws.mother_unseeded[0] = mox_random_mother_of_all_r64();
    draws.mother_unseeded[1] = mox_random_mother_of_all_r64();
    draws.mother_seed_result = mox_random_mother_of_all_init_u32(0);
    draws.mother_seeded[0] = mox_random_mother_of_all_r64();
    draws.mother_seeded[1] = mox_random_mother_of_all_r64();
    return draws;
}

const StartDraws kStart = draw_at_start();

} // namespace

TEST(RandomStart, LinearStartsFromZero) {
    EXPECT_EQ(kStart.linear[0], 1013904223u);
    EXPECT_EQ(kStart.linear[1], 1196435762u); // 1013904223 * 1664525 + 1013904223 modulo 2^32
}

TEST(RandomStart, KissStartsFromFixedValuesWithItsLeftShift) {
    // The published generator, with its right shift in the second step, starts 2079675107 here.
    EXPECT_EQ(kStart.kiss[0], 985200556u);
    EXPECT_EQ(kStart.kiss[1], 3292375061u);
    EXPECT_EQ(kStart.kiss[2], 3737478215u);
}

TEST(RandomStart, MotherOfAllIsZeroUntilSeeded) {
    // Every term is zero, and so is the state afterwards.
    EXPECT_EQ(kStart.mother_unseeded[0], 0.0);
    EXPECT_EQ(kStart.mother_unseeded[1], 0.0);
}

TEST(RandomStart, MotherOfAllAfterSeedZero) {
    // s runs 1013904223, 1013904223 * 1664525 + 1013904223 and so on in 64 bits; the result is the low
    // half of the fourth value.
    EXPECT_EQ(kStart.mother_seed_result, 2868466484u);
    // The state values, times 2^-32: 0.236..., 392941.27..., 1225552714.8..., -304076951.33...: the sum
    // is -6.419384013337572e17, the low 32 bits of its truncation are -724452608, and the result is
    // the sum less that.
    EXPECT_EQ(kStart.mother_seeded[0], -0x1.1d13f26p+59);
    // Here the sum is beyond 64-bit integers; the low 32 bits of its truncation are 1423966208.
    EXPECT_EQ(kStart.mother_seeded[1], -0x1.63b8090514p+71);
}

TEST(RandomLinear, InitRestartsTheSequence) {
    ErrorListener listener;
    EXPECT_EQ(mox_random_linear_init_u32(0), 0u);
    EXPECT_EQ(mox_random_linear_u32(), 1013904223u);
    EXPECT_EQ(mox_random_linear_u32(), 1196435762u);
    EXPECT_EQ(mox_random_linear_init_u32(0xFFFFFFFFu), 0xFFFFFFFFu);
    EXPECT_EQ(mox_random_linear_u32(), 1012239698u); // -1664525 + 1013904223
    EXPECT_EQ(mox_random_linear_init_u32(0), 0u);
    EXPECT_EQ(mox_random_linear_u32(), 1013904223u);
    EXPECT_TRUE(listener.silent());
}

TEST(RandomKiss, CannotBeRestarted) {
    // No entry touches the state but the generator: seeding the others changes nothing, and the values
    // go on from the three drawn at start. No other test draws from it.
    mox_random_linear_init_u32(0);
    mox_random_mother_of_all_init_u32(0);
    EXPECT_EQ(mox_random_kiss_u32(), 3350250922u);
    EXPECT_EQ(mox_random_kiss_u32(), 503087063u);
}

TEST(RandomMotherOfAll, SeedResultIsTheLowHalfOfTheLastStep) {
    EXPECT_EQ(mox_random_mother_of_all_init_u32(0), 2868466484u);
    // s = 1 gives 1013904223 + 1664525 = 1015568748 first.
    EXPECT_EQ(mox_random_mother_of_all_init_u32(1), 3027450565u);
}

TEST(RandomMax, IntegerIsTheRemainder) {
    ErrorListener listener;
    EXPECT_EQ(mox_random_max_u32_i32(17, 5), 2u);
    EXPECT_EQ(mox_random_max_u32_i32(0, 5), 0u);
    EXPECT_EQ(mox_random_max_u32_i32(0xFFFFFFFFu, 10), 5u);
    EXPECT_EQ(mox_random_max_u32_i32(4, 5), 4u);
    EXPECT_EQ(mox_random_max_u32_i32(5, 5), 0u);
    EXPECT_TRUE(listener.silent());
}

TEST(RandomMax, FloatScalesByTwoToTheMinus32) {
    EXPECT_EQ(mox_random_max_u32_r32(0, 123.5f), 0.0f);
    EXPECT_EQ(mox_random_max_u32_r32(0, -7.0f), 0.0f);
    EXPECT_EQ(mox_random_max_u32_r32(0x80000000u, 10.0f), 5.0f);
    EXPECT_EQ(mox_random_max_u32_r32(1, 1.0f), 0x1p-32f);
    // The top value lies 2^-32 below max, which single precision rounds to max itself.
    EXPECT_EQ(mox_random_max_u32_r32(0xFFFFFFFFu, 10.0f), 10.0f);
}

TEST(RandomRange, IntegerIgnoresLow) {
    ErrorListener listener;
    // Just below 10, truncated to 9; the 5 plays no part. Intended.
    EXPECT_EQ(mox_random_range_u32_i32(0xFFFFFFFFu, 5, 10), 9);
    EXPECT_EQ(mox_random_range_u32_i32(0, 5, 10), 0);
    EXPECT_EQ(mox_random_range_u32_i32(0x80000000u, 5, 10), 5);
    EXPECT_EQ(mox_random_range_u32_i32(0x80000000u, -1000, 10), 5);
    EXPECT_EQ(mox_random_range_u32_i32(0xFFFFFFFFu, 0, -10), -9); // toward zero
    EXPECT_EQ(mox_random_range_u32_i32(0xFFFFFFFFu, 0, INT32_MIN), -2147483647);
    EXPECT_TRUE(listener.silent());
}

TEST(RandomRange, FloatRunsFromLow) {
    EXPECT_EQ(mox_random_range_u32_r32(0, 2.5f, 10.0f), 2.5f);
    EXPECT_EQ(mox_random_range_u32_r32(0, -3.0f, -1.0f), -3.0f);
    EXPECT_EQ(mox_random_range_u32_r32(0x80000000u, 2.0f, 10.0f), 6.0f);
    EXPECT_EQ(mox_random_range_u32_r32(0x40000000u, 10.0f, 2.0f), 8.0f);
    // The top value rounds to high itself.
    EXPECT_EQ(mox_random_range_u32_r32(0xFFFFFFFFu, 2.0f, 10.0f), 10.0f);
}
