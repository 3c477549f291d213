// query/logic/LogicParser.cpp - the character machine behind all readers of logic texts.
#include "query/logic/LogicParser.h"

#include "query/logic/LogicChars.h"

#include <limits>
#include <string>

namespace hv::vex {

namespace {

using logic::HasWordAt;
using logic::IsDigit;
using logic::IsLetter;

/// Saturates: a wrapped number would name another condition.
std::int32_t AddDigit(std::int32_t value, char16_t digit) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const std::int32_t added = digit - u'0';
  return value > (kMost - added) / 10 ? kMost : value * 10 + added;
}

class Machine {
 public:
  Machine(std::u16string_view text, std::vector<LogicToken>& tokens,
          const IConditionNames* conditions)
      : m_text(text), m_tokens(tokens), m_conditions(conditions) {}

  bool Run() {
    while (m_pos < m_text.size()) {
      if (Step(m_text[m_pos])) continue;
      m_tokens.push_back({LogicKind::Error, static_cast<std::int32_t>(m_pos)});
      return false;
    }
    return IsComplete();
  }
  [[nodiscard]] LogicKind ResultKind() const { return m_resultKind; }
  [[nodiscard]] LogicState State() const { return m_state; }

 private:
  /// Takes one character or one keyword; false, with the position on it, if it can't stand here.
  bool Step(char16_t c) {
    switch (m_state) {
      case LogicState::Start:
      case LogicState::AfterTopOr:
      case LogicState::AfterTopAnd:
        return Operand(c, LogicState::TopNameFirstDigit);
      case LogicState::AfterOpen:
      case LogicState::AfterInnerOr:
      case LogicState::AfterInnerAnd:
        return Operand(c, LogicState::InnerNameFirstDigit);
      case LogicState::TopNameFirstDigit:
        return FirstDigit(c, LogicKind::TopCondition, LogicState::InTopName);
      case LogicState::InnerNameFirstDigit:
        return FirstDigit(c, LogicKind::InnerCondition, LogicState::InInnerName);
      case LogicState::InTopName:
        return InName(c, LogicState::AfterTopName);
      case LogicState::InInnerName:
        return InName(c, LogicState::AfterInnerName);
      case LogicState::AfterTopName:
      case LogicState::AfterInnerName:
        return AfterName(c);
      case LogicState::AfterClose:
        return c == u' ' ? Advance(m_state) : Connective() || Close(c);
    }
    return false;
  }

  bool Advance(LogicState next, std::size_t count = 1) {
    m_pos += count;
    m_state = next;
    return true;
  }

  bool Operand(char16_t c, LogicState nameState) {
    if (c == u' ') return Advance(m_state);
    if (IsLetter(c, u'C')) return Advance(nameState);
    if (c != u'(') return false;
    m_open.push_back(m_tokens.size());
    m_tokens.push_back({LogicKind::Open, 0});
    return Advance(LogicState::AfterOpen);
  }

  bool FirstDigit(char16_t c, LogicKind kind, LogicState next) {
    if (!IsDigit(c)) return false;
    m_tokens.push_back({kind, c - u'0'});
    return Advance(next);
  }

  bool InName(char16_t c, LogicState after) {
    if (c == u' ') return Advance(after);
    if (!IsDigit(c)) return AfterName(c);
    m_tokens.back().value = AddDigit(m_tokens.back().value, c);
    return Advance(m_state);
  }

  bool AfterName(char16_t c) {
    if (c == u' ') return Advance(m_state);
    if (!IsLastNameKnown()) return false;
    return Connective() || (!m_open.empty() && Close(c));
  }

  bool Connective() {
    const bool isOr = HasWordAt(m_text, m_pos, u"OR");
    if (!isOr && !HasWordAt(m_text, m_pos, u"AND")) return false;
    const std::size_t length = isOr ? 2 : 3;
    if (m_open.empty()) {
      m_resultKind = isOr ? LogicKind::TopOr : LogicKind::TopAnd;
      m_tokens.push_back({m_resultKind, 0});
      return Advance(isOr ? LogicState::AfterTopOr : LogicState::AfterTopAnd, length);
    }
    const LogicKind kind = isOr ? LogicKind::InnerOr : LogicKind::InnerAnd;
    m_tokens[m_open.back()].value = static_cast<std::int32_t>(kind);
    m_tokens.push_back({kind, 0});
    return Advance(isOr ? LogicState::AfterInnerOr : LogicState::AfterInnerAnd, length);
  }

  bool Close(char16_t c) {
    if (c != u')' || m_open.empty()) return false;
    m_open.pop_back();
    m_tokens.push_back({LogicKind::Close, 0});
    return Advance(LogicState::AfterClose);
  }

  [[nodiscard]] bool IsLastNameKnown() const {
    return !m_conditions || m_conditions->HasName(ConditionName(m_tokens.back().value));
  }

  [[nodiscard]] bool IsComplete() const {
    if (!m_open.empty()) return false;
    if (m_state == LogicState::AfterClose) return true;
    return (m_state == LogicState::InTopName || m_state == LogicState::AfterTopName) &&
           IsLastNameKnown();
  }

  std::u16string_view m_text;
  std::vector<LogicToken>& m_tokens;
  const IConditionNames* m_conditions;
  std::vector<std::size_t> m_open;  ///< places of the open tokens that aren't closed
  std::size_t m_pos = 0;
  LogicState m_state = LogicState::Start;
  LogicKind m_resultKind = LogicKind::TopAnd;
};

}  // namespace

bool ParseLogic(std::u16string_view text, std::vector<LogicToken>& tokens, LogicKind& resultKind,
                const IConditionNames* conditions, LogicState* state) {
  tokens.clear();
  Machine machine(text, tokens, conditions);
  const bool isValid = machine.Run();
  resultKind = machine.ResultKind();
  if (state) *state = machine.State();
  return isValid;
}

bool IsLogicValid(std::u16string_view text, const IConditionNames* conditions,
                  bool allowIncomplete) {
  if (text.empty()) return true;
  std::vector<LogicToken> tokens;
  LogicKind resultKind{};
  if (ParseLogic(text, tokens, resultKind, conditions)) return true;
  return allowIncomplete && (tokens.empty() || tokens.back().kind != LogicKind::Error);
}

WString ConditionName(std::int32_t number) { return cor::FromUtf8("C" + std::to_string(number)); }

}  // namespace hv::vex
