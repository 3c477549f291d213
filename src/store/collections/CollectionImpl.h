// store/collections/CollectionImpl.h - the ordered collection and its iterators.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>

#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "cor/Counted.h"
#include "store/collections/ICollectionImpl.h"

namespace hv::vex::easyImpl {

template <class Collection>
class tIteratorImpl;

/// The body of an ordered collection. `Face` is `ICollectionImpl<Item>` or an interface derived
/// from it; `MoreFaces` are interfaces that have nothing to do with the collection.
///
/// The items stand in the order of insertion. Access by index takes constant time, removal time in
/// proportion to the distance from the nearer end.
template <class Face, class... MoreFaces>
class tCollectionImpl : public cor::Counted<Face, MoreFaces...> {
 public:
  using Item = typename Face::Item;
  using Base = ICollectionImpl<Item>;

  // ICollectionImpl
  Result GetItem(std::int32_t index, Item** out) override {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
    return m_nodes[ToPosition(index)]->item.CopyTo(out);
  }
  Result GetCount(std::int32_t* out) override {
    HV_RETURN_IF_NULL(out);
    *out = static_cast<std::int32_t>(m_nodes.size());
    return S_OK;
  }
  Result GetIterator(tIIteratorImpl<Item>** out) override;
  Result RemoveAt(std::int32_t index) override {
    HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
    const std::size_t position = ToPosition(index);
    OnRemove(position);
    // The item goes last: its destructor may look at the collection again.
    const std::unique_ptr<Node> removed = std::move(m_nodes[position]);
    m_nodes.erase(m_nodes.begin() + static_cast<std::ptrdiff_t>(position));
    return S_OK;
  }
  Result Clear() override {
    const Nodes removed = std::exchange(m_nodes, {});
    return S_OK;
  }
  Result Swap(std::int32_t firstIndex, std::int32_t secondIndex) override {
    HV_RETURN_CODE_IF(!IsIndex(firstIndex) || !IsIndex(secondIndex), E_INVALIDARG);
    const std::size_t first = ToPosition(firstIndex);
    const std::size_t second = ToPosition(secondIndex);
    m_nodes[first]->item.Swap(m_nodes[second]->item);
    OnSwap(first, second);
    return S_OK;
  }

 protected:
  /// One place of the collection. Places keep their order for good, so that their serial numbers
  /// ascend; `Swap` exchanges what stands in them.
  struct Node {
    std::uint64_t serial = 0;
    Ref<Item> item;
    const WString* name = nullptr;  ///< for the named collection: the key in its map
  };

  tCollectionImpl() = default;
  ~tCollectionImpl() override = default;

  void* FindFace(const Iid& iid) override {
    if (iid == Base::kIid) return static_cast<Base*>(this);
    return cor::Counted<Face, MoreFaces...>::FindFace(iid);
  }

  /// \name Hooks
  /// @{
  /// An item is about to leave its position. Not called by `Clear`.
  virtual void OnRemove(std::size_t /*position*/) {}
  /// The items of two positions, which may be the same, have been exchanged.
  virtual void OnSwap(std::size_t /*first*/, std::size_t /*second*/) {}
  /// @}

  /// Puts an item at the end and shares it.
  /// \return E_POINTER for a null item; E_OUTOFMEMORY
  Result Append(Item* item) try {
    HV_RETURN_IF_NULL(item);
    AppendNode(*item);
    return S_OK;
  }
  HV_CATCH_RETURN()

  /// `Append` for derived bodies. Throws if there is no memory.
  Node& AppendNode(Item& item) {
    auto node = std::make_unique<Node>(Node{m_lastSerial + 1, Ref<Item>::Share(&item), nullptr});
    m_nodes.push_back(std::move(node));
    ++m_lastSerial;
    return *m_nodes.back();
  }
  [[nodiscard]] std::size_t Size() const { return m_nodes.size(); }
  /// The place at a position below `Size()`.
  [[nodiscard]] Node& NodeAt(std::size_t position) { return *m_nodes[position]; }
  [[nodiscard]] Item& ItemAt(std::size_t position) const { return *m_nodes[position]->item; }
  /// The position of a place of this collection.
  [[nodiscard]] std::size_t PositionOf(const Node& node) const {
    return FirstPositionBehind(node.serial - 1);
  }

 private:
  friend class tIteratorImpl<tCollectionImpl>;
  using Nodes = std::deque<std::unique_ptr<Node>>;

  [[nodiscard]] bool IsIndex(std::int32_t index) const {
    return index >= 0 && ToPosition(index) < m_nodes.size();
  }
  static std::size_t ToPosition(std::int32_t index) { return static_cast<std::size_t>(index); }

  [[nodiscard]] std::size_t FirstPositionBehind(std::uint64_t serial) const {
    std::size_t low = 0;
    std::size_t high = m_nodes.size();
    while (low < high) {
      const std::size_t middle = low + (high - low) / 2;
      if (m_nodes[middle]->serial > serial) {
        high = middle;
      } else {
        low = middle + 1;
      }
    }
    return low;
  }

  Nodes m_nodes;
  std::uint64_t m_lastSerial = 0;
};

/// Walks a collection's items from the start. It remembers the place it came to, not the index, so
/// that removals before it don't make it skip an item.
template <class Collection>
class tIteratorImpl final : public cor::Counted<tIIteratorImpl<typename Collection::Item>> {
 public:
  using Item = typename Collection::Item;

  explicit tIteratorImpl(Collection& collection)
      : m_collection(Ref<Collection>::Share(&collection)) {}

  // tIIteratorImpl
  Result Next(Item** out) override {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    const std::size_t position = Position();
    HV_RETURN_CODE_IF(position == m_collection->m_nodes.size(), S_FALSE);
    StandBehind(position);
    return m_collection->m_nodes[position]->item.CopyTo(out);
  }
  Result Skip(std::int32_t count) override {
    HV_RETURN_CODE_IF(count < 0, E_INVALIDARG);
    HV_RETURN_CODE_IF(count == 0, S_OK);
    const std::size_t position = Position();
    const std::size_t left = m_collection->m_nodes.size() - position;
    const auto wanted = static_cast<std::size_t>(count);
    const std::size_t steps = wanted < left ? wanted : left;
    if (steps > 0) StandBehind(position + steps - 1);
    return steps == wanted ? S_OK : S_FALSE;
  }
  Result Reset() override {
    m_serial = 0;
    m_guess = 0;
    return S_OK;
  }
  Result Clone(tIIteratorImpl<Item>** out) override try {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    auto copy = MakeRef<tIteratorImpl>(*m_collection);
    copy->m_serial = m_serial;
    copy->m_guess = m_guess;
    *out = copy.Detach();
    return S_OK;
  }
  HV_CATCH_RETURN()

 private:
  ~tIteratorImpl() override = default;

  /// The position of the next item.
  [[nodiscard]] std::size_t Position() const {
    const auto& nodes = m_collection->m_nodes;
    const bool guessed = m_guess == 0
                             ? m_serial == 0
                             : m_guess <= nodes.size() && nodes[m_guess - 1]->serial == m_serial;
    return guessed ? m_guess : m_collection->FirstPositionBehind(m_serial);
  }
  void StandBehind(std::size_t position) {
    m_serial = m_collection->m_nodes[position]->serial;
    m_guess = position + 1;
  }

  Ref<Collection> m_collection;
  std::uint64_t m_serial = 0;  // of the place last given; 0 before the first
  std::size_t m_guess = 0;     // where the next item is unless something was removed
};

template <class Face, class... MoreFaces>
Result tCollectionImpl<Face, MoreFaces...>::GetIterator(tIIteratorImpl<Item>** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  *out = MakeRef<tIteratorImpl<tCollectionImpl>>(*this).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

/// Walks a collection from its beginning with a position of its own, for collections that make
/// their items on demand and so have no list to walk. `Collection` has the `GetItem` and `GetCount`
/// of `ICollectionImpl`. An item that can't be made is reported once and stepped over.
template <class Collection>
class tBePoIterator final : public cor::Counted<tIIteratorImpl<typename Collection::Item>> {
 public:
  using Item = typename Collection::Item;

  explicit tBePoIterator(Collection& collection, std::int32_t position = 0)
      : m_collection(Ref<Collection>::Share(&collection)), m_position(position) {}

  // tIIteratorImpl
  Result Next(Item** out) override {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    const Result rc = m_collection->GetItem(m_position, out);
    // Counting such a collection may be dear, so it is asked only where the end may have come.
    if (Failed(rc)) {
      std::int32_t count = 0;
      HV_RETURN_IF_FAILED(m_collection->GetCount(&count));
      HV_RETURN_CODE_IF(m_position >= count, S_FALSE);
    }
    ++m_position;
    return rc;
  }
  Result Skip(std::int32_t count) override {
    HV_RETURN_CODE_IF(count < 0, E_INVALIDARG);
    std::int32_t size = 0;
    HV_RETURN_IF_FAILED(m_collection->GetCount(&size));
    const std::int32_t left = m_position < size ? size - m_position : 0;
    m_position += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  Result Reset() override {
    m_position = 0;
    return S_OK;
  }
  Result Clone(tIIteratorImpl<Item>** out) override try {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    *out = MakeRef<tBePoIterator>(*m_collection, m_position).Detach();
    return S_OK;
  }
  HV_CATCH_RETURN()

 private:
  ~tBePoIterator() override = default;

  Ref<Collection> m_collection;
  std::int32_t m_position = 0;
};

}  // namespace hv::vex::easyImpl
