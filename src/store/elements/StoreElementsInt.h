// store/elements/StoreElementsInt.h - collections of a store's elements as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IStoreElement.h>
#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "automation/ReadCollection.h"
#include "elements/LogicOf.h"
#include "elements/VEXElementInt.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

/// The traits of `automation::tReadCollectionInt` for collections of a store's elements; scripts
/// count from 0.
template <class CollectionType>
struct tStoreElementTraits {
  using Collection = CollectionType;
  using Item = easyImpl::IVEXElementImpl;
  using Face = IStoreElement;
  using Iterator = easyImpl::tIIteratorImpl<Item>;
  static constexpr std::int32_t kFirstIndex = 0;
  static Result Wrap(Item& item, Face** out) {
    const auto element = QueryRef<IStoreElementImpl>(&item);
    HV_RETURN_CODE_IF(!element, E_UNEXPECTED);
    return WrapStoreElement(element.Get(), out);
  }
};

/// The top of a store, and what references lead to.
class CStoreElementsInt final
    : public automation::tReadCollectionInt<CStoreElementsInt,
                                            tStoreElementTraits<IStoreElementsImpl>, IStoreElements,
                                            easyImpl::ILogicOf<easyImpl::IVEXElementsImpl>> {
 public:
  explicit CStoreElementsInt(Ref<IStoreElementsImpl> logic)
      : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();
  [[nodiscard]] IStoreElementsImpl& Elements() const { return Logic(); }

  // IStoreElements
  Result Add(const WString& name, IStoreElement** element) override;
  Result Remove(const Variant& nameOrIndex) override;
  Result RemoveAll() override;
  Result AddReference(IDispatch* element, IStoreElement** member) override;
  Result RemoveReference(IDispatch* element) override;
  Result RemoveAllReferences() override;
  Result ReadColumns(const Variant& properties, Variant* columns) override;
  // ILogicOf
  easyImpl::IVEXElementsImpl& GetLogic() override { return Logic(); }

 private:
  ~CStoreElementsInt() override = default;
};

/// A list of elements, and the hits of a search.
class CStoreElementListInt final
    : public automation::tReadCollectionInt<
          CStoreElementListInt, tStoreElementTraits<IStoreElementListImpl>, IStoreElementList,
          IVEXElements, easyImpl::ILogicOf<easyImpl::IVEXElementsImpl>> {
 public:
  explicit CStoreElementListInt(Ref<IStoreElementListImpl> logic)
      : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();
  [[nodiscard]] IStoreElementsImpl& Elements() const { return Logic(); }

  // IVEXElements
  Result Add(IUnknown* instance, IVEXElement** element) override;
  using tReadCollectionInt::Item;
  Result Item(const Variant& index, IVEXElement** element) override;
  Result Remove(std::int32_t index) override { return Logic().RemoveAt(index); }
  Result RemoveAll() override { return Logic().Clear(); }
  Result get_TransportDataCollection(IDispatch** collection) override {
    return Logic().GetTransportData(collection);
  }
  Result get_IsIncomplete(std::int32_t* isIncomplete) override {
    return Logic().GetIsIncomplete(isIncomplete);
  }
  Result get_MaxCount(std::int32_t* maxCount) override { return Logic().GetMaxCount(maxCount); }
  Result put_MaxCount(std::int32_t maxCount) override { return Logic().SetMaxCount(maxCount); }
  Result Sort(const Variant& property, const Variant& ascending) override {
    return easyImpl::SortElements(Logic(), property, ascending);
  }
  // IStoreElementList
  Result ReadColumns(const Variant& properties, Variant* columns) override;
  // ILogicOf
  easyImpl::IVEXElementsImpl& GetLogic() override { return Logic(); }

 private:
  ~CStoreElementListInt() override = default;
};

}  // namespace hv::vex
