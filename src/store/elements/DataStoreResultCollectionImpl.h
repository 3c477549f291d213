// store/elements/DataStoreResultCollectionImpl.h - the hits of a search.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IInstList.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/NamelessElements.h"

namespace hv::vex {

/// Keeps the engine's list, which is a list of ids, and makes the element of a hit when it is asked
/// for: elements live as long as somebody else holds them.
class CDataStoreResultCollectionImpl final
    : private CoreBinding,
      public tNamelessElements<cor::Counted<IDataStoreResultCollectionImpl>> {
 public:
  using Item = easyImpl::IVEXElementImpl;
  static constexpr std::int32_t kIncomplete = -1;

  /// \param maxCount  1 or more
  CDataStoreResultCollectionImpl(easyImpl::ISimplifiedStoreImpl& provider, std::int32_t maxCount)
      : m_provider(Ref<easyImpl::ISimplifiedStoreImpl>::Share(&provider)), m_maxCount(maxCount) {}

  // ICollectionImpl
  Result GetItem(std::int32_t index, Item** element) override;
  Result GetCount(std::int32_t* count) override;
  Result GetIterator(easyImpl::tIIteratorImpl<Item>** iterator) override;
  Result RemoveAt(std::int32_t index) override;
  /// `ClearResults`.
  Result Clear() override { return ClearResults(); }
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override;

  // IVEXElementsImpl
  using tNamelessElements::Add;
  /// Puts an instance of the store behind the hits. The codes are those of `ElementOfObject`.
  Result Add(IUnknown* instance, Item** element) override;
  Result IndexOf(Item* element, std::int32_t* index) override;
  Result GetTransportData(IDispatch** collection) override;
  Result GetIsIncomplete(std::int32_t* isIncomplete) override;
  Result GetMaxCount(std::int32_t* maxCount) override;
  Result SetMaxCount(std::int32_t maxCount) override;
  Result SortByName(bool ascending) override;
  Result SortByProperty(std::u16string_view property, bool ascending) override;

  // IStoreElementListImpl
  Result Reserve(std::int32_t count) override;
  /// VEX_E_FOREIGN_ELEMENT for an element of another store.
  Result Append(Item* element) override;

  // IDataStoreResultCollectionImpl
  Result ClearResults() override;
  Result SetList(IInstList* list) override;
  Result SetTotal(std::int32_t total) override;
  Result GetList(IInstList** list) override;

 private:
  ~CDataStoreResultCollectionImpl() override = default;

  void* FindFace(const Iid& iid) override;

  [[nodiscard]] std::size_t Size() const;
  [[nodiscard]] bool IsIndex(std::int32_t index) const;
  /// The place in the engine's list of the hit at a position.
  [[nodiscard]] std::uint64_t PlaceOf(std::size_t position) const;
  /// Writes the order down, so that it can be changed.
  void KeepOrder();
  Result AppendInstance(IInstance& instance);
  /// What `keyOf` gives for each hit's element, in order.
  template <class Key, class KeyOf>
  std::vector<Key> KeysOf(KeyOf keyOf);
  template <class Key, class Less>
  void SortBy(const std::vector<Key>& keys, bool ascending, Less less);

  Ref<easyImpl::ISimplifiedStoreImpl> m_provider;
  std::int32_t m_maxCount;
  std::int32_t m_total = 0;
  Ref<IInstList> m_list;
  bool m_isOrdered = false;  // otherwise the order is that of the list
  std::vector<std::uint64_t> m_order;
};

}  // namespace hv::vex
