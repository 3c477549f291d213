// store/elements/ReferencePath.h - paths of references from an instance, step by step.
#pragma once

#include <optional>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "store/core/IEntity.h"

namespace hv::vex {

class IInstance;

/// The last reference of a path, and the way to where it begins.
struct LastStep {
  WString prefix;  ///< the path to the last reference; empty if that is the only one
  WString name;
  Ref<IRelation> relation;
};

/// Takes a path of references, joined by points, apart. Names may hold points themselves: the
/// longest name that an entity knows counts.
/// \return nothing if the path leads nowhere. Throws what the engine throws.
std::optional<LastStep> FindLastStep(IEntity& entity, std::u16string_view path);

/// The path with the condition that the records at its end have that name.
WString PathToName(std::u16string_view path, std::u16string_view name);

/// The entity of an instance, by the store's model; may be null. Throws what the engine throws.
Ref<IEntity> EntityOfInstance(IInstance& instance);

}  // namespace hv::vex
