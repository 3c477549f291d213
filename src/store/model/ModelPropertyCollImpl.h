// store/model/ModelPropertyCollImpl.h - the properties of an entity.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IEntity.h"
#include "store/model/IModelPropertyImpl.h"
#include "store/model/MemberList.h"

namespace hv::vex {

class CModelPropertyCollImpl final : private CoreBinding,
                                     public cor::Counted<IModelPropertyCollImpl> {
 public:
  explicit CModelPropertyCollImpl(IEntity& entity) : m_entity(Ref<IEntity>::Share(&entity)) {}

  /// Reads the entity's attributes of property types; called again, appends those of new names.
  Result Fill();

  // IModelPropertyCollImpl
  Result GetItem(std::int32_t index, IModelPropertyImpl** property) override;
  Result GetCount(std::int32_t* count) override;
  Result GetItemByName(std::u16string_view name, IModelPropertyImpl** property) override;
  Result Exists(std::u16string_view name, bool* exists) override;

 private:
  ~CModelPropertyCollImpl() override = default;

  Ref<IEntity> m_entity;
  MemberList<IModelPropertyImpl> m_members;
};

}  // namespace hv::vex
