// store/model/ModelPropertyInt.cpp - an entity's properties as hosts see them.
#include "store/model/ModelPropertyInt.h"

#include "automation/rows/Collections.h"
#include "automation/rows/DataStoreModel.h"
#include "elements/WrapObject.h"
#include "store/model/ModelRows.h"

namespace hv::vex {

using automation::DispatchMap;
using automation::Get;
using automation::MakeRows;
using automation::Method;

namespace {

constexpr auto kPropertyRows = MakeRows(
    Get<&IModelProperty::get_Name>(u"Name", 1, kStandardErrors),
    Get<&IModelProperty::get_DataType>(u"DataType", 2, kStandardErrors),
    Get<&IModelProperty::get_BaseName>(u"BaseName", 3, automation::rows::kModelPropertyGetBaseName),
    Get<&IModelProperty::get_MinOccur>(u"MinOccur", 4, kStandardErrors),
    Get<&IModelProperty::get_MaxOccur>(u"MaxOccur", 5, kStandardErrors));
constexpr DispatchMap kPropertyMap{u"ModelProperty", kPropertyRows};

constexpr auto kPropertiesRows = MakeRows(
    Method<&IModelProperties::Item>(u"Item", kDispIdValue, automation::rows::kCollectionItem),
    Get<&IModelProperties::get_Count>(u"Count", 1, kStandardErrors),
    Method<&IModelProperties::Exists>(u"Exists", 2, kStandardErrors));
constexpr DispatchMap kPropertiesMap =
    DispatchMap(u"ModelProperties", kPropertiesRows).WithDefault(kDispIdValue);

}  // namespace

const DispatchMap& CModelPropertyInt::Map() { return kPropertyMap; }

Result CModelPropertyInt::get_Name(WString* name) { return m_logic->GetName(name); }

Result CModelPropertyInt::get_DataType(enumDataType* dataType) {
  return m_logic->GetDataType(dataType);
}

Result CModelPropertyInt::get_BaseName(WString* baseName) { return m_logic->GetBaseName(baseName); }

Result CModelPropertyInt::get_MinOccur(std::int32_t* minOccur) {
  return m_logic->GetMinOccur(minOccur);
}

Result CModelPropertyInt::get_MaxOccur(std::int32_t* maxOccur) {
  return m_logic->GetMaxOccur(maxOccur);
}

const DispatchMap& CModelPropertyCollInt::Map() { return kPropertiesMap; }

Result CModelPropertyCollInt::Item(const Variant& nameOrIndex, IModelProperty** property) {
  return WrapResult<IModelPropertyImpl, CModelPropertyInt>(property, [&](auto** out) {
    automation::ItemKey key;
    HV_RETURN_IF_FAILED(automation::ReadItemKey(nameOrIndex, &key));
    return key.isName ? m_logic->GetItemByName(*key.name, out) : m_logic->GetItem(key.index, out);
  });
}

Result CModelPropertyCollInt::get_Count(std::int32_t* count) { return m_logic->GetCount(count); }

Result CModelPropertyCollInt::Exists(const WString& name, std::int32_t* exists) {
  return TruthResult(exists, [&](bool* out) { return m_logic->Exists(name, out); });
}

}  // namespace hv::vex
