// store/elements/HitsTest.cpp - lists of elements without names, and the hits of a search.
#include "tests/store/elements/CollectionsFixture.h"

namespace hv::vex {
namespace {

using test::Eval;
using test::Get;
using test::Put;

class Hits : public test::CampaignTest {
 protected:
  Hits() {
    EXPECT_EQ(S_OK, MakeResultCollection(*m_provider, 200, m_results.Put()));
    for (const char16_t* name : {u"b", u"A", u"c"}) MakeRecord(u"Run", name);
    MakeRecord(u"Sub.Test", u"0");
    const auto all = Ref<IInstList>::Adopt(m_store->GetInstances(u"/#Run"));
    all->Append(MakeRecord(u"Campaign", u"z").Get());
    EXPECT_EQ(S_OK, m_results->SetList(all.Get()));
    EXPECT_EQ(S_OK, m_results->SetTotal(6));
  }
  std::string Ask(std::string_view expression) {
    return Eval(Wrap(m_results).Get(), expression).Shown();
  }
  static Ref<IStoreElementList> Wrap(Ref<IDataStoreResultCollectionImpl> results) {
    return CampaignTest::Wrap(Ref<IStoreElementListImpl>(std::move(results)));
  }
  /// Lets go of what refers to the store, before the fixture looks at what is left.
  void TearDown() override { m_results.Reset(); }

  Ref<IDataStoreResultCollectionImpl> m_results;
};
INSTANTIATE_TEST_SUITE_P(Stores, Hits, ::testing::Values("ATFX", "SQL"), test::NameOfKind);

TEST_P(Hits, MakeElementsWhenTheyAreAskedFor) {
  const std::int64_t before = cor::LiveObjectCount();
  EXPECT_EQ("6", Ask("Count"));
  EXPECT_EQ("Run 2", Ask("Item(1).Name"));
  EXPECT_EQ(before, cor::LiveObjectCount()) << "nobody holds the element any more";
  Ref<easyImpl::IVEXElementImpl> element;
  ASSERT_EQ(S_OK, m_results->GetItem(1, element.Put()));
  EXPECT_EQ(Element(u"Run:5").Get(), element.Get()) << "one object as long as it is held";
  EXPECT_EQ("Run 1|Run 2|b|A|c|z", Names(*m_results));

  Instance(u"Run:5")->Delete();
  EXPECT_EQ("323 The object is no longer valid.", Ask("Item(1).Name"));
  EXPECT_EQ(S_OK, m_results->RemoveAt(1));
  EXPECT_EQ("Run 1|b|A|c|z", Names(*m_results));
}

TEST_P(Hits, AreSortedAndTakenOut) {
  ASSERT_EQ(S_OK, m_results->SortByName(true));  // the type first: Campaign before Run
  EXPECT_EQ("z|A|b|c|Run 1|Run 2", Names(*m_results));
  ASSERT_EQ(S_OK, m_results->SortByProperty(u"Version", false));  // without one: first
  EXPECT_EQ("c|b|A|z|Run 2|Run 1", Names(*m_results));
  ASSERT_EQ(S_OK, m_results->Swap(0, 5));
  ASSERT_EQ(S_OK, m_results->RemoveAt(1));
  EXPECT_EQ("Run 1|A|z|Run 2|c", Names(*m_results));
  std::int32_t index = 0;
  EXPECT_EQ(S_OK, m_results->IndexOf(Element(u"Run:5").Get(), &index));
  EXPECT_EQ(3, index);
  EXPECT_EQ(E_INVALIDARG, m_results->IndexOf(Element(u"Sub.Test:3").Get(), &index));
  EXPECT_EQ(E_INVALIDARG, m_results->IndexOf(nullptr, &index));
  ASSERT_EQ(S_OK, m_results->Append(Element(u"Sub.Test:3").Get()));
  EXPECT_EQ("Run 1|A|z|Run 2|c|Day 1", Names(*m_results));
  for (const std::int32_t outside : {-1, 6}) {
    Ref<easyImpl::IVEXElementImpl> element;
    EXPECT_EQ(E_INVALIDARG, m_results->RemoveAt(outside));
    EXPECT_EQ(E_INVALIDARG, m_results->Swap(0, outside));
    EXPECT_EQ(E_INVALIDARG, m_results->GetItem(outside, element.Put()));
  }
}

/// The values of a list with "|" between them.
std::string Listed(const Variant& list) {
  std::string all;
  for (const Variant& value : list.AsArray()) {
    all += (all.empty() ? "" : "|") + (value.Is(VT_ARRAY | VT_VARIANT)
                                           ? "(" + Listed(value) + ")"
                                           : test::Answer{S_OK, value, {}}.Shown());
  }
  return all;
}

TEST_P(Hits, GiveColumnsOfAllAtOnce) {
  const auto column = [this](IDispatch* elements, Variant names) {
    const auto answer = Get(elements, u"ReadColumns", std::move(names));
    return answer.value.Is(VT_ARRAY | VT_VARIANT) ? Listed(answer.value) : answer.Shown();
  };
  const auto texts = [](std::initializer_list<const char16_t*> names) {
    std::vector<Variant> all;
    for (const char16_t* name : names) all.push_back(Variant::Text(name));
    return Variant::Array(std::move(all));
  };
  const auto hits = Wrap(m_results);
  const std::string names = "Run 1|Run 2|b|A|c|z";
  EXPECT_EQ(names, column(hits.Get(), Variant::Text(u"name"))) << "whose own name is another one";
  EXPECT_EQ("(" + names + ")|(4|5|6|7|8|3)", column(hits.Get(), texts({u"name", u"id"})));
  EXPECT_EQ("", column(hits.Get(), texts({})));
  EXPECT_EQ("2105 The property \"Nmae\" is invalid. Please edit or remove this property.",
            column(hits.Get(), texts({u"Name", u"Nmae"})));
  for (const char16_t* name : {u"Test", u"Channels", u"Picture", u""}) {
    EXPECT_EQ("2105", column(hits.Get(), Variant::Text(name)).substr(0, 4)) << "no property";
  }
  EXPECT_EQ("refused", column(hits.Get(), Variant::I4(0)));
  ASSERT_EQ(S_OK, m_results->SortByName(false));
  EXPECT_EQ("Run 2|Run 1|c|b|A|z", column(hits.Get(), Variant::Text(u"name")));
  // The members of a reference and a plain list, with a property of what they refer to.
  const auto days = CampaignTest::Wrap(Members(u"Campaign:1", u"children"));
  EXPECT_EQ(Names(*Members(u"Campaign:1", u"children")),
            column(days.Get(), Variant::Text(u"Name")));
  Ref<IStoreElementListImpl> list;
  ASSERT_EQ(S_OK, MakeStoreElementList(*m_provider, list.Put()));
  ASSERT_EQ(S_OK, list->Append(Element(u"Run:5").Get()));
  ASSERT_EQ(S_OK, list->Append(Element(u"Run:6").Get()));
  const std::string test =
      Eval(CampaignTest::Wrap(Element(u"Run:5")).Get(), "References('Test').Elements(0).Name")
          .Shown();
  EXPECT_EQ(test + "|null", column(CampaignTest::Wrap(list).Get(), Variant::Text(u"Test.Name")));
  // Every value is what the property itself gives.
  const auto campaigns = CampaignTest::Wrap(Ref<IStoreElementsImpl>(Roots()));
  for (const std::string name :
       {"Title", "Start.Date", "Score", "Count", "Big", "Byte", "Active", "Note"}) {
    std::string values;
    for (int i = 0; i < 3; ++i) {
      const auto item = "Item(" + std::to_string(i) + ").Properties('" + name + "').Value";
      values += (i == 0 ? "" : "|") + Eval(campaigns.Get(), item).Shown();
    }
    EXPECT_EQ(values, column(campaigns.Get(), Variant::Text(cor::FromUtf8(name)))) << name;
  }
}

TEST_P(Hits, TellWhetherThereAreMore) {
  EXPECT_EQ("0", Ask("IsIncomplete"));
  ASSERT_EQ(S_OK, m_results->SetTotal(-1));
  EXPECT_EQ("1", Ask("IsIncomplete"));
  EXPECT_EQ("200", Ask("MaxCount"));
  EXPECT_EQ("empty", Put(Wrap(m_results).Get(), u"MaxCount", Variant::I4(6)).Shown());
  ASSERT_EQ(S_OK, m_results->ClearResults());
  EXPECT_EQ("0", Ask("Count"));
  EXPECT_EQ("0", Ask("IsIncomplete"));
  EXPECT_EQ("6", Ask("MaxCount")) << "that is for the next search";
  const auto list = Wrap(m_results);
  EXPECT_EQ("object", Get(list.Get(), u"Add", Variant::Unknown(Instance(u"Run:4").Get())).Shown());
  EXPECT_EQ("Run 1", Ask("Item(0).Name"));
}

TEST_P(Hits, ListsKeepElementsInOrder) {
  Ref<IStoreElementListImpl> logic;
  ASSERT_EQ(S_OK, MakeStoreElementList(*m_provider, logic.Put()));
  ASSERT_EQ(S_OK, logic->Reserve(3));
  for (const char16_t* key : {u"Run:5", u"Campaign:1", u"Run:4"}) {
    ASSERT_EQ(S_OK, logic->Append(Element(key).Get()));
  }
  const auto list = CampaignTest::Wrap(logic);
  EXPECT_EQ("Run 2|Cold start|Run 1", Names(*logic));
  EXPECT_EQ("empty", Get(list.Get(), u"Sort").Shown());
  EXPECT_EQ("Cold start|Run 1|Run 2", Names(*logic));
  EXPECT_EQ("empty",
            Get(list.Get(), u"Sort", Variant::Text(u"Version"), Variant::Bool(false)).Shown());
  EXPECT_EQ("Cold start|Run 2|Run 1", Names(*logic));
  EXPECT_EQ("empty", Get(list.Get(), u"Remove", Variant::I4(0)).Shown());
  EXPECT_EQ("Run 2|Run 1", Names(*logic));
  EXPECT_EQ("Cold start|Warm start|z", Names(*Roots())) << "taken out, not deleted";
  const auto other = Open();
  Ref<easyImpl::IVEXElementImpl> element;
  EXPECT_EQ(VEX_E_FOREIGN_ELEMENT,
            logic->Add(Ref<IInstance>::Adopt(other->GetInstance(u"Run:4")).Get(), element.Put()));
  EXPECT_EQ(VEX_E_BAD_TYPE_ARGUMENT, logic->Add(m_store.Get(), element.Put()));
  EXPECT_EQ(E_POINTER, logic->Add(static_cast<IUnknown*>(nullptr), element.Put()));
  EXPECT_EQ("empty", Get(list.Get(), u"RemoveAll").Shown());
  EXPECT_EQ("0", Eval(list.Get(), "Count").Shown());
  Ref<IVEXElement> typed;
  EXPECT_EQ(E_INVALIDARG, list->Item(Variant::I4(0), typed.Put()));
}

}  // namespace
}  // namespace hv::vex
