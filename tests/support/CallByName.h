// tests/support/CallByName.h - calling automation objects the way a script does: by name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <storefabric/Dispatch.h>
#include <storefabric/Ref.h>

#include <gtest/gtest.h>

namespace hv::test {

/// What a call by name gave.
struct Answer {
  Result rc = S_OK;
  Variant value;
  ErrorInfo error;

  [[nodiscard]] IDispatch* Object() const {
    return value.Is(VT_DISPATCH) ? value.AsObject() : nullptr;
  }
  [[nodiscard]] std::string Text() const {
    Variant text;
    return Failed(value.ChangeType(VT_BSTR, &text)) ? "(no text)" : cor::ToUtf8(text.AsText());
  }
  /// The value's type and text, or the error: "8 Alps", "343 This property is no base property.".
  [[nodiscard]] std::string Shown() const {
    if (rc == DISP_E_EXCEPTION) {
      return std::to_string(error.number) + " " + cor::ToUtf8(error.text);
    }
    if (Failed(rc)) return "refused";
    if (value.Is(VT_DISPATCH)) return value.AsObject() ? "object" : "no object";
    if (value.IsEmpty()) return "empty";
    if (value.Is(VT_NULL)) return "null";
    return Text();
  }
};

inline Answer Call(IDispatch* object, std::u16string_view name, CallKind kinds,
                   std::vector<Variant> args) {
  Answer answer;
  std::int32_t id = kDispIdUnknown;
  answer.rc = object ? object->GetIdOfName(name, &id) : E_POINTER;
  if (!Failed(answer.rc)) {
    answer.rc = object->Invoke(id, kinds, args, &answer.value, &answer.error);
  }
  return answer;
}

/// `object.Name` or `object.Name(args)`, as a script that can't know which of the two it is.
template <class... Args>
Answer Get(IDispatch* object, std::u16string_view name, Args... args) {
  return Call(object, name, CallKind::Method | CallKind::Get, {std::move(args)...});
}

/// `object.Name(indexes) = value`; the value is the last argument.
template <class... Args>
Answer Put(IDispatch* object, std::u16string_view name, Args... args) {
  return Call(object, name, CallKind::Put, {std::move(args)...});
}

/// `object(key)`: the default member.
inline Answer Index(IDispatch* object, Variant key) {
  Answer answer;
  const std::vector<Variant> args{std::move(key)};
  answer.rc = object ? object->Invoke(kDispIdValue, CallKind::Method | CallKind::Get, args,
                                      &answer.value, &answer.error)
                     : E_POINTER;
  return answer;
}

/// The names of a collection's members, in the order of its enumerator, with blanks between them.
inline std::string NamesOf(IDispatch* collection) {
  std::string names;
  const Answer enumerator = Get(collection, u"_NewEnum");
  const auto iterator = enumerator.value.Is(VT_UNKNOWN)
                            ? QueryRef<IVariantIterator>(enumerator.value.AsUnknown())
                            : Ref<IVariantIterator>();
  if (!iterator) return "(no enumerator)";
  Variant item;
  while (iterator->Next(&item) == S_OK) {
    names += (names.empty() ? "" : " ") + Get(item.AsObject(), u"Name").Text();
  }
  return names;
}

}  // namespace hv::test
