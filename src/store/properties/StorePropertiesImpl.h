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
#include "store/properties/ApplicationProperties.h"
#include "store/properties/IStorePropertiesImpl.h"

namespace hv::vex {

/// Made and filled by the element on first use, and dropped by it when it is saved or refreshed.
/// The list follows the instance: what can be taken out of it is taken from the instance itself.
///
/// Most lists are asked for a property or two by name. So the properties of the entity are made one
/// by one as they are asked for, and put into the collection when something is done that needs it
/// whole.
class CStorePropertiesImpl final : private CoreBinding,
                                   public easyImpl::tNamedCollectionImpl<IStorePropertiesImpl> {
 public:
  using Property = easyImpl::IPropertyImpl;

  /// \param cache  where the entity's properties are looked up when the list is filled; null: the
  ///               model is asked. Used once, so it need not live longer.
  explicit CStorePropertiesImpl(IInstance& instance, ApplicationPropertiesCache* cache = nullptr)
      : m_instance(Ref<IInstance>::Share(&instance)), m_cache(cache) {}

  // ICollectionImpl
  Result GetItem(std::int32_t index, Property** property) override;
  Result GetCount(std::int32_t* count) override;
  Result GetIterator(easyImpl::tIIteratorImpl<Property>** iterator) override;
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
  Result ReadApplication(Ref<CApplicationProperties>* application);
  [[nodiscard]] Names ReadInstanceNames() const;
  /// The property of the entity at that position.
  Property& ApplicationProperty(std::size_t position);
  Result MakeInstanceProperty(const WString& name, Ref<Property>* made) const;
  /// Puts all properties into the collection.
  Result List(Names instanceNames);
  /// Does so if they aren't there.
  Result List() { return m_isListed ? S_OK : List({}); }
  /// True if the name is exactly the base name of an attribute that may be shown.
  [[nodiscard]] bool IsBaseName(std::u16string_view name) const;
  Result AddNew(std::u16string_view name, const Variant& value, std::int32_t type,
                Property** property);
  Result AddCopy(Property& source, std::u16string_view prefix);
  /// @}
  /// Takes the name and the property out of the lists, not out of the instance.
  void Forget(std::u16string_view name);

  Ref<IInstance> m_instance;
  ApplicationPropertiesCache* m_cache;
  bool m_listInstanceProperties = false;
  Ref<CApplicationProperties> m_application;  // null: not filled
  std::vector<Ref<Property>> m_made;          // those of the entity; null: not asked for yet
  Names m_instanceNames;
  bool m_isListed = false;  // the collection has them all
};

}  // namespace hv::vex
