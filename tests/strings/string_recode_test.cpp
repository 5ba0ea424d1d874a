// Recoding between narrow text in a code page and wide text. On Linux the ANSI and OEM pages are
// UTF-8; the Windows and DOS pages convert through the system's converters.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include "support/code_pages.h"

#include <string>
#include <vector>

#include "support/error_listener.h"

using mox_test::ErrorListener;

namespace {

constexpr uint32_t kAnsi = 0;
constexpr uint32_t kOem = 1;
constexpr uint32_t kUtf8 = 65001;

std::u16string wide(const uint16_t* text) {
    std::u16string units;
    for (; text != nullptr && *text != 0; ++text)
        units.push_back(static_cast<char16_t>(*text));
    return units;
}

class Recoding : public ::testing::Test {
protected:
    void TearDown() override {
        mox_wstring_destruct(&units);
        mox_astring_destruct(&bytes);
    }

    // The units `text` becomes in `page`, after a true result.
    std::u16string to_wide(const char* text, uint32_t page) {
        EXPECT_EQ(mox_astring_to_wstring(&units, text, page), 1) << text;
        return wide(units);
    }
    std::string to_narrow(const std::u16string& text, uint32_t page) {
        std::vector<uint16_t> source(text.begin(), text.end());
        source.push_back(0);
        EXPECT_EQ(mox_wstring_to_astring(&bytes, source.data(), page), 1);
        return bytes == nullptr ? std::string() : std::string(bytes);
    }

    mox_wstring units = nullptr;
    mox_astring bytes = nullptr;
};

} // namespace

TEST(CodePages, TheAnsiAndOemPagesAreTheSystems) {
    EXPECT_EQ(mox_get_code_page(0), mox_test::system_ansi_page());
    EXPECT_EQ(mox_get_code_page(1), mox_test::system_oem_page());
#if !defined(_WIN32)
    EXPECT_EQ(mox_get_code_page(0), kUtf8);
    EXPECT_EQ(mox_get_code_page(1), kUtf8);
#endif
}

// Text in the ANSI and OEM pages converts as text of the pages they are.
TEST_F(Recoding, TheAnsiAndOemPagesConvertAsThePagesTheyAre) {
    const uint32_t ansi = mox_test::system_ansi_page();
    const uint32_t oem = mox_test::system_oem_page();
    if (ansi == kUtf8 && oem == kUtf8) {
        EXPECT_EQ(to_wide("\xC3\xA9", kAnsi), u"\u00E9");
        EXPECT_EQ(to_wide("\xC3\xA9", kOem), u"\u00E9");
    } else if (ansi == 1252 && oem == 437) {
        EXPECT_EQ(to_wide("\xE9", kAnsi), u"\u00E9");
        EXPECT_EQ(to_wide("\x82", kOem), u"\u00E9");
        EXPECT_EQ(to_narrow(u"\u00E9", kAnsi), "\xE9");
    } else {
        GTEST_SKIP() << "the texts here are written for the pages 65001, and 1252 with 437";
    }
}

TEST_F(Recoding, Utf8BecomesUtf16) {
    EXPECT_EQ(to_wide("abc", kUtf8), u"abc");
    EXPECT_EQ(to_wide("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", kUtf8), u"a\u00E9\u20AC\U0001F600");
    // Bytes that start no character become U+FFFD one by one.
    EXPECT_EQ(to_wide("a\xFF"
                      "b",
                      kUtf8),
              u"a\uFFFDb");
    EXPECT_EQ(to_wide("\xC3", kUtf8), u"\uFFFD");
    EXPECT_EQ(to_wide("\xC0\xAF", kUtf8), u"\uFFFD\uFFFD"); // overlong
#if defined(_WIN32)
    // Windows takes the first two bytes of an encoded surrogate as one bad sequence.
    EXPECT_EQ(to_wide("\xED\xA0\x80", kUtf8), u"\uFFFD\uFFFD"); // an encoded surrogate
#else
    EXPECT_EQ(to_wide("\xED\xA0\x80", kUtf8), u"\uFFFD\uFFFD\uFFFD"); // an encoded surrogate
#endif
}

TEST_F(Recoding, OtherPagesConvertThroughTheSystem) {
    EXPECT_EQ(to_wide("\xE9\x80", 1252), u"\u00E9\u20AC");
    EXPECT_EQ(to_wide("\x82\xB0", 437), u"\u00E9\u2591");
    EXPECT_EQ(to_wide("\xC0\xFF", 1251), u"\u0410\u044F");
    EXPECT_EQ(to_wide("\xE9", 28591), u"\u00E9");
#if defined(_WIN32)
    // Windows gives a byte that its page leaves undefined the control character of the same number.
    EXPECT_EQ(to_wide("a\x81"
                      "b",
                      1252),
              u"a\u0081b");
#else
    // A byte the page leaves undefined becomes U+FFFD.
    EXPECT_EQ(to_wide("a\x81"
                      "b",
                      1252),
              u"a\uFFFDb");
#endif
}

// Intended: an empty text and a page the system doesn't know both size to nothing, and nothing is
// what the conversion then gives, so the result is true with an empty string.
TEST_F(Recoding, EmptyTextsAndUnknownPagesGiveEmptyStrings) {
    EXPECT_EQ(to_wide("", kUtf8), u"");
    ASSERT_NE(units, nullptr);
    EXPECT_EQ(to_wide("abc", 12345), u"");
    EXPECT_EQ(to_narrow(u"", kUtf8), "");
    EXPECT_EQ(to_narrow(u"abc", 12345), "");
}

TEST_F(Recoding, Utf16BecomesUtf8) {
    EXPECT_EQ(to_narrow(u"abc", kUtf8), "abc");
    EXPECT_EQ(to_narrow(u"a\u00E9\u20AC\U0001F600", kUtf8), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    // A lone surrogate becomes U+FFFD.
    EXPECT_EQ(to_narrow(std::u16string(1, char16_t(0xD800)) + u"x", kUtf8), "\xEF\xBF\xBDx");
}

TEST_F(Recoding, Utf16BecomesAWindowsOrDosPage) {
    EXPECT_EQ(to_narrow(u"\u00E9\u20AC", 1252), "\xE9\x80");
    EXPECT_EQ(to_narrow(u"\u0410\u044F", 1251), "\xC0\xFF");
    // Characters the page lacks become "?", a surrogate pair as one.
    EXPECT_EQ(to_narrow(u"a\u20AC"
                        "b",
                        437),
              "a?b");
#if defined(_WIN32)
    // Windows gives each unit of the pair its own "?".
    EXPECT_EQ(to_narrow(u"\U0001F600!", 1252), "?"
                                                "?!");
#else
    EXPECT_EQ(to_narrow(u"\U0001F600!", 1252), "?!");
#endif
}

TEST_F(Recoding, NullArgumentsAreFalseAndSilent) {
    ErrorListener listener;
    EXPECT_EQ(mox_astring_to_wstring(nullptr, "a", kUtf8), 0);
    EXPECT_EQ(mox_astring_to_wstring(&units, nullptr, kUtf8), 0);
    const uint16_t text[] = {'a', 0};
    EXPECT_EQ(mox_wstring_to_astring(nullptr, text, kUtf8), 0);
    EXPECT_EQ(mox_wstring_to_astring(&bytes, nullptr, kUtf8), 0);
    EXPECT_EQ(units, nullptr);
    EXPECT_EQ(bytes, nullptr);
    EXPECT_EQ(mox_astring_convert(nullptr, 1252, kUtf8), 0);
    EXPECT_EQ(mox_astring_convert(&bytes, 1252, kUtf8), 0);
    EXPECT_EQ(mox_astring_buffer_convert(nullptr, 4, 1252, kUtf8), 0);
    // Our decision: a size beyond what the system conversions count is refused before any reading.
    char byte = 'a';
    EXPECT_EQ(mox_astring_buffer_convert(&byte, 0x80000000u, 1252, kUtf8), 0);
    EXPECT_EQ(byte, 'a');
    EXPECT_TRUE(listener.silent());
}

TEST_F(Recoding, ConvertRecodesAStringInItsSlot) {
    ASSERT_EQ(mox_astring_duplicate(&bytes, "caf\xC3\xA9 \xE2\x82\xAC"), 1);
    ASSERT_EQ(mox_astring_convert(&bytes, 1252, kUtf8), 1);
    EXPECT_EQ(std::string(bytes), "caf\xE9 \x80");
#if defined(_WIN32)
    // The ANSI page is no UTF-8 here; the way back names the page itself.
    ASSERT_EQ(mox_astring_convert(&bytes, kUtf8, 1252), 1);
#else
    ASSERT_EQ(mox_astring_convert(&bytes, kAnsi, 1252), 1);
#endif
    EXPECT_EQ(std::string(bytes), "caf\xC3\xA9 \xE2\x82\xAC");
    ASSERT_EQ(mox_astring_convert(&bytes, 437, kUtf8), 1);
    EXPECT_EQ(std::string(bytes), "caf\x82 ?");
}

TEST_F(Recoding, BufferConvertRecodesWithinTheBuffer) {
    char buffer[] = {'\xC3', '\xA9', 'x', 'y'};
    // Three characters come out as three bytes; the fourth byte stays as it was.
    ASSERT_EQ(mox_astring_buffer_convert(buffer, 4, 1252, kUtf8), 1);
    EXPECT_EQ(std::string(buffer, 4), "\xE9xyy");
    // Growing does not fit: nothing is written and the answer is false.
    char single[] = {'\xE9'};
    EXPECT_EQ(mox_astring_buffer_convert(single, 1, kUtf8, 1252), 0);
    EXPECT_EQ(single[0], '\xE9');
    // Three characters between two single-byte pages, one of them missing in the target page.
    char pair[] = {'\xE9', '\x80', 'z'};
    EXPECT_EQ(mox_astring_buffer_convert(pair, 3, 1251, 1252), 1);
#if defined(_WIN32)
    // Windows puts the nearest letter of the page, where it has one, for a missing character.
    EXPECT_EQ(std::string(pair, 3), "e\x88z");
#else
    EXPECT_EQ(std::string(pair, 3), "?\x88z");
#endif
    // Intended: more bytes than characters answers false, though the bytes were converted.
    char utf8[] = {'\xC3', '\xA9'};
    EXPECT_EQ(mox_astring_buffer_convert(utf8, 2, kUtf8, kUtf8), 0);
    EXPECT_EQ(std::string(utf8, 2), "\xC3\xA9");
    // An empty buffer converts nothing into nothing.
    char none[] = {'q'};
    EXPECT_EQ(mox_astring_buffer_convert(none, 0, 1252, kUtf8), 1);
    EXPECT_EQ(none[0], 'q');
}
