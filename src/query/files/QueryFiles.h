// query/files/QueryFiles.h - store queries in files, for sessions and for the objects that hosts
// read and write files with.
#pragma once

#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/Result.h>

#include "query/objects/IAdvancedQueryImpl.h"
#include "store/core/IStore.h"

namespace hv::vex {

/// \name What sessions do
/// @{
/// Writes a file, whole or not at all.
/// \return S_OK; VEX_E_NOT_STORE_QUERY for null and for a query of another kind; E_FAIL for a file
///         that can't be written.
Result SaveQueryFile(IAdvancedQueryImpl* query, std::u16string_view path);
/// Replaces a query by the first one of a file; on failure it is as it was.
/// \return S_OK; VEX_E_NO_STORE for a query without a store; VEX_E_BAD_FILE for a file that can't
/// be
///         read, holds no query, or one with an entity, property or operator that the store doesn't
///         have.
Result LoadQueryFile(std::u16string_view path, IAdvancedQueryImpl& query);
/// @}

/// \name The steps
/// @{
/// The query behind an object, which may be the automation object or the body itself; null if it is
/// neither.
Ref<IAdvancedQueryImpl> FindQuery(IUnknown* object);
/// Writes a query into a document.
Result StoreQuery(IAdvancedQueryImpl& query, IStore& document);
/// Replaces a query by the first one of a document. Codes as `IQueryInfoSetLoader::LoadQuery`, in
/// that order; a null query is no query.
Result LoadStoredQuery(IStore& document, IAdvancedQueryImpl* query);
/// @}

}  // namespace hv::vex
