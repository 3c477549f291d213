// store/elements/SimplifiedDataStoreImpl.h - the provider of a store's elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "browse/BrowseConfigImpl.h"
#include "browse/SymbolImage.h"
#include "cor/Counted.h"
#include "cor/ObjectTable.h"
#include "store/core/CoreBinding.h"
#include "store/core/IModel.h"
#include "store/core/IStore.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/properties/ApplicationProperties.h"

namespace hv::vex {

class CStoreElementImpl;

/// What an element takes over from its entity. Good as long as nobody changes the browse path: kept
/// for the length of one batch only.
struct ElementKind {
  Ref<IEntity> entity;
  Ref<IBrowseConfigEntity> level;  ///< null outside the browse path
  bool isColumn = false;
};

/// Stands between a session and its elements. Knows the living elements by plain pointers, which
/// they take out when they die; the elements hold it.
class CSimplifiedDataStoreImpl final : private CoreBinding,
                                       public cor::Counted<easyImpl::ISimplifiedStoreImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::CSimplifiedDataStoreImpl");

  /// \param config  null: the store's default. Throws `cErrCode`: eWrongClass for a configuration
  ///                that isn't this library's, eOutOfMemory, eTimeout, eFailure.
  CSimplifiedDataStoreImpl(IStore& store, IBrowseConfig* config);

  // ISimplifiedDataProviderImpl
  Result GetStoreName(WString* name) override;
  Result NotUsed() override { return E_NOTIMPL; }
  Result GetDisplayLocation(WString* name, WString* location) override;
  Result GetPluginName(WString* name) override;
  Result GetParameters(WString* parameters) override;
  Result Reserved() override { return E_NOTIMPL; }

  // ISimplifiedStoreImpl
  Result CreateRootElements(IRootElementsImpl** elements) override;
  Result Refresh() override;
  Result GetElementByKey(std::u16string_view key, IStoreElementImpl** element) override;
  Result GetElement(IInstance* instance, IStoreElementImpl** element) override;
  Result GetDisplayText(IEntity* entity, WString* text) override;
  Result GetDisplayTextFor(IEntity* entity, std::u16string_view format, WString* text) override;
  void ForgetElement(IInstance* instance) override { m_elements.Erase(instance); }
  Result GetStore(IStore** store) override;
  Result GetBrowseConfig(IBrowseConfig** config) override;
  Result GetModel(IModel** model) override;
  bool OwnsInstance(IInstance* instance) override;
  bool OwnsElement(IStoreElementImpl* element) override;
  Result GetChildrenPrefetched(std::u16string_view filter, std::u16string_view path,
                               IStoreElementListImpl** elements) override;
  Result GetIcon(ISymbolImage** icon) override;
  Result ResetBrowseData() override;

  // For elements and batches of them; these throw what the engine throws.
  [[nodiscard]] IStore& Store() const { return *m_store; }
  [[nodiscard]] IModel& Model() const { return *m_model; }
  [[nodiscard]] CDataStoreBrowseConfigImpl& BrowseConfig() const { return *m_browseConfig; }
  [[nodiscard]] ElementKind KindOf(Ref<IEntity> entity) const;
  /// The living element of an instance or a new one. `kind` is looked up if it is of another
  /// entity.
  Ref<CStoreElementImpl> ElementOf(IInstance& instance, ElementKind& kind);
  /// Where lists of properties look up what their entity has.
  [[nodiscard]] ApplicationPropertiesCache& PropertiesCache() { return m_propertiesCache; }
  /// Makes room for that many living elements more.
  void Expect(std::size_t count) { m_elements.Reserve(m_elements.Size() + count); }

 private:
  ~CSimplifiedDataStoreImpl() override;

  /// Living elements by the instance that they hold.
  struct ByInstance {
    using Key = const IInstance*;
    static Key KeyOf(const CStoreElementImpl& element);
    static std::uint64_t HashOf(Key instance) {
      return reinterpret_cast<std::uintptr_t>(instance) >> 6;
    }
  };

  void* FindFace(const Iid& iid) override;
  /// The file that the configured stores name for this kind of store; empty for none.
  [[nodiscard]] WString IconFile() const;

  Ref<IStore> m_store;
  Ref<IModel> m_model;
  Ref<CDataStoreBrowseConfigImpl> m_browseConfig;
  bool m_hasIcon = false;  // it has been looked for
  Ref<ISymbolImage> m_icon;
  ApplicationPropertiesCache m_propertiesCache;
  cor::ObjectTable<CStoreElementImpl, ByInstance> m_elements;
};

/// The body of a provider, if it is this library's; otherwise null.
Ref<CSimplifiedDataStoreImpl> OwnSimplifiedStore(easyImpl::ISimplifiedStoreImpl& provider);

}  // namespace hv::vex
