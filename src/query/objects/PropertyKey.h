// query/objects/PropertyKey.h - an entity and a property as the key of a map.
#pragma once

#include <string_view>
#include <utility>

#include <storefabric/WString.h>

namespace hv::vex {

using PropertyKey = std::pair<WString, WString>;
/// For lookups without a copy.
using PropertyKeyView = std::pair<std::u16string_view, std::u16string_view>;

/// Tells upper and lower case apart.
struct PropertyKeyLess {
  using is_transparent = void;
  static PropertyKeyView View(const PropertyKey& key) { return {key.first, key.second}; }
  static PropertyKeyView View(const PropertyKeyView& key) { return key; }
  template <class A, class B>
  bool operator()(const A& a, const B& b) const {
    return View(a) < View(b);
  }
};

}  // namespace hv::vex
