// tests/automation/conv/ValueTextTest.cpp - variants as stored and as shown texts, and type names.
#include "automation/conv/ValueText.h"

#include <gtest/gtest.h>

#include <cmath>

#include "../variant/VariantOfCell.h"
#include "automation/conv/DisplayText.h"
#include "automation/conv/TypeNames.h"
#include "automation/conv/VexTime.h"
#include "util/conv/TimeFormat.h"

namespace hv::util::conv {
namespace {

Variant TimeObject() {
  return Variant::Object(vex::CreateTime(TimeValue::FromText("20010203040506007008009")).Get());
}
Variant OtherObject() { return golden::VariantOfCells("VT_DISPATCH", "object(no default)")->value; }

TEST(ValueText, StoresAndShowsValuesOfEveryType) {
  Variant target = Variant::Text(u"target");
  const char* const kDigits = "20010203040506007008009";
  const struct {
    const char* name;
    Variant value;
    const char* stored;  // null if it isn't implemented
    const char* shown;
  } kCases[] = {
      {"Empty", Variant(), "", ""},
      {"Null", Variant::Null(), "", ""},
      {"I2", Variant::I2(-32768), "-32768", "-32768"},
      {"I4", Variant::I4(2147483647), "2147483647", "2147483647"},
      {"UI1", Variant::UI1(200), "-56", "200"},
      {"I1", Variant::I1(-5), nullptr, "-5"},
      {"UI2", Variant::UI2(65535), nullptr, "65535"},
      {"I8", Variant::I8(1LL << 40), nullptr, "1099511627776"},
      {"UI8", Variant::UI8(~0ULL), nullptr, "18446744073709551615"},
      {"Cy", Variant::Cy(10000), nullptr, nullptr},
      {"Error", Variant::Missing(), nullptr, nullptr},
      {"Array", Variant::Array({}), nullptr, nullptr},
      {"R8Whole", Variant::R8(5), "5.", "5"},
      {"R8Tenth", Variant::R8(0.1), "0.1000000000000000055511151231257827021182", "0.1"},
      {"R8Small", Variant::R8(0.015625), "1.5625e-02", "0.015625"},
      {"R8Tiny", Variant::R8(0x1p-40), "9.094947017729282379150390625e-13",
       "9.094947017729282e-13"},
      {"R8Great", Variant::R8(1e20), "100000000000000000000.", "1e+20"},
      {"R8Hundred", Variant::R8(100000), "100000.", "100000"},
      {"R4Tenth", Variant::R4(0.1F), "0.100000001490116119384765625", "0.1"},
      {"R4", Variant::R4(-2.5F), "-2.5", "-2.5"},
      {"Infinity", Variant::R8(-INFINITY), "-inf", "-INF"},
      {"Date", Variant::Date(45000.5), "20230315120000000000000", "20230315120000000000000"},
      {"TimeObject", TimeObject(), kDigits, kDigits},
      {"Unknown", Variant::Unknown(TimeObject().AsObject()), nullptr, nullptr},
      {"Text", Variant::Text(u" a b "), " a b ", " a b "},
      {"True", Variant::Bool(true), "true", "true"},
      {"OddTrue", Variant::BoolBits(2), "true", "true"},
      {"False", Variant::Bool(false), "false", "false"},
      {"ByReference", Variant::RefTo(&target), "target", "target"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    WString stored(u"untouched");
    EXPECT_EQ(c.stored ? S_OK : E_NOTIMPL, TextOfVariant(c.value, &stored));
    EXPECT_EQ(c.stored ? c.stored : "untouched", cor::ToUtf8(stored));
    WString shown(u"untouched");
    EXPECT_EQ(c.shown ? S_OK : E_NOTIMPL, DisplayTextOfVariant(c.value, nullptr, &shown));
    EXPECT_EQ(c.shown ? c.shown : "untouched", cor::ToUtf8(shown));
  }
  for (const Variant& object : {OtherObject(), Variant::Object(nullptr)}) {
    WString text(u"untouched");
    EXPECT_EQ(E_INVALIDARG, TextOfVariant(object, &text));
    EXPECT_EQ(E_INVALIDARG, DisplayTextOfVariant(object, nullptr, &text));
    EXPECT_EQ("untouched", cor::ToUtf8(text));
  }
  EXPECT_EQ(E_POINTER, TextOfVariant(Variant(), nullptr));
  EXPECT_EQ(E_POINTER, DisplayTextOfVariant(Variant(), nullptr, nullptr));
}

TEST(ValueText, ShowsTimesByAPattern) {
  const auto format = CreateTimeFormat();
  format->SetPattern(u"DD.MM.YYYY hh:mm:ss.fff");
  WString text;
  EXPECT_EQ(S_OK, DisplayTextOfVariant(Variant::Date(45000.5), format.Get(), &text));
  EXPECT_EQ("15.03.2023 12:00:00.000", cor::ToUtf8(text));
  EXPECT_EQ(S_OK, DisplayTextOfVariant(TimeObject(), format.Get(), &text));
  EXPECT_EQ("03.02.2001 04:05:06.007", cor::ToUtf8(text));
  EXPECT_EQ(E_INVALIDARG, DisplayTextOfVariant(OtherObject(), format.Get(), &text));
}

TEST(ValueText, ReadsTimesOutOfVariants) {
  Variant date = Variant::Date(45000.5);
  Variant reference = Variant::RefTo(&date);
  const struct {
    const char* name;
    Variant value;
    Result code;
  } kCases[] = {{"Date", date, S_OK},
                {"ByReference", reference, S_OK},
                {"ByTwoReferences", Variant::RefTo(&reference), E_NOTIMPL},
                {"Object", TimeObject(), S_OK},
                {"Unknown", Variant::Unknown(TimeObject().AsObject()), S_OK},
                {"OtherObject", OtherObject(), E_INVALIDARG},
                {"NullUnknown", Variant::Unknown(nullptr), E_INVALIDARG},
                {"Text", Variant::Text(u"20010203"), E_NOTIMPL},
                {"Real", Variant::R8(45000.5), E_NOTIMPL},
                {"Empty", Variant(), E_NOTIMPL}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    WString text;
    EXPECT_EQ(c.code, TimeTextOfVariant(c.value, &text));
    EXPECT_EQ(Failed(c.code) ? 0U : 23U, text.size());
  }
  EXPECT_EQ(E_POINTER, TimeTextOfVariant(date, nullptr));
  EXPECT_EQ(E_POINTER, TimeOfVariant(date, nullptr));
}

TEST(TypeNames, NamesVariantTypes) {
  const struct {
    std::uint16_t type;
    std::u16string_view name;
  } kNames[] = {{0, u"VT_EMPTY"},      {3, u"VT_I4"},         {9, u"VT_DISPATCH"},
                {10, u"unknown type"}, {20, u"unknown type"}, {23, u"VT_UINT"},
                {36, u"VT_RECORD"},    {8192, u"VT_ARRAY"},   {8204, u"unknown type"},
                {0x4005, u"VT_R8"},    {0x6000, u"VT_ARRAY"}};
  for (const auto& c : kNames) EXPECT_EQ(c.name, VariantTypeName(c.type)) << c.type;
  Variant target = Variant::Bool(true);
  EXPECT_EQ(u"VT_BOOL", VariantTypeName(Variant::RefTo(&target)));
}

TEST(TypeNames, NamesDataTypes) {
  const struct {
    std::int32_t type;
    const char* name;
  } kNames[] = {{0, "eNoType"},  {1, "1"},      {2, "eI16"}, {3, "eI32"},
                {4, "eI64"},     {5, "eByte"},  {9, "eR32"}, {10, "eR64"},
                {23, "eString"}, {30, "eTime"}, {24, "24"},  {-7, "-7"}};
  for (const auto& c : kNames) EXPECT_EQ(c.name, cor::ToUtf8(DataTypeName(c.type)));
}

}  // namespace
}  // namespace hv::util::conv
