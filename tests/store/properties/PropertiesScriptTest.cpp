// store/properties/PropertiesScriptTest.cpp - the list of properties, by name and by its typed
// faces, and the messages of both.
#include "tests/store/properties/RigFixture.h"

namespace hv::vex {
namespace {

using easyImpl::IPropertyImpl;
using test::kGone;
using test::kNotBase;
using test::kProtected;
using test::kUnknown;
using test::NoMember;
using test::OutOfRange;

using StoreProperties = test::RigTest;

const std::string kListOff =
    "347 The property ListInstanceProperties must have the value TRUE in order to handle instance "
    "properties.";
const std::string kBadType = "346 The Type argument from the Add method must be a valid data type.";
const std::string kBadName =
    "345 The Name argument from the Add method must be a valid property name.";
const std::string kUnfit =
    "359 The data type of the parameter Value does not match the value of the parameter Type.";
const std::string kWrongValue =
    "361 The data type of the value does not match the data type of the property.";
const std::string kApplication = "351 Application properties cannot be removed.";

TEST_F(StoreProperties, AreThoseOfTheEntityUnlessOthersAreAskedFor) {
  Expect({{"p", Names()},
          {"p.Count", "14"},
          {"p.ListInstanceProperties", "0"},
          {"p.Exists('Weather')", "0"},
          {"p.ListInstanceProperties = true", "empty"},
          {"p.ListInstanceProperties", "1"},
          {"p", Names("|Weather|Wind")},
          {"p(15)", "Wind"},
          {"p.Exists('Weather')", "1"},
          {"p.ListInstanceProperties = 0", "empty"},
          {"p", Names()}});
  Show(u"Rig:2", true);
  Expect({{"p", Names()}});
}

TEST_F(StoreProperties, OfALocalColumnDoNotShowItsFlags) {
  Show(u"Column:1");
  Expect({{"p", "[Id|Name|GlobalFlag|Representation]"},
          {"p.Exists('Quality')", "0"},
          {"p.Exists('flags')", "0"},
          {"p('global_flag').Value", "15"},
          // Hidden, but still a name that the entity has.
          {"p.ListInstanceProperties = true", "empty"},
          {"p.Remove('flags')", kApplication},
          {"p.Add('flags',1,3)", kBadName}});
}

TEST_F(StoreProperties, AreFoundByIndexNameAndBaseName) {
  Expect({{"p(1)", "Title"},
          {"p('Title').Value", "Bench"},
          {"p('name')", "Title"},
          {"p('id').Value", "1"},
          {"p.Exists('name')", "1"},
          {"p.Exists('Title')", "1"},
          {"p('nothing')", kUnknown},
          {"p('')", kUnknown},
          {"p('Runs')", kUnknown},
          {"p('Picture')", kUnknown},
          {"p(14)", kUnknown},
          {"p(-1)", kUnknown},
          {"p(null)", kUnknown}});
  List();
  const std::pair<const char*, std::int32_t> kNames[] = {
      {"Title", 1}, {"name", 1},     {"id", 1},      {"title", 0}, {"Weather", 0},
      {"Runs", 0},  {"children", 0}, {"Picture", 0}, {"", 0},      {"nothing", 0}};
  for (const auto& [name, expected] : kNames) {
    SCOPED_TRACE(name);
    std::int32_t isApplication = -1;
    EXPECT_EQ(S_OK, m_logic->IsApplicationProperty(cor::FromUtf8(name), &isApplication));
    EXPECT_EQ(expected, isApplication);
    const bool isInstance = std::string_view(name) == "Weather";
    EXPECT_EQ(expected || isInstance ? "1" : "0", Ask("p.Exists('" + std::string(name) + "')"));
  }
}

TEST_F(StoreProperties, TellAllAboutThemselves) {
  List();
  const struct {
    std::string property;
    const char* type;
    const char* value;
    const char* size;
    std::string base;
  } rows[] = {
      {"Id", "4", "1", "1", "id"},
      {"Title", "23", "Bench", "1", "name"},
      {"Built", "30", "2/3/2001 4:05:06 AM", "1", kNotBase},
      {"Double", "10", "2.5", "1", kNotBase},
      {"Float", "9", "1.5", "1", kNotBase},
      {"Short", "2", "-7", "1", kNotBase},
      {"Long", "3", "70000", "1", kNotBase},
      {"LongLong", "4", "5000000000", "1", kNotBase},
      {"Byte", "5", "200", "1", kNotBase},
      {"Active", "11", "-1", "1", kNotBase},
      {"State", "24", "on", "1", kNotBase},
      {"Tags", "23", "hot", "2", kNotBase},
      {"Levels", "3", "1", "2", kNotBase},
      {"flags", "3", "15", "1", kNotBase},
      {"Weather", "23", "fog", "1", kNotBase},
      {"Wind", "3", "4", "1", kNotBase},
  };
  for (const auto& row : rows) {
    const bool isOfInstance = row.property.starts_with('W');
    Expect({{"Set item = p('" + row.property + "')", row.property},
            {"item.DisplayName", row.property},
            {"item.DataType", row.type},
            {"item.Value", row.value},
            {"item.Values(0)", row.value},
            {"item.Size", row.size},
            {"item.BaseName", row.base},
            {"item.IsInstanceProperty", isOfInstance ? "1" : "0"},
            {"item.Default", "0"},
            {"item.Hidden", "0"}});
  }
  Show(u"Rig:2");
  for (const std::string name : {"Built", "Long", "State", "Tags"}) {
    Expect({{"Set item = p('" + name + "')", name},
            {"item.Value", "null"},
            {"item.Size", "0"},
            {"item.Default", "1"},
            {"item.Values(0)", OutOfRange("0")}});
  }
}

TEST_F(StoreProperties, AddWritesWhatExistsAndAddsWhatDoesNot) {
  Expect({{"p.Add('Title','New',23)", "Title"},
          {"p.Add('name','Newer',24)", "Title"},
          {"p('Title').Value", "Newer"},
          {"p.ListInstanceProperties = true", "empty"},
          {"p.Add('Mass',1.25,10)", "Mass"},
          {"p.Add('Nothing',null,3)", "Nothing"},
          {"p.Add('Wind',9,3)", "Wind"},
          {"p", Names("|Weather|Wind|Mass|Nothing")},
          {"p('Mass').Value", "1.25"},
          {"p('Nothing').Value", "null"},
          {"p('Wind').Value", "9"}});
  Show(u"Rig:1", true);  // the instance has them, not this list alone
  Expect({{"p('Mass').Value", "1.25"}, {"p('Mass').IsInstanceProperty", "1"}});
}

TEST_F(StoreProperties, AddTakesEveryTypeThatItNames) {
  List();
  m_script.Set("unsigned", Variant::UI4(4294967295U));
  m_script.Set("float", Variant::R4(0.5F));
  m_script.Set("date", Variant::Date(36925));
  const struct {
    std::string type;
    const char* kept;
    std::string value;
    const char* shown;
  } rows[] = {
      {"1", "2", "-3", "-3"},
      {"2", "2", "-3", "-3"},
      {"3", "3", "-3", "-3"},
      {"4", "4", "-3", "-3"},
      {"5", "5", "250", "250"},
      {"6", "3", "65535", "65535"},
      {"7", "4", "unsigned", "4294967295"},
      {"8", "4", "3", "3"},
      {"9", "9", "float", "0.5"},
      {"10", "10", "0.5", "0.5"},
      {"23", "23", "7", "7"},
      {"24", "23", "'red'", "red"},
      {"30", "30", "date", "2/3/2001"},
  };
  for (const auto& [type, kept, value, shown] : rows) {
    Expect({{"Set t = p.Add('T" + type + "'," + value + "," + type + ")", "T" + type},
            {"t.Value", shown},
            {"t.DataType", kept}});
  }
  for (int type = -1; type <= 120; ++type) {
    if ((type >= 1 && type <= 10) || type == 23 || type == 24 || type == 30) continue;
    Expect({{"p.Add('T',null," + std::to_string(type) + ")", kBadType}});
  }
}

TEST_F(StoreProperties, RaiseTheMessagesOfTheTable) {
  List(false);
  Expect({{"p.Add('Title',1,30)", kUnfit},
          {"p.Add('a b',1,3)", kBadName},  // before 347
          {"p.Add('x',1,3)", kListOff},
          {"p.Add('Wind',1,3)", kBadName},  // taken, not listed
          {"p.Remove('Title')", kListOff},
          {"p.Remove('nothing')", kListOff},
          {"p.Remove(0)", kListOff},
          {"p.Remove(-1)", NoMember("-1")},
          {"p.RemoveAll", kListOff}});
  List();
  Expect({{"p.Add('x',1,11)", kBadType},
          {"p.Add('','a',0)", kBadType},  // before the name and the value
          {"p.Add('x','1',3)", kUnfit},
          {"p.Add('',true,23)", kUnfit},
          {"p.Add('Long','1',23)", kWrongValue},
          {"p.Add('x',40000,2)", kWrongValue},
          {"p.Add('',1,3)", kBadName},
          {"p.Add('1st',1,3)", kBadName},
          {"p.Add('Runs',1,3)", kBadName},
          {"p.Remove('Title')", kApplication},
          {"p.Remove('name')", kApplication},
          {"p.Remove(0)", kApplication},
          {"p.Remove('nothing')", NoMember("nothing")},
          {"p.Remove(16)", NoMember("16")},
          {"p('Long').Value = '1'", kWrongValue},
          {"p('Wind').Value = '1'", kWrongValue},
          {"p('Short').Value = 40000", kWrongValue},
          {"p('Tags').Values(0) = true", kWrongValue},
          {"p('Levels').Values(0) = 1e300", kWrongValue},
          {"p('Tags').Values(2)", OutOfRange("2")},
          {"p('Tags').Values(-1)", OutOfRange("-1")},
          {"p('Tags').Values(-1) = 'a'", OutOfRange("-1")},
          {"p('Title').Values(1) = 'a'", OutOfRange("1")},
          {"p('Id').Value = 7", kProtected},  // isn't the caller's to change
          // Nothing of all that has left a trace.
          {"p", Names("|Weather|Wind")},
          {"p('Short').Value", "-7"},
          {"p('Long').Value", "70000"}});
  EXPECT_EQ("hot dry", ValuesOf("Tags"));
}

TEST_F(StoreProperties, OfAStoreForReadingRefuseToChange) {
  OpenRig(u"<filename readonly='yes'>");
  Expect({{"p('Title').Value = 'x'", kProtected},
          {"p('Tags').Values(0) = 'x'", kProtected},
          {"p('Tags').Values(5) = 'x'", kProtected},
          {"p('Tags').Values(5) = empty", "empty"},  // writes nothing
          {"p.Add('Title','x',23)", kUnknown},
          {"p.ListInstanceProperties = true", "empty"},
          {"p('Weather').Value = 'x'", kProtected},
          {"p.Add('x',1,3)", kUnknown},
          {"p.Remove('Wind')", kUnknown},
          {"p.RemoveAll", kUnknown},
          {"p", Names("|Weather|Wind")},
          {"p('Title').Value", "Bench"}});
  // The codes behind them.
  Ref<IPropertyImpl> property;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"Tags", property.Put()));
  EXPECT_EQ(E_ACCESSDENIED, property->SetValueAt(1, Variant::Text(u"x")));
  EXPECT_EQ(VEX_E_WRITE_PROTECTED, m_logic->Remove(u"Wind"));
  EXPECT_EQ(VEX_E_WRITE_PROTECTED, m_logic->Add(u"x", Variant::I4(1), eI32, property.Put()));
  EXPECT_FALSE(property);
}

TEST_F(StoreProperties, OfADeletedRecordAreGone) {
  Expect({{"Set title = p('Title')", "Title"}});
  Instance(u"Rig:1")->Delete();
  Expect({{"title.Value", kGone},
          {"title.Size", kGone},
          {"title.Value = 'x'", kGone},
          {"p.ListInstanceProperties = 1", kGone},
          {"p.ListInstanceProperties", "0"}});
  EXPECT_EQ(VEX_E_OBJECT_GONE, m_logic->Fill());
}

TEST_F(StoreProperties, AreRemovedFromTheInstance) {
  List();
  Expect({{"p.Add('Mass',1.0,10)", "Mass"},
          {"Set wind = p('Wind')", "Wind"},
          {"p.Remove('Wind')", "empty"},
          {"p", Names("|Weather|Mass")},
          {"wind.Value", kGone},
          {"p.Remove(14)", "empty"},
          {"p", Names("|Mass")},
          {"p.Add('Wind','calm',23)", "Wind"},
          {"p.RemoveAll", "empty"},
          {"p.RemoveAll", "empty"},
          {"p", Names()}});
  Show(u"Rig:1", true);
  Expect({{"p", Names()}});
}

TEST_F(StoreProperties, AddPropertiesCopiesValuesWithTheirTypes) {
  List();
  const Ref<CStorePropertiesInt> source = m_properties;
  Show(u"Rig:2");
  EXPECT_EQ(VEX_E_INSTANCE_PROPERTIES_OFF, m_properties->AddProperties(source.Get(), u"of_"));
  List();
  // Instance properties hold one value; the copy ends where a list would lose its others.
  EXPECT_EQ(E_INVALIDARG, m_properties->AddProperties(source.Get(), u"of_"));
  const std::pair<const char*, VarType> kTypes[] = {{"p('of_Short').Value", VT_I2},
                                                    {"p('of_Double').Value", VT_R8},
                                                    {"p('of_State').Value", VT_BSTR}};
  for (const auto& [line, type] : kTypes) EXPECT_EQ(type, m_script.Run(line).value.Type()) << line;
  Expect({{"p('of_Short').Value", "-7"},
          {"p('of_Double').Value", "2.5"},
          {"p('of_State').Value", "on"},
          {"p('of_Active').Value", "-1"}});
  EXPECT_EQ(E_POINTER, m_properties->AddProperties(nullptr, u""));
  // A list added to itself ends.
  Expect({{"p.RemoveAll", "empty"}});
  Show(u"Rig:2", true);
  EXPECT_EQ(S_OK, m_properties->AddProperties(m_properties.Get(), u"my_"));
  Expect({{"p.Count", "28"}, {"p('my_Title').Value", "Spare"}});
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
  EXPECT_EQ("9", Ask("p('ByValue').DataType"));
  EXPECT_EQ(VEX_E_BAD_PROPERTY_TYPE, m_properties->Add(u"x", Variant::Cy(1), item.Put()));
  EXPECT_FALSE(item);
  Ref<IStoreProperty> added;
  EXPECT_EQ(S_OK, m_properties->Add(u"Title", Variant::Null(), eI8, added.Put()));
  Variant number = Variant::I4(5);
  EXPECT_EQ(S_OK, m_properties->Add(u"ByRef", Variant::RefTo(&number), eI32, added.Put()));
  EXPECT_EQ("5", Ask("p('ByRef').Value"));
  EXPECT_EQ(E_POINTER, m_properties->Add(u"x", number, eI32, nullptr));
  EXPECT_EQ(E_POINTER, m_properties->get_ListInstanceProperties(nullptr));
  EXPECT_EQ(E_POINTER, property->get_BaseName(nullptr));
  EXPECT_EQ(E_POINTER, property->get_IsInstanceProperty(nullptr));
  EXPECT_EQ(E_POINTER, property->get_Values(0, nullptr));
  EXPECT_EQ(E_NOTIMPL, m_logic->Clear());
  EXPECT_EQ(E_NOTIMPL, m_logic->Swap(0, 1));
}

}  // namespace
}  // namespace hv::vex
