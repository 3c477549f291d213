// store/core/IStore.h - one open data store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IEntity;
class IEnvironment;
class IInstance;
class IInstList;
class IModel;
class IStoreContext;

/// One open data store. Changes are seen by this session at once, by others after `Save`, and are
/// lost as a whole if the session ends before. Answers for IStoreQuery and IBulkReader where it
/// can.
class IStore : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStore");

  virtual void GetName(WString& name) = 0;
  virtual void GetPluginName(WString& name) = 0;
  /// A new instance, not yet saved. A base entity throws kInvalidArgument, a store that refuses
  /// changes kWriteProtected.
  virtual IInstance* CreateInstance(IEntity* entity) = 0;
  /// Selector 3: non-zero if there are unsaved changes. Other selectors give 0.
  virtual std::int32_t GetState(std::int32_t selector) = 0;
  /// The instance of that key, or null.
  virtual IInstance* GetInstance(std::u16string_view key) = 0;
  virtual IModel* GetModel() = 0;
  virtual IEnvironment* GetEnvironment() = 0;
  /// Stores all changes, as a whole or not at all. The mode's name is the plug-in's business.
  virtual void Save(std::u16string_view mode) = 0;
  /// Null if the store has none.
  virtual IStoreContext* GetContext(std::int32_t mode) = 0;

  // Added behind the operations above.

  /// The parameter text the store was opened with, as it was given.
  virtual void GetParameters(WString& parameters) = 0;
  /// Where the store lies, for people: its file or server.
  virtual void GetDisplayLocation(WString& location) = 0;
  /// The instances at an absolute path ("/#Name", "/##name", see IContainer); never null.
  virtual IInstList* GetInstances(std::u16string_view path) = 0;
  /// Looks again at what others have changed. Unsaved changes of this session stay. A model that
  /// has grown is shown by the objects that stand for it; one that has changed otherwise is
  /// kNotSupported, and the store must be opened anew to see anything that others did.
  virtual void Refresh() = 0;
  virtual void DeleteInstance(IInstance* instance) = 0;
  /// Drops all unsaved changes.
  virtual void Discard() = 0;
  /// What was odd in the source but could be read: a list of texts.
  virtual IAttribute* GetWarnings() = 0;
  /// Non-zero if changes are refused.
  virtual std::int32_t IsReadOnly() = 0;

 protected:
  ~IStore() = default;
};

}  // namespace hv::vex
