// store/session/DataStoreSearch.cpp - the queries and the hits of a session.
#include <limits>

#include "automation/Guards.h"
#include "store/core/IInstList.h"
#include "store/core/IStoreQuery.h"
#include "store/elements/ElementColumns.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/ISessionQueries.h"
#include "store/session/NotAvailable.h"

namespace hv::vex {

namespace {

// What counts if the results don't tell their limit: for the text, and for what is kept.
constexpr std::int32_t kTextLimit = 100;
constexpr std::int32_t kRunLimit = 200;
constexpr std::int32_t kIncomplete = -1;

}  // namespace

Result CDataStoreImpl::CreateQuery(IAdvancedQueryImpl** query) {
  ISessionQueries* const queries = GetSessionQueries();
  HV_RETURN_CODE_IF(!query || !queries, NotAvailable(query));
  *query = nullptr;
  HV_RETURN_CODE_IF(!m_store || !m_config, E_UNEXPECTED);
  return queries->Create({*m_store, *m_config}, query);
}

Result CDataStoreImpl::SaveQuery(IAdvancedQueryImpl* query, std::u16string_view path) {
  HV_RETURN_CODE_IF(!query, VEX_E_NOT_STORE_QUERY);
  ISessionQueries* const queries = GetSessionQueries();
  HV_RETURN_CODE_IF(!queries, E_NOTIMPL);
  HV_RETURN_CODE_IF(!m_store || !m_config, E_UNEXPECTED);
  return queries->Save({*m_store, *m_config}, *query, path);
}

Result CDataStoreImpl::LoadQuery(IAdvancedQueryImpl** query, std::u16string_view path) {
  ISessionQueries* const queries = GetSessionQueries();
  HV_RETURN_CODE_IF(!query || !queries, NotAvailable(query));
  *query = nullptr;
  HV_RETURN_CODE_IF(!m_store || !m_config, E_UNEXPECTED);
  return queries->Load({*m_store, *m_config}, path, query);
}

Result CDataStoreImpl::GetResults(IStoreElementList** results) {
  HV_RETURN_IF_NULL(results);
  *results = nullptr;
  HV_RETURN_CODE_IF(!m_results, E_UNEXPECTED);
  return m_results.CopyTo(results);
}

Result CDataStoreImpl::WriteSearch(IAdvancedQueryImpl* query, WString* text) {
  HV_RETURN_CODE_IF(!query, VEX_E_NOT_STORE_QUERY);
  ISessionQueries* const queries = GetSessionQueries();
  HV_RETURN_CODE_IF(!queries, E_NOTIMPL);
  HV_RETURN_CODE_IF(!m_resultsImpl || !m_config, E_UNEXPECTED);
  return queries->WriteText({*m_store, *m_config}, *query, ResultsLimit(kTextLimit), text);
}

Result CDataStoreImpl::Search(IAdvancedQueryImpl* query) try {
  WString text;
  HV_RETURN_IF_FAILED(WriteSearch(query, &text));
  return RunQuery(text);
}
HV_CATCH_RETURN()

Result CDataStoreImpl::SearchColumns(IAdvancedQueryImpl* query, const Variant& properties,
                                     Variant* columns, std::optional<WString>* unknown) try {
  HV_RETURN_CODE_IF(!columns || !unknown, E_POINTER);
  columns->Clear();
  unknown->reset();
  WString text;
  HV_RETURN_IF_FAILED(WriteSearch(query, &text));
  HV_RETURN_IF_FAILED(m_resultsImpl->ClearResults());
  Ref<IInstList> hits;
  bool isIncomplete = false;
  const Result rc =
      ReadQueryColumns(*m_store, text, static_cast<std::uint64_t>(ResultsLimit(kRunLimit)),
                       properties, columns, unknown, &hits, &isIncomplete);
  HV_RETURN_CODE_IF(rc == E_INVALIDARG, VEX_E_INVALID_PROPERTY);
  HV_RETURN_IF_FAILED(rc);
  return KeepHits(*hits, isIncomplete);
}
HV_CATCH_RETURN()

std::int32_t CDataStoreImpl::ResultsLimit(std::int32_t otherwise) {
  std::int32_t limit = 0;
  return Failed(m_resultsImpl->GetMaxCount(&limit)) ? otherwise : limit;
}

Result CDataStoreImpl::RunQuery(std::u16string_view text) {
  const auto limit = static_cast<std::uint64_t>(ResultsLimit(kRunLimit));
  HV_RETURN_IF_FAILED(m_resultsImpl->ClearResults());
  const auto query = m_store.As<IStoreQuery>();
  HV_RETURN_CODE_IF(!query, E_NOINTERFACE);
  const auto hits = Ref<IInstList>::Adopt(query->Execute(text));
  HV_RETURN_CODE_IF(!hits, E_FAIL);
  // The text asked for one more than is shown: if that one is there, there are more.
  const std::uint64_t count = hits->GetCount();
  const bool isIncomplete = count == limit + 1;
  if (isIncomplete) hits->Truncate(limit);
  return KeepHits(*hits, isIncomplete);
}

Result CDataStoreImpl::KeepHits(IInstList& hits, bool isIncomplete) {
  HV_RETURN_IF_FAILED(m_resultsImpl->SetList(&hits));
  const auto count = static_cast<std::int32_t>(hits.GetCount());
  return m_resultsImpl->SetTotal(isIncomplete ? kIncomplete : count);
}

}  // namespace hv::vex
