// core/store/memory/RelationPairs.h - which two relations are the two directions of one.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/model/Model.h"

namespace hv::vex::engine {

inline const Relation& RelationAt(const Model& model, EntityId entity, std::int32_t relation) {
  return model.At(entity).relations[static_cast<std::size_t>(relation)];
}

/// The opposite direction of a relation, an index into its target's relations; kNone if the two
/// don't name each other, since then following both would disagree.
inline std::int32_t InverseOf(const Model& model, EntityId entity, std::int32_t relation) {
  const Relation& forward = RelationAt(model, entity, relation);
  if (forward.inverse == kNone || forward.target >= model.Entities().size()) return kNone;
  const auto& candidates = model.At(forward.target).relations;
  if (static_cast<std::size_t>(forward.inverse) >= candidates.size()) return kNone;
  const Relation& backward = candidates[static_cast<std::size_t>(forward.inverse)];
  const bool isMutual = backward.target == entity && backward.inverse == relation;
  return isMutual ? forward.inverse : kNone;
}

}  // namespace hv::vex::engine
