// core/objects/RecordRuns.h - many records in little memory: runs of ids of one entity each.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "core/store/RecordStore.h"

namespace hv::vex::engine {

/// An ordered list of records, 8 bytes each where neighbours are of one entity.
class RecordRuns {
 public:
  void Append(RecordRef record) {
    if (m_runs.empty() || m_runs.back().entity != record.entity) {
      m_runs.push_back({record.entity, m_size, {}});
    }
    m_runs.back().ids.push_back(record.id);
    ++m_size;
  }
  void Append(EntityId entity, std::vector<RecordId> ids) {
    if (ids.empty()) return;
    const std::uint64_t first = m_size;
    m_size += ids.size();
    if (!m_runs.empty() && m_runs.back().entity == entity) {
      auto& last = m_runs.back().ids;
      last.insert(last.end(), ids.begin(), ids.end());
    } else {
      m_runs.push_back({entity, first, std::move(ids)});
    }
  }
  [[nodiscard]] std::uint64_t Size() const { return m_size; }
  /// The record at `index`, which must be below `Size()`.
  [[nodiscard]] RecordRef At(std::uint64_t index) const {
    const Run& run = RunAt(index);
    return {run.entity, run.ids[index - run.first]};
  }
  /// The ids from `index`, which must be below `Size()`, to the end of their run, at most `count`.
  [[nodiscard]] std::span<const RecordId> From(std::uint64_t index, std::uint64_t count) const {
    const Run& run = RunAt(index);
    const auto rest = std::span(run.ids).subspan(index - run.first);
    return rest.first(std::min<std::size_t>(rest.size(), count));
  }
  void Truncate(std::uint64_t count) {
    while (m_size > count) {
      auto& last = m_runs.back();
      if (last.first >= count) {
        m_size = last.first;
        m_runs.pop_back();
      } else {
        last.ids.resize(count - last.first);
        m_size = count;
      }
    }
  }
  void Clear() {
    m_runs.clear();
    m_size = 0;
  }

  struct Run {
    EntityId entity;
    std::uint64_t first;  ///< position of the run's first record in the list
    std::vector<RecordId> ids;
  };
  [[nodiscard]] const std::vector<Run>& Runs() const { return m_runs; }

 private:
  [[nodiscard]] const Run& RunAt(std::uint64_t index) const {
    std::size_t low = 0;
    std::size_t high = m_runs.size();
    while (high - low > 1) {
      const std::size_t middle = (low + high) / 2;
      (m_runs[middle].first <= index ? low : high) = middle;
    }
    return m_runs[low];
  }

  std::vector<Run> m_runs;
  std::uint64_t m_size = 0;
};

}  // namespace hv::vex::engine
