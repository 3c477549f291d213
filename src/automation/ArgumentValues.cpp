// automation/ArgumentValues.cpp - reading arguments out of variants.
#include "automation/ArgumentValues.h"

namespace hv::automation {

namespace {

// Most scripts pass the very type that a member takes, so the conversion is the exception.
const Variant* Converted(const Variant& value, VarType type, Variant& scratch, Result& rc) {
  if (value.Is(type)) return &value;
  rc = value.ChangeType(type, &scratch);
  return Failed(rc) ? nullptr : &scratch;
}

}  // namespace

Result ReadBool(const Variant& value, bool* out) {
  Variant scratch;
  Result rc = S_OK;
  const Variant* read = Converted(value, VT_BOOL, scratch, rc);
  if (read) *out = read->AsInt64() != 0;
  return rc;
}

Result ReadSigned(const Variant& value, VarType type, std::int64_t* out) {
  Variant scratch;
  Result rc = S_OK;
  const Variant* read = Converted(value, type, scratch, rc);
  if (read) *out = read->AsInt64();
  return rc;
}

Result ReadUnsigned(const Variant& value, VarType type, std::uint64_t* out) {
  Variant scratch;
  Result rc = S_OK;
  const Variant* read = Converted(value, type, scratch, rc);
  if (read) *out = read->AsUInt64();
  return rc;
}

Result ReadReal(const Variant& value, VarType type, double* out) {
  Variant scratch;
  Result rc = S_OK;
  const Variant* read = Converted(value, type, scratch, rc);
  if (read) *out = read->AsDouble();
  return rc;
}

Result ReadObject(const Variant& value, const Iid& iid, void** out) {
  IUnknown* object = nullptr;
  switch (value.Type()) {
    case VT_EMPTY:
    case VT_NULL:
      break;
    case VT_DISPATCH:
      object = value.AsObject();
      break;
    case VT_UNKNOWN:
      object = value.AsUnknown();
      break;
    default:
      return DISP_E_TYPEMISMATCH;
  }
  if (!object) {
    *out = nullptr;
    return S_OK;
  }
  return Failed(object->QueryInterface(iid, out)) ? DISP_E_TYPEMISMATCH : S_OK;
}

Variant ObjectResult(IUnknown* object) {
  if (!object) return Variant::Object(nullptr);
  if (const Ref<IDispatch> lateBound = QueryRef<IDispatch>(object)) {
    return Variant::Object(lateBound.Get());
  }
  return Variant::Unknown(object);
}

}  // namespace hv::automation
