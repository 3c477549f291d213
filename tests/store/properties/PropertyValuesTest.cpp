// store/properties/PropertyValuesTest.cpp - values of properties: written, refused, made longer,
// kept.
#include "tests/store/properties/RigFixture.h"

namespace hv::vex {
namespace {

using easyImpl::IPropertyImpl;
using StorePropertyValues = test::RigTest;

/// Every kind of variant against every type of the record: what is stored, or "-" if it is refused
/// with VEX_E_VALUE_TYPE and the value stays.
TEST_F(StorePropertyValues, AreTakenByTypeOrRefused) {
  const struct {
    Variant value;
    const char* stored;
  } rows[] = {
      // Short, Long, LongLong, Byte, Float, Double, Title, State, Active, Built
      {Variant(), "null|null|null|null|null|null|null|null|null|null|"},
      {Variant::Null(), "null|null|null|null|null|null|null|null|null|null|"},
      // An enumeration takes every number, as files may hold numbers without an item.
      {Variant::I2(1), "1|1|1|1|1|1|1|on|-1|-|"},
      {Variant::I4(1), "1|1|1|1|1|1|1|on|-1|-|"},
      {Variant::I8(0), "0|0|0|0|0|0|0|off|0|-|"},
      {Variant::R4(1.5F), "2|2|2|2|1.5|1.5|1.5|2|-1|-|"},
      {Variant::R8(-2.5), "-2|-2|-2|-|-2.5|-2.5|-2.5|-2|-1|-|"},
      {Variant::UI1(255), "255|255|255|255|255|255|255|255|-1|-|"},
      {Variant::I1(-1), "-1|-1|-1|-|-1|-1|-1|-1|-1|-|"},
      {Variant::UI4(4000000000U), "-|-|4000000000|-|4E+09|4000000000|4000000000|-|-1|-|"},
      {Variant::UI8(18446744073709551615ULL),
       "-|-|-|-|1.844674E+19|1.84467440737096E+19|18446744073709551615|-|-1|-|"},
      {Variant::Text(u"on"), "-|-|-|-|-|-|on|on|-|-|"},
      {Variant::Text(u"1"), "-|-|-|-|-|-|1|on|-|-|"},
      {Variant::Bool(true), "-1|-1|-1|-|-1|-1|-|-1|-1|-|"},
      {Variant::Date(36925.5), "-|-|-|-|-|-|-|-|-|2/3/2001 12:00:00 PM|"},
      {Variant::Dec({25, 0, 1, 0}), "-|-|-|-|2.5|2.5|2.5|-|-|1/1/1900 12:00:00 PM|"},
      {Variant::Cy(10000), "-|-|-|-|-|-|-|-|-|-|"},
      {Variant::Object(nullptr), "-|-|-|-|-|-|-|-|-|-|"},
      {Variant::Array({}), "-|-|-|-|-|-|-|-|-|-|"},
      {Variant::Missing(), "-|-|-|-|-|-|-|-|-|-|"},
  };
  for (const auto& row : rows) {
    std::string stored;
    for (const std::string name : {"Short", "Long", "LongLong", "Byte", "Float", "Double", "Title",
                                   "State", "Active", "Built"}) {
      const std::string before = Ask("p('" + name + "').Value");
      Ref<IPropertyImpl> property;
      ASSERT_EQ(S_OK, m_logic->GetItemByName(cor::FromUtf8(name), property.Put()));
      Variant value = row.value;
      const Result rc = property->SetValue(Variant::RefTo(&value));
      const std::string after = Ask("p('" + name + "').Value");
      const bool isRefused = rc == VEX_E_VALUE_TYPE && before == after;
      EXPECT_TRUE(isRefused || rc == S_OK) << name;
      stored += (isRefused ? "-" : after) + "|";
    }
    EXPECT_EQ(row.stored, stored) << row.value.Type();
  }
}

TEST_F(StorePropertyValues, TextsAreWrittenLikeVariants) {
  Ref<IPropertyImpl> property;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"State", property.Put()));
  EXPECT_EQ(S_OK, property->SetValueText(u"off"));
  EXPECT_EQ(VEX_E_VALUE_TYPE, property->SetValueText(u"broken"));
  EXPECT_EQ("off", Ask("p('State').Value"));
}

TEST_F(StorePropertyValues, ListsGrowByWritingBehindTheirEnd) {
  EXPECT_EQ("empty", Ask("p('Tags').Values(5) = 'last'"));
  EXPECT_EQ("hot dry    last", ValuesOf("Tags"));
  Expect({{"p('Tags').Values(7) = empty", "empty"},
          {"p('Tags').Values(7) = null", "empty"},
          {"p('Tags').Size", "6"},
          {"p('Levels').Values(2) = 3", "empty"}});
  EXPECT_EQ("1 2 3", ValuesOf("Levels"));
  EXPECT_EQ("empty", Ask("p('Levels').Value = 9"));
  EXPECT_EQ("9 2 3", ValuesOf("Levels"));
  Show(u"Rig:2");
  Expect({{"p('Levels').Value = null", "empty"},
          {"p('Levels').Size", "0"},
          {"p('Levels').Values(1) = 5", "empty"}});
  EXPECT_EQ("0 5", ValuesOf("Levels"));
}

TEST_F(StorePropertyValues, ThatAreHeldFollowTheRecord) {
  Expect({{"Set title = p('Title')", "Title"}, {"Set levels = p('Levels')", "Levels"}});
  Show(u"Rig:1", true);  // another list, as after a refresh of the element
  Expect({{"p('Title').Value = 'Renamed'", "empty"},
          {"p('Levels').Values(2) = 3", "empty"},
          {"title.Value", "Renamed"},
          {"levels.Values(2)", "3"},
          {"levels.Values(3) = 4", "empty"}});
  EXPECT_EQ("1 2 3 4", ValuesOf("Levels"));
  // What is written past the properties is seen as well.
  Instance(u"Rig:1").As<IContainer>()->SetString(u"name", u"Again");
  Expect({{"title.Value", "Again"}, {"p('Title').Value", "Again"}});
}

TEST_F(StorePropertyValues, AreSavedWithTheStore) {
  List();
  m_script.Set("date", Variant::Date(40000.25));
  Expect({{"p('Built').Value = date", "empty"},
          {"p('Tags').Values(2) = 'new'", "empty"},
          {"p.Add('Count',12,4)", "Count"},
          {"p.Remove('Weather')", "empty"}});
  EXPECT_NE(0, m_store->GetState(3));
  m_store->Save(u"");
  OpenRig(u"<filename>");
  List();
  Expect({{"p('Built').Value", "7/6/2009 6:00:00 AM"},
          {"p('Count').Value", "12"},
          {"p('Count').DataType", "4"},
          {"p", Names("|Wind|Count")}});
  EXPECT_EQ("hot dry new", ValuesOf("Tags"));
}

}  // namespace
}  // namespace hv::vex
