// store/elements/NamedElements.h - what the top of a store and the members of a reference share.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include <storefabric/Ref.h>

#include "store/collections/NamedCollectionImpl.h"
#include "store/core/CoreBinding.h"
#include "store/core/IInstance.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"

namespace hv::vex {

/// Elements under unique names, read from the engine as a whole. `Face` is `IStoreElementsImpl` or
/// an interface derived from it; the bodies are in NamedElements.cpp.
///
/// The collection holds its elements. They tell it their new names through a plain pointer, which
/// it takes out when it lets go of them. The unique name of a member is its name in this collection
/// only: what the record is called isn't touched by it.
template <class Face>
class tNamedElements : protected CoreBinding,
                       public easyImpl::tNamedCollectionImpl<Face>,
                       private IElementNameClient {
 public:
  using Element = easyImpl::IVEXElementImpl;
  using Named = easyImpl::tNamedCollectionImpl<Face>;

  // ICollectionImpl
  Result GetItem(std::int32_t index, Element** element) override;
  Result GetCount(std::int32_t* count) override;
  Result GetIterator(easyImpl::tIIteratorImpl<Element>** iterator) override;
  /// Deletes the record.
  Result RemoveAt(std::int32_t index) override;
  Result Clear() override;
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override;

  // Names
  Result GetItemByName(std::u16string_view name, Element** element) override;
  /// Deletes the record.
  Result RemoveByName(std::u16string_view name) override;
  Result Exists(std::u16string_view name, bool* exists) override;
  Result Rename(std::u16string_view oldName, std::u16string_view newName, WString* unique) override;

  // IVEXElementsImpl
  /// E_NOTIMPL, like all that is about searches and their order.
  Result Add(IUnknown* instance, Element** element) override;
  Result IndexOf(Element* element, std::int32_t* index) override;
  Result GetTransportData(IDispatch** collection) override;
  /// 0: all members are there.
  Result GetIsIncomplete(std::int32_t* isIncomplete) override;
  Result GetMaxCount(std::int32_t* maxCount) override;
  Result SetMaxCount(std::int32_t maxCount) override;
  Result SortByName(bool ascending) override;
  Result SortByProperty(std::u16string_view property, bool ascending) override;

  // IStoreElementsImpl
  using Face::Add;
  Result Remove(const Variant& indexOrName) override;
  Result RemoveElement(IStoreElementImpl* element) override;
  /// Stops at the first record that can't be deleted; those before it are gone.
  Result RemoveAll() override;
  Result Reload() override;

 protected:
  using Node = typename Named::Node;

  explicit tNamedElements(easyImpl::ISimplifiedStoreImpl& provider)
      : m_provider(Ref<easyImpl::ISimplifiedStoreImpl>::Share(&provider)) {}
  ~tNamedElements() override;

  void* FindFace(const Iid& iid) override;

  /// Reads the members into the empty list.
  virtual Result ReadMembers() = 0;
  /// Called before the list is looked at: reads it, if that is still to be done.
  virtual Result Prepare() { return S_OK; }

  /// Appends the elements of the instances at a path, their names read with one call to the engine.
  /// \param start  null: the path is absolute. Throws what the engine throws.
  Result AppendFrom(IInstance* start, std::u16string_view path);
  /// Gives a new record its name and makes its element. A record that can't be named goes again.
  /// Throws what the engine throws.
  Result NameNew(IInstance& instance, std::u16string_view name, Ref<IStoreElementImpl>* element);
  /// Puts an element at the end, under its name made unique.
  Result AddMember(IStoreElementImpl& element, std::u16string_view name);
  /// The place of an element, or null. Constant time but for the first call.
  Node* FindMember(Element* element);
  /// Takes a member out of the list, not out of the store.
  void DropMember(const Node& node);

  [[nodiscard]] easyImpl::ISimplifiedStoreImpl& Provider() const { return *m_provider; }

 private:
  using Nodes = std::unordered_map<Element*, Node*>;

  // tNamedCollectionImpl
  /// Elements have the names of their records.
  Result OnNamed(Element& /*element*/, const WString& /*name*/) override { return S_OK; }
  void OnRemove(std::size_t position) override;
  void OnSwap(std::size_t first, std::size_t second) override;
  // IElementNameClient
  void OnElementRenamed(IStoreElementImpl& element, std::u16string_view oldName,
                        std::u16string_view newName) override;

  /// The member with the key of an element that isn't of this provider; null if there is none.
  Node* FindMemberByKey(IStoreElementImpl& element);
  void Disown();

  Ref<easyImpl::ISimplifiedStoreImpl> m_provider;
  Nodes m_places;
  bool m_hasPlaces = false;  // else they are made when somebody looks for an element
};

extern template class tNamedElements<IStoreElementsImpl>;
extern template class tNamedElements<IRootElementsImpl>;

}  // namespace hv::vex
