// store/elements/StoreElementWithBulkImpl.cpp - the element of a column of measured values.
#include "store/elements/StoreElementWithBulkImpl.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "elements/ValueVariant.h"
#include "store/core/IInstList.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kBulkType = u"StoreElement<WithBulk>";

/// How a column keeps its values: the numbers of ASAM ODS.
enum Representation : std::int64_t {
  kImplicitConstant = 1,
  kImplicitLinear = 2,
  kImplicitSaw = 3,
  kExternal = 7,
  kRawLinearExternal = 8,
  kRawPolynomialExternal = 9,
  kRawLinearCalibratedExternal = 11,
};

constexpr std::pair<std::u16string_view, enumDataType> kQuantityTypes[] = {
    {u"DT_STRING", eString}, {u"DT_SHORT", eI16},  {u"DT_LONG", eI32},  {u"DT_LONGLONG", eI64},
    {u"DT_FLOAT", eR32},     {u"DT_DOUBLE", eR64}, {u"DT_BYTE", eByte}, {u"DT_DATE", eTime},
};

constexpr auto& kFailures = easyImpl::kElementFailures;
constexpr CodeRow kWriteFailures[] = {{errc::kWriteProtected, E_ACCESSDENIED},
                                      {errc::kInstanceGone, VEX_E_OBJECT_GONE}};

/// The types whose values can be reached by index.
constexpr bool IsColumnType(std::int32_t type) {
  switch (type) {
    case eI8:
    case eI16:
    case eI32:
    case eI64:
    case eByte:
    case eR32:
    case eR64:
    case eString:
    case eTime:
      return true;
    default:
      return false;
  }
}

/// A value of an instance; null if the model doesn't have it.
Ref<IAttribute> ValueOf(IInstance& instance, std::u16string_view name) {
  return Ref<IAttribute>::Adopt(instance.GetAttributeValue(name));
}

/// The first instance that a reference leads to; null if there is none.
Ref<IInstance> FirstTarget(IInstance& instance, std::u16string_view reference) {
  const Ref<IAttribute> value = ValueOf(instance, reference);
  const auto targets = Ref<IInstIterator>::Adopt(value ? value->GetIterator() : nullptr);
  return Ref<IInstance>::Adopt(targets ? targets->Next() : nullptr);
}

}  // namespace

void* CStoreElementWithBulkImpl::FindFace(const Iid& iid) {
  if (iid == IStoreElementBulkImpl::kIid) return static_cast<IStoreElementBulkImpl*>(this);
  return CStoreElementImpl::FindFace(iid);
}

Result CStoreElementWithBulkImpl::IsKindOf(std::u16string_view type, std::int32_t* isKindOf) {
  HV_RETURN_IF_FAILED(CStoreElementImpl::IsKindOf(type, isKindOf));
  if (type == kBulkType) *isKindOf = 1;
  return S_OK;
}

Result CStoreElementWithBulkImpl::Refresh() {
  HV_RETURN_IF_FAILED(CStoreElementImpl::Refresh());
  m_values.Reset();
  m_dataType = eNoType;
  m_size = 0;
  m_isRead = false;
  return S_OK;
}

Result CStoreElementWithBulkImpl::GetBulkInterface(IStoreElementBulkImpl** bulk) {
  HV_RETURN_IF_NULL(bulk);
  *bulk = Ref<IStoreElementBulkImpl>::Share(this).Detach();
  return S_OK;
}

std::int32_t CStoreElementWithBulkImpl::ReadSize() const {
  const Ref<IAttribute> kept = ValueOf(Instance(), u"sequence_representation");
  switch (kept && kept->GetCount() == 1 ? kept->GetInteger(0) : 0) {
    case kImplicitConstant:
      return 1;
    case kImplicitLinear:
      return 2;
    case kImplicitSaw:
      return 3;
    case kExternal:
    case kRawLinearExternal:
    case kRawPolynomialExternal:
    case kRawLinearCalibratedExternal:
      return 0;
    default:
      break;
  }
  const Ref<IInstance> submatrix = FirstTarget(Instance(), u"submatrix");
  const Ref<IAttribute> rows = submatrix ? ValueOf(*submatrix, u"number_of_rows") : nullptr;
  const std::int64_t count = rows && rows->GetCount() > 0 ? rows->GetInteger(0) : 0;
  return static_cast<std::int32_t>(
      std::clamp<std::int64_t>(count, 0, std::numeric_limits<std::int32_t>::max()));
}

Result CStoreElementWithBulkImpl::ReadBulk() {
  HV_RETURN_IF_FAILED(CheckValid());
  if (m_isRead) return S_OK;
  std::int32_t size = ReadSize();
  Ref<IAttribute> values = size > 0 ? ValueOf(Instance(), u"values") : nullptr;
  const bool hasValues = values && values->GetCount() > 0;
  const std::int32_t type = values ? values->GetDataType() : eNoType;
  // Without values the type is only what the quantity suggests, and may still be chosen.
  const bool isUnsettled = values && !hasValues && type == eNoType;
  if (!isUnsettled && !IsColumnType(type)) {
    values.Reset();
    size = 0;
  }
  if (hasValues && m_dataType == eNoType) m_dataType = static_cast<enumDataType>(type);
  m_values = std::move(values);
  m_size = size;
  m_isRead = true;
  return S_OK;
}

Result CStoreElementWithBulkImpl::GetSize(std::int32_t* size) try {
  HV_RETURN_IF_NULL(size);
  *size = 0;
  HV_RETURN_IF_FAILED(ReadBulk());
  *size = m_size;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

// --- values -----------------------------------------------------------------------------------

Result CStoreElementWithBulkImpl::GetValue(std::int32_t index, Variant* value) try {
  HV_RETURN_IF_NULL(value);
  value->Clear();
  HV_RETURN_IF_FAILED(ReadBulk());
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  const auto at = static_cast<std::uint64_t>(index);
  if (at >= m_values->GetCount()) {
    *value = Variant::Null();  // promised by the submatrix, but not written yet
    return S_OK;
  }
  return easyImpl::ReadValue(*m_values, m_values->GetDataType(), at, value);
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementWithBulkImpl::SetValue(std::int32_t index, const Variant& value) try {
  HV_RETURN_IF_FAILED(ReadBulk());
  HV_RETURN_CODE_IF(!IsIndex(index), E_INVALIDARG);
  HV_RETURN_CODE_IF(m_values->IsWritable() == 0, E_ACCESSDENIED);
  enumDataType type = eNoType;
  HV_RETURN_IF_FAILED(GetDataType(&type));
  if (m_values->GetCount() == 0 && type != m_values->GetDataType()) m_values->SetDataType(type);
  const Result rc = easyImpl::WriteValue(*m_values, type, static_cast<std::uint64_t>(index), value);
  if (!Failed(rc)) m_dataType = type;
  return rc;
}
HV_CATCH_RETURN_AS(E_FAIL, kWriteFailures)

// --- flags ------------------------------------------------------------------------------------

Result CStoreElementWithBulkImpl::GetFlag(std::int32_t index, std::int32_t* flag) try {
  HV_RETURN_IF_NULL(flag);
  *flag = 0;
  HV_RETURN_IF_FAILED(CheckValid());
  const Ref<IAttribute> shared = ValueOf(Instance(), u"global_flag");
  if (shared && shared->GetCount() > 0) {
    *flag = static_cast<std::int32_t>(shared->GetInteger(0));
    return S_OK;
  }
  const Ref<IAttribute> flags = ValueOf(Instance(), u"flags");
  const auto at = static_cast<std::uint64_t>(index);
  HV_RETURN_CODE_IF(index < 0 || !flags || at >= flags->GetCount(), E_INVALIDARG);
  *flag = static_cast<std::int32_t>(flags->GetInteger(at));
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementWithBulkImpl::SetFlag(std::int32_t index, std::int32_t flag) try {
  HV_RETURN_IF_FAILED(CheckValid());
  const Ref<IAttribute> flags = ValueOf(Instance(), u"flags");
  const auto at = static_cast<std::uint64_t>(index);
  HV_RETURN_CODE_IF(index < 0 || !flags || at >= flags->GetCount(), E_INVALIDARG);
  flags->SetInteger(at, flag);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

// --- type -------------------------------------------------------------------------------------

Result CStoreElementWithBulkImpl::ReadQuantityType(enumDataType* dataType) const {
  *dataType = eNoType;
  const Ref<IInstance> quantity = FirstTarget(Instance(), u"measurement_quantity");
  const Ref<IAttribute> named = quantity ? ValueOf(*quantity, u"datatype") : nullptr;
  if (!named || named->GetCount() == 0) return S_OK;
  WString name;
  named->GetStringValue(name);
  for (const auto& [known, type] : kQuantityTypes) {
    if (!name.EqualsExact(known)) continue;
    *dataType = type;
    return S_OK;
  }
  return VEX_E_BAD_QUANTITY_TYPE;
}

Result CStoreElementWithBulkImpl::GetDataType(enumDataType* dataType) try {
  HV_RETURN_IF_NULL(dataType);
  *dataType = eNoType;
  HV_RETURN_IF_FAILED(ReadBulk());
  if (m_dataType == eNoType) return ReadQuantityType(dataType);
  *dataType = m_dataType;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

Result CStoreElementWithBulkImpl::SetDataType(std::int32_t dataType) try {
  HV_RETURN_CODE_IF(!IsColumnType(dataType), E_INVALIDARG);
  HV_RETURN_IF_FAILED(ReadBulk());
  HV_RETURN_CODE_IF(m_dataType != eNoType, VEX_E_TYPE_ALREADY_SET);
  m_dataType = static_cast<enumDataType>(dataType);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kFailures)

// --- channels ---------------------------------------------------------------------------------

Result CStoreElementWithBulkImpl::SetValues(IUnknown* /*source*/) {
  HV_RETURN_IF_FAILED(CheckValid());
  // No object of this library has the face of a data channel yet, so no source can be one. Copying
  // starts here once there is such a face to ask `source` for.
  return E_INVALIDARG;
}

}  // namespace hv::vex
