// core/plugins/atfx/ColumnPlan.h - decides where the values of each local column are written.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>

#include "core/plugins/atfx/ComponentWriter.h"
#include "core/store/RecordStore.h"
#include "core/store/Watch.h"

namespace hv::vex::engine::atfx {

/// The file section stands before the values, so that long columns have to be written before the
/// XML begins. Keeps a description of those alone.
class ColumnPlan {
 public:
  struct Long {
    std::optional<Component> values, flags;
  };

  /// Writes the values and flags of all columns with more than `mostInline` values.
  void Make(const RecordStore& source, std::uint64_t mostInline, ComponentWriter& writer,
            WatchedSteps& steps);
  /// Null for a column whose values and flags are short.
  [[nodiscard]] const Long* Find(RecordRef column) const;

 private:
  void MakeBatch(const RecordStore& source, EntityId entity, std::span<const RecordId> ids,
                 std::uint64_t mostInline, ComponentWriter& writer, WatchedSteps& steps);

  std::unordered_map<EntityId, std::unordered_map<RecordId, Long>> m_long;
};

/// What is written for the values and flags of a column.
struct ColumnFacts {
  std::unique_ptr<ValueSource> values;     ///< null: none, or only the generation parameters
  std::unique_ptr<ValueSource> flags;      ///< null: none, or the global flag says as much
  std::optional<std::int64_t> globalFlag;  ///< one that stands for single flags
};
ColumnFacts ReadColumnFacts(const RecordStore& source, RecordRef column);

}  // namespace hv::vex::engine::atfx
