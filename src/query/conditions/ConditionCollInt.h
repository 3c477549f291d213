// query/conditions/ConditionCollInt.h - the conditions of a query as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/ISVEXConditions.h>
#include <storefabric/Ref.h>

#include "automation/ErrorRows.h"
#include "automation/ReadCollection.h"
#include "elements/LogicOf.h"
#include "elements/WrapObject.h"
#include "query/conditions/ConditionInt.h"
#include "query/conditions/IConditionCollImpl.h"

namespace hv::vex {

/// How the conditions of a query go out to hosts, which count them from 1.
template <class Wrapper>
struct tConditionTraits : tReadTraits<easyImpl::IConditionCollImpl, ISVEXCondition, Wrapper> {
  static constexpr std::int32_t kFirstIndex = 1;
};

/// The members of `ISVEXConditions` over the logic object. `Interface` is that or derived from it,
/// `Wrapper` the wrapper of one condition. Other wrappers reach the logic object by `ILogicOf`.
template <class Derived, class Wrapper, class Interface, class... Faces>
class tConditionCollInt
    : public automation::tReadCollectionInt<Derived, tConditionTraits<Wrapper>, Interface,
                                            easyImpl::ILogicOf<easyImpl::IConditionCollImpl>,
                                            Faces...> {
  using Base =
      automation::tReadCollectionInt<Derived, tConditionTraits<Wrapper>, Interface,
                                     easyImpl::ILogicOf<easyImpl::IConditionCollImpl>, Faces...>;

 public:
  explicit tConditionCollInt(Ref<easyImpl::IConditionCollImpl> logic) : Base(std::move(logic)) {}

  // ISVEXConditions
  Result Add(const WString& type, const WString& property, const WString& op, const Variant& value,
             ISVEXCondition** condition) override {
    const Result rc = AddUntranslated(type, property, op, value, condition);
    const bool isValue =
        rc == VEX_E_VALUE_TYPE || rc == VEX_E_VALUE_NOT_DATE || rc == VEX_E_VALUE_DIMENSIONS;
    return isValue ? VEX_E_BAD_VALUE : rc;
  }
  using Base::Item;
  Result Item(std::int32_t index, ISVEXCondition** condition) override {
    return this->ItemAt(index, condition);
  }
  Result Remove(std::int32_t index) override {
    HV_RETURN_CODE_IF(index < 1, E_INVALIDARG);
    return this->Logic().RemoveAt(index - 1);
  }
  Result RemoveAll() override { return this->Logic().RemoveAll(); }
  Result get_Logic(WString* logic) override try {
    HV_RETURN_IF_NULL(logic);
    *logic = this->Logic().GetLogic();
    return S_OK;
  }
  HV_CATCH_RETURN()
  Result put_Logic(const WString& logic) override { return this->Logic().SetLogic(logic); }
  Result Renumber() override { return this->Logic().Renumber(); }
  Result AddOrderBy(const WString& type, const WString& property, enumOrderBy orderBy,
                    ISVEXCondition** condition) override {
    HV_RETURN_IF_NULL(condition);
    *condition = nullptr;
    easyImpl::IConditionCollImpl& logic = this->Logic();
    HV_RETURN_CODE_IF(!logic.IsValidType(type), VEX_E_BAD_TYPE_ARGUMENT);
    HV_RETURN_CODE_IF(!logic.IsValidProperty(type, property), VEX_E_INVALID_PROPERTY);
    Ref<easyImpl::IConditionImpl> added;
    HV_RETURN_IF_FAILED(logic.AddDefault(type, property, added.Put()));
    if (orderBy != eNoOrderBy) HV_RETURN_IF_FAILED(added->SetOrderBy(orderBy));
    return tConditionTraits<Wrapper>::Wrap(*added, condition);
  }

  // ILogicOf
  easyImpl::IConditionCollImpl& GetLogic() override { return this->Logic(); }

  /// `Add` with the codes of the value check as they are, which have messages of their own.
  Result AddUntranslated(const WString& type, const WString& property, const WString& op,
                         const Variant& value, ISVEXCondition** condition) {
    return WrapResult<easyImpl::IConditionImpl, Wrapper>(
        condition, [&](auto** out) { return this->Logic().Add(type, property, op, value, out); });
  }
  /// The texts of messages.
  [[nodiscard]] WString ObjectText(automation::ObjectTextId id) const {
    return id == automation::ObjectTextId::StoreName ? this->Logic().GetStoreName() : WString();
  }

 protected:
  ~tConditionCollInt() override = default;
};

class CConditionCollInt final
    : public tConditionCollInt<CConditionCollInt, CConditionInt, ISVEXConditions> {
 public:
  using tConditionCollInt::tConditionCollInt;
  static const automation::DispatchMap& Map();

 private:
  ~CConditionCollInt() override = default;
};

class CDataStoreConditionCollInt final
    : public tConditionCollInt<CDataStoreConditionCollInt, CDataStoreConditionInt,
                               IDataStoreConditions, ISVEXConditions> {
 public:
  using tConditionCollInt::tConditionCollInt;
  static const automation::DispatchMap& Map();

 private:
  ~CDataStoreConditionCollInt() override = default;
};

}  // namespace hv::vex
