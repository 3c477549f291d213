// core/store/memory/MixedLinks.h - links along relations that lead to records of several entities.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "core/store/RecordStore.h"

namespace hv::vex::engine {

/// The records that each record is linked to, in the order in which they were linked. Made for
/// documents of few records; such relations have no way back.
class MixedLinks final {
 public:
  /// Valid until the next change.
  [[nodiscard]] std::span<const RecordRef> Of(RecordRef record, std::int32_t relation) const;
  /// Adds a target at the end, in place of another one unless there is room for many. False if it
  /// is there already.
  bool Add(RecordRef record, std::int32_t relation, RecordRef target, bool isToMany);
  /// False if it isn't there.
  bool Remove(RecordRef record, std::int32_t relation, RecordRef target);
  /// Removes all links of a record and all to it.
  void Forget(RecordRef record);

 private:
  struct Less {
    using Key = std::pair<RecordRef, std::int32_t>;
    bool operator()(const Key& a, const Key& b) const {
      if (a.first.entity != b.first.entity) return a.first.entity < b.first.entity;
      if (a.first.id != b.first.id) return a.first.id < b.first.id;
      return a.second < b.second;
    }
  };
  std::map<Less::Key, std::vector<RecordRef>, Less> m_targets;  // no list is empty
};

}  // namespace hv::vex::engine
