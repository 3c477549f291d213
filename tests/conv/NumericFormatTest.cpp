// tests/conv/NumericFormatTest.cpp - numbers from texts, with and without separators.
#include "util/conv/NumericFormat.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "util/conv/NumberReader.h"

namespace hv::util::conv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct DecimalCase {
  const char* text;
  double value;
};
constexpr DecimalCase kDecimals[] = {
    {"0", 0.0},
    {"-0", -0.0},
    {"-0.000e5", -0.0},
    {"-", 0.0},
    {"-.", 0.0},
    {"", 0.0},
    {"abc", 0.0},
    {"12abc", 12.0},
    {" \t\n\v\f\r+1.5", 1.5},
    {"- 5", 0.0},
    {"+-5", 0.0},
    {".5", 0.5},
    {"5.", 5.0},
    {"1.2.3", 1.2},
    {"1,5", 1.0},
    {"007.50", 7.5},
    {"0.1", 0.1},
    {"1e3", 1000.0},
    {"1E3", 1000.0},
    {"1d3", 1000.0},
    {"1D-3", 0.001},
    {"1e 3", 1000.0},
    {"1e+3", 1000.0},
    {"1e", 1.0},
    {"1e-", 1.0},
    {"1f3", 1.0},
    {"1e400", kInfinity},
    {"-1e400", -kInfinity},
    {"1e-400", 0.0},
    {"1e309", kInfinity},
    {"1e308", 1e308},
    {"9e308", kInfinity},
    {"1.7976931348623157e308", 1.7976931348623157e308},
    {"4.9406564584124654e-324", 4.9406564584124654e-324},
    {"1e-340", 0.0},
    {"0.00001e310", 1e305},
    {"1000e-341", 0.0},
    {"10000000000000000000e-340", 1e-321},
    {"10000000000000000000e-341", 0.0},
    {"1e99999999999999999999", kInfinity},
    {"123456789012345678901", 1.2345678901234567e20},
    {"0.00012345678901234567890", 0.00012345678901234567},
    {"9007199254740993", 9007199254740992.0},
    {"9007199254740995", 9007199254740996.0},
    {"12345678901234567.99999", 12345678901234567.0},
    {"1e22", 1e22},
    {"1e23", 1e23},
};
TEST(ReadDecimal, GivesTheNearestDoubleOfWhatCounts) {
  for (const DecimalCase& c : kDecimals) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(c.value),
              std::bit_cast<std::uint64_t>(ReadDecimal(c.text)))
        << '"' << c.text << "\" gives " << ReadDecimal(c.text);
  }
  const std::string thousandZeros(1000, '0');
  EXPECT_EQ(1.0, ReadDecimal(thousandZeros + "1"));
  EXPECT_EQ(kInfinity, ReadDecimal("1" + thousandZeros + "e-1"));
  EXPECT_EQ(0.0, ReadDecimal("0." + thousandZeros + "1e1"));
  EXPECT_EQ(1e200, ReadDecimal("1" + thousandZeros.substr(0, 500) + "e-300"));
  EXPECT_EQ(0.0, ReadDecimal("1" + thousandZeros.substr(0, 500) + "e-400")) << "absurd";
  EXPECT_EQ(1.0, ReadDecimal(std::string_view("1\0002", 3)));
}

/// Texts of up to 17 digits are read as the standard library reads them, to the last bit.
TEST(ReadDecimal, AgreesWithTheStandardLibrary) {
  std::mt19937_64 random(11);
  int compared = 0;
  for (int i = 0; i < 200'000; ++i) {
    const auto value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) continue;
    char text[64];
    const auto format = i % 2 ? std::chars_format::scientific : std::chars_format::general;
    const auto end = std::to_chars(text, text + sizeof text, value, format).ptr;
    const std::string_view view(text, static_cast<std::size_t>(end - text));
    ASSERT_EQ(value, ReadDecimal(view)) << view;
    ++compared;
  }
  EXPECT_GT(compared, 190'000);
}

Ref<INumericFormat> GermanFormat() {
  const auto format = CreateNumericFormat();
  format->SetDecimalSeparator(u',');
  format->SetThousandSeparator(u'.');
  return format;
}

TEST(NumericFormat, HonoursSeparatorsOnlyWhereTheCountIsGiven) {
  const auto format = GermanFormat();
  EXPECT_EQ(u',', format->GetDecimalSeparator());
  std::int32_t count = 7;
  EXPECT_EQ(1234.5, format->ToDoubleCounted(u"1.234,5", &count));
  EXPECT_EQ(7, count);
  EXPECT_EQ(1.234, format->ToDouble(u"1.234,5", nullptr));
  count = 9;
  EXPECT_EQ(1'234'567, format->ToInt32Counted(u"1.234.567", &count));
  EXPECT_EQ(1, format->ToInt32(u"1.234.567", nullptr));
  count = 4;
  EXPECT_EQ(-12, format->ToInt64Counted(u"-1.2.3", &count)) << "no more than it is told";
}

TEST(NumericFormat, TakesEitherCaseOfTheExponentLetter) {
  const auto format = CreateNumericFormat();
  format->SetExponentLetter(u'x');
  for (const char16_t* text : {u"2x3", u"2X3", u"2d3"}) {
    std::int32_t count = 3;
    EXPECT_EQ(2000.0, format->ToDoubleCounted(text, &count));
  }
  EXPECT_EQ(2.0, format->ToDouble(u"2x3", nullptr));
}

TEST(NumericFormat, EndsTokens) {
  const auto format = CreateNumericFormat();
  const struct {
    std::u16string text;
    double value;
    int length;
  } kTokens[] = {{u"1.5 2", 1.5, 3},
                 {u"1.5\t2", 1.5, 3},
                 {u"1.5\r\n", 1.5, 3},
                 {u"1.5x2", 1.5, 5},
                 {u"", 0, 0},
                 {u" 7", 0, 0},
                 {u"INF 1", kInfinity, 3},
                 {u"-INF", -kInfinity, 4},
                 {u"+INF", 0, 4},
                 {u"inf", 0, 3},
                 {u"INFx", 0, 4},
                 {std::u16string(59, u'0') + u"123", 1, 60}};
  for (const auto& c : kTokens) {
    const char16_t* end = nullptr;
    EXPECT_EQ(c.value, format->ToDouble(c.text.c_str(), &end));
    EXPECT_EQ(c.length, end - c.text.c_str());
  }
  EXPECT_TRUE(std::isnan(format->ToDouble(u"NaN", nullptr)));
  std::int32_t count = 3;
  EXPECT_EQ(0, format->ToDoubleCounted(u"INF", &count)) << "a word only where tokens are cut";
  const std::u16string zeros = std::u16string(59, u'0') + u"123";
  count = 62;
  EXPECT_EQ(1, format->ToInt32Counted(zeros.c_str(), &count));
  EXPECT_EQ(60, count);
  count = 99;
  EXPECT_EQ(12, format->ToInt32Counted(u"12", &count));
  EXPECT_EQ(2, count) << "stops at the end of the text";
}

TEST(NumericFormat, ReadsIntegersWithinTheirLimits) {
  const auto format = CreateNumericFormat();
  const char16_t* end = nullptr;
  EXPECT_EQ(-2147483647 - 1, format->ToInt32(u"-99999999999", &end));
  EXPECT_EQ(std::numeric_limits<std::int64_t>::max(),
            format->ToInt64(u"9223372036854775808", &end));
  EXPECT_EQ(std::numeric_limits<std::int64_t>::min(),
            format->ToInt64Again(u"-9223372036854775808", &end));
  EXPECT_EQ(18446744073709551615U, format->ToUInt64(u"18446744073709551615", &end));
  EXPECT_EQ(18446744073709551615U, format->ToUInt64(u"-1", &end));
  EXPECT_EQ(0U, format->ToUInt64(u"x", &end));
  EXPECT_EQ(12, format->ToInt32(u"\u0131\u0132", &end)) << "low bytes only";
}

TEST(NumericFormat, TakesNothingForAnEmptyText) {
  const auto format = CreateNumericFormat();
  const char16_t* end = u"";
  std::int32_t count = 5;
  EXPECT_EQ(0, format->ToDouble(nullptr, &end));
  EXPECT_EQ(nullptr, end);
  EXPECT_EQ(0, format->ToDoubleCounted(nullptr, &count));
  EXPECT_EQ(0, count);
  count = -3;
  EXPECT_EQ(0, format->ToInt32Counted(u"12", &count));
  EXPECT_EQ(0, format->ToInt64Counted(u"12", nullptr));
}

TEST(NumericFormat, IsCountedByHand) {
  auto* format = new NumericFormatImp;
  EXPECT_EQ(2U, format->AddRef());
  EXPECT_EQ(1U, format->Release());
  EXPECT_EQ(0U, format->Release());
}

}  // namespace
}  // namespace hv::util::conv
