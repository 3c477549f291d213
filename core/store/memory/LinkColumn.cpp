// core/store/memory/LinkColumn.cpp - compact link lists with changed rows kept apart.
#include "core/store/memory/LinkColumn.h"

#include <algorithm>
#include <utility>

namespace hv::vex::engine {

std::span<const Row> LinkColumn::Of(Row row) const {
  if (!m_isToMany) {
    if (row >= m_singles.size() || m_singles[row] == kNoRow) return {};
    return {&m_singles[row], 1};
  }
  if (!m_changed.empty()) {
    const auto changed = m_changed.find(row);
    if (changed != m_changed.end()) return changed->second;
  }
  if (std::size_t{row} + 1 >= m_starts.size()) return {};
  return std::span<const Row>(m_targets).subspan(m_starts[row], m_starts[row + 1] - m_starts[row]);
}

bool LinkColumn::Has(Row row, Row target) const {
  const std::span<const Row> targets = Of(row);
  return std::find(targets.begin(), targets.end(), target) != targets.end();
}

std::vector<Row>& LinkColumn::ListOf(Row row) {
  const auto changed = m_changed.find(row);
  if (changed != m_changed.end()) return changed->second;
  const std::span<const Row> old = Of(row);
  return m_changed.emplace(row, std::vector<Row>(old.begin(), old.end())).first->second;
}

void LinkColumn::Add(Row row, Row target) {
  if (m_isToMany) {
    ListOf(row).push_back(target);
    return;
  }
  if (row >= m_singles.size()) m_singles.resize(std::size_t{row} + 1, kNoRow);
  m_singles[row] = target;
}

void LinkColumn::Remove(Row row, Row target) {
  if (!Has(row, target)) return;
  if (!m_isToMany) {
    m_singles[row] = kNoRow;
    return;
  }
  std::vector<Row>& list = ListOf(row);
  list.erase(std::find(list.begin(), list.end(), target));
}

void LinkColumn::Clear(Row row) {
  if (Of(row).empty()) return;
  if (!m_isToMany) {
    m_singles[row] = kNoRow;
  } else {
    ListOf(row).clear();
  }
}

void LinkColumn::SetLists(std::vector<std::uint32_t> starts, std::vector<Row> targets) {
  m_starts = std::move(starts);
  m_targets = std::move(targets);
}

}  // namespace hv::vex::engine
