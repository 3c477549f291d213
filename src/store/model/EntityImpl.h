// store/model/EntityImpl.h - an entity of the model.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IEntity.h"
#include "store/model/IEntityImpl.h"

namespace hv::vex {

class CEntityImplCache;
class CModelPropertyCollImpl;

/// Reads its properties when it is made and when the model has grown, and its references at each
/// request.
class CEntityImpl final : private CoreBinding, public cor::Counted<IEntityImpl> {
 public:
  /// \param cache  not held; calls `ForgetCache` before it goes
  CEntityImpl(CEntityImplCache& cache, IEntity& entity, std::u16string_view name);

  /// Reads the properties.
  Result Init();
  void ForgetCache() { m_cache = nullptr; }

  // IEntityImpl
  Result GetName(WString* name) override;
  Result GetModelProperties(IModelPropertyCollImpl** properties) override;
  Result GetModelReferences(IModelReferenceCollImpl** references) override;
  Result GetSubTypes(IEntityCollImpl** subTypes) override;
  Result GetSuperType(IEntityImpl** superType) override;
  Result IsKindOf(std::u16string_view name, std::int32_t* isKindOf) override;
  Result IsBaseType(std::int32_t* isBaseType) override;
  Result Reserved() override { return S_OK; }

 private:
  ~CEntityImpl() override;

  [[nodiscard]] std::uint64_t ModelStamp() const;

  CEntityImplCache* m_cache;
  Ref<IEntity> m_entity;
  WString m_name;
  Ref<CModelPropertyCollImpl> m_properties;
  std::uint64_t m_modelStamp = 0;  // when the properties were read
};

}  // namespace hv::vex
