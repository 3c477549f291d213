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
