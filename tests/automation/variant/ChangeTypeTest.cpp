// tests/automation/variant/ChangeTypeTest.cpp - conversions against the reference table.
#include <gtest/gtest.h>

#include <storefabric/Variant.h>

#include "GoldenTable.h"
#include "VariantOfCell.h"
#include "automation/variant/DateText.h"

#include <cmath>
#include <cstdlib>

namespace hv {
namespace {

using namespace golden;  // NOLINT: the vocabulary of the reference tables

/// True if 15 digits (7 for a float) don't tell a number apart from its neighbours. A whole number
/// too great for its type to hold all of them has the digits of its value.
bool HasMoreDigits(double value, bool isFloat) {
  char digits[64];
  char more[64];
  std::snprintf(digits, sizeof digits, "%.*e", isFloat ? 6 : 14, value);
  std::snprintf(more, sizeof more, "%.16e", value);
  if (std::fabs(value) >= (isFloat ? 0x1p24 : 0x1p53))
    return std::strtold(digits, nullptr) != std::strtold(more, nullptr);
  return isFloat ? std::strtof(digits, nullptr) != static_cast<float>(value)
                 : std::strtod(digits, nullptr) != value;
}

/// Why the row isn't asserted: the measured library is known to differ there from the documented
/// behaviour, which the tests below this table pin down. Null if the row counts.
const char* WhyLeftOut(const Row& row) {
  const std::string& from = row[0];
  const std::string& to = row[2];
  const std::string& value = row[1];
  const bool isReal = from == "VT_R4" || from == "VT_R8";
  if (from == "VT_15" || from == "VT_VOID" || from == "VT_ARRAY|VT_UI1") return "can't be made";
  if (isReal && value == "nan" && (to.starts_with("VT_I") || to.starts_with("VT_UI"))) {
    return "a NaN overflows";
  }
  if (isReal && to == "VT_BSTR" && !std::isfinite(DecodeDouble(value)))
    return "texts of infinities";
  if (row[4].starts_with("0:") && to == "VT_DECIMAL" && std::stoi(row[4].substr(2)) > 28) {
    return "a scale above 28 is invalid";
  }
  if (isReal && to == "VT_DECIMAL" && HasMoreDigits(DecodeDouble(value), from == "VT_R4")) {
    return "more than 15 (7) digits kept";
  }
  if ((from == "VT_CY" || from == "VT_DECIMAL") && to == "VT_DATE" && row[4] != "-" &&
      std::fabs(DecodeDouble(row[4])) > 2958465) {
    return "no range test";
  }
  if (value.starts_with("\"&") && to == "VT_CY") return "bit patterns refused as currency";
  if (from == "VT_CY" && to == "VT_I8" && value[0] == '-' && std::stoll(value) % 10000 != 0 &&
      std::stoll(value) > -10000) {
    return "negative fractions rounded away from 0";
  }
  if (from == "VT_DECIMAL" && value == "128:0:0:0" && to == "VT_UI8") return "minus zero overflows";
  return nullptr;
}

/// The measured library reads texts of numbers with a last bit that may be off.
bool IsNextTo(const Variant& value, const Row& row) {
  if (row[0] != "VT_BSTR" || row[2] != "VT_R8" || !value.Is(VT_R8)) return false;
  const double real = value.AsDouble();
  return std::fabs(DecodeDouble(row[4]) - real) <= std::fabs(real) * 0x1p-52;
}

TEST(ChangeType, FollowsTheReferenceTable) {
  CheckTable("variantchangetype.tsv", 7442, 95, [](const Row& row) {
    if (WhyLeftOut(row)) return false;
    const OwnedVariant source = VariantOfCells(row[0], row[1]).value();
    const std::uint16_t type = TypeOfName(row[2]);
    const Result expected =
        MakeResult(static_cast<std::uint32_t>(std::strtoul(row[3].c_str(), nullptr, 16)));
    Variant result = Variant::I2(77);
    EXPECT_EQ(CodeOf(source.value.ChangeType(type, &result)), CodeOf(expected));
    EXPECT_TRUE(Failed(expected) ? result.Is(VT_I2) && result.AsInt64() == 77
                                 : Matches(result, type, row[4]) || IsNextTo(result, row))
        << Describe(result);
    return true;
  });
}

/// What is documented where the reference table has another answer, and what it has no row for.
TEST(ChangeType, DoesWhatIsDocumentedBesideTheTable) {
  const struct {
    const char* name;
    Variant source;
    std::uint16_t type;
    Result code;
    const char* value = "";  // in the notation of the reference table
  } cases[] = {
      {"NanOverflowsIntegers", Variant::R8(NAN), VT_I4, DISP_E_OVERFLOW},
      {"NanOverflowsUnsigned", Variant::R8(NAN), VT_UI8, DISP_E_OVERFLOW},
      {"InfinityHasAText", Variant::R8(-INFINITY), VT_BSTR, S_OK, "\"-1.#INF\""},
      {"NanHasAText", Variant::R8(NAN), VT_BSTR, S_OK, "\"1.#QNAN\""},
      {"TinyTextIsDecimalZero", Variant::Text(u"1e-400"), VT_DECIMAL, S_OK, "0:0:0:0"},
      {"DecimalsBeyond28AreRounded", Variant::Text(u"15e-29"), VT_DECIMAL, S_OK, "0:28:0:2"},
      {"DoubleKeepsFifteenDigits", Variant::R8(9007199254740992), VT_DECIMAL, S_OK,
       "0:0:0:9007199254740990"},
      {"FloatKeepsSevenDigits", Variant::R4(16777216), VT_DECIMAL, S_OK, "0:0:0:16777220"},
      {"CurrencyBeyondDates", Variant::Cy(29584660000), VT_DATE, DISP_E_OVERFLOW},
      {"DecimalBeyondDates", Variant::Dec({2958466, 0, 0, 0}), VT_DATE, DISP_E_OVERFLOW},
      {"PatternAsCurrency", Variant::Text(u"&H10"), VT_CY, S_OK, "160000"},
      {"PatternOf64Bits", Variant::Text(u"&HFFFFFFFFFFFFFFFF"), VT_I8, S_OK, "-1"},
      {"PatternBeyond64Bits", Variant::Text(u"&H10000000000000000"), VT_UI8, DISP_E_OVERFLOW},
      {"HalfCurrencyToEven", Variant::Cy(-5000), VT_I8, S_OK, "0"},
      {"MinusZeroDecimal", Variant::Dec({0, 0, 0, 0x80}), VT_UI8, S_OK, "0"},
      {"GreatestCurrency", Variant::R8(922337203685477.5), VT_CY, S_OK, "9223372036854775000"},
      {"CurrencyOverflows", Variant::R8(922337203685477.625), VT_CY, DISP_E_OVERFLOW},
      {"LongExponent", Variant::Text(u"1e99999999999999999999"), VT_R8, DISP_E_OVERFLOW},
      {"LongNegativeExponent", Variant::Text(u"1e-99999999999999999999"), VT_R8, S_OK, "0x0p+0"},
      {"ManyZeros", Variant::Text(u"00000000000000000000000000000000000000000000000000000007"),
       VT_UI1, S_OK, "7"},
      {"SignsOnBothSides", Variant::Text(u"-5-"), VT_I4, DISP_E_TYPEMISMATCH},
      {"OpenParenthesis", Variant::Text(u"(5"), VT_I4, DISP_E_TYPEMISMATCH},
      {"ArrayHasNoNumber", Variant::Array({Variant::I4(1)}), VT_I4, DISP_E_TYPEMISMATCH},
      {"NumberIsNoArray", Variant::I4(1), VT_ARRAY | VT_VARIANT, DISP_E_TYPEMISMATCH},
      {"NoSuchType", Variant::I4(1), VT_VARIANT, DISP_E_BADVARTYPE},
      {"NoReferenceTarget", Variant::I4(1), VT_BYREF | VT_I4, DISP_E_BADVARTYPE},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Variant result;
    EXPECT_EQ(CodeOf(c.source.ChangeType(c.type, &result)), CodeOf(c.code));
    if (!Failed(c.code)) {
      EXPECT_TRUE(Matches(result, c.type, c.value)) << Describe(result);
    }
  }
}

TEST(ChangeType, WorksInPlace) {
  Variant value = Variant::Text(u"12");
  ASSERT_EQ(value.ChangeType(VT_I4, &value), S_OK);
  EXPECT_EQ(value.AsInt64(), 12);
  ASSERT_EQ(value.ChangeType(VT_BSTR, &value), S_OK);
  EXPECT_EQ(value.AsText().view(), u"12");
}

TEST(DateText, ArrangesFiguresAndFillsInTheYear) {
  const struct {
    std::optional<double> date;
    std::vector<std::u16string_view> texts;
  } cases[] = {
      {39950, {u"17 May", u"5/17", u"17/5"}},
      {39950.4375, {u"May 17, 10:30", u"10:30 5/17"}},
      {22.0 / 24, {u"10 PM"}},
      {36525, {u"99/12/31"}},
      {0.5 / 24, {u"12:30 AM"}},
      {{},
       {u"May May 2009", u"1/2/3/4", u"10:30 11:30", u"5/17/", u"123456/1/1", u"12:", u"",
        u"Sunday", u"Foo 17, 2009", u"2/30/2009"}},
  };
  for (const auto& c : cases) {
    for (const std::u16string_view text : c.texts) {
      SCOPED_TRACE(cor::ToUtf8(text));
      const std::optional<double> date = automation::ParseDateText(text, 2009);
      ASSERT_EQ(c.date.has_value(), date.has_value());
      EXPECT_DOUBLE_EQ(c.date.value_or(0), date.value_or(0));
    }
  }
}

}  // namespace
}  // namespace hv
