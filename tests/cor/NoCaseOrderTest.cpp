// cor/NoCaseOrderTest.cpp - the fast order against the collation that it stands for.
#include <storefabric/WString.h>

#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <random>
#include <string>

namespace hv::cor {
namespace {

class NoCaseOrder : public ::testing::Test {
 protected:
  NoCaseOrder() {
    UErrorCode status = U_ZERO_ERROR;
    m_collator = ucol_open("", &status);
    ucol_setStrength(m_collator, UCOL_SECONDARY);
  }
  ~NoCaseOrder() override { ucol_close(m_collator); }

  int Collate(std::u16string_view a, std::u16string_view b) const {
    return ucol_strcoll(m_collator, a.data(), static_cast<std::int32_t>(a.size()), b.data(),
                        static_cast<std::int32_t>(b.size()));
  }

 private:
  UCollator* m_collator = nullptr;
};

TEST_F(NoCaseOrder, AllPairsOfAsciiCharactersAsTheCollation) {
  for (char16_t a = 1; a < 128; ++a) {
    for (char16_t b = 1; b < 128; ++b) {
      const std::u16string_view x(&a, 1);
      const std::u16string_view y(&b, 1);
      ASSERT_EQ(Collate(x, y), CompareNoCase(x, y)) << int{a} << " and " << int{b};
    }
  }
}

TEST_F(NoCaseOrder, RandomTextsAsTheCollation) {
  std::mt19937 random(20240611);
  const std::u16string alphabets[] = {u"abAB01_-. \t\x01\x7F", u"aAbBzZ",
                                      u"aA\u00e4\u00c4\u0301\u00df\u4e00e",
                                      u"l\u00b7L\u0301a\U0001F697",
                                      u"\x01\x02"
                                      u"a"};
  for (const std::u16string& alphabet : alphabets) {
    for (int round = 0; round < 40000; ++round) {
      std::u16string texts[2];
      for (std::u16string& text : texts) {
        for (auto length = random() % 8; length > 0; --length) {
          text += alphabet[random() % alphabet.size()];
        }
      }
      ASSERT_EQ(Collate(texts[0], texts[1]), CompareNoCase(texts[0], texts[1]))
          << ToUtf8(texts[0]) << " and " << ToUtf8(texts[1]);
    }
  }
}

TEST_F(NoCaseOrder, CasesThatUsersMeet) {
  using namespace std::string_view_literals;
  const struct {
    const char* name;
    std::u16string_view a;
    std::u16string_view b;
    int order;
  } cases[] = {
      {"CaseIsIgnored", u"abc", u"ABC", 0},
      {"UmlautCaseIsIgnored", u"M\u00c4RZ", u"m\u00e4rz", 0},
      {"AccentsCount", u"a", u"\u00e4", -1},
      {"AccentsAreNoLetters", u"\u00e4a", u"ab", -1},
      {"ComposedEqualsDecomposed", u"\u00e9", u"e\u0301", 0},
      {"ShorterFirst", u"abc", u"abcd", -1},
      {"DigitsBeforeLetters", u"a1", u"aa", -1},
      {"PunctuationCounts", u"ab", u"a-b", 1},
      {"Empty", u"", u"", 0},
      {"ZeroDoesNotEnd", u"a\0b"sv, u"A\0c"sv, -1},
      {"ZeroShorterFirst", u"a\0"sv, u"a", 1},
      {"ZeroLast", u"a\0b"sv, u"A\0"sv, 1},
      {"ZeroIgnoresCase", u"a\0B"sv, u"A\0b"sv, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.order, CompareNoCase(c.a, c.b));
    EXPECT_EQ(-c.order, CompareNoCase(c.b, c.a));
  }
}

}  // namespace
}  // namespace hv::cor
