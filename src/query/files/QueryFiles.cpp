#include "query/files/QueryFiles.h"

#include "automation/Guards.h"
#include "elements/LogicOf.h"
#include "query/files/QueryDocument.h"
#include "store/core/IContainer.h"
#include "store/core/IEntity.h"
#include "store/core/IModel.h"

namespace hv::vex {

Ref<IAdvancedQueryImpl> FindQuery(IUnknown* object) {
  if (Ref<IAdvancedQueryImpl> body = QueryRef<IAdvancedQueryImpl>(object)) return body;
  const auto automation = QueryRef<easyImpl::ILogicOf<IAdvancedQueryImpl>>(object);
  return automation ? Ref<IAdvancedQueryImpl>::Share(&automation->GetLogic()) : nullptr;
}

Result StoreQuery(IAdvancedQueryImpl& query, IStore& document) try {
  HV_RETURN_CODE_IF(!query.IsKindOf(eDataStoreQuery), VEX_E_NOT_STORE_QUERY);
  const Ref<IInstance> manager = querydoc::GetOrCreate(document, querydoc::kQueryManager);
  HV_RETURN_IF_FAILED(query.SaveInto(*manager));
  manager.As<IContainer>()->SetInteger(u"version", querydoc::kVersionStamp);
  return S_OK;
}
HV_CATCH_RETURN()

Result LoadStoredQuery(IStore& document, IAdvancedQueryImpl* query) try {
  using namespace querydoc;
  HV_RETURN_CODE_IF(!FirstAt(document, PathOf(kQueryManager)), VEX_E_NO_QUERY);
  const Ref<IInstance> stored = FirstAt(document, (PathOf(kQueryManager) += u'.') += kQueries);
  HV_RETURN_CODE_IF(!stored, VEX_E_NO_QUERY);
  const auto model = Ref<IModel>::Adopt(document.GetModel());
  HV_RETURN_CODE_IF(!model, E_UNEXPECTED);
  HV_RETURN_CODE_IF(!query, E_INVALIDARG);
  const auto entity = Ref<IEntity>::Adopt(model->GetEntityByName(u"asamquery"));
  HV_RETURN_CODE_IF(!entity || stored->IsKindOf(entity.Get()) == 0, VEX_E_NOT_STORE_QUERY);
  // A fresh one, so that a file which can't be loaded to its end changes nothing.
  Ref<IAdvancedQueryImpl> loaded;
  HV_RETURN_IF_FAILED(query->MakeEmpty(loaded.Put()));
  HV_RETURN_IF_FAILED(loaded->LoadFrom(*stored));
  return query->CopyFrom(loaded.Get());
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result SaveQueryFile(IAdvancedQueryImpl* query, std::u16string_view path) try {
  HV_RETURN_CODE_IF(!query || !query->IsKindOf(eDataStoreQuery), VEX_E_NOT_STORE_QUERY);
  const Ref<IStore> document = querydoc::Create();
  HV_RETURN_IF_FAILED(StoreQuery(*query, *document));
  querydoc::Write(*document, path);
  return S_OK;
} catch (...) {
  return E_FAIL;  // the one code for which there is a message that names the file
}

Result LoadQueryFile(std::u16string_view path, IAdvancedQueryImpl& query) try {
  HV_RETURN_CODE_IF(!query.IsAttached(), VEX_E_NO_STORE);
  const Ref<IStore> document = querydoc::Open(path);
  const Result rc = LoadStoredQuery(*document, &query);
  HV_RETURN_CODE_IF(rc == VEX_E_NO_QUERY || rc == VEX_E_NOT_STORE_QUERY, VEX_E_BAD_FILE);
  return rc;
}
HV_CATCH_RETURN_AS(VEX_E_BAD_FILE)

}  // namespace hv::vex
