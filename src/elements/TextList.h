// elements/TextList.h - reading the lists of texts that the engine gives.
#pragma once

#include <span>

#include <storefabric/WString.h>

#include "store/core/IAttribute.h"

namespace hv::vex {

/// The texts of a list of the engine; they live as long as the list. Null has none.
inline std::span<const WString> TextsOf(IAttribute* list) {
  if (!list) return {};
  const auto* const first = static_cast<const WString*>(list->GetData());
  return first ? std::span<const WString>(first, list->GetCount()) : std::span<const WString>();
}

}  // namespace hv::vex
