// store/session/DataStoreInt.h - the automation face of a session.
#pragma once

#include <optional>

#include <storefabric/IDataStore.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/LogicOf.h"
#include "store/session/IDataStoreImpl.h"

namespace hv::vex {

/// Made anew each time a session is handed out; holds nothing but the session.
class CDataStoreInt final : public automation::DispatchImpl<CDataStoreInt, IDataStore,
                                                            easyImpl::ILogicOf<IDataStoreImpl>> {
 public:
  explicit CDataStoreInt(Ref<IDataStoreImpl> session) : m_session(std::move(session)) {}

  static const automation::DispatchMap& Map();
  /// The store's name, for messages.
  [[nodiscard]] WString TextForMessage(automation::ObjectTextId id) const;

  // IDataStore
  Result get_Name(WString* name) override;
  Result get_PluginName(WString* name) override;
  Result get_Parameters(WString* parameters) override;
  Result get_Model(IDataStoreModel** model) override;
  Result get_RootElements(IStoreElements** elements) override;
  Result CreateElement(const Variant& entity, const WString& name,
                       IStoreElement** element) override;
  Result GetElementByKey(const WString& key, IStoreElement** element) override;
  Result GetElementByDataChannel(IDispatch* channel, IStoreElement** element) override;
  Result GetElementList(const WString& returnType, const WString& queryExpression,
                        const Variant& odsConform, IStoreElementList** elements) override;
  Result CreateQuery(ISVEXQuery** query) override;
  Result SaveQuery(IDispatch* query, const WString& path) override;
  Result LoadQuery(const WString& path, ISVEXQuery** query) override;
  Result DeleteElement(IDispatch* element) override;
  Result CreateElementsByInstList(IUnknown* instList, IStoreElementList** elements) override;
  Result get_Results(IStoreElementList** results) override;
  Result Search(IDispatch* query) override;
  Result SearchColumns(IDispatch* query, const Variant& properties, Variant* columns) override;
  /// \param unknown  receives the name that is no property, if that is what it fails for
  Result SearchColumns(IDispatch* query, const Variant& properties, Variant* columns,
                       std::optional<WString>* unknown);
  Result GetVexStore(IUnknown** store) override;
  Result Save(const Variant& saveMode) override;
  Result Refresh() override;
  Result IsModified(std::int32_t* modified) override;
  Result IsQuerySupported(std::int32_t* supported) override;
  Result GetContext(const Variant& mode, IDataStoreContext** context) override;
  Result GetBrowseSettings(IBrowseSettings** settings) override;
  Result GetBrowseSettingsInternal(IBrowseSettings** settings) override;
  Result SetBrowseSettings(IDispatch* settings) override;
  // ILogicOf
  IDataStoreImpl& GetLogic() override { return *m_session; }

 private:
  ~CDataStoreInt() override = default;

  Ref<IDataStoreImpl> m_session;
};

}  // namespace hv::vex
