// elements/VEXElementInt.cpp - elements and lists of them as hosts see them.
#include "elements/VEXElementInt.h"

#include "automation/Guards.h"
#include "automation/rows/Collections.h"
#include "automation/rows/GenericElements.h"
#include "elements/PropertyInt.h"

namespace hv::vex::easyImpl {

namespace rows = automation::rows;
using automation::DispatchMap;
using automation::Errors;
using automation::Get;
using automation::MakeRows;
using automation::Method;
using automation::Put;

namespace {

/// The standard rows alone.
constexpr auto kStandard = Errors(u"");

constexpr auto kElementRows = MakeRows(
    Get<&IVEXElement::get_Instance>(u"Instance", 1, kStandard),
    Get<&IVEXElement::get_Path>(u"Path", 2, kStandard),
    Method<&IVEXElement::IsKindOf>(u"IsKindOf", 3, kStandard),
    Get<&IVEXElement::get_Properties>(u"Properties", 4, kStandard),
    Get<&IVEXElement::get_Name>(u"Name", 5, kStandard),
    Put<&IVEXElement::put_Name>(u"Name", 5, rows::kVexElementPutName),
    Get<&IVEXElement::get_TransportDataCollection>(u"TransportDataCollection", 6, kStandard),
    Get<&IVEXElement::get_Children>(u"Children", 7, kStandard),
    Get<&IVEXElement::get_Type>(u"Type", 8, kStandard),
    Get<&IVEXElementEx::get_DisplayName>(u"DisplayName", 9, kStandard),
    Get<&IVEXElementEx::get_DisplayType>(u"DisplayType", 10, kStandard),
    Get<&IVEXElementEx_1_9::get_Parent>(u"Parent", 11, kStandard),
    Method<&IVEXElementEx_1_9::Refresh>(u"Refresh", 12, kStandard));
constexpr DispatchMap kElementMap{u"Element", kElementRows};

constexpr auto kElementsRows = MakeRows(
    Method<&IVEXElements::Item>(u"Item", kDispIdValue, rows::kCollectionItem),
    Method<&IVEXElements::Add>(u"Add", 1, rows::kVexElementsAdd),
    Method<&IVEXElements::Remove>(u"Remove", 2, rows::kVexElementsRemove),
    Get<&IVEXElements::get_Count>(u"Count", 3, rows::kElementsCount),
    Get<&IVEXElements::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, rows::kElementsNewEnum),
    Method<&IVEXElements::RemoveAll>(u"RemoveAll", 4, rows::kVexElementsRemoveAll),
    Get<&IVEXElements::get_TransportDataCollection>(u"TransportDataCollection", 5, kStandard),
    Get<&IVEXElements::get_IsIncomplete>(u"IsIncomplete", 6, kStandard),
    Get<&IVEXElements::get_MaxCount>(u"MaxCount", 7, kStandard),
    Put<&IVEXElements::put_MaxCount>(u"MaxCount", 7, kStandard),
    Method<&IVEXElements::Sort>(u"Sort", 8, rows::kVexElementsSort).Optional(2));
constexpr DispatchMap kElementsMap =
    DispatchMap(u"Elements", kElementsRows).WithDefault(kDispIdValue);

}  // namespace

const DispatchMap& CVEXElementInt::Map() { return kElementMap; }

Result CVEXElementInt::get_Instance(IUnknown** instance) { return m_logic->GetInstance(instance); }
Result CVEXElementInt::get_Path(WString* path) { return m_logic->GetPath(path); }

Result CVEXElementInt::IsKindOf(const WString& type, std::int32_t* isKindOf) {
  return m_logic->IsKindOf(type, isKindOf);
}

Result CVEXElementInt::get_Properties(IProperties** properties) {
  return WrapResult<IPropertyCollectionImpl, CPropertiesInt>(
      properties, [this](auto** out) { return m_logic->GetProperties(out); });
}

Result CVEXElementInt::get_Name(WString* name) { return m_logic->GetName(name); }
Result CVEXElementInt::put_Name(const WString& name) { return m_logic->SetName(name); }

Result CVEXElementInt::get_TransportDataCollection(IDispatch** collection) {
  return m_logic->GetTransportData(collection);
}

Result CVEXElementInt::get_Children(IVEXElements** children) {
  return WrapResult<IVEXElementsImpl, CVEXElementsInt>(
      children, [this](auto** out) { return m_logic->GetChildren(out); });
}

Result CVEXElementInt::get_Type(WString* type) { return m_logic->GetType(type); }
Result CVEXElementInt::get_DisplayName(WString* name) { return m_logic->GetDisplayName(name); }
Result CVEXElementInt::get_DisplayType(WString* type) { return m_logic->GetDisplayType(type); }

Result CVEXElementInt::get_Parent(IVEXElement** parent) {
  return WrapResult<IVEXElementImpl, CVEXElementInt>(
      parent, [this](auto** out) { return m_logic->GetParent(out); });
}

Result CVEXElementInt::Refresh() { return m_logic->Refresh(); }

const DispatchMap& CVEXElementsInt::Map() { return kElementsMap; }

Result CVEXElementsInt::Add(IUnknown* instance, IVEXElement** element) {
  return WrapResult<IVEXElementImpl, CVEXElementInt>(
      element, [&](auto** out) { return Logic().Add(instance, out); });
}

Result CVEXElementsInt::Remove(std::int32_t index) { return Logic().RemoveAt(index); }

Result CVEXElementsInt::RemoveAll() { return Logic().Clear(); }

Result CVEXElementsInt::get_TransportDataCollection(IDispatch** collection) {
  return Logic().GetTransportData(collection);
}

Result CVEXElementsInt::get_IsIncomplete(std::int32_t* isIncomplete) {
  return Logic().GetIsIncomplete(isIncomplete);
}

Result CVEXElementsInt::get_MaxCount(std::int32_t* maxCount) {
  return Logic().GetMaxCount(maxCount);
}

Result CVEXElementsInt::put_MaxCount(std::int32_t maxCount) {
  return Logic().SetMaxCount(maxCount);
}

Result CVEXElementsInt::Sort(const Variant& property, const Variant& ascending) {
  return SortElements(Logic(), property, ascending);
}

Result SortElements(IVEXElementsImpl& elements, const Variant& property, const Variant& ascending) {
  bool isAscending = true;
  if (const Variant& order = ascending.Dereferenced(); !order.IsMissing()) {
    Variant truth;
    HV_RETURN_CODE_IF(Failed(order.ChangeType(VT_BOOL, &truth)), DISP_E_TYPEMISMATCH);
    isAscending = truth.AsInt64() != 0;
  }
  const Variant& name = property.Dereferenced();
  if (name.IsMissing()) return elements.SortByName(isAscending);
  HV_RETURN_CODE_IF(!name.Is(VT_BSTR) || name.AsText().empty(), DISP_E_TYPEMISMATCH);
  return elements.SortByProperty(name.AsText(), isAscending);
}

}  // namespace hv::vex::easyImpl
