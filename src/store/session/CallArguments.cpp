// store/session/CallArguments.cpp - variant arguments of the session's members.
#include "store/session/CallArguments.h"

#include <storefabric/IDataStoreModel.h>

namespace hv::vex {

namespace {

bool TryConvert(const Variant& value, VarType type, Variant* converted) {
  const Variant& target = value.Dereferenced();
  return !target.IsMissing() && !Failed(target.ChangeType(type, converted));
}

IUnknown* ObjectOf(const Variant& value) {
  if (value.Is(VT_DISPATCH)) return value.AsObject();
  return value.Is(VT_UNKNOWN) ? value.AsUnknown() : nullptr;
}

}  // namespace

WString TextOr(const Variant& value, std::u16string_view otherwise) {
  Variant text;
  return TryConvert(value, VT_BSTR, &text) ? text.AsText() : WString(otherwise);
}

std::int32_t NumberOr(const Variant& value, std::int32_t otherwise) {
  Variant number;
  if (!TryConvert(value, VT_I4, &number)) return otherwise;
  return static_cast<std::int32_t>(number.AsInt64());
}

Result EntityNameOf(const Variant& entity, WString* name) {
  Variant text;
  if (TryConvert(entity, VT_BSTR, &text)) {
    *name = text.AsText();
    return S_OK;
  }
  const Ref<IModelEntity> object = QueryRef<IModelEntity>(ObjectOf(entity.Dereferenced()));
  if (!object || Failed(object->get_Name(name))) return E_INVALIDARG;
  return S_OK;
}

Result OdsConformOf(const Variant& value, bool* conform) {
  *conform = false;
  Variant truth;
  if (TryConvert(value, VT_BOOL, &truth)) {
    *conform = truth.AsInt64() != 0;
    return S_OK;
  }
  const Variant& target = value.Dereferenced();
  const bool unset = target.IsEmpty() || target.Is(VT_NULL) || target.Is(VT_ERROR);
  return unset ? S_OK : E_INVALIDARG;
}

WString FileNameOf(std::u16string_view parameters) {
  constexpr std::u16string_view kBegin = u"<filename>";
  constexpr std::u16string_view kEnd = u"</filename>";
  const std::size_t begin = parameters.find(kBegin);
  if (begin == parameters.npos) return {};
  parameters.remove_prefix(begin + kBegin.size());
  WString name(parameters.substr(0, parameters.find(kEnd)));
  name.ReplaceAll(u"&lt;", u"<");
  name.ReplaceAll(u"&gt;", u">");
  name.ReplaceAll(u"&amp;", u"&");
  return name;
}

}  // namespace hv::vex
