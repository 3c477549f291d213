// automation/ClassRegistry.h - the classes that a script can create by name.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include <storefabric/Dispatch.h>

#include "automation/NameOrder.h"

namespace hv::automation {

/// Makes an object, with one reference for the caller.
using ClassFactory = Result (*)(IDispatch** out);

/// A class that can be created without arguments.
struct ClassEntry {
  std::u16string_view progId;  ///< for instance u"VEX.DataStoreQuery"; published, frozen
  ClassFactory create = nullptr;
};

/// A view of a table of classes. The table is a constant of the layer that exports the library, so
/// nothing has to be registered while a module is loaded.
class ClassRegistry {
 public:
  constexpr explicit ClassRegistry(std::span<const ClassEntry> entries) : m_entries(entries) {}

  /// The entry of a class, compared without regard to case, or null.
  [[nodiscard]] const ClassEntry* TryFind(std::u16string_view progId) const;

  /// Makes an object of a class.
  /// \return S_OK; E_POINTER if `out` is null; CLASS_E_CLASSNOTAVAILABLE for an unknown ProgID;
  /// what
  ///         the factory says. `*out` is null on every failure.
  Result CreateObject(std::u16string_view progId, IDispatch** out) const;

  [[nodiscard]] constexpr std::span<const ClassEntry> Entries() const { return m_entries; }

 private:
  std::span<const ClassEntry> m_entries;
};

/// True if every class has a name and a factory, and no name stands twice in any letter case; for a
/// `static_assert` beside the table.
constexpr bool IsSound(std::span<const ClassEntry> entries) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].progId.empty() || !entries[i].create) return false;
    for (std::size_t j = 0; j < i; ++j) {
      if (CompareNames(entries[i].progId, entries[j].progId) == 0) return false;
    }
  }
  return true;
}

}  // namespace hv::automation
