// store/elements/StoreElementImpl.cpp - the element of a record of a store.
#include "store/elements/StoreElementImpl.h"

#include "automation/conv/DisplayText.h"
#include "browse/DisplayText.h"
#include "browse/IBrowseConfigEntityIntern.h"
#include "browse/RepresentedByParts.h"
#include "store/core/IBulkReader.h"
#include "store/core/IInstList.h"
#include "store/elements/IReferencesImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/ReferencePath.h"
#include "store/elements/StoreElementFactory.h"
#include "store/properties/StorePropertiesImpl.h"

namespace hv::vex {

namespace {

using Base = easyImpl::tGUIVEXElementImpl<IBrowseConfigEntity, IStoreElementImpl>;

constexpr auto& kFailures = easyImpl::kElementFailures;
constexpr std::u16string_view kElementType = u"Element<DataStore>";
constexpr std::u16string_view kIdProperty = u"id";

}  // namespace

CStoreElementImpl::CStoreElementImpl(CSimplifiedDataStoreImpl& provider, IInstance& instance,
                                     IBrowseConfigEntity* level)
    : Base(instance, level), m_provider(Ref<CSimplifiedDataStoreImpl>::Share(&provider)) {
  if (level) m_configStamp = provider.BrowseConfig().GetGeneration();
}

CStoreElementImpl::~CStoreElementImpl() { m_provider->ForgetElement(&Instance()); }

Ref<IEntity> CStoreElementImpl::Entity() const {
  return Ref<IEntity>::Adopt(m_provider->Model().GetEntityOf(&Instance()));
}

// --- name and type ----------------------------------------------------------------------------

Result CStoreElementImpl::GetName(WString* name) try {
  if (m_name.empty()) return Base::GetName(name);
  HV_RETURN_IF_NULL(name);
  name->clear();
  HV_RETURN_IF_FAILED(CheckValid());
  *name = m_name;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::SetName(std::u16string_view name) try {
  WString oldName;
  if (m_nameClient) HV_RETURN_IF_FAILED(GetName(&oldName));
  HV_RETURN_IF_FAILED(Base::SetName(name));
  m_name = name;
  if (m_nameClient) m_nameClient->OnElementRenamed(*this, oldName, name);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::IsKindOf(std::u16string_view type, std::int32_t* isKindOf) try {
  HV_RETURN_IF_NULL(isKindOf);
  *isKindOf = 0;
  HV_RETURN_IF_FAILED(CheckValid());
  if (type == kElementType) {
    *isKindOf = 1;
  } else if (!type.empty()) {
    const auto entity = Ref<IEntity>::Adopt(m_provider->Model().GetEntityByName(type));
    if (entity && Instance().IsKindOf(entity.Get()) != 0) *isKindOf = 1;
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetPath(WString* path) {
  HV_RETURN_IF_NULL(path);
  path->clear();
  HV_RETURN_IF_FAILED(CheckValid());
  return E_NOTIMPL;
}

Result CStoreElementImpl::GetDisplayType(WString* type) try {
  HV_RETURN_IF_NULL(type);
  type->clear();
  HV_RETURN_IF_FAILED(CheckValid());
  return m_provider->GetDisplayText(Entity().Get(), type);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetDisplayName(WString* name) try {
  HV_RETURN_IF_NULL(name);
  name->clear();
  if (m_displayName.empty()) {
    const auto level = QueryRef<IBrowseConfigEntityIntern>(GetBrowseEntity());
    if (!level) return GetName(name);
    HV_RETURN_IF_FAILED(CheckValid());
    Ref<IRepresentedByPartsImpl> parts;
    HV_RETURN_IF_FAILED(level->GetRepresentedByParts(parts.Put()));
    // From the instance, as levels read in one go are: the list of properties, which would be made
    // for nothing else, keeps less of a time than the store does.
    const Result rc =
        parts->FormatFromInstance(&Instance(), ReadTimeFormat(m_provider->Store()), name);
    if (!Failed(rc)) m_displayName = *name;
    return rc;
  }
  HV_RETURN_IF_FAILED(CheckValid());
  *name = m_displayName;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetInstanceKey(WString* key) try {
  HV_RETURN_IF_NULL(key);
  key->clear();
  HV_RETURN_IF_FAILED(CheckValid());
  Instance().GetKey(*key);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetIdText(WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  HV_RETURN_IF_FAILED(CheckValid());
  Ref<easyImpl::IPropertyCollectionImpl> properties;
  Ref<easyImpl::IPropertyImpl> id;
  Variant value;
  const bool isRead = !Failed(GetProperties(properties.Put())) &&
                      !Failed(properties->GetItemByName(kIdProperty, id.Put())) &&
                      !Failed(id->GetValue(&value)) &&
                      !Failed(util::conv::DisplayTextOfVariant(value, nullptr, text));
  return isRead ? S_OK : E_FAIL;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

// --- place in the browse path -----------------------------------------------------------------

Result CStoreElementImpl::GetBrowseLevel(std::int32_t* level) try {
  HV_RETURN_IF_NULL(level);
  *level = 0;
  HV_RETURN_IF_FAILED(CheckValid());
  auto place = Ref<IBrowseConfigEntity>::Share(GetBrowseEntity());
  HV_RETURN_CODE_IF(!place, E_NOTIMPL);
  while ((place = Ref<IBrowseConfigEntity>::Adopt(place->GetParent()))) ++*level;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::HasChildren(std::int32_t* hasChildren) try {
  HV_RETURN_IF_NULL(hasChildren);
  *hasChildren = 0;
  HV_RETURN_IF_FAILED(CheckValid());
  HV_RETURN_CODE_IF(!GetBrowseEntity(), E_NOTIMPL);
  *hasChildren = GetBrowseEntity()->HasChildren() ? 1 : 0;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetChildren(easyImpl::IVEXElementsImpl** children) try {
  HV_RETURN_IF_NULL(children);
  *children = nullptr;
  HV_RETURN_IF_FAILED(CheckValid());
  HV_RETURN_CODE_IF(!GetBrowseEntity(), E_FAIL);
  WString path;
  GetBrowseEntity()->GetFirstChildPath(path);
  if (path.empty()) return S_OK;
  Ref<IStoreElementsImpl> made;
  HV_RETURN_IF_FAILED(MakeReferencedElements(*m_provider, Instance(), path, made.Put()));
  return made.CopyTo(children);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetChildrenFiltered(std::u16string_view filter,
                                              easyImpl::IVEXElementsImpl** children) try {
  HV_RETURN_IF_NULL(children);
  *children = nullptr;
  HV_RETURN_IF_FAILED(CheckValid());
  HV_RETURN_CODE_IF(!GetBrowseEntity(), E_UNEXPECTED);
  WString path;
  GetBrowseEntity()->GetFirstChildPath(path);
  Ref<IStoreElementListImpl> made;
  HV_RETURN_IF_FAILED(GetChildrenPrefetched(filter, path, made.Put()));
  return made.CopyTo(children);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetChildrenPrefetched(std::u16string_view filter,
                                                std::u16string_view referenceName,
                                                IStoreElementListImpl** children) try {
  HV_RETURN_IF_NULL(children);
  *children = nullptr;
  HV_RETURN_IF_FAILED(CheckValid());
  HV_RETURN_CODE_IF(referenceName.empty(), E_UNEXPECTED);
  HV_RETURN_CODE_IF(!QueryRef<IBulkReader>(&m_provider->Store()), E_UNEXPECTED);
  const auto step = FindLastStep(*Entity(), referenceName);
  const auto target = Ref<IEntity>::Adopt(step ? step->relation->GetTargetEntity() : nullptr);
  HV_RETURN_CODE_IF(!target, E_INVALIDARG);
  const auto level =
      Ref<IBrowseConfigEntity>::Adopt(m_provider->BrowseConfig().GetEntity(target.Get()));
  Ref<IStoreElementListImpl> list;
  HV_RETURN_IF_FAILED(CreateElementList(list.Put()));
  HV_RETURN_IF_FAILED(
      PrefetchElements(*m_provider, &Instance(), referenceName, filter, level.Get(), *list));
  return list.CopyTo(children);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::GetParent(easyImpl::IVEXElementImpl** parent) try {
  HV_RETURN_IF_NULL(parent);
  *parent = nullptr;
  HV_RETURN_IF_FAILED(CheckValid());
  if (m_parent) return m_parent.CopyTo(parent);
  HV_RETURN_CODE_IF(!GetBrowseEntity(), E_NOTIMPL);
  WString path;
  GetBrowseEntity()->GetParentPath(path);
  if (path.empty()) return S_OK;
  const auto values = QueryRef<IContainer>(&Instance());
  HV_RETURN_CODE_IF(!values, E_FAIL);
  const auto parents = Ref<IInstList>::Adopt(values->GetList(path));
  const auto first = Ref<IInstance>::Adopt(parents ? parents->GetInstance(0) : nullptr);
  if (!first) return S_OK;
  ElementKind kind;
  const Ref<CStoreElementImpl> element = m_provider->ElementOf(*first, kind);
  KeepParent(*element);
  return element.CopyTo(parent);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

void CStoreElementImpl::KeepParent(CStoreElementImpl& parent) {
  for (const CStoreElementImpl* above = &parent; above; above = above->m_parent.Get()) {
    if (above == this) return;
  }
  m_parent = Ref<CStoreElementImpl>::Share(&parent);
}

void CStoreElementImpl::FollowBrowseConfig() {
  CDataStoreBrowseConfigImpl& config = m_provider->BrowseConfig();
  if (GetBrowseEntity() && m_configStamp == config.GetGeneration()) return;
  const auto entity =
      GetBrowseEntity() ? Ref<IEntity>::Adopt(GetBrowseEntity()->GetModelEntity()) : Entity();
  const auto level = Ref<IBrowseConfigEntity>::Adopt(config.GetEntity(entity.Get()));
  SetBrowseEntity(level.Get());
  m_configStamp = level ? config.GetGeneration() : kNoStamp;
}

// --- what the element hands on ----------------------------------------------------------------

Result CStoreElementImpl::MakeProperties(IInstance& instance,
                                         easyImpl::IPropertyCollectionImpl** properties) {
  auto made = MakeRef<CStorePropertiesImpl>(instance, &m_provider->PropertiesCache());
  HV_RETURN_IF_FAILED(made->Fill());
  *properties = made.Detach();
  return S_OK;
}

Result CStoreElementImpl::GetTransportData(IDispatch** collection) {
  HV_RETURN_IF_NULL(collection);
  *collection = nullptr;
  HV_RETURN_IF_FAILED(CheckValid());
  return E_NOTIMPL;
}

Result CStoreElementImpl::GetReferences(IReferencesImpl** references) {
  HV_RETURN_IF_NULL(references);
  *references = nullptr;
  HV_RETURN_IF_FAILED(CheckValid());
  return MakeReferences(*m_provider, Instance(), references);
}

Result CStoreElementImpl::GetProvider(easyImpl::ISimplifiedStoreImpl** provider) {
  HV_RETURN_IF_NULL(provider);
  return m_provider.CopyTo(provider);
}

Result CStoreElementImpl::GetBulkInterface(IStoreElementBulkImpl** bulk) {
  HV_RETURN_IF_NULL(bulk);
  *bulk = nullptr;
  return E_NOINTERFACE;
}

Result CStoreElementImpl::CreateElementList(IStoreElementListImpl** list) {
  return MakeStoreElementList(*m_provider, list);
}

Result CStoreElementImpl::Save() try {
  HV_RETURN_IF_FAILED(CheckValid());
  Instance().Save();
  DropProperties();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementImpl::Refresh() try {
  HV_RETURN_IF_FAILED(CheckValid());
  FollowBrowseConfig();
  Instance().Refresh();
  DropProperties();
  m_parent.Reset();
  m_name.clear();
  m_displayName.clear();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

}  // namespace hv::vex
