// store/properties/StorePropertiesInt.cpp - the properties of a store element as hosts see them.
#include "store/properties/StorePropertiesInt.h"

#include "automation/rows/StoreProperties.h"

namespace hv::vex {

namespace rows = automation::rows;
using automation::Get;
using automation::Method;
using automation::Put;
using easyImpl::IPropertyCollectionImpl;
using easyImpl::IPropertyImpl;

namespace {

constexpr auto kStandard = automation::Errors(u"");
constexpr auto kStandardOfChange = automation::ErrorsOfChange(u"");

/// Callers by name have the `Add` with a type only.
using AddWithType = Result (IStoreProperties::*)(const WString&, const Variant&, enumDataType,
                                                 IStoreProperty**);
constexpr AddWithType kAdd = &IStoreProperties::Add;

constexpr auto kRows = automation::MakeRows(
    Method<&IStoreProperties::Item>(u"Item", kDispIdValue, kStandard),
    Method<kAdd>(u"Add", 1, rows::kStorePropertiesAdd),
    Method<&IStoreProperties::Remove>(u"Remove", 2, rows::kStorePropertiesRemove),
    Get<&IStoreProperties::get_Count>(u"Count", 3, kStandard),
    Method<&IStoreProperties::RemoveAll>(u"RemoveAll", 4, rows::kStorePropertiesRemoveAll),
    Method<&IStoreProperties::Exists>(u"Exists", 5, kStandard),
    Get<&IStoreProperties::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, kStandard),
    Method<&IStoreProperties::AddProperties>(u"AddProperties", 6, kStandardOfChange),
    Get<&IStoreProperties::get_ListInstanceProperties>(u"ListInstanceProperties", 7, kStandard),
    Put<&IStoreProperties::put_ListInstanceProperties>(u"ListInstanceProperties", 7, kStandard));
constexpr automation::DispatchMap kMap =
    automation::DispatchMap(u"StoreProperties", kRows).WithDefault(kDispIdValue);

}  // namespace

const automation::DispatchMap& CStorePropertiesInt::Map() { return kMap; }

Result CStorePropertiesInt::Add(const WString& name, const Variant& value, IProperty** property) {
  return WrapResult<IPropertyImpl, CStorePropertyInt>(
      property, [&](auto** out) { return Logic().Add(name, value, out); });
}

Result CStorePropertiesInt::Add(const WString& name, const Variant& value, enumDataType type,
                                IStoreProperty** property) {
  return WrapResult<IPropertyImpl, CStorePropertyInt>(
      property, [&](auto** out) { return Logic().Add(name, value, type, out); });
}

Result CStorePropertiesInt::Remove(const Variant& nameOrIndex) {
  automation::ItemKey key;
  HV_RETURN_IF_FAILED(automation::ReadItemKey(nameOrIndex, &key));
  return key.isName ? Logic().Remove(*key.name) : Logic().RemoveAt(key.index);
}

Result CStorePropertiesInt::RemoveAll() { return Logic().RemoveAll(); }

Result CStorePropertiesInt::Exists(const WString& name, std::int32_t* exists) {
  return TruthResult(exists, [&](bool* out) { return Logic().Exists(name, out); });
}

Result CStorePropertiesInt::AddProperties(IProperties* properties, const WString& prefix) {
  HV_RETURN_IF_NULL(properties);
  const auto source = QueryRef<easyImpl::ILogicOf<IPropertyCollectionImpl>>(properties);
  HV_RETURN_CODE_IF(!source, E_INVALIDARG);
  return Logic().AddProperties(&source->GetLogic(), prefix);
}

Result CStorePropertiesInt::get_ListInstanceProperties(std::int32_t* list) {
  return Logic().GetListInstanceProperties(list);
}

Result CStorePropertiesInt::put_ListInstanceProperties(std::int32_t list) {
  return Logic().SetListInstanceProperties(list);
}

}  // namespace hv::vex
