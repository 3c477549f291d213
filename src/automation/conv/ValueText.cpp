// automation/conv/ValueText.cpp - variants of any type as text.
#include "automation/conv/ValueText.h"

#include <charconv>
#include <cstdint>
#include <string>

#include <storefabric/Dispatch.h>
#include <storefabric/IVexTimeDisp.h>

#include "automation/Guards.h"
#include "automation/conv/AutomationDate.h"
#include "automation/conv/VexTime.h"
#include "automation/variant/PlatformNumbers.h"

namespace hv::util::conv {

namespace {

Result TimeOfObject(IUnknown* object, TimeValue* time) {
  const auto face = QueryRef<vex::IVexTimeDisp>(object);
  HV_RETURN_CODE_IF(!face, E_INVALIDARG);
  TimeParts parts;
  HV_RETURN_IF_FAILED(vex::ReadTimeObject(*face, &parts));
  *time = TimeValue::FromParts(parts);
  return S_OK;
}

WString DecimalText(std::int64_t number) { return cor::FromUtf8(std::to_string(number)); }

}  // namespace

Result TimeOfVariant(const Variant& value, TimeValue* time) try {
  HV_RETURN_IF_NULL(time);
  const bool isReference = value.Is(VT_BYREF | VT_VARIANT) && value.AsReference();
  const Variant& source = isReference ? *value.AsReference() : value;
  switch (source.Type()) {
    case VT_DATE:
      *time = FromAutomationDate(source.AsDouble());
      return S_OK;
    case VT_DISPATCH:
      return TimeOfObject(source.AsObject(), time);
    case VT_UNKNOWN:
      return TimeOfObject(source.AsUnknown(), time);
    default:
      return E_NOTIMPL;
  }
}
HV_CATCH_RETURN()

Result TimeTextOfVariant(const Variant& value, WString* text) try {
  HV_RETURN_IF_NULL(text);
  TimeValue time;
  HV_RETURN_IF_FAILED(TimeOfVariant(value, &time));
  *text = cor::FromUtf8(time.ToText());
  return S_OK;
}
HV_CATCH_RETURN()

Result TextOfVariant(const Variant& value, WString* text) try {
  HV_RETURN_IF_NULL(text);
  const Variant& source = value.Dereferenced();
  switch (source.Type()) {
    case VT_EMPTY:
    case VT_NULL:
      text->clear();
      return S_OK;
    case VT_I2:
    case VT_I4:
      *text = DecimalText(source.AsInt64());
      return S_OK;
    case VT_UI1:
      *text = DecimalText(static_cast<std::int8_t>(source.AsUInt64()));
      return S_OK;
    case VT_R4:
    case VT_R8:
      *text = cor::FromUtf8(automation::FormatGcvt40(source.AsDouble()));
      return S_OK;
    case VT_DATE:
    case VT_DISPATCH:
      return TimeTextOfVariant(source, text);
    case VT_BSTR:
      *text = source.AsText();
      return S_OK;
    case VT_BOOL:
      *text = source.AsInt64() != 0 ? u"true" : u"false";
      return S_OK;
    default:
      return E_NOTIMPL;
  }
}
HV_CATCH_RETURN()

}  // namespace hv::util::conv
