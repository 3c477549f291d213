// store/elements/ISimplifiedStoreImpl.h - a store as elements see it: the provider that makes and
// finds them.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IBrowseConfig;
class IEntity;
class IInstance;
class IModel;
class IRootElementsImpl;
class IStore;
class IStoreElementImpl;
class IStoreElementListImpl;
class ISymbolImage;

}  // namespace hv::vex

namespace hv::vex::easyImpl {

/// What any provider of elements tells of its source. E_UNEXPECTED if the engine fails; its timeout
/// gives E_PENDING.
class ISimplifiedDataProviderImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::ISimplifiedDataProviderImpl");

  virtual Result GetStoreName(WString* name) = 0;
  /// E_NOTIMPL. Keeps its place in the order of the operations.
  virtual Result NotUsed() = 0;
  /// The store's name and where it lies, for people.
  virtual Result GetDisplayLocation(WString* name, WString* location) = 0;
  virtual Result GetPluginName(WString* name) = 0;
  /// The parameter text that the store was opened with.
  virtual Result GetParameters(WString* parameters) = 0;
  /// E_NOTIMPL. Keeps its place in the order of the operations.
  virtual Result Reserved() = 0;

 protected:
  ~ISimplifiedDataProviderImpl() = default;
};

/// The provider of a store's elements. Elements hold it; it doesn't hold them.
class ISimplifiedStoreImpl : public ISimplifiedDataProviderImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::ISimplifiedStoreImpl");

  /// The elements at the top of the browse path, filled: a new collection at each call.
  virtual Result CreateRootElements(IRootElementsImpl** elements) = 0;
  /// Looks again at what others have changed, and resets the browse data. E_PENDING for a timeout,
  /// E_UNEXPECTED if the engine fails otherwise.
  virtual Result Refresh() = 0;
  /// E_INVALIDARG for a key of no instance; E_UNEXPECTED if the engine fails.
  virtual Result GetElementByKey(std::u16string_view key, IStoreElementImpl** element) = 0;
  /// The element of an instance: the one that somebody holds, otherwise a new one. E_POINTER for a
  /// null instance.
  virtual Result GetElement(IInstance* instance, IStoreElementImpl** element) = 0;
  /// An entity's name as people see it; empty for an entity that isn't in the browse path.
  virtual Result GetDisplayText(IEntity* entity, WString* text) = 0;
  /// The same for a path of references and properties from the entity.
  virtual Result GetDisplayTextFor(IEntity* entity, std::u16string_view format, WString* text) = 0;
  /// Called by an element that dies.
  virtual void ForgetElement(IInstance* instance) = 0;
  virtual Result GetStore(IStore** store) = 0;
  virtual Result GetBrowseConfig(IBrowseConfig** config) = 0;
  virtual Result GetModel(IModel** model) = 0;
  /// True if the instance is of this store.
  virtual bool OwnsInstance(IInstance* instance) = 0;
  /// True if the element was made by this object.
  virtual bool OwnsElement(IStoreElementImpl* element) = 0;
  /// The elements at an absolute path ("/#Name", "/##name", further references behind points),
  /// names and display names filled in, read with one call to the engine. `filter` and the codes
  /// are those of `IStoreElementImpl::GetChildrenPrefetched`.
  virtual Result GetChildrenPrefetched(std::u16string_view filter, std::u16string_view path,
                                       IStoreElementListImpl** elements) = 0;
  /// The picture of the store's type; null with S_OK if it has none.
  virtual Result GetIcon(ISymbolImage** icon) = 0;
  /// Tells every living element that the browse configuration has changed.
  virtual Result ResetBrowseData() = 0;

 protected:
  ~ISimplifiedStoreImpl() = default;
};

}  // namespace hv::vex::easyImpl
