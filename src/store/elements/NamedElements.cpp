// store/elements/NamedElements.cpp - what the top of a store and the members of a reference share.
#include "store/elements/NamedElements.h"

#include <array>
#include <utility>
#include <vector>

#include "automation/Guards.h"
#include "browse/RepresentedByParts.h"
#include "store/core/IContainer.h"
#include "store/core/IInstList.h"
#include "store/core/IStore.h"
#include "store/elements/StoreElementImpl.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kNameAttribute = u"name";
constexpr std::array kFailures{CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

/// Every member is of a store.
IStoreElementImpl& StoreElement(easyImpl::IVEXElementImpl& element) {
  return static_cast<IStoreElementImpl&>(element);
}

/// Deletes the record of an element. One that is gone already is no failure.
void DeleteRecord(IStoreElementImpl& element) {
  IInstance* const instance = element.GetCoreInstance();
  if (instance->IsValid() != 0) instance->Delete();
}

WString NameOf(IInstance& instance) {
  WString name;
  if (const auto values = QueryRef<IContainer>(&instance)) values->GetString(name, kNameAttribute);
  return name;
}

}  // namespace

template <class Face>
tNamedElements<Face>::~tNamedElements() {
  Disown();
}

template <class Face>
void* tNamedElements<Face>::FindFace(const Iid& iid) {
  if (iid == IStoreElementsImpl::kIid) return static_cast<IStoreElementsImpl*>(this);
  if (iid == easyImpl::IVEXElementsImpl::kIid) {
    return static_cast<easyImpl::IVEXElementsImpl*>(this);
  }
  return Named::FindFace(iid);
}

// --- the list -----------------------------------------------------------------------------------

template <class Face>
Result tNamedElements<Face>::GetItem(std::int32_t index, Element** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_IF_FAILED(Prepare());
  HV_RETURN_IF_FAILED(Named::GetItem(index, element));
  StoreElement(**element).SetNameClient(this);  // another list may have shown it since
  return S_OK;
}

template <class Face>
Result tNamedElements<Face>::GetCount(std::int32_t* count) {
  HV_RETURN_IF_NULL(count);
  *count = 0;
  HV_RETURN_IF_FAILED(Prepare());
  return Named::GetCount(count);
}

template <class Face>
Result tNamedElements<Face>::GetIterator(easyImpl::tIIteratorImpl<Element>** iterator) {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  HV_RETURN_IF_FAILED(Prepare());
  return Named::GetIterator(iterator);
}

template <class Face>
Result tNamedElements<Face>::RemoveAt(std::int32_t index) try {
  HV_RETURN_IF_FAILED(Prepare());
  Ref<Element> element;
  HV_RETURN_IF_FAILED(Named::GetItem(index, element.Put()));
  DeleteRecord(StoreElement(*element));
  return Named::RemoveAt(index);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

template <class Face>
Result tNamedElements<Face>::Clear() {
  Disown();
  m_places.clear();
  m_hasPlaces = false;
  return Named::Clear();
}

template <class Face>
Result tNamedElements<Face>::Swap(std::int32_t firstIndex, std::int32_t secondIndex) {
  HV_RETURN_IF_FAILED(Prepare());
  return Named::Swap(firstIndex, secondIndex);
}

template <class Face>
void tNamedElements<Face>::Disown() {
  for (std::size_t i = 0; i < this->Size(); ++i) StoreElement(this->ItemAt(i)).DropNameClient(this);
}

template <class Face>
void tNamedElements<Face>::OnRemove(std::size_t position) {
  Element& element = this->ItemAt(position);
  StoreElement(element).DropNameClient(this);
  m_places.erase(&element);
  Named::OnRemove(position);
}

template <class Face>
void tNamedElements<Face>::OnSwap(std::size_t first, std::size_t second) {
  Named::OnSwap(first, second);
  m_places.clear();
  m_hasPlaces = false;
}

template <class Face>
auto tNamedElements<Face>::FindMember(Element* element) -> Node* {
  if (!m_hasPlaces) {
    m_places.reserve(this->Size());
    for (std::size_t i = 0; i < this->Size(); ++i) {
      m_places.emplace(&this->ItemAt(i), &this->NodeAt(i));
    }
    m_hasPlaces = true;
  }
  const auto found = m_places.find(element);
  return found != m_places.end() ? found->second : nullptr;
}

template <class Face>
auto tNamedElements<Face>::FindMemberByKey(IStoreElementImpl& element) -> Node* {
  WString key;
  element.GetCoreInstance()->GetKey(key);
  WString own;
  for (std::size_t i = 0; i < this->Size(); ++i) {
    StoreElement(this->ItemAt(i)).GetCoreInstance()->GetKey(own);
    if (own.EqualsExact(key)) return &this->NodeAt(i);
  }
  return nullptr;
}

template <class Face>
void tNamedElements<Face>::DropMember(const Node& node) {
  (void)Named::RemoveAt(static_cast<std::int32_t>(this->PositionOf(node)));
}

template <class Face>
Result tNamedElements<Face>::IndexOf(Element* element, std::int32_t* index) try {
  HV_RETURN_IF_NULL(index);
  *index = -1;
  HV_RETURN_CODE_IF(!element, E_INVALIDARG);
  HV_RETURN_IF_FAILED(Prepare());
  const Node* node = FindMember(element);
  HV_RETURN_CODE_IF(!node, E_INVALIDARG);
  *index = static_cast<std::int32_t>(this->PositionOf(*node));
  return S_OK;
}
HV_CATCH_RETURN()

// --- names --------------------------------------------------------------------------------------

template <class Face>
Result tNamedElements<Face>::GetItemByName(std::u16string_view name, Element** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_IF_FAILED(Prepare());
  HV_RETURN_IF_FAILED(Named::GetItemByName(name, element));
  StoreElement(**element).SetNameClient(this);
  return S_OK;
}

template <class Face>
Result tNamedElements<Face>::RemoveByName(std::u16string_view name) {
  HV_RETURN_IF_FAILED(Prepare());
  return Named::RemoveByName(name);
}

template <class Face>
Result tNamedElements<Face>::Exists(std::u16string_view name, bool* exists) {
  HV_RETURN_IF_NULL(exists);
  *exists = false;
  HV_RETURN_IF_FAILED(Prepare());
  return Named::Exists(name, exists);
}

template <class Face>
Result tNamedElements<Face>::Rename(std::u16string_view oldName, std::u16string_view newName,
                                    WString* unique) {
  HV_RETURN_IF_NULL(unique);
  unique->clear();
  HV_RETURN_IF_FAILED(Prepare());
  return Named::Rename(oldName, newName, unique);
}

template <class Face>
void tNamedElements<Face>::OnElementRenamed(IStoreElementImpl& element,
                                            std::u16string_view /*oldName*/,
                                            std::u16string_view newName) {
  // The old name tells nothing: here the member may stand under a name with a number behind it.
  const Node* node = FindMember(&element);
  if (!node) return;
  const WString oldName = *node->name;
  WString unique;
  (void)Named::Rename(oldName, newName, &unique);
}

// --- reading and making members -----------------------------------------------------------------

template <class Face>
Result tNamedElements<Face>::AddMember(IStoreElementImpl& element, std::u16string_view name) {
  HV_RETURN_IF_FAILED(Named::Add(&element, name));
  element.SetNameClient(this);
  if (m_hasPlaces) m_places.emplace(&element, &this->NodeAt(this->Size() - 1));
  return S_OK;
}

template <class Face>
Result tNamedElements<Face>::AppendFrom(IInstance* start, std::u16string_view path) {
  Ref<IStore> store;
  HV_RETURN_IF_FAILED(m_provider->GetStore(store.Put()));
  const auto own = OwnSimplifiedStore(*m_provider);
  HV_RETURN_CODE_IF(!own, E_UNEXPECTED);
  ElementKind kind;
  const auto append = [&](IInstance& instance, WString name) {
    const Ref<CStoreElementImpl> element = own->ElementOf(instance, kind);
    HV_RETURN_IF_FAILED(AddMember(*element, name));
    element->SetCachedName(std::move(name));
    return S_OK;
  };

  const auto noParts = MakeRef<CRepresentedByPartsImpl>();
  DisplayNameTable table;
  const Result read = ReadDisplayNames(store.Get(), start, path, {}, noParts.Get(), &table);
  if (read != E_NOTIMPL) {
    HV_RETURN_IF_FAILED(read);
    own->Expect(table.names.size());
    for (std::size_t row = 0; row < table.names.size(); ++row) {
      const auto instance = Ref<IInstance>::Adopt(table.values->GetInstance(row));
      if (instance) HV_RETURN_IF_FAILED(append(*instance, std::move(table.names[row])));
    }
    return S_OK;
  }

  // An engine that reads nothing in bulk is asked for each name.
  const auto list =
      Ref<IInstList>::Adopt(start ? start->GetRelated(path) : store->GetInstances(path));
  HV_RETURN_CODE_IF(!list, E_FAIL);
  while (const auto instance = Ref<IInstance>::Adopt(list->Next())) {
    HV_RETURN_IF_FAILED(append(*instance, NameOf(*instance)));
  }
  return S_OK;
}

template <class Face>
Result tNamedElements<Face>::NameNew(IInstance& instance, std::u16string_view name,
                                     Ref<IStoreElementImpl>* element) {
  try {
    const auto values = QueryRef<IContainer>(&instance);
    HV_RETURN_CODE_IF(!values, E_FAIL);
    values->SetString(kNameAttribute, name);
  } catch (...) {
    instance.Delete();
    throw;
  }
  HV_RETURN_IF_FAILED(m_provider->GetElement(&instance, element->Put()));
  (*element)->SetCachedName(name);
  return S_OK;
}

template <class Face>
Result tNamedElements<Face>::Reload() try {
  // Held meanwhile, so that the elements that stay aren't made anew.
  std::vector<Ref<Element>> before;
  before.reserve(this->Size());
  for (std::size_t i = 0; i < this->Size(); ++i) {
    before.push_back(Ref<Element>::Share(&this->ItemAt(i)));
  }
  HV_RETURN_IF_FAILED(Clear());
  return ReadMembers();
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

// --- deleting -----------------------------------------------------------------------------------

template <class Face>
Result tNamedElements<Face>::Remove(const Variant& indexOrName) try {
  const Variant& key = indexOrName.Dereferenced();
  Variant number;
  if (!Failed(key.ChangeType(VT_I4, &number)) && number.AsInt64() >= 1) {
    return RemoveAt(static_cast<std::int32_t>(number.AsInt64() - 1));
  }
  Variant name;
  HV_RETURN_CODE_IF(Failed(key.ChangeType(VT_BSTR, &name)), E_INVALIDARG);
  return this->RemoveByName(name.AsText());
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

template <class Face>
Result tNamedElements<Face>::RemoveElement(IStoreElementImpl* element) try {
  HV_RETURN_IF_NULL(element);
  HV_RETURN_IF_FAILED(Prepare());
  const Node* node =
      m_provider->OwnsElement(element) ? FindMember(element) : FindMemberByKey(*element);
  HV_RETURN_CODE_IF(!node, E_FAIL);
  return RemoveAt(static_cast<std::int32_t>(this->PositionOf(*node)));
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

template <class Face>
Result tNamedElements<Face>::RemoveAll() {
  HV_RETURN_IF_FAILED(Prepare());
  while (this->Size() > 0) HV_RETURN_IF_FAILED(RemoveAt(0));
  return S_OK;
}

// --- what only lists of a search have -----------------------------------------------------------

template <class Face>
Result tNamedElements<Face>::Add(IUnknown* /*instance*/, Element** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  return E_NOTIMPL;
}

template <class Face>
Result tNamedElements<Face>::GetTransportData(IDispatch** collection) {
  HV_RETURN_IF_NULL(collection);
  *collection = nullptr;
  return E_NOTIMPL;
}

template <class Face>
Result tNamedElements<Face>::GetIsIncomplete(std::int32_t* isIncomplete) {
  HV_RETURN_IF_NULL(isIncomplete);
  *isIncomplete = 0;
  return S_OK;
}

template <class Face>
Result tNamedElements<Face>::GetMaxCount(std::int32_t* maxCount) {
  HV_RETURN_IF_NULL(maxCount);
  *maxCount = 0;
  return E_NOTIMPL;
}

template <class Face>
Result tNamedElements<Face>::SetMaxCount(std::int32_t /*maxCount*/) {
  return E_NOTIMPL;
}

template <class Face>
Result tNamedElements<Face>::SortByName(bool /*ascending*/) {
  return E_NOTIMPL;
}

template <class Face>
Result tNamedElements<Face>::SortByProperty(std::u16string_view /*property*/, bool /*ascending*/) {
  return E_NOTIMPL;
}

template class tNamedElements<IStoreElementsImpl>;
template class tNamedElements<IRootElementsImpl>;

}  // namespace hv::vex
