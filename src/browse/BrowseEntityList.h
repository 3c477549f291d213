// browse/BrowseEntityList.h - roots or children: not counted, since the configuration's map owns
// its entities, and with two cursors that have nothing to do with each other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace hv::vex {

class tBrowseConfigEntityImpl;

class BrowseEntityList {
 public:
  using Entity = tBrowseConfigEntityImpl;

  [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(m_entities.size()); }
  [[nodiscard]] Entity* First() const { return m_entities.empty() ? nullptr : m_entities.front(); }
  [[nodiscard]] const std::vector<Entity*>& All() const { return m_entities; }
  void Append(Entity& entity) { m_entities.push_back(&entity); }
  void Remove(const Entity& entity) { std::erase(m_entities, &entity); }
  void Clear() { m_entities.clear(); }

  /// Null at the end.
  Entity* FirstForPath() { return At(m_pathCursor = 0); }
  Entity* NextForPath() { return Next(&m_pathCursor); }
  Entity* FirstEntity() { return At(m_entityCursor = 0); }
  Entity* NextEntity() { return Next(&m_entityCursor); }

 private:
  [[nodiscard]] Entity* At(std::size_t index) const {
    return index < m_entities.size() ? m_entities[index] : nullptr;
  }
  Entity* Next(std::size_t* cursor) {
    if (*cursor < m_entities.size()) ++*cursor;
    return At(*cursor);
  }

  std::vector<Entity*> m_entities;
  std::size_t m_pathCursor = 0;
  std::size_t m_entityCursor = 0;
};

}  // namespace hv::vex
