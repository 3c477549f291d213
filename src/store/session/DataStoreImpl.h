// store/session/DataStoreImpl.h - the session with one data store.
#pragma once

#include <optional>
#include <string_view>

#include <storefabric/IStoreElement.h>
#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IStore.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/model/DataStoreModelImpl.h"
#include "store/session/IDataStoreImpl.h"
#include "store/settings/BrowseSettingsImpl.h"

namespace hv::vex {

class IStoreQuery;

/// Owns the way down to the engine's store and what is built around that. Made unconnected, with a
/// count of 1. Its members are released from the last to the first, and then the engine.
class CDataStoreImpl final : private CoreBinding, public cor::Counted<IDataStoreImpl> {
 public:
  CDataStoreImpl() = default;

  // IDataStoreImpl
  Result GetName(WString* name) override;
  Result GetPluginName(WString* name) override;
  Result GetParameters(WString* parameters) override;
  Result GetModel(IDataStoreModelImpl** model) override;
  Result GetRootElements(IRootElementsImpl** elements) override;
  Result CreateElement(std::u16string_view entityName, std::u16string_view elementName,
                       IStoreElementImpl** element) override;
  Result GetElementByKey(std::u16string_view key, IStoreElementImpl** element) override;
  Result GetElementList(std::u16string_view returnType, std::u16string_view expression,
                        bool odsConform, IStoreElementListImpl** elements) override;
  Result CreateQuery(IAdvancedQueryImpl** query) override;
  Result SaveQuery(IAdvancedQueryImpl* query, std::u16string_view path) override;
  Result LoadQuery(IAdvancedQueryImpl** query, std::u16string_view path) override;
  Result DeleteElement(IStoreElementImpl* element) override;
  Result CreateElementsByInstList(IInstList* instList, IStoreElementListImpl** elements) override;
  Result GetResults(IStoreElementList** results) override;
  Result Search(IAdvancedQueryImpl* query) override;
  Result SearchColumns(IAdvancedQueryImpl* query, const Variant& properties, Variant* columns,
                       std::optional<WString>* unknown) override;
  Result OpenByStore(IStore* store) override;
  Result Connect(std::u16string_view name, std::u16string_view pluginName,
                 std::u16string_view parameter, IEnvironment* environment) override;
  Result GetCoreStore(IStore** store) override;
  Result Save(std::u16string_view mode) override;
  Result Refresh() override;
  Result IsModified(std::int32_t* modified) override;
  Result IsQuerySupported(std::int32_t* supported) override;
  Result GetContext(std::int32_t mode, IDataStoreContextImpl** context) override;
  Result GetBrowseSettings(IBrowseSettingsImpl** settings) override;
  Result GetBrowseSettingsInternal(IBrowseSettingsImpl** settings) override;
  Result SetBrowseSettings(IBrowseSettingsImpl* settings) override;
  Result GetSimplifiedStore(easyImpl::ISimplifiedStoreImpl** simplified) override;
  bool HasQmdModel() override;

 private:
  ~CDataStoreImpl() override = default;

  /// Makes the session's objects around `m_store`. After a failure the session is half built.
  Result Build();
  /// The name of the entity at the top of the path; empty without a path.
  const WString& RootEntityName();
  void ReadRootEntityName();
  Result AppendHits(IStoreQuery& query, std::u16string_view text, IStoreElementListImpl& list);
  /// The text of a query as this session runs it.
  Result WriteSearch(IAdvancedQueryImpl* query, WString* text);
  Result KeepHits(IInstList& hits, bool isIncomplete);
  /// Puts the hits of a text into the results. Throws what the engine throws.
  Result RunQuery(std::u16string_view text);
  std::int32_t ResultsLimit(std::int32_t otherwise);

  Ref<CDataStoreModelImpl> m_model;  // new with each connect
  Ref<IStore> m_store;               // null until connected
  Ref<easyImpl::ISimplifiedStoreImpl> m_simplified;
  Ref<IStoreElementList> m_results;  // what hosts see of the hits
  Ref<IDataStoreResultCollectionImpl> m_resultsImpl;
  Ref<IRootElementsImpl> m_rootElements;  // made when somebody asks for them
  WString m_rootEntityName;
  std::uint64_t m_rootStamp = 0;  // the generation of the path that the name was read from
  Ref<IBrowseConfig> m_config;    // null for a store without a configuration
  Ref<CBrowseSettingsImpl> m_browseSettings;  // the live ones, over the configuration
};

}  // namespace hv::vex
