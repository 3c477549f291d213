// store/model/IDataStoreModelImpl.h - the logic face of a session's data model.
#pragma once

#include <string_view>

#include <storefabric/Unknown.h>

namespace hv::vex {

class IEntityCollImpl;
class IEntityImplCache;
class IStore;

/// The data model of a session. Out objects carry one reference for the caller. A null out pointer
/// gives E_POINTER; without a store every operation but `SetStore` gives E_UNEXPECTED.
class IDataStoreModelImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreModelImpl");

  /// The entities that applications see: one list per store.
  virtual Result GetEntities(IEntityCollImpl** entities) = 0;
  /// Writes the store into a file: as VEX for the extension "vsf", otherwise as ATFX. A path
  /// without an extension gets ".atfx". E_FAIL for every exception of the engine.
  virtual Result Export(std::u16string_view path) = 0;
  /// Takes the store and reads its model.
  /// \return S_OK; E_POINTER for null; E_ACCESSDENIED if two entities have one name, the code of an
  ///         entity that couldn't be read: the others are there all the same; the code of an engine
  ///         failure, and then the list is empty.
  virtual Result SetStore(IStore* store) = 0;
  /// The cache of this store's entities.
  virtual Result GetCache(IEntityImplCache** cache) = 0;

 protected:
  ~IDataStoreModelImpl() = default;
};

}  // namespace hv::vex
