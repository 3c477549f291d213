// core/plugins/atfx/WantedTypes.h - the types that local columns are meant to have.
#pragma once

#include <span>
#include <vector>

#include "core/model/OdsType.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::atfx {

/// For each local column the type that its values are told to have: a raw column's own raw type,
/// else that of its measurement quantity; Unknown if neither tells one. Files leave open what is
/// stored in them, so that this decides whether floats are complex numbers and texts are dates.
std::vector<OdsType> WantedTypes(const RecordStore& store, EntityId entity,
                                 std::span<const RecordId> columns);

}  // namespace hv::vex::engine::atfx
