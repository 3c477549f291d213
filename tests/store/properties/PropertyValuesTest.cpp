// store/properties/PropertyValuesTest.cpp - values of properties: written, refused, made longer,
// kept.
#include <string>

#include <gtest/gtest.h>

#include "tests/store/properties/RigFixture.h"

namespace hv::vex {
namespace {

using easyImpl::IPropertyImpl;
using StorePropertyValues = test::RigTest;

/// Every kind of variant against every type of the record: what is stored, or "-" if it is refused
/// with VEX_E_VALUE_TYPE and the value stays.
TEST_F(StorePropertyValues, AreTakenByTypeOrRefused) {
  const char16_t* const properties[] = {u"Short",  u"Long",  u"LongLong", u"Byte",   u"Float",
                                        u"Double", u"Title", u"State",    u"Active", u"Built"};
  struct Row {
    const char* name;
    Variant value;
    const char* stored[10];
  };
  // An enumeration takes every number, as files may hold numbers without an item.
  const Row rows[] = {
      {"empty", Variant(), {"", "", "", "", "", "", "", "", "", ""}},
      {"null", Variant::Null(), {"", "", "", "", "", "", "", "", "", ""}},
      {"I2", Variant::I2(1), {"1", "1", "1", "1", "1", "1", "1", "on", "-1", "-"}},
      {"I4", Variant::I4(1), {"1", "1", "1", "1", "1", "1", "1", "on", "-1", "-"}},
      {"I8", Variant::I8(0), {"0", "0", "0", "0", "0", "0", "0", "off", "0", "-"}},
      {"R4", Variant::R4(1.5F), {"2", "2", "2", "2", "1.5", "1.5", "1.5", "2", "-1", "-"}},
      {"R8", Variant::R8(-2.5), {"-2", "-2", "-2", "-", "-2.5", "-2.5", "-2.5", "-2", "-1", "-"}},
      {"UI1",
       Variant::UI1(255),
       {"255", "255", "255", "255", "255", "255", "255", "255", "-1", "-"}},
      {"I1", Variant::I1(-1), {"-1", "-1", "-1", "-", "-1", "-1", "-1", "-1", "-1", "-"}},
      {"UI4",
       Variant::UI4(4000000000U),
       {"-", "-", "4000000000", "-", "4E+09", "4000000000", "4000000000", "-", "-1", "-"}},
      {"UI8",
       Variant::UI8(18446744073709551615ULL),
       {"-", "-", "-", "-", "1.844674E+19", "1.84467440737096E+19", "18446744073709551615", "-",
        "-1", "-"}},
      {"text", Variant::Text(u"on"), {"-", "-", "-", "-", "-", "-", "on", "on", "-", "-"}},
      {"number as text", Variant::Text(u"1"), {"-", "-", "-", "-", "-", "-", "1", "on", "-", "-"}},
      {"truth", Variant::Bool(true), {"-1", "-1", "-1", "-", "-1", "-1", "-", "-1", "-1", "-"}},
      {"date",
       Variant::Date(36925.5),
       {"-", "-", "-", "-", "-", "-", "-", "-", "-", "2/3/2001 12:00:00 PM"}},
      {"decimal",
       Variant::Dec({25, 0, 1, 0}),
       {"-", "-", "-", "-", "2.5", "2.5", "2.5", "-", "-", "1/1/1900 12:00:00 PM"}},
      {"currency", Variant::Cy(10000), {"-", "-", "-", "-", "-", "-", "-", "-", "-", "-"}},
      {"no object", Variant::Object(nullptr), {"-", "-", "-", "-", "-", "-", "-", "-", "-", "-"}},
      {"array", Variant::Array({}), {"-", "-", "-", "-", "-", "-", "-", "-", "-", "-"}},
      {"missing", Variant::Missing(), {"-", "-", "-", "-", "-", "-", "-", "-", "-", "-"}},
  };
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < std::size(properties); ++i) {
      SCOPED_TRACE(std::string(row.name) + " in " + cor::ToUtf8(properties[i]));
      const std::string item = "Item('" + cor::ToUtf8(properties[i]) + "').Value";
      const std::string before = Ask(item);
      Ref<IPropertyImpl> property;
      ASSERT_EQ(S_OK, m_logic->GetItemByName(properties[i], property.Put()));
      Variant value = row.value;
      const bool isRefused = std::string(row.stored[i]) == "-";
      EXPECT_EQ(isRefused ? VEX_E_VALUE_TYPE : S_OK, property->SetValue(Variant::RefTo(&value)));
      const std::string stored = *row.stored[i] ? row.stored[i] : "null";
      EXPECT_EQ(isRefused ? before : stored, Ask(item));
    }
  }
}

TEST_F(StorePropertyValues, TextsAreWrittenLikeVariants) {
  Ref<IPropertyImpl> property;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"State", property.Put()));
  EXPECT_EQ(S_OK, property->SetValueText(u"off"));
  EXPECT_EQ("off", Ask("Item('State').Value"));
  EXPECT_EQ(VEX_E_VALUE_TYPE, property->SetValueText(u"broken"));
  EXPECT_EQ("off", Ask("Item('State').Value"));
}

TEST_F(StorePropertyValues, ListsGrowByWritingBehindTheirEnd) {
  EXPECT_EQ("empty", WriteAt(u"Tags", 5, Variant::Text(u"last")));
  EXPECT_EQ("6", Ask("Item('Tags').Size"));
  EXPECT_EQ("hot dry    last", ValuesOf("Tags"));
  EXPECT_EQ("empty", WriteAt(u"Tags", 7, Variant()));
  EXPECT_EQ("empty", WriteAt(u"Tags", 7, Variant::Null()));
  EXPECT_EQ("6", Ask("Item('Tags').Size"));
  EXPECT_EQ("empty", WriteAt(u"Levels", 2, Variant::I4(3)));
  EXPECT_EQ("1 2 3", ValuesOf("Levels"));
  EXPECT_EQ("empty", Write(u"Levels", Variant::I4(9)));
  EXPECT_EQ("9 2 3", ValuesOf("Levels"));
  Show(u"Rig:2");
  EXPECT_EQ("empty", Write(u"Levels", Variant::Null()));
  EXPECT_EQ("0", Ask("Item('Levels').Size"));
  EXPECT_EQ("empty", WriteAt(u"Levels", 1, Variant::I4(5)));
  EXPECT_EQ("0 5", ValuesOf("Levels"));
}

TEST_F(StorePropertyValues, ThatAreHeldFollowTheRecord) {
  const test::Answer held = Answered("Item('Title')");
  const test::Answer levels = Answered("Item('Levels')");
  Show(u"Rig:1");  // another list, as after a refresh of the element
  ListInstanceProperties();
  EXPECT_EQ("empty", Write(u"Title", Variant::Text(u"Renamed")));
  EXPECT_EQ("empty", WriteAt(u"Levels", 2, Variant::I4(3)));
  EXPECT_EQ("Renamed", test::Eval(held.Object(), "Value").Shown());
  EXPECT_EQ("3", test::Eval(levels.Object(), "Values(2)").Shown());
  EXPECT_EQ("empty", test::Put(levels.Object(), u"Values", Variant::I4(3), Variant::I4(4)).Shown());
  EXPECT_EQ("1 2 3 4", ValuesOf("Levels"));
  // What is written past the properties is seen as well.
  Instance(u"Rig:1").As<IContainer>()->SetString(u"name", u"Again");
  EXPECT_EQ("Again", test::Eval(held.Object(), "Value").Shown());
  EXPECT_EQ("Again", Ask("Item('Title').Value"));
}

TEST_F(StorePropertyValues, AreSavedWithTheStore) {
  ListInstanceProperties();
  ASSERT_EQ("empty", Write(u"Built", Variant::Date(40000.25)));
  ASSERT_EQ("empty", WriteAt(u"Tags", 2, Variant::Text(u"new")));
  ASSERT_EQ("object", Add(u"Count", Variant::I4(12), eI64));
  ASSERT_EQ("empty", Ask("Remove('Weather')"));
  EXPECT_NE(0, m_store->GetState(3));
  m_store->Save(u"");
  m_properties.Reset();
  m_logic.Reset();
  OpenRig(u"<filename>");
  ListInstanceProperties();
  EXPECT_EQ("7/6/2009 6:00:00 AM", Ask("Item('Built').Value"));
  EXPECT_EQ("hot dry new", ValuesOf("Tags"));
  EXPECT_EQ("12", Ask("Item('Count').Value"));
  EXPECT_EQ("4", Ask("Item('Count').DataType"));
  EXPECT_EQ(std::string(test::kRigNames) + " Wind Count", Names());
}

}  // namespace
}  // namespace hv::vex
