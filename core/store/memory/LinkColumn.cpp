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
    if (changed != m_changed.end()) {
      Settle(changed->second);
      return changed->second.rows;
    }
  }
  if (std::size_t{row} + 1 >= m_starts.size()) return {};
  return std::span<const Row>(m_targets).subspan(m_starts[row], m_starts[row + 1] - m_starts[row]);
}

std::size_t LinkColumn::CountOf(Row row) const {
  const auto changed = m_changed.find(row);
  if (changed == m_changed.end()) return Of(row).size();
  return changed->second.rows.size() - changed->second.removed.size();
}

bool LinkColumn::Has(Row row, Row target) const {
  const std::span<const Row> targets = Of(row);
  return std::find(targets.begin(), targets.end(), target) != targets.end();
}

LinkColumn::List& LinkColumn::ListOf(Row row) {
  const auto changed = m_changed.find(row);
  if (changed != m_changed.end()) return changed->second;
  const std::span<const Row> old = Of(row);
  return m_changed.emplace(row, List{{old.begin(), old.end()}, {}}).first->second;
}

void LinkColumn::Settle(List& list) {
  if (list.removed.empty()) return;
  std::sort(list.removed.begin(), list.removed.end());
  std::erase_if(list.rows, [&list](Row row) {
    return std::binary_search(list.removed.begin(), list.removed.end(), row);
  });
  list.removed.clear();
}

void LinkColumn::Add(Row row, Row target) {
  if (m_isToMany) {
    List& list = ListOf(row);
    Settle(list);  // the target may be one that was removed
    list.rows.push_back(target);
    return;
  }
  if (row >= m_singles.size()) m_singles.resize(std::size_t{row} + 1, kNoRow);
  m_singles[row] = target;
}

void LinkColumn::Remove(Row row, Row target) {
  if (m_isToMany) {
    ListOf(row).removed.push_back(target);
  } else {
    m_singles[row] = kNoRow;
  }
}

void LinkColumn::Clear(Row row) {
  if (CountOf(row) == 0) return;
  if (!m_isToMany) {
    m_singles[row] = kNoRow;
  } else {
    ListOf(row) = List();
  }
}

void LinkColumn::SetLists(std::vector<std::uint32_t> starts, std::vector<Row> targets) {
  m_starts = std::move(starts);
  m_targets = std::move(targets);
}

}  // namespace hv::vex::engine
