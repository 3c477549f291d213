// tests/core/model/OdsTypeTest.cpp - type names, seam codes, and how many elements a value has.
#include "core/model/OdsType.h"

#include <gtest/gtest.h>

#include "core/model/Value.h"

namespace hv::vex::engine {
namespace {

struct TypeNameCase {
  const char* name;
  std::u16string_view text;
  std::optional<TypeName> expected;
  std::int32_t seam;
};

class TypeNames : public ::testing::TestWithParam<TypeNameCase> {};

TEST_P(TypeNames, AreReadInAnyCaseAndWrittenBack) {
  const TypeNameCase& c = GetParam();
  const std::optional<TypeName> parsed = ParseTypeName(c.text);
  ASSERT_EQ(parsed.has_value(), c.expected.has_value());
  if (!parsed) return;
  EXPECT_EQ(parsed->type, c.expected->type);
  EXPECT_EQ(parsed->sequence, c.expected->sequence);
  EXPECT_EQ(SeamTypeOf(parsed->type), c.seam);
  const std::optional<TypeName> again = ParseTypeName(NameOfType(parsed->type, parsed->sequence));
  ASSERT_TRUE(again);
  EXPECT_EQ(again->type, parsed->type);
  EXPECT_EQ(again->sequence, parsed->sequence);
}

const TypeNameCase kTypeNames[] = {
    {"Unknown", u"DT_UNKNOWN", TypeName{OdsType::Unknown, false}, 0},
    {"Byte", u"dt_byte", TypeName{OdsType::Byte, false}, 5},
    {"Short", u"DT_SHORT", TypeName{OdsType::Short, false}, 2},
    {"Long", u"DT_LONG", TypeName{OdsType::Long, false}, 3},
    {"LongLong", u"DT_LONGLONG", TypeName{OdsType::LongLong, false}, 4},
    {"Id", u"DT_ID", TypeName{OdsType::Id, false}, 4},
    {"Float", u"Dt_Float", TypeName{OdsType::Float, false}, 9},
    {"DoubleSequence", u"ds_double", TypeName{OdsType::Double, true}, 10},
    {"BooleanSequence", u"DS_BOOLEAN", TypeName{OdsType::Boolean, true}, 11},
    {"String", u"DT_STRING", TypeName{OdsType::String, false}, 23},
    {"Enum", u"DT_ENUM", TypeName{OdsType::Enum, false}, 24},
    {"Date", u"DT_DATE", TypeName{OdsType::Date, false}, 30},
    {"References", u"DS_EXTERNALREFERENCE", TypeName{OdsType::ExternalReference, true}, 41},
    {"ByteStr", u"DT_BYTESTR", TypeName{OdsType::ByteStr, false}, 101},
    {"Blob", u"DT_BLOB", TypeName{OdsType::Blob, false}, 102},
    {"Complex", u"DT_COMPLEX", TypeName{OdsType::Complex, false}, 103},
    {"DComplexSequence", u"DS_DCOMPLEX", TypeName{OdsType::DComplex, true}, 104},
    {"NoSequenceOfBlobs", u"DS_BLOB", std::nullopt, 0},
    {"NoSequenceOfUnknown", u"DS_UNKNOWN", std::nullopt, 0},
    {"Empty", u"", std::nullopt, 0},
    {"Prefix", u"DT_LON", std::nullopt, 0},
    {"TrailingBlank", u"DT_LONG ", std::nullopt, 0},
};
INSTANTIATE_TEST_SUITE_P(All, TypeNames, ::testing::ValuesIn(kTypeNames),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SeamTypes, GiveTheTypeThatIsStored) {
  struct Case {
    std::int32_t seam;
    std::optional<OdsType> type;
  };
  const Case cases[] = {
      {1, OdsType::Short},     {2, OdsType::Short},      {3, OdsType::Long},
      {4, OdsType::LongLong},  {5, OdsType::Byte},       {9, OdsType::Float},
      {10, OdsType::Double},   {11, OdsType::Boolean},   {23, OdsType::String},
      {24, OdsType::Enum},     {30, OdsType::Date},      {41, OdsType::ExternalReference},
      {101, OdsType::ByteStr}, {104, OdsType::DComplex}, {0, std::nullopt},
      {6, std::nullopt},       {8, std::nullopt},        {40, std::nullopt},
      {-1, std::nullopt},      {105, std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.seam);
    EXPECT_EQ(OdsTypeOfSeam(c.seam), c.type);
  }
}

TEST(Values, CountElementsAndNotParts) {
  EXPECT_FALSE(Value::Unset(OdsType::Long).IsSet());
  EXPECT_EQ(Value::Unset(OdsType::Long).Count(), 0u);
  EXPECT_EQ(Value::Text(OdsType::String, u"").Count(), 1u);
  const Value complex{OdsType::DComplex, true, Value::Reals{1, 2, 3, 4}};
  EXPECT_EQ(complex.Count(), 2u);
  const Value emptySequence{OdsType::Long, true, Value::Integers{}};
  EXPECT_TRUE(emptySequence.IsSet());
  EXPECT_EQ(emptySequence.Count(), 0u);
}

}  // namespace
}  // namespace hv::vex::engine
