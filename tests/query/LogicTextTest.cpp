// query/LogicTextTest.cpp - the stored form of logic texts, and the repair when a condition goes.
#include "query/logic/LogicText.h"

#include "Names.h"
#include "query/logic/LogicRepair.h"

#include <gtest/gtest.h>

#include <string>

namespace hv::vex {
namespace {

using test::Names;

struct SetCase {
  std::u16string_view text;
  Result code;
  std::string_view stored;
};

TEST(LogicText, StoresTheNormalForm) {
  constexpr SetCase kCases[] = {
      {u"C1 AND C2 OR C3", S_OK, "(C1 AND C2) OR C3"},
      {u"C1 OR C2 AND C3", S_OK, "C1 OR (C2 AND C3)"},
      {u"C1 OR C2", S_OK, "C1 OR C2"},
      {u"C1 and C2", S_OK, "C1 AND C2"},
      {u"c1 or c2", S_OK, "C1 OR C2"},
      {u"c1 oR c2 aNd c3", S_OK, "C1 OR (C2 AND C3)"},
      {u"(C1 OR C2) AND C3", S_OK, "(C1 OR C2) AND C3"},
      {u"(C1 AND C2) OR C3", S_OK, "(C1 AND C2) OR C3"},
      {u"C1 AND C2 OR C3 AND C1", S_OK, "(C1 AND C2) OR (C3 AND C1)"},
      {u"C1 AND C2   OR C3", S_OK, "(C1 AND C2)   OR C3"},
      {u"(C1 AND C2 OR C3) AND C1", S_OK, "((C1 AND C2) OR C3) AND C1"},
      {u"(C1 OR C2 AND C3)", S_OK, "(C1 OR (C2 AND C3))"},
      {u"C1 OR (C2 OR C3) AND C1", S_OK, "C1 OR ((C2 OR C3) AND C1)"},
      {u"C1 AND (C2 OR C3) OR C1", S_OK, "(C1 AND (C2 OR C3)) OR C1"},
      {u"C1 OR (C2 OR C3 AND (C1 OR C2 AND C3))", S_OK,
       "C1 OR (C2 OR (C3 AND (C1 OR (C2 AND C3))))"},
      {u"C1 OR C2 AND C3 ", S_OK, "C1 OR (C2 AND C3 )"},
      {u"((C1))", S_OK, "((C1))"},
      {u"C1ANDC2orC3", S_OK, "C1ANDC2orC3"},  // without blanks nothing is folded or enclosed
      {u"", S_OK, "C1 AND C2 AND C3"},
      {u"AND", S_OK, "C1 AND C2 AND C3"},
      {u" or ", S_OK, "C1 OR C2 OR C3"},
      {u"\tOR\r\n", S_OK, "C1 OR C2 OR C3"},
      {u"   ", VEX_E_BAD_LOGIC, "before"},
      {u"or", VEX_E_BAD_LOGIC, "before"},
      {u"C1 AND", VEX_E_BAD_LOGIC, "before"},
      {u"C4", VEX_E_BAD_LOGIC, "before"},
      {u"C1 OR C2)", VEX_E_BAD_LOGIC, "before"},
  };
  const Names names({u"C1", u"C2", u"C3"});
  for (const SetCase& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    LogicText logic;
    logic.Assign(u"before");
    EXPECT_EQ(c.code, logic.SetLogic(c.text, names));
    EXPECT_EQ(c.stored, cor::ToUtf8(logic.GetStored()));
    if (Failed(c.code)) continue;
    const WString once = logic.GetStored();
    logic.SetLogicNormalised(once, names);
    EXPECT_TRUE(once.EqualsExact(logic.GetStored())) << cor::ToUtf8(logic.GetStored());
  }
}

TEST(LogicText, IsEmptyWithoutConditions) {
  const Names none({});
  for (const std::u16string_view text : {u"", u"OR", u"AND"}) {
    LogicText logic;
    logic.Assign(u"before");
    EXPECT_EQ(S_OK, logic.SetLogic(text, none));
    EXPECT_TRUE(logic.GetStored().empty());
    EXPECT_TRUE(logic.GetLogic(none).empty());
  }
}

TEST(LogicText, ReadsAsTheChainWhileNothingIsStored) {
  const Names names({u"C2", u"C1"});
  LogicText logic;
  EXPECT_EQ("C2 AND C1", cor::ToUtf8(logic.GetLogic(names)));
  EXPECT_TRUE(logic.GetStored().empty());
  logic.Assign(u"C1");
  EXPECT_EQ("C1", cor::ToUtf8(logic.GetLogic(names)));
}

struct PlainCase {
  std::u16string_view text;
  bool isPlain;
};

TEST(LogicText, RefusesMoreThanThePlainAndWhereStoresCannotDoIt) {
  constexpr PlainCase kCases[] = {
      {u"", true},           {u" AND\n", true},    {u"C1 AND C2", true}, {u"C2 AND C1", false},
      {u"C1 and C2", false}, {u"C1 OR C2", false}, {u"nonsense", false}, {u"C1", false},
  };
  const Names names({u"C1", u"C2"});
  for (const PlainCase& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    EXPECT_EQ(c.isPlain, IsPlainAnd(c.text, names));
    LogicText logic;
    EXPECT_EQ(c.isPlain ? S_OK : VEX_E_LOGIC_UNSUPPORTED, logic.SetLogic(c.text, names, false));
    EXPECT_EQ(c.isPlain ? "C1 AND C2" : "", cor::ToUtf8(logic.GetStored()));
  }
}

struct RemoveCase {
  std::u16string_view text;
  std::u16string_view name;
  std::string_view left;
};

TEST(LogicRepair, TakesANameOut) {
  constexpr RemoveCase kCases[] = {
      {u"(C1 AND C2) OR C3", u"C2", "(C1) OR C3"},
      {u"(C1) OR C3", u"C1", "C3"},
      {u"C1", u"C1", ""},
      {u"", u"C1", ""},
      {u"  C2  ", u"C1", "C2"},
      {u"C1 OR C2", u"C1", "C2"},
      {u"C1 OR C2", u"C2", "C1"},
      {u"C1 or C2 and C3", u"C2", "C1 or C3"},
      {u"C10 AND C1", u"C1", "C10"},
      {u"C1 AND C10 AND C100", u"C10", "C1 AND C100"},
      {u"C1 AND (C2 OR C3)", u"C1", "(C2 OR C3)"},
      {u"C1 AND (C2 OR C3)", u"C3", "C1 AND (C2)"},
      {u"C1 AND ( C2 )", u"C2", "C1"},
      {u"C1 AND (( C2 ) )", u"C2", "C1"},
      {u"((C1)) OR C2", u"C1", "C2"},
      {u"(C2 OR (C1) )", u"C1", "(C2 )"},
      {u"((C1) AND C2)", u"C1", "(C2)"},
      {u"(C1)", u"C1", ""},
      {u"((C1))", u"C1", ""},
      {u"C1 OR C2 AND C1", u"C1", "C2"},
      {u"(C3 OR C2)ORC2", u"C2", "(C3)"},
      {u"(C1) OR C1", u"C1", ""},
      {u"C2ORC1", u"C1", "C2"},
      {u"C1 OR C2", u"c1", "C1 OR C2"},
      {u"C1 OR C2", u"", "C1 OR C2"},
  };
  for (const RemoveCase& c : kCases) {
    WString text(c.text);
    RemoveFromLogic(c.name, text);
    EXPECT_EQ(c.left, cor::ToUtf8(text))
        << cor::ToUtf8(c.text) << " without " << cor::ToUtf8(c.name);
  }
}

/// Whatever order conditions go in, what stays must be a valid logic of the others.
TEST(LogicRepair, LeavesValidTexts) {
  constexpr std::u16string_view kTexts[] = {
      u"(C1 AND C2) OR (C3 AND (C4 OR C5))",
      u"((C1 OR C2) AND (C3)) OR ((C4)) OR C5",
      u"C1 AND C2 OR C3 AND C4 OR C5",
      u"(((C1) OR C2) AND C3) AND (C4 OR (C5))",
      u"C5 OR ( ( C4 AND C3 ) AND ( C2 ) ) OR C1",
  };
  for (const std::u16string_view start : kTexts) {
    for (int first = 1; first <= 5; ++first) {
      WString text(start);
      for (int i = 0; i < 5; ++i) {
        RemoveFromLogic(ConditionName((first + 2 * i) % 5 + 1), text);
        EXPECT_TRUE(IsLogicValid(text, nullptr, false))
            << cor::ToUtf8(start) << " -> " << cor::ToUtf8(text);
      }
      EXPECT_TRUE(text.empty()) << cor::ToUtf8(start) << " -> " << cor::ToUtf8(text);
    }
  }
}

TEST(LogicRepair, FoldsOneKeywordAtATime) {
  WString text(u"a or b Or c oR d and e anD f or");
  FoldKeywords(text, FoldedKeyword::Or);
  EXPECT_EQ("a OR b OR c OR d and e anD f or", cor::ToUtf8(text));
  FoldKeywords(text, FoldedKeyword::And);
  EXPECT_EQ("a OR b OR c OR d AND e AND f or", cor::ToUtf8(text));
}

}  // namespace
}  // namespace hv::vex
