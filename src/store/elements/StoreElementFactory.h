// store/elements/StoreElementFactory.h - the bodies of a store's elements and collections, and the
// objects that hosts see of them. Nothing is thrown. Out objects carry one reference for the caller
// and are null after a failure; a null out pointer gives E_POINTER.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/Unknown.h>

namespace hv::vex {

class IBrowseConfig;
class IBrowseConfigEntity;
class IDataStoreResultCollectionImpl;
class IInstance;
class IReferences;
class IReferencesImpl;
class IRootElementsImpl;
class IStore;
class IStoreElement;
class IStoreElementImpl;
class IStoreElementList;
class IStoreElementListImpl;
class IStoreElements;
class IStoreElementsImpl;

namespace easyImpl {
class ISimplifiedStoreImpl;
class IVEXElementImpl;
class IVEXElementsImpl;
}  // namespace easyImpl

/// \name Logic objects
/// @{
/// The provider over a store.
/// \param config  null: the store's default. E_UNEXPECTED if it isn't of this library.
/// \return S_OK; E_OUTOFMEMORY; E_PENDING for a timeout; E_UNEXPECTED for any other failure.
Result MakeSimplifiedStore(IStore* store, IBrowseConfig* config,
                           easyImpl::ISimplifiedStoreImpl** provider);
/// The top of the browse path, not yet filled.
Result MakeRootElements(easyImpl::ISimplifiedStoreImpl& provider, IRootElementsImpl** elements);
/// What a reference, or a path of references, leads to from an instance. Filled when it is first
/// looked at.
Result MakeReferencedElements(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance,
                              std::u16string_view path, IStoreElementsImpl** elements);
/// The references of an instance, filled.
Result MakeReferences(easyImpl::ISimplifiedStoreImpl& provider, IInstance& instance,
                      IReferencesImpl** references);
/// An empty list.
Result MakeStoreElementList(easyImpl::ISimplifiedStoreImpl& provider, IStoreElementListImpl** list);
/// Empty hits.
Result MakeResultCollection(easyImpl::ISimplifiedStoreImpl& provider, std::int32_t maxCount,
                            IDataStoreResultCollectionImpl** results);
/// @}

/// \name Objects that hosts see; a null logic object goes out as null
/// @{
/// A column of values goes out with its values.
Result WrapStoreElement(IStoreElementImpl* element, IStoreElement** out);
/// A column of values goes out as any other element.
Result WrapPlainStoreElement(IStoreElementImpl* element, IStoreElement** out);
/// E_UNEXPECTED for a collection that isn't one of a store's elements.
Result WrapStoreElements(easyImpl::IVEXElementsImpl* elements, IStoreElements** out);
Result WrapStoreElementList(IStoreElementListImpl* list, IStoreElementList** out);
Result WrapReferences(IReferencesImpl* references, IReferences** out);
/// @}

/// The logic object behind an element that a host handed in.
/// \return S_OK; E_POINTER for null; VEX_E_BAD_TYPE_ARGUMENT for an object that is no element of
///         any store.
Result StoreElementOf(IUnknown* object, Ref<IStoreElementImpl>* element);

/// Fills a list with the elements that `reference` leads to from `start` (null: all at the absolute
/// path `reference`), with one call to the engine: the elements come with their names and, if
/// `level` is given, with the display names that this level of the browse path tells.
/// \param filter  a query text that the elements have to meet; empty for all
/// \return S_OK; E_UNEXPECTED for a store that reads nothing in bulk; E_PENDING; E_FAIL
Result PrefetchElements(easyImpl::ISimplifiedStoreImpl& provider, IInstance* start,
                        std::u16string_view reference, std::u16string_view filter,
                        IBrowseConfigEntity* level, IStoreElementListImpl& list);

}  // namespace hv::vex
