// core/query/TextMatchTest.cpp - folding, wildcards and comparable dates.
#include "core/query/TextMatch.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "cor/Exceptions.h"
#include "storefabric/WString.h"

namespace hv::vex::engine {
namespace {

std::string Utf8(std::u16string_view text) { return cor::ToUtf8(text); }

/// Rows of tables are words such as "left>right".
std::vector<std::u16string_view> Words(std::u16string_view text) {
  std::vector<std::u16string_view> words;
  for (std::size_t begin = 0, end = 0; end != text.npos; begin = end + 1) {
    end = text.find(u' ', begin);
    words.push_back(text.substr(begin, end - begin));
  }
  return words;
}
std::pair<std::u16string_view, std::u16string_view> Sides(std::u16string_view row, char16_t sign) {
  const std::size_t at = row.find(sign);
  return {row.substr(0, at), row.substr(at + 1)};
}

TEST(FoldCase, BringsEqualTextsToOneForm) {
  const auto rows = Words(
      u"> abc_09~>abc_09~ ABCxyZ@[`{>abcxyz@[`{ Straße>strasse STRASSE>strasse \u1E9E>ss "
      u"ÄÖÜ×ÿÞ>äöü×ÿþ A\u0308>ä a\u0308b>äb \u0130>i\u0307 I\u0307>i\u0307 \u0131>\u0131 "
      u"ΣΊΣΥΦΟΣ>σίσυφοσ Σίσυφος>σίσυφοσ \u00B5m>\u03BCm \u212B>å \u01F0>\u01F0 J\u030C>\u01F0 "
      u"\uFB03>ffi \U00010400>\U00010428 q\u0307\u0323>q\u0323\u0307");
  std::u16string buffer;
  for (const std::u16string_view row : rows) {
    SCOPED_TRACE(Utf8(row));
    const auto [text, folded] = Sides(row, u'>');
    EXPECT_EQ(Utf8(folded), Utf8(FoldCase(text)));
    EXPECT_TRUE(FoldCase(text, buffer) == folded);
  }
}

TEST(FoldCase, TreatsEachPlaceOfATextAlike) {
  constexpr std::u16string_view kLetters[][2] = {
      {u"A", u"a"}, {u"Z", u"z"},  {u"a", u"a"}, {u"z", u"z"},           {u"@", u"@"},
      {u"[", u"["}, {u"`", u"`"},  {u"{", u"{"}, {u"\u007F", u"\u007F"}, {u"Ä", u"ä"},
      {u"×", u"×"}, {u"ß", u"ss"}, {u"Ж", u"ж"}};
  for (std::size_t length = 1; length <= 10; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      for (const auto& [letter, folded] : kLetters) {
        const auto with = [&](std::u16string_view part) {
          return std::u16string(length, u'.').replace(place, 1, part);
        };
        ASSERT_EQ(Utf8(with(folded)), Utf8(FoldCase(with(letter))));
      }
    }
  }
}

TEST(FoldCase, LeavesFoldedTextWhereItIs) {
  std::u16string buffer;
  const std::u16string_view text = u"already folded äöü";
  EXPECT_EQ(text.data(), FoldCase(text, buffer).data());
  EXPECT_TRUE(buffer.empty());
}

TEST(FoldCase, ChangesNothingTheSecondTime) {
  for (char32_t c = 0; c < 0x30000; ++c) {
    std::u16string text;
    if (c < 0x10000) {
      text = static_cast<char16_t>(c);  // unpaired surrogates included
    } else {
      text = {static_cast<char16_t>(0xD7C0 + (c >> 10)),
              static_cast<char16_t>(0xDC00 + (c & 0x3FF))};
    }
    const std::u16string once = FoldCase(text);
    ASSERT_TRUE(FoldCase(once) == once) << std::hex << static_cast<std::uint32_t>(c);
  }
}

TEST(WildcardPattern, MatchesWholeTexts) {
  // A pattern and a text: "~" it matches, "#" it doesn't.
  const auto rows = Words(
      u"abc~abc abc#abcd *~ **~anything ?# ?~a ?#ab ?~\U0001F600 ??#\U0001F600 ?~\xD83D *?# ?*~x "
      u"a*~a a*#ba *a~ba *a#ab *abc*~xxabcxx *abc*#xxabxcxx **abc**~abc a?c~abc a?c#ac "
      u"a*b?c~a123bxbyc a*b?c#a123bxby *ab?#aabab *ab?~aababc a*a#a a*a~aa %_~%_ %#a [a]#a "
      u"\\*~\\x *ä?~xäö *\U0001F600?~..\U0001F600. *\xDE00#\U0001F600 \xD83D*#\U0001F600 "
      u"*\xD83D*#\U0001F600 *\xD83D*~\xD83D.");
  for (const std::u16string_view row : rows) {
    SCOPED_TRACE(Utf8(row));
    const bool expected = row.find(u'~') != row.npos;
    const auto [pattern, text] = Sides(row, expected ? u'~' : u'#');
    EXPECT_EQ(expected, WildcardPattern(pattern).Matches(text));
    // The same question asked of a pattern that is too long for the fast ways.
    const std::u16string lead(80, u'#');
    EXPECT_EQ(expected, WildcardPattern(lead + u"?*-" + std::u16string(pattern))
                            .Matches(lead + u"..-" + std::u16string(text)));
  }
}

TEST(WildcardPattern, TellsWhatAnIndexCanUse) {
  EXPECT_TRUE(WildcardPattern(u"abc").IsLiteral());
  EXPECT_TRUE(WildcardPattern(u"abc").LiteralPrefix() == u"abc");
  EXPECT_TRUE(WildcardPattern(u"abc**").IsPrefix());
  EXPECT_TRUE(WildcardPattern(u"ab?c*").LiteralPrefix() == u"ab");
  EXPECT_FALSE(WildcardPattern(u"ab?c*").IsPrefix());
  EXPECT_TRUE(WildcardPattern(u"*a").LiteralPrefix().empty());
}

// The definition, tried on every way to divide a text.
bool SlowMatch(std::u16string_view pattern, std::u16string_view text) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == u'*') {
    return SlowMatch(pattern.substr(1), text) ||
           (!text.empty() && SlowMatch(pattern, text.substr(1)));
  }
  return !text.empty() && (pattern[0] == u'?' || pattern[0] == text[0]) &&
         SlowMatch(pattern.substr(1), text.substr(1));
}

TEST(WildcardPattern, AgreesWithItsDefinition) {
  std::mt19937 random(20090517);
  const auto draw = [&](std::u16string_view letters, std::size_t longest) {
    std::u16string text(random() % (longest + 1), u' ');
    for (char16_t& unit : text) unit = letters[random() % letters.size()];
    return text;
  };
  std::size_t hits = 0;
  for (int i = 0; i < 50000; ++i) {
    const std::u16string pattern = draw(u"ab?*ä", 7);
    const std::u16string text = draw(u"aabä", 9);
    const bool expected = SlowMatch(pattern, text);
    hits += expected ? 1 : 0;
    ASSERT_EQ(expected, WildcardPattern(pattern).Matches(text)) << Utf8(pattern + u" on " + text);
  }
  EXPECT_GT(hits, 1000u);
}

TEST(WildcardPattern, StaysFastOnPatternsMadeToHurt) {
  using Clock = std::chrono::steady_clock;
  std::u16string shortPattern;
  for (int i = 0; i < 30; ++i) shortPattern += u"a*";
  std::u16string longPattern;
  for (int i = 0; i < 200; ++i) longPattern += u"a*?";
  const std::u16string text(100000, u'a');
  const auto start = Clock::now();
  EXPECT_FALSE(WildcardPattern(shortPattern + u"b").Matches(text));
  EXPECT_TRUE(WildcardPattern(shortPattern + u"b").Matches(text + u"b"));
  EXPECT_FALSE(WildcardPattern(longPattern + u"b").Matches(text));
  EXPECT_FALSE(WildcardPattern(u"*" + std::u16string(50, u'a') + u"b*").Matches(text));
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
}

TEST(NormalizeDate14, PadsOrRefuses) {
  auto rows = Words(
      u"2010>20100101000000 201002>20100201000000 20100203>20100203000000 "
      u"2010020304>20100203040000 201002030405>20100203040500 20100203040506>20100203040506 "
      u"20090517235959500>20090517235959 201002030405067>20100203040506 "
      u"20100203040506123456789>20100203040506 201002030405061234567890>refused >refused "
      u"201>refused 20100>refused 2010020304050>refused 2010-02-03>refused 20100203T1200>refused "
      u"٢٠١٠>refused");
  rows.push_back(u" 2010>refused");
  for (const std::u16string_view row : rows) {
    const auto [text, expected] = Sides(row, u'>');
    const std::optional<Date14> date = NormalizeDate14(text);
    EXPECT_EQ(Utf8(expected), date ? std::string(date->begin(), date->end()) : "refused")
        << Utf8(row);
  }
}

}  // namespace
}  // namespace hv::vex::engine
