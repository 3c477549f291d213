// core/store/memory/IdIndex.cpp - ids to rows: by position, by bisection, or by hash.
#include "core/store/memory/IdIndex.h"

#include <algorithm>
#include <bit>

namespace hv::vex::engine {
namespace {

std::size_t HashOf(RecordId id) {
  auto bits = static_cast<std::uint64_t>(id) * 0x9E3779B97F4A7C15u;
  return static_cast<std::size_t>(bits ^ (bits >> 32));
}

}  // namespace

Row IdIndex::Find(RecordId id) const {
  if (m_ids.empty()) return kNoRow;
  if (m_isDense) {
    const std::uint64_t row =
        static_cast<std::uint64_t>(id) - static_cast<std::uint64_t>(m_ids.front());
    return row < m_ids.size() ? static_cast<Row>(row) : kNoRow;
  }
  if (m_isAscending) {
    const auto found = std::lower_bound(m_ids.begin(), m_ids.end(), id);
    if (found == m_ids.end() || *found != id) return kNoRow;
    return static_cast<Row>(found - m_ids.begin());
  }
  const std::size_t mask = m_slots.size() - 1;
  for (std::size_t slot = HashOf(id) & mask;; slot = (slot + 1) & mask) {
    if (m_slots[slot] == kNoRow) return kNoRow;
    if (m_ids[m_slots[slot]] == id) return m_slots[slot];
  }
}

Row IdIndex::Append(RecordId id) {
  const auto row = static_cast<Row>(m_ids.size());
  if (!m_ids.empty() && m_isAscending) {
    if (id <= m_ids.back()) {
      StartHashing();
    } else if (m_isDense &&
               static_cast<std::uint64_t>(id) != static_cast<std::uint64_t>(m_ids.back()) + 1) {
      m_isDense = false;
    }
  }
  m_ids.push_back(id);
  if (!m_isAscending) Insert(id, row);
  m_highest = std::max(m_highest, id);
  return row;
}

Row IdIndex::AppendUnnamed() {
  if (m_isAscending) StartHashing();
  m_ids.push_back(0);
  return static_cast<Row>(m_ids.size() - 1);
}

void IdIndex::StartHashing() {
  m_isDense = m_isAscending = false;
  m_slots.assign(std::bit_ceil(std::max<std::size_t>(16, m_ids.size() * 4)), kNoRow);
  for (std::size_t row = 0; row < m_ids.size(); ++row) Insert(m_ids[row], static_cast<Row>(row));
}

void IdIndex::Insert(RecordId id, Row row) {
  if ((m_used + 1) * 2 > m_slots.size()) Grow();
  const std::size_t mask = m_slots.size() - 1;
  std::size_t slot = HashOf(id) & mask;
  while (m_slots[slot] != kNoRow) slot = (slot + 1) & mask;
  m_slots[slot] = row;
  ++m_used;
}

void IdIndex::Grow() {
  std::vector<Row> old(m_slots.size() * 2, kNoRow);
  old.swap(m_slots);
  m_used = 0;
  for (const Row row : old) {
    if (row != kNoRow) Insert(m_ids[row], row);
  }
}

}  // namespace hv::vex::engine
