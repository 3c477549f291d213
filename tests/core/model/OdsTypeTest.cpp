// tests/core/model/OdsTypeTest.cpp - type names, seam codes, and how many elements a value has.
#include "core/model/OdsType.h"

#include <gtest/gtest.h>

#include "core/model/Value.h"

namespace hv::vex::engine {
namespace {

TEST(OdsTypes, HaveANameAndACodeAtTheSeam) {
  constexpr std::tuple<OdsType, std::u16string_view, std::int32_t> kTypes[] = {
      {OdsType::Unknown, u"UNKNOWN", 0},   {OdsType::Byte, u"BYTE", 5},
      {OdsType::Short, u"SHORT", 2},       {OdsType::Long, u"LONG", 3},
      {OdsType::LongLong, u"LONGLONG", 4}, {OdsType::Id, u"ID", 4},
      {OdsType::Float, u"FLOAT", 9},       {OdsType::Double, u"DOUBLE", 10},
      {OdsType::Boolean, u"BOOLEAN", 11},  {OdsType::String, u"STRING", 23},
      {OdsType::Enum, u"ENUM", 24},        {OdsType::Date, u"DATE", 30},
      {OdsType::Complex, u"COMPLEX", 103}, {OdsType::ExternalReference, u"EXTERNALREFERENCE", 41},
      {OdsType::Blob, u"BLOB", 102},       {OdsType::DComplex, u"DCOMPLEX", 104},
      {OdsType::ByteStr, u"BYTESTR", 101}};
  for (const auto& [type, name, seam] : kTypes) {
    SCOPED_TRACE(std::string(name.begin(), name.end()));
    EXPECT_EQ(seam, SeamTypeOf(type));

    if (type != OdsType::Unknown && type != OdsType::Id) {
      EXPECT_EQ(type, OdsTypeOfSeam(seam));
    }
    for (const bool sequence : {false, true}) {
      const std::u16string text = (sequence ? u"DS_" : u"DT_") + std::u16string(name);
      const std::optional<TypeName> parsed = ParseTypeName(text);
      const bool exists = !sequence || (type != OdsType::Unknown && type != OdsType::Blob);
      ASSERT_EQ(exists, parsed.has_value());
      if (!exists) continue;
      EXPECT_EQ(type, parsed->type);
      EXPECT_EQ(sequence, parsed->sequence);
      EXPECT_EQ(text, NameOfType(type, sequence));
    }
  }
  EXPECT_EQ(OdsType::Float, ParseTypeName(u"dt_Float")->type);
  for (const auto* text : {u"", u"DT_LON", u"DT_LONG "}) EXPECT_FALSE(ParseTypeName(text));
  EXPECT_EQ(OdsType::Short, OdsTypeOfSeam(1));
  EXPECT_EQ(OdsType::LongLong, OdsTypeOfSeam(4));
  for (const int seam : {0, 6, 8, 40, -1, 105}) EXPECT_EQ(std::nullopt, OdsTypeOfSeam(seam));
}

TEST(Values, CountElementsAndNotParts) {
  EXPECT_FALSE(Value::Unset(OdsType::Long).IsSet());
  EXPECT_EQ(0u, Value::Unset(OdsType::Long).Count());
  EXPECT_EQ(1u, Value::Text(OdsType::String, u"").Count());
  EXPECT_EQ(2u, (Value{OdsType::DComplex, true, Value::Reals{1, 2, 3, 4}}.Count()));
  const Value emptySequence{OdsType::Long, true, Value::Integers{}};
  EXPECT_TRUE(emptySequence.IsSet());
  EXPECT_EQ(0u, emptySequence.Count());
}

}  // namespace
}  // namespace hv::vex::engine
