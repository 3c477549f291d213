// store/properties/StorePropertiesImpl.h - the properties of an element of a store.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>

#include "store/collections/NamedCollectionImpl.h"
#include "store/core/CoreBinding.h"
#include "store/core/IEntity.h"
#include "store/core/IInstance.h"
#include "store/properties/IStorePropertiesImpl.h"

namespace hv::vex {

/// Made and filled by the element on first use, and dropped by it when it is saved or refreshed.
/// The list follows the instance: what can be taken out of it is taken from the instance itself.
class CStorePropertiesImpl final : private CoreBinding,
                                   public easyImpl::tNamedCollectionImpl<IStorePropertiesImpl> {
 public:
  using Property = easyImpl::IPropertyImpl;

  explicit CStorePropertiesImpl(IInstance& instance)
      : m_instance(Ref<IInstance>::Share(&instance)) {}

  // ICollectionImpl
  /// `Remove` of the name at that index.
  Result RemoveAt(std::int32_t index) override;
  /// E_NOTIMPL: the entity's properties can't go.
  Result Clear() override;
  /// E_NOTIMPL: the order is that of the model.
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override;

  // INamedCollectionImpl
  /// Finds base names as well.
  Result GetItemByName(std::u16string_view name, Property** property) override;
  /// `Remove`.
  Result RemoveByName(std::u16string_view name) override;
  Result Exists(std::u16string_view name, bool* exists) override;
  /// E_NOTIMPL.
  Result Rename(std::u16string_view oldName, std::u16string_view newName, WString* unique) override;

  // IPropertyCollectionImpl
  Result Add(std::u16string_view name, const Variant& value, Property** property) override;
  /// \return S_OK; VEX_E_INSTANCE_PROPERTIES_OFF; VEX_E_APPLICATION_PROPERTY; E_INVALIDARG for an
  ///         unknown name; VEX_E_WRITE_PROTECTED.
  Result Remove(std::u16string_view name) override;
  /// Removes the instance properties. VEX_E_INSTANCE_PROPERTIES_OFF; VEX_E_WRITE_PROTECTED.
  Result RemoveAll() override;
  /// Takes over all values of each property, with its type.
  Result AddProperties(easyImpl::IPropertyCollectionImpl* properties,
                       std::u16string_view prefix) override;

  // IStorePropertiesImpl
  Result Add(std::u16string_view name, const Variant& value, std::int32_t type,
             Property** property) override;
  Result GetListInstanceProperties(std::int32_t* list) override;
  Result SetListInstanceProperties(std::int32_t list) override;
  Result Fill() override;
  Result IsApplicationProperty(std::u16string_view name, std::int32_t* isApplication) override;

 private:
  using Named = easyImpl::tNamedCollectionImpl<IStorePropertiesImpl>;
  using Names = std::vector<WString>;

  ~CStorePropertiesImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// \name Throw what the engine throws
  /// @{
  /// The way to the entity is by the store's model, which every engine has. May be null.
  [[nodiscard]] Ref<IEntity> GetEntity() const;
  [[nodiscard]] bool IsLocalColumn() const;
  Result ReadApplicationNames(Names* names) const;
  [[nodiscard]] Names ReadInstanceNames() const;
  Result MakeProperty(const WString& name, bool isApplicationProperty, Ref<Property>* made) const;
  /// Makes the properties of these names and then puts them in place of those that are there.
  Result Rebuild(Names applicationNames, Names instanceNames);
  /// The own name of the attribute behind a base name; empty if there is none.
  [[nodiscard]] WString OwnNameOf(std::u16string_view baseName) const;
  /// True if the name is exactly the base name of an attribute that may be shown.
  [[nodiscard]] bool IsBaseName(std::u16string_view name) const;
  Result AddNew(std::u16string_view name, const Variant& value, std::int32_t type,
                Property** property);
  Result AddCopy(Property& source, std::u16string_view prefix);
  /// @}
  /// Takes the name and the property out of the lists, not out of the instance.
  void Forget(std::u16string_view name);

  Ref<IInstance> m_instance;
  bool m_listInstanceProperties = false;
  Names m_applicationNames;
  Names m_instanceNames;
  bool m_filled = false;
};

}  // namespace hv::vex
