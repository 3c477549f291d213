// query/LogicTest.cpp - logic texts: the grammar, the stored form, and the repair when a condition
// goes.
#include "query/logic/LogicParser.h"
#include "query/logic/LogicRepair.h"
#include "query/logic/LogicText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace hv::vex {
namespace {

using enum LogicKind;
using enum LogicState;
using Utf16 = std::u16string_view;

/// A collection of conditions that has nothing but names.
class Names final : public IConditionNames {
 public:
  explicit Names(std::vector<Utf16> names) : m_names(std::move(names)) {}
  [[nodiscard]] bool HasName(Utf16 name) const override {
    return std::find(m_names.begin(), m_names.end(), name) != m_names.end();
  }
  [[nodiscard]] std::size_t GetNameCount() const override { return m_names.size(); }
  [[nodiscard]] WString GetName(std::size_t index) const override { return m_names[index]; }

 private:
  std::vector<Utf16> m_names;
};

/// One sign per kind, its value behind those that have one: "(6" is an open token marked OR.
std::string Show(const std::vector<LogicToken>& tokens) {
  std::string text;
  for (const LogicToken& token : tokens) {
    text += std::string_view("!(T|&ioa)")[static_cast<std::size_t>(token.kind)];
    if (token.kind <= TopCondition || token.kind == InnerCondition) {
      text += std::to_string(token.value);
    }
  }
  return text;
}

TEST(LogicParser, TellsTokensAndVerdict) {
  enum Verdict { Refused, Unfinished, Valid };
  constexpr struct {
    Utf16 text;
    Verdict verdict;
    std::string_view tokens;
    LogicKind resultKind;
    LogicState state;
  } kCases[] = {
      {u"C1", Valid, "T1", TopAnd, InTopName},
      {u"  c1  ", Valid, "T1", TopAnd, AfterTopName},
      {u"C10", Valid, "T10", TopAnd, InTopName},
      {u"C01", Valid, "T1", TopAnd, InTopName},
      {u"C1 OR C2", Valid, "T1|T2", TopOr, InTopName},
      {u"C1OR C2", Valid, "T1|T2", TopOr, InTopName},
      {u"C1ANDC2orC3", Valid, "T1&T2|T3", TopOr, InTopName},
      {u"C1 OR C2 AND C3", Valid, "T1|T2&T3", TopAnd, InTopName},
      {u"(C1)", Valid, "(0i1)", TopAnd, AfterClose},
      {u"( ( C1 ) ) ", Valid, "(0(0i1))", TopAnd, AfterClose},
      {u"(C1 AND C2) OR C3", Valid, "(7i1ai2)|T3", TopOr, InTopName},
      {u"C3 OR (C1 or C2)and(C1)", Valid, "T3|(6i1oi2)&(0i1)", TopAnd, AfterClose},
      {u"(C1 AND C2 OR C3)", Valid, "(6i1ai2oi3)", TopAnd, AfterClose},
      {u"((C1 OR C2) AND C3)", Valid, "(7(6i1oi2)ai3)", TopAnd, AfterClose},
      {u"((C1)OR(C2))", Valid, "(6(0i1)o(0i2))", TopAnd, AfterClose},

      {u"   ", Unfinished, "", TopAnd, Start},
      {u"C", Unfinished, "", TopAnd, TopNameFirstDigit},
      {u"C9", Unfinished, "T9", TopAnd, InTopName},  // known only when the name ends
      {u"C9 ", Unfinished, "T9", TopAnd, AfterTopName},
      {u"C1 AND", Unfinished, "T1&", TopAnd, AfterTopAnd},
      {u"C1 OR ", Unfinished, "T1|", TopOr, AfterTopOr},
      {u"(", Unfinished, "(0", TopAnd, AfterOpen},
      {u"(C", Unfinished, "(0", TopAnd, InnerNameFirstDigit},
      {u"(C1", Unfinished, "(0i1", TopAnd, InInnerName},
      {u"(C1 ", Unfinished, "(0i1", TopAnd, AfterInnerName},
      {u"(C1 OR", Unfinished, "(6i1o", TopAnd, AfterInnerOr},
      {u"(C1 AND ", Unfinished, "(7i1a", TopAnd, AfterInnerAnd},
      {u"((C1)", Unfinished, "(0(0i1)", TopAnd, AfterClose},

      {u"x", Refused, "!0", TopAnd, Start},
      {u")", Refused, "!0", TopAnd, Start},
      {u"OR", Refused, "!0", TopAnd, Start},
      {u"1", Refused, "!0", TopAnd, Start},
      {u"C C1", Refused, "!1", TopAnd, TopNameFirstDigit},
      {u"C\u0661", Refused, "!1", TopAnd, TopNameFirstDigit},  // an Arabic digit
      {u"C1)", Refused, "T1!2", TopAnd, InTopName},
      {u"(C1))", Refused, "(0i1)!4", TopAnd, AfterClose},
      {u"C1 C2", Refused, "T1!3", TopAnd, AfterTopName},
      {u"C1\tOR C2", Refused, "T1!2", TopAnd, InTopName},
      {u"C1 O", Refused, "T1!3", TopAnd, AfterTopName},
      {u"C1 OR AND C2", Refused, "T1|!6", TopOr, AfterTopOr},
      {u"C9 OR C1", Refused, "T9!3", TopAnd, AfterTopName},
      {u"C9)", Refused, "T9!2", TopAnd, InTopName},
      {u"(C9)", Refused, "(0i9!3", TopAnd, InInnerName},
      {u"()", Refused, "(0!1", TopAnd, AfterOpen},
      {u"(C )", Refused, "(0!2", TopAnd, InnerNameFirstDigit},
      {u"(C1(", Refused, "(0i1!3", TopAnd, InInnerName},
      {u"(C1) C2", Refused, "(0i1)!5", TopAnd, AfterClose},
      {u"(C1 OR )", Refused, "(6i1o!7", TopAnd, AfterInnerOr},
      {u"C1 OR C4294967297", Unfinished, "T1|T2147483647", TopOr, InTopName},
  };
  const Names names({u"C1", u"C2", u"C3", u"C10"});
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    std::vector<LogicToken> tokens{{Close, 7}};
    LogicKind resultKind{};
    LogicState state{};
    EXPECT_EQ(c.verdict == Valid, ParseLogic(c.text, tokens, resultKind, &names, &state));
    EXPECT_EQ(c.tokens, Show(tokens));
    EXPECT_EQ(c.resultKind, resultKind);
    EXPECT_EQ(c.state, state);
    EXPECT_EQ(c.verdict == Valid, IsLogicValid(c.text, &names, false));
    EXPECT_EQ(c.verdict != Refused, IsLogicValid(c.text, &names, true));
  }
  EXPECT_TRUE(IsLogicValid(u"", nullptr, false));
  EXPECT_TRUE(IsLogicValid(u"C7 OR (C8)", nullptr, false)) << "every name without a collection";
  EXPECT_FALSE(IsLogicValid(u"C7 OR C8)", nullptr, false));
}

TEST(LogicParser, HoldsDeepParentheses) {
  constexpr std::size_t kDepth = 100000;
  const auto text = std::u16string(kDepth, u'(').append(u"C1").append(kDepth, u')');
  EXPECT_TRUE(IsLogicValid(text, nullptr, false));
  EXPECT_FALSE(IsLogicValid(text + u")", nullptr, true));
}

TEST(LogicText, StoresTheNormalFormOrKeepsWhatItHas) {
  constexpr std::pair<Utf16, std::string_view> kCases[] = {
      {u"C1 AND C2 OR C3", "(C1 AND C2) OR C3"},
      {u"C1 OR C2 AND C3", "C1 OR (C2 AND C3)"},
      {u"C1 OR C2", "C1 OR C2"},
      {u"C1 and C2", "C1 AND C2"},
      {u"c1 or c2", "C1 OR C2"},
      {u"c1 oR c2 aNd c3", "C1 OR (C2 AND C3)"},
      {u"(C1 OR C2) AND C3", "(C1 OR C2) AND C3"},
      {u"(C1 AND C2) OR C3", "(C1 AND C2) OR C3"},
      {u"C1 AND C2 OR C3 AND C1", "(C1 AND C2) OR (C3 AND C1)"},
      {u"C1 AND C2   OR C3", "(C1 AND C2)   OR C3"},
      {u"(C1 AND C2 OR C3) AND C1", "((C1 AND C2) OR C3) AND C1"},
      {u"(C1 OR C2 AND C3)", "(C1 OR (C2 AND C3))"},
      {u"C1 OR (C2 OR C3) AND C1", "C1 OR ((C2 OR C3) AND C1)"},
      {u"C1 AND (C2 OR C3) OR C1", "(C1 AND (C2 OR C3)) OR C1"},
      {u"C1 OR (C2 OR C3 AND (C1 OR C2 AND C3))", "C1 OR (C2 OR (C3 AND (C1 OR (C2 AND C3))))"},
      {u"C1 OR C2 AND C3 ", "C1 OR (C2 AND C3 )"},
      {u"((C1))", "((C1))"},
      {u"C1ANDC2orC3", "C1ANDC2orC3"},  // without blanks nothing is folded or enclosed
      {u"", "C1 AND C2 AND C3"},
      {u"AND", "C1 AND C2 AND C3"},
      {u" or ", "C1 OR C2 OR C3"},
      {u"\tOR\r\n", "C1 OR C2 OR C3"},
      {u"   ", "before"},
      {u"or", "before"},
      {u"C1 AND", "before"},
      {u"C4", "before"},
      {u"C1 OR C2)", "before"},
  };
  const Names names({u"C1", u"C2", u"C3"});
  for (const auto& [text, stored] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(text));
    LogicText logic;
    logic.Assign(u"before");
    EXPECT_EQ(stored == "before" ? VEX_E_BAD_LOGIC : S_OK, logic.SetLogic(text, names));
    EXPECT_EQ(stored, cor::ToUtf8(logic.GetStored()));
    if (stored != "before") logic.SetLogicNormalised(WString(logic.GetStored()), names);
    EXPECT_EQ(stored, cor::ToUtf8(logic.GetStored())) << "once is enough";
  }
}

TEST(LogicText, ReadsAsTheChainWhileNothingIsStored) {
  LogicText logic;
  EXPECT_EQ("C2 AND C1", cor::ToUtf8(logic.GetLogic(Names({u"C2", u"C1"}))));
  EXPECT_TRUE(logic.GetStored().empty());
  for (const Utf16 text : {u"", u"OR", u"AND"}) {
    logic.Assign(u"C1");
    EXPECT_EQ("C1", cor::ToUtf8(logic.GetLogic(Names({u"C2", u"C1"}))));
    EXPECT_EQ(S_OK, logic.SetLogic(text, Names({})));
    EXPECT_TRUE(logic.GetStored().empty());
    EXPECT_TRUE(logic.GetLogic(Names({})).empty());
  }
}

TEST(LogicText, RefusesMoreThanThePlainAndWhereStoresCannotDoIt) {
  constexpr std::pair<Utf16, bool> kCases[] = {
      {u"", true},           {u" AND\n", true},    {u"C1 AND C2", true}, {u"C2 AND C1", false},
      {u"C1 and C2", false}, {u"C1 OR C2", false}, {u"nonsense", false}, {u"C1", false},
  };
  const Names names({u"C1", u"C2"});
  for (const auto& [text, isPlain] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(text));
    EXPECT_EQ(isPlain, IsPlainAnd(text, names));
    LogicText logic;
    EXPECT_EQ(isPlain ? S_OK : VEX_E_LOGIC_UNSUPPORTED, logic.SetLogic(text, names, false));
    EXPECT_EQ(isPlain ? "C1 AND C2" : "", cor::ToUtf8(logic.GetStored()));
  }
}

TEST(LogicRepair, TakesANameOut) {
  constexpr struct {
    Utf16 text, name;
    std::string_view left;
  } kCases[] = {
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
  for (const auto& c : kCases) {
    WString text(c.text);
    RemoveFromLogic(c.name, text);
    EXPECT_EQ(c.left, cor::ToUtf8(text))
        << cor::ToUtf8(c.text) << " without " << cor::ToUtf8(c.name);
  }
}

/// Whatever order conditions go in, what stays must be a valid logic of the others.
TEST(LogicRepair, LeavesValidTexts) {
  constexpr Utf16 kTexts[] = {
      u"(C1 AND C2) OR (C3 AND (C4 OR C5))",
      u"((C1 OR C2) AND (C3)) OR ((C4)) OR C5",
      u"C1 AND C2 OR C3 AND C4 OR C5",
      u"(((C1) OR C2) AND C3) AND (C4 OR (C5))",
      u"C5 OR ( ( C4 AND C3 ) AND ( C2 ) ) OR C1",
  };
  for (const Utf16 start : kTexts) {
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
