// core/model/ModelChange.h - what became of a model that was read again.
#pragma once

#include <cstdint>

#include "core/model/Model.h"

namespace hv::vex::engine {

enum class ModelChange : std::uint8_t {
  None,
  /// Every entity, attribute and relation is where it was and of its kind. There may be more behind
  /// them, and occurrences, lengths and the like may differ: places that were kept stay good.
  Grown,
  Other,
};

[[nodiscard]] ModelChange CompareModels(const Model& before, const Model& after);

}  // namespace hv::vex::engine
