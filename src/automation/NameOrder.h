// automation/NameOrder.h - how names of members and classes are compared: plain letters, no case.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace hv::automation {

/// Lower case of the letters that names of members are made of.
constexpr char16_t FoldNameUnit(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

/// -1, 0 or 1, without regard to case.
constexpr int CompareNames(std::u16string_view a, std::u16string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const char16_t x = FoldNameUnit(a[i]);
    const char16_t y = FoldNameUnit(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

/// The same by length first: an order for tables that names are looked up in, where most differ in
/// that already.
constexpr int CompareForLookup(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return CompareNames(a, b);
}

}  // namespace hv::automation
