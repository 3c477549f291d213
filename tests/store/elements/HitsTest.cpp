// store/elements/HitsTest.cpp - lists of elements without names, and the hits of a search.
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using test::NoMember;

class Hits : public test::CampaignTest {
 protected:
  Hits() {
    for (const char16_t* name : {u"b", u"A", u"c"}) MakeRecord(u"Run", name);
    const auto all = Ref<IInstList>::Adopt(Core()->GetInstances(u"/#Run"));
    all->Append(MakeRecord(u"Campaign", u"z").Get());
    EXPECT_EQ(S_OK, MakeResultCollection(*Provider(), 200, m_hits.Put()));
    EXPECT_EQ(S_OK, m_hits->SetList(all.Get()));
    EXPECT_EQ(S_OK, m_hits->SetTotal(6));
    Ref<IStoreElementList> face;
    EXPECT_EQ(S_OK, WrapStoreElementList(m_hits.Get(), face.Put()));
    m_script.Set("hits", Variant::Object(face.Get()));
  }
  /// Lets go of what refers to the store, before the fixture looks at what is left.
  void TearDown() override { m_hits.Reset(); }

  Ref<IDataStoreResultCollectionImpl> m_hits;
};
HV_BOTH_KINDS(Hits);

TEST_P(Hits, MakeElementsWhenTheyAreAskedFor) {
  const std::int64_t before = cor::LiveObjectCount();
  Expect({{"hits.Count", "6"}, {"hits(1).Name", "Run 2"}});
  EXPECT_EQ(before, cor::LiveObjectCount()) << "nobody holds the element any more";
  const auto held = Element("hits(1)");
  EXPECT_EQ(Element("GetElementByKey('Run:5')"), held) << "one object as long as it is held";
  EXPECT_EQ("[Run 1|Run 2|b|A|c|z]", Show("hits"));
  Instance(u"Run:5")->Delete();
  Expect({{"hits(1).Name", test::kGone}, {"hits.Remove(1)", "empty"}, {"hits", "[Run 1|b|A|c|z]"}});
}

TEST_P(Hits, AreSortedAndTakenOut) {
  Expect({{"hits.Sort", "empty"},
          {"hits", "[z|A|b|c|Run 1|Run 2]"},  // the type first: Campaign before Run
          {"hits.Sort('Version',false)", "empty"},
          {"hits", "[c|b|A|z|Run 2|Run 1]"}});  // without one: first
  ASSERT_EQ(S_OK, m_hits->Swap(0, 5));
  Expect({{"hits.Remove(1)", "empty"}, {"hits", "[Run 1|A|z|Run 2|c]"}});
  std::int32_t index = 0;
  const auto day = Element("GetElementByKey('Sub.Test:3')");
  EXPECT_EQ(S_OK, m_hits->IndexOf(Element("GetElementByKey('Run:5')").Get(), &index));
  EXPECT_EQ(3, index);
  EXPECT_EQ(E_INVALIDARG, m_hits->IndexOf(day.Get(), &index));
  EXPECT_EQ(E_INVALIDARG, m_hits->IndexOf(nullptr, &index));
  ASSERT_EQ(S_OK, m_hits->Append(day.Get()));
  EXPECT_EQ("[Run 1|A|z|Run 2|c|Day 1]", Show("hits"));
  for (const std::int32_t outside : {-1, 6}) {
    EXPECT_EQ(E_INVALIDARG, m_hits->RemoveAt(outside));
    EXPECT_EQ(E_INVALIDARG, m_hits->Swap(0, outside));
    EXPECT_EQ(NoMember(std::to_string(outside)), Show("hits(" + std::to_string(outside) + ")"));
  }
}

/// The values of a list with "|" between them.
std::string Listed(const test::Answer& answer) {
  if (!answer.value.Is(VT_ARRAY | VT_VARIANT)) return answer.Shown();
  std::string all;
  for (const Variant& value : answer.value.AsArray()) {
    all += (all.empty() ? "" : "|") + Listed({S_OK, value, {}});
  }
  return "(" + all + ")";
}

TEST_P(Hits, GiveColumnsOfAllAtOnce) {
  const std::string names = "(Run 1|Run 2|b|A|c|z)";
  const auto invalid = [](const std::string& name) {
    return "2105 The property \"" + name + "\" is invalid. Please edit or remove this property.";
  };
  m_script.Set("both", Variant::Array({Variant::Text(u"name"), Variant::Text(u"id")}));
  m_script.Set("misspelt", Variant::Array({Variant::Text(u"Name"), Variant::Text(u"Nmae")}));
  const std::vector<test::Line> rows{
      {"hits.ReadColumns('name')", names},  // of entities whose own name for it is another one
      {"hits.ReadColumns(both)", "(" + names + "|(4|5|6|7|8|3))"},
      {"hits.ReadColumns(array)", "()"},
      {"hits.ReadColumns(misspelt)", invalid("Nmae")},
      {"hits.ReadColumns('Test')", invalid("Test")},
      {"hits.ReadColumns('Channels')", invalid("Channels")},
      {"hits.ReadColumns('Picture')", invalid("Picture")},
      {"hits.ReadColumns('')", invalid("")},
      {"hits.ReadColumns(0)", "refused"},
      {"hits.Sort(missing,false)", "empty"},
      {"hits.ReadColumns('name')", "(Run 2|Run 1|c|b|A|z)"},
      // The members of a reference and a plain list, with a property of what they refer to.
      {"GetElementByKey('Campaign:1').Children.ReadColumns('Name')", "(Day 1)"},
      {"GetElementList('Run','Name = *').ReadColumns('Test.Name')", "(Day 1|Day 1|null|null|null)"},
  };
  for (const auto& [line, shown] : rows) EXPECT_EQ(shown, Listed(m_script.Run(line))) << line;
  // Every value is what the property itself gives.
  for (const std::string name :
       {"Title", "Start.Date", "Score", "Count", "Big", "Byte", "Active", "Note"}) {
    std::string values;
    for (const std::string index : {"0", "1", "2"}) {
      const auto item = "RootElements(" + index + ").Properties('" + name + "').Value";
      values += (index == "0" ? "(" : "|") + Show(item);
    }
    EXPECT_EQ(values + ")", Listed(m_script.Run("RootElements.ReadColumns('" + name + "')")));
  }
}

TEST_P(Hits, TellWhetherThereAreMore) {
  m_script.Set("run", Variant::Unknown(Instance(u"Run:4").Get()));
  EXPECT_EQ("0", Show("hits.IsIncomplete"));
  ASSERT_EQ(S_OK, m_hits->SetTotal(-1));
  Expect({{"hits.IsIncomplete", "1"}, {"hits.MaxCount", "200"}, {"hits.MaxCount = 6", "empty"}});
  ASSERT_EQ(S_OK, m_hits->ClearResults());
  Expect({{"hits.Count", "0"},
          {"hits.IsIncomplete", "0"},
          {"hits.MaxCount", "6"},  // that is for the next search
          {"hits.Add(run)", "Run 1"},
          {"hits", "[Run 1]"}});
}

TEST_P(Hits, ListsKeepElementsInOrder) {
  Ref<IStoreElementListImpl> logic;
  ASSERT_EQ(S_OK, MakeStoreElementList(*Provider(), logic.Put()));
  ASSERT_EQ(S_OK, logic->Reserve(3));
  for (const char* key : {"Run:5", "Campaign:1", "Run:4"}) {
    const std::string line = "GetElementByKey('" + std::string(key) + "')";
    ASSERT_EQ(S_OK, logic->Append(Element(line).Get()));
  }
  Ref<IStoreElementList> list;
  ASSERT_EQ(S_OK, WrapStoreElementList(logic.Get(), list.Put()));
  m_script.Set("list", Variant::Object(list.Get()));
  Expect({{"list", "[Run 2|Cold start|Run 1]"},
          {"list.Sort", "empty"},
          {"list", "[Cold start|Run 1|Run 2]"},
          {"list.Sort('Version',false)", "empty"},
          {"list", "[Cold start|Run 2|Run 1]"},
          {"list.Remove(0)", "empty"},
          {"list", "[Run 2|Run 1]"},
          {"RootElements", "[Cold start|Warm start|z]"}});  // taken out, not deleted
  const auto other = Open();
  const auto foreign = Ref<IInstance>::Adopt(CoreOf(*other)->GetInstance(u"Run:4"));
  Ref<easyImpl::IVEXElementImpl> element;
  EXPECT_EQ(VEX_E_FOREIGN_ELEMENT, logic->Add(foreign.Get(), element.Put()));
  EXPECT_EQ(VEX_E_BAD_TYPE_ARGUMENT, logic->Add(Core().Get(), element.Put()));
  EXPECT_EQ(E_POINTER, logic->Add(static_cast<IUnknown*>(nullptr), element.Put()));
  Expect({{"list.RemoveAll", "empty"}, {"list.Count", "0"}});
  Ref<IVEXElement> typed;
  EXPECT_EQ(E_INVALIDARG, list->Item(Variant::I4(0), typed.Put()));
}

}  // namespace
}  // namespace hv::vex
