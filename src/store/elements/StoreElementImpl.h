// store/elements/StoreElementImpl.h - the element of a record of a store.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include <storefabric/IBrowseConfig.h>
#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "elements/VEXElementImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/SimplifiedDataStoreImpl.h"

namespace hv::vex {

/// Made by its provider only, which knows it while it lives.
class CStoreElementImpl
    : public easyImpl::tGUIVEXElementImpl<IBrowseConfigEntity, IStoreElementImpl> {
 public:
  /// \param level  null for an element outside the browse path
  CStoreElementImpl(CSimplifiedDataStoreImpl& provider, IInstance& instance,
                    IBrowseConfigEntity* level);

  // IVEXElementImpl
  Result GetName(WString* name) override;
  Result SetName(std::u16string_view name) override;
  Result IsKindOf(std::u16string_view type, std::int32_t* isKindOf) override;
  Result GetPath(WString* path) override;
  Result GetBrowseLevel(std::int32_t* level) override;
  Result GetChildren(easyImpl::IVEXElementsImpl** children) override;
  Result GetChildrenFiltered(std::u16string_view filter,
                             easyImpl::IVEXElementsImpl** children) override;
  Result HasChildren(std::int32_t* hasChildren) override;
  Result GetParent(easyImpl::IVEXElementImpl** parent) override;
  Result GetTransportData(IDispatch** collection) override;
  Result Refresh() override;
  Result GetDisplayType(WString* type) override;
  Result GetDisplayName(WString* name) override;

  // IStoreElementImpl
  Result GetReferences(IReferencesImpl** references) override;
  Result GetInstanceKey(WString* key) override;
  Result GetIdText(WString* text) override;
  Result Save() override;
  Result GetProvider(easyImpl::ISimplifiedStoreImpl** provider) override;
  Result GetBulkInterface(IStoreElementBulkImpl** bulk) override;
  Result GetChildrenPrefetched(std::u16string_view filter, std::u16string_view referenceName,
                               IStoreElementListImpl** children) override;
  IInstance* GetCoreInstance() override { return &Instance(); }
  void* QueryInternal(const Iid& iid) override { return FindFace(iid); }
  Result CreateElementList(IStoreElementListImpl** list) override;
  Result GetStore(IStore** store) override { return m_provider->GetStore(store); }
  Result GetBrowseConfig(IBrowseConfig** config) override {
    return m_provider->GetBrowseConfig(config);
  }
  void SetCachedName(WString name) override { m_name = std::move(name); }
  void SetCachedDisplayName(WString name) override { m_displayName = std::move(name); }
  void SetNameClient(IElementNameClient* client) override { m_nameClient = client; }
  void DropNameClient(IElementNameClient* client) override {
    if (m_nameClient == client) m_nameClient = nullptr;
  }
  void ResetBrowseData() override { m_configStamp = kNoStamp; }

  /// What the provider finds it by.
  [[nodiscard]] const IInstance* Key() const { return &Instance(); }

 protected:
  ~CStoreElementImpl() override;

  Result MakeProperties(IInstance& instance,
                        easyImpl::IPropertyCollectionImpl** properties) override;

 private:
  /// The generation of no configuration: the element looks for its place at the next refresh.
  static constexpr std::uint64_t kNoStamp = ~std::uint64_t{0};

  /// The place in the path that is in force now.
  void FollowBrowseConfig();
  /// Remembers the parent, unless that would make a ring of elements that hold each other.
  void KeepParent(CStoreElementImpl& parent);
  [[nodiscard]] Ref<IEntity> Entity() const;

  Ref<CSimplifiedDataStoreImpl> m_provider;
  Ref<CStoreElementImpl> m_parent;  // found on first use
  WString m_name;                   // empty: not read
  WString m_displayName;            // empty: not made
  IElementNameClient* m_nameClient = nullptr;
  std::uint64_t m_configStamp = kNoStamp;  // when the place in the path was looked up
};

}  // namespace hv::vex
