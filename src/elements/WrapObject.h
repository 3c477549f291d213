// elements/WrapObject.h - logic objects on their way out to hosts, and their members by name or
// index.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "automation/ReadCollection.h"
#include "store/collections/ICollectionImpl.h"

namespace hv::vex {

/// Calls an operation that gives a logic object and hands it out in a new `Wrapper`; null goes out
/// as null.
/// \param get  `Result(Logic**)`
/// \return E_POINTER for a null `out`, with nothing done; otherwise the operation's code.
template <class Logic, class Wrapper, class Interface, class Get>
Result WrapResult(Interface** out, Get get) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  Ref<Logic> logic;
  const Result rc = get(logic.Put());
  if (logic) *out = MakeRef<Wrapper>(std::move(logic)).Detach();
  return rc;
}
HV_CATCH_RETURN()

/// Calls an operation that answers a question with a truth value, and gives it as 1 or 0.
/// \param ask  `Result(bool*)`
template <class Ask>
Result TruthResult(std::int32_t* out, Ask ask) {
  HV_RETURN_IF_NULL(out);
  bool answer = false;
  const Result rc = ask(&answer);
  *out = answer ? 1 : 0;
  return rc;
}

/// The traits of `automation::tReadCollectionInt` for a logic collection whose items go out in a
/// `Wrapper` with the interface `FaceType`; scripts count from 0.
template <class CollectionType, class FaceType, class Wrapper>
struct tReadTraits {
  using Collection = CollectionType;
  using Item = typename Collection::Item;
  using Face = FaceType;
  using Iterator = easyImpl::tIIteratorImpl<Item>;
  static constexpr std::int32_t kFirstIndex = 0;
  static Result Wrap(Item& item, Face** out) {
    *out = MakeRef<Wrapper>(Ref<Item>::Share(&item)).Detach();
    return S_OK;
  }
};

}  // namespace hv::vex
