// The one-call digests work on a record of their own on the stack: they take nothing from the heap.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "core/memory.h"

TEST(Md5Internal, OneCallDigestsAllocateNothing) {
    std::vector<uint8_t> data(100000, 0x5A);
    const char key[] = "a key longer than one block of sixty-four bytes, so that it is hashed first";
    uint8_t digest[16];
    uint8_t hmac[16];
    mox::MemoryCounters before = mox::memory_counters();
    ASSERT_EQ(mox_md5_call(data.data(), static_cast<uint32_t>(data.size()), digest), 1);
    ASSERT_EQ(mox_md5_hmac_call(key, static_cast<int32_t>(std::strlen(key)), data.data(),
                                static_cast<uint32_t>(data.size()), hmac),
              1);
    mox::MemoryCounters after = mox::memory_counters();
    EXPECT_EQ(after.allocations, before.allocations);
    EXPECT_EQ(after.releases, before.releases);

    // The same digests through the three steps, so that the calls above did their work.
    mox_md5 context;
    uint8_t stepped[16];
    ASSERT_EQ(mox_md5_init(&context), 1);
    ASSERT_EQ(mox_md5_update(&context, data.data(), static_cast<int32_t>(data.size())), 1);
    ASSERT_EQ(mox_md5_finish(&context, stepped), 1);
    EXPECT_EQ(std::memcmp(stepped, digest, 16), 0);
}
