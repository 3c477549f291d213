// store/elements/SimplifiedDataStoreImpl.cpp - the provider of a store's elements.
#include "store/elements/SimplifiedDataStoreImpl.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "automation/Guards.h"
#include "browse/BrowseOperations.h"
#include "store/core/IContainer.h"
#include "store/core/IEnvironment.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/ReferencePath.h"
#include "store/elements/StoreElementFactory.h"
#include "store/elements/StoreElementImpl.h"
#include "store/elements/StoreElementWithBulkImpl.h"

namespace hv::vex {

namespace {

using com::cErrCode;

constexpr std::u16string_view kConfiguredStores = u"hv.vex.config.datastore";
constexpr std::u16string_view kColumnBase = u"aolocalcolumn";

[[noreturn]] void ThrowErrCode(Result rc) {
  if (rc == E_OUTOFMEMORY) throw cErrCode::eOutOfMemory;
  if (rc == E_PENDING) throw cErrCode::eTimeout;
  throw cErrCode::eFailure;
}

/// The entity at the end of an absolute path; null if a name along it is none of the model. Names
/// may hold points themselves.
Ref<IEntity> EntityOfPath(IModel& model, std::u16string_view path) {
  const bool isBaseName = path.starts_with(u"/##");
  if (!path.starts_with(u"/#")) return {};
  path.remove_prefix(isBaseName ? 3 : 2);
  for (std::size_t end = path.size(); end != path.npos; end = path.rfind(u'.', end - 1)) {
    const auto name = path.substr(0, end);
    const auto entity =
        Ref<IEntity>::Adopt(isBaseName ? model.GetEntityByName(name) : model.GetEntity(name));
    if (!entity && end > 0) continue;
    if (!entity || end == path.size()) return entity;
    const auto step = FindLastStep(*entity, path.substr(end + 1));
    return Ref<IEntity>::Adopt(step ? step->relation->GetTargetEntity() : nullptr);
  }
  return {};
}

std::string MimeTypeOf(const std::filesystem::path& file) {
  static constexpr std::pair<std::string_view, std::string_view> kTypes[] = {
      {".svg", "image/svg+xml"}, {".png", "image/png"}, {".bmp", "image/bmp"}};
  const std::string extension = file.extension().string();
  for (const auto& [ending, type] : kTypes) {
    if (extension == ending) return std::string(type);
  }
  return "image/x-icon";
}

/// The picture in a file; null if it can't be read.
Ref<ISymbolImage> ReadIcon(std::u16string_view name) {
  const std::filesystem::path path(name);
  std::ifstream file(path, std::ios::binary);
  std::string content{std::istreambuf_iterator<char>(file), {}};
  if (!file || content.empty()) return {};
  return MakeRef<SymbolImage>(std::move(content), MimeTypeOf(path));
}

}  // namespace

CSimplifiedDataStoreImpl::CSimplifiedDataStoreImpl(IStore& store, IBrowseConfig* config)
    : m_store(Ref<IStore>::Share(&store)) {
  const Result rc = [&]() -> Result {
    try {
      m_model = Ref<IModel>::Adopt(m_store->GetModel());
      Ref<IBrowseConfig> given = Ref<IBrowseConfig>::Share(config);
      if (!given) HV_RETURN_IF_FAILED(LoadDefaultBrowseConfig(&store, given.Put()));
      m_browseConfig = OwnBrowseConfig(given.Get());
      if (!m_browseConfig) throw cErrCode::eWrongClass;
      return m_model ? S_OK : E_UNEXPECTED;
    } catch (cErrCode) {
      throw;
    }
    HV_CATCH_RETURN_AS(E_UNEXPECTED)
  }();
  if (Failed(rc)) ThrowErrCode(rc);
}

CSimplifiedDataStoreImpl::~CSimplifiedDataStoreImpl() = default;

void* CSimplifiedDataStoreImpl::FindFace(const Iid& iid) {
  if (iid == kIid) return this;
  using Provider = easyImpl::ISimplifiedDataProviderImpl;
  if (iid == Provider::kIid) return static_cast<Provider*>(this);
  return cor::Counted<easyImpl::ISimplifiedStoreImpl>::FindFace(iid);
}

Ref<CSimplifiedDataStoreImpl> OwnSimplifiedStore(easyImpl::ISimplifiedStoreImpl& provider) {
  return QueryRef<CSimplifiedDataStoreImpl>(&provider);
}

Result CSimplifiedDataStoreImpl::GetStoreName(WString* name) try {
  HV_RETURN_IF_NULL(name);
  m_store->GetName(*name);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetDisplayLocation(WString* name, WString* location) try {
  HV_RETURN_IF_NULL(name);
  HV_RETURN_IF_NULL(location);
  m_store->GetName(*name);
  m_store->GetDisplayLocation(*location);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetPluginName(WString* name) try {
  HV_RETURN_IF_NULL(name);
  m_store->GetPluginName(*name);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetParameters(WString* parameters) try {
  HV_RETURN_IF_NULL(parameters);
  m_store->GetParameters(*parameters);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::CreateRootElements(IRootElementsImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  Ref<IRootElementsImpl> made;
  HV_RETURN_IF_FAILED(MakeRootElements(*this, made.Put()));
  HV_RETURN_IF_FAILED(made->Fill());
  return made.CopyTo(elements);
}
HV_CATCH_RETURN()

Result CSimplifiedDataStoreImpl::Refresh() try {
  m_store->Refresh();
  return ResetBrowseData();
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetElementByKey(std::u16string_view key,
                                                 IStoreElementImpl** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  const auto instance = Ref<IInstance>::Adopt(m_store->GetInstance(key));
  HV_RETURN_CODE_IF(!instance, E_INVALIDARG);
  return GetElement(instance.Get(), element);
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetElement(IInstance* instance, IStoreElementImpl** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_IF_NULL(instance);
  ElementKind kind;
  return ElementOf(*instance, kind).CopyTo(element);
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

ElementKind CSimplifiedDataStoreImpl::KindOf(Ref<IEntity> entity) const {
  ElementKind kind;
  if (entity) {
    kind.level = Ref<IBrowseConfigEntity>::Adopt(m_browseConfig->GetEntity(entity.Get()));
    const auto base = Ref<IEntity>::Adopt(entity->GetBaseEntity());
    WString baseName;
    if (base) base->GetName(baseName);
    kind.isColumn = baseName.EqualsExact(kColumnBase);
  }
  kind.entity = std::move(entity);
  return kind;
}

const IInstance* CSimplifiedDataStoreImpl::ByInstance::KeyOf(const CStoreElementImpl& element) {
  return element.Key();
}

Ref<CStoreElementImpl> CSimplifiedDataStoreImpl::ElementOf(IInstance& instance, ElementKind& kind) {
  if (CStoreElementImpl* const living = m_elements.Find(&instance)) {
    return Ref<CStoreElementImpl>::Share(living);
  }
  auto entity = Ref<IEntity>::Adopt(m_model->GetEntityOf(&instance));
  if (!kind.entity || kind.entity != entity) kind = KindOf(std::move(entity));
  m_elements.Reserve(m_elements.Size() + 1);
  Ref<CStoreElementImpl> element;
  if (kind.isColumn) {
    element = MakeRef<CStoreElementWithBulkImpl>(*this, instance, kind.level.Get());
  } else {
    element = MakeRef<CStoreElementImpl>(*this, instance, kind.level.Get());
  }
  m_elements.Insert(*element);
  return element;
}

Result CSimplifiedDataStoreImpl::GetDisplayText(IEntity* entity, WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  const auto level = Ref<IBrowseConfigEntity>::Adopt(m_browseConfig->GetEntity(entity));
  if (level) level->GetEntityDisplayName(*text, nullptr);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetDisplayTextFor(IEntity* entity, std::u16string_view format,
                                                   WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  const auto level = Ref<IBrowseConfigEntity>::Adopt(m_browseConfig->GetEntity(entity));
  if (level) level->GetPathDisplayName(*text, nullptr, format);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CSimplifiedDataStoreImpl::GetStore(IStore** store) {
  HV_RETURN_IF_NULL(store);
  return m_store.CopyTo(store);
}

Result CSimplifiedDataStoreImpl::GetBrowseConfig(IBrowseConfig** config) {
  HV_RETURN_IF_NULL(config);
  return m_browseConfig.CopyTo(config);
}

Result CSimplifiedDataStoreImpl::GetModel(IModel** model) {
  HV_RETURN_IF_NULL(model);
  return m_model.CopyTo(model);
}

bool CSimplifiedDataStoreImpl::OwnsInstance(IInstance* instance) {
  return instance && Ref<IStore>::Adopt(instance->GetStore()) == m_store;
}

bool CSimplifiedDataStoreImpl::OwnsElement(IStoreElementImpl* element) {
  Ref<easyImpl::ISimplifiedStoreImpl> provider;
  return element && !Failed(element->GetProvider(provider.Put())) && provider.Get() == this;
}

Result CSimplifiedDataStoreImpl::GetChildrenPrefetched(std::u16string_view filter,
                                                       std::u16string_view path,
                                                       IStoreElementListImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  HV_RETURN_CODE_IF(path.empty(), E_UNEXPECTED);
  const Ref<IEntity> target = EntityOfPath(*m_model, path);
  HV_RETURN_CODE_IF(!target, E_INVALIDARG);
  const auto level = Ref<IBrowseConfigEntity>::Adopt(m_browseConfig->GetEntity(target.Get()));
  Ref<IStoreElementListImpl> list;
  HV_RETURN_IF_FAILED(MakeStoreElementList(*this, list.Put()));
  HV_RETURN_IF_FAILED(PrefetchElements(*this, nullptr, path, filter, level.Get(), *list));
  return list.CopyTo(elements);
}
HV_CATCH_RETURN()

// --- the picture of the store's type ----------------------------------------------------------

WString CSimplifiedDataStoreImpl::IconFile() const {
  WString file;
  WString plugin;
  m_store->GetPluginName(plugin);
  const auto environment = Ref<IEnvironment>::Adopt(m_store->GetEnvironment());
  if (!environment) return file;
  const auto configured = Ref<IStore>::Adopt(environment->OpenStore(kConfiguredStores, 0));
  if (!configured) return file;
  const auto types =
      Ref<IInstList>::Adopt(configured->GetInstances(PathToName(u"/#store_type", plugin)));
  const auto type = Ref<IInstance>::Adopt(types ? types->GetInstance(0) : nullptr);
  if (const auto values = QueryRef<IContainer>(type.Get())) values->GetString(file, u"icon");
  return file;
}

Result CSimplifiedDataStoreImpl::GetIcon(ISymbolImage** icon) {
  HV_RETURN_IF_NULL(icon);
  *icon = nullptr;
  if (!m_hasIcon) {
    m_hasIcon = true;
    try {
      const WString file = IconFile();
      if (!file.empty()) m_icon = ReadIcon(file);
    } catch (...) {
      // Stores of unknown types have no picture, and so has every store where none are configured.
    }
  }
  return m_icon.CopyTo(icon);
}

Result CSimplifiedDataStoreImpl::ResetBrowseData() {
  m_elements.ForEach([](CStoreElementImpl& element) { element.ResetBrowseData(); });
  return S_OK;
}

}  // namespace hv::vex
