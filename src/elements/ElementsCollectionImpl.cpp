// elements/ElementsCollectionImpl.cpp - a plain list of elements.
#include "elements/ElementsCollectionImpl.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

#include "automation/Guards.h"
#include "elements/DateDigits.h"
#include "elements/IPropertyImpl.h"
#include "store/collections/CollectionImpl.h"

namespace hv::vex::easyImpl {

namespace {

/// What an element sorts by: nothing if its property can't be read, which is no failure.
Variant SortValue(IVEXElementImpl& element, std::u16string_view name) {
  Ref<IPropertyCollectionImpl> properties;
  Ref<IPropertyImpl> property;
  Variant value;
  if (Failed(element.GetProperties(properties.Put())) || !properties ||
      Failed(properties->GetItemByName(name, property.Put())) || !property ||
      Failed(property->GetValue(&value))) {
    return Variant::Null();
  }
  return value;
}

WString QualifiedName(IVEXElementImpl& element) {
  WString type;
  WString name;
  (void)element.GetType(&type);
  (void)element.GetName(&name);
  type += u'.';
  return type + name;
}

bool IsNothing(const Variant& value) { return value.IsEmpty() || value.Is(VT_NULL); }

}  // namespace

void* CElementsCollectionImpl::FindFace(const Iid& iid) {
  using Plain = ICollectionImpl<IVEXElementImpl>;
  if (iid == Plain::kIid) return static_cast<Plain*>(this);
  return cor::Counted<IVEXElementsImpl>::FindFace(iid);
}

bool CElementsCollectionImpl::IsIndex(std::int32_t index) const {
  return index >= 0 && static_cast<std::size_t>(index) < m_elements.size();
}

Result CElementsCollectionImpl::Append(IVEXElementImpl* element) try {
  HV_RETURN_IF_NULL(element);
  m_elements.push_back(Ref<IVEXElementImpl>::Share(element));
  return S_OK;
}
HV_CATCH_RETURN()

Result CElementsCollectionImpl::GetItem(std::int32_t index, IVEXElementImpl** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  return m_elements[static_cast<std::size_t>(index)].CopyTo(element);
}

Result CElementsCollectionImpl::GetCount(std::int32_t* count) {
  HV_RETURN_IF_NULL(count);
  *count = static_cast<std::int32_t>(m_elements.size());
  return S_OK;
}

Result CElementsCollectionImpl::GetIterator(tIIteratorImpl<IVEXElementImpl>** iterator) try {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  *iterator = MakeRef<tBePoIterator<CElementsCollectionImpl>>(*this).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CElementsCollectionImpl::RemoveAt(std::int32_t index) {
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  const auto at = m_elements.begin() + index;
  const Ref<IVEXElementImpl> removed = std::move(*at);  // dies when the list is whole again
  m_elements.erase(at);
  return S_OK;
}

Result CElementsCollectionImpl::Clear() {
  const auto removed = std::exchange(m_elements, {});
  return S_OK;
}

Result CElementsCollectionImpl::Swap(std::int32_t firstIndex, std::int32_t secondIndex) {
  HV_RETURN_CODE_IF(!IsIndex(firstIndex) || !IsIndex(secondIndex), E_INVALIDARG);
  std::swap(m_elements[static_cast<std::size_t>(firstIndex)],
            m_elements[static_cast<std::size_t>(secondIndex)]);
  return S_OK;
}

Result CElementsCollectionImpl::Add(IUnknown* /*instance*/, IVEXElementImpl** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  return E_NOTIMPL;
}

Result CElementsCollectionImpl::IndexOf(IVEXElementImpl* element, std::int32_t* index) {
  HV_RETURN_IF_NULL(index);
  *index = -1;
  HV_RETURN_CODE_IF(!element, E_INVALIDARG);
  const auto found = std::ranges::find(m_elements, element, &Ref<IVEXElementImpl>::Get);
  HV_RETURN_CODE_IF(found == m_elements.end(), E_INVALIDARG);
  *index = static_cast<std::int32_t>(found - m_elements.begin());
  return S_OK;
}

Result CElementsCollectionImpl::GetTransportData(IDispatch** collection) {
  HV_RETURN_IF_NULL(collection);
  *collection = nullptr;
  return E_NOTIMPL;
}

Result CElementsCollectionImpl::GetIsIncomplete(std::int32_t* isIncomplete) {
  HV_RETURN_IF_NULL(isIncomplete);
  *isIncomplete = m_isIncomplete ? 1 : 0;
  return S_OK;
}

Result CElementsCollectionImpl::GetMaxCount(std::int32_t* maxCount) {
  HV_RETURN_IF_NULL(maxCount);
  *maxCount = m_maxCount;
  return S_OK;
}

Result CElementsCollectionImpl::SetMaxCount(std::int32_t maxCount) {
  HV_RETURN_CODE_IF(maxCount < 1, E_INVALIDARG);
  m_maxCount = maxCount;
  return S_OK;
}

bool CElementsCollectionImpl::IsLess(const Variant& a, const Variant& b) const {
  const auto rank = [](const Variant& value) { return IsNothing(value) ? 2 : value.Is(VT_DATE); };
  const int rankA = rank(a);
  const int rankB = rank(b);
  if (rankA != rankB || rankA == 2) return rankA < rankB;
  // Dates before day 0 count their time backwards, so the plain numbers don't order them.
  if (rankA == 1) return DigitsOfDate(a.AsDouble()) < DigitsOfDate(b.AsDouble());
  VarOrder order = VarOrder::Equal;
  return !Failed(CompareVariants(a, b, &order)) && order == VarOrder::Less;
}

template <class Key, class Less>
void CElementsCollectionImpl::SortBy(const std::vector<Key>& keys, bool ascending, Less less) {
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order,
                           [&](std::size_t a, std::size_t b) { return less(keys[a], keys[b]); });
  // Descending is the ascending order from its end: elements that can't be told apart turn round.
  if (!ascending) std::ranges::reverse(order);
  std::vector<Ref<IVEXElementImpl>> sorted;
  sorted.reserve(order.size());
  for (const std::size_t from : order) sorted.push_back(m_elements[from]);
  m_elements = std::move(sorted);
  if (m_eventsClient) m_eventsClient->OnSorted();
}

Result CElementsCollectionImpl::SortByName(bool ascending) try {
  std::vector<WString> keys;
  keys.reserve(m_elements.size());
  for (const auto& element : m_elements) keys.push_back(QualifiedName(*element));
  SortBy(keys, ascending, cor::NoCaseLess());
  return S_OK;
}
HV_CATCH_RETURN()

Result CElementsCollectionImpl::SortByProperty(std::u16string_view property, bool ascending) try {
  std::vector<Variant> keys;
  keys.reserve(m_elements.size());
  for (const auto& element : m_elements) keys.push_back(SortValue(*element, property));
  SortBy(keys, ascending, [this](const Variant& a, const Variant& b) { return IsLess(a, b); });
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex::easyImpl
