// cor/WStringTest.cpp - the wide string through its public face.
#include <storefabric/WString.h>

#include "cor/Exceptions.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <random>
#include <string>

namespace hv::cor {
namespace {

TEST(WString, ComparesWithoutCaseAndExactly) {
  const WString text(u"abc");
  EXPECT_TRUE(text == u"ABC");
  EXPECT_TRUE(text == std::u16string(u"aBc"));
  EXPECT_TRUE(text != u"ABD");
  EXPECT_TRUE(text < WString(u"B"));
  EXPECT_TRUE(text >= u"ABC");
  EXPECT_FALSE(text.EqualsExact(u"ABC"));
  EXPECT_GT(text.CompareExact(u"ABC"), 0);
  EXPECT_LT(text.CompareExact(u"abcd"), 0);
  EXPECT_TRUE(WString() == static_cast<const char16_t*>(nullptr));

  std::map<WString, int, NoCaseLess> noCase{{u"Name", 1}};
  EXPECT_EQ(1u, noCase.count(std::u16string_view(u"NAME")));
  std::map<WString, int, ExactLess> exact{{u"Name", 1}};
  EXPECT_EQ(0u, exact.count(std::u16string_view(u"NAME")));
}

TEST(WString, FindsPositionsOrMinusOne) {
  const WString text(u"a.b.c");
  struct {
    std::int64_t expected;
    std::int64_t found;
  } const cases[] = {
      {1, text.Find(u".")},
      {3, text.Find(u".", 2)},
      {-1, text.Find(u"x")},
      {-1, text.Find(u"A")},  // finding is exact
      {4, text.Find(u"", 4)},
      {-1, text.Find(u"", 5)},  // a start at the end finds nothing, not even nothing
      {-1, text.Find(u"", 99)},
      {1, text.FindFirstOf(u"b.")},
      {-1, text.FindFirstOf(u"b.", 5)},
      {1, text.FindFirstNotOf(u"ab")},
      {-1, text.FindFirstNotOf(u"abc.")},
      {-1, text.FindFirstNotOf(u"", 5)},
      {3, text.FindLastNotOf(u"c")},
      {-1, text.FindLastNotOf(u"abc.")},
      {-1, WString().Find(u"")},
      {-1, WString().FindLastNotOf(u"")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    EXPECT_EQ(c.expected, c.found);
  }
}

TEST(WString, SubstrAndReplaceTestTheirPositions) {
  WString text(u"abc");
  EXPECT_TRUE(text.Substr(3).empty());
  EXPECT_TRUE(text.Substr(1, 99).EqualsExact(u"bc"));
  EXPECT_TRUE(text.Substr(1, 1).EqualsExact(u"b"));
  for (const auto& bad :
       {+[](WString& t) { (void)t.Substr(4); }, +[](WString& t) { t.Replace(4, 0, u"x"); }}) {
    try {
      bad(text);
      ADD_FAILURE() << "accepted";
    } catch (const exception::OutOfRange2& e) {
      EXPECT_STREQ("Out of range: String offset out of range", e.what());
      EXPECT_STREQ("cor/StringBase", e.File());
      EXPECT_GT(e.Line(), 0);
    }
  }
  EXPECT_TRUE(text.EqualsExact(u"abc"));
  EXPECT_TRUE(text.Replace(1, 1, u"XYZ").EqualsExact(u"aXYZc"));
  EXPECT_TRUE(text.Replace(4, 99, u"").EqualsExact(u"aXYZ"));
  EXPECT_TRUE(text.Replace(4, 0, u"!").EqualsExact(u"aXYZ!"));
  EXPECT_TRUE(text.Replace(0, WString::npos, u"").empty());
  EXPECT_TRUE(WString(u"aXbXXc").ReplaceAll(u"X", u"XX").EqualsExact(u"aXXbXXXXc"));
  EXPECT_TRUE(WString(u"aXXXb").ReplaceAll(u"XX", u"").EqualsExact(u"aXb"));
  EXPECT_TRUE(WString(u"a").ReplaceAll(u"", u"X").EqualsExact(u"a"));
}

TEST(WString, TooLongRaisesAndLeavesTheString) {
  constexpr std::size_t kMost = std::numeric_limits<std::size_t>::max();
  WString text(u"abc");
  EXPECT_THROW(text.append(kMost, u'x'), exception::BoundExceeded);
  EXPECT_THROW(text.append(kMost - 2, u'x'), exception::BoundExceeded);
  EXPECT_THROW(text.append(kMost / 2, u'x'), exception::BoundExceeded);
  EXPECT_THROW(text.reserve(kMost), exception::BoundExceeded);
  EXPECT_THROW(text.reserve(kMost / 4 + 1), exception::BoundExceeded);
  EXPECT_TRUE(text.EqualsExact(u"abc"));
  // The text is never touched: the length alone is too much.
  const std::u16string_view endless(text.data(), kMost / 4);
  try {
    text.Replace(0, 0, endless);
    ADD_FAILURE() << "accepted";
  } catch (const exception::BoundExceeded2& e) {
    EXPECT_STREQ("A request was made that would exceed the bounds: Resulting string too large",
                 e.what());
  }
  EXPECT_TRUE(text.EqualsExact(u"abc"));
}

TEST(WString, TakesPartsOfItself) {
  WString text(u"0123456");  // fills its block to the end
  text.append(text);
  EXPECT_TRUE(text.EqualsExact(u"01234560123456"));
  text = text.view().substr(1, 3);
  EXPECT_TRUE(text.EqualsExact(u"123"));
  text.Replace(1, 1, text);
  EXPECT_TRUE(text.EqualsExact(u"11233"));
  text.ReplaceAll(text.view().substr(0, 1), text);
  EXPECT_TRUE(text.EqualsExact(u"1123311233233"));
  const WString& same = text;
  text = same;
  EXPECT_TRUE(text.EqualsExact(u"1123311233233"));
  WString moved(std::move(text));
  EXPECT_EQ(13u, moved.size());
  text = u"again";
  EXPECT_TRUE(text.EqualsExact(u"again"));
}

TEST(WString, AnyMixOfOperationsAsTheStandardString) {
  std::mt19937 random(99);
  WString ours;
  std::u16string theirs;
  for (int step = 0; step < 50000; ++step) {
    std::u16string piece(random() % 12, static_cast<char16_t>(u'a' + random() % 26));
    const std::size_t pos = random() % (theirs.size() + 1);
    const std::size_t count = random() % 20;
    switch (random() % 8) {
      case 0:
        ours.append(piece), theirs.append(piece);
        break;
      case 1:
        ours += u'x', theirs += u'x';
        break;
      case 2:
        ours.append(count, u'y'), theirs.append(count, u'y');
        break;
      case 3:
        ours.Replace(pos, count, piece), theirs.replace(pos, count, piece);
        break;
      case 4:
        ours = ours.Substr(pos), theirs = theirs.substr(pos);
        break;
      case 5:
        ours = WString(ours), ours.reserve(count);
        break;
      case 6:
        ours = piece, theirs = piece;
        break;
      default:
        ours = ours + piece, theirs = theirs + piece;
        break;
    }
    ASSERT_TRUE(ours.EqualsExact(theirs)) << step;
    ASSERT_EQ(0, ours.c_str()[ours.size()]);
    ASSERT_GE(ours.capacity(), ours.size());
  }
}

}  // namespace
}  // namespace hv::cor
