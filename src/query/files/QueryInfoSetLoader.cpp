#include "query/files/QueryInfoSetLoader.h"

#include <storefabric/ITextStream.h>

#include "automation/Guards.h"
#include "query/files/ColumnLayout.h"
#include "query/files/QueryDocument.h"
#include "query/files/QueryFiles.h"

namespace hv::vex {

Result CQueryInfoSetLoader::CheckReady() { return m_document ? S_OK : E_UNEXPECTED; }

Result CQueryInfoSetLoader::OpenByPath(std::u16string_view path, std::int32_t version) try {
  HV_RETURN_CODE_IF(version != kQueryInfoSetVersion, E_INVALIDARG);
  m_document = querydoc::Open(path);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_INVALIDARG)

Result CQueryInfoSetLoader::OpenByStream(ITextStream* stream, std::int32_t version) try {
  HV_RETURN_CODE_IF(!stream || version != kQueryInfoSetVersion, E_INVALIDARG);
  WString text;
  HV_RETURN_IF_FAILED(stream->Read(&text));
  HV_RETURN_CODE_IF(text.empty(), VEX_E_NO_FILE_NAME);
  m_document = querydoc::OpenText(text);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_INVALIDARG)

Result CQueryInfoSetLoader::LoadQuery(IUnknown* query) {
  HV_RETURN_IF_FAILED(CheckReady());
  HV_RETURN_IF_NULL(query);
  return LoadQueryFrom(*m_document, *query);
}

Result CQueryInfoSetLoader::LoadColumns(IUnknown* columns) {
  HV_RETURN_IF_FAILED(CheckReady());
  HV_RETURN_IF_NULL(columns);
  return LoadColumnsFrom(*m_document, *columns);
}

Result CDataStoreQueryInfoSetLoader::GetModelUri(WString* uri) try {
  HV_RETURN_IF_NULL(uri);
  *uri = querydoc::kModelUri;
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreQueryInfoSetLoader::LoadQueryFrom(IStore& document, IUnknown& query) {
  return LoadStoredQuery(document, FindQuery(&query).Get());
}

Result CDataStoreQueryInfoSetLoader::LoadColumnsFrom(IStore& document, IUnknown& columns) try {
  using namespace querydoc;
  HV_RETURN_CODE_IF(!FirstAt(document, PathOf(kColumnManager)), VEX_E_NO_COLUMNS);
  const Ref<IInstance> stored =
      FirstAt(document, (PathOf(kColumnManager) += u'.') += kColumnConfigs);
  HV_RETURN_CODE_IF(!stored, VEX_E_NO_COLUMNS);
  const Ref<IColumnCollectionImpl> target = QueryRef<IColumnCollectionImpl>(&columns);
  HV_RETURN_CODE_IF(!target, E_INVALIDARG);
  return target->SetStored(querydoc::LoadColumns(*stored));
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

}  // namespace hv::vex
