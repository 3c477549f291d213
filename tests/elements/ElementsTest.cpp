// elements/ElementsTest.cpp - elements and lists of them, by name and by the logic faces.
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "elements/ElementsCollectionImpl.h"
#include "elements/PropertyInt.h"
#include "elements/VEXElementInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/elements/Script.h"
#include "tests/elements/TestElement.h"

namespace hv::vex::easyImpl {
namespace {

using test::Eval;

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
  std::string Show(std::string_view expression) {
    return Eval(m_elements.Get(), expression).Shown();
  }

  std::vector<Ref<IInstance>> m_instances;
  Ref<CElementsCollectionImpl> m_logic;
  Ref<CVEXElementsInt> m_elements;
};

TEST_F(FleetElements, ShowTheirInstance) {
  struct Line {
    const char* expression;
    const char* shown;
  };
  for (const Line& line :
       {Line{"Count", "4"}, Line{"Item(1).Name", "Alps"}, Line{"Item(1).Type", "Campaign"},
        Line{"Item(1).DisplayName", "Alps"}, Line{"Item(1).DisplayType", "Campaign"},
        Line{"Item(1).IsKindOf('Test')", "1"}, Line{"Item(1).IsKindOf('')", "0"},
        Line{"Item(1).Properties('Score').Value", "2.5"},
        Line{"Item(1).Properties.Item('Score').Value", "2.5"},
        Line{"Item(1).Children", "no object"}, Line{"Item(1).Parent", "no object"},
        Line{"Item(1).Path", "245 Path not implemented."},
        Line{"Item(1).TransportDataCollection", "245 TransportDataCollection not implemented."}}) {
    SCOPED_TRACE(line.expression);
    EXPECT_EQ(line.shown, Show(line.expression));
  }
  const auto instance = Eval(m_elements.Get(), "Item(1).Instance");
  ASSERT_TRUE(instance.value.Is(VT_UNKNOWN));
  EXPECT_EQ(m_instances[1].Get(), QueryRef<IInstance>(instance.value.AsUnknown()).Get());
}

TEST_F(FleetElements, AnswerForAllVersionsOfTheirFace) {
  Ref<IVEXElement> element;
  ASSERT_EQ(S_OK, m_elements->Item(Variant::I4(0), element.Put()));
  EXPECT_TRUE(element.As<IVEXElement>());
  EXPECT_TRUE(element.As<IVEXElementEx>());
  EXPECT_TRUE(element.As<IVEXElementEx_1_9>());
  EXPECT_TRUE(element.As<IDispatch>());
  EXPECT_FALSE(element.As<IVEXElements>());
}

TEST_F(FleetElements, TakeANewName) {
  const auto element = Eval(m_elements.Get(), "Item(1)");
  EXPECT_EQ("empty", test::Put(element.Object(), u"Name", Variant::Text(u"Andes")).Shown());
  EXPECT_EQ("Andes", Show("Item(1).Name"));
  EXPECT_EQ("Andes", Show("Item(1).Properties('Title').Value"));
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
                             "IsKindOf('x')", "Refresh"}) {
    SCOPED_TRACE(member);
    EXPECT_EQ("323 The object is no longer valid.", Eval(element.Object(), member).Shown());
  }
  EXPECT_EQ("323 The object is no longer valid.",
            test::Put(element.Object(), u"Name", Variant::Text(u"x")).Shown());
}

TEST_F(FleetElements, CanBeTakenOutOfTheList) {
  EXPECT_EQ("empty", Show("Remove(0)"));
  EXPECT_EQ("Alps City beach", Names());
  EXPECT_EQ(E_INVALIDARG, m_elements->Remove(3));
  EXPECT_EQ(S_OK, m_logic->Swap(0, 2));
  EXPECT_EQ("beach City Alps", Names());
  EXPECT_EQ(E_INVALIDARG, m_logic->Swap(0, 3));
  EXPECT_EQ("empty", Show("RemoveAll"));
  EXPECT_EQ("0", Show("Count"));
}

TEST_F(FleetElements, AreFoundInTheList) {
  Ref<IVEXElementImpl> third;
  ASSERT_EQ(S_OK, m_logic->GetItem(2, third.Put()));
  std::int32_t index = -1;
  EXPECT_EQ(S_OK, m_logic->IndexOf(third.Get(), &index));
  EXPECT_EQ(2, index);
  EXPECT_EQ(E_INVALIDARG, m_logic->IndexOf(nullptr, &index));
  EXPECT_EQ(E_INVALIDARG,
            m_logic->IndexOf(MakeRef<test::CTestElement>(*m_instances[2]).Get(), &index));
}

TEST_F(FleetElements, KnowTheLimitOfTheList) {
  EXPECT_EQ("200", Show("MaxCount"));
  EXPECT_EQ("empty", test::Put(m_elements.Get(), u"MaxCount", Variant::I4(1)).Shown());
  EXPECT_EQ("1", Show("MaxCount"));
  EXPECT_EQ("250 Unknown error.", test::Put(m_elements.Get(), u"MaxCount", Variant::I4(0)).Shown());
  EXPECT_EQ("0", Show("IsIncomplete"));
  m_logic->SetIsIncomplete(true);
  EXPECT_EQ("1", Show("IsIncomplete"));
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
  EXPECT_EQ(7, counter.m_count);
  EXPECT_EQ(S_OK, m_logic->Clear());
  EXPECT_EQ("", sort({Variant::Text(u"Score")}));
  EXPECT_EQ(8, counter.m_count);
  m_logic->SetEventsClient(nullptr);
}

TEST_F(FleetElements, RefuseToSortByAnythingElse) {
  for (const Variant& property : {Variant::Text(u""), Variant::I4(1), Variant::Null()}) {
    EXPECT_EQ(DISP_E_TYPEMISMATCH, m_elements->Sort(property, Variant::Missing()));
  }
  EXPECT_EQ(DISP_E_TYPEMISMATCH, m_elements->Sort(Variant::Text(u"Score"), Variant::Text(u"up")));
  EXPECT_EQ("Ann Alps City beach", Names());
}

/// Logic objects that answer every call with one code.
Result g_answer = S_OK;

class RefusingElement final : public cor::Counted<IVEXElementImpl> {
 public:
  Result GetName(WString*) override { return g_answer; }
  Result SetName(std::u16string_view) override { return g_answer; }
  Result GetProperties(IPropertyCollectionImpl**) override { return g_answer; }
  Result IsKindOf(std::u16string_view, std::int32_t*) override { return g_answer; }
  Result GetType(WString*) override { return g_answer; }
  Result GetInstance(IUnknown**) override { return g_answer; }
  Result GetPath(WString*) override { return g_answer; }
  Result GetBrowseLevel(std::int32_t*) override { return g_answer; }
  Result GetChildren(IVEXElementsImpl**) override { return g_answer; }
  Result GetChildrenFiltered(std::u16string_view, IVEXElementsImpl**) override { return g_answer; }
  Result HasChildren(std::int32_t*) override { return g_answer; }
  Result GetParent(IVEXElementImpl**) override { return g_answer; }
  Result Reserved() override { return g_answer; }
  Result GetTransportData(IDispatch**) override { return g_answer; }
  Result Refresh() override { return g_answer; }
  Result GetDisplayType(WString*) override { return g_answer; }
  Result GetDisplayName(WString*) override { return g_answer; }
};

class RefusingElements final : public cor::Counted<IVEXElementsImpl> {
 public:
  Result GetItem(std::int32_t, IVEXElementImpl**) override { return g_answer; }
  Result GetCount(std::int32_t*) override { return g_answer; }
  Result GetIterator(tIIteratorImpl<IVEXElementImpl>**) override { return g_answer; }
  Result RemoveAt(std::int32_t) override { return g_answer; }
  Result Clear() override { return g_answer; }
  Result Swap(std::int32_t, std::int32_t) override { return g_answer; }
  Result Add(IUnknown*, IVEXElementImpl**) override { return g_answer; }
  Result IndexOf(IVEXElementImpl*, std::int32_t*) override { return g_answer; }
  Result GetTransportData(IDispatch**) override { return g_answer; }
  Result GetIsIncomplete(std::int32_t*) override { return g_answer; }
  Result GetMaxCount(std::int32_t*) override { return g_answer; }
  Result SetMaxCount(std::int32_t) override { return g_answer; }
  Result SortByName(bool) override { return g_answer; }
  Result SortByProperty(std::u16string_view, bool) override { return g_answer; }
};

class RefusingProperties final : public cor::Counted<IPropertyCollectionImpl> {
 public:
  Result GetItem(std::int32_t, IPropertyImpl**) override { return g_answer; }
  Result GetCount(std::int32_t*) override { return g_answer; }
  Result GetIterator(tIIteratorImpl<IPropertyImpl>**) override { return g_answer; }
  Result RemoveAt(std::int32_t) override { return g_answer; }
  Result Clear() override { return g_answer; }
  Result Swap(std::int32_t, std::int32_t) override { return g_answer; }
  Result GetItemByName(std::u16string_view, IPropertyImpl**) override { return g_answer; }
  Result RemoveByName(std::u16string_view) override { return g_answer; }
  Result Exists(std::u16string_view, bool*) override { return g_answer; }
  Result Rename(std::u16string_view, std::u16string_view, WString*) override { return g_answer; }
  Result Add(std::u16string_view, const Variant&, IPropertyImpl**) override { return g_answer; }
  Result Remove(std::u16string_view) override { return g_answer; }
  Result RemoveAll() override { return g_answer; }
  Result AddProperties(IPropertyCollectionImpl*, std::u16string_view) override { return g_answer; }
};

class RefusingProperty final : public cor::Counted<IPropertyImpl> {
 public:
  Result GetName(WString* name) override {
    *name = u"Colour";
    return S_OK;
  }
  Result GetIsDefault(std::int32_t*) override { return g_answer; }
  Result GetValue(Variant*) override { return g_answer; }
  Result SetValueText(std::u16string_view) override { return g_answer; }
  Result SetValue(const Variant&) override { return g_answer; }
  Result GetDataType(enumDataType*) override { return g_answer; }
  Result GetValueAt(std::int32_t, Variant*) override { return g_answer; }
  Result GetSize(std::int32_t*) override { return g_answer; }
  Result GetBaseName(WString*) override { return g_answer; }
  Result IsInstanceProperty(std::int32_t*) override { return g_answer; }
  Result GetDisplayName(WString*) override { return g_answer; }
  Result SetValueAt(std::int32_t, const Variant&) override { return g_answer; }
  Result GetIsHidden(std::int32_t*) override { return g_answer; }
};

struct MessageCase {
  const char* object;
  const char16_t* member;
  CallKind kind;
  std::vector<Variant> args;
  Result code;
  std::string shown;
};

constexpr CallKind kRead = CallKind::Method | CallKind::Get;
const std::string kNotLoaded =
    "254 Properties and methods which change the contents of an object can only be called on data "
    "which is loaded.";
const std::string kLocked =
    "240 The administrator of this remote Sifter has not made the data in this Search Area "
    "available for loading.";

TEST(ElementMessages, StandAsInTheTable) {
  const auto element = MakeRef<CVEXElementInt>(MakeRef<RefusingElement>());
  const auto elements = MakeRef<CVEXElementsInt>(MakeRef<RefusingElements>());
  const auto properties = MakeRef<CPropertiesInt>(MakeRef<RefusingProperties>());
  const auto property = MakeRef<CPropertyInt>(MakeRef<RefusingProperty>());
  const std::map<std::string, IDispatch*> objects{{"Element", element.Get()},
                                                  {"Elements", elements.Get()},
                                                  {"Properties", properties.Get()},
                                                  {"Property", property.Get()}};
  const Variant text = Variant::Text(u"x");
  const Variant index = Variant::I4(3);
  const std::string memory = "207 The application is out of memory.";
  const std::string gone = "323 The object is no longer valid.";
  const std::string unknown = "250 Unknown error.";
  const MessageCase rows[] = {
      {"Element", u"Name", CallKind::Put, {text}, E_NOTIMPL, kNotLoaded},
      {"Element",
       u"Name",
       CallKind::Put,
       {text},
       E_ACCESSDENIED,
       "210 The DirectAccessChannel has already been added to a ChannelGroup.  Its name can now "
       "no longer be changed."},
      {"Element",
       u"Name",
       CallKind::Put,
       {text},
       E_INVALIDARG,
       "209 The text x is not a valid value for the property Name."},
      {"Element", u"Name", CallKind::Put, {text}, E_OUTOFMEMORY, memory},
      {"Element", u"Name", kRead, {}, E_PENDING, "241 The operation Name was timed out."},
      {"Element", u"Children", kRead, {}, E_NOTIMPL, "245 Children not implemented."},
      {"Element", u"Children", kRead, {}, E_FAIL, unknown},
      {"Element", u"Refresh", kRead, {}, VEX_E_OBJECT_GONE, gone},
      {"Elements", u"Add", kRead, {Variant::Unknown(nullptr)}, E_NOTIMPL, kNotLoaded},
      {"Elements", u"Add", kRead, {Variant::Unknown(nullptr)}, E_ACCESSDENIED, kLocked},
      {"Elements", u"Remove", kRead, {index}, E_NOTIMPL, kNotLoaded},
      {"Elements", u"Remove", kRead, {index}, E_ACCESSDENIED, kLocked},
      {"Elements", u"RemoveAll", kRead, {}, E_NOTIMPL, kNotLoaded},
      {"Elements", u"RemoveAll", kRead, {}, E_ACCESSDENIED, kLocked},
      {"Elements", u"Item", kRead, {index}, E_NOTIMPL, kNotLoaded},
      {"Elements",
       u"Item",
       kRead,
       {index},
       E_INVALIDARG,
       "215 The index 3 does not correspond to a member of the collection."},
      {"Elements",
       u"Item",
       kRead,
       {text},
       S_OK,
       "214 The argument passed to Item must be either a string or an integer."},
      {"Elements", u"Count", kRead, {}, E_NOTIMPL, kNotLoaded},
      {"Elements", u"_NewEnum", kRead, {}, E_NOTIMPL, kNotLoaded},
      {"Elements",
       u"TransportDataCollection",
       kRead,
       {},
       E_NOTIMPL,
       "245 TransportDataCollection not implemented."},
      {"Properties", u"Remove", kRead, {text}, E_ACCESSDENIED, kLocked},
      {"Properties", u"RemoveAll", kRead, {}, E_NOTIMPL, kNotLoaded},
      {"Properties",
       u"Exists",
       kRead,
       {text},
       E_PENDING,
       "241 The operation Exists was timed out."},
      {"Property", u"Value", CallKind::Put, {text}, E_NOTIMPL, kNotLoaded},
      {"Property",
       u"Value",
       CallKind::Put,
       {text},
       E_ACCESSDENIED,
       "220 The property Colour is a readonly property."},
      {"Property", u"Values", kRead, {index}, E_NOTIMPL, kNotLoaded},
      {"Property",
       u"Values",
       kRead,
       {index},
       E_INVALIDARG,
       "211 The index 3 is out of range for the property Values."},
      {"Property", u"Values", CallKind::Put, {index, text}, E_NOTIMPL, kNotLoaded},
      {"Property",
       u"Values",
       CallKind::Put,
       {index, text},
       E_INVALIDARG,
       "211 The index 3 is out of range for the property Values."},
      {"Property", u"Size", kRead, {}, E_FAIL, unknown},
  };
  for (const MessageCase& row : rows) {
    SCOPED_TRACE(std::string(row.object) + "." + cor::ToUtf8(row.member));
    g_answer = row.code;
    EXPECT_EQ(row.shown,
              test::Call(objects.at(row.object), row.member, row.kind, row.args).Shown());
  }
  // The numbers of the rows whose words name the method and the argument.
  const MessageCase numbers[] = {
      {"Element", u"Name", CallKind::Put, {text}, E_POINTER, "209"},
      {"Elements", u"Sort", kRead, {text}, E_INVALIDARG, "212"},
      {"Elements", u"Sort", kRead, {index}, S_OK, "222"},
      {"Properties", u"Add", kRead, {text, index}, E_INVALIDARG, "212"},
      {"Property", u"Value", CallKind::Put, {text}, DISP_E_TYPEMISMATCH, "218"},
  };
  for (const MessageCase& row : numbers) {
    SCOPED_TRACE(std::string(row.object) + "." + cor::ToUtf8(row.member));
    g_answer = row.code;
    const auto answer = test::Call(objects.at(row.object), row.member, row.kind, row.args);
    EXPECT_EQ(DISP_E_EXCEPTION, answer.rc);
    EXPECT_EQ(row.shown, std::to_string(answer.error.number));
  }
  g_answer = S_OK;
}

/// A list that takes properties, for `AddProperties`.
class Collecting final : public cor::Counted<IPropertyCollectionImpl> {
 public:
  std::string m_added;

  Result GetItem(std::int32_t, IPropertyImpl**) override { return E_INVALIDARG; }
  Result GetCount(std::int32_t*) override { return E_NOTIMPL; }
  Result GetIterator(tIIteratorImpl<IPropertyImpl>**) override { return E_NOTIMPL; }
  Result RemoveAt(std::int32_t) override { return E_NOTIMPL; }
  Result Clear() override { return E_NOTIMPL; }
  Result Swap(std::int32_t, std::int32_t) override { return E_NOTIMPL; }
  Result GetItemByName(std::u16string_view, IPropertyImpl**) override { return E_INVALIDARG; }
  Result RemoveByName(std::u16string_view) override { return E_NOTIMPL; }
  Result Exists(std::u16string_view, bool*) override { return E_NOTIMPL; }
  Result Rename(std::u16string_view, std::u16string_view, WString*) override { return E_NOTIMPL; }
  Result Add(std::u16string_view name, const Variant& value, IPropertyImpl**) override {
    Variant text;
    if (Failed(value.ChangeType(VT_BSTR, &text))) text = Variant::Text(u"-");
    m_added += cor::ToUtf8(name) + "=" + cor::ToUtf8(text.AsText()) + " ";
    return S_OK;
  }
  Result Remove(std::u16string_view) override { return E_NOTIMPL; }
  Result RemoveAll() override { return E_NOTIMPL; }
  Result AddProperties(IPropertyCollectionImpl* from, std::u16string_view prefix) override {
    return CopyProperties(*from, prefix, *this);
  }
};

TEST_F(FleetElements, PropertiesAreAddedBehindAPrefix) {
  const auto collecting = MakeRef<Collecting>();
  const auto target = MakeRef<CPropertiesInt>(collecting);
  Ref<IVEXElement> person;
  ASSERT_EQ(S_OK, m_elements->Item(Variant::I4(0), person.Put()));
  Ref<IProperties> properties;
  ASSERT_EQ(S_OK, person->get_Properties(properties.Put()));
  EXPECT_EQ(S_OK, target->AddProperties(properties.Get(), u"driver."));
  EXPECT_EQ("driver.Id=1 driver.Name=Ann ", collecting->m_added);
}

}  // namespace
}  // namespace hv::vex::easyImpl
