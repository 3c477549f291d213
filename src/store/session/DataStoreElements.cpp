// store/session/DataStoreElements.cpp - the elements of a session: made, found, listed, deleted.
#include <utility>

#include "automation/Guards.h"
#include "browse/RepresentedByParts.h"
#include "store/core/IContainer.h"
#include "store/core/IEntity.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IModel.h"
#include "store/core/IStoreQuery.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/session/DataStoreImpl.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kNameAttribute = u"name";

// An entity of the base model has no instances, so for a new element it is as good as unknown.
constexpr CodeRow kCreateRows[] = {{errc::kInvalidArgument, E_INVALIDARG}};

}  // namespace

Result CDataStoreImpl::GetRootElements(IRootElementsImpl** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  HV_RETURN_CODE_IF(!m_simplified, E_UNEXPECTED);
  if (!m_rootElements) {
    Ref<IRootElementsImpl> made;
    HV_RETURN_CODE_IF(Failed(m_simplified->CreateRootElements(made.Put())) || !made, E_FAIL);
    m_rootElements = std::move(made);
  }
  return m_rootElements.CopyTo(elements);
}

const WString& CDataStoreImpl::RootEntityName() {
  if (m_config && m_rootStamp != m_config->GetGeneration()) ReadRootEntityName();
  return m_rootEntityName;
}

void CDataStoreImpl::ReadRootEntityName() {
  m_rootEntityName.clear();
  if (!m_config) return;
  m_rootStamp = m_config->GetGeneration();
  const auto root = Ref<IBrowseConfigEntity>::Adopt(m_config->GetFirstRoot());
  if (root) root->GetEntityName(m_rootEntityName);
}

Result CDataStoreImpl::CreateElement(std::u16string_view entityName,
                                     std::u16string_view elementName,
                                     IStoreElementImpl** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(!m_simplified, E_UNEXPECTED);
  const bool isRoot = !RootEntityName().empty() && m_rootEntityName == entityName;
  // Through the root collection, so that names stay unique there and the list stays current.
  if (isRoot && m_rootElements) return m_rootElements->Add(elementName, element);
  const auto model = Ref<IModel>::Adopt(m_store->GetModel());
  const auto entity = Ref<IEntity>::Adopt(
      model ? model->GetEntity(isRoot ? m_rootEntityName.view() : entityName) : nullptr);
  HV_RETURN_CODE_IF(!entity, E_INVALIDARG);
  const auto instance = Ref<IInstance>::Adopt(m_store->CreateInstance(entity.Get()));
  HV_RETURN_CODE_IF(!instance, E_FAIL);
  const auto values = instance.As<IContainer>();
  HV_RETURN_CODE_IF(!values, E_FAIL);
  try {
    values->SetString(kNameAttribute, elementName);
  } catch (const Exception&) {
    m_store->DeleteInstance(instance.Get());
    throw;
  }
  return m_simplified->GetElement(instance.Get(), element);
}
HV_CATCH_RETURN_AS(E_FAIL, kCreateRows)

Result CDataStoreImpl::GetElementByKey(std::u16string_view key, IStoreElementImpl** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(!m_simplified, E_UNEXPECTED);
  return m_simplified->GetElementByKey(key, element);
}

Result CDataStoreImpl::GetElementList(std::u16string_view returnType,
                                      std::u16string_view expression, bool odsConform,
                                      IStoreElementListImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  HV_RETURN_CODE_IF(!m_simplified, E_UNEXPECTED);
  // The caller has the list from here on, also if what follows fails.
  Ref<IStoreElementListImpl> list;
  HV_RETURN_IF_FAILED(MakeStoreElementList(*m_simplified, list.Put()));
  HV_RETURN_IF_FAILED(list.CopyTo(elements));
  const auto query = m_store.As<IStoreQuery>();
  HV_RETURN_CODE_IF(!query, E_NOINTERFACE);
  try {
    WString text;
    query->BuildQueryText(text, returnType, odsConform ? 1 : 0, expression);
    return AppendHits(*query, text, *list);
  } catch (const Exception&) {
    const auto model = Ref<IModel>::Adopt(m_store->GetModel());
    const auto entity = Ref<IEntity>::Adopt(model ? model->GetEntityByName(returnType) : nullptr);
    return entity ? VEX_E_BAD_QUERY_EXPRESSION : VEX_E_BAD_RETURN_TYPE;
  }
}
HV_CATCH_RETURN()

Result CDataStoreImpl::AppendHits(IStoreQuery& query, std::u16string_view text,
                                  IStoreElementListImpl& list) {
  const auto hits = Ref<IInstList>::Adopt(query.Execute(text));
  HV_RETURN_IF_FAILED(list.Reserve(static_cast<std::int32_t>(hits->GetCount())));
  // All names with one question. Hits of several entities, as a base entity has them, and stores
  // that read nothing in bulk leave that to the elements.
  DisplayNameTable table;
  const auto noParts = MakeRef<CRepresentedByPartsImpl>();
  if (Failed(ReadDisplayNames(m_store.Get(), hits.Get(), noParts.Get(), &table))) table = {};
  for (std::size_t row = 0;; ++row) {
    const auto instance = Ref<IInstance>::Adopt(hits->Next());
    if (!instance) return S_OK;
    Ref<IStoreElementImpl> element;
    // One that can't be made is left out.
    if (Failed(m_simplified->GetElement(instance.Get(), element.Put()))) continue;
    if (row < table.names.size()) element->SetCachedName(std::move(table.names[row]));
    HV_RETURN_IF_FAILED(list.Append(element.Get()));
  }
}

Result CDataStoreImpl::CreateElementsByInstList(IInstList* instList,
                                                IStoreElementListImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  HV_RETURN_IF_NULL(instList);
  HV_RETURN_CODE_IF(!m_simplified, E_UNEXPECTED);
  Ref<IStoreElementListImpl> list;
  HV_RETURN_IF_FAILED(MakeStoreElementList(*m_simplified, list.Put()));
  const std::uint64_t count = instList->GetCount();
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto instance = Ref<IInstance>::Adopt(instList->GetInstance(i));
    HV_RETURN_CODE_IF(!m_simplified->OwnsInstance(instance.Get()), VEX_E_FOREIGN_ELEMENT);
    Ref<IStoreElementImpl> element;
    if (Failed(m_simplified->GetElement(instance.Get(), element.Put()))) {
      // The elements so far go to the caller.
      HV_RETURN_IF_FAILED(list.CopyTo(elements));
      return E_INVALIDARG;
    }
    HV_RETURN_IF_FAILED(list->Append(element.Get()));
  }
  return list.CopyTo(elements);
}
HV_CATCH_RETURN()

Result CDataStoreImpl::DeleteElement(IStoreElementImpl* element) try {
  HV_RETURN_CODE_IF(!element || !m_simplified, E_UNEXPECTED);
  HV_RETURN_CODE_IF(!m_simplified->OwnsElement(element), VEX_E_FOREIGN_ELEMENT);
  const auto instance = Ref<IInstance>::Share(element->GetCoreInstance());
  WString type;
  HV_RETURN_IF_FAILED(element->GetType(&type));
  if (m_rootElements && RootEntityName() == type) {
    // One that was made past the collection isn't in it.
    std::int32_t index = 0;
    if (!Failed(m_rootElements->IndexOf(element, &index))) {
      return m_rootElements->RemoveElement(element);
    }
  }
  m_store->DeleteInstance(instance.Get());
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
