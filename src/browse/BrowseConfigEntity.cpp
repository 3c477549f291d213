// browse/BrowseConfigEntity.cpp - one level of a browse path.
#include "browse/BrowseConfigEntity.h"

#include "automation/Guards.h"
#include "browse/BrowseConfigImpl.h"
#include "browse/ResolveReference.h"
#include "elements/TextList.h"
#include "store/core/IInstance.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kNameAttribute = u"name";
constexpr std::u16string_view kColumnAttributes[] = {u"id", u"description"};

/// The attribute with the base name "name". One that merely bears the word as its own name comes
/// second.
Ref<IAttributeDefinition> NameAttributeOf(IEntity& entity) {
  WString baseName;
  entity.GetAttributeBaseName(baseName, kNameAttribute);
  if (!baseName.EqualsExact(kNameAttribute)) {
    const auto names = Ref<IAttribute>::Adopt(entity.GetAttributeNames());
    for (const WString& name : TextsOf(names.Get())) {
      entity.GetAttributeBaseName(baseName, name);
      if (baseName.EqualsExact(kNameAttribute)) return FindAttributeDefinition(entity, name);
    }
  }
  return FindAttributeDefinition(entity, kNameAttribute);
}

IBrowseConfigEntity* Given(tBrowseConfigEntityImpl* entity) {
  return Ref<IBrowseConfigEntity>::Share(entity).Detach();
}

void PathOf(tBrowseConfigEntityImpl* entity, WString& path) {
  if (entity) {
    path = entity->Path();
  } else {
    path.clear();
  }
}

}  // namespace

BrowsePlace BrowsePlace::Root(IEntity& entity) {
  BrowsePlace place;
  place.path = WString(u"/#") + NameOf(entity);
  return place;
}

BrowsePlace BrowsePlace::Child(IRelation& reference, tBrowseConfigEntityImpl& parent) {
  BrowsePlace place;
  place.path = NameOf(reference);
  if (const auto inverse = Ref<IRelation>::Adopt(reference.GetInverse())) {
    place.parentPath = NameOf(*inverse);
  }
  place.parent = &parent;
  return place;
}

// --- tBrowseConfigEntityImpl -------------------------------------------------------------------

tBrowseConfigEntityImpl::tBrowseConfigEntityImpl(IEntity& entity, BrowsePlace place,
                                                 const BaseTypes& baseTypes)
    : m_entity(Ref<IEntity>::Share(&entity)),
      m_place(std::move(place)),
      m_kind(baseTypes.KindOf(entity)),
      m_isDataLevel(m_kind != BaseKind::None) {
  if (!m_place.representedBy.empty()) return;
  m_place.representedBy = kNameAttribute;
  if (const auto name = NameAttributeOf(entity)) name->GetName(m_place.representedBy);
}

void* tBrowseConfigEntityImpl::FindFace(const Iid& iid) {
  if (iid == kIid) return this;
  if (iid == IBrowseConfigEntity::kIid) return static_cast<IBrowseConfigEntity*>(this);
  return Counted::FindFace(iid);
}

void tBrowseConfigEntityImpl::GetEntityName(WString& name) { m_entity->GetName(name); }

void tBrowseConfigEntityImpl::GetFirstChildPath(WString& path) {
  PathOf(m_children.FirstForPath(), path);
}
IBrowseConfigEntity* tBrowseConfigEntityImpl::GetFirstChild() {
  return Given(m_children.FirstEntity());
}
void tBrowseConfigEntityImpl::GetNextChildPath(WString& path) {
  PathOf(m_children.NextForPath(), path);
}
IBrowseConfigEntity* tBrowseConfigEntityImpl::GetNextChild() {
  return Given(m_children.NextEntity());
}
IBrowseConfigEntity* tBrowseConfigEntityImpl::GetParent() { return Given(m_place.parent); }

bool tBrowseConfigEntityImpl::IsEntityOfInstance(IInstance* instance) try {
  const auto entity = Ref<IEntity>::Adopt(instance ? instance->GetEntity() : nullptr);
  return IsEntityOrDerived(entity.Get());
} catch (const Exception&) {
  return false;
}

bool tBrowseConfigEntityImpl::IsEntityOrDerived(IEntity* entity) {
  return entity && m_entity->IsKindOf(entity) != 0;
}

bool tBrowseConfigEntityImpl::IsBaseType(std::u16string_view baseName) try {
  const auto model = Ref<IModel>::Adopt(m_entity->GetModel());
  const auto base = Ref<IEntity>::Adopt(model ? model->GetEntity(baseName) : nullptr);
  return IsEntityOrDerived(base.Get());
} catch (const Exception&) {
  return false;
}

IStringList* tBrowseConfigEntityImpl::GetPropertyNames() { return MakeRef<StringList>().Detach(); }

void tBrowseConfigEntityImpl::SetParent(tBrowseConfigEntityImpl* parent,
                                        std::u16string_view parentPath) {
  m_place.parent = parent;
  m_place.parentPath = parentPath;
}

void tBrowseConfigEntityImpl::Leave() {
  if (m_place.parent) m_place.parent->m_children.Remove(*this);
  m_place.parent = nullptr;
  for (tBrowseConfigEntityImpl* child : m_children.All()) {
    if (child->m_place.parent == this) child->m_place.parent = nullptr;
  }
  m_children.Clear();
}

// --- CDataStoreBrowseConfigEntityImpl ----------------------------------------------------------

CDataStoreBrowseConfigEntityImpl::CDataStoreBrowseConfigEntityImpl(
    CDataStoreBrowseConfigImpl& config, IEntity& entity, BrowsePlace place,
    const BaseTypes& baseTypes)
    : tBrowseConfigEntityImpl(entity, std::move(place), baseTypes),
      m_config(&config),
      m_parts(MakeRef<CRepresentedByPartsImpl>()) {
  ResetSymbol();
  (void)ResetDisplayName();
  if (IsDataLevel()) FillDefaultColumns();
}

std::uint32_t CDataStoreBrowseConfigEntityImpl::Release() {
  if (m_count > 1) {
    --m_count;
    // The configuration may go with this call, and this object with it.
    const BackRef<CDataStoreBrowseConfigImpl> config = m_config;
    const bool isAlone = m_count == 1;
    const std::uint32_t left = tBrowseConfigEntityImpl::Release();
    if (isAlone && config) config->ReleaseIfUnreferenced();
    return left;
  }
  return tBrowseConfigEntityImpl::Release();
}

void CDataStoreBrowseConfigEntityImpl::Leave() {
  tBrowseConfigEntityImpl::Leave();
  m_config.Clear();
}

void CDataStoreBrowseConfigEntityImpl::GetEntityDisplayName(WString& name,
                                                            INameTranslator* translator) {
  if (translator) {
    translator->TranslateEntity(&ModelEntity(), name);
  } else {
    GetEntityName(name);
  }
}

void CDataStoreBrowseConfigEntityImpl::GetPathDisplayName(WString& name,
                                                          INameTranslator* translator,
                                                          std::u16string_view path) {
  if (translator) {
    translator->TranslatePath(&ModelEntity(), path, name);
  } else {
    name = path;
  }
}

bool CDataStoreBrowseConfigEntityImpl::IsDescendantByName(std::u16string_view entityName) {
  if (!m_config) return false;
  const auto wanted = Ref<IBrowseConfigEntity>::Adopt(m_config->GetEntityByName(entityName));
  if (!wanted) return false;
  for (const tBrowseConfigEntityImpl* below = FirstChild(); below; below = below->FirstChild()) {
    if (wanted.Get() == below) return true;
  }
  return false;
}

std::int32_t CDataStoreBrowseConfigEntityImpl::GetSymbolIndex() {
  std::int32_t index = 0;
  if (m_config) (void)m_config->GetSymbolIndex(m_symbolKey, &index);
  return index;
}

Result CDataStoreBrowseConfigEntityImpl::AddDefaultColumns(IDefaultColumns* columns) {
  HV_RETURN_IF_NULL(columns);
  for (const auto& [entityName, property] : m_defaultColumns) {
    Ref<IUnknown> column;
    const Result rc = columns->Add(entityName, property, column.Put());
    HV_RETURN_CODE_IF(rc == E_OUTOFMEMORY, rc);
    HV_RETURN_CODE_IF(Failed(rc) || !column, E_UNEXPECTED);
  }
  return S_OK;
}

void CDataStoreBrowseConfigEntityImpl::FillDefaultColumns() {
  WString entityName;
  GetEntityName(entityName);
  for (const std::u16string_view name : kColumnAttributes) {
    if (FindAttributeDefinition(ModelEntity(), name)) {
      m_defaultColumns.emplace_back(entityName, name);
    }
  }
}

void CDataStoreBrowseConfigEntityImpl::SetDataLevel(bool isDataLevel) try {
  if (isDataLevel == IsDataLevel()) return;
  tBrowseConfigEntityImpl::SetDataLevel(isDataLevel);
  WString name;
  GetEntityName(name);
  if (isDataLevel) {
    FillDefaultColumns();
    if (m_config) m_config->DataLevelNames().Append(name);
  } else {
    m_defaultColumns.clear();
    if (m_config) m_config->DataLevelNames().Remove(name);
  }
  if (Kind() != BaseKind::None || !m_symbolIsDefault) return;
  if (isDataLevel && m_symbolKey == symbol::kLevel) {
    m_symbolKey = symbol::kDataLevel;
  } else if (!isDataLevel && m_symbolKey == symbol::kDataLevel) {
    m_symbolKey = symbol::kLevel;
  }
} catch (const Exception&) {
  // The flag is what counts; a store that can't tell its attributes suggests no columns.
}

void CDataStoreBrowseConfigEntityImpl::SetSymbolKey(SymbolKey key) { TakeSymbol(key, false); }

void CDataStoreBrowseConfigEntityImpl::ResetSymbol() {
  TakeSymbol(DefaultSymbol(Kind(), IsDataLevel()), true);
}

void CDataStoreBrowseConfigEntityImpl::TakeSymbol(SymbolKey key, bool isDefault) {
  m_symbolKey = key;
  m_symbolIsDefault = isDefault;
}

Result CDataStoreBrowseConfigEntityImpl::GetRepresentedByParts(IRepresentedByPartsImpl** parts) {
  return m_parts.CopyTo(parts);
}

Result CDataStoreBrowseConfigEntityImpl::ResetDisplayName() try {
  HV_RETURN_IF_FAILED(m_parts->Clear());
  const auto name = NameAttributeOf(ModelEntity());
  return name ? m_parts->AddProperty(name.Get(), nullptr) : S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreBrowseConfigEntityImpl::AddChild(std::u16string_view reference,
                                                  IBrowseConfigEntity** child) try {
  HV_RETURN_IF_NULL(child);
  *child = nullptr;
  HV_RETURN_CODE_IF(!m_config, E_POINTER);
  const auto relation = Ref<IRelation>::Adopt(ModelEntity().GetRelationByName(reference));
  HV_RETURN_CODE_IF(!relation, E_INVALIDARG);
  return m_config->AddChildAndBranch(*this, *relation, child);
}
HV_CATCH_RETURN()

Result CDataStoreBrowseConfigEntityImpl::RemoveFirstChild() {
  HV_RETURN_CODE_IF(!m_config, E_POINTER);
  const auto child = Ref<tBrowseConfigEntityImpl>::Share(FirstChild());
  HV_RETURN_CODE_IF(!child, S_FALSE);
  if (child->Kind() == BaseKind::Measurement) SetDataLevel(false);
  return m_config->RemoveEntity(child.Get());
}

}  // namespace hv::vex
