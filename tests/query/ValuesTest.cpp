// query/ValuesTest.cpp - values of conditions: operators, lists, relative ranges, dates, numbers.
#include "automation/ErrCode.h"
#include "query/values/DateNotation.h"
#include "query/values/Operators.h"
#include "query/values/OrList.h"
#include "query/values/RelativeRange.h"
#include "query/values/ValueFromText.h"

#include <storefabric/DataType.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <tuple>

namespace hv::vex {
namespace {

const StringTable& German() {
  static const auto* const table = new StringTable(
      *StringTable::Parse("5000\tger\n5013\tBereich\n5014\tHeute\n5016\tDatum vor\n"
                          "5017\tDatum nach\n5018\tLetzte 7 Tage\n5021\tDatum gleich\n"));
  return *table;
}

TEST(Operators, HaveThreeForms) {
  constexpr struct {
    std::u16string_view symbol;
    std::string_view fileName;
    std::u16string_view display;  ///< the symbol where there is none
    std::string_view dateFileName;
  } kOperators[] = {
      {u"=", "equal", u"Date equal", "day"},
      {u"<>", "not_equal", u"<>", "not_equal"},
      {u"<", "less", u"<", "less"},
      {u"<=", "less_than", u"Date before", "before"},
      {u">", "greater", u">", "greater"},
      {u">=", "greater_than", u"Date after", "after"},
      {u"#", "pre", u"Relative range", "pre"},
  };
  std::size_t at = 0;
  ASSERT_EQ(std::size(kOperators), OperatorSymbols().size());
  for (const auto& c : kOperators) {
    SCOPED_TRACE(cor::ToUtf8(c.symbol));
    const bool hasDisplay = c.symbol != c.display;
    EXPECT_EQ(c.symbol, OperatorSymbols()[at++]);
    EXPECT_TRUE(IsSymbolOperator(c.symbol));
    EXPECT_EQ(c.fileName, cor::ToUtf8(OperatorToFileName(c.symbol)));
    EXPECT_EQ(c.dateFileName, cor::ToUtf8(OperatorToFileName(c.display)));
    EXPECT_EQ(c.display, OperatorToDisplay(c.symbol).view());
    EXPECT_EQ(c.symbol, DisplayToOperator(c.display).view());
    EXPECT_EQ(c.symbol, DisplayToOperator(c.symbol).view());
    EXPECT_EQ(hasDisplay, IsDateOperatorName(c.display));
    EXPECT_FALSE(IsDateOperatorName(c.symbol));
    EXPECT_EQ(!hasDisplay, IsSymbolOperator(c.display));
    // A plain name reads as the symbol, a name of dates as the display name.
    const std::u16string_view read = c.symbol == u"#" ? c.display : c.symbol;
    EXPECT_EQ(read, FileNameToOperator(cor::FromUtf8(c.fileName)).view());
    EXPECT_EQ(c.display, FileNameToOperator(cor::FromUtf8(c.dateFileName)).view());
  }
}

TEST(Operators, TakeTheirNamesFromTheStringTable) {
  EXPECT_EQ("Datum nach", cor::ToUtf8(OperatorToDisplay(u">=", German())));
  EXPECT_EQ(">=", cor::ToUtf8(DisplayToOperator(u"DATUM nach", German())));
  EXPECT_EQ("Date after", cor::ToUtf8(DisplayToOperator(u"Date after", German())));
  EXPECT_EQ("before", cor::ToUtf8(OperatorToFileName(u"datum Vor", German())));
  EXPECT_EQ("Datum gleich", cor::ToUtf8(FileNameToOperator(u"day", German())));
  EXPECT_TRUE(IsRelativeOperator(u"Bereich", German()));
  EXPECT_FALSE(IsRelativeOperator(u"Relative range", German()));
}

TEST(Operators, RefuseNamesOutsideOfTheTable) {
  for (const std::u16string_view text : {u"foo", u"", u"=="}) {
    EXPECT_THROW(FileNameToOperator(text), com::cErrCode) << cor::ToUtf8(text);
    EXPECT_THROW(OperatorToFileName(text), com::cErrCode) << cor::ToUtf8(text);
    EXPECT_EQ(text, OperatorToDisplay(text).view());
    EXPECT_EQ(text, DisplayToOperator(text).view());
  }
  EXPECT_THROW(FileNameToOperator(u"="), com::cErrCode);
  EXPECT_THROW(OperatorToFileName(u"equal"), com::cErrCode);
}

TEST(Operators, TellTheirKinds) {
  EXPECT_TRUE(IsRelativeOperator(u"#"));
  EXPECT_TRUE(IsRelativeOperator(u"relative RANGE"));
  EXPECT_FALSE(IsRelativeOperator(u"="));
  EXPECT_TRUE(IsStringOperator(u"<>"));
  EXPECT_FALSE(IsStringOperator(u"<"));
  EXPECT_FALSE(IsSymbolOperator(u""));
  EXPECT_FALSE(IsSymbolOperator(u"!="));
  EXPECT_EQ(S_OK, CheckOperatorForOr(u"="));
  EXPECT_EQ(VEX_E_OR_OPERATOR, CheckOperatorForOr(u"<>"));
  EXPECT_EQ(VEX_E_OR_UNSUPPORTED, CheckOperatorForOr(u"=", false));
  EXPECT_EQ(0x80050005u, CodeOf(CheckOperatorForOr(u"#")));
}

std::string Listed(const auto& values) {
  std::string text;
  for (const WString& value : values) text += "[" + cor::ToUtf8(value) + "]";
  return text;
}

TEST(OrList, SplitsAtTheKeyword) {
  constexpr struct {
    std::u16string_view text;
    bool unescape, trim;
    std::string_view values;
  } kCases[] = {
      {u"", true, true, "[]"},
      {u"a", true, true, "[a]"},
      {u"a OR b OR c", true, false, "[a][b][c]"},
      {u"a or b", true, false, "[a or b]"},
      {u"a OR  OR b", true, false, "[a][][b]"},
      {u" OR ", true, false, "[][]"},
      {u"a OR", true, false, "[a OR]"},
      {u" a  OR \tb\n", true, true, "[a][b]"},
      {u" a  OR \tb\n", true, false, "[ a ][\tb\n]"},
      {u"  OR  ", true, true, "[][]"},
      {u"salt \\OR pepper", true, false, "[salt OR pepper]"},
      {u"salt \\OR pepper", false, false, "[salt \\OR pepper]"},
      {u"a \\or b OR c \\oR d", true, false, "[a or b][c oR d]"},
      {u"a OR OR b", true, false, "[a][OR b]"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.values, Listed(SplitValues(c.text, c.unescape, c.trim))) << cor::ToUtf8(c.text);
  }
  EXPECT_EQ("[a][b]", Listed(SplitUniqueValues(u"b OR a OR B OR  a", true, true)));
}

TEST(OrList, EscapesTheWordInsideValues) {
  constexpr std::pair<std::u16string_view, std::string_view> kCases[] = {
      {u"", ""},
      {u"salt OR pepper", "salt \\OR pepper"},
      {u"a or b Or c oR d", "a \\or b \\Or c \\oR d"},
      {u"a OR OR b", "a \\OR \\OR b"},
      {u" OR ", " \\OR "},
      {u"OR", "OR"},
      {u"a OR", "a OR"},
      {u"a\tOR b", "a\tOR b"},
      {u"FOR ORE", "FOR ORE"},
      {u"a AND b", "a AND b"},
  };
  for (const auto& [plain, shown] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(plain));
    const WString escaped = EscapeValue(plain);
    EXPECT_EQ(shown, cor::ToUtf8(escaped));
    EXPECT_EQ(plain, UnescapeValue(escaped).view());
    EXPECT_EQ(1u, SplitValues(escaped, true, false).size());
    EXPECT_EQ(cor::ToUtf8(plain) != shown, HasOr(plain));
    EXPECT_FALSE(HasOr(escaped));
  }
}

TEST(OrList, AppendsEscapedValues) {
  constexpr struct {
    std::u16string_view list, value;
    std::string_view result;
  } kCases[] = {
      {u"", u"a", "a"},
      {u"", u"a OR b", "a \\OR b"},
      {u"a", u"b", "a OR b"},
      {u"a", u"", "a OR "},
      {u"a OR", u"b", "a OR b"},
      {u"a OR ", u"b", "a OR  b"},
      {u"aOR", u"b", "aOR OR b"},
      {u"a or", u"b", "a or OR b"},
      {u"a OR b", u"salt OR pepper", "a OR b OR salt \\OR pepper"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.result, cor::ToUtf8(AppendValue(c.list, c.value))) << cor::ToUtf8(c.list);
  }
}

TEST(OrList, ShowsBlanksAtTheEndsOfValues) {
  constexpr std::pair<std::u16string_view, std::u16string_view> kCases[] = {
      {u"", u""},
      {u"a OR b", u"a OR b"},
      {u"a OR b ", u"a OR b\u2022"},
      {u"  a b  OR c", u"\u2022\u2022a b\u2022 OR c"},
      {u"   ", u"\u2022\u2022\u2022"},
      {u"a OR  OR b", u"a OR b"},
      {u" OR ", u""},
      {u"a \\OR b ", u"a \\OR b\u2022"},
  };
  for (const auto& [text, shown] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(text));
    bool changed = text == shown;
    EXPECT_EQ(shown, ShowEndBlanks(text, &changed).view());
    EXPECT_EQ(text != shown, changed);
  }
  EXPECT_EQ("  a OR b ", cor::ToUtf8(HideEndBlanks(u"\u2022\u2022a OR b\u2022")));
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
  for (const auto* op : {u">=", u"<=", u"Date after", u"DATE BEFORE"})
    EXPECT_TRUE(HasTimeOfDay(op));
  for (const auto* op : {u"=", u"#", u">", u"Datum vor", u""}) EXPECT_FALSE(HasTimeOfDay(op));
  EXPECT_TRUE(HasTimeOfDay(u"Datum vor", German()));
  EXPECT_EQ(Language::German, LanguageOf(German()));
  EXPECT_EQ(Language::English, LanguageOf());
  EXPECT_EQ("D.M.YYYY h:m:s %y %",
            cor::ToUtf8(StrftimeToPattern(u"%#d.%#m.%Y %#H:%#M:%#S %y %", Language::German)));
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
      {u"12", eI8, Variant::R8(12)},  // counts as no integer type
      {u"12", eU64, Variant::R8(12)},
      {u"12", eI16, Variant::I4(12)},
      {u"12", eU32, Variant::I4(12)},
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

}  // namespace
}  // namespace hv::vex
