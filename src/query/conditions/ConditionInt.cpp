// query/conditions/ConditionInt.cpp - one condition by name.
#include "query/conditions/ConditionInt.h"

#include "automation/rows/Conditions.h"

namespace hv::vex {

using automation::DispatchMap;
using automation::Get;
using automation::Put;
using automation::rows::kConditionsOther;
using automation::rows::kConditionValues;

namespace {

constexpr std::int32_t kIdValue = 1;

constexpr auto kRows =
    automation::MakeRows(Get<&ISVEXCondition::get_Value>(u"Value", kIdValue, kConditionsOther),
                         Get<&ISVEXCondition::get_Type>(u"Type", 2, kConditionsOther),
                         Get<&ISVEXCondition::get_Operator>(u"Operator", 3, kConditionsOther),
                         Get<&ISVEXCondition::get_Property>(u"Property", 4, kConditionsOther),
                         Get<&ISVEXCondition::get_Name>(u"Name", 5, kConditionsOther),
                         Get<&ISVEXCondition::get_Values>(u"Values", 6, kConditionValues),
                         Get<&ISVEXCondition::get_Size>(u"Size", 7, kConditionsOther),
                         Get<&ISVEXCondition::get_OrderBy>(u"OrderBy", 8, kConditionsOther),
                         Put<&ISVEXCondition::put_OrderBy>(u"OrderBy", 8, kConditionsOther));
constexpr DispatchMap kMap = DispatchMap(u"Condition", kRows).WithDefault(kIdValue);
constexpr DispatchMap kDataStoreMap =
    DispatchMap(u"DataStoreCondition", kRows).WithDefault(kIdValue);

}  // namespace

const DispatchMap& CConditionInt::Map() { return kMap; }

const DispatchMap& CDataStoreConditionInt::Map() { return kDataStoreMap; }

}  // namespace hv::vex
