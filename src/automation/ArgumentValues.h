// automation/ArgumentValues.h - arguments and results of members, between variants and C++ types.
// What a typed member may have as parameters: bool, integers of 8 to 64 bits, float, double, enums,
// texts, variants and interface pointers; as out parameters pointers to the same.
#pragma once

#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

#include <storefabric/Dispatch.h>

namespace hv::automation {

/// \name Reading a dereferenced variant
/// By the conversion rules of the automation layer. Nothing is written on failure.
/// \return S_OK; DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, DISP_E_BADVARTYPE or E_INVALIDARG.
/// @{
Result ReadBool(const Variant& value, bool* out);
Result ReadSigned(const Variant& value, VarType type, std::int64_t* out);
Result ReadUnsigned(const Variant& value, VarType type, std::uint64_t* out);
Result ReadReal(const Variant& value, VarType type, double* out);
/// Asks an object for a face, with a reference. Empty and null give null.
/// \return S_OK; DISP_E_TYPEMISMATCH for no object or one without that face.
Result ReadObject(const Variant& value, const Iid& iid, void** out);
/// @}

/// A result that is an object of unknown kind: late-bound if it can be, null as a null object.
Variant ObjectResult(IUnknown* object);

template <class T>
constexpr VarType NumberType() {
  if constexpr (std::is_floating_point_v<T>) {
    return sizeof(T) == sizeof(float) ? VT_R4 : VT_R8;
  } else if constexpr (std::is_signed_v<T>) {
    return sizeof(T) == 1 ? VT_I1 : sizeof(T) == 2 ? VT_I2 : sizeof(T) == 4 ? VT_I4 : VT_I8;
  } else {
    return sizeof(T) == 1 ? VT_UI1 : sizeof(T) == 2 ? VT_UI2 : sizeof(T) == 4 ? VT_UI4 : VT_UI8;
  }
}

/// A pointer parameter is an out parameter unless it points to an interface.
template <class P>
inline constexpr bool kIsOutParameter =
    std::is_pointer_v<P> && !std::is_abstract_v<std::remove_pointer_t<P>>;

/// One converted argument: `Set` reads it from a variant, `Pass` gives what the member takes. Left
/// alone it stands for a left-out argument.
template <class P, class T = std::remove_cvref_t<P>>
class InputValue {
  static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>,
                "a member takes numbers, enums, texts, variants and interface pointers");

 public:
  static constexpr bool kTakesMissing = false;

  Result Set(const Variant& value) {
    if constexpr (std::is_same_v<T, bool>) {
      return ReadBool(value, &m_value);
    } else if constexpr (std::is_enum_v<T>) {
      return SetFrom<std::int64_t>(value, VT_I4, &ReadSigned);
    } else if constexpr (std::is_floating_point_v<T>) {
      return SetFrom<double>(value, NumberType<T>(), &ReadReal);
    } else if constexpr (std::is_signed_v<T>) {
      return SetFrom<std::int64_t>(value, NumberType<T>(), &ReadSigned);
    } else {
      return SetFrom<std::uint64_t>(value, NumberType<T>(), &ReadUnsigned);
    }
  }
  T Pass() const { return m_value; }

 private:
  template <class Wide>
  Result SetFrom(const Variant& value, VarType type,
                 Result (*read)(const Variant&, VarType, Wide*)) {
    Wide wide{};
    const Result rc = read(value, type, &wide);
    if (!Failed(rc)) m_value = static_cast<T>(wide);
    return rc;
  }

  T m_value{};
};

/// A text; not copied if the variant is a text already.
template <class P>
class InputValue<P, WString> {
 public:
  static constexpr bool kTakesMissing = false;

  Result Set(const Variant& value) {
    if (value.Is(VT_BSTR)) {
      m_text = &value.AsText();
      return S_OK;
    }
    const Result rc = value.ChangeType(VT_BSTR, &m_converted);
    if (!Failed(rc)) m_text = &m_converted.AsText();
    return rc;
  }
  const WString& Pass() const { return m_text ? *m_text : m_empty; }

 private:
  const WString* m_text = nullptr;
  Variant m_converted;
  WString m_empty;
};

template <class P>
class InputValue<P, std::u16string_view> : public InputValue<P, WString> {};

/// A variant goes through as it is, by-reference variants followed.
template <class P>
class InputValue<P, Variant> {
 public:
  static constexpr bool kTakesMissing = true;

  Result Set(const Variant& value) {
    m_value = &value;
    return S_OK;
  }
  const Variant& Pass() const { return m_value ? *m_value : m_missing; }

 private:
  const Variant* m_value = nullptr;
  Variant m_missing = Variant::Missing();
};

/// An object of the interface `T`, or null.
template <class P, class T>
requires(std::is_abstract_v<T>) class InputValue<P, T*> {
 public:
  static constexpr bool kTakesMissing = false;

  Result Set(const Variant& value) { return ReadObject(value, T::kIid, m_object.PutVoid()); }
  T* Pass() const { return m_object.Get(); }

 private:
  Ref<T> m_object;
};

/// One out parameter: `Put` gives what the member takes, `MoveTo` fills the result, `Clear` goes
/// back to the zero or null value.
template <class P>
class OutValue {
  using T = std::remove_pointer_t<P>;
  static_assert(std::is_arithmetic_v<T> || std::is_enum_v<T>,
                "a member gives numbers, enums, texts, variants and interface pointers");

 public:
  P Put() { return &m_value; }
  void Clear() { m_value = T{}; }
  void MoveTo(Variant& result) const {
    if constexpr (std::is_same_v<T, bool>) {
      result = Variant::Bool(m_value);
    } else if constexpr (std::is_enum_v<T>) {
      result = Variant::I4(static_cast<std::int32_t>(m_value));
    } else {
      constexpr VarType kType = NumberType<T>();
      if constexpr (kType == VT_R4) result = Variant::R4(m_value);
      if constexpr (kType == VT_R8) result = Variant::R8(m_value);
      if constexpr (kType == VT_I1) result = Variant::I1(m_value);
      if constexpr (kType == VT_I2) result = Variant::I2(m_value);
      if constexpr (kType == VT_I4) result = Variant::I4(m_value);
      if constexpr (kType == VT_I8) result = Variant::I8(m_value);
      if constexpr (kType == VT_UI1) result = Variant::UI1(m_value);
      if constexpr (kType == VT_UI2) result = Variant::UI2(m_value);
      if constexpr (kType == VT_UI4) result = Variant::UI4(m_value);
      if constexpr (kType == VT_UI8) result = Variant::UI8(m_value);
    }
  }

 private:
  T m_value{};
};

template <>
class OutValue<WString*> {
 public:
  WString* Put() { return &m_text; }
  void Clear() { m_text.clear(); }
  void MoveTo(Variant& result) { result = Variant::Text(std::move(m_text)); }

 private:
  WString m_text;
};

template <>
class OutValue<Variant*> {
 public:
  Variant* Put() { return &m_value; }
  void Clear() { m_value.Clear(); }
  void MoveTo(Variant& result) { result = std::move(m_value); }

 private:
  Variant m_value;
};

/// An object: the member gives a reference, the result keeps it.
template <class T>
class OutValue<T**> {
  static_assert(std::is_abstract_v<T>, "objects are given out by their interface");

 public:
  T** Put() { return m_object.Put(); }
  void Clear() { m_object.Reset(); }
  void MoveTo(Variant& result) const {
    if constexpr (std::is_convertible_v<T*, IDispatch*>) {
      result = Variant::Object(m_object.Get());
    } else {
      result = ObjectResult(m_object.Get());
    }
  }

 private:
  Ref<T> m_object;
};

}  // namespace hv::automation
