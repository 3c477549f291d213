// store/properties/ApplicationProperties.cpp - which properties the records of an entity have.
#include "store/properties/ApplicationProperties.h"

#include <algorithm>
#include <span>
#include <utility>

#include "automation/Guards.h"
#include "elements/TextList.h"
#include "store/core/IAttribute.h"
#include "store/core/IModel.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kLocalColumnEntity = u"aolocalcolumn";
/// The element of a local column shows its flags value by value instead.
constexpr std::u16string_view kFlagsName = u"flags";

}  // namespace

Result CApplicationProperties::Read(IInstance& instance, Ref<CApplicationProperties>* properties) {
  const auto store = Ref<IStore>::Adopt(instance.GetStore());
  const auto model = Ref<IModel>::Adopt(store ? store->GetModel() : nullptr);
  HV_RETURN_CODE_IF(!model, E_FAIL);
  const auto entity = Ref<IEntity>::Adopt(model->GetEntityOf(&instance));
  HV_RETURN_CODE_IF(!entity, E_FAIL);
  const auto column = Ref<IEntity>::Adopt(model->GetEntityByName(kLocalColumnEntity));
  const bool isLocalColumn = column && instance.IsKindOf(column.Get()) != 0;
  auto read = MakeRef<CApplicationProperties>();
  const auto list = Ref<IAttribute>::Adopt(entity->GetAttributeNames());
  const std::span<const WString> names = TextsOf(list.Get());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::int32_t type = entity->GetAttributeType(i);
    if (!IsPropertyType(type)) continue;
    Member member{names[i], {}, static_cast<enumDataType>(type)};
    entity->GetAttributeBaseName(member.baseName, member.name);
    const bool isFlags =
        member.name.EqualsExact(kFlagsName) || member.baseName.EqualsExact(kFlagsName);
    if (!isLocalColumn || !isFlags) read->m_members.push_back(std::move(member));
  }
  *properties = std::move(read);
  return S_OK;
}

// Entities have few attributes, whose names mostly differ in length or in the first letters.
std::size_t CApplicationProperties::Find(std::u16string_view name) const {
  const auto at = std::ranges::find_if(
      m_members, [name](const Member& member) { return member.name.EqualsExact(name); });
  return at == m_members.end() ? kNone : static_cast<std::size_t>(at - m_members.begin());
}

std::size_t CApplicationProperties::FindBaseName(std::u16string_view baseName) const {
  if (baseName.empty()) return kNone;
  const auto at = std::ranges::find_if(m_members, [baseName](const Member& member) {
    return member.baseName.EqualsExact(baseName);
  });
  return at == m_members.end() ? kNone : static_cast<std::size_t>(at - m_members.begin());
}

Result ApplicationPropertiesCache::Get(IInstance& instance,
                                       Ref<CApplicationProperties>* properties) {
  const auto entity = Ref<IEntity>::Adopt(instance.GetEntity());
  const auto model = Ref<IModel>::Adopt(entity ? entity->GetModel() : nullptr);
  HV_RETURN_CODE_IF(!model, CApplicationProperties::Read(instance, properties));
  const std::uint64_t stamp = model->GetChangeCounter();
  if (stamp != m_modelStamp) m_entries.clear();
  m_modelStamp = stamp;
  for (const Entry& entry : m_entries) {
    if (entry.entity != entity) continue;
    *properties = entry.properties;
    return S_OK;
  }
  HV_RETURN_IF_FAILED(CApplicationProperties::Read(instance, properties));
  m_entries.push_back({entity, *properties});
  return S_OK;
}

}  // namespace hv::vex
