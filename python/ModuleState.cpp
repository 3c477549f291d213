#include "python/ModuleState.h"

#include "python/Values.h"

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

const Member* MemberCache::FindByName(IDispatch& object, py::handle name) {
  constexpr std::size_t kMostUses = 4096;
  const Use use{object.GetClassName().data(), name.ptr()};
  if (const auto known = m_uses.find(use); known != m_uses.end()) return known->second;
  std::int32_t id = kDispIdUnknown;
  if (Failed(object.GetIdOfName(TextOf(name), &id))) return nullptr;
  const Member* const member = Find(object, id);
  if (member && PyUnicode_CHECK_INTERNED(name.ptr()) && m_uses.size() < kMostUses) {
    m_uses.emplace(use, member);
    name.inc_ref();
  }
  return member;
}

ModuleState& State() {
  static ModuleState& state = *new ModuleState;
  return state;
}

}  // namespace hv::python
