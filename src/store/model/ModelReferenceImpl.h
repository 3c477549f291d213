// store/model/ModelReferenceImpl.h - a reference from one entity to another.
#pragma once

#include <cstdint>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/model/IEntityImpl.h"
#include "store/model/IModelReferenceImpl.h"

namespace hv::vex {

/// What is read of a reference, all of it names and numbers: entities are found through the cache
/// when they are asked for.
struct ReferenceFacts {
  WString name;
  WString baseName;
  WString targetEntity;
  WString inverseEntity;  ///< empty if there is no inverse, like the next
  WString inverseName;
  std::int32_t minOccur = 0;
  std::int32_t maxOccur = 0;
};

class CModelReferenceImpl final : public cor::Counted<IModelReferenceImpl> {
 public:
  CModelReferenceImpl(ReferenceFacts facts, IEntityImplCache& cache);

  // IModelReferenceImpl
  Result GetName(WString* name) override;
  Result GetEntityType(IEntityImpl** entity) override;
  Result GetBaseName(WString* baseName) override;
  Result GetMinOccur(std::int32_t* minOccur) override;
  Result GetMaxOccur(std::int32_t* maxOccur) override;
  Result GetInverse(IModelReferenceImpl** inverse) override;

 private:
  ~CModelReferenceImpl() override = default;

  ReferenceFacts m_facts;
  Ref<IEntityImplCache> m_cache;
};

}  // namespace hv::vex
