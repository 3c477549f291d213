// store/elements/CollectionsTest.cpp - the elements at the top of a store and behind references.
#include <algorithm>
#include <array>
#include <functional>

#include "tests/store/elements/CollectionsFixture.h"

namespace hv::vex {
namespace {

using Collections = test::CampaignTest;
INSTANTIATE_TEST_SUITE_P(Stores, Collections, ::testing::Values("ATFX", "SQL"), test::NameOfKind);

TEST_P(Collections, MakeNamesAtTheTopUniqueAndFollowRenames) {
  const auto roots = Roots();
  EXPECT_EQ("Cold start|Warm start", Names(*roots));
  std::array<Ref<IStoreElementImpl>, 3> made;
  for (auto& element : made) ASSERT_EQ(S_OK, roots->Add(u"A", element.Put()));
  EXPECT_EQ("Cold start|Warm start|A|A_1|A_2", Names(*roots));
  EXPECT_EQ("A_2", NameInStore(*made[2]));
  EXPECT_EQ(KeyOf(*made[1]), KeyOfMember(*roots, u"A_1"));
  EXPECT_EQ("", KeyOfMember(*roots, u"a")) << "names are told apart by case";

  ASSERT_EQ(S_OK, made[1]->SetName(u"A"));  // taken here: listed under the next number
  EXPECT_EQ("", KeyOfMember(*roots, u"A_1"));
  EXPECT_EQ(KeyOf(*made[0]), KeyOfMember(*roots, u"A"));
  EXPECT_EQ(KeyOf(*made[1]), KeyOfMember(*roots, u"A_3"));
  ASSERT_EQ(S_OK, made[1]->SetName(u"B"));
  EXPECT_EQ(KeyOf(*made[1]), KeyOfMember(*roots, u"B"));
  EXPECT_EQ("", KeyOfMember(*roots, u"A_3"));

  // Somebody else's changes are there after a reload, and elements that stay are the same objects.
  const auto twin = MakeRecord(u"Campaign", u"B");
  made[2]->GetCoreInstance()->Delete();
  ASSERT_EQ(S_OK, roots->Reload());
  EXPECT_EQ("Cold start|Warm start|A|B|B", Names(*roots));
  Ref<easyImpl::IVEXElementImpl> again;
  ASSERT_EQ(S_OK, roots->GetItem(3, again.Put()));
  EXPECT_EQ(static_cast<easyImpl::IVEXElementImpl*>(made[1].Get()), again.Get());
  EXPECT_NE("", KeyOfMember(*roots, u"B_1"));
}

TEST_P(Collections, LetGoOfElementsThatOutliveThem) {
  auto roots = Roots();
  Ref<IStoreElementImpl> kept;
  ASSERT_EQ(S_OK, roots->Add(u"Kept", kept.Put()));
  roots.Reset();
  EXPECT_EQ(S_OK, kept->SetName(u"Alone")) << "there is nobody to tell";
}

TEST_P(Collections, FindNamesWithMarksOfPaths) {
  const auto runs = Members(u"Campaign:1", u"Vehicle.Runs");
  const char16_t* const odd[] = {u"O'Neil",       u"''",    u"a.b",   u"x (1)", u"(name='Day 1')",
                                 u"/#Campaign(1", u"\"q\"", u"%*?_1", u"ünï 試"};
  std::vector<std::string> keys;
  for (const char16_t* name : odd) {
    Ref<IStoreElementImpl> made;
    ASSERT_EQ(S_OK, runs->Add(name, made.Put()));
    EXPECT_EQ(cor::ToUtf8(name), NameInStore(*made));
    keys.push_back(KeyOf(*made));
  }
  // Without a list yet, from the list, and in another collection of the same reference.
  for (int round = 0; round < 3; ++round) {
    if (round == 1) {
      EXPECT_EQ("Day 1|O'Neil|''|a.b|x (1)|(name='Day 1')|/#Campaign(1|\"q\"|%*?_1|ünï 試",
                Names(*runs));
    }
    const auto elements = round < 2 ? runs : Members(u"Campaign:1", u"Vehicle.Runs");
    for (std::size_t i = 0; i < keys.size(); ++i) {
      EXPECT_EQ(keys[i], KeyOfMember(*elements, odd[i])) << keys[i];
    }
  }
  for (const char16_t* name : odd) EXPECT_EQ(S_OK, runs->RemoveByName(name)) << cor::ToUtf8(name);
  EXPECT_EQ("Day 1", Names(*runs));
  EXPECT_EQ("Day 1", Names(*Members(u"Campaign:1", u"Vehicle.Runs")));
  bool exists = true;
  EXPECT_EQ(S_OK, runs->Exists(u"O'Neil", &exists));
  EXPECT_FALSE(exists);
}

TEST_P(Collections, TellMembersOfOneNameApart) {
  const auto runs = Members(u"Sub.Test:3", u"Runs");
  Ref<IStoreElementImpl> second;
  ASSERT_EQ(S_OK, runs->Add(u"Run 1", second.Put()));
  EXPECT_EQ("Run:4", KeyOfMember(*runs, u"Run 1"));
  EXPECT_EQ(KeyOf(*second), KeyOfMember(*runs, u"Run 1_1"));
  EXPECT_EQ("", KeyOfMember(*runs, u"Run 1_2"));
  ASSERT_EQ(S_OK, second->SetName(u"Run 7"));
  EXPECT_EQ(KeyOf(*second), KeyOfMember(*runs, u"Run 7"));
  EXPECT_EQ("", KeyOfMember(*runs, u"Run 1_1"));
  ASSERT_EQ(S_OK, second->SetName(u"Run 2"));
  ASSERT_EQ(S_OK, runs->RemoveByName(u"Run 2_1"));
  EXPECT_EQ("Run 1|Run 2", Names(*runs));
  EXPECT_EQ(0, second->GetCoreInstance()->IsValid());
}

TEST_P(Collections, DeleteByIndexFromOneOrByName) {
  for (const char16_t* name : {u"c", u"3", u"0"}) {
    Ref<IStoreElementImpl> made;
    ASSERT_EQ(S_OK, Members(u"Sub.Test:3", u"Runs")->Add(name, made.Put()));
  }
  const auto runs = Members(u"Sub.Test:3", u"Runs");
  struct Step {
    Variant key;
    Result rc;
    const char* left;
  };
  for (const Step& step : {Step{Variant::I4(9), E_INVALIDARG, "Run 1|Run 2|c|3|0"},
                           {Variant::Text(u"nothing"), E_INVALIDARG, "Run 1|Run 2|c|3|0"},
                           {Variant::Null(), E_INVALIDARG, "Run 1|Run 2|c|3|0"},
                           {Variant::Text(u"3"), S_OK, "Run 1|Run 2|3|0"},
                           {Variant::I4(0), S_OK, "Run 1|Run 2|3"},
                           {Variant::Text(u"Run 1"), S_OK, "Run 2|3"},
                           {Variant::R8(1.0), S_OK, "3"}}) {
    EXPECT_EQ(step.rc, runs->Remove(step.key)) << step.left;
    EXPECT_EQ(step.left, Names(*runs));
  }
  EXPECT_EQ("3", Names(*Members(u"Sub.Test:3", u"Runs")));
  EXPECT_EQ(S_OK, runs->RemoveAll());
  EXPECT_EQ("", Names(*Members(u"Sub.Test:3", u"Runs")));

  const auto roots = Roots();
  EXPECT_EQ(E_FAIL, roots->RemoveElement(Element(u"Sub.Test:3").Get()));
  EXPECT_EQ(E_POINTER, roots->RemoveElement(nullptr));
  Ref<IStoreElementImpl> elsewhere;  // the same record in another session's hands
  ASSERT_EQ(S_OK, ProviderOf(*m_store)->GetElementByKey(u"Campaign:1", elsewhere.Put()));
  EXPECT_EQ(S_OK, roots->RemoveElement(elsewhere.Get()));
  EXPECT_EQ("Warm start", Names(*roots));
  Instance(u"Campaign:2")->Delete();
  EXPECT_EQ(S_OK, roots->RemoveAll()) << "a record that is gone already is no failure";
  EXPECT_EQ("", Names(*roots));
}

TEST_P(Collections, LinkAndUnlinkRecords) {
  const auto best = Members(u"Campaign:2", u"Best");  // to one
  const auto bestOf = Members(u"Sub.Test:3", u"BestOf");
  EXPECT_EQ("", Names(*best));
  const auto day = Element(u"Sub.Test:3");
  Ref<IStoreElementImpl> member;
  ASSERT_EQ(S_OK, best->AddReference(day.Get(), member.Put()));
  EXPECT_EQ(day, member);
  EXPECT_EQ("Day 1", Names(*best));
  EXPECT_EQ("Warm start", Names(*bestOf));
  ASSERT_EQ(S_OK, bestOf->AddReference(Element(u"Campaign:1").Get(), member.Put()));
  Ref<IStoreElementImpl> again;
  ASSERT_EQ(S_OK, bestOf->AddReference(member.Get(), again.Put())) << "linked already";
  EXPECT_EQ("Warm start|Cold start", Names(*bestOf));
  Ref<IStoreElementImpl> made;
  ASSERT_EQ(S_OK, best->Add(u"Day 2", made.Put()));
  EXPECT_EQ("Day 2", Names(*best)) << "the earlier one had to leave";

  EXPECT_EQ(S_OK, best->RemoveReference(made.Get()));
  EXPECT_EQ(VEX_E_REMOVE_REFERENCE, best->RemoveReference(made.Get()));
  EXPECT_EQ("", Names(*best));
  EXPECT_EQ(1, made->GetCoreInstance()->IsValid());
  ASSERT_EQ(S_OK, bestOf->Reload());
  EXPECT_EQ("Cold start", Names(*bestOf));
  EXPECT_EQ(S_OK, bestOf->RemoveAllReferences());
  EXPECT_EQ("", Names(*bestOf));
  EXPECT_EQ("Cold start|Warm start", Names(*Roots()));
}

TEST_P(Collections, OfAPathAreThoseOfItsEnd) {
  const auto runs = Members(u"Campaign:1", u"Vehicle.Runs.Runs");
  EXPECT_EQ("Run 1|Run 2", Names(*runs));
  EXPECT_EQ("Run:5", KeyOfMember(*runs, u"Run 2"));
  Ref<IStoreElementImpl> made;
  ASSERT_EQ(S_OK, runs->Add(u"Run 3", made.Put()));
  EXPECT_EQ("Run 1|Run 2|Run 3", Names(*Members(u"Sub.Test:3", u"Runs")));
  EXPECT_EQ(S_OK, runs->RemoveReference(made.Get()));
  EXPECT_EQ(S_OK, runs->RemoveAllReferences());
  EXPECT_EQ("", Names(*Members(u"Sub.Test:3", u"Runs")));
  EXPECT_EQ(E_FAIL, Members(u"Campaign:1", u"Vehicle.Runs.Nothing")->Add(u"x", made.Put()));
  EXPECT_EQ(E_FAIL, Members(u"Campaign:2", u"Vehicle.Runs.Runs")->Add(u"x", made.Put()))
      << "there is no record to begin at";
}

TEST_P(Collections, OfADeletedRecordSaySo) {
  const auto runs = Members(u"Sub.Test:3", u"Runs");
  const auto other = Element(u"Run:4");
  Instance(u"Sub.Test:3")->Delete();
  std::int32_t count = -1;
  Ref<IStoreElementImpl> member;
  Ref<easyImpl::IVEXElementImpl> found;
  EXPECT_EQ(VEX_E_OBJECT_GONE, runs->GetCount(&count));
  EXPECT_EQ(VEX_E_OBJECT_GONE, runs->GetItem(0, found.Put()));
  EXPECT_EQ(VEX_E_OBJECT_GONE, runs->GetItemByName(u"Run 1", found.Put()));
  EXPECT_EQ(VEX_E_OBJECT_GONE, runs->Add(u"x", member.Put()));
  EXPECT_EQ(VEX_E_OBJECT_GONE, runs->AddReference(other.Get(), member.Put()));
  EXPECT_EQ(VEX_E_OBJECT_GONE, runs->RemoveAllReferences());
}

TEST_P(Collections, AreReleasedInAnyOrder) {
  std::array<int, 4> order{0, 1, 2, 3};
  do {
    auto store = Open();
    auto provider = ProviderOf(*store);
    Ref<IRootElementsImpl> roots;
    ASSERT_EQ(S_OK, provider->CreateRootElements(roots.Put()));
    Ref<easyImpl::IVEXElementImpl> element;
    ASSERT_EQ(S_OK, roots->GetItem(0, element.Put()));
    Ref<easyImpl::IVEXElementsImpl> children;
    ASSERT_EQ(S_OK, element->GetChildren(children.Put()));
    EXPECT_EQ("Day 1", Names(*children));
    const std::array<std::function<void()>, 4> release{
        [&] { store.Reset(), provider.Reset(); }, [&] { roots.Reset(); }, [&] { element.Reset(); },
        [&] { children.Reset(); }};
    for (const int i : order) release[static_cast<std::size_t>(i)]();
  } while (std::ranges::next_permutation(order).found);
}

}  // namespace
}  // namespace hv::vex
