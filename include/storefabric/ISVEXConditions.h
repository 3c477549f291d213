// storefabric/ISVEXConditions.h - the conditions of a query as hosts see them.
#pragma once

#include <cstdint>

#include <storefabric/Dispatch.h>

namespace hv::vex {

class ISVEXCondition;

/// How the hits of a query are ordered by a condition's property. The numbers are frozen.
enum enumOrderBy : std::int32_t {
  eNoOrderBy = 0,
  eOrderByAscending = 1,
  eOrderByDescending = 2,
};

/// The conditions of one query, in the order in which they were added, and the logic that joins
/// them. The members can be called by name; their dispatch ids are in the comments and frozen. Out
/// objects carry one reference for the caller; a null out pointer gives E_POINTER; out values are
/// null, zero or empty after a failure.
class ISVEXConditions : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::ISVEXConditions");

  /// 1. Adds a condition under a new name. A logic that names conditions is extended by it: with
  /// " OR " if it joins with OR alone, with " AND " otherwise.
  /// \param type      the entity that has the property
  /// \param property  a text, numeric or date property of it
  /// \param op        texts take "=" and "<>", numbers also "<", "<=", ">" and ">="; dates "=",
  ///                  "<=", ">=" and "#" (a relative range), or the names that these have there
  /// \param value     a text, which may hold several values joined with " OR ", a number, or an
  ///                  array of values, which are joined with OR; under "=" only. For a date a date,
  ///                  a time object or a text in the format of the language; for a relative range
  ///                  its keyword or local name
  /// \return S_OK; VEX_E_BAD_TYPE_ARGUMENT; VEX_E_INVALID_PROPERTY; VEX_E_BAD_OPERATOR for an
  ///         operator that isn't one or that the property doesn't take; VEX_E_OR_OPERATOR for
  ///         several values under another operator than "="; VEX_E_OR_UNSUPPORTED for a store
  ///         without several values; E_INVALIDARG for a value that can't be a text;
  ///         VEX_E_BAD_VALUE for any other value that doesn't fit. Nothing is added then.
  virtual Result Add(const WString& type, const WString& property, const WString& op,
                     const Variant& value, ISVEXCondition** condition) = 0;
  /// 2, the default member. \param index  counts from 1
  /// \return S_OK; E_INVALIDARG for an index outside
  virtual Result Item(std::int32_t index, ISVEXCondition** condition) = 0;
  /// 3. Takes a condition away, and its name out of the logic, which then names what is left.
  /// \param index  counts from 1 \return S_OK; E_INVALIDARG for an index outside
  virtual Result Remove(std::int32_t index) = 0;
  /// 4, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// 5. Takes all conditions away and empties the logic.
  virtual Result RemoveAll() = 0;
  /// -4, property. Walks the conditions.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;
  /// 6, property. The logic that joins the conditions by their names, such as "(C1 AND C2) OR C3".
  /// Never empty while there are conditions.
  virtual Result get_Logic(WString* logic) = 0;
  /// Keywords and names may be in any case. "AND", "OR" and the empty text stand for chains of all
  /// conditions. What mixes AND and OR gets parentheses, AND binding tighter.
  /// \return S_OK; VEX_E_BAD_LOGIC for a text that isn't complete and valid, which leaves the logic
  ///         as it was; VEX_E_LOGIC_UNSUPPORTED for a store that knows nothing but AND
  virtual Result put_Logic(const WString& logic) = 0;
  /// 7. Names the conditions "C1", "C2" ... in their order, in the logic as well.
  virtual Result Renumber() = 0;
  /// 8. Adds a condition on a property without a value of its own, and orders the hits by it.
  /// \return S_OK; VEX_E_BAD_TYPE_ARGUMENT; VEX_E_INVALID_PROPERTY; E_NOTIMPL if the conditions
  ///         hold no order, and then the new one stays all the same
  virtual Result AddOrderBy(const WString& type, const WString& property, enumOrderBy orderBy,
                            ISVEXCondition** condition) = 0;

 protected:
  ~ISVEXConditions() = default;
};

/// One condition: property, operator and values. It can be read as long as somebody holds it, also
/// when its collection is gone.
class ISVEXCondition : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::ISVEXCondition");

  /// 1, property, the default member. The first value; empty if there is none.
  virtual Result get_Value(Variant* value) = 0;
  /// 2, property. The entity.
  virtual Result get_Type(WString* type) = 0;
  /// 3, property. The symbol of the operator, or the name that it has for a date: "Date after" and
  /// its like.
  virtual Result get_Operator(WString* op) = 0;
  /// 4, property.
  virtual Result get_Property(WString* property) = 0;
  /// 5, property. "C" and a number; the name that the logic uses.
  virtual Result get_Name(WString* name) = 0;
  /// 6, property. One of the values. Only several values joined with OR show: of those of another
  /// operator than "=" each is empty.
  /// \param index  counts from 0
  /// \return S_OK; E_INVALIDARG for an index outside
  virtual Result get_Values(std::int32_t index, Variant* value) = 0;
  /// 7, property. The number of values.
  virtual Result get_Size(std::int32_t* size) = 0;
  /// 8, property. `eNoOrderBy` for conditions that hold no order.
  virtual Result get_OrderBy(enumOrderBy* orderBy) = 0;
  /// \return S_OK; E_NOTIMPL for conditions that hold no order
  virtual Result put_OrderBy(enumOrderBy orderBy) = 0;

 protected:
  ~ISVEXCondition() = default;
};

/// A condition of a query that is bound to a data store. `Values` and `Size` may also give
/// VEX_E_OBJECT_GONE, VEX_E_PARENT_GONE or VEX_E_QUERY_BROWSE_PATH if the store is no longer what
/// it was.
class IDataStoreCondition : public ISVEXCondition {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreCondition");

 protected:
  ~IDataStoreCondition() = default;
};

/// The conditions of a query that is bound to a data store.
class IDataStoreConditions : public ISVEXConditions {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreConditions");

 protected:
  ~IDataStoreConditions() = default;
};

}  // namespace hv::vex
