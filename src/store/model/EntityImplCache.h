// store/model/EntityImplCache.h - the one logic object per entity of a session.
#pragma once

#include <map>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/model/IEntityImpl.h"

namespace hv::vex {

class CEntityImpl;

/// Filled on demand and never shrunk while the session lives, so that two reads of an entity give
/// one object. It holds its entities; they only point back, and are told when it goes.
class CEntityImplCache final : public cor::Counted<IEntityImplCache> {
 public:
  CEntityImplCache();

  // IEntityImplCache
  Result Get(std::u16string_view name, IEntityImpl** entity) override;
  Result GetOrCreate(IEntity* coreEntity, IEntityImpl** entity) override;
  Result Clear() override;

 private:
  ~CEntityImplCache() override;

  using Entities = std::multimap<WString, Ref<CEntityImpl>, cor::NoCaseLess>;

  [[nodiscard]] CEntityImpl* FindExact(std::u16string_view name) const;

  // Ordered without regard to case for lookups, but names that differ in case only stay apart: an
  // application entity "AoTest" on the base entity "aotest" is no rarity.
  Entities m_entities;
};

}  // namespace hv::vex
