// storefabric/Object.h - automation objects in C++ as scripts see them: by the names of their
// members, with UTF-8 texts, and with exceptions for failures.
//
// Everything here is inline over the library's functions and costs what a call by name costs. Code
// that must not throw, or that makes many calls, uses the typed interfaces (IDataStore.h and its
// neighbours), whose operations return codes.
//
//     const hv::Object environment = hv::Object::Create("VEX.DataStoreEnvironment");
//     const hv::Object store = environment.Call("ConnectDataStore", "bench");
//     for (const hv::Object& test : store.Call("RootElements")) {
//       std::cout << test.Text("Name") << "\n";
//     }
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <storefabric/StoreFabric.h>

namespace hv {

/// A call that failed. `what` is the message that people read, in UTF-8.
class CallError : public std::runtime_error {
 public:
  CallError(const std::string& message, std::int32_t number, Result code)
      : std::runtime_error(message), m_number(number), m_code(code) {}

  /// The message's number; 0 for a call that couldn't be made: an unknown member, wrong arguments.
  [[nodiscard]] std::int32_t Number() const { return m_number; }
  [[nodiscard]] Result Code() const { return m_code; }

 private:
  std::int32_t m_number;
  Result m_code;
};

/// Holds a reference on an automation object, or nothing. Copies hold the same object. Every
/// operation but the tests raises `CallError`, also if there is no object.
///
/// Arguments are texts (UTF-8, or UTF-16 as they are), numbers, truth values, objects and variants;
/// null pointers to objects are null. Members are found without regard to case. A property that
/// gives a collection takes the index of an item: `x.Call("Properties", "Id")`.
class Object {
 public:
  class Iterator;

  Object() = default;
  explicit Object(IDispatch* object) : m_object(Ref<IDispatch>::Share(object)) {}

  /// Makes an object of a class: "VEX.DataStoreEnvironment".
  [[nodiscard]] static Object Create(std::string_view progId) {
    Object made;
    const Result rc = CreateStoreFabricObject(cor::FromUtf8(progId).c_str(), made.m_object.Put());
    if (Failed(rc)) Refuse("there is no class", progId, rc);
    return made;
  }

  explicit operator bool() const { return static_cast<bool>(m_object); }
  [[nodiscard]] IDispatch* Get() const { return m_object.Get(); }

  /// Calls a method or reads a property, and gives the value as it stands.
  template <class... Args>
  Variant Value(std::string_view member, const Args&... args) const {
    const std::array<Variant, sizeof...(Args)> values{ToVariant(args)...};
    return Invoke(member, CallKind::Method | CallKind::Get, values);
  }
  /// As `Value`, for members that give an object, which may be null, or nothing.
  template <class... Args>
  Object Call(std::string_view member, const Args&... args) const {  // NOLINT: may be unwanted
    return FromVariant(Value(member, args...));
  }
  /// As `Value`, as a text in UTF-8; empty for a null value.
  template <class... Args>
  [[nodiscard]] std::string Text(std::string_view member, const Args&... args) const {
    const Variant value = Value(member, args...);
    if (value.Is(VT_BSTR)) return cor::ToUtf8(value.AsText());
    if (value.Is(VT_NULL) || value.IsEmpty()) return {};
    return cor::ToUtf8(Converted(member, value, VT_BSTR).AsText());
  }
  /// As `Value`, as a number; a text is read as one.
  template <class... Args>
  [[nodiscard]] double Number(std::string_view member, const Args&... args) const {
    const Variant value = Value(member, args...);
    return value.Is(VT_R8) ? value.AsDouble() : Converted(member, value, VT_R8).AsDouble();
  }
  /// As `Number`, rounded to an integer.
  template <class... Args>
  [[nodiscard]] std::int64_t Integer(std::string_view member, const Args&... args) const {
    return Converted(member, Value(member, args...), VT_I8).AsInt64();
  }
  /// Writes a property. The new value comes last, indexes before it.
  template <class... Args>
  void Set(std::string_view property, const Args&... indexesAndValue) const {
    const std::array<Variant, sizeof...(Args)> values{ToVariant(indexesAndValue)...};
    Invoke(property, CallKind::Put, values);
  }

  /// The items of a collection.
  [[nodiscard]] Iterator begin() const;
  [[nodiscard]] static std::default_sentinel_t end() { return {}; }

 private:
  friend class Iterator;

  [[noreturn]] static void Refuse(const std::string& reason, std::string_view name, Result rc) {
    throw CallError(reason + " \"" + std::string(name) + "\"", 0, rc);
  }

  /// The name of a member as dispatch takes it. Names are short and plain, so that most need no
  /// memory of their own.
  class MemberName {
   public:
    explicit MemberName(std::string_view name) {
      if (name.size() > m_units.size()) {
        m_long = cor::FromUtf8(name);
        m_name = m_long;
        return;
      }
      for (std::size_t i = 0; i < name.size(); ++i) {
        m_units[i] = static_cast<unsigned char>(name[i]);  // no member has other letters
      }
      m_name = std::u16string_view(m_units.data(), name.size());
    }
    MemberName(const MemberName&) = delete;
    MemberName& operator=(const MemberName&) = delete;
    [[nodiscard]] std::u16string_view View() const { return m_name; }

   private:
    std::array<char16_t, 40> m_units;
    WString m_long;
    std::u16string_view m_name;
  };

  static Variant ToVariant(const Variant& value) { return value; }
  static Variant ToVariant(const Object& value) { return Variant::Object(value.Get()); }
  static Variant ToVariant(std::nullptr_t) { return Variant::Null(); }
  template <class T>
  static Variant ToVariant(const T& value) {
    if constexpr (std::is_same_v<T, bool>) {
      return Variant::Bool(value);
    } else if constexpr (std::integral<T>) {
      const auto number = static_cast<std::int64_t>(value);
      const bool isShort = number == static_cast<std::int32_t>(number);
      return isShort ? Variant::I4(static_cast<std::int32_t>(number)) : Variant::I8(number);
    } else if constexpr (std::floating_point<T>) {
      return Variant::R8(value);
    } else if constexpr (std::is_convertible_v<T, std::string_view>) {
      return Variant::Text(cor::FromUtf8(value));
    } else if constexpr (std::is_convertible_v<T, std::u16string_view>) {
      return Variant::Text(std::u16string_view(value));
    } else {
      return Variant::Object(value);
    }
  }

  static Object FromVariant(const Variant& value) {
    if (value.Is(VT_DISPATCH)) return Object(value.AsObject());
    Object object;
    if (value.Is(VT_UNKNOWN)) object.m_object = QueryRef<IDispatch>(value.AsUnknown());
    return object;
  }

  static Variant Converted(std::string_view member, const Variant& value, VarType type) {
    Variant converted;
    const Result rc = value.ChangeType(type, &converted);
    if (Failed(rc)) Refuse("another type of value than asked for from", member, rc);
    return converted;
  }

  Variant Invoke(std::string_view member, CallKind kinds, std::span<const Variant> args) const {
    if (!m_object) Refuse("there is no object to ask for", member, E_POINTER);
    std::int32_t id = kDispIdUnknown;
    Variant result;
    ErrorInfo error;
    Result rc = m_object->GetIdOfName(MemberName(member).View(), &id);
    if (Failed(rc)) Refuse("the object has no member", member, rc);
    rc = m_object->Invoke(id, kinds, args, &result, &error);
    if (rc == DISP_E_EXCEPTION) throw CallError(cor::ToUtf8(error.text), error.number, error.code);
    if (Failed(rc)) Refuse("wrong arguments for", member, rc);
    return result;
  }

  Ref<IDispatch> m_object;
};

/// Walks a collection once.
class Object::Iterator {
 public:
  using value_type = Object;
  using difference_type = std::ptrdiff_t;

  explicit Iterator(Ref<IVariantIterator> items) : m_items(std::move(items)) { ++*this; }

  const Object& operator*() const { return m_item; }
  const Object* operator->() const { return &m_item; }
  Iterator& operator++() {
    Variant item;
    if (m_items->Next(&item) == S_OK) {
      m_item = FromVariant(item);
    } else {
      m_items.Reset();
    }
    return *this;
  }
  void operator++(int) { ++*this; }
  friend bool operator==(const Iterator& iterator, std::default_sentinel_t) {
    return !iterator.m_items;
  }

 private:
  Ref<IVariantIterator> m_items;
  Object m_item;
};

inline Object::Iterator Object::begin() const {
  const Variant value = Value("_NewEnum");
  Ref<IVariantIterator> items;
  if (value.Is(VT_UNKNOWN)) items = QueryRef<IVariantIterator>(value.AsUnknown());
  if (!items) Refuse("there is nothing to walk behind", "_NewEnum", E_NOINTERFACE);
  return Iterator(std::move(items));
}

}  // namespace hv
