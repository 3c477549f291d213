// browse/RepresentedByPart.h - one part of a display name: a free text or a property.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "store/core/IAttribute.h"

namespace hv::vex {

class IEntity;

enum class PartKind : std::int32_t { Property = 0, FreeText = 1 };

/// A part. It is a free text if it has neither a property nor the name of one.
class IRepresentedByPartImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IRepresentedByPartImpl");

  virtual bool IsKind(PartKind kind) = 0;
  /// True for a free text that isn't empty, and for a property that is at hand; a part with only a
  /// property's name isn't valid.
  virtual bool IsValid() = 0;
  /// E_NOTIMPL for a part with a property.
  virtual Result GetFreeText(WString* text) = 0;
  virtual Result SetFreeText(std::u16string_view text) = 0;
  /// E_POINTER for a free text or a null argument; E_NOTIMPL if only the name is known.
  virtual Result GetProperty(IAttributeDefinition** property) = 0;
  /// E_POINTER for a free text or a null argument.
  virtual Result SetProperty(IAttributeDefinition* property) = 0;
  /// The property's name. E_NOTIMPL for a free text.
  virtual Result GetPropertyName(WString* name) = 0;
  /// The name under which other models may know the property too: its base name, where it has one
  /// that leads back to it, otherwise its own. E_NOTIMPL for a free text.
  virtual Result GetPropertyKey(WString* key) = 0;
  /// Keeps a name in the place of the property. E_NOTIMPL for a free text.
  virtual Result SetPropertyName(std::u16string_view name) = 0;

 protected:
  ~IRepresentedByPartImpl() = default;
};

class CRepresentedByPartImpl final : public cor::Counted<IRepresentedByPartImpl> {
 public:
  explicit CRepresentedByPartImpl(std::u16string_view freeText) : m_freeText(freeText) {}
  explicit CRepresentedByPartImpl(IAttributeDefinition& property)
      : m_property(Ref<IAttributeDefinition>::Share(&property)) {}

  // IRepresentedByPartImpl
  bool IsKind(PartKind kind) override;
  bool IsValid() override;
  Result GetFreeText(WString* text) override;
  Result SetFreeText(std::u16string_view text) override;
  Result GetProperty(IAttributeDefinition** property) override;
  Result SetProperty(IAttributeDefinition* property) override;
  Result GetPropertyName(WString* name) override;
  Result GetPropertyKey(WString* key) override;
  Result SetPropertyName(std::u16string_view name) override;

 private:
  ~CRepresentedByPartImpl() override = default;

  [[nodiscard]] bool IsFreeText() const { return !m_property && m_propertyName.empty(); }

  Ref<IAttributeDefinition> m_property;
  WString m_propertyName;
  WString m_freeText;
};

/// The definition of an attribute by own name or base name; null if there is none. Throws what the
/// engine throws.
Ref<IAttributeDefinition> FindAttributeDefinition(IEntity& entity, std::u16string_view name);

}  // namespace hv::vex
