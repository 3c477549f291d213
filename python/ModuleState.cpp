#include "python/ModuleState.h"

namespace hv::python {

const Member* MemberCache::Find(IDispatch& object, std::int32_t id) {
  const std::u16string_view className = object.GetClassName();
  auto known = m_classes.find(className);
  if (known == m_classes.end()) known = m_classes.try_emplace(std::u16string(className)).first;
  MembersById& members = known->second;
  if (const auto found = members.find(id); found != members.end()) return &found->second;
  MemberInfo info;
  const std::uint32_t count = object.GetMemberCount();
  for (std::uint32_t i = 0; i < count; ++i) {
    if (Failed(object.GetMember(i, &info)) || info.id != id) continue;
    Member member{id, info.kinds, info.argumentCount, std::u16string(info.name)};
    return &members.try_emplace(id, std::move(member)).first->second;
  }
  return nullptr;
}

ModuleState& State() {
  static ModuleState& state = *new ModuleState;
  return state;
}

}  // namespace hv::python
