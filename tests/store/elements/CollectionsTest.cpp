// store/elements/CollectionsTest.cpp - the elements at the top of a store and behind references.
#include <algorithm>

#include "elements/LogicOf.h"
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using test::kGone;
using test::kNoName;
using test::kProtected;
using test::NoMember;

class Collections : public test::CampaignTest {
 protected:
  Collections() { Expect({{"Set top = RootElements", "[Cold start|Warm start]"}}); }
  /// The collection behind one that a script has.
  Ref<IStoreElementsImpl> Logic(std::string_view line) {
    const auto face = m_script.Object(line).As<easyImpl::ILogicOf<easyImpl::IVEXElementsImpl>>();
    return QueryRef<IStoreElementsImpl>(&face->GetLogic());
  }
};
HV_BOTH_KINDS(Collections);

const std::string kRuns = "GetElementByKey('Sub.Test:3').References('Runs').Elements";

TEST_P(Collections, MakeNamesAtTheTopUniqueAndFollowRenames) {
  Expect({{"Set a = top.Add('A')", "A"},
          {"Set b = top.Add('A')", "A_1"},
          {"Set c = top.Add('A')", "A_2"},
          {"c.Properties('Title').Value", "A_2"},
          {"top", "[Cold start|Warm start|A|A_1|A_2]"},
          {"top('a')", NoMember("a")},
          // Taken here: listed under the next number.
          {"b.Name = 'A'", "empty"},
          {"top('A_1')", NoMember("A_1")},
          {"top('A_3').Name = 'B'", "empty"},
          {"b", "B"},
          {"top('B').Name = 'B'", "empty"},
          {"top('A_3')", NoMember("A_3")}});
  // Somebody else's changes are there after a refresh, and elements that stay are the same objects.
  MakeRecord(u"Campaign", u"B");
  const auto held = Element("b");
  Element("c")->GetCoreInstance()->Delete();
  Expect({{"Refresh", "empty"}, {"top", "[Cold start|Warm start|A|B|B]"}, {"top('B_1')", "B"}});
  EXPECT_EQ(held, Element("top(3)"));
}

TEST_P(Collections, FindNamesWithMarksOfPaths) {
  const std::string all = "GetElementByKey('Campaign:1').References('Vehicle.Runs').Elements";
  const std::vector<std::string> odd{"O''Neil",      "''''",  "a.b",   "x (1)", "(name=''Day 1'')",
                                     "/#Campaign(1", "\"q\"", "%*?_1", "ünï 試"};
  m_script.Run("Set days = " + all);
  for (const std::string& name : odd) Show("days.Add('" + name + "')");
  // Without a list yet, from the list, and in another collection of the same reference.
  for (const std::string collection : {"days", "days", all.c_str()}) {
    for (const std::string& name : odd) {
      const std::string id = Show(collection + "('" + name + "').Properties('Id').Value");
      EXPECT_EQ(&name - odd.data() + 4, std::stoi(id)) << name;
    }
    EXPECT_EQ("[Day 1|O'Neil|''|a.b|x (1)|(name='Day 1')|/#Campaign(1|\"q\"|%*?_1|ünï 試]",
              Show(collection));
  }
  for (const std::string& name : odd) EXPECT_EQ("empty", Show("days.Remove('" + name + "')"));
  Expect({{"days", "[Day 1]"}, {all, "[Day 1]"}, {"days('O''Neil')", NoMember("O'Neil")}});
}

TEST_P(Collections, TellMembersOfOneNameApartAndDeleteThem) {
  m_script.Run("Set runs = " + kRuns);
  Expect({{"Set second = runs.Add('Run 1')", "Run 1"},
          {"runs('Run 1').InstanceKey", "Run:4"},
          {"runs('Run 1_1').InstanceKey", "Run:6"},
          {"runs('Run 1_2')", NoMember("Run 1_2")},
          {"second.Name = 'Run 7'", "empty"},
          {"runs('Run 7').InstanceKey", "Run:6"},
          {"runs('Run 1_1')", NoMember("Run 1_1")},
          {"second.Name = 'Run 2'", "empty"},
          {"runs.Remove('Run 2_1')", "empty"},
          {"runs", "[Run 1|Run 2]"},
          {"second.Name", kGone},
          // By an index from 1, or by a name.
          {"runs.Add('c')", "c"},
          {"runs.Add('3')", "3"},
          {"runs.Add('0')", "0"},
          {kRuns, "[Run 1|Run 2|c|3|0]"}});
  m_script.Run("Set runs = " + kRuns);
  Expect({{"runs.Remove(9)", NoMember("9")},
          {"runs.Remove('nothing')", NoMember("nothing")},
          {"runs.Remove(null)", NoMember("")},
          {"runs.Remove('3')", "empty"},
          {"runs", "[Run 1|Run 2|3|0]"},
          {"runs.Remove(0)", "empty"},
          {"runs", "[Run 1|Run 2|3]"},
          {"runs.Remove('Run 1')", "empty"},
          {"runs.Remove(1.0)", "empty"},
          {kRuns, "[3]"},
          {"runs.RemoveAll", "empty"},
          {kRuns, "[]"}});
}

TEST_P(Collections, DeleteTheElementsOfOtherHands) {
  const auto top = Logic("top");
  EXPECT_EQ(E_FAIL, top->RemoveElement(Element("GetElementByKey('Sub.Test:3')").Get()));
  EXPECT_EQ(E_POINTER, top->RemoveElement(nullptr));
  Ref<easyImpl::ISimplifiedStoreImpl> other;  // the same record from another provider
  ASSERT_EQ(S_OK, MakeSimplifiedStore(Core().Get(), nullptr, other.Put()));
  Ref<IStoreElementImpl> elsewhere;
  ASSERT_EQ(S_OK, other->GetElementByKey(u"Campaign:1", elsewhere.Put()));
  EXPECT_EQ(S_OK, top->RemoveElement(elsewhere.Get()));
  EXPECT_EQ("[Warm start]", Show("top"));
  Instance(u"Campaign:2")->Delete();
  EXPECT_EQ("empty", Show("top.RemoveAll")) << "a record that is gone already is no failure";
  EXPECT_EQ("[]", Show("top"));
}

TEST_P(Collections, LinkAndUnlinkRecords) {
  const std::string path = "GetElementByKey('Campaign:1').References('Vehicle.Runs.Runs').Elements";
  Expect(
      {{"Set best = GetElementByKey('Campaign:2').References('Best').Elements", "[]"},  // to one
       {"Set day = GetElementByKey('Sub.Test:3')", "Day 1"},
       {"Set bestOf = day.References('BestOf').Elements", "[]"},
       {"best.AddReference(day)", "Day 1"},
       {"best", "[Day 1]"},
       {"day.References('BestOf').Elements", "[Warm start]"},
       {"Set bestOf = day.References('BestOf').Elements", "[Warm start]"},
       {"bestOf.AddReference(GetElementByKey('Campaign:1'))", "Cold start"},
       {"bestOf.AddReference(GetElementByKey('Campaign:1'))", "Cold start"},  // linked already
       {"bestOf", "[Warm start|Cold start]"},
       {"Set made = best.Add('Day 2')", "Day 2"},
       {"best", "[Day 2]"},  // the earlier one had to leave
       {"best.RemoveReference(made)", "empty"},
       {"best.RemoveReference(made)", "350 Cannot remove the reference for the specified element."},
       {"best", "[]"},
       {"made", "Day 2"},
       {"day.References('BestOf').Elements", "[Cold start]"},
       {"bestOf.RemoveAllReferences", "empty"},
       {"day.References('BestOf').Elements", "[]"},
       {"top", "[Cold start|Warm start]"},
       // The members of a path are those of its end.
       {"Set runs = " + path, "[Run 1|Run 2]"},
       {"runs('Run 2').InstanceKey", "Run:5"},
       {"Set made = runs.Add('Run 3')", "Run 3"},
       {kRuns, "[Run 1|Run 2|Run 3]"},
       {"runs.RemoveReference(made)", "empty"},
       {"runs.RemoveAllReferences", "empty"},
       {kRuns, "[]"},
       // There is no record to begin at.
       {"GetElementByKey('Campaign:2').References('Vehicle.Runs.Runs').Elements.Add('x')",
        test::kUnknown}});
  Ref<IStoreElementsImpl> nowhere;
  Ref<IStoreElementImpl> none;
  ASSERT_EQ(S_OK, MakeReferencedElements(*Provider(), *Instance(u"Campaign:1"),
                                         u"Vehicle.Runs.Nothing", nowhere.Put()));
  EXPECT_EQ(E_FAIL, nowhere->Add(u"x", none.Put()));
}

TEST_P(Collections, AreReleasedInAnyOrder) {
  std::string order = "scpk";  // the session, its collection, and a parent and a child from it
  do {
    test::Script script(Open().Get());
    script.Expect({{"Set c = RootElements", "[Cold start|Warm start]"},
                   {"Set p = c('Cold start')", "Cold start"},
                   {"Set k = p.Children", "[Day 1]"}});
    for (const char variable : order) {
      script.Set(variable == 's' ? "" : std::string(1, variable), {});
      const bool isHeld = order.find('p') > order.find(variable);
      // The collection that listed the parent may be gone, and needn't be told.
      EXPECT_EQ(isHeld ? "empty" : "refused", script.Show("p.Name = 'Alone'")) << order;
    }
  } while (std::ranges::next_permutation(order).found);
}

// Not among them: 254 of `Item`, since no collection refuses it, and 241 and 207, which no store at
// hand brings about.
TEST_P(Collections, RaiseTheirMessages) {
  const std::string automatic =
      "356 Root elements will automatically be added to or removed from the RootElements "
      "collection.";
  const std::string noElement =
      "339 The argument of the method AddReference must be an Element<DataStore>.";
  const std::string wrongType =
      "348 The type of the specified element does not match the reference type.";
  const auto readOnly = Open("browse/campaign", "<readonly>yes</readonly>");
  m_script.Set("readOnly", Variant::Object(readOnly.Get()));
  m_script.Run("Set gone = " + kRuns);
  Expect({{"Set runs = " + kRuns, "[Run 1|Run 2]"},
          {"Set run = runs(0)", "Run 1"},
          {"Set campaign = top(0)", "Cold start"},
          {"Set best = campaign.References('Best').Elements", "[]"},
          {"Set list = GetElementList('Run','none')", "[]"},
          {"Set lockedRuns = readOnly." + kRuns, "[Run 1|Run 2]"},
          {"Set lockedRun = lockedRuns(0)", "Run 1"},
          {"Set deleted = CreateElement('Run','x')", "x"},
          {"DeleteElement(deleted)", "empty"},
          {"top.Item(null)", test::kNoKey},
          {"top.Item('x')", NoMember("x")},
          {"top.Item(2)", NoMember("2")},
          {"runs.Item(-1)", NoMember("-1")},
          {"runs.Item('a''b')", NoMember("a'b")},
          {"readOnly.RootElements.Remove(1)", kProtected},
          {"top.Remove(0)", NoMember("0")},
          {"top.Remove(3)", NoMember("3")},
          {"runs.Remove('x')", NoMember("x")},
          {"lockedRuns.RemoveAll", kProtected},
          {"top.RemoveAllReferences", automatic},
          {"lockedRuns.RemoveAllReferences", kProtected},
          {"top.Add('')", kNoName},
          {"runs.Add('')", kNoName},
          {"readOnly.RootElements.Add('x')", kProtected},
          {"lockedRuns.Add('x')", kProtected},
          {"runs.AddReference(none)", noElement},
          {"runs.AddReference(top)", noElement},
          {"lockedRuns.AddReference(lockedRun)",
           "349 Cannot add the reference for the specified element."},
          {"runs.AddReference(campaign)", wrongType},
          {"top.AddReference(campaign)", automatic},
          {"top.AddReference(none)", automatic},
          {"runs.AddReference(lockedRun)", test::kForeign},
          {"runs.AddReference(deleted)", test::kUnknown},
          {"runs.RemoveReference(none)", noElement},
          {"runs.RemoveReference(list)", noElement},
          {"runs.RemoveReference(campaign)", wrongType},
          {"best.RemoveReference(GetElementByKey('Sub.Test:3'))",
           "350 Cannot remove the reference for the specified element."},
          {"top.RemoveReference(campaign)", automatic},
          {"lockedRuns.RemoveReference(lockedRun)", kProtected},
          {"runs.RemoveReference(lockedRun)", test::kForeign},
          {"list.Item('x')", test::kNoKey},
          {"list.Item(0)", NoMember("0")},
          {"list.MaxCount = 0", "362 The value for the property MaxCount must be greater than 0."},
          {"list.Sort(1)", "222 The argument String of the method Sort must be a Path."},
          {"list.TransportDataCollection", "245 TransportDataCollection not implemented."},
          {"DeleteElement(GetElementByKey('Sub.Test:3'))", "empty"},
          {"gone.Item(0)", kGone},
          {"gone.Item('Run 1')", kGone},
          {"gone.Count", kGone},
          {"gone._NewEnum", kGone},
          {"gone.Add('x')", kGone},
          {"gone.AddReference(run)", kGone},
          {"gone.RemoveAllReferences", kGone}});
  OpenAgain("browse/notest");  // a store without a top
  Ref<easyImpl::ISimplifiedStoreImpl> provider;
  ASSERT_EQ(S_OK, MakeSimplifiedStore(Core().Get(), nullptr, provider.Put()));
  Ref<IRootElementsImpl> roots;
  ASSERT_EQ(S_OK, MakeRootElements(*provider, roots.Put()));
  EXPECT_EQ(E_NOTIMPL, roots->Fill());
  Ref<IStoreElements> face;
  ASSERT_EQ(S_OK, WrapStoreElements(roots.Get(), face.Put()));
  EXPECT_EQ(
      "254 Properties and methods which change the contents of an object can only be called on "
      "data which is loaded.",
      test::Script(face.Get()).Show("Add('x')"));
}

}  // namespace
}  // namespace hv::vex
