// query/objects/AdvancedQueryImpl.h - the part of a query that knows no store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "query/conditions/IConditionCollImpl.h"
#include "query/conditions/IConditionOwner.h"
#include "query/expression/ExpressionWriter.h"
#include "query/objects/IAdvancedQueryImpl.h"

namespace hv::vex {

/// Base of the bodies of queries. A derived class makes the conditions in its constructor.
class CAdvancedQueryImpl : public IAdvancedQueryImpl,
                           public IConditionOwner,
                           protected IEntityPaths {
 public:
  CAdvancedQueryImpl(const CAdvancedQueryImpl&) = delete;
  CAdvancedQueryImpl& operator=(const CAdvancedQueryImpl&) = delete;

  // IQueryImpl
  bool IsKindOf(enumQueryType type) override { return type == eAdvancedQuery; }
  bool IsEmpty() override;
  Result GetExpression(IStoreConfigHelper& config, WString* text) override;

  // IAdvancedQueryImpl
  Result GetExpressionWithReturnType(WString* text, IStoreConfigHelper& config,
                                     std::int32_t limit) override;
  Result GetConditions(easyImpl::IConditionCollImpl** conditions) override;
  const WString& GetReturnType() override { return m_returnType; }
  Result GetReturnType(WString* returnType) override;
  Result SetReturnType(std::u16string_view returnType) override;
  Result GetExpressionBelow(easyImpl::IVEXElementImpl* element, WString* text,
                            IStoreConfigHelper& config) override;
  Result Reserved(easyImpl::IVEXElementImpl* element, WString* text,
                  IStoreConfigHelper& config) override;
  const WString& GetFreeText() override { return m_freeText; }
  void SetFreeText(std::u16string_view text) override { m_freeText = text; }
  std::uint32_t GetFailedCondition() override { return m_failedCondition; }
  WString GetStoreName() override { return {}; }
  Result WriteGroup(std::span<const LogicToken> tokens, std::size_t* position, WString* body,
                    IStoreConfigHelper& config, bool isBelowElement,
                    IIdentifierMapper* mapper) override;
  Result WriteCondition(easyImpl::IConditionImpl& condition, LogicKind parent, WString* body,
                        IStoreConfigHelper& config, bool isBelowElement,
                        IIdentifierMapper* mapper) override;
  Result BuildExpression(std::u16string_view returnType, WString* text, IStoreConfigHelper& config,
                         std::int32_t limit) override;
  Result BuildPlainExpression(std::u16string_view returnType, WString* text,
                              IStoreConfigHelper& config) override;
  Result BuildExpressionBelow(easyImpl::IVEXElementImpl* element, WString* text,
                              IStoreConfigHelper& config, IIdentifierMapper* mapper) override;
  WString FailureText(Result) override { return {}; }
  Result WriteFilter(IIdentifierMapper* mapper, LogicKind resultKind, WString* body) override;
  Result Validate(IStoreConfigHelper& config) override { return Check(config, false); }

  /// The clock that relative ranges are read against; the machine's if nobody says otherwise.
  using Clock = SystemTime (*)();
  void SetClock(Clock clock) { m_clock = clock; }

 protected:
  CAdvancedQueryImpl() = default;
  ~CAdvancedQueryImpl() = default;

  WString m_returnType;
  WString m_freeText;
  Ref<easyImpl::IConditionCollImpl> m_conditions;
  std::uint32_t m_failedCondition = 0;  ///< from 1; 0 for none

 private:
  /// What is written beside the conditions.
  struct Frame {
    std::u16string_view entity{};
    std::u16string_view freeText{};
    std::int32_t limit = 0;
    bool isBelowElement = false;
    IIdentifierMapper* mapper = nullptr;
  };
  Result Build(const Frame& frame, IStoreConfigHelper& config, WString* text);
  Result Write(const Frame& frame, IStoreConfigHelper& config, WString* text);
  Result Check(IStoreConfigHelper& config, bool isBelowElement);
  Result CheckCondition(easyImpl::IConditionImpl& condition, IStoreConfigHelper& config,
                        bool isBelowElement);
  ExpressionSource Source(const Frame& frame, IStoreConfigHelper& config);

  Clock m_clock = &LocalNow;
};

}  // namespace hv::vex
