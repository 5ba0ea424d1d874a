#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

std::string hex(const uint8_t* digest) {
    std::string out;
    char pair[3];
    for (int i = 0; i < 16; ++i) {
        std::snprintf(pair, sizeof pair, "%02x", digest[i]);
        out += pair;
    }
    return out;
}

std::vector<uint8_t> bytes(const std::string& text) { return std::vector<uint8_t>(text.begin(), text.end()); }

std::string digest_of(const std::vector<uint8_t>& data) {
    uint8_t digest[16] = {};
    uint8_t empty = 0;
    EXPECT_EQ(mox_md5_call(data.empty() ? &empty : data.data(), static_cast<uint32_t>(data.size()), digest),
              1);
    return hex(digest);
}

std::string stepwise_digest_of(const std::vector<uint8_t>& data) {
    mox_md5 md5;
    uint8_t digest[16] = {};
    EXPECT_EQ(mox_md5_init(&md5), 1);
    if (!data.empty()) {
        EXPECT_EQ(mox_md5_update(&md5, data.data(), static_cast<int32_t>(data.size())), 1);
    }
    EXPECT_EQ(mox_md5_finish(&md5, digest), 1);
    return hex(digest);
}

std::string hmac_of(const std::vector<uint8_t>& key, const std::vector<uint8_t>& data) {
    uint8_t digest[16] = {};
    EXPECT_EQ(mox_md5_hmac_call(key.data(), static_cast<int32_t>(key.size()), data.data(),
                                static_cast<uint32_t>(data.size()), digest),
              1);
    return hex(digest);
}

std::string stepwise_hmac_of(const std::vector<uint8_t>& key, const std::vector<uint8_t>& data) {
    mox_md5 md5;
    uint8_t digest[16] = {};
    EXPECT_EQ(mox_md5_hmac_init(&md5, key.data(), static_cast<int32_t>(key.size())), 1);
    EXPECT_EQ(mox_md5_hmac_update(&md5, data.data(), static_cast<uint32_t>(data.size())), 1);
    EXPECT_EQ(mox_md5_hmac_finish(&md5, digest), 1);
    return hex(digest);
}

std::vector<uint8_t> pattern(size_t size) {
    std::vector<uint8_t> data(size);
    for (size_t i = 0; i < size; ++i)
        data[i] = static_cast<uint8_t>((i * 7 + 3) & 0xFF);
    return data;
}

struct Rfc1321Case {
    const char* message;
    const char* digest;
};

const Rfc1321Case kRfc1321Suite[] = {
    {"", "d41d8cd98f00b204e9800998ecf8427e"},
    {"a", "0cc175b9c0f1b6a831c399e269772661"},
    {"abc", "900150983cd24fb0d6963f7d28e17f72"},
    {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
    {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789", "d174ab98d277d9f5a5611c2c9f419d9f"},
    {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
     "57edf4a22be3c955ac49da2e2107b67a"},
};

} // namespace

TEST(Md5, Rfc1321SuiteInOneCall) {
    for (const auto& test : kRfc1321Suite)
        EXPECT_EQ(digest_of(bytes(test.message)), test.digest) << '"' << test.message << '"';
}

TEST(Md5, Rfc1321SuiteInThreeSteps) {
    for (const auto& test : kRfc1321Suite)
        EXPECT_EQ(stepwise_digest_of(bytes(test.message)), test.digest) << '"' << test.message << '"';
}

TEST(Md5, InitSetsTheCountAndTheState) {
    mox_md5 md5;
    std::memset(&md5, 0x5A, sizeof md5);
    ASSERT_EQ(mox_md5_init(&md5), 1);
    EXPECT_EQ(md5.count_low, 0u);
    EXPECT_EQ(md5.count_high, 0u);
    EXPECT_EQ(md5.a, 0x67452301u);
    EXPECT_EQ(md5.b, 0xEFCDAB89u);
    EXPECT_EQ(md5.c, 0x98BADCFEu);
    EXPECT_EQ(md5.d, 0x10325476u);
    // The header-sized space is left as it was.
    EXPECT_EQ(md5.header.class_id, 0x5A5A5A5Au);
    EXPECT_EQ(md5.header.flags, 0x5A5A5A5Au);
}

TEST(Md5, EveryDigestOfAMillionBytesAgrees) {
    const auto data = pattern(1 << 20);
    const char* expected = "d8a469bb35fb5fad7156842ba2242434";
    EXPECT_EQ(digest_of(data), expected);
    EXPECT_EQ(stepwise_digest_of(data), expected);
}

// Any split of the input into updates gives the digest of the whole.
TEST(Md5, EverySplitGivesTheSameDigest) {
    const auto data = pattern(200);
    const std::string whole = digest_of(data);
    for (size_t first = 1; first < data.size(); ++first) {
        for (size_t second = first; second < data.size(); second += 13) {
            mox_md5 md5;
            uint8_t digest[16];
            mox_md5_init(&md5);
            ASSERT_EQ(mox_md5_update(&md5, data.data(), static_cast<int32_t>(first)), 1);
            if (second > first) {
                ASSERT_EQ(mox_md5_update(&md5, data.data() + first, static_cast<int32_t>(second - first)), 1);
            }
            ASSERT_EQ(mox_md5_update(&md5, data.data() + second, static_cast<int32_t>(data.size() - second)),
                      1);
            mox_md5_finish(&md5, digest);
            ASSERT_EQ(hex(digest), whole) << first << ", " << second;
        }
    }
    mox_md5 md5;
    uint8_t digest[16];
    mox_md5_init(&md5);
    for (uint8_t byte : data)
        ASSERT_EQ(mox_md5_update(&md5, &byte, 1), 1);
    mox_md5_finish(&md5, digest);
    EXPECT_EQ(hex(digest), whole);
}

TEST(Md5, UpdateCountsTheBytesAndKeepsTheRestInTheBlock) {
    mox_md5 md5;
    mox_md5_init(&md5);
    const auto data = pattern(70);
    ASSERT_EQ(mox_md5_update(&md5, data.data(), 70), 1);
    EXPECT_EQ(md5.count_low, 70u);
    EXPECT_EQ(md5.count_high, 0u);
    EXPECT_EQ(std::memcmp(md5.block, data.data() + 64, 6), 0);
}

TEST(Md5, TheCountCarriesIntoTheHighWord) {
    mox_md5 md5;
    mox_md5_init(&md5);
    md5.count_low = 0xFFFFFFFE; // the block position is 62
    const auto data = pattern(5);
    ASSERT_EQ(mox_md5_update(&md5, data.data(), 5), 1);
    EXPECT_EQ(md5.count_low, 3u);
    EXPECT_EQ(md5.count_high, 1u);
    EXPECT_EQ(std::memcmp(md5.block, data.data() + 2, 3), 0);
}

TEST(Md5, UpdateRefusesAnEmptyOrMissingInputAndChangesNothing) {
    ErrorListener listener;
    mox_md5 md5;
    mox_md5_init(&md5);
    const auto data = pattern(10);
    mox_md5_update(&md5, data.data(), 10);
    mox_md5 before;
    std::memcpy(&before, &md5, sizeof md5);
    EXPECT_EQ(mox_md5_update(&md5, data.data(), 0), 0);
    EXPECT_EQ(mox_md5_update(&md5, data.data(), -1), 0);
    EXPECT_EQ(mox_md5_update(&md5, nullptr, 10), 0);
    EXPECT_EQ(mox_md5_update(nullptr, data.data(), 10), 0);
    EXPECT_EQ(std::memcmp(&before, &md5, sizeof md5), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Md5, NullArgumentsFailSilently) {
    ErrorListener listener;
    uint8_t digest[16] = {};
    uint8_t data[4] = {};
    EXPECT_EQ(mox_md5_init(nullptr), 0);
    EXPECT_EQ(mox_md5_finish(nullptr, digest), 0);
    EXPECT_EQ(mox_md5_call(nullptr, 4, digest), 0);
    EXPECT_EQ(mox_md5_hmac_init(nullptr, data, 4), 0);
    EXPECT_EQ(mox_md5_hmac_update(nullptr, data, 4), 0);
    EXPECT_EQ(mox_md5_hmac_finish(nullptr, digest), 0);
    EXPECT_EQ(mox_md5_hmac_call(nullptr, 4, data, 4, digest), 0);
    EXPECT_EQ(mox_md5_hmac_call(data, 4, nullptr, 4, digest), 0);
    mox_md5 md5;
    mox_md5_init(&md5);
    EXPECT_EQ(mox_md5_hmac_update(&md5, nullptr, 4), 0);
    EXPECT_EQ(hex(digest), "00000000000000000000000000000000");
    EXPECT_TRUE(listener.silent());
}

// The update is refused and finish pads an empty message.
TEST(Md5, AnEmptyCallGivesTheDigestOfNothing) {
    uint8_t digest[16];
    uint8_t data = 0x61;
    ASSERT_EQ(mox_md5_call(&data, 0, digest), 1);
    EXPECT_EQ(hex(digest), "d41d8cd98f00b204e9800998ecf8427e");
}

// Finish leaves the record as it is, so the count after the padding tells how many blocks were run.
TEST(Md5, FiftyFiveBytesEndInOneBlockAndFiftySixInTwo) {
    mox_md5 md5;
    uint8_t digest[16];
    const std::vector<uint8_t> a55(55, 'a'), a56(56, 'a');

    mox_md5_init(&md5);
    mox_md5_update(&md5, a55.data(), 55);
    ASSERT_EQ(mox_md5_finish(&md5, digest), 1);
    EXPECT_EQ(hex(digest), "ef1772b6dff9a122358552954ad0df65");
    EXPECT_EQ(md5.count_low, 64u);

    mox_md5_init(&md5);
    mox_md5_update(&md5, a56.data(), 56);
    ASSERT_EQ(mox_md5_finish(&md5, digest), 1);
    EXPECT_EQ(hex(digest), "3b0c8ac703f828b04c6c197006d17218");
    EXPECT_EQ(md5.count_low, 128u);
}

TEST(Md5, FinishWritesTheStateLittleEndianAndKeepsIt) {
    mox_md5 md5;
    uint8_t digest[16];
    mox_md5_init(&md5);
    mox_md5_update(&md5, "abc", 3);
    ASSERT_EQ(mox_md5_finish(&md5, digest), 1);
    EXPECT_EQ(hex(digest), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(md5.a, 0x98500190u);
    EXPECT_EQ(md5.d, 0x727fe128u);
}

TEST(Md5Hmac, Rfc2202Cases) {
    EXPECT_EQ(hmac_of(std::vector<uint8_t>(16, 0x0b), bytes("Hi There")), "9294727a3638bb1c13f48ef8158bfc9d");
    EXPECT_EQ(hmac_of(bytes("Jefe"), bytes("what do ya want for nothing?")),
              "750c783e6ab0b503eaa86e310a5db738");
    EXPECT_EQ(hmac_of(std::vector<uint8_t>(16, 0xaa), std::vector<uint8_t>(50, 0xdd)),
              "56be34521d144c88dbb8c733f0e8b3f6");
    std::vector<uint8_t> key25;
    for (uint8_t i = 1; i <= 25; ++i)
        key25.push_back(i);
    EXPECT_EQ(hmac_of(key25, std::vector<uint8_t>(50, 0xcd)), "697eaf0aca3a3aea3a75164746ffaa79");
    EXPECT_EQ(hmac_of(std::vector<uint8_t>(16, 0x0c), bytes("Test With Truncation")),
              "56461ef2342edc00f9bab995690efd4c");
    EXPECT_EQ(hmac_of(std::vector<uint8_t>(80, 0xaa),
                      bytes("Test Using Larger Than Block-Size Key - Hash Key First")),
              "6b1ab7fe4bd7bf8f0b62e6ce61b9d0cd");
    EXPECT_EQ(hmac_of(std::vector<uint8_t>(80, 0xaa),
                      bytes("Test Using Larger Than Block-Size Key and Larger Than One Block-Size Data")),
              "6f630fad67cda0ee1fb1f562db3aa53e");
}

TEST(Md5Hmac, Rfc2202CasesInThreeSteps) {
    EXPECT_EQ(stepwise_hmac_of(bytes("Jefe"), bytes("what do ya want for nothing?")),
              "750c783e6ab0b503eaa86e310a5db738");
    EXPECT_EQ(
        stepwise_hmac_of(std::vector<uint8_t>(80, 0xaa),
                         bytes("Test Using Larger Than Block-Size Key and Larger Than One Block-Size Data")),
        "6f630fad67cda0ee1fb1f562db3aa53e");
}

TEST(Md5Hmac, QuickBrownFox) {
    EXPECT_EQ(hmac_of(bytes("key"), bytes("The quick brown fox jumps over the lazy dog")),
              "80070713463e7749b90c2dc24911e275");
}

TEST(Md5Hmac, InitFillsThePadsAndTakesTheInnerOne) {
    mox_md5 md5;
    const auto key = bytes("Jefe");
    ASSERT_EQ(mox_md5_hmac_init(&md5, key.data(), 4), 1);
    for (int i = 0; i < 64; ++i) {
        uint8_t k = i < 4 ? key[i] : 0;
        ASSERT_EQ(md5.inner_pad[i], k ^ 0x36) << i;
        ASSERT_EQ(md5.outer_pad[i], k ^ 0x5C) << i;
    }
    EXPECT_EQ(md5.count_low, 64u);
    EXPECT_EQ(md5.count_high, 0u);
}

TEST(Md5Hmac, ALongerKeyThanABlockGoesThroughTheDigestFirst) {
    const auto key65 = pattern(65);
    uint8_t key_digest[16];
    ASSERT_EQ(mox_md5_call(key65.data(), 65, key_digest), 1);
    const std::vector<uint8_t> short_key(key_digest, key_digest + 16);
    const auto data = bytes("payload");
    EXPECT_EQ(hmac_of(key65, data), hmac_of(short_key, data));
    mox_md5 md5;
    mox_md5_hmac_init(&md5, key65.data(), 65);
    EXPECT_EQ(md5.inner_pad[0], key_digest[0] ^ 0x36);
    EXPECT_EQ(md5.inner_pad[16], 0x36);
}

TEST(Md5Hmac, AKeyOfExactlyABlockIsUsedAsItIs) {
    const auto key64 = pattern(64);
    mox_md5 md5;
    ASSERT_EQ(mox_md5_hmac_init(&md5, key64.data(), 64), 1);
    for (int i = 0; i < 64; ++i) {
        ASSERT_EQ(md5.inner_pad[i], key64[i] ^ 0x36) << i;
        ASSERT_EQ(md5.outer_pad[i], key64[i] ^ 0x5C) << i;
    }
    uint8_t key_digest[16];
    mox_md5_call(key64.data(), 64, key_digest);
    const auto data = bytes("payload");
    EXPECT_NE(hmac_of(key64, data), hmac_of(std::vector<uint8_t>(key_digest, key_digest + 16), data));
}

// A missing key, or a key size below 1, is the empty key.
TEST(Md5Hmac, AMissingKeyIsTheEmptyKey) {
    mox_md5 md5;
    uint8_t digest[16];
    ASSERT_EQ(mox_md5_hmac_init(&md5, nullptr, 10), 1);
    ASSERT_EQ(mox_md5_hmac_finish(&md5, digest), 1);
    EXPECT_EQ(hex(digest), "74e6f7298a9c2d168935f58c001bad88");
    uint8_t key = 'k';
    uint8_t data = 0;
    ASSERT_EQ(mox_md5_hmac_call(&key, -3, &data, 0, digest), 1);
    EXPECT_EQ(hex(digest), "74e6f7298a9c2d168935f58c001bad88");
}

TEST(Md5Hmac, UpdateOfNothingIsTrue) {
    mox_md5 md5;
    uint8_t digest[16];
    const auto key = bytes("key");
    const auto data = bytes("The quick brown fox jumps over the lazy dog");
    mox_md5_hmac_init(&md5, key.data(), 3);
    EXPECT_EQ(mox_md5_hmac_update(&md5, data.data(), 0), 1);
    EXPECT_EQ(md5.count_low, 64u);
    EXPECT_EQ(mox_md5_hmac_update(&md5, data.data(), static_cast<uint32_t>(data.size())), 1);
    mox_md5_hmac_finish(&md5, digest);
    EXPECT_EQ(hex(digest), "80070713463e7749b90c2dc24911e275");
}

TEST(Md5Hmac, EverySplitGivesTheSameDigest) {
    const auto key = bytes("a key of some length");
    const auto data = pattern(300);
    const std::string whole = hmac_of(key, data);
    for (size_t split = 0; split <= data.size(); ++split) {
        mox_md5 md5;
        uint8_t digest[16];
        mox_md5_hmac_init(&md5, key.data(), static_cast<int32_t>(key.size()));
        mox_md5_hmac_update(&md5, data.data(), static_cast<uint32_t>(split));
        mox_md5_hmac_update(&md5, data.data() + split, static_cast<uint32_t>(data.size() - split));
        mox_md5_hmac_finish(&md5, digest);
        ASSERT_EQ(hex(digest), whole) << split;
    }
}

TEST(Md5Hmac, FinishStartsOverWithTheOuterPad) {
    mox_md5 md5;
    uint8_t digest[16];
    const auto key = bytes("key");
    mox_md5_hmac_init(&md5, key.data(), 3);
    mox_md5_hmac_update(&md5, "abc", 3);
    ASSERT_EQ(mox_md5_hmac_finish(&md5, digest), 1);
    // The outer hash took one pad block and 16 bytes, then its own padding to two blocks.
    EXPECT_EQ(md5.count_low, 128u);
    EXPECT_EQ(md5.outer_pad[0], 'k' ^ 0x5C);
}
