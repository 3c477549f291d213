// query/LogicParserTest.cpp - the grammar of logic texts: tokens, refusals, unfinished texts.
#include "query/logic/LogicParser.h"

#include "Names.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace hv::vex {
namespace {

using test::Names;

/// One sign per kind, its value behind those that have one: "(6" is an open token marked OR.
std::string Show(const std::vector<LogicToken>& tokens) {
  std::string text;
  for (const LogicToken& token : tokens) {
    constexpr std::string_view kSigns[] = {"!", "(", "T", "|", "&", "i", "o", "a", ")"};
    text += kSigns[static_cast<std::size_t>(token.kind)];
    if (token.kind <= LogicKind::TopCondition || token.kind == LogicKind::InnerCondition) {
      text += std::to_string(token.value);
    }
  }
  return text;
}

enum class Verdict { Refused, Unfinished, Valid };

struct ParseCase {
  std::u16string_view text;
  Verdict verdict;
  std::string_view tokens;
  LogicKind resultKind;
  LogicState state;
};

constexpr LogicKind kOr = LogicKind::TopOr;
constexpr LogicKind kAnd = LogicKind::TopAnd;
constexpr Verdict kValid = Verdict::Valid;
constexpr Verdict kUnfinished = Verdict::Unfinished;
constexpr Verdict kRefused = Verdict::Refused;

// Conditions: C1, C2, C3, C10.
constexpr ParseCase kCases[] = {
    {u"C1", kValid, "T1", kAnd, LogicState::InTopName},
    {u"  c1  ", kValid, "T1", kAnd, LogicState::AfterTopName},
    {u"C10", kValid, "T10", kAnd, LogicState::InTopName},
    {u"C01", kValid, "T1", kAnd, LogicState::InTopName},
    {u"C1 OR C2", kValid, "T1|T2", kOr, LogicState::InTopName},
    {u"C1 aNd C2", kValid, "T1&T2", kAnd, LogicState::InTopName},
    {u"C1OR C2", kValid, "T1|T2", kOr, LogicState::InTopName},
    {u"C1ANDC2orC3", kValid, "T1&T2|T3", kOr, LogicState::InTopName},
    {u"C1 OR C2 AND C3", kValid, "T1|T2&T3", kAnd, LogicState::InTopName},
    {u"(C1)", kValid, "(0i1)", kAnd, LogicState::AfterClose},
    {u"((C1))", kValid, "(0(0i1))", kAnd, LogicState::AfterClose},
    {u"( ( C1 ) ) ", kValid, "(0(0i1))", kAnd, LogicState::AfterClose},
    {u"(C1 AND C2) OR C3", kValid, "(7i1ai2)|T3", kOr, LogicState::InTopName},
    {u"C3 OR (C1 or C2)and(C1)", kValid, "T3|(6i1oi2)&(0i1)", kAnd, LogicState::AfterClose},
    {u"(C1 AND C2 OR C3)", kValid, "(6i1ai2oi3)", kAnd, LogicState::AfterClose},
    {u"((C1 OR C2) AND C3)", kValid, "(7(6i1oi2)ai3)", kAnd, LogicState::AfterClose},
    {u"((C1)OR(C2))", kValid, "(6(0i1)o(0i2))", kAnd, LogicState::AfterClose},

    {u"   ", kUnfinished, "", kAnd, LogicState::Start},
    {u"C", kUnfinished, "", kAnd, LogicState::TopNameFirstDigit},
    {u"C9", kUnfinished, "T9", kAnd, LogicState::InTopName},  // known only when the name ends
    {u"C9 ", kUnfinished, "T9", kAnd, LogicState::AfterTopName},
    {u"C1 AND", kUnfinished, "T1&", kAnd, LogicState::AfterTopAnd},
    {u"C1 OR ", kUnfinished, "T1|", kOr, LogicState::AfterTopOr},
    {u"(", kUnfinished, "(0", kAnd, LogicState::AfterOpen},
    {u"(C", kUnfinished, "(0", kAnd, LogicState::InnerNameFirstDigit},
    {u"(C1", kUnfinished, "(0i1", kAnd, LogicState::InInnerName},
    {u"(C1 ", kUnfinished, "(0i1", kAnd, LogicState::AfterInnerName},
    {u"(C1 OR", kUnfinished, "(6i1o", kAnd, LogicState::AfterInnerOr},
    {u"(C1 AND ", kUnfinished, "(7i1a", kAnd, LogicState::AfterInnerAnd},
    {u"((C1)", kUnfinished, "(0(0i1)", kAnd, LogicState::AfterClose},

    {u"x", kRefused, "!0", kAnd, LogicState::Start},
    {u")", kRefused, "!0", kAnd, LogicState::Start},
    {u"OR", kRefused, "!0", kAnd, LogicState::Start},
    {u"1", kRefused, "!0", kAnd, LogicState::Start},
    {u"C C1", kRefused, "!1", kAnd, LogicState::TopNameFirstDigit},
    {u"C\u0661", kRefused, "!1", kAnd, LogicState::TopNameFirstDigit},  // an Arabic digit
    {u"C1)", kRefused, "T1!2", kAnd, LogicState::InTopName},
    {u"(C1))", kRefused, "(0i1)!4", kAnd, LogicState::AfterClose},
    {u"C1 C2", kRefused, "T1!3", kAnd, LogicState::AfterTopName},
    {u"C1\tOR C2", kRefused, "T1!2", kAnd, LogicState::InTopName},
    {u"C1 O", kRefused, "T1!3", kAnd, LogicState::AfterTopName},
    {u"C1 AN", kRefused, "T1!3", kAnd, LogicState::AfterTopName},
    {u"C1 OR AND C2", kRefused, "T1|!6", kOr, LogicState::AfterTopOr},
    {u"C9 OR C1", kRefused, "T9!3", kAnd, LogicState::AfterTopName},
    {u"C9)", kRefused, "T9!2", kAnd, LogicState::InTopName},
    {u"(C9)", kRefused, "(0i9!3", kAnd, LogicState::InInnerName},
    {u"()", kRefused, "(0!1", kAnd, LogicState::AfterOpen},
    {u"(C )", kRefused, "(0!2", kAnd, LogicState::InnerNameFirstDigit},
    {u"(C1(", kRefused, "(0i1!3", kAnd, LogicState::InInnerName},
    {u"(C1) C2", kRefused, "(0i1)!5", kAnd, LogicState::AfterClose},
    {u"(C1 OR )", kRefused, "(6i1o!7", kAnd, LogicState::AfterInnerOr},
    {u"C1 OR C4294967297", kUnfinished, "T1|T2147483647", kOr, LogicState::InTopName},
};

TEST(LogicParser, TellsTokensAndVerdict) {
  const Names names({u"C1", u"C2", u"C3", u"C10"});
  for (const ParseCase& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    std::vector<LogicToken> tokens{{LogicKind::Close, 7}};
    LogicKind resultKind{};
    LogicState state{};
    EXPECT_EQ(c.verdict == kValid, ParseLogic(c.text, tokens, resultKind, &names, &state));
    EXPECT_EQ(c.tokens, Show(tokens));
    EXPECT_EQ(c.resultKind, resultKind);
    EXPECT_EQ(c.state, state);
    EXPECT_EQ(c.verdict == kValid, IsLogicValid(c.text, &names, false));
    EXPECT_EQ(c.verdict != kRefused, IsLogicValid(c.text, &names, true));
  }
}

TEST(LogicParser, AcceptsTheEmptyTextAndEveryNameWithoutACollection) {
  const Names none({});
  EXPECT_TRUE(IsLogicValid(u"", &none, false));
  EXPECT_TRUE(IsLogicValid(u"", nullptr, false));
  EXPECT_TRUE(IsLogicValid(u"C7 OR (C8)", nullptr, false));
  EXPECT_FALSE(IsLogicValid(u"C7", &none, false));
  EXPECT_FALSE(IsLogicValid(u"C7 OR C8)", nullptr, false));
}

TEST(LogicParser, HoldsDeepParentheses) {
  constexpr std::size_t kDepth = 100000;
  std::u16string text(kDepth, u'(');
  text += u"C1";
  text.append(kDepth, u')');
  EXPECT_TRUE(IsLogicValid(text, nullptr, false));
  EXPECT_FALSE(IsLogicValid(text + u")", nullptr, true));
}

}  // namespace
}  // namespace hv::vex
