// browse/DisplayText.cpp - values as the texts that display names are made of.
#include "browse/DisplayText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include <storefabric/DataType.h>

#include "automation/conv/AutomationDate.h"
#include "automation/conv/ValueText.h"
#include "automation/variant/PlatformNumbers.h"
#include "store/core/IAttribute.h"
#include "store/core/IBulkReader.h"
#include "store/core/IEnvironment.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kTimeFormatVariable = u"vexFormatStringTime";

void AppendAscii(std::string_view ascii, WString& text) {
  std::array<char16_t, 64> units;
  while (!ascii.empty()) {
    const std::size_t count = std::min(ascii.size(), units.size());
    std::copy_n(ascii.begin(), count, units.begin());
    text += std::u16string_view(units.data(), count);
    ascii.remove_prefix(count);
  }
}

void AppendInteger(std::int64_t value, std::int32_t typeCode, WString& text) {
  if (typeCode == kTypeBoolean) {
    text += value != 0 ? u"true" : u"false";
    return;
  }
  // A byte counts as signed here: texts were always made so.
  const std::int64_t shown = typeCode == eByte ? static_cast<std::int8_t>(value) : value;
  std::array<char, 24> digits;
  const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), shown);
  AppendAscii({digits.data(), static_cast<std::size_t>(end - digits.data())}, text);
}

void AppendReal(double value, WString& text) { AppendAscii(automation::FormatGcvt40(value), text); }

bool IsIntegerType(std::int32_t typeCode) {
  return (typeCode >= eI8 && typeCode <= eU64) || typeCode == kTypeBoolean;
}

}  // namespace

WString ReadTimeFormat(IStore& store) {
  WString format;
  const auto environment = Ref<IEnvironment>::Adopt(store.GetEnvironment());
  if (!environment) return format;
  const auto variable = Ref<IAttribute>::Adopt(environment->GetVariable(kTimeFormatVariable));
  if (variable && variable->GetCount() > 0) variable->GetStringValue(format);
  return format;
}

DisplayFormat::DisplayFormat(std::u16string_view timeFormat) {
  if (timeFormat.empty()) return;
  m_timeFormat = util::conv::CreateTimeFormat();
  m_timeFormat->SetPattern(timeFormat);
}

void DisplayFormat::AppendTime(const util::conv::TimeValue& time, WString& text) const {
  if (!m_timeFormat) {
    AppendAscii(time.ToText(), text);
    return;
  }
  WString formatted;
  m_timeFormat->Format(&formatted, time.ToRecord());
  text += formatted;
}

void DisplayFormat::AppendDigits(std::u16string_view digits, WString& text) const {
  if (!digits.empty()) AppendTime(util::conv::TimeValue::FromText(digits), text);
}

bool DisplayFormat::AppendCell(IValueTable& table, std::uint64_t row, std::uint64_t column,
                               WString& text) const {
  const std::int32_t type = table.GetColumnType(column);
  if (!IsPropertyType(type)) return false;
  if (table.IsNull(row, column) != 0) return true;
  if (IsIntegerType(type)) {
    AppendInteger(table.GetInteger(row, column), type, text);
  } else if (type == eR32 || type == eR64) {
    AppendReal(table.GetReal(row, column), text);
  } else if (type == eTime) {
    AppendDigits(table.GetText(row, column), text);
  } else {
    text += table.GetText(row, column);
  }
  return true;
}

bool DisplayFormat::AppendAttribute(IAttribute& attribute, WString& text) const {
  const std::int32_t type = attribute.GetDataType();
  if (!IsPropertyType(type)) return false;
  if (attribute.GetCount() == 0) return true;
  if (IsIntegerType(type)) {
    AppendInteger(attribute.GetInteger(0), type, text);
  } else if (type == eR32 || type == eR64) {
    AppendReal(attribute.GetReal(0), text);
  } else {
    WString value;
    attribute.GetText(0, value);
    if (type == eTime) {
      AppendDigits(value, text);
    } else {
      text += value;
    }
  }
  return true;
}

bool DisplayFormat::AppendVariant(const Variant& value, WString& text) const {
  const Variant& source = value.Dereferenced();
  if (source.Is(VT_DATE)) {
    AppendTime(util::conv::MomentOfDate(source.AsDouble()), text);
    return true;
  }
  if (source.Is(VT_I8)) {
    AppendInteger(source.AsInt64(), eI64, text);
    return true;
  }
  WString stored;
  if (source.Is(VT_DISPATCH) || Failed(util::conv::TextOfVariant(source, &stored))) return false;
  text += stored;
  return true;
}

}  // namespace hv::vex
