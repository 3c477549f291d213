// query/objects/AttributePath.h - a property named by a path of references, and the walk along it.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/WString.h>

#include "store/core/IEntity.h"

namespace hv::vex {

/// One reference of a path.
struct AttributePathStep {
  Ref<IEntity> source;
  Ref<IRelation> relation;
  Ref<IEntity> target;
};

/// "reference.reference.property" as seen from an entity, taken apart, with a place that moves
/// along the references. Names may be own names or base names; they may hold dots themselves: the
/// longest name that exists wins. A plain value.
class AttributePathInfo final {
 public:
  /// Takes a path apart; the place is before its first reference.
  /// \param wantsProperty  the last part is a property, not a reference; a path of references may
  ///                       be empty
  /// \return S_OK; E_INVALIDARG for a name that doesn't exist, and for a reference on the way to an
  ///         entity of the base model alone, at which every way ends. Throws what the engine
  ///         throws.
  Result Parse(IEntity& start, std::u16string_view path, bool wantsProperty);

  /// Moves to the next reference. False at the end.
  bool Next();
  /// The reference at the place; there must be one.
  [[nodiscard]] const AttributePathStep& Current() const { return m_steps[m_position - 1]; }
  /// References passed so far.
  [[nodiscard]] std::size_t GetPosition() const { return m_position; }
  void SetPosition(std::size_t position) { m_position = position; }

  [[nodiscard]] const std::vector<AttributePathStep>& Steps() const { return m_steps; }
  /// Where the path ends: the entity that has the property.
  [[nodiscard]] IEntity& Target() const;
  /// The property's own name; empty for a path of references.
  [[nodiscard]] const WString& Property() const { return m_property; }
  /// The path by base names, where an entity's base name leads to the same member, otherwise by own
  /// names. It outlives a change of names from store to store.
  [[nodiscard]] WString BaseNames() const;

 private:
  bool TakeProperty(std::u16string_view name);
  /// Passes the longest reference at the start of `rest`, which loses it.
  bool TakeReference(std::u16string_view* rest);

  Ref<IEntity> m_start;
  std::vector<AttributePathStep> m_steps;
  WString m_property;
  std::size_t m_position = 0;
};

/// Puts a path back at the place where it was, however a search moves it meanwhile.
template <class Path>
class tAttributePathInfoAutoPosition final {
 public:
  explicit tAttributePathInfoAutoPosition(Path& path)
      : m_path(path), m_position(path.GetPosition()) {}
  ~tAttributePathInfoAutoPosition() { m_path.SetPosition(m_position); }
  tAttributePathInfoAutoPosition(const tAttributePathInfoAutoPosition&) = delete;
  tAttributePathInfoAutoPosition& operator=(const tAttributePathInfoAutoPosition&) = delete;

 private:
  Path& m_path;
  std::size_t m_position;
};

}  // namespace hv::vex
