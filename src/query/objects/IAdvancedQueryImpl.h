// query/objects/IAdvancedQueryImpl.h - the logic faces of queries.
// For every operation: a null out pointer gives E_POINTER with nothing done; out objects carry one
// reference for the caller and are null after a failure; out texts are empty after a failure.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <storefabric/ISVEXQuery.h>
#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

#include "query/logic/LogicParser.h"

namespace hv::vex {

namespace easyImpl {
class CDataStoreConditionCollImpl;
class IConditionCollImpl;
class IConditionImpl;
class IVEXElementImpl;
}  // namespace easyImpl
class IIdentifierMapper;
class IInstance;
class IStore;
class IStoreConfigHelper;

/// What every query can do, whatever its kind.
class IQueryImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IQueryImpl");

  virtual bool IsKindOf(enumQueryType type) = 0;
  /// True if there is no condition; free text and logic don't count.
  virtual bool IsEmpty() = 0;
  /// The whole text for the query's own return type, without a limit.
  virtual Result GetExpression(IStoreConfigHelper& config, WString* text) = 0;

 protected:
  ~IQueryImpl() = default;
};

/// A return type, conditions with their logic, and a free text.
///
/// Codes of everything that writes an expression: VEX_E_BAD_LOGIC for a logic that doesn't parse;
/// VEX_E_LOGIC_UNSUPPORTED, VEX_E_OR_UNSUPPORTED because of the store; VEX_E_OR_OPERATOR for
/// several values under an operator other than "="; VEX_E_INVALID_PROPERTY; E_INVALIDARG if no
/// condition can be used, or one that the logic names isn't there; VEX_E_VALUE_TYPE for a date
/// property whose value is no date; VEX_E_VALUE_TOO_LONG. `GetFailedCondition` then names the
/// condition.
class IAdvancedQueryImpl : public IQueryImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IAdvancedQueryImpl");

  /// The expression as `BuildExpression` writes it for the query's own return type.
  /// \param limit  most rows wanted; 0 for all
  virtual Result GetExpressionWithReturnType(WString* text, IStoreConfigHelper& config,
                                             std::int32_t limit) = 0;
  /// Writes the query below the manager of a query file. E_NOTIMPL for a query without a store.
  virtual Result SaveInto(IInstance& manager) = 0;
  /// Fills this query from the instance of a query file. E_NOTIMPL for a query without a store.
  virtual Result LoadFrom(IInstance& query) = 0;
  virtual Result GetConditions(easyImpl::IConditionCollImpl** conditions) = 0;
  [[nodiscard]] virtual const WString& GetReturnType() = 0;
  virtual Result GetReturnType(WString* returnType) = 0;
  /// E_INVALIDARG for a text that is no entity; the old one stays.
  virtual Result SetReturnType(std::u16string_view returnType) = 0;
  /// As `BuildExpressionBelow`, without an identifier mapper.
  virtual Result GetExpressionBelow(easyImpl::IVEXElementImpl* element, WString* text,
                                    IStoreConfigHelper& config) = 0;
  /// The same; keeps its place in the order of the operations.
  virtual Result Reserved(easyImpl::IVEXElementImpl* element, WString* text,
                          IStoreConfigHelper& config) = 0;
  [[nodiscard]] virtual const WString& GetFreeText() = 0;
  virtual void SetFreeText(std::u16string_view text) = 0;
  /// Counted from 1, the condition at which the last expression failed; 0 for none. It is the place
  /// in the list where a check failed, and the condition's number where writing it did.
  [[nodiscard]] virtual std::uint32_t GetFailedCondition() = 0;
  /// Unbinds the query from its store.
  virtual Result Detach() = 0;
  /// The name of the store that the query is bound to, or was last; empty if there never was one.
  [[nodiscard]] virtual WString GetStoreName() = 0;

  // The steps of an expression, each on its own. Texts are appended.

  /// The functions of a group in parentheses.
  /// \param position  the open token; receives the place behind the close
  virtual Result WriteGroup(std::span<const LogicToken> tokens, std::size_t* position,
                            WString* body, IStoreConfigHelper& config, bool isBelowElement,
                            IIdentifierMapper* mapper) = 0;
  /// The functions of one condition. \param parent  `TopOr` inside a function OR, else `TopAnd`
  virtual Result WriteCondition(easyImpl::IConditionImpl& condition, LogicKind parent,
                                WString* body, IStoreConfigHelper& config, bool isBelowElement,
                                IIdentifierMapper* mapper) = 0;
  /// The whole text, with the free text.
  virtual Result BuildExpression(std::u16string_view returnType, WString* text,
                                 IStoreConfigHelper& config, std::int32_t limit) = 0;
  /// The whole text without limit and free text.
  virtual Result BuildPlainExpression(std::u16string_view returnType, WString* text,
                                      IStoreConfigHelper& config) = 0;
  /// The text for records of the element's type. Properties that the model doesn't know are looked
  /// for among the instance attributes, unless there is a mapper: then they are
  /// VEX_E_INVALID_PROPERTY. E_INVALIDARG for a null element.
  virtual Result BuildExpressionBelow(easyImpl::IVEXElementImpl* element, WString* text,
                                      IStoreConfigHelper& config, IIdentifierMapper* mapper) = 0;
  /// What stands in place of a text that couldn't be built.
  [[nodiscard]] virtual WString FailureText(Result code) = 0;
  /// Restricts a finished body to what has a name, if the mapper asks for it; it may be null.
  virtual Result WriteFilter(IIdentifierMapper* mapper, LogicKind resultKind, WString* body) = 0;
  /// Checks the conditions for a store, before anything is written.
  virtual Result Validate(IStoreConfigHelper& config) = 0;

  // Of queries with a store. Others answer as a query that has lost its store.

  /// The dotted path from the return type to another entity; empty for the return type itself, and
  /// where there is no way.
  [[nodiscard]] virtual WString PathPrefix(std::u16string_view entity) = 0;
  [[nodiscard]] virtual std::int32_t SecondUriHook() = 0;  ///< 0
  [[nodiscard]] virtual std::int32_t ReservedHook() = 0;   ///< 0
  virtual bool IsValidReturnType(std::u16string_view entity) = 0;
  /// The way from the measurement quantity to the return type, by base names where there are some;
  /// the name itself where there is no way. Query files hold this.
  [[nodiscard]] virtual const WString& GetInternalReturnType() = 0;
  [[nodiscard]] virtual bool IsAttached() = 0;
  /// Binds the query to a store, whose names may be others.
  /// \param remap  finds the conditions' names anew in the store's model
  /// \return S_OK; E_INVALIDARG for null or a store that runs no queries; VEX_E_OTHER_STORE for a
  ///         name or a value that doesn't fit. The conditions before that one are moved then.
  virtual Result Reattach(IStore* store, bool remap) = 0;
  /// Takes over return type, filter flag and conditions. E_INVALIDARG for null.
  virtual Result CopyFrom(IAdvancedQueryImpl* other) = 0;
  /// 1 if the query is used as a filter. Saved, loaded and copied; nothing else.
  [[nodiscard]] virtual std::int32_t GetFilterActive() = 0;
  virtual void SetFilterActive(std::int32_t filterActive) = 0;
  /// The conditions as those of a store; null for a query of another kind. Not counted.
  [[nodiscard]] virtual easyImpl::CDataStoreConditionCollImpl* GetStoreConditions() = 0;
  /// Finds all names anew if the model has changed.
  /// \return S_OK; VEX_E_OTHER_STORE if one doesn't fit any more
  virtual Result Sync() = 0;
  /// \return S_OK if the model is the one of the last `Sync`, or knows the entity;
  ///         VEX_E_QUERY_BROWSE_PATH otherwise
  virtual Result CheckSync(std::u16string_view entity) = 0;
  /// The store that the query is bound to, or null. Not counted.
  [[nodiscard]] virtual IStore* GetStore() = 0;
  /// A new query of this kind on the same store. VEX_E_NO_STORE without one.
  virtual Result MakeEmpty(IAdvancedQueryImpl** query) = 0;

 protected:
  ~IAdvancedQueryImpl() = default;
};

}  // namespace hv::vex
