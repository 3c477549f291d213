// elements/ElementsCollectionImpl.h - a plain list of elements.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/Variant.h>

#include "automation/Guards.h"
#include "cor/Counted.h"
#include "elements/ElementOrder.h"
#include "elements/IVEXElementImpl.h"
#include "store/collections/CollectionImpl.h"

namespace hv::vex::easyImpl {

/// The base of lists of elements: a vector of counted elements without names. `Face` is
/// `IVEXElementsImpl` or an interface derived from it. Kinds that can make elements of instances,
/// or that know transport data, add that.
template <class Face>
class tElementsCollectionImpl : public cor::Counted<Face> {
 public:
  using Item = IVEXElementImpl;
  static constexpr std::int32_t kDefaultMaxCount = 200;

  void SetIsIncomplete(bool isIncomplete) { m_isIncomplete = isIncomplete; }
  /// Null takes the client out.
  void SetEventsClient(IElementsEventsClient* client) { m_eventsClient = client; }

  // ICollectionImpl
  Result GetItem(std::int32_t index, IVEXElementImpl** element) override {
    HV_RETURN_IF_NULL(element);
    *element = nullptr;
    HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
    return m_elements[static_cast<std::size_t>(index)].CopyTo(element);
  }
  Result GetCount(std::int32_t* count) override {
    HV_RETURN_IF_NULL(count);
    *count = static_cast<std::int32_t>(m_elements.size());
    return S_OK;
  }
  Result GetIterator(tIIteratorImpl<IVEXElementImpl>** iterator) override try {
    HV_RETURN_IF_NULL(iterator);
    *iterator = nullptr;
    *iterator = MakeRef<tBePoIterator<tElementsCollectionImpl>>(*this).Detach();
    return S_OK;
  }
  HV_CATCH_RETURN()
  Result RemoveAt(std::int32_t index) override {
    HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
    const auto at = m_elements.begin() + index;
    const Ref<IVEXElementImpl> removed = std::move(*at);  // dies when the list is whole again
    m_elements.erase(at);
    return S_OK;
  }
  Result Clear() override {
    const auto removed = std::exchange(m_elements, {});
    return S_OK;
  }
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override {
    HV_RETURN_CODE_IF(!IsIndex(firstIndex) || !IsIndex(secondIndex), E_INVALIDARG);
    std::swap(m_elements[static_cast<std::size_t>(firstIndex)],
              m_elements[static_cast<std::size_t>(secondIndex)]);
    return S_OK;
  }

  // IVEXElementsImpl
  using Face::Add;
  /// E_NOTIMPL: a plain list doesn't know how elements are made.
  Result Add(IUnknown* /*instance*/, IVEXElementImpl** element) override {
    HV_RETURN_IF_NULL(element);
    *element = nullptr;
    return E_NOTIMPL;
  }
  Result IndexOf(IVEXElementImpl* element, std::int32_t* index) override {
    HV_RETURN_IF_NULL(index);
    *index = -1;
    HV_RETURN_CODE_IF(!element, E_INVALIDARG);
    const auto found = std::ranges::find(m_elements, element, &Ref<IVEXElementImpl>::Get);
    HV_RETURN_CODE_IF(found == m_elements.end(), E_INVALIDARG);
    *index = static_cast<std::int32_t>(found - m_elements.begin());
    return S_OK;
  }
  /// E_NOTIMPL.
  Result GetTransportData(IDispatch** collection) override {
    HV_RETURN_IF_NULL(collection);
    *collection = nullptr;
    return E_NOTIMPL;
  }
  Result GetIsIncomplete(std::int32_t* isIncomplete) override {
    HV_RETURN_IF_NULL(isIncomplete);
    *isIncomplete = m_isIncomplete ? 1 : 0;
    return S_OK;
  }
  Result GetMaxCount(std::int32_t* maxCount) override {
    HV_RETURN_IF_NULL(maxCount);
    *maxCount = m_maxCount;
    return S_OK;
  }
  Result SetMaxCount(std::int32_t maxCount) override {
    HV_RETURN_CODE_IF(maxCount < 1, E_INVALIDARG);
    m_maxCount = maxCount;
    return S_OK;
  }
  Result SortByName(bool ascending) override try {
    SortBy(KeysOf<WString>([](IVEXElementImpl& element) { return QualifiedName(element); }),
           ascending, cor::NoCaseLess());
    return S_OK;
  }
  HV_CATCH_RETURN()
  Result SortByProperty(std::u16string_view property, bool ascending) override try {
    SortBy(KeysOf<Variant>([&](IVEXElementImpl& element) { return SortValue(element, property); }),
           ascending, ByValue());
    return S_OK;
  }
  HV_CATCH_RETURN()

 protected:
  tElementsCollectionImpl() = default;
  ~tElementsCollectionImpl() override = default;

  void* FindFace(const Iid& iid) override {
    using Plain = ICollectionImpl<IVEXElementImpl>;
    if (iid == Plain::kIid) return static_cast<Plain*>(this);
    if (iid == IVEXElementsImpl::kIid) return static_cast<IVEXElementsImpl*>(this);
    return cor::Counted<Face>::FindFace(iid);
  }

  /// Puts an element at the end. E_POINTER; E_OUTOFMEMORY.
  Result AppendElement(IVEXElementImpl* element) try {
    HV_RETURN_IF_NULL(element);
    m_elements.push_back(Ref<IVEXElementImpl>::Share(element));
    return S_OK;
  }
  HV_CATCH_RETURN()
  /// Makes room for that many elements more. Throws if there is no memory.
  void ReserveMore(std::size_t count) {
    // Asked for in small steps, exact sizes would copy the list at each.
    const std::size_t wanted = m_elements.size() + count;
    if (wanted > m_elements.capacity()) {
      m_elements.reserve(std::max(wanted, m_elements.capacity() * 2));
    }
  }

 private:
  [[nodiscard]] bool IsIndex(std::int32_t index) const {
    return index >= 0 && static_cast<std::size_t>(index) < m_elements.size();
  }

  template <class Key, class KeyOf>
  std::vector<Key> KeysOf(KeyOf keyOf) const {
    std::vector<Key> keys;
    keys.reserve(m_elements.size());
    for (const auto& element : m_elements) keys.push_back(keyOf(*element));
    return keys;
  }
  /// Puts the elements into the order of their keys and tells the events client.
  template <class Key, class Less>
  void SortBy(const std::vector<Key>& keys, bool ascending, Less less) {
    std::vector<Ref<IVEXElementImpl>> sorted;
    sorted.reserve(keys.size());
    for (const std::size_t from : SortedPositions(keys, ascending, less)) {
      sorted.push_back(m_elements[from]);
    }
    m_elements = std::move(sorted);
    if (m_eventsClient) m_eventsClient->OnSorted();
  }

  std::vector<Ref<IVEXElementImpl>> m_elements;
  IElementsEventsClient* m_eventsClient = nullptr;
  std::int32_t m_maxCount = kDefaultMaxCount;
  bool m_isIncomplete = false;
};

/// A list of elements of any kind.
class CElementsCollectionImpl : public tElementsCollectionImpl<IVEXElementsImpl> {
 public:
  CElementsCollectionImpl() = default;

  /// Puts an element at the end. E_POINTER; E_OUTOFMEMORY.
  Result Append(IVEXElementImpl* element) { return AppendElement(element); }

 protected:
  ~CElementsCollectionImpl() override = default;
};

}  // namespace hv::vex::easyImpl
