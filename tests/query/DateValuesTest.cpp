// query/DateValuesTest.cpp - relative ranges around month and year ends, and date notations.
#include "query/values/AttributeDataTypeHelper.h"
#include "query/values/DateNotation.h"
#include "query/values/RelativeRange.h"
#include "query/values/ValueFromText.h"

#include <storefabric/DataType.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace hv::vex {
namespace {

const StringTable& German() {
  static const auto* const table = new StringTable(*StringTable::Parse(
      "5000\tger\n5014\tHeute\n5016\tDatum vor\n5017\tDatum nach\n5018\tLetzte 7 Tage\n"));
  return *table;
}

std::string Show(const SystemTime& time) {
  char text[64];
  std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02d/%d", time.year, time.month, time.day,
                time.hour, time.minute, time.second, time.dayOfWeek);
  return text;
}

constexpr SystemTime kSunday{2009, 5, 0, 17, 13, 14, 15, 16};

TEST(RelativeRange, ReachesBackFromNow) {
  constexpr SystemTime kLeapMarch{2024, 3, 5, 1, 0, 0, 0, 0};
  constexpr SystemTime kNewYear{2000, 1, 6, 1, 23, 59, 59, 999};
  constexpr struct {
    std::u16string_view text;
    SystemTime now;
    std::string_view from, to;
  } kRanges[] = {
      {u"Today", kSunday, "20090517000000/0", "20090517235959/0"},
      {u"Yesterday", kSunday, "20090516000000/6", "20090516235959/6"},
      {u"LastSevenDays", kSunday, "20090510000000/0", "20090517131415/0"},
      {u"Last 7 days", kSunday, "20090510000000/0", "20090517131415/0"},
      {u"LastFourteenDays", kSunday, "20090503000000/0", "20090517131415/0"},
      {u"Last 14 days", kSunday, "20090503000000/0", "20090517131415/0"},
      {u"Last 30 days", kSunday, "20090417000000/5", "20090517131415/0"},
      {u"Yesterday", kLeapMarch, "20240229000000/4", "20240229235959/4"},
      {u"LastThirtyDays", kLeapMarch, "20240131000000/3", "20240301000000/5"},
      {u"Yesterday", kNewYear, "19991231000000/5", "19991231235959/5"},
      {u"LastSevenDays", kNewYear, "19991225000000/6", "20000101235959/6"},
      {u"today", kSunday, "20090517000000/0", "20090517131415/0"},  // no keyword: compared exactly
      {u"", kSunday, "20090517000000/0", "20090517131415/0"},
  };
  for (const auto& c : kRanges) {
    const DateRange range = RelativeRange(c.text, c.now);
    EXPECT_EQ(c.from, Show(range.from)) << cor::ToUtf8(c.text);
    EXPECT_EQ(c.to, Show(range.to)) << cor::ToUtf8(c.text);
    EXPECT_EQ(0, range.from.millisecond);
  }
}

TEST(RelativeRange, TakesKeywordsAndLocalNames) {
  EXPECT_TRUE(IsRelativeKeyword(u"Heute", German()));
  EXPECT_TRUE(IsRelativeKeyword(u"Today", German()));
  EXPECT_TRUE(IsRelativeKeyword(u"Last 30 days"));
  EXPECT_FALSE(IsRelativeKeyword(u"heute", German()));
  EXPECT_FALSE(IsRelativeKeyword(u"LASTSEVENDAYS"));
  EXPECT_FALSE(IsRelativeKeyword(u""));
  EXPECT_EQ("LastSevenDays", cor::ToUtf8(LocalNameToKeyword(u"Letzte 7 Tage", German())));
  EXPECT_EQ("Letzte 7 Tage", cor::ToUtf8(KeywordToLocalName(u"LastSevenDays", German())));
  EXPECT_EQ("sometime", cor::ToUtf8(LocalNameToKeyword(u"sometime")));
  EXPECT_EQ("sometime", cor::ToUtf8(KeywordToLocalName(u"sometime")));
  const DateRange byKeyword = RelativeRange(u"LastSevenDays", kSunday, German());
  const DateRange byName = RelativeRange(u"Letzte 7 Tage", kSunday, German());
  EXPECT_EQ(byKeyword.from, byName.from);
  EXPECT_EQ(byKeyword.to, byName.to);
}

TEST(RelativeRange, BoundsTheInterval) {
  constexpr SystemTime kFirst{0, 1, 6, 1, 1, 2, 3, 4};
  const auto last = AddDays(kFirst, 3652424);
  EXPECT_FALSE(last);  // beyond what an interval may be, though a date
  const auto far = AddDays(kFirst, kMaxDayInterval);
  ASSERT_TRUE(far);
  EXPECT_EQ("98991228010203/4", Show(*far).substr(0, 16));
  EXPECT_FALSE(AddDays(kFirst, kMaxDayInterval + 1));
  EXPECT_FALSE(AddDays(*far, -kMaxDayInterval - 1));
  EXPECT_EQ("00000101010203", Show(*AddDays(*far, -kMaxDayInterval)).substr(0, 14));
  EXPECT_FALSE(AddDays(kFirst, -1));
  EXPECT_FALSE(AddDays({9999, 12, 5, 31, 0, 0, 0, 0}, 1));
  EXPECT_FALSE(AddDays({2009, 2, 0, 30, 0, 0, 0, 0}, 0));
}

TEST(DateNotation, FollowsTheLanguage) {
  constexpr struct {
    std::u16string_view code;
    bool isLong;
    std::string_view picture, pattern, strftime;
  } kCases[] = {
      {u"ger", true, "dd.MM.yyyy HH:mm:ss", "DD.MM.YYYY hh:mm:ss", "%d.%m.%Y %H:%M:%S"},
      {u"ger", false, "dd.MM.yyyy", "DD.MM.YYYY", "%d.%m.%Y"},
      {u"jpn", true, "yyyy/MM/dd HH:mm:ss", "YYYY/MM/DD hh:mm:ss", "%Y/%m/%d %H:%M:%S"},
      {u"jpn", false, "yyyy/MM/dd", "YYYY/MM/DD", "%Y/%m/%d"},
      {u"eng", true, "MM/dd/yyyy HH:mm:ss", "MM/DD/YYYY hh:mm:ss", "%m/%d/%Y %H:%M:%S"},
      {u"fra", false, "MM/dd/yyyy", "MM/DD/YYYY", "%m/%d/%Y"},
      {u"", false, "MM/dd/yyyy", "MM/DD/YYYY", "%m/%d/%Y"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.code));
    const Language language = LanguageOfCode(c.code);
    const DateNotation& notation = DateNotationOf(language, c.isLong);
    EXPECT_EQ(c.picture, cor::ToUtf8(notation.picture));
    EXPECT_EQ(c.pattern, cor::ToUtf8(notation.pattern));
    EXPECT_EQ(c.strftime, cor::ToUtf8(notation.strftime));
    EXPECT_EQ(c.pattern, cor::ToUtf8(PictureToPattern(notation.picture, language)));
    EXPECT_EQ(c.pattern, cor::ToUtf8(StrftimeToPattern(notation.strftime, language)));
    if (c.isLong) {
      EXPECT_EQ(c.pattern, cor::ToUtf8(PictureToPattern(u"", language)));
      EXPECT_EQ(c.pattern, cor::ToUtf8(StrftimeToPattern(u"", language)));
    }
  }
  EXPECT_EQ(Language::German, LanguageOf(German()));
  EXPECT_EQ(Language::English, LanguageOf());
  EXPECT_EQ("D.M.YYYY h:m:s %y %",
            cor::ToUtf8(StrftimeToPattern(u"%#d.%#m.%Y %#H:%#M:%#S %y %", Language::German)));
}

TEST(DateNotation, HasATimeOfDayUnderBeforeAndAfter) {
  for (const std::u16string_view op : {u">=", u"<=", u"Date after", u"DATE BEFORE"}) {
    EXPECT_TRUE(HasTimeOfDay(op)) << cor::ToUtf8(op);
  }
  for (const std::u16string_view op : {u"=", u"#", u">", u"Date equal", u"Datum vor", u""}) {
    EXPECT_FALSE(HasTimeOfDay(op)) << cor::ToUtf8(op);
  }
  EXPECT_TRUE(HasTimeOfDay(u"Datum vor", German()));
}

TEST(ValueFromText, MakesNumbersOfWholeTextsOnly) {
  const std::tuple<std::u16string_view, std::int32_t, Variant> kCases[] = {
      {u"12", eI32, Variant::I4(12)},
      {u"-2147483648", eI32, Variant::I4(-2147483647 - 1)},
      {u"2147483648", eI64, Variant::I8(2147483648)},
      {u"+7", eByte, Variant::I4(7)},
      {u"1.5", eI32, Variant::R8(1.5)},
      {u"9223372036854775808", eI64, Variant::R8(9223372036854775808.0)},
      {u"12", eR64, Variant::R8(12)},
      {u"-1.5e3", eR32, Variant::R8(-1500)},
      {u"12", eU64, Variant::R8(12)},  // counts as no integer type
      {u"12", eNoType, Variant::R8(12)},
      {u"12", eString, Variant::Text(u"12")},
      {u"12", kTypeEnumeration, Variant::Text(u"12")},
      {u"2009", eTime, Variant::Text(u"2009")},
      {u"", eI32, Variant::Text(u"")},
      {u" 12", eI32, Variant::Text(u" 12")},
      {u"12 m", eR64, Variant::Text(u"12 m")},
      {u"1,5", eR64, Variant::Text(u"1,5")},
      {u"+-1", eI32, Variant::Text(u"+-1")},
      {u"1e999", eR64, Variant::Text(u"1e999")},
      {u"inf", eR64, Variant::Text(u"inf")},
      {u"nan", eR64, Variant::Text(u"nan")},
      {u"0x10", eI32, Variant::Text(u"0x10")},
      {u"\u0661", eI32, Variant::Text(u"\u0661")},
  };
  for (const auto& [text, dataType, expected] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(text));
    const Variant value = ValueFromText(text, dataType);
    ASSERT_EQ(expected.Type(), value.Type());
    VarOrder order = VarOrder::Null;
    EXPECT_EQ(S_OK, CompareVariants(expected, value, &order));
    EXPECT_EQ(VarOrder::Equal, order);
  }
}

TEST(DataTypes, AreOfOneKind) {
  std::string kinds;
  for (std::int32_t type = -1; type <= 31; ++type) {
    kinds += IsStringType(type)    ? 's'
             : IsIntegerType(type) ? 'i'
             : IsRealType(type)    ? 'r'
             : IsDateType(type)    ? 'd'
             : IsKnownType(type)   ? 'k'
                                   : '-';
  }
  EXPECT_EQ("--kiiiiiikrrkkkkkkkkkkkksskkkkkdk", kinds);
}

}  // namespace
}  // namespace hv::vex
