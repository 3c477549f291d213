// store/elements/ReferencesInt.cpp - the references of an element as hosts see them.
#include "store/elements/ReferencesInt.h"

#include "automation/Guards.h"
#include "automation/rows/Collections.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

namespace rows = automation::rows;
using automation::DispatchMap;
using automation::Get;
using automation::MakeRows;
using automation::Method;

namespace {

/// The standard rows alone.
constexpr auto kStandard = automation::Errors(u"");

constexpr auto kReferenceRows = MakeRows(Get<&IReference::get_Name>(u"Name", 1, kStandard),
                                         Get<&IReference::get_BaseName>(u"BaseName", 2, kStandard),
                                         Get<&IReference::get_Elements>(u"Elements", 3, kStandard));
constexpr DispatchMap kReferenceMap{u"StoreReference", kReferenceRows};

constexpr auto kReferencesRows =
    MakeRows(Method<&IReferences::Item>(u"Item", kDispIdValue, rows::kCollectionItem),
             Get<&IReferences::get_Count>(u"Count", 1, kStandard),
             Get<&IReferences::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, kStandard));
constexpr DispatchMap kReferencesMap =
    DispatchMap(u"StoreReferences", kReferencesRows).WithDefault(kDispIdValue);

}  // namespace

const DispatchMap& CReferenceInt::Map() { return kReferenceMap; }

Result CReferenceInt::get_Elements(IStoreElements** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  Ref<IStoreElementsImpl> logic;
  HV_RETURN_IF_FAILED(m_logic->GetElements(logic.Put()));
  return WrapStoreElements(logic.Get(), elements);
}

const DispatchMap& CReferencesInt::Map() { return kReferencesMap; }

Result WrapReferences(IReferencesImpl* references, IReferences** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (references) {
    *out = MakeRef<CReferencesInt>(Ref<IReferencesImpl>::Share(references)).Detach();
  }
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
