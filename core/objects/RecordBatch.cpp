#include "core/objects/RecordBatch.h"

#include <algorithm>
#include <span>

#include <time.h>

namespace hv::vex::engine {
namespace {

/// A clock that costs next to nothing and is good to some milliseconds.
std::int64_t Milliseconds() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

}  // namespace

RecordBatch::Asked& RecordBatch::NoteOf(EntityId entity, std::int32_t attribute) {
  for (Asked& asked : m_asked) {
    if (asked.attribute == attribute && asked.entity == entity) return asked;
  }
  return m_asked.emplace_back(Asked{entity, attribute, kNowhere});
}

bool RecordBatch::IsFresh(const StoreObject& store) const {
  return m_readAt == store.Now() && m_stamp == store.Records().ChangeStamp() &&
         Milliseconds() - m_readTime <= kLongestMilliseconds;
}

void RecordBatch::ReadWindow(const StoreObject& store, std::uint64_t position, RecordRef record) {
  // A window that served to its end is followed by a larger one.
  const bool goesOn = m_count > 0 && position == m_first + m_count;
  const std::uint64_t wanted = goesOn ? std::min<std::uint64_t>(m_count * 2, kMost) : kFewest;
  const std::span<const RecordId> ids = m_records.From(position, wanted);
  std::vector<std::int32_t> attributes{store.GetCoreModel().At(record.entity).idAttribute};
  for (Asked& asked : m_asked) {
    asked.column = kNoColumn;
    if (asked.entity != record.entity) continue;
    if (asked.attribute == attributes.front()) {
      asked.column = 0;
    } else if (asked.position == position || asked.position + 1 == position) {
      asked.column = attributes.size();
      attributes.push_back(asked.attribute);
    }
  }
  m_count = 0;
  m_readAt = store.Now();
  m_stamp = store.Records().ChangeStamp();
  m_readTime = Milliseconds();
  m_blocks = store.Records().ReadColumns(record.entity, ids, attributes);
  m_first = position;
  m_count = ids.size();
}

RecordBatch::Cell RecordBatch::Find(const StoreObject& store, std::uint64_t position,
                                    RecordRef record, std::int32_t attribute) {
  const std::int32_t idAttribute = store.GetCoreModel().At(record.entity).idAttribute;
  if (store.Records().ChangeStamp() == 0 || idAttribute == kNone || position >= m_records.Size() ||
      m_records.At(position) != record) {
    return {};
  }
  Asked& asked = NoteOf(record.entity, attribute);
  const bool isWalk = asked.position + 1 == position;
  asked.position = position;
  const auto isInWindow = [&] {
    return asked.column != kNoColumn && position >= m_first && position - m_first < m_count;
  };
  if (!isInWindow() || !IsFresh(store)) {
    if (!isWalk) return {};
    ReadWindow(store, position, record);
  }
  const auto row = static_cast<std::size_t>(position - m_first);
  if (attribute != idAttribute && m_blocks.front().isNull[row] != 0) return {};
  return {&m_blocks[asked.column], row};
}

}  // namespace hv::vex::engine
