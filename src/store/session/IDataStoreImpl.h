// store/session/IDataStoreImpl.h - the logic face of a session with one data store.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <storefabric/Dispatch.h>

namespace hv::vex::easyImpl {
class ISimplifiedStoreImpl;
}

namespace hv::vex {

class IAdvancedQueryImpl;
class IBrowseSettingsImpl;
class IDataStoreContextImpl;
class IDataStoreModelImpl;
class IEnvironment;
class IInstList;
class IRootElementsImpl;
class IStore;
class IStoreElementImpl;
class IStoreElementList;
class IStoreElementListImpl;

/// The session with one data store: unconnected when made, connected after `Connect` or
/// `OpenByStore`; calling them again rebuilds all objects, and those given out before go on with
/// the old ones. Out objects carry one reference for the caller. For every operation: a null out
/// pointer gives E_POINTER with nothing done; without a store E_UNEXPECTED; E_NOTIMPL where the
/// session has no objects of that kind.
class IDataStoreImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreImpl");

  virtual Result GetName(WString* name) = 0;
  virtual Result GetPluginName(WString* name) = 0;
  virtual Result GetParameters(WString* parameters) = 0;
  virtual Result GetModel(IDataStoreModelImpl** model) = 0;
  virtual Result GetRootElements(IRootElementsImpl** elements) = 0;
  virtual Result CreateElement(std::u16string_view entityName, std::u16string_view elementName,
                               IStoreElementImpl** element) = 0;
  virtual Result GetElementByKey(std::u16string_view key, IStoreElementImpl** element) = 0;
  virtual Result GetElementList(std::u16string_view returnType, std::u16string_view expression,
                                bool odsConform, IStoreElementListImpl** elements) = 0;
  virtual Result CreateQuery(IAdvancedQueryImpl** query) = 0;
  virtual Result SaveQuery(IAdvancedQueryImpl* query, std::u16string_view path) = 0;
  virtual Result LoadQuery(IAdvancedQueryImpl** query, std::u16string_view path) = 0;
  /// E_UNEXPECTED for a null element.
  virtual Result DeleteElement(IStoreElementImpl* element) = 0;
  /// E_POINTER with a null out for a null list.
  virtual Result CreateElementsByInstList(IInstList* instList,
                                          IStoreElementListImpl** elements) = 0;
  /// The wrapper that hosts see: one object for the session's life.
  virtual Result GetResults(IStoreElementList** results) = 0;
  /// VEX_E_NOT_STORE_QUERY for a null query.
  virtual Result Search(IAdvancedQueryImpl* query) = 0;
  /// `Search`, and properties of the hits read while they are found; see `ReadElementColumns`.
  /// After a failure the results are empty.
  /// \param unknown  receives the name that is no property, with VEX_E_INVALID_PROPERTY
  virtual Result SearchColumns(IAdvancedQueryImpl* query, const Variant& properties,
                               Variant* columns, std::optional<WString>* unknown) = 0;
  /// Takes the store with a reference of its own and builds the session. E_UNEXPECTED for null.
  virtual Result OpenByStore(IStore* store) = 0;
  /// Opens a store and builds the session.
  /// \param name         a configured store; if it isn't empty, the next two don't count
  /// \param pluginName, parameter  describe a store that isn't configured
  /// \param environment  null: the engine's own
  /// \return S_OK; VEX_E_CONNECT_FAILED, VEX_E_CONNECT_REFUSED, E_PENDING, E_OUTOFMEMORY or
  ///         VEX_E_WRITE_PROTECTED by the engine's exception, E_FAIL for any other; what building
  ///         the session says.
  virtual Result Connect(std::u16string_view name, std::u16string_view pluginName,
                         std::u16string_view parameter, IEnvironment* environment) = 0;
  virtual Result GetCoreStore(IStore** store) = 0;
  /// An empty mode is "HV_MEASUREMENT_TREE". Any exception of the engine gives E_FAIL.
  virtual Result Save(std::u16string_view mode) = 0;
  /// Looks again at what others have changed. Always S_OK.
  virtual Result Refresh() = 0;
  /// Non-zero if there are unsaved changes.
  virtual Result IsModified(std::int32_t* modified) = 0;
  /// What the plug-in answers, unchanged; 0 for a store without an environment.
  virtual Result IsQuerySupported(std::int32_t* supported) = 0;
  /// E_FAIL without a store; VEX_E_FOREIGN_ELEMENT if the store has no such context.
  virtual Result GetContext(std::int32_t mode, IDataStoreContextImpl** context) = 0;
  virtual Result GetBrowseSettings(IBrowseSettingsImpl** settings) = 0;
  virtual Result GetBrowseSettingsInternal(IBrowseSettingsImpl** settings) = 0;
  virtual Result SetBrowseSettings(IBrowseSettingsImpl* settings) = 0;
  virtual Result GetSimplifiedStore(easyImpl::ISimplifiedStoreImpl** simplified) = 0;
  /// True if the store's model fixes its browse path.
  virtual bool HasQmdModel() = 0;

 protected:
  ~IDataStoreImpl() = default;
};

}  // namespace hv::vex
