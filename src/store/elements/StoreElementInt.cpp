// store/elements/StoreElementInt.cpp - an element of a store as hosts see it.
#include "store/elements/StoreElementInt.h"

#include "automation/rows/StoreElement.h"
#include "automation/rows/StoreElementWithBulk.h"

namespace hv::vex {

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

/// Callers by name have the members of a store where the generic face has one of that name too.
template <class Out>
using Getter = Result (IStoreElement::*)(Out**);
constexpr Getter<IStoreProperties> kProperties = &IStoreElement::get_Properties;
constexpr Getter<IStoreElements> kChildren = &IStoreElement::get_Children;
constexpr Getter<IStoreElement> kParent = &IStoreElement::get_Parent;

constexpr auto kElementRows = MakeRows(
    Get<&IStoreElement::get_Instance>(u"Instance", 1, kStandard),
    Get<&IStoreElement::get_Path>(u"Path", 2, kStandard),
    Method<&IStoreElement::IsKindOf>(u"IsKindOf", 3, kStandard),
    Get<kProperties>(u"Properties", 4, kStandard),
    Get<&IStoreElement::get_Name>(u"Name", 5, kStandard),
    Put<&IStoreElement::put_Name>(u"Name", 5, rows::kStoreElementPutName),
    Get<&IStoreElement::get_TransportDataCollection>(u"TransportDataCollection", 6, kStandard),
    Get<kChildren>(u"Children", 7, rows::kStoreElementGetChildren),
    Get<&IStoreElement::get_Type>(u"Type", 8, kStandard),
    Get<&IStoreElement::get_DisplayName>(u"DisplayName", 9, kStandard),
    Get<&IStoreElement::get_DisplayType>(u"DisplayType", 10, kStandard),
    Get<kParent>(u"Parent", 11, kStandard),
    Method<&IStoreElement::Refresh>(u"Refresh", 12, kStandard),
    Get<&IStoreElement::get_References>(u"References", 13, kStandard),
    Get<&IStoreElement::get_InstanceKey>(u"InstanceKey", 14, kStandard),
    Method<&IStoreElement::Save>(u"Save", 15, kStandard));
constexpr DispatchMap kElementMap{u"StoreElement", kElementRows};

constexpr auto kBulkRows = MakeRows(
    Get<&IStoreElementWithBulk::get_Values>(u"Values", 16, rows::kStoreElementWithBulkGetValues),
    Put<&IStoreElementWithBulk::put_Values>(u"Values", 16, rows::kStoreElementWithBulkPutValues),
    Get<&IStoreElementWithBulk::get_Size>(u"Size", 17, kStandard),
    Get<&IStoreElementWithBulk::get_DataType>(u"DataType", 18,
                                              rows::kStoreElementWithBulkGetDataType),
    Put<&IStoreElementWithBulk::put_DataType>(u"DataType", 18,
                                              rows::kStoreElementWithBulkPutDataType),
    Get<&IStoreElementWithBulk::get_Flags>(u"Flags", 19, rows::kStoreElementWithBulkGetFlags),
    Put<&IStoreElementWithBulk::put_Flags>(u"Flags", 19, rows::kStoreElementWithBulkPutFlags),
    Method<&IStoreElementWithBulk::SetValues>(u"SetValues", 20,
                                              rows::kStoreElementWithBulkSetValues));
constexpr DispatchMap kBulkMap{u"StoreElementWithBulk", kBulkRows, &kElementMap};
static_assert(automation::FitsBase(kBulkMap));

}  // namespace

const DispatchMap& CStoreElementInt::Map() { return kElementMap; }

const DispatchMap& CStoreElementWithBulkInt::Map() { return kBulkMap; }

Result CStoreElementWithBulkInt::get_Values(std::int32_t index, Variant* value) {
  return m_bulk->GetValue(index, value);
}

Result CStoreElementWithBulkInt::put_Values(std::int32_t index, const Variant& value) {
  return m_bulk->SetValue(index, value);
}

Result CStoreElementWithBulkInt::get_Size(std::int32_t* size) { return m_bulk->GetSize(size); }

Result CStoreElementWithBulkInt::get_DataType(enumDataType* dataType) {
  return m_bulk->GetDataType(dataType);
}

Result CStoreElementWithBulkInt::put_DataType(enumDataType dataType) {
  return m_bulk->SetDataType(dataType);
}

Result CStoreElementWithBulkInt::get_Flags(std::int32_t index, std::int32_t* flag) {
  return m_bulk->GetFlag(index, flag);
}

Result CStoreElementWithBulkInt::put_Flags(std::int32_t index, std::int32_t flag) {
  return m_bulk->SetFlag(index, flag);
}

Result CStoreElementWithBulkInt::SetValues(IDispatch* channel) {
  return m_bulk->SetValues(channel);
}

}  // namespace hv::vex
