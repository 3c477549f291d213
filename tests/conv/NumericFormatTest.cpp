// tests/conv/NumericFormatTest.cpp - numbers from texts, with and without separators.
#include "util/conv/NumericFormat.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "util/conv/NumberReader.h"

namespace hv::util::conv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ReadDecimal, GivesTheNearestDoubleOfWhatCounts) {
  const struct {
    double value;
    std::vector<std::string_view> texts;
  } cases[] = {
      {0.0,
       {"0", "-", "-.", "", "abc", "- 5", "+-5", "1e-400", "1e-340", "1000e-341",
        "10000000000000000000e-341"}},
      {-0.0, {"-0", "-0.000e5"}},
      {1.0, {"1,5", "1e", "1e-", "1f3", std::string_view("1\0002", 3)}},
      {1.2, {"1.2.3"}},
      {1.5, {" \t\n\v\f\r+1.5"}},
      {12.0, {"12abc"}},
      {0.1, {"0.1"}},
      {0.5, {".5"}},
      {5.0, {"5."}},
      {7.5, {"007.50"}},
      {1000.0, {"1e3", "1E3", "1d3", "1e 3", "1e+3"}},
      {0.001, {"1D-3"}},
      {kInfinity, {"1e400", "1e309", "9e308", "1e99999999999999999999"}},
      {-kInfinity, {"-1e400"}},
      {1e308, {"1e308"}},
      {1e305, {"0.00001e310"}},
      {1e-321, {"10000000000000000000e-340"}},
      {1.7976931348623157e308, {"1.7976931348623157e308"}},
      {4.9406564584124654e-324, {"4.9406564584124654e-324"}},
      {1.2345678901234567e20, {"123456789012345678901"}},
      {0.00012345678901234567, {"0.00012345678901234567890"}},
      {9007199254740992.0, {"9007199254740993"}},
      {9007199254740996.0, {"9007199254740995"}},
      {12345678901234567.0, {"12345678901234567.99999"}},
      {1e22, {"1e22"}},
      {1e23, {"1e23"}},
  };
  for (const auto& c : cases) {
    for (const std::string_view text : c.texts) {
      EXPECT_EQ(std::bit_cast<std::uint64_t>(c.value),
                std::bit_cast<std::uint64_t>(ReadDecimal(text)))
          << '"' << text << "\" gives " << ReadDecimal(text);
    }
  }
  const std::string thousandZeros(1000, '0');
  EXPECT_EQ(1.0, ReadDecimal(thousandZeros + "1"));
  EXPECT_EQ(kInfinity, ReadDecimal("1" + thousandZeros + "e-1"));
  EXPECT_EQ(0.0, ReadDecimal("0." + thousandZeros + "1e1"));
  EXPECT_EQ(1e200, ReadDecimal("1" + thousandZeros.substr(0, 500) + "e-300"));
  EXPECT_EQ(0.0, ReadDecimal("1" + thousandZeros.substr(0, 500) + "e-400")) << "absurd";
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

using I = INumericFormat;

class NumericFormat : public ::testing::Test {
 protected:
  /// The number and how many characters of it were read.
  template <class Number>
  std::pair<Number, std::int32_t> Counted(Number (I::*read)(const char16_t*, std::int32_t*),
                                          const std::u16string& text, std::int32_t count) {
    const Number number = (m_format.Get()->*read)(text.c_str(), &count);
    return {number, count};
  }

  const Ref<I> m_format = CreateNumericFormat();
  const std::u16string m_long = std::u16string(59, u'0') + u"123";
};

TEST_F(NumericFormat, HonoursSeparatorsOnlyWhereTheCountIsGiven) {
  m_format->SetDecimalSeparator(u',');
  m_format->SetThousandSeparator(u'.');
  EXPECT_EQ(u',', m_format->GetDecimalSeparator());
  EXPECT_EQ(std::pair(1234.5, 7), Counted(&I::ToDoubleCounted, u"1.234,5", 7));
  EXPECT_EQ(1.234, m_format->ToDouble(u"1.234,5", nullptr));
  EXPECT_EQ(std::pair(1'234'567, 9), Counted(&I::ToInt32Counted, u"1.234.567", 9));
  EXPECT_EQ(1, m_format->ToInt32(u"1.234.567", nullptr));
  EXPECT_EQ(-12, Counted(&I::ToInt64Counted, u"-1.2.3", 4).first) << "no more than it is told";
}

TEST_F(NumericFormat, TakesEitherCaseOfTheExponentLetter) {
  m_format->SetExponentLetter(u'x');
  for (const char16_t* text : {u"2x3", u"2X3", u"2d3"}) {
    EXPECT_EQ(2000.0, Counted(&I::ToDoubleCounted, text, 3).first);
  }
  EXPECT_EQ(2.0, m_format->ToDouble(u"2x3", nullptr));
}

TEST_F(NumericFormat, EndsTokens) {
  const struct {
    std::u16string text;
    double value;
    int length;
  } kTokens[] = {
      {u"1.5 2", 1.5, 3}, {u"1.5\t2", 1.5, 3}, {u"1.5\r\n", 1.5, 3},     {u"1.5x2", 1.5, 5},
      {u"", 0, 0},        {u" 7", 0, 0},       {u"INF 1", kInfinity, 3}, {u"-INF", -kInfinity, 4},
      {u"+INF", 0, 4},    {u"inf", 0, 3},      {u"INFx", 0, 4},          {m_long, 1, 60}};
  for (const auto& c : kTokens) {
    const char16_t* end = nullptr;
    EXPECT_EQ(c.value, m_format->ToDouble(c.text.c_str(), &end));
    EXPECT_EQ(c.length, end - c.text.c_str());
  }
  EXPECT_TRUE(std::isnan(m_format->ToDouble(u"NaN", nullptr)));
  EXPECT_EQ(0, Counted(&I::ToDoubleCounted, u"INF", 3).first) << "a word only where tokens are cut";
  EXPECT_EQ(std::pair(1, 60), Counted(&I::ToInt32Counted, m_long, 62));
  EXPECT_EQ(std::pair(12, 2), Counted(&I::ToInt32Counted, u"12", 99)) << "the end of the text";
}

TEST_F(NumericFormat, ReadsIntegersWithinTheirLimits) {
  using Int64 = std::numeric_limits<std::int64_t>;
  const char16_t* end = nullptr;
  EXPECT_EQ(-2147483647 - 1, m_format->ToInt32(u"-99999999999", &end));
  EXPECT_EQ(Int64::max(), m_format->ToInt64(u"9223372036854775808", &end));
  EXPECT_EQ(Int64::min(), m_format->ToInt64Again(u"-9223372036854775808", &end));
  EXPECT_EQ(18446744073709551615U, m_format->ToUInt64(u"18446744073709551615", &end));
  EXPECT_EQ(18446744073709551615U, m_format->ToUInt64(u"-1", &end));
  EXPECT_EQ(0U, m_format->ToUInt64(u"x", &end));
  EXPECT_EQ(12, m_format->ToInt32(u"\u0131\u0132", &end)) << "low bytes only";
}

TEST_F(NumericFormat, TakesNothingForAnEmptyText) {
  const char16_t* end = u"";
  std::int32_t count = 5;
  EXPECT_EQ(0, m_format->ToDouble(nullptr, &end));
  EXPECT_EQ(nullptr, end);
  EXPECT_EQ(0, m_format->ToDoubleCounted(nullptr, &count));
  EXPECT_EQ(0, count);
  EXPECT_EQ(0, Counted(&I::ToInt32Counted, u"12", -3).first);
  EXPECT_EQ(0, m_format->ToInt64Counted(u"12", nullptr));
}

TEST_F(NumericFormat, IsCountedByHand) {
  auto* format = new NumericFormatImp;
  EXPECT_EQ(2U, format->AddRef());
  EXPECT_EQ(1U, format->Release());
  EXPECT_EQ(0U, format->Release());
}

}  // namespace
}  // namespace hv::util::conv
