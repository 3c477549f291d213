// storefabric/Ref.h - the one smart pointer over counted interfaces.
// The only place, beside the counted base class, where AddRef and Release are written.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <storefabric/Unknown.h>

namespace hv {

/// Owns one reference on a counted object, or nothing. Since counts start at 1, taking over an
/// existing reference (`Adopt`) and adding one (`Share`) are different verbs and must be written.
template <class T>
class Ref {
 public:
  constexpr Ref() = default;
  constexpr Ref(std::nullptr_t) {}
  Ref(const Ref& other) : m_ptr(other.m_ptr) { Acquire(); }
  Ref(Ref&& other) noexcept : m_ptr(std::exchange(other.m_ptr, nullptr)) {}
  template <class U>
  requires(std::is_convertible_v<U*, T*>) Ref(const Ref<U>& other) : m_ptr(other.Get()) {
    Acquire();
  }
  template <class U>
  requires(std::is_convertible_v<U*, T*>) Ref(Ref<U>&& other)
  noexcept : m_ptr(other.Detach()) {}
  ~Ref() { Reset(); }

  Ref& operator=(const Ref& other) {
    Ref(other).Swap(*this);
    return *this;
  }
  Ref& operator=(Ref&& other) noexcept {
    Ref(std::move(other)).Swap(*this);
    return *this;
  }

  /// Takes over the reference that the caller holds: what `new` gives and what an operation
  /// returns.
  [[nodiscard]] static Ref Adopt(T* ptr) {
    Ref ref;
    ref.m_ptr = ptr;
    return ref;
  }
  /// Adds a reference to an object that somebody else keeps alive.
  [[nodiscard]] static Ref Share(T* ptr) {
    Ref ref;
    ref.m_ptr = ptr;
    ref.Acquire();
    return ref;
  }

  [[nodiscard]] T* Get() const { return m_ptr; }
  T* operator->() const { return m_ptr; }
  T& operator*() const { return *m_ptr; }
  explicit operator bool() const { return m_ptr != nullptr; }

  /// Lets go, and gives the address for an out parameter to fill with a reference.
  [[nodiscard]] T** Put() {
    Reset();
    return &m_ptr;
  }
  /// `Put` for `QueryInterface` and its like.
  [[nodiscard]] void** PutVoid() { return reinterpret_cast<void**>(Put()); }
  /// Hands the reference to the caller.
  [[nodiscard]] T* Detach() { return std::exchange(m_ptr, nullptr); }
  /// Serves an out parameter: null gives E_POINTER, otherwise `*out` gets a reference of its own.
  template <class U>
  Result CopyTo(U** out) const {
    if (!out) return E_POINTER;
    if (m_ptr) m_ptr->AddRef();
    *out = m_ptr;
    return S_OK;
  }
  /// Asks the object for another face. Null if there is no object or it has no such face.
  template <class U>
  [[nodiscard]] Ref<U> As() const {
    void* face = nullptr;
    if (!m_ptr || Failed(m_ptr->QueryInterface(U::kIid, &face))) return {};
    return Ref<U>::Adopt(static_cast<U*>(face));
  }
  void Reset() {
    if (T* old = std::exchange(m_ptr, nullptr)) old->Release();
  }
  void Swap(Ref& other) noexcept { std::swap(m_ptr, other.m_ptr); }

  friend bool operator==(const Ref& a, const Ref& b) { return a.m_ptr == b.m_ptr; }
  friend bool operator==(const Ref& a, std::nullptr_t) { return a.m_ptr == nullptr; }

 private:
  void Acquire() {
    if (m_ptr) m_ptr->AddRef();
  }
  T* m_ptr = nullptr;
};

/// Asks an object for another face; null if it has none.
template <class U, class T>
[[nodiscard]] Ref<U> QueryRef(T* object) {
  void* face = nullptr;
  if (!object || Failed(object->QueryInterface(U::kIid, &face))) return {};
  return Ref<U>::Adopt(static_cast<U*>(face));
}

/// Makes a counted object and takes over its first reference.
template <class T, class... Args>
[[nodiscard]] Ref<T> MakeRef(Args&&... args) {
  return Ref<T>::Adopt(new T(std::forward<Args>(args)...));
}

/// A way back to an owner, without a reference. The owner clears it before it dies.
template <class T>
class BackRef {
 public:
  constexpr BackRef() = default;
  explicit constexpr BackRef(T* owner) : m_ptr(owner) {}
  [[nodiscard]] T* Get() const { return m_ptr; }
  T* operator->() const { return m_ptr; }
  T& operator*() const { return *m_ptr; }
  explicit operator bool() const { return m_ptr != nullptr; }
  void Set(T* owner) { m_ptr = owner; }
  void Clear() { m_ptr = nullptr; }

 private:
  T* m_ptr = nullptr;
};

}  // namespace hv
