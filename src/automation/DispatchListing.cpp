// automation/DispatchListing.cpp - names, ids and listings of members.
#include <algorithm>
#include <limits>

#include "automation/DispatchMap.h"
#include "automation/Guards.h"

namespace hv::automation {

namespace {

bool HasId(std::span<const MemberRow> rows, std::int32_t id) {
  return std::ranges::any_of(rows, [id](const MemberRow& row) { return row.id == id; });
}

/// True for the row that stands for its member in a listing: the first of its name, and none of a
/// class further up replaces it.
bool IsListed(const DispatchMap& top, const DispatchMap& level, std::size_t index) {
  const std::int32_t id = level.rows[index].id;
  for (const DispatchMap* above = &top; above != &level; above = above->base) {
    if (HasId(above->rows, id)) return false;
  }
  return !HasId(level.rows.first(index), id);
}

/// Walks the members, those of bases first, in their declared order. Gives the one at which `skip`
/// has come down to 0, or null with `skip` lowered by the number of members.
const MemberRow* MemberAt(const DispatchMap& top, const DispatchMap* level, std::uint32_t& skip) {
  if (!level) return nullptr;
  if (const MemberRow* found = MemberAt(top, level->base, skip)) return found;
  for (std::size_t i = 0; i < level->rows.size(); ++i) {
    if (!IsListed(top, *level, i)) continue;
    if (skip == 0) return &level->rows[i];
    --skip;
  }
  return nullptr;
}

}  // namespace

Result FindMemberId(const DispatchMap& map, std::u16string_view name, std::int32_t* id) {
  HV_RETURN_IF_NULL(id);
  for (const DispatchMap* level = &map; level; level = level->base) {
    const auto at = std::ranges::lower_bound(
        level->byName, name,
        [](std::u16string_view a, std::u16string_view b) { return CompareForLookup(a, b) < 0; },
        [level](std::uint16_t i) { return level->rows[i].name; });
    if (at != level->byName.end() && CompareForLookup(level->rows[*at].name, name) == 0) {
      *id = level->rows[*at].id;
      return S_OK;
    }
  }
  *id = kDispIdUnknown;
  return DISP_E_UNKNOWNNAME;
}

std::uint32_t CountMembers(const DispatchMap& map) {
  constexpr std::uint32_t kAll = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t skip = kAll;
  (void)MemberAt(map, &map, skip);
  return kAll - skip;
}

Result DescribeMember(const DispatchMap& map, std::uint32_t index, MemberInfo* info) {
  HV_RETURN_IF_NULL(info);
  *info = {};
  const MemberRow* member = MemberAt(map, &map, index);
  HV_RETURN_CODE_IF(!member, E_INVALIDARG);
  *info = {member->name, member->id, CallKind::None, member->argumentCount, member->requiredCount};
  for (const DispatchMap* level = &map; level; level = level->base) {
    for (const MemberRow& row : level->rows) {
      if (row.id == member->id) info->kinds |= row.kind;
    }
  }
  return S_OK;
}

}  // namespace hv::automation
