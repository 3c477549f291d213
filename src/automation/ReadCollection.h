// automation/ReadCollection.h - what all wrappers around a logic collection have in common.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include <storefabric/Dispatch.h>

#include "automation/DispatchImpl.h"
#include "automation/Guards.h"
#include "cor/Counted.h"

namespace hv::automation {

/// What a script gave to name a member of a collection.
struct ItemKey {
  bool isName = false;
  std::int32_t index = 0;         ///< as the script counts
  const WString* name = nullptr;  ///< borrowed from the variant
};

/// Tells a name from an index. A text is a name even if it holds digits only, every number is an
/// index.
/// \return S_OK; E_INVALIDARG for a number that no index can be; DISP_E_TYPEMISMATCH for a value
/// that
///         is neither.
Result ReadItemKey(const Variant& nameOrIndex, ItemKey* key);

/// Walks a logic iterator and wraps each of its items; the object behind `_NewEnum`. `Traits` is
/// that of `tReadCollectionInt`; `Iterator` has `Next(Item**)`, which gives S_FALSE at the end, and
/// `Reset()`.
template <class Traits, class Iterator>
class tIteratorInt final : public cor::Counted<IVariantIterator> {
 public:
  explicit tIteratorInt(Ref<Iterator> iterator) : m_iterator(std::move(iterator)) {}

  Result Next(Variant* item) override try {
    HV_RETURN_IF_NULL(item);
    item->Clear();
    Ref<typename Traits::Item> found;
    const Result rc = m_iterator->Next(found.Put());
    if (Failed(rc) || !found) return Failed(rc) ? rc : S_FALSE;
    Ref<typename Traits::Face> face;
    HV_RETURN_IF_FAILED(Traits::Wrap(*found, face.Put()));
    *item = Variant::Object(face.Get());
    return S_OK;
  }
  HV_CATCH_RETURN()

  Result Reset() override try { return m_iterator->Reset(); }
  HV_CATCH_RETURN()

 private:
  ~tIteratorInt() override = default;

  Ref<Iterator> m_iterator;
};

/// The reading members of a collection wrapper: `Item`, `Count` and `_NewEnum` over one logic
/// collection. `Traits` says what the collection is:
///
///     struct Traits {
///       using Collection = ...;  // GetItem(index, Item**), GetCount(int32*),
///       GetIterator(Iterator**)
///                                // and, if items have names, GetItemByName(name, Item**)
///       using Item = ...;        // the logic item
///       using Face = ...;        // its automation interface
///       using Iterator = ...;
///       static constexpr std::int32_t kFirstIndex = 0;  // how scripts count
///       static Result Wrap(Item& item, Face** out);     // a new wrapper, with one reference
///     };
///
/// The members below have the names and signatures of the usual collection interfaces and override
/// them; an interface with an `Item` of its own calls `ItemAt`.
template <class Derived, class Traits, class Interface, class... Faces>
class tReadCollectionInt : public DispatchImpl<Derived, Interface, Faces...> {
 public:
  using Collection = typename Traits::Collection;
  using Item_ = typename Traits::Item;
  using Face = typename Traits::Face;

  virtual Result Item(const Variant& nameOrIndex, Face** out) try {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    ItemKey key;
    HV_RETURN_IF_FAILED(ReadItemKey(nameOrIndex, &key));
    if (!key.isName) return ItemAt(key.index, out);
    if constexpr (kHasNames) {
      Ref<Item_> item;
      HV_RETURN_IF_FAILED(m_collection->GetItemByName(*key.name, item.Put()));
      return Traits::Wrap(*item, out);
    } else {
      return DISP_E_TYPEMISMATCH;
    }
  }
  HV_CATCH_RETURN()

  virtual Result get_Count(std::int32_t* out) try {
    HV_RETURN_IF_NULL(out);
    *out = 0;
    return m_collection->GetCount(out);
  }
  HV_CATCH_RETURN()

  virtual Result get__NewEnum(IVariantIterator** out) try {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    Ref<typename Traits::Iterator> iterator;
    HV_RETURN_IF_FAILED(m_collection->GetIterator(iterator.Put()));
    *out = new tIteratorInt<Traits, typename Traits::Iterator>(std::move(iterator));
    return S_OK;
  }
  HV_CATCH_RETURN()

 protected:
  explicit tReadCollectionInt(Ref<Collection> collection) : m_collection(std::move(collection)) {}

  /// The item at an index as scripts count.
  Result ItemAt(std::int32_t index, Face** out) try {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    HV_RETURN_CODE_IF(index < Traits::kFirstIndex, E_INVALIDARG);
    Ref<Item_> item;
    HV_RETURN_IF_FAILED(m_collection->GetItem(index - Traits::kFirstIndex, item.Put()));
    return Traits::Wrap(*item, out);
  }
  HV_CATCH_RETURN()

  [[nodiscard]] Collection& Logic() const { return *m_collection; }

 private:
  static constexpr bool kHasNames =
      requires(Collection & collection, const WString& name, Item_** out) {
    collection.GetItemByName(name, out);
  };

  Ref<Collection> m_collection;
};

}  // namespace hv::automation
