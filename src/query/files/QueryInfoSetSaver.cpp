#include "query/files/QueryInfoSetSaver.h"

#include <storefabric/ITextStream.h>

#include "automation/Guards.h"
#include "query/files/ColumnLayout.h"
#include "query/files/QueryDocument.h"
#include "query/files/QueryFiles.h"
#include "store/core/IContainer.h"

namespace hv::vex {

Result CQueryInfoSetSaver::Init(std::int32_t version) try {
  HV_RETURN_CODE_IF(version != kQueryInfoSetVersion, E_INVALIDARG);
  m_document = querydoc::Create();
  return S_OK;
}
HV_CATCH_RETURN()

Result CQueryInfoSetSaver::SaveQuery(IUnknown* query) {
  HV_RETURN_IF_FAILED(MakeReady());
  HV_RETURN_CODE_IF(!query, E_INVALIDARG);
  HV_RETURN_CODE_IF(!IsQueryOfKind(*query), VEX_E_NOT_STORE_QUERY);
  return WriteQuery(*m_document, *query);
}

Result CQueryInfoSetSaver::SaveColumns(IUnknown* columns) {
  HV_RETURN_IF_FAILED(MakeReady());
  HV_RETURN_CODE_IF(!columns, E_INVALIDARG);
  HV_RETURN_CODE_IF(!IsColumnsOfKind(*columns), VEX_E_NOT_STORE_COLUMNS);
  return WriteColumns(*m_document, *columns);
}

Result CQueryInfoSetSaver::SaveToPath(std::u16string_view path) try {
  HV_RETURN_CODE_IF(path.empty(), VEX_E_NO_FILE_NAME);
  HV_RETURN_IF_FAILED(MakeReady());
  querydoc::Write(*m_document, path);
  return S_OK;
} catch (...) {
  return E_FAIL;  // the one code for which there is a message that names the file
}

Result CQueryInfoSetSaver::SaveToStream(ITextStream* stream) try {
  HV_RETURN_CODE_IF(!stream, E_INVALIDARG);
  HV_RETURN_IF_FAILED(MakeReady());
  return stream->Write(querydoc::TextOf(*m_document));
}
HV_CATCH_RETURN()

Result CDataStoreQueryInfoSetSaver::GetModelParameter(WString* parameter) try {
  HV_RETURN_IF_NULL(parameter);
  *parameter = querydoc::ModelParameter();
  return S_OK;
}
HV_CATCH_RETURN()

bool CDataStoreQueryInfoSetSaver::IsQueryOfKind(IUnknown& query) {
  const Ref<IAdvancedQueryImpl> own = FindQuery(&query);
  return own && own->IsKindOf(eDataStoreQuery);
}

bool CDataStoreQueryInfoSetSaver::IsColumnsOfKind(IUnknown& columns) {
  const Ref<IColumnCollectionImpl> own = QueryRef<IColumnCollectionImpl>(&columns);
  return own && own->IsOfStore();
}

Result CDataStoreQueryInfoSetSaver::WriteQuery(IStore& document, IUnknown& query) {
  return StoreQuery(*FindQuery(&query), document);
}

Result CDataStoreQueryInfoSetSaver::WriteColumns(IStore& document, IUnknown& columns) try {
  std::vector<StoredReturnType> configuration;
  HV_RETURN_IF_FAILED(QueryRef<IColumnCollectionImpl>(&columns)->GetStored(&configuration));
  const Ref<IInstance> manager = querydoc::GetOrCreate(document, querydoc::kColumnManager);
  querydoc::SaveColumns(configuration, *manager);
  manager.As<IContainer>()->SetInteger(u"version", querydoc::kVersionStamp);
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
