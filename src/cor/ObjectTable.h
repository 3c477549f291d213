// cor/ObjectTable.h - the living objects of an owner, found by a key that they carry themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace hv::cor {

/// A hash table of plain pointers that owns nothing. Each place keeps the object's hash beside it,
/// so that objects other than the one sought are hardly ever touched; at least a quarter of the
/// places is free. `Traits` has `Key`, `static Key KeyOf(const T&)` and `static std::uint64_t
/// HashOf(const Key&)`, which need not be well mixed. The key of an object in the table must not
/// change.
template <class T, class Traits>
class ObjectTable {
 public:
  using Key = typename Traits::Key;

  [[nodiscard]] std::size_t Size() const { return m_size; }
  /// The object of that key; null if there is none.
  [[nodiscard]] T* Find(const Key& key) const {
    return m_places.empty() ? nullptr : m_places[PlaceOf(key, Traits::HashOf(key))].object;
  }
  /// Makes room for that many objects in all.
  void Reserve(std::size_t count) {
    std::size_t places = m_places.size() > kFewest ? m_places.size() : kFewest;
    while (count > places / 4 * 3) places *= 2;
    if (places > m_places.size()) Rehash(places);
  }
  /// Adds an object whose key isn't in the table.
  void Insert(T& object) {
    Reserve(m_size + 1);
    Put({Traits::HashOf(Traits::KeyOf(object)), &object});
    ++m_size;
  }
  /// Takes the object of that key out; nothing happens if there is none.
  void Erase(const Key& key) {
    if (m_places.empty()) return;
    std::size_t hole = PlaceOf(key, Traits::HashOf(key));
    if (!m_places[hole].object) return;
    // What stands behind the hole and may stand in it moves there, so that no search stops short.
    for (std::size_t at = Next(hole); m_places[at].object; at = Next(at)) {
      if (Distance(HomeOf(m_places[at].hash), at) < Distance(hole, at)) continue;
      m_places[hole] = m_places[at];
      hole = at;
    }
    m_places[hole] = {};
    --m_size;
    if (m_places.size() > kFewest && m_size < m_places.size() / 8) Rehash(m_places.size() / 2);
  }
  /// Calls `visit(T&)` for every object, in no order. It must not change the table.
  template <class Visit>
  void ForEach(Visit visit) const {
    for (const Place& place : m_places) {
      if (place.object) visit(*place.object);
    }
  }

 private:
  static constexpr std::size_t kFewest = 16;

  struct Place {
    std::uint64_t hash = 0;
    T* object = nullptr;  ///< null: free
  };

  [[nodiscard]] std::size_t Next(std::size_t place) const {
    return (place + 1) & (m_places.size() - 1);
  }
  [[nodiscard]] std::size_t Distance(std::size_t from, std::size_t to) const {
    return (to - from) & (m_places.size() - 1);
  }
  /// Hashes that follow each other stand beside each other by fours, which is a line of the cache:
  /// numbers and addresses given out in a row are mostly asked for in a row.
  [[nodiscard]] std::size_t HomeOf(std::uint64_t hash) const {
    const std::uint64_t mixed = (hash >> 2) * 0x9E3779B97F4A7C15ULL >> 32;
    return static_cast<std::size_t>(mixed << 2 | (hash & 3)) & (m_places.size() - 1);
  }
  /// The place of the object with that key, or the free one where it would stand.
  [[nodiscard]] std::size_t PlaceOf(const Key& key, std::uint64_t hash) const {
    std::size_t at = HomeOf(hash);
    while (m_places[at].object &&
           !(m_places[at].hash == hash && Traits::KeyOf(*m_places[at].object) == key)) {
      at = Next(at);
    }
    return at;
  }
  void Put(Place entry) {
    std::size_t at = HomeOf(entry.hash);
    while (m_places[at].object) at = Next(at);
    m_places[at] = entry;
  }
  void Rehash(std::size_t places) {
    std::vector<Place> old(places);
    old.swap(m_places);
    for (const Place& place : old) {
      if (place.object) Put(place);
    }
  }

  std::vector<Place> m_places;  // as many as a power of two
  std::size_t m_size = 0;
};

}  // namespace hv::cor
