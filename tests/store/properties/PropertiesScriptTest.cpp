// store/properties/PropertiesScriptTest.cpp - the list of properties, by name and by its typed
// faces, and the messages of both.
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "store/properties/InstanceTypes.h"
#include "tests/store/properties/RigFixture.h"

namespace hv::vex {
namespace {

using easyImpl::IPropertyImpl;
using test::kRigNames;

using StoreProperties = test::RigTest;

TEST_F(StoreProperties, AreThoseOfTheEntityUnlessOthersAreAskedFor) {
  EXPECT_EQ(kRigNames, Names());
  EXPECT_EQ("14", Ask("Count"));
  EXPECT_EQ("0", Ask("ListInstanceProperties"));
  EXPECT_EQ("0", Ask("Exists('Weather')"));
  EXPECT_EQ("empty",
            test::Put(m_properties.Get(), u"ListInstanceProperties", Variant::Bool(true)).Shown());
  EXPECT_EQ("1", Ask("ListInstanceProperties"));
  EXPECT_EQ(std::string(kRigNames) + " Weather Wind", Names());
  EXPECT_EQ("Wind", Ask("Item(15).Name"));
  EXPECT_EQ("1", Ask("Exists('Weather')"));
  EXPECT_EQ("empty",
            test::Put(m_properties.Get(), u"ListInstanceProperties", Variant::I4(0)).Shown());
  EXPECT_EQ(kRigNames, Names());
  Show(u"Rig:2");
  ListInstanceProperties();
  EXPECT_EQ(kRigNames, Names());
}

TEST_F(StoreProperties, OfALocalColumnDoNotShowItsFlags) {
  Show(u"Column:1");
  EXPECT_EQ("Id Name GlobalFlag Representation", Names());
  EXPECT_EQ("0", Ask("Exists('Quality')"));
  EXPECT_EQ("0", Ask("Exists('flags')"));
  EXPECT_EQ("15", Ask("Item('global_flag').Value"));
  // Hidden, but still a name that the entity has.
  ListInstanceProperties();
  EXPECT_EQ("351 Application properties cannot be removed.", Ask("Remove('flags')"));
  EXPECT_EQ("345 The Name argument from the Add method must be a valid property name.",
            Add(u"flags", Variant::I4(1), eI32));
}

TEST_F(StoreProperties, AreFoundByIndexNameAndBaseName) {
  struct Line {
    const char* expression;
    const char* shown;
  };
  for (const Line& line : {Line{"Item(1).Name", "Title"},
                           {"Item('Title').Value", "Bench"},
                           {"Item('name').Name", "Title"},
                           {"Item('id').Value", "1"},
                           {"Exists('name')", "1"},
                           {"Exists('Title')", "1"},
                           {"Exists('title')", "0"},
                           {"Exists('Runs')", "0"},
                           {"Exists('children')", "0"},
                           {"Exists('Picture')", "0"},
                           {"Exists('')", "0"},
                           {"Exists('nothing')", "0"},
                           {"Item('nothing')", "250 Unknown error."},
                           {"Item('')", "250 Unknown error."},
                           {"Item('Runs')", "250 Unknown error."},
                           {"Item('Picture')", "250 Unknown error."},
                           {"Item(14)", "250 Unknown error."},
                           {"Item(-1)", "250 Unknown error."},
                           {"Item(null)", "250 Unknown error."}}) {
    SCOPED_TRACE(line.expression);
    EXPECT_EQ(line.shown, Ask(line.expression));
  }
}

struct MemberCase {
  const char* property;
  const char* type;
  const char* value;
  const char* size;
  const char* base;
  const char* ofInstance;
};
TEST_F(StoreProperties, TellAllAboutThemselves) {
  ListInstanceProperties();
  const char* kNone = "343 This property is no base property.";
  for (const MemberCase& c : {MemberCase{"Id", "4", "1", "1", "id", "0"},
                              {"Title", "23", "Bench", "1", "name", "0"},
                              {"Built", "30", "2/3/2001 4:05:06 AM", "1", kNone, "0"},
                              {"Double", "10", "2.5", "1", kNone, "0"},
                              {"Float", "9", "1.5", "1", kNone, "0"},
                              {"Short", "2", "-7", "1", kNone, "0"},
                              {"Long", "3", "70000", "1", kNone, "0"},
                              {"LongLong", "4", "5000000000", "1", kNone, "0"},
                              {"Byte", "5", "200", "1", kNone, "0"},
                              {"Active", "11", "-1", "1", kNone, "0"},
                              {"State", "24", "on", "1", kNone, "0"},
                              {"Tags", "23", "hot", "2", kNone, "0"},
                              {"Levels", "3", "1", "2", kNone, "0"},
                              {"flags", "3", "15", "1", kNone, "0"},
                              {"Weather", "23", "fog", "1", kNone, "1"},
                              {"Wind", "3", "4", "1", kNone, "1"}}) {
    SCOPED_TRACE(c.property);
    const std::string item = "Item('" + std::string(c.property) + "').";
    EXPECT_EQ(c.property, Ask(item + "Name"));
    EXPECT_EQ(c.property, Ask(item + "DisplayName"));
    EXPECT_EQ(c.type, Ask(item + "DataType"));
    EXPECT_EQ(c.value, Ask(item + "Value"));
    EXPECT_EQ(c.value, Ask(item + "Values(0)"));
    EXPECT_EQ(c.size, Ask(item + "Size"));
    EXPECT_EQ(c.base, Ask(item + "BaseName"));
    EXPECT_EQ(c.ofInstance, Ask(item + "IsInstanceProperty"));
    EXPECT_EQ("0", Ask(item + "Default"));
    EXPECT_EQ("0", Ask(item + "Hidden"));
  }
  Show(u"Rig:2");
  for (const char* name : {"Built", "Long", "State", "Tags"}) {
    SCOPED_TRACE(name);
    const std::string item = "Item('" + std::string(name) + "').";
    EXPECT_EQ("null", Ask(item + "Value"));
    EXPECT_EQ("0", Ask(item + "Size"));
    EXPECT_EQ("1", Ask(item + "Default"));
    EXPECT_EQ("211 The index 0 is out of range for the property Values.", Ask(item + "Values(0)"));
  }
}

TEST_F(StoreProperties, AddWritesWhatExistsAndAddsWhatDoesNot) {
  EXPECT_EQ("object", Add(u"Title", Variant::Text(u"New"), eString));
  EXPECT_EQ("object", Add(u"name", Variant::Text(u"Newer"), kTypeEnumeration));
  EXPECT_EQ("Newer", Ask("Item('Title').Value"));
  ListInstanceProperties();
  EXPECT_EQ("object", Add(u"Mass", Variant::R8(1.25), eR64));
  EXPECT_EQ("object", Add(u"Nothing", Variant::Null(), eI32));
  EXPECT_EQ("object", Add(u"Wind", Variant::I4(9), eI32));
  EXPECT_EQ(std::string(kRigNames) + " Weather Wind Mass Nothing", Names());
  EXPECT_EQ("1.25", Ask("Item('Mass').Value"));
  EXPECT_EQ("null", Ask("Item('Nothing').Value"));
  EXPECT_EQ("9", Ask("Item('Wind').Value"));
  // The instance has them, not this list alone.
  Show(u"Rig:1");
  ListInstanceProperties();
  EXPECT_EQ("1.25", Ask("Item('Mass').Value"));
  EXPECT_EQ("1", Ask("Item('Mass').IsInstanceProperty"));
}

TEST_F(StoreProperties, AddTakesEveryTypeThatItNames) {
  struct Line {
    std::int32_t type;
    std::int32_t kept;
    Variant value;
    const char* shown;
  };
  ListInstanceProperties();
  for (const Line& line : {Line{1, 2, Variant::I4(-3), "-3"},
                           {2, 2, Variant::I4(-3), "-3"},
                           {3, 3, Variant::I4(-3), "-3"},
                           {4, 4, Variant::I4(-3), "-3"},
                           {5, 5, Variant::I4(250), "250"},
                           {6, 3, Variant::I4(65535), "65535"},
                           {7, 4, Variant::UI4(4294967295U), "4294967295"},
                           {8, 4, Variant::I4(3), "3"},
                           {9, 9, Variant::R4(0.5F), "0.5"},
                           {10, 10, Variant::R8(0.5), "0.5"},
                           {23, 23, Variant::I4(7), "7"},
                           {24, 23, Variant::Text(u"red"), "red"},
                           {30, 30, Variant::Date(36925), "2/3/2001"}}) {
    SCOPED_TRACE(line.type);
    const std::string name = "T" + std::to_string(line.type);
    EXPECT_EQ("object", Add(cor::FromUtf8(name), line.value, line.type));
    EXPECT_EQ(line.shown, Ask("Item('" + name + "').Value"));
    EXPECT_EQ(std::to_string(line.kept), Ask("Item('" + name + "').DataType"));
  }
  for (std::int32_t type = -1; type <= 120; ++type) {
    const bool isTaken = (type >= 1 && type <= 10) || type == 23 || type == 24 || type == 30;
    if (isTaken) continue;
    EXPECT_EQ("346 The Type argument from the Add method must be a valid data type.",
              Add(u"T", Variant::Null(), type))
        << type;
  }
}

constexpr const char* kListOff =
    "347 The property ListInstanceProperties must have the value TRUE in order to handle instance "
    "properties.";
constexpr const char* kBadType =
    "346 The Type argument from the Add method must be a valid data type.";
constexpr const char* kBadName =
    "345 The Name argument from the Add method must be a valid property name.";
constexpr const char* kUnfit =
    "359 The data type of the parameter Value does not match the value of the parameter Type.";
constexpr const char* kWrongValue =
    "361 The data type of the value does not match the data type of the property.";
constexpr const char* kApplication = "351 Application properties cannot be removed.";
constexpr const char* kLocked = "365 The data store is write protected.";
constexpr const char* kUnknown = "250 Unknown error.";
constexpr const char* kGone = "323 The object is no longer valid.";

struct MessageCase {
  bool listed;
  const char* shown;
  std::function<std::string()> call;
};

TEST_F(StoreProperties, RaiseTheMessagesOfTheTable) {
  const auto text = [](const char16_t* t) { return Variant::Text(t); };
  const MessageCase cases[] = {
      // Add
      {true, kBadType, [&] { return Add(u"x", Variant::I4(1), 11); }},
      {true, kBadType, [&] { return Add(u"", text(u"a"), 0); }},  // before the name and the value
      {true, kUnfit, [&] { return Add(u"x", text(u"1"), eI32); }},
      {true, kUnfit, [&] { return Add(u"", Variant::Bool(true), eString); }},
      {false, kUnfit, [&] { return Add(u"Title", Variant::I4(1), eTime); }},
      {true, kWrongValue, [&] { return Add(u"Long", text(u"1"), eString); }},
      {true, kWrongValue, [&] { return Add(u"x", Variant::I4(40000), eI16); }},
      {true, kBadName, [&] { return Add(u"", Variant::I4(1), eI32); }},
      {true, kBadName, [&] { return Add(u"1st", Variant::I4(1), eI32); }},
      {true, kBadName, [&] { return Add(u"Runs", Variant::I4(1), eI32); }},
      {false, kBadName, [&] { return Add(u"a b", Variant::I4(1), eI32); }},  // before 347
      {false, kListOff, [&] { return Add(u"x", Variant::I4(1), eI32); }},
      {false, kBadName, [&] { return Add(u"Wind", Variant::I4(1), eI32); }},  // taken, not listed
      // Remove
      {true, kApplication, [&] { return Ask("Remove('Title')"); }},
      {true, kApplication, [&] { return Ask("Remove('name')"); }},
      {true, kApplication, [&] { return Ask("Remove(0)"); }},
      {false, kListOff, [&] { return Ask("Remove('Title')"); }},
      {false, kListOff, [&] { return Ask("Remove('nothing')"); }},
      {false, kListOff, [&] { return Ask("Remove(0)"); }},
      {true, "215 The index nothing does not correspond to a member of the collection.",
       [&] { return Ask("Remove('nothing')"); }},
      {true, "215 The index 16 does not correspond to a member of the collection.",
       [&] { return Ask("Remove(16)"); }},
      {false, "215 The index -1 does not correspond to a member of the collection.",
       [&] { return Ask("Remove(-1)"); }},
      // RemoveAll
      {false, kListOff, [&] { return Ask("RemoveAll"); }},
      // BaseName
      {true, "343 This property is no base property.",
       [&] { return Ask("Item('Wind').BaseName"); }},
      // Value and Values
      {true, kWrongValue, [&] { return Write(u"Long", text(u"1")); }},
      {true, kWrongValue, [&] { return Write(u"Wind", text(u"1")); }},
      {true, kWrongValue, [&] { return Write(u"Short", Variant::I4(40000)); }},
      {true, kWrongValue, [&] { return WriteAt(u"Tags", 0, Variant::Bool(true)); }},
      {true, kWrongValue, [&] { return WriteAt(u"Levels", 0, Variant::R8(1e300)); }},
      {true, "211 The index 2 is out of range for the property Values.",
       [&] { return Ask("Item('Tags').Values(2)"); }},
      {true, "211 The index -1 is out of range for the property Values.",
       [&] { return Ask("Item('Tags').Values(-1)"); }},
      {true, "211 The index -1 is out of range for the property Values.",
       [&] { return WriteAt(u"Tags", -1, text(u"a")); }},
      {true, "211 The index 1 is out of range for the property Values.",
       [&] { return WriteAt(u"Title", 1, text(u"a")); }},
      // The record's id isn't the caller's to change.
      {true, kLocked, [&] { return Write(u"Id", Variant::I4(7)); }},
  };
  for (const MessageCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    ListInstanceProperties(c.listed);
    EXPECT_EQ(c.shown, c.call());
  }
  // Nothing of all that has left a trace.
  ListInstanceProperties();
  EXPECT_EQ(std::string(kRigNames) + " Weather Wind", Names());
  EXPECT_EQ("-7", Ask("Item('Short').Value"));
  EXPECT_EQ("70000", Ask("Item('Long').Value"));
  EXPECT_EQ("hot dry", ValuesOf("Tags"));
}

TEST_F(StoreProperties, OfAStoreForReadingRefuseToChange) {
  OpenRig(u"<filename readonly='yes'>");
  const MessageCase cases[] = {
      {false, kLocked, [&] { return Write(u"Title", Variant::Text(u"x")); }},
      {true, kLocked, [&] { return Write(u"Weather", Variant::Text(u"x")); }},
      {false, kLocked, [&] { return WriteAt(u"Tags", 0, Variant::Text(u"x")); }},
      {false, kLocked, [&] { return WriteAt(u"Tags", 5, Variant::Text(u"x")); }},
      {false, "empty", [&] { return WriteAt(u"Tags", 5, Variant()); }},  // writes nothing
      {false, kUnknown, [&] { return Add(u"Title", Variant::Text(u"x"), eString); }},
      {true, kUnknown, [&] { return Add(u"x", Variant::I4(1), eI32); }},
      {true, kUnknown, [&] { return Ask("Remove('Wind')"); }},
      {true, kUnknown, [&] { return Ask("RemoveAll"); }},
  };
  for (const MessageCase& c : cases) {
    SCOPED_TRACE(&c - cases);
    ListInstanceProperties(c.listed);
    EXPECT_EQ(c.shown, c.call());
  }
  EXPECT_EQ(std::string(kRigNames) + " Weather Wind", Names());
  EXPECT_EQ("Bench", Ask("Item('Title').Value"));
  // The codes behind them.
  Ref<IPropertyImpl> property;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"Tags", property.Put()));
  EXPECT_EQ(E_ACCESSDENIED, property->SetValueAt(1, Variant::Text(u"x")));
  EXPECT_EQ(VEX_E_WRITE_PROTECTED, m_logic->Remove(u"Wind"));
  EXPECT_EQ(VEX_E_WRITE_PROTECTED, m_logic->Add(u"x", Variant::I4(1), eI32, property.Put()));
  EXPECT_FALSE(property);
}

TEST_F(StoreProperties, OfADeletedRecordAreGone) {
  const test::Answer title = Answered("Item('Title')");
  Instance(u"Rig:1")->Delete();
  EXPECT_EQ(kGone, test::Eval(title.Object(), "Value").Shown());
  EXPECT_EQ(kGone, test::Eval(title.Object(), "Size").Shown());
  EXPECT_EQ(kGone, test::Put(title.Object(), u"Value", Variant::Text(u"x")).Shown());
  EXPECT_EQ(kGone,
            test::Put(m_properties.Get(), u"ListInstanceProperties", Variant::I4(1)).Shown());
  EXPECT_EQ("0", Ask("ListInstanceProperties"));
  EXPECT_EQ(VEX_E_OBJECT_GONE, m_logic->Fill());
}

TEST_F(StoreProperties, AreRemovedFromTheInstance) {
  ListInstanceProperties();
  ASSERT_EQ("object", Add(u"Mass", Variant::R8(1), eR64));
  const test::Answer wind = Answered("Item('Wind')");
  EXPECT_EQ("empty", Ask("Remove('Wind')"));
  EXPECT_EQ(std::string(kRigNames) + " Weather Mass", Names());
  EXPECT_EQ(kGone, test::Eval(wind.Object(), "Value").Shown());
  EXPECT_EQ("empty", Ask("Remove(14)"));
  EXPECT_EQ(std::string(kRigNames) + " Mass", Names());
  ASSERT_EQ("object", Add(u"Wind", Variant::Text(u"calm"), eString));
  EXPECT_EQ("empty", Ask("RemoveAll"));
  EXPECT_EQ("empty", Ask("RemoveAll"));
  EXPECT_EQ(kRigNames, Names());
  Show(u"Rig:1");
  ListInstanceProperties();
  EXPECT_EQ(kRigNames, Names());
}

TEST_F(StoreProperties, AddPropertiesCopiesValuesWithTheirTypes) {
  ListInstanceProperties();
  const Ref<CStorePropertiesInt> source = m_properties;
  Show(u"Rig:2");
  EXPECT_EQ(VEX_E_INSTANCE_PROPERTIES_OFF, m_properties->AddProperties(source.Get(), u"of_"));
  ListInstanceProperties();
  // Instance properties hold one value; the copy ends where a list would lose its others.
  EXPECT_EQ(E_INVALIDARG, m_properties->AddProperties(source.Get(), u"of_"));
  EXPECT_EQ("2:-7 5:2.5 8:on", [&] {
    std::string all;
    for (const char* name : {"of_Short", "of_Double", "of_State"}) {
      const test::Answer value = Answered("Item('" + std::string(name) + "').Value");
      all += (all.empty() ? "" : " ") + std::to_string(value.value.Type()) + ":" + value.Shown();
    }
    return all;
  }());
  EXPECT_EQ("-1", Ask("Item('of_Active').Value"));
  EXPECT_EQ(E_POINTER, m_properties->AddProperties(nullptr, u""));
  // A list added to itself ends.
  ASSERT_EQ("empty", Ask("RemoveAll"));
  Show(u"Rig:2");
  ListInstanceProperties();
  EXPECT_EQ(S_OK, m_properties->AddProperties(m_properties.Get(), u"my_"));
  EXPECT_EQ("28", Ask("Count"));
  EXPECT_EQ("Spare", Ask("Item('my_Title').Value"));
}

TEST_F(StoreProperties, AreReachedByTheirTypedFaces) {
  Ref<IProperty> item;
  ASSERT_EQ(S_OK, m_properties->Item(Variant::Text(u"Title"), item.Put()));
  const auto property = QueryRef<IStoreProperty>(item.Get());
  ASSERT_TRUE(property);
  WString baseName;
  EXPECT_EQ(S_OK, property->get_BaseName(&baseName));
  EXPECT_EQ(u"name", baseName);
  std::int32_t answer = -1;
  EXPECT_EQ(S_OK, property->get_IsInstanceProperty(&answer));
  EXPECT_EQ(0, answer);
  EXPECT_EQ(S_OK, m_properties->put_ListInstanceProperties(-1));
  EXPECT_EQ(S_OK, m_properties->get_ListInstanceProperties(&answer));
  EXPECT_EQ(1, answer);
  // By value alone: the type is the value's.
  EXPECT_EQ(S_OK, m_properties->Add(u"ByValue", Variant::R4(0.5F), item.Put()));
  enumDataType type = eNoType;
  EXPECT_EQ(S_OK, item->get_DataType(&type));
  EXPECT_EQ(eR32, type);
  EXPECT_EQ(VEX_E_BAD_PROPERTY_TYPE, m_properties->Add(u"x", Variant::Cy(1), item.Put()));
  EXPECT_FALSE(item);
  Ref<IStoreProperty> added;
  EXPECT_EQ(S_OK, m_properties->Add(u"Title", Variant::Null(), eI8, added.Put()));
  Variant number = Variant::I4(5);
  EXPECT_EQ(S_OK, m_properties->Add(u"ByRef", Variant::RefTo(&number), eI32, added.Put()));
  Variant value;
  EXPECT_EQ(S_OK, added->get_Value(&value));
  EXPECT_EQ(5, value.AsInt64());
  EXPECT_EQ(E_POINTER, m_properties->Add(u"x", number, eI32, nullptr));
  EXPECT_EQ(E_POINTER, m_properties->get_ListInstanceProperties(nullptr));
  EXPECT_EQ(E_POINTER, property->get_BaseName(nullptr));
  EXPECT_EQ(E_POINTER, property->get_IsInstanceProperty(nullptr));
  EXPECT_EQ(E_POINTER, property->get_Values(0, nullptr));
  EXPECT_EQ(E_NOTIMPL, m_logic->Clear());
  EXPECT_EQ(E_NOTIMPL, m_logic->Swap(0, 1));
}

struct ApplicationCase {
  const char16_t* name;
  std::int32_t isApplication;
};
TEST_F(StoreProperties, KnowTheNamesOfTheApplication) {
  ListInstanceProperties();
  for (const ApplicationCase& c : {ApplicationCase{u"Title", 1},
                                   {u"name", 1},
                                   {u"id", 1},
                                   {u"title", 0},
                                   {u"Weather", 0},
                                   {u"Runs", 0},
                                   {u"children", 0},
                                   {u"Picture", 0},
                                   {u"", 0},
                                   {u"nothing", 0}}) {
    SCOPED_TRACE(cor::ToUtf8(c.name));
    std::int32_t isApplication = -1;
    EXPECT_EQ(S_OK, m_logic->IsApplicationProperty(c.name, &isApplication));
    EXPECT_EQ(c.isApplication, isApplication);
  }
}

}  // namespace
}  // namespace hv::vex
