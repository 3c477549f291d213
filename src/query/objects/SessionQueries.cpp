// query/objects/SessionQueries.cpp - queries for sessions, which stand a layer below.
#include "query/objects/SessionQueries.h"

#include <storefabric/IBrowseConfig.h>

#include "automation/Guards.h"
#include "query/files/QueryFiles.h"
#include "query/objects/DataStoreAdvancedQueryImpl.h"
#include "query/objects/QueryInt.h"

#include <limits>
#include <utility>

namespace hv::vex {

namespace {

using Query = CDataStoreAdvancedQueryImpl;

/// The query itself if it is one of this ground, otherwise a copy that is bound to it.
Result BindToGround(const QueryGround& ground, Ref<Query>* query) {
  if ((*query)->IsMadeFor(ground.store, ground.config, ground.config.GetGeneration())) {
    return (*query)->Sync();
  }
  auto bound = MakeRef<Query>(ground.store, &ground.config);
  HV_RETURN_IF_FAILED(bound->CopyFrom(query->Get()));
  bound->SetFreeText((*query)->GetFreeText());
  HV_RETURN_IF_FAILED(bound->Reattach(&ground.store, true));
  *query = std::move(bound);
  return S_OK;
}

class SessionQueries final : public ISessionQueries {
 public:
  Result Create(const QueryGround& ground, IAdvancedQueryImpl** query) override try {
    *query = MakeRef<Query>(ground.store, &ground.config).Detach();
    return S_OK;
  }
  HV_CATCH_RETURN_AS(E_UNEXPECTED)

  Result WriteText(const QueryGround& ground, IAdvancedQueryImpl& query, std::int32_t limit,
                   WString* text) override try {
    HV_RETURN_CODE_IF(!query.IsKindOf(eDataStoreQuery), VEX_E_NOT_STORE_QUERY);
    HV_RETURN_CODE_IF(query.IsEmpty(), VEX_E_EMPTY_QUERY);
    Ref<Query> own = OwnStoreQuery(&query);
    HV_RETURN_CODE_IF(!own, VEX_E_NOT_STORE_QUERY);
    HV_RETURN_IF_FAILED(BindToGround(ground, &own));
    const auto config = MakeRef<CDataStoreConfigHelper>(&ground.store);
    // One more than is shown tells whether there are more.
    const bool isLast = limit == std::numeric_limits<std::int32_t>::max();
    return own->GetExpressionWithReturnType(text, *config, isLast ? limit : limit + 1);
  }
  HV_CATCH_RETURN_AS(E_UNEXPECTED)

  Result Save(const QueryGround&, IAdvancedQueryImpl& query, std::u16string_view path) override {
    return SaveQueryFile(&query, path);
  }
  Result Load(const QueryGround& ground, std::u16string_view path,
              IAdvancedQueryImpl** query) override try {
    const auto made = MakeRef<Query>(ground.store, &ground.config);
    HV_RETURN_IF_FAILED(LoadQueryFile(path, *made));
    return made.CopyTo(query);
  }
  HV_CATCH_RETURN_AS(E_UNEXPECTED)

  Result Wrap(IAdvancedQueryImpl* query, ISVEXQuery** object) override try {
    auto taken = Ref<IAdvancedQueryImpl>::Adopt(query);
    *object = taken ? MakeRef<CDataStoreQueryInt>(std::move(taken)).Detach() : nullptr;
    return S_OK;
  }
  HV_CATCH_RETURN()

  Result Unwrap(IDispatch* object, IAdvancedQueryImpl** query) override {
    const auto own = QueryRef<easyImpl::ILogicOf<IAdvancedQueryImpl>>(object);
    HV_RETURN_CODE_IF(!own, VEX_E_NOT_STORE_QUERY);
    *query = &own->GetLogic();
    return S_OK;
  }
};

constinit SessionQueries g_queries;

}  // namespace

ISessionQueries& StoreQueries() { return g_queries; }

}  // namespace hv::vex
