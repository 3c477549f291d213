// elements/PropertyInt.cpp - properties and lists of them as hosts see them.
#include "elements/PropertyInt.h"

#include "automation/Guards.h"
#include "automation/rows/Collections.h"
#include "automation/rows/GenericElements.h"

namespace hv::vex::easyImpl {

namespace rows = automation::rows;
using automation::DispatchMap;
using automation::Errors;
using automation::ErrorsOfChange;
using automation::Get;
using automation::MakeRows;
using automation::Method;
using automation::Put;

namespace {

/// The standard rows alone, for members that read and for members that write.
constexpr auto kStandard = Errors(u"");
constexpr auto kStandardOfChange = ErrorsOfChange(u"");

constexpr auto kPropertiesRows =
    MakeRows(Method<&IProperties::Item>(u"Item", kDispIdValue, automation::rows::kCollectionItem),
             Method<&IProperties::Add>(u"Add", 1, rows::kPropertiesAdd),
             Method<&IProperties::Remove>(u"Remove", 2, rows::kPropertiesRemove),
             Get<&IProperties::get_Count>(u"Count", 3, kStandard),
             Method<&IProperties::RemoveAll>(u"RemoveAll", 4, kStandardOfChange),
             Method<&IProperties::Exists>(u"Exists", 5, kStandard),
             Get<&IProperties::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, kStandard),
             Method<&IProperties::AddProperties>(u"AddProperties", 6, kStandardOfChange));
constexpr DispatchMap kPropertiesMap =
    DispatchMap(u"Properties", kPropertiesRows).WithDefault(kDispIdValue);

constexpr auto kPropertyRows =
    MakeRows(Get<&IProperty::get_Value>(u"Value", kDispIdValue, kStandard),
             Put<&IProperty::put_Value>(u"Value", kDispIdValue, rows::kPropertyPutValue),
             Get<&IProperty::get_Name>(u"Name", 1, kStandard),
             Get<&IProperty::get_Default>(u"Default", 2, kStandard),
             Get<&IProperty::get_DisplayName>(u"DisplayName", 3, kStandard),
             Get<&IProperty::get_Values>(u"Values", 4, rows::kPropertyGetValues),
             Put<&IProperty::put_Values>(u"Values", 4, rows::kPropertyPutValues),
             Get<&IProperty::get_Size>(u"Size", 5, kStandard),
             Get<&IProperty::get_DataType>(u"DataType", 6, kStandard),
             Get<&IProperty::get_Hidden>(u"Hidden", 7, kStandard));
constexpr DispatchMap kPropertyMap = DispatchMap(u"Property", kPropertyRows)
                                         .WithDefault(kDispIdValue)
                                         .WithObjectText<&CPropertyInt::TextForMessage>();

}  // namespace

const DispatchMap& CPropertiesInt::Map() { return kPropertiesMap; }

Result CPropertiesInt::Add(const WString& name, const Variant& value, IProperty** property) {
  return WrapResult<IPropertyImpl, CPropertyInt>(
      property, [&](auto** out) { return Logic().Add(name, value.Dereferenced(), out); });
}

Result CPropertiesInt::Remove(const Variant& nameOrIndex) {
  automation::ItemKey key;
  HV_RETURN_IF_FAILED(automation::ReadItemKey(nameOrIndex, &key));
  if (key.isName) return Logic().Remove(*key.name);
  Ref<IPropertyImpl> property;
  HV_RETURN_IF_FAILED(Logic().GetItem(key.index, property.Put()));
  WString name;
  HV_RETURN_IF_FAILED(property->GetName(&name));
  return Logic().Remove(name);
}

Result CPropertiesInt::RemoveAll() { return Logic().RemoveAll(); }

Result CPropertiesInt::Exists(const WString& name, std::int32_t* exists) {
  return TruthResult(exists, [&](bool* out) { return Logic().Exists(name, out); });
}

Result CPropertiesInt::AddProperties(IProperties* properties, const WString& prefix) {
  HV_RETURN_IF_NULL(properties);
  const auto source = QueryRef<ILogicOf<IPropertyCollectionImpl>>(properties);
  HV_RETURN_CODE_IF(!source, E_INVALIDARG);
  return Logic().AddProperties(&source->GetLogic(), prefix);
}

const DispatchMap& CPropertyInt::Map() { return kPropertyMap; }

WString CPropertyInt::TextForMessage(automation::ObjectTextId /*id*/) const {
  WString name;
  (void)Logic().GetName(&name);
  return name;
}

}  // namespace hv::vex::easyImpl
