// store/elements/CollectionErrorsTest.cpp - the messages of collections of elements, by name.
#include <functional>

#include "tests/store/elements/CollectionsFixture.h"

namespace hv::vex {
namespace {

using test::Answer;
using test::Get;
using test::Put;

class CollectionErrors : public test::CampaignTest {
 protected:
  using Elements = Ref<IStoreElements>;

  Elements Top() { return Wrap(Ref<IStoreElementsImpl>(Roots())); }
  Elements Runs(std::u16string_view key = u"Sub.Test:3") { return Wrap(Members(key, u"Runs")); }
  Elements Best() { return Wrap(Members(u"Campaign:1", u"Best")); }
  /// The members of a record that is then deleted.
  Elements Gone() {
    Elements runs = Runs();
    Instance(u"Sub.Test:3")->Delete();
    return runs;
  }
  Elements ReadOnlyTop() {
    OpenAgain(u" readonly='yes'");
    return Top();
  }
  Elements ReadOnlyRuns() {
    OpenAgain(u" readonly='yes'");
    return Runs();
  }
  Ref<IStoreElementList> List() {
    Ref<IStoreElementListImpl> list;
    EXPECT_EQ(S_OK, MakeStoreElementList(*m_provider, list.Put()));
    return Wrap(list);
  }
  /// An argument: an element by its key.
  Variant Of(std::u16string_view key) { return Variant::Object(Wrap(Element(key)).Get()); }
  /// An element of the same record in another store.
  Variant Foreign() {
    const auto store = Open();
    Ref<IStoreElementImpl> element;
    EXPECT_EQ(S_OK, ProviderOf(*store)->GetElementByKey(u"Run:4", element.Put()));
    return Variant::Object(Wrap(element).Get());
  }
  Variant Deleted() {
    const auto element = Element(u"Run:4");
    element->GetCoreInstance()->Delete();
    return Variant::Object(Wrap(element).Get());
  }
};
INSTANTIATE_TEST_SUITE_P(Stores, CollectionErrors, ::testing::Values("ATFX", "SQL"),
                         test::NameOfKind);

/// One line for each row of the table. Not among them: 254 of `Item`, since no collection refuses
/// it, and 241 and 207, which no store at hand brings about.
TEST_P(CollectionErrors, HaveTheirNumbersAndTexts) {
  const auto none = [](auto name) {
    return "215 The index " + std::string(name) +
           " does not correspond to a member of the collection.";
  };
  const std::string key = "214 The argument passed to Item must be either a string or an integer.";
  const std::string isProtected = "365 The data store is write protected.";
  const std::string isAutomatic =
      "356 Root elements will automatically be added to or removed from the RootElements "
      "collection.";
  const std::string noElement =
      "339 The argument of the method AddReference must be an Element<DataStore>.";
  const std::string wrongType =
      "348 The type of the specified element does not match the reference type.";
  const std::string foreign =
      "335 The specified element is not an element of the connected data store.";
  const std::string notAdded = "349 Cannot add the reference for the specified element.";
  const std::string notRemoved = "350 Cannot remove the reference for the specified element.";
  const std::string noName = "360 The name of an Element<DataStore> must not be an empty string.";
  const std::string gone = "323 The object is no longer valid.";
  const std::string unknown = "250 Unknown error.";
  const std::string notLoaded =
      "254 Properties and methods which change the contents of an object can only be called on "
      "data which is loaded.";

  struct Row {
    const char* code;
    std::string shown;
    std::function<Answer()> call;
  };
  const auto null = [] { return Variant::Object(nullptr); };
  const Row rows[] = {
      {"Item 80020005", key, [&] { return Get(Top().Get(), u"Item", Variant::Null()); }},
      {"Item 80070057", none("x"), [&] { return Get(Top().Get(), u"Item", Variant::Text(u"x")); }},
      {"Item 80070057", none("2"), [&] { return Get(Top().Get(), u"Item", Variant::I4(2)); }},
      {"Item 80070057", none("-1"), [&] { return Get(Runs().Get(), u"Item", Variant::I4(-1)); }},
      {"Item 80070057", none("a'b"),
       [&] { return Get(Runs().Get(), u"Item", Variant::Text(u"a'b")); }},
      {"Item 80060001", gone, [&] { return Get(Gone().Get(), u"Item", Variant::I4(0)); }},
      {"Count 80060001", gone, [&] { return Get(Gone().Get(), u"Count"); }},
      {"_NewEnum 80060001", gone, [&] { return Get(Gone().Get(), u"_NewEnum"); }},
      {"Remove 80007013", isProtected,
       [&] { return Get(ReadOnlyTop().Get(), u"Remove", Variant::I4(1)); }},
      {"Remove 80070057", none("0"), [&] { return Get(Top().Get(), u"Remove", Variant::I4(0)); }},
      {"Remove 80070057", none("3"), [&] { return Get(Top().Get(), u"Remove", Variant::I4(3)); }},
      {"Remove 80070057", none("x"),
       [&] { return Get(Runs().Get(), u"Remove", Variant::Text(u"x")); }},
      {"RemoveAll 80007013", isProtected, [&] { return Get(ReadOnlyRuns().Get(), u"RemoveAll"); }},
      {"RemoveAllReferences 80007010", isAutomatic,
       [&] { return Get(Top().Get(), u"RemoveAllReferences"); }},
      {"RemoveAllReferences 80007013", isProtected,
       [&] { return Get(ReadOnlyRuns().Get(), u"RemoveAllReferences"); }},
      {"Add 80007011", noName, [&] { return Get(Top().Get(), u"Add", Variant::Text(u"")); }},
      {"Add 80007011", noName, [&] { return Get(Runs().Get(), u"Add", Variant::Text(u"")); }},
      {"Add 80007013", isProtected,
       [&] { return Get(ReadOnlyTop().Get(), u"Add", Variant::Text(u"x")); }},
      {"Add 80007013", isProtected,
       [&] { return Get(ReadOnlyRuns().Get(), u"Add", Variant::Text(u"x")); }},
      {"AddReference 80004003", noElement,
       [&] { return Get(Runs().Get(), u"AddReference", null()); }},
      {"AddReference 80050021", noElement,
       [&] { return Get(Runs().Get(), u"AddReference", Variant::Object(Top().Get())); }},
      {"AddReference 80007009", notAdded,
       [&] {
         const Elements runs = ReadOnlyRuns();
         return Get(runs.Get(), u"AddReference", Of(u"Run:4"));
       }},
      {"AddReference 8000700A", wrongType,
       [&] { return Get(Runs().Get(), u"AddReference", Of(u"Campaign:1")); }},
      {"AddReference 80007010", isAutomatic,
       [&] { return Get(Top().Get(), u"AddReference", Of(u"Campaign:1")); }},
      {"AddReference 80007010", isAutomatic,
       [&] { return Get(Top().Get(), u"AddReference", null()); }},
      {"AddReference 80050103", foreign,
       [&] { return Get(Runs().Get(), u"AddReference", Foreign()); }},
      {"AddReference 8000FFFF", unknown,
       [&] { return Get(Runs().Get(), u"AddReference", Deleted()); }},
      {"RemoveReference 80004003", noElement,
       [&] { return Get(Runs().Get(), u"RemoveReference", null()); }},
      {"RemoveReference 80050021", noElement,
       [&] { return Get(Runs().Get(), u"RemoveReference", Variant::Object(List().Get())); }},
      {"RemoveReference 8000700A", wrongType,
       [&] { return Get(Runs().Get(), u"RemoveReference", Of(u"Campaign:1")); }},
      {"RemoveReference 8000700B", notRemoved,
       [&] { return Get(Best().Get(), u"RemoveReference", Of(u"Sub.Test:3")); }},
      {"RemoveReference 80007010", isAutomatic,
       [&] { return Get(Top().Get(), u"RemoveReference", Of(u"Campaign:1")); }},
      {"RemoveReference 80007013", isProtected,
       [&] {
         const Elements runs = ReadOnlyRuns();
         return Get(runs.Get(), u"RemoveReference", Of(u"Run:4"));
       }},
      {"RemoveReference 80050103", foreign,
       [&] { return Get(Runs().Get(), u"RemoveReference", Foreign()); }},
      {"list Item 80020005", key, [&] { return Get(List().Get(), u"Item", Variant::Text(u"x")); }},
      {"list Item 80070057", none("0"), [&] { return Get(List().Get(), u"Item", Variant::I4(0)); }},
      {"list MaxCount 80070057", "362 The value for the property MaxCount must be greater than 0.",
       [&] { return Put(List().Get(), u"MaxCount", Variant::I4(0)); }},
      {"list Sort 80020005", "222 The argument String of the method Sort must be a Path.",
       [&] { return Get(List().Get(), u"Sort", Variant::I4(1)); }},
      {"list TransportDataCollection 80004001", "245 TransportDataCollection not implemented.",
       [&] { return Get(List().Get(), u"TransportDataCollection"); }},
      {"Add 80004001", notLoaded,
       [&] {
         OpenAgain({}, "notest");
         Ref<IRootElementsImpl> roots;
         EXPECT_EQ(S_OK, MakeRootElements(*m_provider, roots.Put()));
         EXPECT_EQ(E_NOTIMPL, roots->Fill());
         return Get(Wrap(Ref<IStoreElementsImpl>(roots)).Get(), u"Add", Variant::Text(u"x"));
       }},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.code);
    OpenAgain();
    EXPECT_EQ(row.shown, row.call().Shown());
  }
}

}  // namespace
}  // namespace hv::vex
