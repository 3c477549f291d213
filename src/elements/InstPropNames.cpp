// elements/InstPropNames.cpp - the names of an instance's properties, in groups.
#include "elements/InstPropNames.h"

#include <cstdint>
#include <span>
#include <utility>

#include <storefabric/DataType.h>
#include <storefabric/Ref.h>

#include "elements/TextList.h"
#include "store/core/IAttribute.h"
#include "store/core/IEntity.h"
#include "store/core/IInstance.h"
#include "store/core/IModel.h"
#include "store/core/IStore.h"

namespace hv::vex::easyImpl {

namespace {

tInstPropNames NamesOfEntity(IInstance& instance) {
  tInstPropNames names;
  const auto store = Ref<IStore>::Adopt(instance.GetStore());
  const auto model = Ref<IModel>::Adopt(store ? store->GetModel() : nullptr);
  const auto entity = Ref<IEntity>::Adopt(model ? model->GetEntityOf(&instance) : nullptr);
  if (!entity) return names;
  const auto list = Ref<IAttribute>::Adopt(entity->GetAttributeNames());
  const std::span<const WString> all = TextsOf(list.Get());
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (IsPropertyType(entity->GetAttributeType(i))) names.push_back(all[i]);
  }
  return names;
}

tInstPropNames NamesOfInstance(IInstance& instance) {
  tInstPropNames names;
  const auto list = Ref<IAttribute>::Adopt(instance.GetInstanceAttributeNames());
  for (const WString& name : TextsOf(list.Get())) {
    if (IsPropertyType(instance.GetInstanceAttributeType(name))) names.push_back(name);
  }
  return names;
}

}  // namespace

void CInstPropNames::Read(IInstance& instance) {
  tListInstPropNames groups(kInstanceGroup + 1);
  groups[kEntityGroup] = NamesOfEntity(instance);
  groups[kInstanceGroup] = NamesOfInstance(instance);
  m_groups = std::move(groups);
}

std::size_t CInstPropNames::Count() const {
  std::size_t count = 0;
  for (const tInstPropNames& group : m_groups) count += group.size();
  return count;
}

const WString* CInstPropNames::At(std::size_t position) const {
  for (const tInstPropNames& group : m_groups) {
    if (position < group.size()) return &group[position];
    position -= group.size();
  }
  return nullptr;
}

}  // namespace hv::vex::easyImpl
