// elements/ElementsTest.cpp - elements and lists of them, by name and by the logic faces.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "elements/ElementsCollectionImpl.h"
#include "elements/PropertyInt.h"
#include "elements/VEXElementInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/elements/TestElement.h"
#include "tests/support/Script.h"

namespace hv::vex::easyImpl {
namespace {

using test::Eval;
using test::ExpectShown;

class FleetElements : public test::FleetTest {
 protected:
  FleetElements() : m_logic(MakeRef<CElementsCollectionImpl>()) {
    for (const std::u16string_view key :
         {u"Person:1", u"Campaign:1", u"Campaign:3", u"Campaign:2"}) {
      m_instances.push_back(Instance(key));
      EXPECT_EQ(S_OK, m_logic->Append(MakeRef<test::CTestElement>(*m_instances.back()).Get()));
    }
    m_elements = MakeRef<CVEXElementsInt>(m_logic);
  }
  std::string Names() { return test::NamesOf(m_elements.Get()); }

  std::vector<Ref<IInstance>> m_instances;
  Ref<CElementsCollectionImpl> m_logic;
  Ref<CVEXElementsInt> m_elements;
};

TEST_F(FleetElements, ShowTheirInstance) {
  ExpectShown(m_elements.Get(),
              {{"Count", "4"},
               {"Item(1).Name", "Alps"},
               {"Item(1).Type", "Campaign"},
               {"Item(1).DisplayName", "Alps"},
               {"Item(1).DisplayType", "Campaign"},
               {"Item(1).IsKindOf('Test')", "1"},
               {"Item(1).IsKindOf('')", "0"},
               {"Item(1).Properties('Score').Value", "2.5"},
               {"Item(1).Properties.Item('Score').Value", "2.5"},
               {"Item(1).Children", "no object"},
               {"Item(1).Parent", "no object"},
               {"Item(1).Path", "245 Path not implemented."},
               {"Item(1).TransportDataCollection", "245 TransportDataCollection not implemented."},
               {"Item(1).Name = 'Andes'", "empty"},
               {"Item(1).Name", "Andes"},
               {"Item(1).Properties('Title').Value", "Andes"}});
  const auto instance = Eval(m_elements.Get(), "Item(1).Instance");
  ASSERT_TRUE(instance.value.Is(VT_UNKNOWN));
  EXPECT_EQ(m_instances[1].Get(), QueryRef<IInstance>(instance.value.AsUnknown()).Get());
  Ref<IVEXElement> element;
  ASSERT_EQ(S_OK, m_elements->Item(Variant::I4(0), element.Put()));
  EXPECT_TRUE(element.As<IVEXElementEx>());
  EXPECT_TRUE(element.As<IVEXElementEx_1_9>());
  EXPECT_FALSE(element.As<IVEXElements>());
}

TEST_F(FleetElements, KeepTheirPropertiesUntilRefreshed) {
  const Ref<IVEXElementImpl> element = MakeRef<test::CTestElement>(*m_instances[1]);
  Ref<IPropertyCollectionImpl> first;
  Ref<IPropertyCollectionImpl> second;
  EXPECT_EQ(S_OK, element->GetProperties(first.Put()));
  EXPECT_EQ(S_OK, element->GetProperties(second.Put()));
  EXPECT_EQ(first, second);
  EXPECT_EQ(S_OK, element->Refresh());
  EXPECT_EQ(S_OK, element->GetProperties(second.Put()));
  EXPECT_NE(first, second);
}

TEST_F(FleetElements, ThatAreDeletedSaySoEverywhere) {
  const auto element = Eval(m_elements.Get(), "Item(1)");
  m_instances[1]->Delete();
  for (const char* member : {"Name", "Type", "Properties", "Instance", "DisplayName", "DisplayType",
                             "IsKindOf('x')", "Refresh", "Name = 'x'"}) {
    ExpectShown(element.Object(), {{member, "323 The object is no longer valid."}});
  }
}

TEST_F(FleetElements, AreFoundAndTakenOutOfTheList) {
  Ref<IVEXElementImpl> third;
  ASSERT_EQ(S_OK, m_logic->GetItem(2, third.Put()));
  std::int32_t index = -1;
  EXPECT_EQ(S_OK, m_logic->IndexOf(third.Get(), &index));
  EXPECT_EQ(2, index);
  EXPECT_EQ(E_INVALIDARG, m_logic->IndexOf(nullptr, &index));
  const auto twin = MakeRef<test::CTestElement>(*m_instances[2]);
  EXPECT_EQ(E_INVALIDARG, m_logic->IndexOf(twin.Get(), &index));

  ExpectShown(m_elements.Get(), {{"Remove(0)", "empty"}});
  EXPECT_EQ("Alps City beach", Names());
  EXPECT_EQ(E_INVALIDARG, m_elements->Remove(3));
  EXPECT_EQ(S_OK, m_logic->Swap(0, 2));
  EXPECT_EQ("beach City Alps", Names());
  EXPECT_EQ(E_INVALIDARG, m_logic->Swap(0, 3));
  ExpectShown(m_elements.Get(), {{"RemoveAll", "empty"},
                                 {"Count", "0"},
                                 {"MaxCount", "200"},
                                 {"MaxCount = 1", "empty"},
                                 {"MaxCount = 0", "250 Unknown error."},
                                 {"MaxCount", "1"},
                                 {"IsIncomplete", "0"}});
  m_logic->SetIsIncomplete(true);
  ExpectShown(m_elements.Get(), {{"IsIncomplete", "1"}});
}

class SortCounter final : public IElementsEventsClient {
 public:
  void OnSorted() override { ++m_count; }
  int m_count = 0;
};

TEST_F(FleetElements, SortByNameAndByProperty) {
  SortCounter counter;
  m_logic->SetEventsClient(&counter);
  const auto sort = [this](std::vector<Variant> args) {
    EXPECT_EQ("empty",
              test::Call(m_elements.Get(), u"Sort", CallKind::Method, std::move(args)).Shown());
    return Names();
  };
  // By type and name, without regard to case.
  EXPECT_EQ("Alps beach City Ann", sort({}));
  EXPECT_EQ("Ann City beach Alps", sort({Variant::Missing(), Variant::Bool(false)}));
  // Elements without a value come last, and first when descending.
  EXPECT_EQ("beach Alps Ann City", sort({Variant::Text(u"Score")}));
  EXPECT_EQ("City Ann Alps beach", sort({Variant::Text(u"Score"), Variant::I4(0)}));
  EXPECT_EQ("beach Alps City Ann", sort({Variant::Text(u"Start.Date"), Variant::Text(u"True")}));
  // Equal ones keep their order, and turn round when descending.
  EXPECT_EQ("beach Alps City Ann", sort({Variant::Text(u"nothing")}));
  EXPECT_EQ("Ann City Alps beach", sort({Variant::Text(u"nothing"), Variant::Bool(false)}));
  for (const Variant& property : {Variant::Text(u""), Variant::I4(1), Variant::Null()}) {
    EXPECT_EQ(DISP_E_TYPEMISMATCH, m_elements->Sort(property, Variant::Missing()));
  }
  EXPECT_EQ(DISP_E_TYPEMISMATCH, m_elements->Sort(Variant::Text(u"Score"), Variant::Text(u"up")));
  EXPECT_EQ("Ann City Alps beach", Names());
  EXPECT_EQ(7, counter.m_count);
  EXPECT_EQ(S_OK, m_logic->Clear());
  EXPECT_EQ("", sort({Variant::Text(u"Score")}));
  EXPECT_EQ(8, counter.m_count);
  m_logic->SetEventsClient(nullptr);
}

/// What the logic answers to every call, instead of what it would do.
Result g_answer = S_OK;

class RefusingElement final : public test::CTestElement {
 public:
  using CTestElement::CTestElement;
  Result GetName(WString*) override { return g_answer; }
  Result SetName(std::u16string_view) override { return g_answer; }
  Result GetChildren(IVEXElementsImpl**) override { return g_answer; }
  Result Refresh() override { return g_answer; }
};

class RefusingElements final : public CElementsCollectionImpl {
 public:
  Result GetItem(std::int32_t, IVEXElementImpl**) override { return g_answer; }
  Result GetCount(std::int32_t*) override { return g_answer; }
  Result GetIterator(tIIteratorImpl<IVEXElementImpl>**) override { return g_answer; }
  Result RemoveAt(std::int32_t) override { return g_answer; }
  Result Clear() override { return g_answer; }
  Result Add(IUnknown*, IVEXElementImpl**) override { return g_answer; }
  Result SortByProperty(std::u16string_view, bool) override { return g_answer; }
};

/// Notes what is added, too.
class RefusingProperties final : public CPropertyCollectionImpl {
 public:
  using CPropertyCollectionImpl::CPropertyCollectionImpl;
  Result Exists(std::u16string_view, bool*) override { return g_answer; }
  Result Remove(std::u16string_view) override { return g_answer; }
  Result RemoveAll() override { return g_answer; }
  Result Add(std::u16string_view name, const Variant& value, IPropertyImpl**) override {
    Variant text;
    EXPECT_EQ(S_OK, value.ChangeType(VT_BSTR, &text));
    m_added += cor::ToUtf8(WString(name) + u"=" + text.AsText() + u" ");
    return g_answer;
  }
  std::string m_added;
};

class RefusingProperty final : public tPropertyImpl<IPropertyImpl> {
 public:
  explicit RefusingProperty(IInstance& instance)
      : tPropertyImpl(instance, nullptr, u"Colour", eString, true, 1) {}
  Result GetIsDefault(std::int32_t*) override { return g_answer; }
  Result GetValue(Variant*) override { return g_answer; }
  Result GetValueAt(std::int32_t, Variant*) override { return g_answer; }
  Result GetSize(std::int32_t*) override { return g_answer; }
  Result SetValueAt(std::int32_t, const Variant&) override { return g_answer; }
};

TEST_F(FleetElements, RaiseTheMessagesOfTheTable) {
  const auto element = MakeRef<CVEXElementInt>(MakeRef<RefusingElement>(*m_instances[0]));
  const auto elements = MakeRef<CVEXElementsInt>(MakeRef<RefusingElements>());
  const auto properties = MakeRef<CPropertiesInt>(MakeRef<RefusingProperties>(*m_instances[0]));
  const auto property = MakeRef<CPropertyInt>(MakeRef<RefusingProperty>(*m_instances[0]));
  const std::map<std::string, IDispatch*> objects{{"Element", element.Get()},
                                                  {"Elements", elements.Get()},
                                                  {"Properties", properties.Get()},
                                                  {"Property", property.Get()}};
  const char* const kNotLoaded =
      "254 Properties and methods which change the contents of an object can only be called on "
      "data which is loaded.";
  const char* const kLocked =
      "240 The administrator of this remote Sifter has not made the data in this Search Area "
      "available for loading.";
  const char* const kOutOfRange = "211 The index 3 is out of range for the property Values.";
  struct {
    const char *object, *call;
    Result code;
    const char* shown;
  } const kRows[] = {
      {"Element", "Name = 'x'", E_NOTIMPL, kNotLoaded},
      {"Element", "Name = 'x'", E_ACCESSDENIED,
       "210 The DirectAccessChannel has already been added to a ChannelGroup.  Its name can now no "
       "longer be changed."},
      {"Element", "Name = 'x'", E_INVALIDARG,
       "209 The text x is not a valid value for the property Name."},
      {"Element", "Name = 'x'", E_POINTER,
       "209 The text Name is not a valid value for the property NULL."},
      {"Element", "Name = 'x'", E_OUTOFMEMORY, "207 The application is out of memory."},
      {"Element", "Name", E_PENDING, "241 The operation Name was timed out."},
      {"Element", "Children", E_NOTIMPL, "245 Children not implemented."},
      {"Element", "Children", E_FAIL, "250 Unknown error."},
      {"Element", "Refresh", VEX_E_OBJECT_GONE, "323 The object is no longer valid."},
      {"Elements", "Add(none)", E_NOTIMPL, kNotLoaded},
      {"Elements", "Add(none)", E_ACCESSDENIED, kLocked},
      {"Elements", "Remove(3)", E_NOTIMPL, kNotLoaded},
      {"Elements", "Remove(3)", E_ACCESSDENIED, kLocked},
      {"Elements", "RemoveAll", E_NOTIMPL, kNotLoaded},
      {"Elements", "RemoveAll", E_ACCESSDENIED, kLocked},
      {"Elements", "Item(3)", E_NOTIMPL, kNotLoaded},
      {"Elements", "Item(3)", E_INVALIDARG,
       "215 The index 3 does not correspond to a member of the collection."},
      {"Elements", "Item('x')", S_OK,
       "214 The argument passed to Item must be either a string or an integer."},
      {"Elements", "Count", E_NOTIMPL, kNotLoaded},
      {"Elements", "_NewEnum", E_NOTIMPL, kNotLoaded},
      {"Elements", "TransportDataCollection", E_NOTIMPL,
       "245 TransportDataCollection not implemented."},
      {"Elements", "Sort('x')", E_INVALIDARG,
       "212 The text x is not a valid value for the argument Sort of the method Path."},
      {"Elements", "Sort(3)", S_OK, "222 The argument String of the method Sort must be a Path."},
      {"Properties", "Remove('x')", E_ACCESSDENIED, kLocked},
      {"Properties", "RemoveAll", E_NOTIMPL, kNotLoaded},
      {"Properties", "Exists('x')", E_PENDING, "241 The operation Exists was timed out."},
      {"Properties", "Add('x',3)", E_INVALIDARG,
       "212 The text Add is not a valid value for the argument Name of the method NULL."},
      {"Property", "Value = 'x'", E_NOTIMPL, kNotLoaded},
      {"Property", "Value = 'x'", E_ACCESSDENIED,
       "220 The property Colour is a readonly property."},
      {"Property", "Value = 'x'", DISP_E_TYPEMISMATCH,
       "218 Properties cannot be created with the type String."},
      {"Property", "Values(3)", E_NOTIMPL, kNotLoaded},
      {"Property", "Values(3)", E_INVALIDARG, kOutOfRange},
      {"Property", "Values(3) = 'x'", E_NOTIMPL, kNotLoaded},
      {"Property", "Values(3) = 'x'", E_INVALIDARG, kOutOfRange},
      {"Property", "Size", E_FAIL, "250 Unknown error."},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.object);
    g_answer = row.code;
    ExpectShown(objects.at(row.object), {{row.call, row.shown}});
  }
  g_answer = S_OK;
}

TEST_F(FleetElements, PropertiesAreAddedBehindAPrefix) {
  const auto added = MakeRef<RefusingProperties>(*m_instances[1]);
  Ref<IVEXElement> person;
  ASSERT_EQ(S_OK, m_elements->Item(Variant::I4(0), person.Put()));
  Ref<IProperties> properties;
  ASSERT_EQ(S_OK, person->get_Properties(properties.Put()));
  EXPECT_EQ(S_OK, MakeRef<CPropertiesInt>(added)->AddProperties(properties.Get(), u"driver."));
  EXPECT_EQ("driver.Id=1 driver.Name=Ann ", added->m_added);
}

}  // namespace
}  // namespace hv::vex::easyImpl
