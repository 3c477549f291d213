// store/elements/ReferencesTest.cpp - the references of elements, as scripts see them.
#include "tests/store/elements/CollectionsFixture.h"

namespace hv::vex {
namespace {

using test::Eval;

class References : public test::CampaignTest {
 protected:
  std::string Ask(std::u16string_view key, std::string_view expression) {
    return Eval(Wrap(Element(key)).Get(), expression).Shown();
  }
};
INSTANTIATE_TEST_SUITE_P(Stores, References, ::testing::Values("ATFX", "SQL"), test::NameOfKind);

TEST_P(References, AreFoundByNameBaseNameAndPath) {
  struct Line {
    const char16_t* key;
    const char* expression;
    const char* shown;
  };
  for (const Line& line : std::initializer_list<Line>{
           {u"Campaign:1", "References.Count", "2"},
           {u"Campaign:1", "References(0).Name", "Vehicle.Runs"},
           {u"Campaign:1", "References(0).BaseName", "children"},
           {u"Campaign:1", "References(1).BaseName", ""},
           {u"Campaign:1", "References('children').Name", "Vehicle.Runs"},
           {u"Campaign:1", "References('children').Elements(0).Name", "Day 1"},
           {u"Campaign:1", "References('children').Elements.Count", "1"},
           {u"Campaign:1", "References('Best').Elements.Count", "0"},
           {u"Campaign:1", "References('Vehicle.Runs.Runs').Name", "Vehicle.Runs.Runs"},
           {u"Campaign:1", "References('Vehicle.Runs.Runs').BaseName", "children"},
           {u"Campaign:1", "References('Vehicle.Runs.Runs').Elements.Count", "2"},
           {u"Campaign:1", "References('children.children').Elements('Run 2').InstanceKey",
            "Run:5"},
           {u"Run:4", "References('test.parent_test').Elements(0).Name", "Cold start"},
           {u"Campaign:1", "References('Title')",
            "215 The index Title does not correspond to a member of the collection."},
           {u"Campaign:1", "References('Vehicle.Nothing')",
            "215 The index Vehicle.Nothing does not correspond to a member of the collection."},
           {u"Campaign:1", "References('')",
            "215 The index  does not correspond to a member of the collection."},
           {u"Campaign:1", "References(2)",
            "215 The index 2 does not correspond to a member of the collection."},
           {u"Campaign:1", "References(null)",
            "214 The argument passed to Item must be either a string or an integer."}}) {
    EXPECT_EQ(line.shown, Ask(line.key, line.expression)) << line.expression;
  }
  EXPECT_EQ("Vehicle.Runs Best",
            test::NamesOf(Eval(Wrap(Element(u"Campaign:1")).Get(), "References").Object()));
  WString column;
  MakeRecord(u"Column", u"c")->GetKey(column);
  EXPECT_EQ("Matrix Channel",
            test::NamesOf(Eval(Wrap(Element(column)).Get(), "References").Object()));
}

TEST_P(References, CanNotBeChanged) {
  Ref<IReferencesImpl> references;
  ASSERT_EQ(S_OK, MakeReferences(*m_provider, *Instance(u"Campaign:1"), references.Put()));
  WString unique;
  EXPECT_EQ(E_NOTIMPL, references->RemoveAt(0));
  EXPECT_EQ(E_NOTIMPL, references->RemoveByName(u"Best"));
  EXPECT_EQ(E_NOTIMPL, references->Clear());
  EXPECT_EQ(E_NOTIMPL, references->Swap(0, 1));
  EXPECT_EQ(E_NOTIMPL, references->Rename(u"Best", u"Worst", &unique));
  bool exists = false;
  EXPECT_EQ(S_OK, references->Exists(u"Best", &exists));
  EXPECT_TRUE(exists);
  EXPECT_EQ(S_OK, references->Exists(u"Worst", &exists));
  EXPECT_FALSE(exists);
  const auto gone = Element(u"Campaign:2");
  gone->GetCoreInstance()->Delete();
  const std::string shown = Eval(Wrap(gone).Get(), "References").Shown();
  EXPECT_EQ("323 The object is no longer valid.", shown);
}

}  // namespace
}  // namespace hv::vex
