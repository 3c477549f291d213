// storefabric/ISVEXQuery.h - a query as a host sees it.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

class IDataStoreConditions;

/// The kinds of queries. Frozen numbers.
enum enumQueryType : std::int32_t {
  eAdvancedQuery = 1,
  eTextQuery = 2,
  eDataStoreQuery = 4,
};

/// A query: conditions, their logic and a return type.
///
/// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
/// and nothing happens. The same members can be called by name; their dispatch ids are in the
/// comments and frozen.
class ISVEXQuery : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::ISVEXQuery");

  /// 1. True for the kind of query that this is, and for no other: a query of a store answers to
  /// `eDataStoreQuery` only.
  virtual Result IsKindOf(enumQueryType type, bool* isKindOf) = 0;
  /// 2. True if the query has no condition; its logic doesn't count.
  virtual Result IsEmpty(bool* isEmpty) = 0;
  /// 200, property. The query expression (docs/formats/query-expression.md), without a limit.
  /// \param context  the store, an object with the interface `IDataStore`, whose types and limits
  ///                 the text follows; null for a text that knows nothing of types
  /// \param text     empty if the query can't be expressed, which isn't a failure
  /// \return S_OK; E_INVALIDARG for a context that is no store.
  virtual Result get_QueryString(IDispatch* context, WString* text) = 0;
  /// 201, by name also writing the property 200. E_NOTIMPL: texts aren't read back into conditions.
  virtual Result put_QueryString(const WString& text) = 0;

 protected:
  ~ISVEXQuery() = default;
};

/// A query of one store.
///
/// A store whose model has changed meanwhile is followed; where that isn't possible, every member
/// that has to do with names gives VEX_E_OTHER_STORE or VEX_E_QUERY_BROWSE_PATH.
class IDataStoreQuery : public ISVEXQuery {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreQuery");

  /// 100, property. The entity whose elements are found.
  virtual Result get_ReturnType(WString* returnType) = 0;
  /// 100. E_INVALIDARG for a text that is no entity of the store; the old one stays.
  virtual Result put_ReturnType(const WString& returnType) = 0;
  /// 101, property. The conditions: another object each time, always on the same conditions.
  virtual Result get_Conditions(IDataStoreConditions** conditions) = 0;
  /// 103. Unbinds the query from its store; it stays readable. E_UNEXPECTED if it has none.
  virtual Result Detach() = 0;

 protected:
  ~IDataStoreQuery() = default;
};

}  // namespace hv::vex
