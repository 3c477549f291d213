// query/logic/LogicText.cpp - taking and giving the logic of a collection.
#include "query/logic/LogicText.h"

#include "query/logic/LogicChars.h"
#include "query/logic/LogicRepair.h"

namespace hv::vex {

using logic::Trim;

WString JoinAll(const IConditionNames& conditions, std::u16string_view separator) {
  WString text;
  const std::size_t count = conditions.GetNameCount();
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) text += separator;
    text += conditions.GetName(i);
  }
  return text;
}

bool IsPlainAnd(std::u16string_view logic, const IConditionNames& conditions) {
  return logic.empty() || Trim(logic) == u"AND" || JoinAll(conditions, u" AND ").EqualsExact(logic);
}

WString LogicText::GetLogic(const IConditionNames& conditions) const {
  return m_text.empty() ? JoinAll(conditions, u" AND ") : m_text;
}

Result LogicText::SetLogic(std::u16string_view text, const IConditionNames& conditions,
                           bool isCustomAllowed) {
  if (!isCustomAllowed && !IsPlainAnd(text, conditions)) return VEX_E_LOGIC_UNSUPPORTED;
  WString copy(text);
  FoldKeywords(copy, FoldedKeyword::Or);
  FoldKeywords(copy, FoldedKeyword::And);
  copy.ReplaceAll(u"c", u"C");
  const std::u16string_view trimmed = Trim(copy);
  const bool isChain = copy.empty() || trimmed == u"OR" || trimmed == u"AND";
  if (!isChain && !IsLogicValid(copy, &conditions, false)) return VEX_E_BAD_LOGIC;
  SetLogicNormalised(copy, conditions);
  return S_OK;
}

void LogicText::SetLogicNormalised(std::u16string_view text, const IConditionNames& conditions) {
  const std::u16string_view trimmed = Trim(text);
  WString normal(text);
  if (text.empty() || trimmed == u"AND") {
    normal = JoinAll(conditions, u" AND ");
  } else if (trimmed == u"OR") {
    normal = JoinAll(conditions, u" OR ");
  }
  AddParentheses(normal);
  m_text = std::move(normal);
}

}  // namespace hv::vex
