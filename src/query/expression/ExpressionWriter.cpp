// query/expression/ExpressionWriter.cpp - writes conditions and their logic as query functions.
#include "query/expression/ExpressionWriter.h"

#include "automation/Guards.h"
#include "automation/conv/ValueText.h"
#include "query/logic/LogicRepair.h"
#include "query/values/AttributeDataTypeHelper.h"
#include "query/values/DateNotation.h"
#include "query/values/Operators.h"
#include "query/values/OrList.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace hv::vex {

namespace {

using util::conv::TimeValue;

constexpr std::u16string_view kAnd = u"AND";
constexpr std::u16string_view kOr = u"OR";
constexpr std::u16string_view kBlanks = u" \t\r\n";

/// A date constant: 14 digits, of which the first eight are the day.
WString DateDigits(const TimeValue& time) {
  constexpr int kDigits = 14;
  std::string digits;
  time.ToText(&digits, kDigits);
  return cor::FromUtf8(digits);
}

WString DateDigits(const SystemTime& time) {
  return DateDigits(TimeValue::FromParts({.year = time.year,
                                          .month = time.month,
                                          .day = time.day,
                                          .hour = time.hour,
                                          .minute = time.minute,
                                          .second = time.second}));
}

/// True for a text that is its own and only value.
bool IsPlainValue(std::u16string_view text) {
  return text.find_first_of(u"\t\r\n\\") == text.npos && text.find(u" OR ") == text.npos;
}

/// Older files hold the wildcards of a text as the characters that a key typed.
WString WithTypedWildcards(std::u16string_view text) {
  WString value(text);
  value.ReplaceAll(u"\t", u"?").ReplaceAll(u"\r\n", u"*");
  value.ReplaceAll(u"\n", u"*").ReplaceAll(u"\r", u"*");
  return value;
}

std::u16string_view GroupFunction(const LogicToken& open) {
  return open.value == static_cast<std::int32_t>(LogicKind::InnerOr) ? kOr : kAnd;
}

}  // namespace

Result ExpressionWriter::WriteLogic(WString* body, std::uint32_t* failedCondition) {
  WString logic = m_source.conditions.GetLogic();
  AddParentheses(logic);
  std::vector<LogicToken> tokens;
  LogicKind resultKind{};
  if (!ParseLogic(logic, tokens, resultKind, &m_source.conditions.GetNames())) {
    return VEX_E_BAD_LOGIC;
  }
  const bool isInOr = resultKind == LogicKind::TopOr;
  // Long texts grow at once; a guess of what a condition takes.
  constexpr std::size_t kUnitsOfToken = 90;
  body->reserve(body->size() + tokens.size() * kUnitsOfToken);
  OpenFunction(*body, isInOr ? kOr : kAnd);
  for (std::size_t i = 0; i < tokens.size();) {
    if (tokens[i].kind == LogicKind::Open) {
      HV_RETURN_IF_FAILED(WriteGroup(tokens, &i, body, failedCondition));
      continue;
    }
    if (tokens[i].kind == LogicKind::TopCondition) {
      HV_RETURN_IF_FAILED(WriteNumbered(tokens[i].value, isInOr, body, failedCondition));
    }
    ++i;
  }
  WriteFilter(m_source.mapper, isInOr, body);
  CloseFunction(*body);
  return S_OK;
}

Result ExpressionWriter::WriteGroup(std::span<const LogicToken> tokens, std::size_t* position,
                                    WString* body, std::uint32_t* failedCondition) {
  // Without recursion: how deep a user's parentheses go is nobody's choice but theirs.
  std::vector<std::u16string_view> open;
  do {
    const LogicToken& token = tokens[(*position)++];
    if (token.kind == LogicKind::Open) {
      open.push_back(GroupFunction(token));
      OpenFunction(*body, open.back());
    } else if (token.kind == LogicKind::Close) {
      open.pop_back();
      CloseFunction(*body);
    } else if (token.kind == LogicKind::InnerCondition) {
      HV_RETURN_IF_FAILED(WriteNumbered(token.value, open.back() == kOr, body, failedCondition));
    }
  } while (!open.empty() && *position < tokens.size());
  for (; !open.empty(); open.pop_back()) CloseFunction(*body);
  return S_OK;
}

Result ExpressionWriter::WriteNumbered(std::int32_t number, bool isInOr, WString* body,
                                       std::uint32_t* failedCondition) {
  Ref<easyImpl::IConditionImpl> condition;
  if (Failed(m_source.conditions.GetItemByName(ConditionName(number), condition.Put()))) {
    return E_INVALIDARG;
  }
  const Result rc = WriteCondition(*condition, isInOr, body);
  if (Failed(rc)) *failedCondition = static_cast<std::uint32_t>(number);
  return rc;
}

const WString& ExpressionWriter::PrefixOf(std::u16string_view type) {
  const auto known = m_prefixes.find(type);
  if (known != m_prefixes.end()) return known->second;
  WString prefix = m_source.paths.PathBetween(m_source.returnType, type);
  if (!prefix.empty()) prefix += u'.';
  return m_prefixes.emplace(type, std::move(prefix)).first->second;
}

Result ExpressionWriter::WriteCondition(easyImpl::IConditionImpl& condition, bool isInOr,
                                        WString* body) {
  std::u16string_view property = condition.GetInternalProperty();
  property.remove_prefix(std::min(property.find_first_not_of(kBlanks), property.size()));
  Target target;
  target.isInOr = isInOr;
  target.property = property;
  target.prefix = PrefixOf(condition.GetType());
  target.identifier = WString(target.prefix) + property;
  if (m_source.mapper) {
    HV_RETURN_CODE_IF(m_source.isBelowElement, VEX_E_INVALID_PROPERTY);
    target.identifier = m_source.mapper->Map(target.identifier);
  }
  Ref<IAttributeDataTypeHelper> helper;
  HV_RETURN_IF_FAILED(m_source.config.MakePropertyHelper(condition.GetType(),
                                                         condition.GetProperty(), helper.Put()));
  target.isModelProperty = !m_source.isBelowElement || helper->IsKnown();
  target.isText = helper->IsString();
  std::u16string_view op = condition.GetOperatorSymbol();
  // Numbers keep the spelling of their own.
  if (op == u"<>" && (!target.isModelProperty || target.isText)) op = u"!=";
  if (m_source.config.HasStore() && helper->IsDate()) return WriteDate(condition, op, target, body);
  return WriteValues(op == u"#" ? u"=" : op, condition.GetValueText(), target, body);
}

Result ExpressionWriter::WriteValues(std::u16string_view op, std::u16string_view valueText,
                                     const Target& target, WString* body) {
  if (target.isModelProperty && IsPlainValue(valueText)) {
    const std::uint64_t longest = m_source.config.GetLongestValue();
    HV_RETURN_CODE_IF(longest != 0 && valueText.size() > longest, VEX_E_VALUE_TOO_LONG);
    WriteValue(op, valueText, target.Kind(), target, body);
    return S_OK;
  }
  return WriteList(op, WithTypedWildcards(valueText), target, body);
}

Result ExpressionWriter::WriteList(std::u16string_view op, const WString& valueText,
                                   const Target& target, WString* body) {
  const std::vector<WString> values = SplitValues(valueText, true, false);
  const std::uint64_t longest = m_source.config.GetLongestValue();
  for (const WString& value : values) {
    HV_RETURN_CODE_IF(longest != 0 && value.size() > longest, VEX_E_VALUE_TOO_LONG);
  }
  const bool areAlternatives = values.size() > 1 && !target.isInOr;
  // The two functions of a pair belong together, also among alternatives.
  const bool isPairApart = !target.isModelProperty && (values.size() > 1 || target.isInOr);
  if (areAlternatives) OpenFunction(*body, kOr);
  for (const WString& value : values) {
    if (isPairApart) OpenFunction(*body, kAnd);
    WriteValue(op, value, target.Kind(), target, body);
    if (isPairApart) CloseFunction(*body);
  }
  if (areAlternatives) CloseFunction(*body);
  return S_OK;
}

Result ExpressionWriter::WriteDate(easyImpl::IConditionImpl& condition, std::u16string_view op,
                                   const Target& target, WString* body) {
  if (op == u"#") {
    const DateRange range = RelativeRange(condition.GetValueText(), m_source.now);
    WriteRange(DateDigits(range.from), DateDigits(range.to), target, body);
    return S_OK;
  }
  TimeValue time;
  if (Failed(util::conv::TimeOfVariant(condition.GetFirstValue(), &time))) return VEX_E_VALUE_TYPE;
  const WString moment = DateDigits(time);
  const WString day(moment.view().substr(0, 8));
  if (op == u"=") {
    WriteRange(day + u"000000", day + u"235959", target, body);
    return S_OK;
  }
  const bool isPairApart = !target.isModelProperty && target.isInOr;
  if (isPairApart) OpenFunction(*body, kAnd);
  WriteValue(op, HasTimeOfDay(op) ? moment : day + u"000000", ConstantKind::Plain, target, body);
  if (isPairApart) CloseFunction(*body);
  return S_OK;
}

void ExpressionWriter::WriteRange(const WString& from, const WString& to, const Target& target,
                                  WString* body) {
  if (target.isInOr) OpenFunction(*body, kAnd);
  WriteValue(u">=", from, ConstantKind::Plain, target, body);
  WriteValue(u"<=", to, ConstantKind::Plain, target, body);
  if (target.isInOr) CloseFunction(*body);
}

void ExpressionWriter::WriteValue(std::u16string_view op, std::u16string_view value,
                                  ConstantKind kind, const Target& target, WString* body) {
  if (target.isModelProperty) {
    AppendComparison(*body, op, target.identifier, kind, value);
    return;
  }
  AppendComparison(*body, op, WString(target.prefix) + u"instance_attributes.values",
                   ConstantKind::Wildcards, value);
  AppendComparison(*body, u"==", WString(target.prefix) + u"instance_attributes.name",
                   ConstantKind::NoCase, target.property);
}

void ExpressionWriter::WriteFilter(IIdentifierMapper* mapper, bool isInOr, WString* body) {
  if (!mapper || !mapper->ShouldFilter()) return;
  WString filter;
  AppendComparison(filter, u"=", mapper->Map(u"name"), ConstantKind::Wildcards, u"*");
  if (!isInOr) {
    *body += filter;
    return;
  }
  // The close that is written here ends the alternatives; the one that follows ends the AND.
  WString restricted;
  OpenFunction(restricted, kAnd);
  restricted += filter;
  restricted += *body;
  CloseFunction(restricted);
  *body = std::move(restricted);
}

}  // namespace hv::vex
