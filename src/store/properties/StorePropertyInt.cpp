// store/properties/StorePropertyInt.cpp - a property of a store element as hosts see it.
#include "store/properties/StorePropertyInt.h"

#include "automation/rows/StoreProperties.h"

namespace hv::vex {

namespace rows = automation::rows;
using automation::Get;
using automation::Put;

namespace {

constexpr auto kStandard = automation::Errors(u"");

constexpr auto kRows = automation::MakeRows(
    Get<&IStoreProperty::get_Value>(u"Value", kDispIdValue, kStandard),
    Put<&IStoreProperty::put_Value>(u"Value", kDispIdValue, rows::kStorePropertyPutValue),
    Get<&IStoreProperty::get_Name>(u"Name", 1, kStandard),
    Get<&IStoreProperty::get_Default>(u"Default", 2, kStandard),
    Get<&IStoreProperty::get_DisplayName>(u"DisplayName", 3, kStandard),
    Get<&IStoreProperty::get_Values>(u"Values", 4, rows::kStorePropertyGetValues),
    Put<&IStoreProperty::put_Values>(u"Values", 4, rows::kStorePropertyPutValues),
    Get<&IStoreProperty::get_Size>(u"Size", 5, kStandard),
    Get<&IStoreProperty::get_DataType>(u"DataType", 6, kStandard),
    Get<&IStoreProperty::get_Hidden>(u"Hidden", 7, kStandard),
    Get<&IStoreProperty::get_BaseName>(u"BaseName", 8, rows::kStorePropertyGetBaseName),
    Get<&IStoreProperty::get_IsInstanceProperty>(u"IsInstanceProperty", 9, kStandard));
constexpr automation::DispatchMap kMap =
    automation::DispatchMap(u"StoreProperty", kRows).WithDefault(kDispIdValue);

}  // namespace

const automation::DispatchMap& CStorePropertyInt::Map() { return kMap; }

Result CStorePropertyInt::get_BaseName(WString* baseName) { return Logic().GetBaseName(baseName); }
Result CStorePropertyInt::get_IsInstanceProperty(std::int32_t* isInstanceProperty) {
  return Logic().IsInstanceProperty(isInstanceProperty);
}

}  // namespace hv::vex
