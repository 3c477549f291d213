// query/objects/QueryInt.h - queries as hosts see them.
#pragma once

#include <utility>

#include <storefabric/ISVEXQuery.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "automation/MessageTexts.h"
#include "elements/LogicOf.h"
#include "query/objects/IAdvancedQueryImpl.h"

namespace hv::vex {

/// A query without anything special to its kind.
class CQueryInt final : public automation::DispatchImpl<CQueryInt, ISVEXQuery,
                                                        easyImpl::ILogicOf<IAdvancedQueryImpl>> {
 public:
  explicit CQueryInt(Ref<IAdvancedQueryImpl> logic) : m_logic(std::move(logic)) {}
  /// The members that every kind of query has; a kind's own map takes it as its base.
  static const automation::DispatchMap& Map();

  // ISVEXQuery
  Result IsKindOf(enumQueryType type, bool* isKindOf) override;
  Result IsEmpty(bool* isEmpty) override;
  Result get_QueryString(IDispatch* context, WString* text) override;
  Result put_QueryString(const WString& text) override;
  // ILogicOf
  IAdvancedQueryImpl& GetLogic() override { return *m_logic; }

 private:
  ~CQueryInt() override = default;

  Ref<IAdvancedQueryImpl> m_logic;
};

/// A query of one store.
class CDataStoreQueryInt final
    : public automation::DispatchImpl<CDataStoreQueryInt, IDataStoreQuery, ISVEXQuery,
                                      easyImpl::ILogicOf<IAdvancedQueryImpl>,
                                      automation::IMessageTexts> {
 public:
  explicit CDataStoreQueryInt(Ref<IAdvancedQueryImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();
  /// Makes a query that isn't bound to a store yet: the class that scripts create by name.
  static Result Create(IDispatch** query);

  // ISVEXQuery
  Result IsKindOf(enumQueryType type, bool* isKindOf) override;
  Result IsEmpty(bool* isEmpty) override;
  Result get_QueryString(IDispatch* context, WString* text) override;
  Result put_QueryString(const WString& text) override;
  // IDataStoreQuery
  Result get_ReturnType(WString* returnType) override;
  Result put_ReturnType(const WString& returnType) override;
  Result get_Conditions(IDataStoreConditions** conditions) override;
  Result Detach() override;
  // ILogicOf
  IAdvancedQueryImpl& GetLogic() override { return *m_logic; }
  // IMessageTexts
  WString GetMessageText(automation::ObjectTextId id) override;

 private:
  ~CDataStoreQueryInt() override = default;

  /// Follows a change of the store's model.
  Result CheckModel();

  Ref<IAdvancedQueryImpl> m_logic;
};

}  // namespace hv::vex
