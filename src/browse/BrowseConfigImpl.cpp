// browse/BrowseConfigImpl.cpp - the browse configuration of a store: life, levels and symbols.
#include "browse/BrowseConfigImpl.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "automation/Guards.h"
#include "store/core/IContainer.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

bool FileExists(std::u16string_view name) {
  std::error_code error;
  return std::filesystem::exists(std::filesystem::path(name), error);
}

}  // namespace

Ref<CDataStoreBrowseConfigImpl> OwnBrowseConfig(IBrowseConfig* config) {
  return QueryRef<CDataStoreBrowseConfigImpl>(config);
}

Ref<CDataStoreBrowseConfigEntityImpl> OwnBrowseEntity(IBrowseConfigEntity* entity) {
  auto own = QueryRef<tBrowseConfigEntityImpl>(entity);
  return Ref<CDataStoreBrowseConfigEntityImpl>::Adopt(
      static_cast<CDataStoreBrowseConfigEntityImpl*>(own.Detach()));
}

// --- life --------------------------------------------------------------------------------------

CDataStoreBrowseConfigImpl::~CDataStoreBrowseConfigImpl() { DropLevels(); }

std::uint32_t CDataStoreBrowseConfigImpl::Release() {
  if (m_count > 1) {
    const std::uint32_t left = m_count = tBrowseConfigImpl::Release();
    if (left == 1 && m_holdsItself) ReleaseIfUnreferenced();
    return left;
  }
  if (!m_holdsItself && !IsUnreferenced()) {
    m_holdsItself = true;
    return 1;
  }
  return tBrowseConfigImpl::Release();
}

void CDataStoreBrowseConfigImpl::ReleaseIfUnreferenced() {
  if (m_count == 1 && m_holdsItself && IsUnreferenced()) (void)tBrowseConfigImpl::Release();
}

bool CDataStoreBrowseConfigImpl::IsUnreferenced() {
  return !AnyLevel([](const Entity& level) { return level.IsHeldOutside(); });
}

void* CDataStoreBrowseConfigImpl::FindFace(const Iid& iid) {
  return iid == kIid ? this : tBrowseConfigImpl::FindFace(iid);
}

void CDataStoreBrowseConfigImpl::DropLevels() {
  EraseAll(m_implicitLevels);
  DropForest();
  m_pathComplete = false;
}

void CDataStoreBrowseConfigImpl::Clear() {
  const auto alive = Ref<CDataStoreBrowseConfigImpl>::Share(this);
  DropLevels();
  m_symbols.Clear();
  Forest::Clear();
}

// --- levels ------------------------------------------------------------------------------------

Ref<CDataStoreBrowseConfigEntityImpl> CDataStoreBrowseConfigImpl::MakeLevel(IEntity& entity,
                                                                            BrowsePlace place) {
  return MakeRef<Entity>(*this, entity, std::move(place), m_baseTypes);
}

Ref<tBrowseConfigEntityImpl> CDataStoreBrowseConfigImpl::MakeEntity(IEntity& entity,
                                                                    BrowsePlace place) {
  return MakeLevel(entity, std::move(place));
}

tBrowseConfigEntityImpl* CDataStoreBrowseConfigImpl::FindLevel(IEntity* entity) const {
  tBrowseConfigEntityImpl* const level = Forest::FindLevel(entity);
  return level ? level : ImplicitLevel(entity);
}

CDataStoreBrowseConfigEntityImpl* CDataStoreBrowseConfigImpl::ImplicitLevel(IEntity* entity) const {
  const auto found = m_implicitLevels.find(entity);
  return found == m_implicitLevels.end() ? nullptr
                                         : static_cast<Entity*>(found->second.entity.Get());
}

void CDataStoreBrowseConfigImpl::AddImplicit(Entity& level) {
  IEntity& entity = level.ModelEntity();
  m_implicitLevels.try_emplace(
      &entity, Level{Ref<IEntity>::Share(&entity), Ref<tBrowseConfigEntityImpl>::Share(&level)});
}

IBrowseConfigEntity* CDataStoreBrowseConfigImpl::CreateChildEntity(
    IEntity* entity, IRelation* reference, IBrowseConfigEntity* parent) try {
  const auto own = OwnBrowseEntity(parent);
  if (!entity || !reference || !own) return nullptr;
  return MakeLevel(*entity, BrowsePlace::Child(*reference, *own)).Detach();
} catch (const Exception&) {
  return nullptr;
}

IBrowseConfigEntity* CDataStoreBrowseConfigImpl::CreateRootEntity(IEntity* entity) try {
  return entity ? MakeLevel(*entity, BrowsePlace::Root(*entity)).Detach() : nullptr;
} catch (const Exception&) {
  return nullptr;
}

IBrowseConfigEntity* CDataStoreBrowseConfigImpl::CreateEntityFromConfig(
    IEntity* entity, IInstance* instance, IBrowseConfigEntity* parent) try {
  if (!entity || !instance) return nullptr;
  WString name;
  WString representedBy;
  const auto values = QueryRef<IContainer>(instance);
  values->GetString(name, u"name");
  values->GetString(representedBy, u"representedby");
  BrowsePlace place;
  if (parent) {
    const auto own = OwnBrowseEntity(parent);
    const auto reference =
        Ref<IRelation>::Adopt(own ? own->ModelEntity().GetRelationByName(name) : nullptr);
    if (!reference) return nullptr;
    place = BrowsePlace::Child(*reference, *own);
    place.path = name;
  } else {
    place.path = WString(u"/#") + name;
  }
  place.representedBy = representedBy;
  return MakeLevel(*entity, std::move(place)).Detach();
} catch (const Exception&) {
  return nullptr;
}

IBrowseConfigEntity* CDataStoreBrowseConfigImpl::CreateChildEntityWithSymbol(
    IEntity* entity, IRelation* reference, IBrowseConfigEntity* parent, SymbolKey key) {
  auto made = OwnBrowseEntity(
      Ref<IBrowseConfigEntity>::Adopt(CreateChildEntity(entity, reference, parent)).Get());
  if (made) made->SetSymbolKey(key);
  return made.Detach();
}

IBrowseConfigEntity* CDataStoreBrowseConfigImpl::CreateRootEntityWithSymbol(IEntity* entity,
                                                                            SymbolKey key) {
  auto made = OwnBrowseEntity(Ref<IBrowseConfigEntity>::Adopt(CreateRootEntity(entity)).Get());
  if (made) made->SetSymbolKey(key);
  return made.Detach();
}

Result CDataStoreBrowseConfigImpl::RemoveEntity(IBrowseConfigEntity* entity) try {
  HV_RETURN_IF_NULL(entity);
  const auto alive = Ref<CDataStoreBrowseConfigImpl>::Share(this);
  const auto level = OwnBrowseEntity(entity);
  HV_RETURN_CODE_IF(!level || Forest::FindLevel(&level->ModelEntity()) != level.Get(),
                    E_INVALIDARG);
  if (const auto child = Ref<Entity>::Share(level->Child())) {
    HV_RETURN_CODE_IF(Failed(RemoveEntity(child.Get())), E_UNEXPECTED);
  }
  if (level->Kind() == BaseKind::Measurement) {
    EraseAll(m_implicitLevels);
    m_pathComplete = false;
  }
  m_roots.Remove(*level);
  Erase(m_levels, level->ModelEntity());
  if (level->IsDataLevel()) {
    WString name;
    level->GetEntityName(name);
    m_dataLevelNames->Remove(name);
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

// --- loading -----------------------------------------------------------------------------------

Result CDataStoreBrowseConfigImpl::InitModel(IModel* model) try {
  HV_RETURN_IF_NULL(model);
  m_symbols.LoadStandard();
  m_model = Ref<IModel>::Share(model);
  m_baseTypes.Resolve(*model);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::Load(IStore* store, std::u16string_view fileName) try {
  HV_RETURN_IF_NULL(store);
  const auto model = Ref<IModel>::Adopt(store->GetModel());
  HV_RETURN_CODE_IF(!model, E_UNEXPECTED);
  HV_RETURN_IF_FAILED(InitModel(model.Get()));
  if (!fileName.empty()) return FileExists(fileName) ? E_NOTIMPL : VEX_E_BAD_FILE;
  DropLevels();
  const Result rc = Forest::Load(store, fileName);
  RefreshSubmatrixBranch();
  return rc;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::LoadFromStream(IStore* store, std::u16string_view text) {
  HV_RETURN_CODE_IF(text.empty(), E_INVALIDARG);
  HV_RETURN_IF_NULL(store);
  return E_NOTIMPL;
}

Result CDataStoreBrowseConfigImpl::SetSingleRoot(IModel* model,
                                                 std::u16string_view entityName) try {
  HV_RETURN_IF_FAILED(InitModel(model));
  const auto entity = Ref<IEntity>::Adopt(m_model->GetEntity(entityName));
  HV_RETURN_CODE_IF(!entity, E_INVALIDARG);
  DropLevels();
  const Ref<Entity> root = MakeLevel(*entity, BrowsePlace::Root(*entity));
  HV_RETURN_IF_FAILED(Register(*root));
  AddRoot(*root);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::InitFromReferences(IModel* model, References references) {
  HV_RETURN_IF_FAILED(InitModel(model));
  DropLevels();
  return BuildFromReferences(references);
}

// --- symbols -----------------------------------------------------------------------------------

Result CDataStoreBrowseConfigImpl::GetSymbolHandle(std::int32_t index, ISymbolImage** image) {
  return m_symbols.GetHandle(index, image);
}

Result CDataStoreBrowseConfigImpl::GetSymbolCount(std::int32_t* count) {
  HV_RETURN_IF_NULL(count);
  *count = m_symbols.GetCount();
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::GetStandardSymbols(SymbolMap* symbols) {
  HV_RETURN_IF_NULL(symbols);
  *symbols = m_symbols.Standard();
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::GetCustomerSymbols(SymbolMap* symbols) {
  HV_RETURN_IF_NULL(symbols);
  *symbols = m_symbols.Customer();
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::AddCustomerSymbol(ISymbolImage* image, SymbolKey key) {
  return m_symbols.Add(image, key);
}

Result CDataStoreBrowseConfigImpl::AddCustomerSymbolAuto(ISymbolImage* image) {
  return m_symbols.AddAuto(image);
}

Result CDataStoreBrowseConfigImpl::ReplaceCustomerSymbol(ISymbolImage* image, std::int32_t index) {
  return m_symbols.Replace(image, index);
}

Result CDataStoreBrowseConfigImpl::DeleteCustomerSymbolAt(std::int32_t index) {
  return m_symbols.DeleteAt(index);
}

Result CDataStoreBrowseConfigImpl::DeleteCustomerSymbol(SymbolKey key) {
  return m_symbols.Delete(key);
}

Result CDataStoreBrowseConfigImpl::GetSymbolIndex(SymbolKey key, std::int32_t* index) {
  return m_symbols.GetIndex(key, index);
}

Result CDataStoreBrowseConfigImpl::GetSymbolKey(std::int32_t index, SymbolKey* key) {
  return m_symbols.GetKey(index, key);
}

bool CDataStoreBrowseConfigImpl::IsSymbolUsed(std::int32_t index, IBrowseConfigEntity* skipped) {
  const auto own = OwnBrowseEntity(skipped);
  return AnyLevel(
      [&](Entity& level) { return &level != own.Get() && level.GetSymbolIndex() == index; });
}

std::int32_t CDataStoreBrowseConfigImpl::GetStandardSymbolCount() {
  return static_cast<std::int32_t>(m_symbols.Standard().size());
}

Result CDataStoreBrowseConfigImpl::ImportCustomerSymbols(const SymbolMap& symbols) {
  return m_symbols.Import(symbols);
}

bool CDataStoreBrowseConfigImpl::HasInvalidSymbols() {
  return AnyLevel([](Entity& level) { return level.GetSymbolIndex() == 0; });
}

Result CDataStoreBrowseConfigImpl::ReplaceInvalidSymbols() {
  AnyLevel([](Entity& level) {
    if (level.GetSymbolIndex() == 0) level.ResetSymbol();
    return false;
  });
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::ResetSymbols() {
  AnyLevel([](Entity& level) {
    level.ResetSymbol();
    return false;
  });
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::ResetDisplayNames() {
  Result result = S_OK;
  AnyLevel([&](Entity& level) {
    result = level.ResetDisplayName();
    return Failed(result);
  });
  return result;
}

}  // namespace hv::vex
