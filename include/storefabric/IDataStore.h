// storefabric/IDataStore.h - the session with one data store.
#pragma once

#include <cstdint>

#include <storefabric/Dispatch.h>

namespace hv::vex {

class IBrowseSettings;
class IDataStoreContext;
class IDataStoreModel;
class IStoreElement;
class IStoreElementList;
class IStoreElements;
class ISVEXQuery;

/// The session with one data store: its model, its elements, its searches. There is no close: the
/// session ends with its last reference.
///
/// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
/// and nothing happens. Objects passed in are borrowed for the call. A session that was never
/// connected gives E_UNEXPECTED. E_NOTIMPL says that the session can't do that.
/// The same members can be called by name; their dispatch ids are in the comments and frozen.
class IDataStore : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStore");

  /// 1, property. The store's name.
  virtual Result get_Name(WString* name) = 0;
  /// 2, property. The name of the plug-in that serves the store.
  virtual Result get_PluginName(WString* name) = 0;
  /// 3, property. The parameter text that the store was opened with.
  virtual Result get_Parameters(WString* parameters) = 0;
  /// 4, property. The store's model.
  virtual Result get_Model(IDataStoreModel** model) = 0;
  /// 5, property. The elements at the top of the browse path: one collection for the session's
  /// life, read when it is first asked for and again with `Refresh`. E_FAIL for a store without a
  /// browse path.
  virtual Result get_RootElements(IStoreElements** elements) = 0;
  /// 6. Makes a new element. One of the entity at the top of the browse path joins `RootElements`.
  /// \param entity  the entity's name, or an object with the interface `IModelEntity`
  /// \param name    the element's name
  /// \return S_OK; VEX_E_EMPTY_NAME for an empty name; E_INVALIDARG for no entity of the
  ///         application's model; VEX_E_WRITE_PROTECTED.
  virtual Result CreateElement(const Variant& entity, const WString& name,
                               IStoreElement** element) = 0;
  /// 7. The element with that instance key. E_INVALIDARG for a key of no instance.
  virtual Result GetElementByKey(const WString& key, IStoreElement** element) = 0;
  /// 8. The element whose instance key a channel carries in its property `InstKey`, without its
  /// bulk values. E_INVALIDARG for an object without one and for a key of no instance.
  virtual Result GetElementByDataChannel(IDispatch* channel, IStoreElement** element) = 0;
  /// 9. The elements of an entity that an expression selects, in a new list, which is there, empty,
  /// also where the store refuses the type or the expression.
  /// \param queryExpression  a pattern for names or a list of conditions, see
  ///                         docs/formats/query-expression.md
  /// \param odsConform  converted to a truth value; left out, empty or null counts as false, which
  ///                    makes "*" and "?" the wildcards of the expression
  /// \return S_OK; E_INVALIDARG for an `odsConform` that is no truth value; VEX_E_BAD_RETURN_TYPE;
  ///         VEX_E_BAD_QUERY_EXPRESSION; E_NOINTERFACE for a store that doesn't run queries.
  virtual Result GetElementList(const WString& returnType, const WString& queryExpression,
                                const Variant& odsConform, IStoreElementList** elements) = 0;
  /// 10. A new query for this store.
  virtual Result CreateQuery(ISVEXQuery** query) = 0;
  /// 11. Writes a query into a file. VEX_E_NOT_STORE_QUERY for an object that is no store query.
  virtual Result SaveQuery(IDispatch* query, const WString& path) = 0;
  /// 12. Reads a query from a file.
  virtual Result LoadQuery(const WString& path, ISVEXQuery** query) = 0;
  /// 13. Deletes an element of this store. Its children stay and lose their parent.
  /// \return S_OK; E_UNEXPECTED for null; E_INVALIDARG for an object that is no element of a store;
  ///         VEX_E_FOREIGN_ELEMENT; VEX_E_OBJECT_GONE; VEX_E_WRITE_PROTECTED.
  virtual Result DeleteElement(IDispatch* element) = 0;
  /// 14. The elements of a list of engine instances, an `IInstList`.
  /// \return S_OK; E_POINTER for null and for an object that is no such list;
  ///         VEX_E_FOREIGN_ELEMENT for an instance of another session; E_INVALIDARG, with the
  ///         elements so far, for one that gives no element.
  virtual Result CreateElementsByInstList(IUnknown* instList, IStoreElementList** elements) = 0;
  /// 15, property. The hits of the last search: the same collection for the session's life.
  virtual Result get_Results(IStoreElementList** results) = 0;
  /// 16. Runs a query and puts the hits into the results. VEX_E_NOT_STORE_QUERY for an object that
  /// is no store query.
  virtual Result Search(IDispatch* query) = 0;
  /// 17. The engine's store object.
  virtual Result GetVexStore(IUnknown** store) = 0;
  /// 18. Stores all changes. E_FAIL if the store can't.
  /// \param saveMode  converted to a text; what can't be converted counts as empty, and empty means
  ///                  the whole measurement tree. Other modes are the plug-in's.
  virtual Result Save(const Variant& saveMode) = 0;
  /// 19. Looks again at what others have changed.
  virtual Result Refresh() = 0;
  /// 20. 1 if there are unsaved changes, otherwise 0.
  virtual Result IsModified(std::int32_t* modified) = 0;
  /// 21. 1 if the store's plug-in runs queries, otherwise 0.
  virtual Result IsQuerySupported(std::int32_t* supported) = 0;
  /// 22. A context of the session.
  /// \param mode  converted to a number; left out or not convertible counts as 100
  /// \return S_OK; VEX_E_FOREIGN_ELEMENT if the store has no such context.
  virtual Result GetContext(const Variant& mode, IDataStoreContext** context) = 0;
  /// 23. A copy of the browse settings; changes to it have no effect until they are set.
  virtual Result GetBrowseSettings(IBrowseSettings** settings) = 0;
  /// 24. The live browse settings.
  virtual Result GetBrowseSettingsInternal(IBrowseSettings** settings) = 0;
  /// 25. Takes over browse settings, also those of a session with another store, which are
  /// translated by names. Elements follow when they are refreshed. Null does nothing. 26 is the
  /// property `BrowseSettings`, which reads and writes as 23 and 25 do.
  /// \return S_OK; E_INVALIDARG for an object that is no browse settings; E_ACCESSDENIED for a
  ///         store whose model fixes them; VEX_E_OTHER_STORE for settings that can't be translated;
  ///         VEX_E_BROWSE_MODEL for others that don't fit. After a failure the old ones are in
  ///         force.
  virtual Result SetBrowseSettings(IDispatch* settings) = 0;
  /// 27. `Search`, and properties of the hits, which are read while they are found: the quickest
  /// way to show them. \param properties, columns  see `IStoreElementList::ReadColumns` \return as
  /// `Search`; VEX_E_INVALID_PROPERTY for a name that is no property of any hit, and
  ///         DISP_E_TYPEMISMATCH for what is neither a text nor a list of texts: then the results
  ///         are empty.
  virtual Result SearchColumns(IDispatch* query, const Variant& properties, Variant* columns) = 0;

 protected:
  ~IDataStore() = default;
};

}  // namespace hv::vex
