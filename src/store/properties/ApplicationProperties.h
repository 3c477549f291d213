// store/properties/ApplicationProperties.h - which properties the records of an entity have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/DataType.h>
#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "store/core/IEntity.h"
#include "store/core/IInstance.h"

namespace hv::vex {

/// The attributes of an entity that are shown as properties, in the model's order. Read once, and
/// shared by the lists of all its records.
class CApplicationProperties final : public cor::Counted<IUnknown> {
 public:
  struct Member {
    WString name;
    WString baseName;  ///< empty: none
    enumDataType type = eNoType;
  };
  static constexpr std::size_t kNone = ~std::size_t{0};

  /// Reads them from the model of the record's store. Throws what the engine throws.
  /// \return S_OK; E_FAIL for a record of no entity
  static Result Read(IInstance& instance, Ref<CApplicationProperties>* properties);

  [[nodiscard]] const std::vector<Member>& Members() const { return m_members; }
  /// The position of the member of that very name; `kNone` if there is none.
  [[nodiscard]] std::size_t Find(std::u16string_view name) const;
  [[nodiscard]] std::size_t FindBaseName(std::u16string_view baseName) const;

 private:
  ~CApplicationProperties() override = default;

  std::vector<Member> m_members;
};

/// Keeps the lists of the entities that were asked for, until the model changes.
class ApplicationPropertiesCache {
 public:
  /// The list for a record. Codes and exceptions of `CApplicationProperties::Read`.
  Result Get(IInstance& instance, Ref<CApplicationProperties>* properties);

 private:
  struct Entry {
    Ref<IEntity> entity;
    Ref<CApplicationProperties> properties;
  };
  std::uint64_t m_modelStamp = 0;
  std::vector<Entry> m_entries;
};

}  // namespace hv::vex
