#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstring>

#include "support/code_pages.h"
#include "support/error_listener.h"

using mox_test::ErrorListener;

TEST(Library, VersionIsZeroPointOne) {
    uint32_t version = 0;
    mox_version(&version);
    EXPECT_EQ(version, 0x00010000u);
    mox_version(nullptr);
}

TEST(Library, VersionExtGivesTheFieldsOfTheVersionFromTheTopByteDown) {
    uint8_t a = 0xEE, b = 0xEE;
    uint16_t c = 0xEEEE;
    mox_version_ext(&a, &b, &c);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(c, 0);
    uint32_t version = 0;
    mox_version(&version);
    EXPECT_EQ((uint32_t(a) << 24) | (uint32_t(b) << 16) | c, version);
}

TEST(Library, VersionExtWritesOnlyThroughNonNullPointers) {
    uint8_t b = 0xEE;
    mox_version_ext(nullptr, &b, nullptr);
    EXPECT_EQ(b, 1);
    uint8_t a = 0xEE;
    uint16_t c = 0xEEEE;
    mox_version_ext(&a, nullptr, &c);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(c, 0);
    mox_version_ext(nullptr, nullptr, nullptr);
}

TEST(Library, AuthorFillsAStringSlot) {
    mox_astring author = nullptr;
    ASSERT_EQ(mox_author(&author), 1);
    ASSERT_NE(author, nullptr);
    EXPECT_STREQ(author, "The mox developers");
    EXPECT_EQ(mox_memory_free(reinterpret_cast<void**>(&author)), 1);
}

TEST(Library, AuthorReplacesWhatTheSlotHeld) {
    mox_astring author = nullptr;
    ASSERT_EQ(mox_memory_new(reinterpret_cast<void**>(&author), 64), 1);
    std::memset(author, 'x', 63);
    ASSERT_EQ(mox_author(&author), 1);
    EXPECT_STREQ(author, "The mox developers");
    mox_memory_free(reinterpret_cast<void**>(&author));
}

TEST(Library, AuthorOfANullSlotIsFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_author(nullptr), 0);
    EXPECT_TRUE(listener.silent());
}

TEST(Library, CodePagesAreTheSystemsAndOtherQuestionsGetZero) {
    EXPECT_EQ(mox_get_code_page(0), mox_test::system_ansi_page());
    EXPECT_EQ(mox_get_code_page(1), mox_test::system_oem_page());
    EXPECT_EQ(mox_get_code_page(2), 0u);
    EXPECT_EQ(mox_get_code_page(-1), 0u);
}

TEST(Library, SetCodePageChangesNothing) {
    mox_set_code_page();
    EXPECT_EQ(mox_get_code_page(0), mox_test::system_ansi_page());
    EXPECT_EQ(mox_get_code_page(1), mox_test::system_oem_page());
}

TEST(Library, SupportFlagsTellWhatThisBuildHas) {
    ErrorListener listener;
    EXPECT_EQ(mox_support_ansistring(), 1);
    EXPECT_EQ(mox_support_devil(), 1);
    EXPECT_EQ(mox_support_widestring(), 0);
    EXPECT_EQ(mox_support_directx3d9(), 0);
    EXPECT_EQ(mox_support_freetype(), 0);
    EXPECT_EQ(mox_support_mysql(), 0);
    EXPECT_EQ(mox_support_opengl(), 0);
    EXPECT_EQ(mox_support_socket(), 0);
    EXPECT_EQ(mox_support_sqlite3(), 0);
    EXPECT_TRUE(listener.silent());
}
