// store/model/EntityInt.cpp - entities and lists of them as hosts see them.
#include "store/model/EntityInt.h"

#include "automation/ArgumentValues.h"
#include "automation/rows/Collections.h"
#include "store/model/ModelPropertyInt.h"
#include "store/model/ModelReferenceInt.h"
#include "store/model/ModelRows.h"

namespace hv::vex {

using automation::DispatchMap;
using automation::Get;
using automation::MakeRows;
using automation::Method;

namespace {

constexpr auto kEntityRows =
    MakeRows(Get<&IModelEntity::get_Name>(u"Name", 1, kStandardErrors),
             Get<&IModelEntity::get_ModelProperties>(u"ModelProperties", 2, kStandardErrors),
             Get<&IModelEntity::get_ModelReferences>(u"ModelReferences", 3, kStandardErrors),
             Get<&IModelEntity::get_SubTypes>(u"SubTypes", 4, kStandardErrors),
             Get<&IModelEntity::get_SuperType>(u"SuperType", 5, kStandardErrors),
             Get<&IModelEntity::get_IsBaseType>(u"IsBaseType", 6, kStandardErrors),
             Method<&IModelEntity::IsKindOf>(u"IsKindOf", 7, kStandardErrors));
constexpr DispatchMap kEntityMap{u"ModelEntity", kEntityRows};

constexpr auto kEntitiesRows = MakeRows(
    Method<&IModelEntities::Item>(u"Item", kDispIdValue, automation::rows::kCollectionItem),
    Get<&IModelEntities::get_Count>(u"Count", 1, kStandardErrors),
    Method<&IModelEntities::Exists>(u"Exists", 2, kStandardErrors),
    Get<&IModelEntities::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, kStandardErrors));
constexpr DispatchMap kEntitiesMap =
    DispatchMap(u"ModelEntities", kEntitiesRows).WithDefault(kDispIdValue);

/// The name that an argument tells: a text, or an entity's.
Result ReadEntityName(const Variant& nameOrEntity, WString* name) {
  const Variant& value = nameOrEntity.Dereferenced();
  Variant text;
  if (!Failed(value.ChangeType(VT_BSTR, &text))) {
    *name = text.AsText();
    return S_OK;
  }
  Ref<IModelEntity> entity;
  const Result rc = automation::ReadObject(value, IModelEntity::kIid, entity.PutVoid());
  HV_RETURN_CODE_IF(Failed(rc) || !entity, E_INVALIDARG);
  return Failed(entity->get_Name(name)) ? E_INVALIDARG : S_OK;
}

}  // namespace

const DispatchMap& CEntityInt::Map() { return kEntityMap; }

Result CEntityInt::get_Name(WString* name) { return m_logic->GetName(name); }

Result CEntityInt::get_ModelProperties(IModelProperties** properties) {
  return WrapResult<IModelPropertyCollImpl, CModelPropertyCollInt>(
      properties, [this](auto** out) { return m_logic->GetModelProperties(out); });
}

Result CEntityInt::get_ModelReferences(IModelReferences** references) {
  return WrapResult<IModelReferenceCollImpl, CModelReferenceCollInt>(
      references, [this](auto** out) { return m_logic->GetModelReferences(out); });
}

Result CEntityInt::get_SubTypes(IModelEntities** subTypes) {
  return WrapResult<IEntityCollImpl, CEntityCollInt>(
      subTypes, [this](auto** out) { return m_logic->GetSubTypes(out); });
}

Result CEntityInt::get_SuperType(IModelEntity** superType) {
  return WrapResult<IEntityImpl, CEntityInt>(
      superType, [this](auto** out) { return m_logic->GetSuperType(out); });
}

Result CEntityInt::get_IsBaseType(std::int32_t* isBaseType) {
  return m_logic->IsBaseType(isBaseType);
}

Result CEntityInt::IsKindOf(const Variant& nameOrEntity, std::int32_t* isKindOf) try {
  HV_RETURN_IF_NULL(isKindOf);
  *isKindOf = 0;
  WString name;
  HV_RETURN_IF_FAILED(ReadEntityName(nameOrEntity, &name));
  return m_logic->IsKindOf(name, isKindOf);
}
HV_CATCH_RETURN()

const DispatchMap& CEntityCollInt::Map() { return kEntitiesMap; }

Result CEntityCollInt::Exists(const WString& name, std::int32_t* exists) {
  return TruthResult(exists, [&](bool* out) { return Logic().Exists(name, out); });
}

}  // namespace hv::vex
