// elements/ElementsCollectionImpl.h - a plain list of elements.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>
#include <storefabric/Variant.h>

#include "cor/Counted.h"
#include "elements/IVEXElementImpl.h"

namespace hv::vex::easyImpl {

/// The base of lists of elements: a vector of counted elements without names. Kinds that can make
/// elements of instances, or that know transport data, add that.
class CElementsCollectionImpl : public cor::Counted<IVEXElementsImpl> {
 public:
  static constexpr std::int32_t kDefaultMaxCount = 200;

  CElementsCollectionImpl() = default;

  /// Puts an element at the end. E_POINTER; E_OUTOFMEMORY.
  Result Append(IVEXElementImpl* element);
  void SetIsIncomplete(bool isIncomplete) { m_isIncomplete = isIncomplete; }
  /// Null takes the client out.
  void SetEventsClient(IElementsEventsClient* client) { m_eventsClient = client; }

  // ICollectionImpl
  Result GetItem(std::int32_t index, IVEXElementImpl** element) override;
  Result GetCount(std::int32_t* count) override;
  Result GetIterator(tIIteratorImpl<IVEXElementImpl>** iterator) override;
  Result RemoveAt(std::int32_t index) override;
  Result Clear() override;
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override;

  // IVEXElementsImpl
  /// E_NOTIMPL: a plain list doesn't know how elements are made.
  Result Add(IUnknown* instance, IVEXElementImpl** element) override;
  Result IndexOf(IVEXElementImpl* element, std::int32_t* index) override;
  /// E_NOTIMPL.
  Result GetTransportData(IDispatch** collection) override;
  Result GetIsIncomplete(std::int32_t* isIncomplete) override;
  Result GetMaxCount(std::int32_t* maxCount) override;
  Result SetMaxCount(std::int32_t maxCount) override;
  Result SortByName(bool ascending) override;
  Result SortByProperty(std::u16string_view property, bool ascending) override;

 protected:
  ~CElementsCollectionImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// How two values of a property are ordered: true if `a` stands before `b`. Empty and null stand
  /// behind all others, dates behind all other values; the rest as variants are compared.
  virtual bool IsLess(const Variant& a, const Variant& b) const;

 private:
  [[nodiscard]] bool IsIndex(std::int32_t index) const;

  /// Puts the elements into the order of their keys and tells the events client.
  template <class Key, class Less>
  void SortBy(const std::vector<Key>& keys, bool ascending, Less less);

  std::vector<Ref<IVEXElementImpl>> m_elements;
  IElementsEventsClient* m_eventsClient = nullptr;
  std::int32_t m_maxCount = kDefaultMaxCount;
  bool m_isIncomplete = false;
};

}  // namespace hv::vex::easyImpl
