#include "core/query/ConstantBinder.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

#include "core/query/TextMatch.h"

namespace hv::vex::engine {
namespace {

std::u16string_view Trim(std::u16string_view text) {
  constexpr std::u16string_view kBlanks = u" \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::u16string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool HasWildcards(const ParsedConstant& constant) {
  return constant.wildcards && constant.text.find_first_of(u"?*") != std::u16string::npos;
}

bool IsEquality(QueryOp op) { return op == QueryOp::Equal || op == QueryOp::NotEqual; }

BoundConstant Never() {
  BoundConstant constant;
  constant.isNever = true;
  return constant;
}

BoundConstant BindText(QueryOp op, const ParsedConstant& constant) {
  BoundConstant bound;
  bound.ignoreCase = constant.ignoreCase;
  bound.text = constant.ignoreCase ? FoldCase(constant.text) : constant.text;
  bound.wildcards = IsEquality(op) && HasWildcards(constant);
  return bound;
}

std::optional<BoundConstant> BindDate(std::u16string_view text) {
  const std::optional<Date14> date = NormalizeDate14(Trim(text));
  if (!date) return std::nullopt;
  BoundConstant bound;
  bound.text.assign(date->begin(), date->end());
  return bound;
}

void TakeNumber(const Number& number, BoundConstant& bound) {
  bound.isReal = number.isReal;
  bound.integer = number.integer;
  bound.real = number.real;
}

std::optional<BoundConstant> BindNumber(OdsType type, std::u16string_view text) {
  const std::optional<Number> number = ParseNumber(text);
  if (!number) return std::nullopt;
  BoundConstant bound;
  TakeNumber(*number, bound);
  if (StorageKindOf(type) == StorageKind::Integer) return bound;
  bound.isReal = true;
  // A stored 0.1 of single precision is another number than the 0.1 of the text.
  if (type == OdsType::Float && std::abs(number->real) <= std::numeric_limits<float>::max()) {
    bound.real = static_cast<double>(static_cast<float>(number->real));
  }
  return bound;
}

std::optional<BoundConstant> BindBoolean(std::u16string_view text) {
  const std::u16string folded = FoldCase(Trim(text));
  BoundConstant bound;
  // A true value of the automation layer is -1 where it is shown as a number.
  if (folded == u"true" || folded == u"1" || folded == u"-1") {
    bound.integer = 1;
  } else if (folded != u"false" && folded != u"0") {
    return std::nullopt;
  }
  return bound;
}

BoundConstant BindItem(const Enumeration* enumeration, std::u16string_view text) {
  const std::u16string_view name = Trim(text);
  BoundConstant bound;
  if (enumeration) {
    if (const std::optional<std::int64_t> value = enumeration->ValueOf(name)) {
      bound.integer = *value;
      return bound;
    }
  }
  const std::optional<Number> number = ParseNumber(name);
  if (!number) return Never();
  TakeNumber(*number, bound);
  return bound;
}

std::vector<BoundComparison> BindItemPattern(const Enumeration& enumeration, QueryOp op,
                                             const ParsedConstant& constant) {
  const WildcardPattern pattern(FoldCase(constant.text));
  std::vector<BoundComparison> comparisons;
  for (const EnumItem& item : enumeration.items) {
    if (!pattern.Matches(FoldCase(item.name))) continue;
    BoundComparison& comparison = comparisons.emplace_back();
    comparison.op = op;
    comparison.constant.integer = item.value;
  }
  if (comparisons.empty()) comparisons.push_back({op, Never()});
  return comparisons;
}

}  // namespace

std::optional<Number> ParseNumber(std::u16string_view text) {
  std::string ascii;
  for (const char16_t unit : Trim(text)) {
    if (unit > 0x7E) return std::nullopt;
    ascii += static_cast<char>(unit);
  }
  const char* first = ascii.data();
  const char* const last = first + ascii.size();
  if (first != last && *first == '+') ++first;
  // Words such as "inf" are no numbers here, and neither is a second sign.
  const char* const digits = ascii.starts_with('-') ? first + 1 : first;
  if (digits == last || (*digits != '.' && (*digits < '0' || *digits > '9'))) return std::nullopt;

  Number number;
  const auto whole = std::from_chars(first, last, number.integer);
  if (whole.ec == std::errc() && whole.ptr == last) {
    number.real = static_cast<double>(number.integer);
    return number;
  }
  number.integer = 0;
  const auto real = std::from_chars(first, last, number.real);
  if (real.ec != std::errc() || real.ptr != last) return std::nullopt;
  constexpr double kBeyond = 9223372036854775808.0;
  number.isReal = true;
  if (number.real >= -kBeyond && number.real < kBeyond && std::trunc(number.real) == number.real) {
    number.isReal = false;
    number.integer = static_cast<std::int64_t>(number.real);
  }
  return number;
}

bool IsComparable(const Attribute& attribute) {
  if (attribute.sequence) return false;
  switch (attribute.type) {
    case OdsType::Unknown:
    case OdsType::ByteStr:
    case OdsType::Blob:
    case OdsType::Complex:
    case OdsType::DComplex:
      return false;
    default:
      return true;
  }
}

std::u16string_view DescribeConstants(OdsType type) {
  switch (type) {
    case OdsType::Date:
      return u"a date of 4 to 23 digits";
    case OdsType::Boolean:
      return u"true or false";
    case OdsType::String:
    case OdsType::ExternalReference:
      return u"a text";
    case OdsType::Enum:
      return u"an item";
    default:
      return u"a number";
  }
}

std::optional<std::vector<BoundComparison>> BindConstant(const Model& model,
                                                         const Attribute& attribute, QueryOp op,
                                                         const ParsedConstant& constant) {
  const StorageKind kind = StorageKindOf(attribute.type);
  const bool isDate = attribute.type == OdsType::Date;
  if (kind == StorageKind::Text && !isDate) return {{{op, BindText(op, constant)}}};

  // Only texts have patterns, but "*" has a meaning everywhere: any value, or none for "!=".
  const bool anything = constant.wildcards && IsEquality(op) && !constant.text.empty() &&
                        constant.text.find_first_not_of(u'*') == std::u16string::npos;
  if (anything) {
    return {{{op == QueryOp::Equal ? QueryOp::NotEqual : QueryOp::Equal, Never()}}};
  }
  if (attribute.type == OdsType::Enum) {
    const Enumeration* enumeration = nullptr;
    if (attribute.enumeration != kNone) {
      enumeration = &model.Enumerations()[static_cast<std::size_t>(attribute.enumeration)];
    }
    if (enumeration && IsEquality(op) && HasWildcards(constant)) {
      return BindItemPattern(*enumeration, op, constant);
    }
    return {{{op, BindItem(enumeration, constant.text)}}};
  }
  std::optional<BoundConstant> bound;
  if (isDate) {
    bound = BindDate(constant.text);
  } else if (attribute.type == OdsType::Boolean) {
    bound = BindBoolean(constant.text);
  } else {
    bound = BindNumber(attribute.type, constant.text);
  }
  if (!bound) return std::nullopt;
  return {{{op, *std::move(bound)}}};
}

BoundConstant BindInstanceAttributeConstant(QueryOp op, const ParsedConstant& constant) {
  BoundConstant bound = BindText(op, constant);
  if (const std::optional<Number> number = ParseNumber(constant.text)) {
    bound.isNumber = true;
    TakeNumber(*number, bound);
  }
  if (const std::optional<Date14> date = NormalizeDate14(Trim(constant.text))) {
    bound.date.assign(date->begin(), date->end());
  }
  return bound;
}

}  // namespace hv::vex::engine
