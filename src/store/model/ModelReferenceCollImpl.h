// store/model/ModelReferenceCollImpl.h - the references of an entity.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IEntity.h"
#include "store/model/IEntityImpl.h"
#include "store/model/IModelReferenceImpl.h"
#include "store/model/MemberList.h"

namespace hv::vex {

class CModelReferenceCollImpl final : private CoreBinding,
                                      public cor::Counted<IModelReferenceCollImpl> {
 public:
  CModelReferenceCollImpl(IEntity& entity, IEntityImplCache& cache);

  /// Reads the entity's references. Called once.
  Result Fill();

  // IModelReferenceCollImpl
  Result GetItem(std::int32_t index, IModelReferenceImpl** reference) override;
  Result GetCount(std::int32_t* count) override;
  Result GetItemByName(std::u16string_view name, IModelReferenceImpl** reference) override;
  Result Exists(std::u16string_view name, bool* exists) override;
  Result GetIterator(easyImpl::tIIteratorImpl<IModelReferenceImpl>** iterator) override;

 private:
  ~CModelReferenceCollImpl() override = default;

  /// True if the entity is a local column or stands on one.
  bool IsLocalColumn();
  void AddReference(const WString& name, WString baseName, IRelation& relation);

  Ref<IEntity> m_entity;
  Ref<IEntityImplCache> m_cache;
  MemberList<IModelReferenceImpl> m_members;
  std::map<WString, WString, cor::NoCaseLess> m_namesByBase;
};

}  // namespace hv::vex
