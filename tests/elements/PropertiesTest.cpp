// elements/PropertiesTest.cpp - the properties of a real instance, by name and by the logic faces.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "elements/PropertyCollectionImpl.h"
#include "elements/PropertyInt.h"
#include "elements/ValueVariant.h"
#include "tests/elements/EngineFixture.h"
#include "tests/elements/Script.h"

namespace hv::vex::easyImpl {
namespace {

using test::Answer;
using test::Eval;

/// "VT:value", as far as the tests need it.
std::string Typed(const Answer& answer) {
  return std::to_string(answer.value.Type()) + ":" + answer.Shown();
}

class FleetProperties : public test::FleetTest {
 protected:
  Ref<CPropertiesInt> PropertiesOf(std::u16string_view key) {
    m_logic = MakeRef<CPropertyCollectionImpl>(*Instance(key));
    return MakeRef<CPropertiesInt>(m_logic);
  }
  void SetUp() override { m_properties = PropertiesOf(u"Campaign:1"); }
  Answer Ask(std::string_view expression) { return Eval(m_properties.Get(), expression); }
  /// `Properties(name).Value = value`
  std::string Write(std::u16string_view name, Variant value) {
    const Answer property = test::Index(m_properties.Get(), Variant::Text(name));
    return test::Put(property.Object(), u"Value", std::move(value)).Shown();
  }

  Ref<CPropertyCollectionImpl> m_logic;
  Ref<CPropertiesInt> m_properties;
};

TEST_F(FleetProperties, AreThoseOfTheEntityThenThoseOfTheInstance) {
  const std::string names =
      "Id Title Start.Date Score Short Long LongLong Byte Float Active Mood Tags Levels Empty";
  EXPECT_EQ(names + " Weather Wind", test::NamesOf(m_properties.Get()));
  EXPECT_EQ("16", Ask("Count").Shown());
  EXPECT_EQ("Title", Ask("Item(1).Name").Shown());
  EXPECT_EQ("Wind", Ask("Item(15).Name").Shown());
  EXPECT_EQ(names, test::NamesOf(PropertiesOf(u"Campaign:2").Get()));
  m_properties = PropertiesOf(u"Person:1");
  EXPECT_EQ("Id Name", test::NamesOf(m_properties.Get()));
}

TEST_F(FleetProperties, ReadValuesByTheirType) {
  const std::map<std::string, std::string> expected{
      {"Id", "3:1"},       {"Title", "8:Alps"},  {"Score", "5:2.5"},
      {"Short", "2:-7"},   {"Long", "3:70000"},  {"LongLong", "20:5000000000"},
      {"Byte", "17:200"},  {"Float", "4:1.5"},   {"Active", "11:-1"},
      {"Mood", "8:wild"},  {"Tags", "8:snow"},   {"Start.Date", "7:2/3/2001 4:05:06 AM"},
      {"Empty", "1:null"}, {"Weather", "8:fog"}, {"Wind", "3:4"},
      {"name", "8:Alps"},  // a base name works as well
  };
  for (const auto& [name, shown] : expected) {
    SCOPED_TRACE(name);
    EXPECT_EQ(shown, Typed(Ask("Item('" + name + "').Value")));
  }
  EXPECT_NEAR(36925 + (4 * 3600 + 5 * 60 + 6.007) / 86400,
              Ask("Item('Start.Date').Value").value.AsDouble(), 1e-9);
}

TEST_F(FleetProperties, TellAboutTheValue) {
  struct Line {
    const char* expression;
    const char* shown;
  };
  for (const Line& line :
       {Line{"Item('Tags').Size", "2"}, Line{"Item('Tags').Values(1)", "pass"},
        Line{"Item('Tags').DataType", "23"}, Line{"Item('Tags').DisplayName", "Tags"},
        Line{"Item('Tags').Default", "0"}, Line{"Item('Tags').Hidden", "0"},
        Line{"Item('Empty').Default", "1"}, Line{"Item('Empty').Size", "0"},
        Line{"Item('Mood').DataType", "24"}, Line{"Exists('Title')", "1"},
        Line{"Exists('Weather')", "1"}, Line{"Exists('Picture')", "0"},
        Line{"Exists('Driver')", "0"}, Line{"Exists('nothing')", "0"}, Line{"Exists('')", "0"}}) {
    SCOPED_TRACE(line.expression);
    EXPECT_EQ(line.shown, Ask(line.expression).Shown());
  }
  // The property is its value where a value is wanted.
  Variant text;
  EXPECT_EQ(S_OK, Ask("Item('Title')").value.ChangeType(VT_BSTR, &text));
  EXPECT_EQ("Alps", cor::ToUtf8(text.AsText()));
}

TEST_F(FleetProperties, KnowWhoseTheyAre) {
  for (const auto& [name, ofInstance, base] :
       {std::tuple{u"Title", 0, "name"}, {u"Score", 0, ""}, {u"Weather", 1, ""}}) {
    Ref<IPropertyImpl> property;
    ASSERT_EQ(S_OK, m_logic->GetItemByName(name, property.Put()));
    std::int32_t isInstanceProperty = -1;
    EXPECT_EQ(S_OK, property->IsInstanceProperty(&isInstanceProperty));
    EXPECT_EQ(ofInstance, isInstanceProperty);
    WString baseName;
    EXPECT_EQ(*base == 0 ? VEX_E_NOT_BASE_PROPERTY : S_OK, property->GetBaseName(&baseName));
    EXPECT_EQ(base, cor::ToUtf8(baseName));
  }
}

struct WriteCase {
  const char* name;
  const char16_t* property;
  Variant value;
  const char* shown;  ///< of the property read anew, or the message
};
class PropertyWrite : public FleetProperties, public ::testing::WithParamInterface<WriteCase> {};
TEST_P(PropertyWrite, StoresOrRefuses) {
  const std::string message = Write(GetParam().property, GetParam().value);
  const std::string expected = GetParam().shown;
  if (message != "empty") {
    EXPECT_EQ(expected, message);
    return;
  }
  m_properties = PropertiesOf(u"Campaign:1");
  EXPECT_EQ(expected, Ask("Item('" + cor::ToUtf8(GetParam().property) + "').Value").Shown());
}
const WriteCase kWriteCases[] = {
    {"Text", u"Title", Variant::Text(u"Andes"), "Andes"},
    {"NumberToText", u"Title", Variant::I4(12), "12"},
    {"Integer", u"Long", Variant::I4(-5), "-5"},
    {"RoundedInteger", u"Long", Variant::R8(2.5), "2"},
    {"WideInteger", u"LongLong", Variant::I8(6'000'000'000), "6000000000"},
    {"TruthIsMinusOne", u"Long", Variant::Bool(true), "-1"},
    {"Real", u"Score", Variant::R8(0.25), "0.25"},
    {"DecimalToReal", u"Score", Variant::Dec({25, 0, 1, 0}), "2.5"},
    {"Truth", u"Active", Variant::Bool(false), "0"},
    {"NumberToTruth", u"Active", Variant::I4(7), "-1"},
    {"ItemOfEnumeration", u"Mood", Variant::Text(u"calm"), "calm"},
    {"NumberOfEnumeration", u"Mood", Variant::I4(0), "calm"},
    {"Date", u"Start.Date", Variant::Date(36925.5), "2/3/2001 12:00:00 PM"},
    {"NullUnsets", u"Score", Variant::Null(), "null"},
    {"EmptyUnsets", u"Title", Variant(), "null"},
    {"OfTheInstance", u"Weather", Variant::Text(u"sun"), "sun"},
};
INSTANTIATE_TEST_SUITE_P(Accepted, PropertyWrite, ::testing::ValuesIn(kWriteCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FleetProperties, RefuseValuesOfAnotherType) {
  for (const auto& [name, value] : {std::pair{u"Long", Variant::Text(u"1")},
                                    {u"Start.Date", Variant::I4(1)},
                                    {u"Start.Date", Variant::Text(u"2001")},
                                    {u"Title", Variant::Bool(true)},
                                    {u"Score", Variant::Date(1)},
                                    {u"Short", Variant::I4(40000)},
                                    {u"Byte", Variant::I4(-1)},
                                    {u"Mood", Variant::Text(u"merry")},
                                    {u"Long", Variant::R8(1e300)},
                                    {u"Start.Date", Variant::Object(m_properties.Get())}}) {
    SCOPED_TRACE(cor::ToUtf8(name));
    Ref<IPropertyImpl> property;
    ASSERT_EQ(S_OK, m_logic->GetItemByName(name, property.Put()));
    Variant before;
    ASSERT_EQ(S_OK, property->GetValue(&before));
    EXPECT_EQ(DISP_E_TYPEMISMATCH, property->SetValue(value));
    EXPECT_EQ("218 Properties cannot be created with the type", Write(name, value).substr(0, 46));
    Variant after;
    ASSERT_EQ(S_OK, property->GetValue(&after));
    VarOrder order = VarOrder::Less;
    EXPECT_EQ(S_OK, CompareVariants(before, after, &order));
    EXPECT_EQ(VarOrder::Equal, order);
  }
}

TEST_F(FleetProperties, ListsGrowByWritingBehindTheirEnd) {
  const Answer levels = Ask("Item('Levels')");
  const auto write = [&](std::int32_t index, Variant value) {
    return test::Put(levels.Object(), u"Values", Variant::I4(index), std::move(value)).Shown();
  };
  const auto shown = [&] {
    std::string all;
    for (int i = 0; i < std::stoi(Eval(levels.Object(), "Size").Text()); ++i) {
      all += Eval(levels.Object(), "Values(" + std::to_string(i) + ")").Shown() + " ";
    }
    return all;
  };
  EXPECT_EQ("empty", write(1, Variant::I4(20)));
  EXPECT_EQ("empty", write(3, Variant::I4(4)));
  EXPECT_EQ("1 20 3 4 ", shown());
  EXPECT_EQ("empty", write(6, Variant::I4(7)));
  EXPECT_EQ("1 20 3 4 0 0 7 ", shown());
  EXPECT_EQ("empty", write(9, Variant()));  // nothing to write, nothing happens
  Ref<IPropertyImpl> logic;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"Levels", logic.Put()));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, logic->SetValueAt(20, Variant::R8(1e300)));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, logic->SetValueAt(1, Variant::Null()));  // no gaps
  EXPECT_EQ(E_INVALIDARG, logic->SetValueAt(-1, Variant::I4(1)));
  EXPECT_EQ("1 20 3 4 0 0 7 ", shown());
  // A single value doesn't become a list.
  const Answer title = Ask("Item('Title')");
  EXPECT_EQ("211 The index 1 is out of range for the property Values.",
            test::Put(title.Object(), u"Values", Variant::I4(1), Variant::Text(u"x")).Shown());
}

TEST_F(FleetProperties, RaiseTheMessagesOfTheTable) {
  constexpr const char* kNotLoaded =
      "254 Properties and methods which change the contents of an object can only be called on "
      "data which is loaded.";
  struct Line {
    const char* expression;
    std::string shown;
  };
  const auto noMember = [](const std::string& index) {
    return "215 The index " + index + " does not correspond to a member of the collection.";
  };
  for (const Line& line :
       {Line{"Item('Tags').Values(2)", "211 The index 2 is out of range for the property Values."},
        Line{"Item('Tags').Values(-1)",
             "211 The index -1 is out of range for the property Values."},
        Line{"Item('nothing')", "250 Unknown error."}, Line{"Item(16)", noMember("16")},
        Line{"Item(-1)", noMember("-1")},
        Line{"Item(null)",
             "214 The argument passed to Item must be either a string or an integer."},
        Line{"RemoveAll", kNotLoaded}}) {
    SCOPED_TRACE(line.expression);
    EXPECT_EQ(line.shown, Ask(line.expression).Shown());
  }
  // A file that was opened to be read only.
  m_store.Reset();
  m_store = Open(u"<filename readonly='yes'>");
  m_properties = PropertiesOf(u"Campaign:1");
  EXPECT_EQ("220 The property Title is a readonly property.", Write(u"Title", Variant::I4(1)));
  EXPECT_EQ("Alps", Ask("Item('Title').Value").Shown());
}

TEST_F(FleetProperties, CannotBeAddedOrRemovedHere) {
  Ref<IPropertyImpl> property;
  EXPECT_EQ(E_NOTIMPL, m_logic->Add(u"x", Variant::I4(1), property.Put()));
  EXPECT_EQ(E_NOTIMPL, m_logic->Remove(u"Title"));
  EXPECT_EQ(E_NOTIMPL, m_logic->RemoveAll());
  EXPECT_EQ(E_NOTIMPL, m_properties->Remove(Variant::I4(0)));
  EXPECT_EQ(E_NOTIMPL, m_properties->AddProperties(m_properties.Get(), u"x_"));
  EXPECT_EQ(E_POINTER, m_properties->AddProperties(nullptr, u"x_"));
  EXPECT_EQ(E_INVALIDARG, m_properties->Remove(Variant::I4(99)));
}

TEST_F(FleetProperties, GiveTheCodesOfTheLogic) {
  Ref<IPropertyImpl> property;
  EXPECT_EQ(E_FAIL, m_logic->GetItemByName(u"nothing", property.Put()));
  EXPECT_EQ(E_INVALIDARG, m_logic->GetItemByName(u"Picture", property.Put()));
  EXPECT_EQ(E_INVALIDARG, m_logic->GetItemByName(u"Driver", property.Put()));
  EXPECT_EQ(E_INVALIDARG, m_logic->GetItemByName(u"", property.Put()));
  EXPECT_EQ(E_POINTER, m_logic->GetItemByName(u"Title", nullptr));
  EXPECT_EQ(E_POINTER, m_logic->GetCount(nullptr));
  EXPECT_EQ(E_POINTER, m_logic->Exists(u"Title", nullptr));
}

/// A kind of element that shows its pictures, too.
class CWithPictures final : public CPropertyCollectionImpl {
 public:
  using CPropertyCollectionImpl::CPropertyCollectionImpl;

 protected:
  bool IsAllowedName(std::u16string_view name) const override { return name == u"Picture"; }
};

TEST_F(FleetProperties, AKindOfElementMayAllowFurtherNames) {
  const auto properties = MakeRef<CWithPictures>(*Instance(u"Campaign:1"));
  Ref<IPropertyImpl> property;
  EXPECT_EQ(S_OK, properties->GetItemByName(u"Picture", property.Put()));
  std::int32_t isHidden = 0;
  EXPECT_EQ(S_OK, property->GetIsHidden(&isHidden));
  EXPECT_EQ(1, isHidden);
  EXPECT_EQ(E_INVALIDARG, properties->GetItemByName(u"Raw", property.Put()));
}

TEST_F(FleetProperties, IteratorsWalkTheGroupsInOrder) {
  Ref<tIIteratorImpl<IPropertyImpl>> iterator;
  ASSERT_EQ(S_OK, m_logic->GetIterator(iterator.Put()));
  const auto next = [](tIIteratorImpl<IPropertyImpl>& walker) {
    Ref<IPropertyImpl> property;
    WString name;
    if (walker.Next(property.Put()) == S_OK) {
      EXPECT_EQ(S_OK, property->GetName(&name));
    }
    return cor::ToUtf8(name);
  };
  EXPECT_EQ(S_OK, iterator->Skip(13));
  EXPECT_EQ("Empty", next(*iterator));
  Ref<tIIteratorImpl<IPropertyImpl>> copy;
  ASSERT_EQ(S_OK, iterator->Clone(copy.Put()));
  EXPECT_EQ("Weather", next(*iterator));
  EXPECT_EQ(S_FALSE, iterator->Skip(2));
  EXPECT_EQ("", next(*iterator));
  EXPECT_EQ("Weather", next(*copy));
  EXPECT_EQ(S_OK, iterator->Reset());
  EXPECT_EQ("Id", next(*iterator));
  EXPECT_EQ(E_INVALIDARG, iterator->Skip(-1));
}

TEST_F(FleetProperties, ADeletedRecordIsGone) {
  Ref<IPropertyImpl> property;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"Title", property.Put()));
  Instance(u"Campaign:1")->Delete();
  EXPECT_EQ(VEX_E_OBJECT_GONE, property->SetValue(Variant::Text(u"x")));
  Ref<IPropertyImpl> other;
  EXPECT_EQ(VEX_E_OBJECT_GONE, m_logic->GetItemByName(u"Score", other.Put()));
  bool exists = true;
  EXPECT_EQ(S_OK, m_logic->Exists(u"Score", &exists));
  EXPECT_FALSE(exists);
}

TEST(DataTypeFit, IsDecidedByTheVariantsType) {
  struct Row {
    Variant value;
    const char* fits;  ///< for 0, 2, 3, 9, 11, 23, 24, 30
  };
  const Row rows[] = {
      {Variant(), "11111111"},
      {Variant::Null(), "11111111"},
      {Variant::I2(1), "01111110"},
      {Variant::I4(1), "01111110"},
      {Variant::R4(1), "01111110"},
      {Variant::R8(1), "01111110"},
      {Variant::I1(1), "01111110"},
      {Variant::UI1(1), "01111110"},
      {Variant::UI2(1), "01111110"},
      {Variant::UI4(1), "01111110"},
      {Variant::UI8(1), "01111110"},
      {Variant::Int(1), "01111110"},
      {Variant::UInt(1), "01111110"},
      {Variant::Date(1), "00000001"},
      {Variant::Object(nullptr), "00000001"},
      {Variant::Unknown(nullptr), "00000001"},
      {Variant::Text(u"1"), "00000110"},
      {Variant::Bool(true), "01111010"},
      {Variant::Dec({1, 0, 0, 0}), "00010101"},
      {Variant::Cy(1), "00000000"},
      {Variant::Error(E_FAIL), "00000000"},
      {Variant::Array({}), "00000000"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.value.Type());
    std::string fits;
    for (const std::int32_t type : {0, 2, 3, 9, 11, 23, 24, 30}) {
      Variant target = row.value;
      fits += FitsDataType(row.value, type) ? '1' : '0';
      EXPECT_EQ(FitsDataType(row.value, type), FitsDataType(Variant::RefTo(&target), type));
    }
    EXPECT_EQ(row.fits, fits);
  }
}

}  // namespace
}  // namespace hv::vex::easyImpl
