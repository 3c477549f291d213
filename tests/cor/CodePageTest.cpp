// cor/CodePageTest.cpp - UTF-8 and the code pages.
#include "cor/CodePage.h"

#include "cor/Exceptions.h"
#include "cor/osdep/OSException.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <random>
#include <string>

namespace hv::cor {
namespace {

TEST(Utf8, MalformedPiecesBecomeReplacements) {
  using namespace std::string_view_literals;
  const struct {
    const char* name;
    std::string_view bytes;
    std::u16string_view text;
  } cases[] = {
      {"Zero", "a\0b"sv, u"a\0b"sv},
      {"Last", "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
      {"BeyondLast", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"Overlong", "\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
      {"CutOff", "12345678\xF0\x9F\x9A", u"12345678\uFFFD"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_TRUE(FromUtf8(c.bytes).EqualsExact(c.text));
  }
  EXPECT_EQ(
      "a\xEF\xBF\xBD"
      "b\xEF\xBF\xBD",
      ToUtf8(u"a\xD800"
             u"b\xDC00"));
}

TEST(Utf8, RandomBytesAsTheUnicodeLibrary) {
  std::mt19937 random(7);
  for (int round = 0; round < 50000; ++round) {
    std::string bytes;
    for (auto length = random() % 24; length > 0; --length) {
      // Mostly bytes that matter for the structure.
      constexpr unsigned char kBytes[] = {0x20, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0,
                                          0xBF, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xED,
                                          0xEF, 0xF0, 0xF3, 0xF4, 0xF5, 0xFF};
      bytes += static_cast<char>(kBytes[random() % std::size(kBytes)]);
    }
    char16_t units[64];
    std::int32_t count = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units, 64, &count, bytes.data(), static_cast<std::int32_t>(bytes.size()),
                         0xFFFD, nullptr, &status);
    const std::u16string_view expected(units, static_cast<std::size_t>(count));
    const WString text = FromUtf8(bytes);
    ASSERT_TRUE(text.EqualsExact(expected)) << ::testing::PrintToString(bytes);
    // What came out has no halves of pairs, so it survives the way back.
    ASSERT_TRUE(FromUtf8(ToUtf8(text)).EqualsExact(text));
  }
}

TEST(CodePage, ConvertsBothWays) {
  const struct {
    const char* name;
    std::uint32_t page;
    std::u16string_view text;
    std::string_view bytes;
  } cases[] = {
      {"PlatformDefault", 0, u"\u00e4\u20ac", "\xC3\xA4\xE2\x82\xAC"},
      {"Utf8", 65001, u"\u00e4", "\xC3\xA4"},
      {"Ascii", 20127, u"abc", "abc"},
      {"Latin1", 28591, u"\u00e4", "\xE4"},
      {"Latin9", 28605, u"\u20ac", "\xA4"},
      {"WesternEurope", 1252, u"\u20ac\u00e4", "\x80\xE4"},
      {"Cyrillic", 1251, u"\u0416", "\xC6"},
      {"Dos", 850, u"\u00e4", "\x84"},
      {"Japanese", 932, u"\u65e5\u672c\uff71", "\x93\xFA\x96\x7B\xB1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    CodePage page(c.page);
    for (int twice = 0; twice < 2; ++twice) {
      EXPECT_EQ(c.bytes, page.ToBytes(c.text));
      EXPECT_TRUE(page.ToWide(c.bytes).EqualsExact(c.text));
    }
  }
}

TEST(CodePage, ReplacesWhatHasNoPlace) {
  EXPECT_EQ("a?b", CodePage(20127).ToBytes(u"a\u00e4b"));
  EXPECT_EQ("??", CodePage(1252).ToBytes(u"\u65e5\u672c"));
  EXPECT_TRUE(CodePage(20127).ToWide("a\xE4").EqualsExact(u"a\uFFFD"));
  const std::string longBytes(100000, 'x');
  EXPECT_EQ(longBytes, CodePage(932).ToBytes(CodePage(932).ToWide(longBytes)));
}

TEST(CodePage, AnUnknownNumberShowsAtTheFirstText) {
  CodePage page(12345);
  EXPECT_EQ("", page.ToBytes(u""));
  EXPECT_TRUE(page.ToWide("").empty());
  for (int twice = 0; twice < 2; ++twice) {
    EXPECT_THROW((void)page.ToBytes(u"x"), osdep::WinError);
    EXPECT_THROW((void)page.ToWide("x"), osdep::WinError);
  }
}

TEST(CodePage, NamesOfCharacterSets) {
  EXPECT_EQ(0u, CodePageOfCharset(""));
  EXPECT_EQ(20127u, CodePageOfCharset("US-ASCII"));
  EXPECT_EQ(932u, CodePageOfCharset("cp932"));
  for (const char* unknown : {"Shift_JIS", "us-ascii", "CP932", "UTF-8", " "}) {
    EXPECT_THROW((void)CodePageOfCharset(unknown), exception::InvalidLocale) << unknown;
  }
}

}  // namespace
}  // namespace hv::cor
