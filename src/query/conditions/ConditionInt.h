// query/conditions/ConditionInt.h - one condition as hosts see it.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/ISVEXConditions.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "automation/Guards.h"
#include "query/conditions/IConditionImpl.h"

namespace hv::vex {

/// The members of `ISVEXCondition` over the logic object. `Interface` is that or derived from it.
template <class Derived, class Interface, class... Faces>
class tConditionInt : public automation::DispatchImpl<Derived, Interface, Faces...> {
 public:
  explicit tConditionInt(Ref<easyImpl::IConditionImpl> logic) : m_logic(std::move(logic)) {}

  // ISVEXCondition
  Result get_Value(Variant* value) override { return m_logic->ReadFirstValue(value); }
  Result get_Type(WString* type) override { return m_logic->ReadType(type); }
  Result get_Operator(WString* op) override { return m_logic->ReadOperator(op); }
  Result get_Property(WString* property) override { return m_logic->ReadProperty(property); }
  Result get_Name(WString* name) override {
    HV_RETURN_IF_NULL(name);
    *name = m_logic->GetName();
    return S_OK;
  }
  Result get_Values(std::int32_t index, Variant* value) override {
    return m_logic->GetValue(index, value);
  }
  Result get_Size(std::int32_t* size) override { return m_logic->GetSize(size); }
  Result get_OrderBy(enumOrderBy* orderBy) override {
    HV_RETURN_IF_NULL(orderBy);
    *orderBy = m_logic->GetOrderBy();
    return S_OK;
  }
  Result put_OrderBy(enumOrderBy orderBy) override { return m_logic->SetOrderBy(orderBy); }

 protected:
  ~tConditionInt() override = default;

 private:
  Ref<easyImpl::IConditionImpl> m_logic;
};

class CConditionInt final : public tConditionInt<CConditionInt, ISVEXCondition> {
 public:
  using tConditionInt::tConditionInt;
  static const automation::DispatchMap& Map();

 private:
  ~CConditionInt() override = default;
};

class CDataStoreConditionInt final
    : public tConditionInt<CDataStoreConditionInt, IDataStoreCondition, ISVEXCondition> {
 public:
  using tConditionInt::tConditionInt;
  static const automation::DispatchMap& Map();

 private:
  ~CDataStoreConditionInt() override = default;
};

}  // namespace hv::vex
