// store/properties/InstanceTypes.cpp - which types a property that is added may have.
#include "store/properties/InstanceTypes.h"

#include "store/core/Exception.h"
#include "store/core/IInstance.h"

namespace hv::vex {

namespace {

/// The wider type that exchange files know; the same type if there is none.
std::int32_t WiderType(std::int32_t type) {
  switch (type) {
    case eI8:
      return eI16;
    case eU16:
      return eI32;
    case eU32:
    case eU64:
      return eI64;
    case kTypeEnumeration:
      return eString;
    default:
      return type;
  }
}

}  // namespace

std::int32_t TypeOfVariant(const Variant& value) {
  switch (value.Type()) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_BSTR:
      return eString;
    case VT_I1:
    case VT_I2:
    case VT_BOOL:
      return eI16;
    case VT_UI1:
      return eByte;
    case VT_UI2:
    case VT_I4:
    case VT_INT:
      return eI32;
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
      return eI64;
    case VT_R4:
      return eR32;
    case VT_R8:
    case VT_DECIMAL:
      return eR64;
    case VT_DATE:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return eTime;
    default:
      return eNoType;
  }
}

void AddInstanceAttribute(IInstance& instance, std::u16string_view name, std::int32_t type) {
  const std::int32_t wider = WiderType(type);
  try {
    instance.AddInstanceAttribute(name, type);
  } catch (const Exception& exception) {
    if (exception.code != errc::kWrongType || wider == type) throw;
    instance.AddInstanceAttribute(name, wider);
  }
}

}  // namespace hv::vex
