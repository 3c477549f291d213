// store/session/ISessionQueries.h - what sessions have done by the query library, which stands a
// layer above them.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Dispatch.h>

namespace hv::vex {

class IAdvancedQueryImpl;
class IBrowseConfig;
class IStore;
class ISVEXQuery;

/// What queries of one session are made over. Borrowed for the call.
struct QueryGround {
  IStore& store;
  IBrowseConfig& config;  ///< the live one, whose generation tells a change of the path
};

/// The query library as a session sees it: one stateless object for the process, put in place with
/// `InstallSessionQueries` by whoever links both. Out objects carry one reference for the caller
/// and are null on entry; the codes go out to the session's caller as they are.
///
/// What belongs to the session stays there: reading the limit, running the text, and filling the
/// results.
class ISessionQueries {
 public:
  /// A new query without conditions.
  virtual Result Create(const QueryGround& ground, IAdvancedQueryImpl** query) = 0;
  /// Checks a query and writes the text that finds its hits. A query that was made over another
  /// ground is copied and bound anew; `query` itself stays as it is.
  /// \param limit  the most hits that are shown; the text asks for one more
  /// \return S_OK; the codes of a search (VEX_E_NOT_STORE_QUERY, VEX_E_EMPTY_QUERY, ...)
  virtual Result WriteText(const QueryGround& ground, IAdvancedQueryImpl& query, std::int32_t limit,
                           WString* text) = 0;
  virtual Result Save(const QueryGround& ground, IAdvancedQueryImpl& query,
                      std::u16string_view path) = 0;
  virtual Result Load(const QueryGround& ground, std::u16string_view path,
                      IAdvancedQueryImpl** query) = 0;

  /// The automation object of a query, whose reference it takes over in any case. Null goes out as
  /// null.
  virtual Result Wrap(IAdvancedQueryImpl* query, ISVEXQuery** object) = 0;
  /// The store query behind an automation object, borrowed from it. VEX_E_NOT_STORE_QUERY for any
  /// other object and for null.
  virtual Result Unwrap(IDispatch* object, IAdvancedQueryImpl** query) = 0;

 protected:
  ~ISessionQueries() = default;
};

/// From now on sessions have queries; null takes that back. The object is borrowed for good, so it
/// is a static one.
void InstallSessionQueries(ISessionQueries* queries);
/// Null where the query library isn't linked: the members that need it give E_NOTIMPL.
ISessionQueries* GetSessionQueries();

}  // namespace hv::vex
