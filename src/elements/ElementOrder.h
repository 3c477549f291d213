// elements/ElementOrder.h - what lists of elements are sorted by.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <vector>

#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv::vex::easyImpl {

class IVEXElementImpl;

/// Type and name, joined by a point; what can't be read counts as empty.
WString QualifiedName(IVEXElementImpl& element);
/// The value of a property; null if it can't be read, which is no failure.
Variant SortValue(IVEXElementImpl& element, std::u16string_view property);

/// The positions of the keys in their order. Keys that can't be told apart stay as they are;
/// descending is the ascending order from its end, so that they turn round.
template <class Key, class Less>
std::vector<std::size_t> SortedPositions(const std::vector<Key>& keys, bool ascending, Less less) {
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order,
                           [&](std::size_t a, std::size_t b) { return less(keys[a], keys[b]); });
  if (!ascending) std::ranges::reverse(order);
  return order;
}

/// The order of values of any type, as `util::conv::AscendingOrder` has it.
struct ByValue {};
std::vector<std::size_t> SortedPositions(const std::vector<Variant>& keys, bool ascending, ByValue);

}  // namespace hv::vex::easyImpl
