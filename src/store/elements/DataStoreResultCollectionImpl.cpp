// store/elements/DataStoreResultCollectionImpl.cpp - the hits of a search.
#include "store/elements/DataStoreResultCollectionImpl.h"

#include <numeric>
#include <utility>

#include "automation/Guards.h"
#include "elements/ElementOrder.h"
#include "store/collections/CollectionImpl.h"
#include "store/core/CoreLibrary.h"
#include "store/core/IInstance.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/elements/StoreElementListImpl.h"

namespace hv::vex {

void* CDataStoreResultCollectionImpl::FindFace(const Iid& iid) {
  using Plain = easyImpl::ICollectionImpl<Item>;
  if (iid == Plain::kIid) return static_cast<Plain*>(this);
  return tNamelessElements::FindFace(iid);
}

std::size_t CDataStoreResultCollectionImpl::Size() const {
  if (m_isOrdered) return m_order.size();
  return m_list ? static_cast<std::size_t>(m_list->GetCount()) : 0;
}

bool CDataStoreResultCollectionImpl::IsIndex(std::int32_t index) const {
  return index >= 0 && static_cast<std::size_t>(index) < Size();
}

std::uint64_t CDataStoreResultCollectionImpl::PlaceOf(std::size_t position) const {
  return m_isOrdered ? m_order[position] : position;
}

void CDataStoreResultCollectionImpl::KeepOrder() {
  if (m_isOrdered) return;
  m_order.resize(Size());
  std::iota(m_order.begin(), m_order.end(), std::uint64_t{0});
  m_isOrdered = true;
}

// --- hits ---------------------------------------------------------------------------------------

Result CDataStoreResultCollectionImpl::GetItem(std::int32_t index, Item** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  const std::uint64_t place = PlaceOf(static_cast<std::size_t>(index));
  const auto instance = Ref<IInstance>::Adopt(m_list->GetInstance(place));
  HV_RETURN_CODE_IF(!instance, E_FAIL);
  Ref<IStoreElementImpl> made;
  HV_RETURN_IF_FAILED(m_provider->GetElement(instance.Get(), made.Put()));
  *element = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::GetCount(std::int32_t* count) try {
  HV_RETURN_IF_NULL(count);
  *count = 0;
  *count = static_cast<std::int32_t>(Size());
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::GetIterator(easyImpl::tIIteratorImpl<Item>** iterator) try {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  *iterator = MakeRef<easyImpl::tBePoIterator<CDataStoreResultCollectionImpl>>(*this).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::RemoveAt(std::int32_t index) try {
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  KeepOrder();
  m_order.erase(m_order.begin() + index);
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::Swap(std::int32_t firstIndex, std::int32_t secondIndex) try {
  HV_RETURN_CODE_IF(!IsIndex(firstIndex) || !IsIndex(secondIndex), E_INVALIDARG);
  KeepOrder();
  std::swap(m_order[static_cast<std::size_t>(firstIndex)],
            m_order[static_cast<std::size_t>(secondIndex)]);
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::AppendInstance(IInstance& instance) {
  if (!m_list) m_list = CreateEngineInstList();
  const std::uint64_t place = m_list->GetCount();
  m_list->Append(&instance);
  if (m_isOrdered) m_order.push_back(place);
  return S_OK;
}

Result CDataStoreResultCollectionImpl::Add(IUnknown* instance, Item** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  Ref<IStoreElementImpl> made;
  HV_RETURN_IF_FAILED(ElementOfObject(*m_provider, instance, &made));
  HV_RETURN_IF_FAILED(AppendInstance(*made->GetCoreInstance()));
  *element = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::Append(Item* element) try {
  HV_RETURN_IF_NULL(element);
  const auto own = QueryRef<IStoreElementImpl>(element);
  HV_RETURN_CODE_IF(!own || !m_provider->OwnsElement(own.Get()), VEX_E_FOREIGN_ELEMENT);
  return AppendInstance(*own->GetCoreInstance());
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::Reserve(std::int32_t count) {
  return count < 0 ? E_INVALIDARG : S_OK;
}

Result CDataStoreResultCollectionImpl::IndexOf(Item* element, std::int32_t* index) try {
  HV_RETURN_IF_NULL(index);
  *index = -1;
  const auto own = QueryRef<IStoreElementImpl>(element);
  HV_RETURN_CODE_IF(!own || !m_provider->OwnsElement(own.Get()), E_INVALIDARG);
  WString wanted;
  own->GetCoreInstance()->GetKey(wanted);
  WString key;
  for (std::size_t i = 0; i < Size(); ++i) {
    m_list->GetKey(PlaceOf(i), key);
    if (!key.EqualsExact(wanted)) continue;
    *index = static_cast<std::int32_t>(i);
    return S_OK;
  }
  return E_INVALIDARG;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::GetTransportData(IDispatch** collection) {
  HV_RETURN_IF_NULL(collection);
  *collection = nullptr;
  return E_NOTIMPL;
}

// --- order --------------------------------------------------------------------------------------

template <class Key, class KeyOf>
std::vector<Key> CDataStoreResultCollectionImpl::KeysOf(KeyOf keyOf) {
  std::vector<Key> keys(Size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    Ref<Item> element;
    if (!Failed(GetItem(static_cast<std::int32_t>(i), element.Put()))) keys[i] = keyOf(*element);
  }
  return keys;
}

template <class Key, class Less>
void CDataStoreResultCollectionImpl::SortBy(const std::vector<Key>& keys, bool ascending,
                                            Less less) {
  std::vector<std::uint64_t> sorted;
  sorted.reserve(keys.size());
  for (const std::size_t from : easyImpl::SortedPositions(keys, ascending, less)) {
    sorted.push_back(PlaceOf(from));
  }
  m_order = std::move(sorted);
  m_isOrdered = true;
}

Result CDataStoreResultCollectionImpl::SortByName(bool ascending) try {
  SortBy(KeysOf<WString>([](Item& element) { return easyImpl::QualifiedName(element); }), ascending,
         cor::NoCaseLess());
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreResultCollectionImpl::SortByProperty(std::u16string_view property,
                                                      bool ascending) try {
  SortBy(KeysOf<Variant>([&](Item& element) { return easyImpl::SortValue(element, property); }),
         ascending, easyImpl::ByValue());
  return S_OK;
}
HV_CATCH_RETURN()

// --- searches -----------------------------------------------------------------------------------

Result CDataStoreResultCollectionImpl::GetIsIncomplete(std::int32_t* isIncomplete) {
  HV_RETURN_IF_NULL(isIncomplete);
  *isIncomplete = m_total == kIncomplete ? 1 : 0;
  return S_OK;
}

Result CDataStoreResultCollectionImpl::GetMaxCount(std::int32_t* maxCount) {
  HV_RETURN_IF_NULL(maxCount);
  *maxCount = m_maxCount;
  return S_OK;
}

Result CDataStoreResultCollectionImpl::SetMaxCount(std::int32_t maxCount) {
  HV_RETURN_CODE_IF(maxCount < 1, E_INVALIDARG);
  m_maxCount = maxCount;
  return S_OK;
}

Result CDataStoreResultCollectionImpl::ClearResults() {
  m_list.Reset();
  m_order.clear();
  m_isOrdered = false;
  m_total = 0;
  return S_OK;
}

Result CDataStoreResultCollectionImpl::SetList(IInstList* list) {
  HV_RETURN_IF_NULL(list);
  (void)ClearResults();
  m_list = Ref<IInstList>::Share(list);
  return S_OK;
}

Result CDataStoreResultCollectionImpl::SetTotal(std::int32_t total) {
  m_total = total;
  return S_OK;
}

Result CDataStoreResultCollectionImpl::GetList(IInstList** list) try {
  HV_RETURN_IF_NULL(list);
  *list = nullptr;
  if (!m_isOrdered) return m_list.CopyTo(list);
  Ref<IInstList> ordered = CreateEngineInstList();
  for (const std::uint64_t place : m_order) {
    ordered->Append(Ref<IInstance>::Adopt(m_list->GetInstance(place)).Get());
  }
  *list = ordered.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result MakeResultCollection(easyImpl::ISimplifiedStoreImpl& provider, std::int32_t maxCount,
                            IDataStoreResultCollectionImpl** results) try {
  HV_RETURN_IF_NULL(results);
  *results = nullptr;
  HV_RETURN_CODE_IF(maxCount < 1, E_INVALIDARG);
  *results = MakeRef<CDataStoreResultCollectionImpl>(provider, maxCount).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
