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

struct FoldCaseRow {
  std::u16string_view text;
  std::u16string_view folded;
};

constexpr FoldCaseRow kFolds[] = {
    {u"", u""},
    {u"abc_09 ~", u"abc_09 ~"},
    {u"ABCxyZ@[`{", u"abcxyz@[`{"},
    {u"Straße", u"strasse"},
    {u"STRASSE", u"strasse"},
    {u"\u1E9E", u"ss"},
    {u"ÄÖÜ×ÿÞ", u"äöü×ÿþ"},
    {u"A\u0308", u"ä"},
    {u"a\u0308b", u"äb"},
    {u"\u0130", u"i\u0307"},
    {u"I\u0307", u"i\u0307"},
    {u"\u0131", u"\u0131"},
    {u"ΣΊΣΥΦΟΣ", u"σίσυφοσ"},
    {u"Σίσυφος", u"σίσυφοσ"},
    {u"\u00B5m", u"\u03BCm"},
    {u"\u212B", u"å"},
    {u"\u01F0", u"\u01F0"},
    {u"J\u030C", u"\u01F0"},
    {u"\uFB03", u"ffi"},
    {u"\U00010400", u"\U00010428"},
    {u"q\u0307\u0323", u"q\u0323\u0307"},
};

TEST(FoldCase, BringsEqualTextsToOneForm) {
  std::u16string buffer;
  for (const FoldCaseRow& row : kFolds) {
    SCOPED_TRACE(Utf8(row.text));
    EXPECT_EQ(Utf8(row.folded), Utf8(FoldCase(row.text)));
    EXPECT_TRUE(FoldCase(row.text, buffer) == row.folded);
  }
}

TEST(FoldCase, TreatsEachPlaceOfATextAlike) {
  const std::u16string_view letters = u"AZaz@[`{\u007F\u00C4\u00D7\u00DF\u0416";
  const std::u16string_view folded[] = {u"a",      u"z",  u"a",     u"z",      u"@",
                                        u"[",      u"`",  u"{",     u"\u007F", u"\u00E4",
                                        u"\u00D7", u"ss", u"\u0436"};
  for (std::size_t length = 1; length <= 10; ++length) {
    for (std::size_t place = 0; place < length; ++place) {
      for (std::size_t i = 0; i < letters.size(); ++i) {
        std::u16string text(length, u'.');
        text[place] = letters[i];
        std::u16string expected(length, u'.');
        expected.replace(place, 1, folded[i]);
        ASSERT_EQ(Utf8(expected), Utf8(FoldCase(text)));
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

struct WildcardRow {
  std::u16string_view pattern;
  std::u16string_view text;
  bool matches;
};

constexpr WildcardRow kWildcards[] = {
    {u"", u"", true},
    {u"", u"a", false},
    {u"abc", u"abc", true},
    {u"abc", u"abcd", false},
    {u"*", u"", true},
    {u"**", u"anything", true},
    {u"?", u"", false},
    {u"?", u"a", true},
    {u"?", u"ab", false},
    {u"?", u"\U0001F600", true},
    {u"??", u"\U0001F600", false},
    {u"?", u"\xD83D", true},
    {u"*?", u"", false},
    {u"?*", u"x", true},
    {u"a*", u"a", true},
    {u"a*", u"ba", false},
    {u"*a", u"ba", true},
    {u"*a", u"ab", false},
    {u"*abc*", u"xxabcxx", true},
    {u"*abc*", u"xxabxcxx", false},
    {u"**abc**", u"abc", true},
    {u"a?c", u"abc", true},
    {u"a?c", u"ac", false},
    {u"a*b?c", u"a123bxbyc", true},
    {u"a*b?c", u"a123bxby", false},
    {u"*ab?", u"aabab", false},
    {u"*ab?", u"aababc", true},
    {u"a*a", u"a", false},
    {u"a*a", u"aa", true},
    {u"%_", u"%_", true},
    {u"%", u"a", false},
    {u"[a]", u"a", false},
    {u"\\*", u"\\x", true},
    {u"*ä?", u"xäö", true},
    {u"*\U0001F600?", u"..\U0001F600.", true},
    {u"*\xDE00", u"\U0001F600", false},
    {u"\xD83D*", u"\U0001F600", false},
    {u"*\xD83D*", u"\U0001F600", false},
    {u"*\xD83D*", u"\xD83D.", true},
};

TEST(WildcardPattern, MatchesWholeTexts) {
  for (const WildcardRow& row : kWildcards) {
    SCOPED_TRACE(Utf8(row.pattern) + " on " + Utf8(row.text));
    EXPECT_EQ(row.matches, WildcardPattern(row.pattern).Matches(row.text));
    // The same question asked of a pattern that is too long for the fast ways.
    const std::u16string lead(80, u'#');
    EXPECT_EQ(row.matches, WildcardPattern(lead + u"?*-" + std::u16string(row.pattern))
                               .Matches(lead + u"..-" + std::u16string(row.text)));
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

struct DateRow {
  std::u16string_view text;
  std::u16string_view date;  // empty: refused
};

constexpr DateRow kDates[] = {
    {u"2010", u"20100101000000"},
    {u"201002", u"20100201000000"},
    {u"20100203", u"20100203000000"},
    {u"2010020304", u"20100203040000"},
    {u"201002030405", u"20100203040500"},
    {u"20100203040506", u"20100203040506"},
    {u"20090517235959500", u"20090517235959"},
    {u"201002030405067", u"20100203040506"},
    {u"20100203040506123456789", u"20100203040506"},
    {u"201002030405061234567890", u""},
    {u"", u""},
    {u"201", u""},
    {u"20100", u""},
    {u"2010020304050", u""},
    {u"2010-02-03", u""},
    {u"20100203T1200", u""},
    {u" 2010", u""},
    {u"٢٠١٠", u""},
};

TEST(NormalizeDate14, PadsOrRefuses) {
  for (const DateRow& row : kDates) {
    SCOPED_TRACE(Utf8(row.text));
    const std::optional<Date14> date = NormalizeDate14(row.text);
    ASSERT_EQ(!row.date.empty(), date.has_value());
    if (date) {
      EXPECT_EQ(Utf8(row.date), Utf8(std::u16string_view(date->data(), date->size())));
    }
  }
}

}  // namespace
}  // namespace hv::vex::engine
