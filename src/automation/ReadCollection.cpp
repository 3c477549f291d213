// automation/ReadCollection.cpp - telling names from indexes.
#include "automation/ReadCollection.h"

namespace hv::automation {

Result ReadItemKey(const Variant& nameOrIndex, ItemKey* key) {
  const Variant& value = nameOrIndex.Dereferenced();
  switch (value.Type()) {
    case VT_BSTR:
      *key = {true, 0, &value.AsText()};
      return S_OK;
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_BOOL:
      break;
    default:
      return DISP_E_TYPEMISMATCH;
  }
  Variant index;
  HV_RETURN_CODE_IF(Failed(value.ChangeType(VT_I4, &index)), E_INVALIDARG);
  *key = {false, static_cast<std::int32_t>(index.AsInt64()), nullptr};
  return S_OK;
}

}  // namespace hv::automation
