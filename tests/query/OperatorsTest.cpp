// query/OperatorsTest.cpp - the three forms of operators, in English and another language.
#include "query/values/Operators.h"

#include "automation/ErrCode.h"

#include <gtest/gtest.h>

#include <string>

namespace hv::vex {
namespace {

const StringTable& German() {
  static const auto* const table =
      new StringTable(*StringTable::Parse("5000\tger\n5013\tBereich\n5014\tHeute\n5016\tDatum vor\n"
                                          "5017\tDatum nach\n5021\tDatum gleich\n"));
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
  const auto isRefused = [](auto convert, std::u16string_view text) {
    try {
      (void)convert(text, StringTable::Default());
    } catch (const com::cErrCode thrown) {
      return thrown == com::cErrCode::eBadQueryContent;
    }
    return false;
  };
  for (const std::u16string_view text : {u"foo", u"", u"=", u"equals"}) {
    EXPECT_TRUE(isRefused(FileNameToOperator, text)) << cor::ToUtf8(text);
  }
  for (const std::u16string_view text : {u"foo", u"", u"equal", u"=="}) {
    EXPECT_TRUE(isRefused(OperatorToFileName, text)) << cor::ToUtf8(text);
    EXPECT_EQ(text, OperatorToDisplay(text).view());
    EXPECT_EQ(text, DisplayToOperator(text).view());
  }
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

}  // namespace
}  // namespace hv::vex
