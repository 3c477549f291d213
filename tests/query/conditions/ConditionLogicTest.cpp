// query/conditions/ConditionLogicTest.cpp - names and logic through adding, removing and renaming.
#include "ConditionsFixture.h"

#include <sstream>

namespace hv::vex::test {
namespace {

TEST_F(ConditionsTest, KeepNamesAndLogicInStep) {
  struct Steps {
    const char* steps;   ///< joined by ';', see below
    const char* names;   ///< afterwards
    const char* stored;  ///< logic
  };
  constexpr Steps kCases[] = {
      // Names are made behind the greatest one, by the number's text.
      {"add;add;add", "C1 C2 C3", ""},
      {"add;add;add;remove C2;add", "C1 C3 C4", "C1 AND C3 AND C4"},
      {"add;add;remove C2;add", "C1 C2", "C1 AND C2"},
      {"add C9;add", "C9 C10", ""},
      {"add C99;add C1000;add C0999;remove C1000;remove C0999;add", "C99 C100", "C99 AND C100"},
      {"add C99999999999999999999;add", "C99999999999999999999 C100000000000000000000", ""},
      {"add C10;add C9;add", "C10 C9 C11", ""},
      {"add condition;add", "condition C1", ""},
      {"add;add;key C2 C7;add", "C1 C7 C8", ""},
      {"add;clear;add", "C1", ""},
      // A name that is taken: the second isn't in the collection.
      {"add;logic C1;add C1", "C1", "C1"},
      // The logic is extended.
      {"add;add;add;logic C1 OR C2;add", "C1 C2 C3 C4", "C1 OR C2 OR C4"},
      {"add;add;add;logic (C1 OR C2) AND C3;add", "C1 C2 C3 C4", "(C1 OR C2) AND C3 AND C4"},
      {"add;logic C1;add", "C1 C2", "C1 AND C2"},
      {"add;put C1 ;add", "C1 C2", "C1 AND C2"},
      {"add;add;put C1 OR C2 ;add", "C1 C2 C3", "C1 OR C2 OR C3"},
      {"add;put C1 OR ;add", "C1 C2", "C1 OR C2"},
      {"add;put C1 OR;add", "C1 C2", "C1 OR C2"},
      {"add;put C1 AND;add", "C1 C2", "C1 AND C2"},
      {"add;add;add;logic C1 AND C2 OR C3;add", "C1 C2 C3 C4", "(C1 AND C2) OR (C3 AND C4)"},
      {"add;add;logic C1 OR C2;add condition", "C1 C2 condition", "C1 OR C2"},
      {"add;put C1 AND (C1 OR C1 AND C1", "C1", "C1 AND (C1 OR (C1 AND C1)"},
      // The logic is repaired.
      {"add;add;add;logic (C1 AND C2) OR C3;remove C2", "C1 C3", "(C1) OR C3"},
      {"add;add;add;logic (C1 AND C2) OR C3;at 1;at 0", "C3", "C3"},
      {"add;add;logic C1;remove C1", "C2", "C2"},
      {"add;add C10;logic C1 OR C10;remove C1", "C10", "C10"},
      {"add;add;logic C1 OR C2;clear", "", ""},
      // What hosts write.
      {"add;add;logic C1 OR C2;logic ", "C1 C2", "C1 AND C2"},
      {"add;add;logic C1 OR C2;refused C1 OR C3;refused   ", "C1 C2", "C1 OR C2"},
      // Numbers may swap, and names may stand at each other's side.
      {"renumber", "", ""},
      {"add C4;add C2;renumber", "C1 C2", ""},
      {"add C2;add C1;logic C2 AND C1;renumber", "C1 C2", "C1 AND C2"},
      {"add C1;add C10;add C3;logic (C10 OR C1) AND C3;renumber;add", "C1 C2 C3 C4",
       "(C2 OR C1) AND C3 AND C4"},
      {"add C2;add C1;logic C2OR C1;renumber", "C1 C2", "C1OR C2"},
      {"add XC1;add C1;add X;renumber", "C1 C2 C3", ""},
  };
  // add [NAME]; logic TEXT and its refusal; put TEXT, as it stands; remove NAME; at INDEX; clear;
  // renumber; key OLD NEW.
  const auto run = [this](const std::string& step) {
    const std::size_t blank = std::min(step.find(' '), step.size());
    const std::string verb = step.substr(0, blank);
    const WString rest = cor::FromUtf8(step.substr(std::min(blank + 1, step.size())));
    if (verb == "add") return AddNamed(rest, u"Name", u"=", T(u"x")) ? S_OK : E_FAIL;
    if (verb == "logic") return m_conditions->SetLogic(rest);
    if (verb == "refused") return m_conditions->SetLogic(rest) == VEX_E_BAD_LOGIC ? S_OK : E_FAIL;
    if (verb == "put") return m_conditions->SetLogicNormalised(rest);
    if (verb == "remove") return m_conditions->RemoveByName(rest);
    if (verb == "at") return m_conditions->RemoveAt(rest[0] - u'0');
    if (verb == "clear") return m_conditions->RemoveAll();
    if (verb == "renumber") return m_conditions->Renumber();
    if (verb == "key") return m_conditions->RenameKey(rest.Substr(0, 2), rest.Substr(3));
    return E_NOTIMPL;
  };
  for (const Steps& c : kCases) {
    SCOPED_TRACE(c.steps);
    m_conditions = MakeRef<CDataStoreConditionCollImpl>(&m_query, m_model.Get());
    std::stringstream steps(c.steps);
    for (std::string step; std::getline(steps, step, ';');) EXPECT_EQ(S_OK, run(step)) << step;
    EXPECT_EQ(c.names, Names());
    EXPECT_EQ(c.stored, cor::ToUtf8(m_conditions->GetStoredLogic()));
  }
}

TEST_F(ConditionsTest, ShowAnEmptyLogicAsAChain) {
  EXPECT_TRUE(m_conditions->GetLogic().empty());
  AddNamed(u"", u"Name", u"=", T(u"x"));
  AddNamed(u"", u"Name", u"=", T(u"y"));
  ExpectShown(m_face.Get(), {{"Logic", "C1 AND C2"}});
  std::int32_t index = 0;
  EXPECT_EQ(E_FAIL, m_conditions->GetIndexOfName(u"C3", &index));
  EXPECT_EQ(E_INVALIDARG, m_conditions->RenameKey(u"C1", u"C2"));
  EXPECT_EQ(E_INVALIDARG, m_conditions->RenameKey(u"C3", u"C4"));
}

}  // namespace
}  // namespace hv::vex::test
