// store/model/EntityInt.h - entities and lists of them as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IDataStoreModel.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/WrapObject.h"
#include "store/model/IEntityImpl.h"

namespace hv::vex {

class CEntityInt final : public automation::DispatchImpl<CEntityInt, IModelEntity> {
 public:
  explicit CEntityInt(Ref<IEntityImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IModelEntity
  Result get_Name(WString* name) override;
  Result get_ModelProperties(IModelProperties** properties) override;
  Result get_ModelReferences(IModelReferences** references) override;
  Result get_SubTypes(IModelEntities** subTypes) override;
  Result get_SuperType(IModelEntity** superType) override;
  Result get_IsBaseType(std::int32_t* isBaseType) override;
  Result IsKindOf(const Variant& nameOrEntity, std::int32_t* isKindOf) override;

 private:
  ~CEntityInt() override = default;

  Ref<IEntityImpl> m_logic;
};

class CEntityCollInt final
    : public automation::tReadCollectionInt<
          CEntityCollInt, tReadTraits<IEntityCollImpl, IModelEntity, CEntityInt>, IModelEntities> {
 public:
  explicit CEntityCollInt(Ref<IEntityCollImpl> logic) : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IModelEntities
  Result Exists(const WString& name, std::int32_t* exists) override;

 private:
  ~CEntityCollInt() override = default;
};

}  // namespace hv::vex
