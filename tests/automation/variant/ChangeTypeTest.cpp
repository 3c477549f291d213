// tests/automation/variant/ChangeTypeTest.cpp - conversions against the reference table.
#include <gtest/gtest.h>

#include <storefabric/Variant.h>

#include "GoldenTable.h"
#include "VariantOfCell.h"
#include "automation/variant/DateText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace hv {
namespace {

using golden::DecodeDouble;
using golden::Describe;
using golden::OwnedVariant;
using golden::ReadTable;
using golden::Row;
using golden::Tally;
using golden::TypeOfName;
using golden::VariantOfCells;

/// The digits that tell a number apart from its neighbours; of a float, from other floats. A whole
/// number too great for its type to hold all of them has the digits of its value.
std::size_t SignificantDigits(double value, bool isFloat) {
  char buffer[64];
  char* const last = buffer + sizeof buffer;
  const bool isGreat = std::fabs(value) >= (isFloat ? 0x1p24 : 0x1p53);
  char* end = nullptr;
  if (isGreat) {
    end = std::to_chars(buffer, last, value, std::chars_format::scientific, 16).ptr;
  } else if (isFloat) {
    end = std::to_chars(buffer, last, static_cast<float>(value), std::chars_format::scientific).ptr;
  } else {
    end = std::to_chars(buffer, last, value, std::chars_format::scientific).ptr;
  }
  std::string digits(buffer, end);
  digits.erase(digits.find('e'));
  std::erase_if(digits, [](char c) { return c == '.' || c == '-'; });
  return digits.find_last_not_of('0') + 1;
}

bool IsIntegerType(const std::string& type) {
  return type.starts_with("VT_I") || type.starts_with("VT_UI");
}

/// Why the row isn't asserted: the measured library is known to differ there from the documented
/// behaviour, which the tests below this table pin down. Null if the row counts.
const char* WhyLeftOut(const Row& row) {
  const std::string& from = row[0];
  const std::string& to = row[2];
  const std::string& value = row[1];
  const bool isReal = from == "VT_R4" || from == "VT_R8";
  if (from == "VT_15" || from == "VT_VOID" || from == "VT_ARRAY|VT_UI1") return "can't be made";
  if (isReal && value == "nan" && IsIntegerType(to)) return "a NaN overflows";
  if (isReal && to == "VT_BSTR" && !std::isfinite(DecodeDouble(value)))
    return "texts of infinities";
  if (row[4].starts_with("0:") && to == "VT_DECIMAL" && std::stoi(row[4].substr(2)) > 28) {
    return "a scale above 28 is invalid";
  }
  if (isReal && to == "VT_DECIMAL" && std::isfinite(DecodeDouble(value))) {
    const bool isFloat = from == "VT_R4";
    if (SignificantDigits(DecodeDouble(value), isFloat) > (isFloat ? 7U : 15U)) {
      return "more than 15 (7) digits kept";
    }
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
  Tally tally;
  for (const Row& row : ReadTable("variantchangetype.tsv")) {
    SCOPED_TRACE(row.line);
    if (WhyLeftOut(row)) {
      tally.LeaveOut();
      continue;
    }
    const std::optional<OwnedVariant> source = VariantOfCells(row[0], row[1]);
    ASSERT_TRUE(source);
    const std::uint16_t type = TypeOfName(row[2]);
    const Result expected =
        MakeResult(static_cast<std::uint32_t>(std::strtoul(row[3].c_str(), nullptr, 16)));
    Variant result = Variant::I2(77);
    EXPECT_EQ(CodeOf(source->value.ChangeType(type, &result)), CodeOf(expected));
    const bool same = Failed(expected)
                          ? result.Is(VT_I2) && result.AsInt64() == 77
                          : golden::Matches(result, type, row[4]) || IsNextTo(result, row);
    EXPECT_TRUE(same) << Describe(result);
    tally.Assert();
  }
  tally.Finish(7442, 95);
}

struct ChangeCase {
  const char* name;
  Variant source;
  std::uint16_t type;
  Result code;
  const char* value;  ///< in the notation of the reference table
};

/// What is documented where the reference table has another answer, and what it has no row for.
std::vector<ChangeCase> DocumentedCases() {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  return {
      {"NanOverflowsIntegers", Variant::R8(kNan), VT_I4, DISP_E_OVERFLOW, ""},
      {"NanOverflowsUnsigned", Variant::R8(kNan), VT_UI8, DISP_E_OVERFLOW, ""},
      {"InfinityHasAText", Variant::R8(-kInfinity), VT_BSTR, S_OK, "\"-1.#INF\""},
      {"NanHasAText", Variant::R8(kNan), VT_BSTR, S_OK, "\"1.#QNAN\""},
      {"TinyTextIsDecimalZero", Variant::Text(u"1e-400"), VT_DECIMAL, S_OK, "0:0:0:0"},
      {"DecimalsBeyond28AreRounded", Variant::Text(u"15e-29"), VT_DECIMAL, S_OK, "0:28:0:2"},
      {"DoubleKeepsFifteenDigits", Variant::R8(9007199254740992), VT_DECIMAL, S_OK,
       "0:0:0:9007199254740990"},
      {"FloatKeepsSevenDigits", Variant::R4(16777216), VT_DECIMAL, S_OK, "0:0:0:16777220"},
      {"CurrencyBeyondDates", Variant::Cy(29584660000), VT_DATE, DISP_E_OVERFLOW, ""},
      {"DecimalBeyondDates", Variant::Dec({2958466, 0, 0, 0}), VT_DATE, DISP_E_OVERFLOW, ""},
      {"PatternAsCurrency", Variant::Text(u"&H10"), VT_CY, S_OK, "160000"},
      {"PatternOf64Bits", Variant::Text(u"&HFFFFFFFFFFFFFFFF"), VT_I8, S_OK, "-1"},
      {"PatternBeyond64Bits", Variant::Text(u"&H10000000000000000"), VT_UI8, DISP_E_OVERFLOW, ""},
      {"HalfCurrencyToEven", Variant::Cy(-5000), VT_I8, S_OK, "0"},
      {"MinusZeroDecimal", Variant::Dec({0, 0, 0, 0x80}), VT_UI8, S_OK, "0"},
      {"GreatestCurrency", Variant::R8(922337203685477.5), VT_CY, S_OK, "9223372036854775000"},
      {"CurrencyOverflows", Variant::R8(922337203685477.625), VT_CY, DISP_E_OVERFLOW, ""},
      {"LongExponent", Variant::Text(u"1e99999999999999999999"), VT_R8, DISP_E_OVERFLOW, ""},
      {"LongNegativeExponent", Variant::Text(u"1e-99999999999999999999"), VT_R8, S_OK, "0x0p+0"},
      {"ManyZeros", Variant::Text(u"00000000000000000000000000000000000000000000000000000007"),
       VT_UI1, S_OK, "7"},
      {"SignsOnBothSides", Variant::Text(u"-5-"), VT_I4, DISP_E_TYPEMISMATCH, ""},
      {"OpenParenthesis", Variant::Text(u"(5"), VT_I4, DISP_E_TYPEMISMATCH, ""},
      {"ArrayHasNoNumber", Variant::Array({Variant::I4(1)}), VT_I4, DISP_E_TYPEMISMATCH, ""},
      {"NumberIsNoArray", Variant::I4(1), VT_ARRAY | VT_VARIANT, DISP_E_TYPEMISMATCH, ""},
      {"NoSuchType", Variant::I4(1), VT_VARIANT, DISP_E_BADVARTYPE, ""},
      {"NoReferenceTarget", Variant::I4(1), VT_BYREF | VT_I4, DISP_E_BADVARTYPE, ""},
  };
}

TEST(ChangeType, DoesWhatIsDocumentedBesideTheTable) {
  for (const ChangeCase& c : DocumentedCases()) {
    SCOPED_TRACE(c.name);
    Variant result;
    EXPECT_EQ(CodeOf(c.source.ChangeType(c.type, &result)), CodeOf(c.code));
    if (!Failed(c.code)) {
      EXPECT_TRUE(golden::Matches(result, c.type, c.value)) << Describe(result);
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

struct DateTextCase {
  std::u16string_view text;
  double date;  ///< NaN if the text is refused
};

TEST(DateText, ArrangesFiguresAndFillsInTheYear) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  const DateTextCase cases[] = {
      {u"17 May", 39950},
      {u"5/17", 39950},
      {u"17/5", 39950},
      {u"May 17, 10:30", 39950.4375},
      {u"10:30 5/17", 39950.4375},
      {u"10 PM", 22.0 / 24},
      {u"99/12/31", 36525},
      {u"12:30 AM", 0.5 / 24},
      {u"May May 2009", kNone},
      {u"1/2/3/4", kNone},
      {u"10:30 11:30", kNone},
      {u"5/17/", kNone},
      {u"123456/1/1", kNone},
      {u"12:", kNone},
      {u"", kNone},
      {u"Sunday", kNone},
      {u"Foo 17, 2009", kNone},
      {u"2/30/2009", kNone},
  };
  for (const DateTextCase& c : cases) {
    const std::optional<double> date = automation::ParseDateText(c.text, 2009);
    EXPECT_EQ(date.has_value(), !std::isnan(c.date)) << cor::ToUtf8(c.text);
    if (date && !std::isnan(c.date)) {
      EXPECT_DOUBLE_EQ(*date, c.date) << cor::ToUtf8(c.text);
    }
  }
}

}  // namespace
}  // namespace hv
