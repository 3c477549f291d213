// elements/PropertiesTest.cpp - the properties of a real instance, by name and by the logic faces.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "elements/PropertyCollectionImpl.h"
#include "elements/PropertyInt.h"
#include "elements/ValueVariant.h"
#include "tests/elements/EngineFixture.h"
#include "tests/support/Script.h"

namespace hv::vex::easyImpl {
namespace {

using test::Answer;
using test::Eval;
using test::ExpectShown;

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
    const Answer value = Ask("Item('" + name + "').Value");
    EXPECT_EQ(shown, std::to_string(value.value.Type()) + ":" + value.Shown());
  }
  EXPECT_NEAR(36925 + (4 * 3600 + 5 * 60 + 6.007) / 86400,
              Ask("Item('Start.Date').Value").value.AsDouble(), 1e-9);
}

TEST_F(FleetProperties, TellAboutTheValue) {
  ExpectShown(m_properties.Get(), {{"Item('Tags').Size", "2"},
                                   {"Item('Tags').Values(1)", "pass"},
                                   {"Item('Tags').DataType", "23"},
                                   {"Item('Tags').DisplayName", "Tags"},
                                   {"Item('Tags').Default", "0"},
                                   {"Item('Tags').Hidden", "0"},
                                   {"Item('Empty').Default", "1"},
                                   {"Item('Empty').Size", "0"},
                                   {"Item('Mood').DataType", "24"},
                                   {"Exists('Title')", "1"},
                                   {"Exists('Weather')", "1"},
                                   {"Exists('Picture')", "0"},
                                   {"Exists('Driver')", "0"},
                                   {"Exists('nothing')", "0"},
                                   {"Exists('')", "0"}});
  EXPECT_EQ("Alps", Ask("Item('Title')").Text()) << "it is its value where a value is wanted";
}

TEST_F(FleetProperties, StoreWhatIsWritten) {
  const std::tuple<const char16_t*, Variant, const char*> kWritten[] = {
      {u"Title", Variant::I4(12), "12"},
      {u"LongLong", Variant::I8(6'000'000'000), "6000000000"},
      {u"Long", Variant::I1(-1), "-1"},
      {u"Long", Variant::UI2(7), "7"},
      {u"Long", Variant::Int(8), "8"},
      {u"Long", Variant::UInt(9), "9"},
      {u"Active", Variant::Bool(false), "0"},
      {u"Mood", Variant::Text(u"calm"), "calm"},
      {u"Start.Date", Variant::Date(36925.5), "2/3/2001 12:00:00 PM"},
      {u"Score", Variant::Null(), "null"},
      {u"Title", Variant(), "null"},
      {u"Weather", Variant::Text(u"sun"), "sun"},
  };
  for (const auto& [name, value, shown] : kWritten) {
    SCOPED_TRACE(cor::ToUtf8(name));
    EXPECT_EQ("empty", Write(name, value));
    m_properties = PropertiesOf(u"Campaign:1");
    EXPECT_EQ(shown, Ask("Item('" + cor::ToUtf8(name) + "').Value").Shown());
  }
}

TEST_F(FleetProperties, RefuseValuesOfAnotherType) {
  for (const auto& [name, value] : {std::pair{u"Long", Variant::Text(u"1")},
                                    {u"Start.Date", Variant::Object(m_properties.Get())},
                                    {u"Short", Variant::I4(40000)},
                                    {u"Mood", Variant::Text(u"merry")},
                                    {u"Long", Variant::Cy(1)},
                                    {u"Long", Variant::Error(E_FAIL)}}) {
    SCOPED_TRACE(cor::ToUtf8(name));
    const std::string before = Ask("Item('" + cor::ToUtf8(name) + "').Value").Shown();
    EXPECT_EQ("218 Properties cannot be created with the type", Write(name, value).substr(0, 46));
    EXPECT_EQ(before, Ask("Item('" + cor::ToUtf8(name) + "').Value").Shown());
  }
}

TEST_F(FleetProperties, ListsGrowByWritingBehindTheirEnd) {
  const Answer levels = Ask("Item('Levels')");
  const auto shown = [&] {
    std::string all;
    for (int i = 0; i < std::stoi(Eval(levels.Object(), "Size").Text()); ++i) {
      all += Eval(levels.Object(), "Values(" + std::to_string(i) + ")").Shown() + " ";
    }
    return all;
  };
  ExpectShown(levels.Object(), {{"Values(1) = 20", "empty"}, {"Values(3) = 4", "empty"}});
  EXPECT_EQ("1 20 3 4 ", shown());
  ExpectShown(levels.Object(), {{"Values(6) = 7", "empty"}});
  EXPECT_EQ("1 20 3 4 0 0 7 ", shown());
  Ref<IPropertyImpl> logic;
  ASSERT_EQ(S_OK, m_logic->GetItemByName(u"Levels", logic.Put()));
  EXPECT_EQ(S_OK, logic->SetValueAt(9, Variant())) << "nothing to write, nothing happens";
  EXPECT_EQ(DISP_E_TYPEMISMATCH, logic->SetValueAt(20, Variant::R8(1e300)));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, logic->SetValueAt(1, Variant::Null())) << "no gaps";
  EXPECT_EQ(E_INVALIDARG, logic->SetValueAt(-1, Variant::I4(1)));
  EXPECT_EQ("1 20 3 4 0 0 7 ", shown());
}

TEST_F(FleetProperties, RaiseTheMessagesOfTheTable) {
  const char* const kNotLoaded =
      "254 Properties and methods which change the contents of an object can only be called on "
      "data which is loaded.";
  ExpectShown(
      m_properties.Get(),
      {{"Item('Tags').Values(2)", "211 The index 2 is out of range for the property Values."},
       {"Item('Tags').Values(-1)", "211 The index -1 is out of range for the property Values."},
       {"Item('Title').Values(1) = 'x'",
        "211 The index 1 is out of range for the property Values."},
       {"Item('nothing')", "250 Unknown error."},
       {"Item(16)", "215 The index 16 does not correspond to a member of the collection."},
       {"Item(-1)", "215 The index -1 does not correspond to a member of the collection."},
       {"Item(null)", "214 The argument passed to Item must be either a string or an integer."},
       {"Remove(0)", "245 Remove not implemented."},
       {"RemoveAll", kNotLoaded}});
  // A file that was opened to be read only.
  m_store.Reset();
  m_store = Open(u"<filename readonly='yes'>");
  ExpectShown(PropertiesOf(u"Campaign:1").Get(),
              {{"Item('Title').Value = 1", "220 The property Title is a readonly property."},
               {"Item('Title').Value", "Alps"}});
}

TEST_F(FleetProperties, GiveTheCodesOfTheLogic) {
  Ref<IPropertyImpl> property;
  EXPECT_EQ(E_NOTIMPL, m_logic->Add(u"x", Variant::I4(1), property.Put()));
  EXPECT_EQ(E_NOTIMPL, m_logic->Remove(u"Title"));
  EXPECT_EQ(E_NOTIMPL, m_logic->RemoveAll());
  EXPECT_EQ(E_NOTIMPL, m_properties->AddProperties(m_properties.Get(), u"x_"));
  EXPECT_EQ(E_POINTER, m_properties->AddProperties(nullptr, u"x_"));
  EXPECT_EQ(E_INVALIDARG, m_properties->Remove(Variant::I4(99)));
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

}  // namespace
}  // namespace hv::vex::easyImpl
