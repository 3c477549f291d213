// store/elements/EntityOfPath.h - where a path of references leads to, without looking at records.
#pragma once

#include <string_view>

#include <storefabric/Ref.h>

#include "store/core/IEntity.h"

namespace hv::vex {

class IModel;

/// The entity at the end of a path: references joined by points from `start`, or an absolute path
/// ("/#Name", "/##name") and references behind it. Conditions in parentheses are stepped over.
/// \param start  the entity that a relative path begins with; null: the path is absolute
/// \return null if a name along the path is none of the model. Throws what the engine throws.
Ref<IEntity> EntityOfPath(IModel& model, IEntity* start, std::u16string_view path);

}  // namespace hv::vex
