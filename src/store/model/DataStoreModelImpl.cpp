// store/model/DataStoreModelImpl.cpp - the data model of a session.
#include "store/model/DataStoreModelImpl.h"

#include <array>

#include "automation/Guards.h"
#include "store/core/IEntity.h"
#include "store/core/IEnvironment.h"
#include "store/core/IModel.h"
#include "store/model/EntityCollImpl.h"
#include "store/model/EntityImplCache.h"
#include "xml/ConnectParams.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kDefaultExtension = u"atfx";
constexpr std::u16string_view kVexExtension = u"vsf";
constexpr std::u16string_view kAtfxFormat = u"ATFX";
constexpr std::u16string_view kVexFormat = u"VEX";

/// An export doesn't tell one failure of the engine from another.
constexpr std::array kExportFailures{CodeRow{errc::kOutOfMemory, E_FAIL},
                                     CodeRow{errc::kTimeout, E_FAIL},
                                     CodeRow{errc::kWriteProtected, E_FAIL}};

/// What stands behind the last point of the last component; empty if there is none.
std::u16string_view ExtensionOf(std::u16string_view path) {
  const std::size_t separator = path.find_last_of(u"/\\");
  if (separator != path.npos) path.remove_prefix(separator + 1);
  const std::size_t point = path.rfind(u'.');
  return point == path.npos ? std::u16string_view() : path.substr(point + 1);
}

}  // namespace

CDataStoreModelImpl::CDataStoreModelImpl() = default;
CDataStoreModelImpl::~CDataStoreModelImpl() = default;

Result CDataStoreModelImpl::GetEntities(IEntityCollImpl** entities) {
  HV_RETURN_IF_NULL(entities);
  *entities = nullptr;
  HV_RETURN_CODE_IF(!m_entities, E_UNEXPECTED);
  HV_RETURN_IF_FAILED(Follow());
  return m_entities.CopyTo(entities);
}

Result CDataStoreModelImpl::Follow() try {
  const auto model = Ref<IModel>::Adopt(m_store->GetModel());
  HV_RETURN_CODE_IF(!model || model->GetChangeCounter() == m_modelStamp, S_OK);
  const auto list = Ref<IEntityList>::Adopt(model->GetEntities());
  HV_RETURN_CODE_IF(!list, E_FAIL);
  HV_RETURN_IF_FAILED(m_entities->AddNew(*list));
  m_modelStamp = model->GetChangeCounter();
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreModelImpl::Export(std::u16string_view path) try {
  HV_RETURN_CODE_IF(!m_store, E_UNEXPECTED);
  m_exportPath = path;
  WString extension = ExtensionOf(path);
  if (extension.empty()) {
    extension = kDefaultExtension;
    m_exportPath += u'.';
    m_exportPath += extension;
  }
  const std::u16string_view format = extension == kVexExtension ? kVexFormat : kAtfxFormat;
  const auto environment = Ref<IEnvironment>::Adopt(m_store->GetEnvironment());
  HV_RETURN_CODE_IF(!environment, E_FAIL);
  xml::ConnectParams target;
  xml::AppendFilenameTag(target, m_exportPath);
  const auto exporter =
      Ref<IExporter>::Adopt(environment->CreateExporter(format, u"", target, m_store.Get()));
  HV_RETURN_CODE_IF(!exporter, E_FAIL);
  exporter->Run();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kExportFailures)

Result CDataStoreModelImpl::SetStore(IStore* store) try {
  HV_RETURN_IF_NULL(store);
  m_store = Ref<IStore>::Share(store);
  m_entities = MakeRef<CEntityCollImpl>();
  m_cache = MakeRef<CEntityImplCache>();
  const auto model = Ref<IModel>::Adopt(m_store->GetModel());
  HV_RETURN_CODE_IF(!model, E_FAIL);
  m_modelStamp = model->GetChangeCounter();
  const auto list = Ref<IEntityList>::Adopt(model->GetEntities());
  HV_RETURN_CODE_IF(!list, E_FAIL);
  return m_entities->Fill(*list, *m_cache);
}
HV_CATCH_RETURN()

Result CDataStoreModelImpl::GetCache(IEntityImplCache** cache) {
  HV_RETURN_IF_NULL(cache);
  *cache = nullptr;
  HV_RETURN_CODE_IF(!m_cache, E_UNEXPECTED);
  return m_cache.CopyTo(cache);
}

}  // namespace hv::vex
