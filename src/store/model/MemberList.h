// store/model/MemberList.h - the members of an entity in order, with a way to them by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "automation/Guards.h"

namespace hv::vex {

/// Properties or references of one entity. Names are found without regard to case.
template <class Item>
class MemberList {
 public:
  [[nodiscard]] bool Contains(std::u16string_view name) const { return m_positions.contains(name); }
  /// Puts a member at the end. Of several members of one name the first is found by it.
  void Append(Ref<Item> item, WString name) {
    m_positions.emplace(std::move(name), m_items.size());
    m_items.push_back(std::move(item));
  }
  void Clear() {
    m_positions.clear();
    m_items.clear();
  }

  /// The member at an index, with a reference. E_POINTER; E_INVALIDARG outside.
  Result GetItem(std::int32_t index, Item** out) const {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    HV_RETURN_CODE_IF(index < 0 || static_cast<std::size_t>(index) >= m_items.size(), E_INVALIDARG);
    return m_items[static_cast<std::size_t>(index)].CopyTo(out);
  }
  Result GetCount(std::int32_t* out) const {
    HV_RETURN_IF_NULL(out);
    *out = static_cast<std::int32_t>(m_items.size());
    return S_OK;
  }
  /// The member of a name, with a reference. E_POINTER; E_INVALIDARG for an unknown name.
  Result Find(std::u16string_view name, Item** out) const {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    const auto found = m_positions.find(name);
    HV_RETURN_CODE_IF(found == m_positions.end(), E_INVALIDARG);
    return m_items[found->second].CopyTo(out);
  }

 private:
  std::vector<Ref<Item>> m_items;
  std::map<WString, std::size_t, cor::NoCaseLess> m_positions;
};

}  // namespace hv::vex
