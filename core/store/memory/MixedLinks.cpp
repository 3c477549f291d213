#include "core/store/memory/MixedLinks.h"

#include <algorithm>
#include <iterator>

namespace hv::vex::engine {

std::span<const RecordRef> MixedLinks::Of(RecordRef record, std::int32_t relation) const {
  const auto found = m_targets.find({record, relation});
  if (found == m_targets.end()) return {};
  return found->second;
}

bool MixedLinks::Add(RecordRef record, std::int32_t relation, RecordRef target, bool isToMany) {
  std::vector<RecordRef>& targets = m_targets[{record, relation}];
  if (std::find(targets.begin(), targets.end(), target) != targets.end()) return false;
  if (!isToMany) targets.clear();
  targets.push_back(target);
  return true;
}

bool MixedLinks::Remove(RecordRef record, std::int32_t relation, RecordRef target) {
  const auto found = m_targets.find({record, relation});
  if (found == m_targets.end() || std::erase(found->second, target) == 0) return false;
  if (found->second.empty()) m_targets.erase(found);
  return true;
}

void MixedLinks::Forget(RecordRef record) {
  for (auto list = m_targets.begin(); list != m_targets.end();) {
    std::erase(list->second, record);
    const bool isGone = list->first.first == record || list->second.empty();
    list = isGone ? m_targets.erase(list) : std::next(list);
  }
}

}  // namespace hv::vex::engine
