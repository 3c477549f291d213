// query/objects/StoreNames.h - names of entities and properties as hosts give them, and the
// internal ones that outlive them.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/IBrowseConfig.h>
#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/WString.h>

#include "store/core/IEntity.h"
#include "store/core/IModel.h"

namespace hv::vex {

/// What is wrong with a property of a condition; 0 if nothing is. Frozen numbers.
namespace pathflag {
inline constexpr std::int32_t kValid = 0;
inline constexpr std::int32_t kRecursive = 1;    ///< comes back to an entity of its own way
inline constexpr std::int32_t kUnknown = 2;      ///< no such entity or property, or no store
inline constexpr std::int32_t kType = 4;         ///< neither text nor number nor date
inline constexpr std::int32_t kVector = 8;       ///< more than one value
inline constexpr std::int32_t kBrowsePath = 16;  ///< leads back to an entity of the browse path
inline constexpr std::int32_t kAmbiguous = 64;   ///< a reference without a way back of its own
}  // namespace pathflag

/// The number of the message for a path check's flags; 0 for a valid path.
std::int32_t PathCheckMessage(std::int32_t flags);

/// The names of one model. Internal names start at the measurement quantity, which every store of
/// measurements has: an entity is the path of references from there, a property is told by its base
/// name. A plain value that keeps the model; made without one it knows nothing.
///
/// Operations throw what the engine throws; failures leave out texts empty.
class StoreNames final {
 public:
  StoreNames() = default;
  explicit StoreNames(Ref<IModel> model) : m_model(std::move(model)) {}

  [[nodiscard]] IModel* Model() const { return m_model.Get(); }
  /// By application name, or by base name; in any case of letters if neither is there exactly.
  [[nodiscard]] Ref<IEntity> FindEntity(std::u16string_view name) const;
  /// The name of the application entity that stands on a base entity, or `otherwise`.
  [[nodiscard]] WString ApplicationName(std::u16string_view baseName,
                                        std::u16string_view otherwise) const;

  /// The internal name of an entity: empty for the measurement quantity. A model without one has
  /// nowhere to start; its entities go by their own names.
  /// \return S_OK; E_INVALIDARG for an unknown entity and for one without a way to it
  Result InternalEntity(std::u16string_view entity, WString* internal) const;
  /// The internal name of a property or of a path to one.
  /// \return S_OK; E_INVALIDARG for an unknown one
  Result InternalProperty(std::u16string_view entity, std::u16string_view property,
                          WString* internal) const;
  /// The way back. A text that is no way is taken as an entity's name.
  /// \return S_OK; E_INVALIDARG for what the model doesn't have
  Result ExternalEntity(std::u16string_view internal, WString* entity) const;
  /// The way back from internal entity, which may be empty, and property, joined with ".".
  /// \return S_OK; E_INVALIDARG for what the model doesn't have
  Result ExternalNames(std::u16string_view internal, WString* entity, WString* property) const;
  /// The way from one entity to another by the names of references.
  /// \return S_OK, with an empty path from an entity to itself; E_INVALIDARG if there is none
  Result FindPath(std::u16string_view from, std::u16string_view to, WString* path) const;

  /// Looks whether a condition can be on a property or on a path to one.
  /// \param browseConfig  whose entities a path must not come back to; may be null
  /// \return flags of `pathflag`, those of the first step that is wrong
  [[nodiscard]] std::int32_t CheckPath(std::u16string_view entity, std::u16string_view property,
                                       IBrowseConfig* browseConfig) const;

 private:
  [[nodiscard]] Ref<IEntity> MeasurementQuantity() const;

  Ref<IModel> m_model;
};

}  // namespace hv::vex
