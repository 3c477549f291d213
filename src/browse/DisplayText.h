// browse/DisplayText.h - values as the texts that display names are made of.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "util/conv/TimeFormat.h"
#include "util/conv/TimeValue.h"

namespace hv::vex {

class IAttribute;
class IEntity;
class IEnvironment;
class IStore;
class IValueTable;

/// The environment's variable "vexFormatStringTime", or empty. Throws what the engine throws.
WString ReadTimeFormat(IStore& store);

/// Turns values into display text: numbers and truth values as texts store them, times by a
/// pattern, or by their 23 digits if the pattern is empty. Made once for many values.
class DisplayFormat {
 public:
  explicit DisplayFormat(std::u16string_view timeFormat);

  /// Appends the value; an unset one appends nothing. They throw what the engine throws.
  /// \return false if the value can't be shown; `text` is as it was
  bool AppendCell(IValueTable& table, std::uint64_t row, std::uint64_t column, WString& text) const;
  bool AppendAttribute(IAttribute& attribute, WString& text) const;
  bool AppendVariant(const Variant& value, WString& text) const;

 private:
  void AppendTime(const util::conv::TimeValue& time, WString& text) const;
  void AppendDigits(std::u16string_view digits, WString& text) const;

  Ref<util::conv::ITimeFormat> m_timeFormat;  // null: the digits
};

}  // namespace hv::vex
