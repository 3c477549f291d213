// store/model/ModelReferenceInt.cpp - an entity's references as hosts see them.
#include "store/model/ModelReferenceInt.h"

#include "automation/rows/Collections.h"
#include "store/model/EntityInt.h"
#include "store/model/ModelRows.h"

namespace hv::vex {

using automation::DispatchMap;
using automation::Get;
using automation::MakeRows;
using automation::Method;

namespace {

constexpr auto kReferenceRows =
    MakeRows(Get<&IModelReference::get_Name>(u"Name", 1, kStandardErrors),
             Get<&IModelReference::get_EntityType>(u"EntityType", 2, kStandardErrors),
             Get<&IModelReference::get_BaseName>(u"BaseName", 3, kStandardErrors),
             Get<&IModelReference::get_MinOccur>(u"MinOccur", 4, kStandardErrors),
             Get<&IModelReference::get_MaxOccur>(u"MaxOccur", 5, kStandardErrors),
             Get<&IModelReference::get_Inverse>(u"Inverse", 6, kStandardErrors));
constexpr DispatchMap kReferenceMap{u"ModelReference", kReferenceRows};

constexpr auto kReferencesRows = MakeRows(
    Method<&IModelReferences::Item>(u"Item", kDispIdValue, automation::rows::kCollectionItem),
    Get<&IModelReferences::get_Count>(u"Count", 1, kStandardErrors),
    Method<&IModelReferences::Exists>(u"Exists", 2, automation::rows::kModelReferencesExists),
    Get<&IModelReferences::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, kStandardErrors));
constexpr DispatchMap kReferencesMap =
    DispatchMap(u"ModelReferences", kReferencesRows).WithDefault(kDispIdValue);

}  // namespace

const DispatchMap& CModelReferenceInt::Map() { return kReferenceMap; }

Result CModelReferenceInt::get_Name(WString* name) { return m_logic->GetName(name); }

Result CModelReferenceInt::get_EntityType(IModelEntity** entity) {
  return WrapResult<IEntityImpl, CEntityInt>(
      entity, [this](auto** out) { return m_logic->GetEntityType(out); });
}

Result CModelReferenceInt::get_BaseName(WString* baseName) {
  return m_logic->GetBaseName(baseName);
}

Result CModelReferenceInt::get_MinOccur(std::int32_t* minOccur) {
  return m_logic->GetMinOccur(minOccur);
}

Result CModelReferenceInt::get_MaxOccur(std::int32_t* maxOccur) {
  return m_logic->GetMaxOccur(maxOccur);
}

Result CModelReferenceInt::get_Inverse(IModelReference** inverse) {
  return WrapResult<IModelReferenceImpl, CModelReferenceInt>(
      inverse, [this](auto** out) { return m_logic->GetInverse(out); });
}

const DispatchMap& CModelReferenceCollInt::Map() { return kReferencesMap; }

Result CModelReferenceCollInt::Exists(const WString& name, std::int32_t* exists) {
  return TruthResult(exists, [&](bool* out) { return Logic().Exists(name, out); });
}

}  // namespace hv::vex
