// cor/SafeInteger.h - integer arithmetic that raises instead of overflowing.
#pragma once

#include <concepts>
#include <utility>

#include "cor/Exceptions.h"

namespace hv::cor {

/// An integer whose `+`, `-` and `*` raise `BoundExceeded` on overflow, and whose conversions raise
/// `OutOfRange` if the other type can't hold the value. Sizes of allocations go through it.
template <std::integral T>
class SafeInteger {
 public:
  constexpr SafeInteger() = default;
  /// Takes any integer; raises `OutOfRange` if `T` can't hold it.
  template <std::integral U>
  constexpr SafeInteger(U value) : m_value(Narrow<T>(value)) {}

  [[nodiscard]] constexpr T Value() const { return m_value; }
  /// The value in another integer type; raises `OutOfRange` if it doesn't fit.
  template <std::integral U>
  [[nodiscard]] constexpr U As() const {
    return Narrow<U>(m_value);
  }

  constexpr SafeInteger& operator+=(SafeInteger other) {
    T result{};
    if (__builtin_add_overflow(m_value, other.m_value, &result)) throw exception::BoundExceeded();
    m_value = result;
    return *this;
  }
  constexpr SafeInteger& operator-=(SafeInteger other) {
    T result{};
    if (__builtin_sub_overflow(m_value, other.m_value, &result)) throw exception::BoundExceeded();
    m_value = result;
    return *this;
  }
  constexpr SafeInteger& operator*=(SafeInteger other) {
    T result{};
    if (__builtin_mul_overflow(m_value, other.m_value, &result)) throw exception::BoundExceeded();
    m_value = result;
    return *this;
  }
  friend constexpr SafeInteger operator+(SafeInteger a, SafeInteger b) { return a += b; }
  friend constexpr SafeInteger operator-(SafeInteger a, SafeInteger b) { return a -= b; }
  friend constexpr SafeInteger operator*(SafeInteger a, SafeInteger b) { return a *= b; }
  friend constexpr auto operator<=>(SafeInteger, SafeInteger) = default;

 private:
  template <class To, class From>
  static constexpr To Narrow(From value) {
    // Plain characters and bool can't be asked of std::in_range; a round trip and the sign tell the
    // same.
    const To narrowed = static_cast<To>(value);
    if (static_cast<From>(narrowed) != value || (narrowed < To{}) != (value < From{})) {
      throw exception::OutOfRange();
    }
    return narrowed;
  }

  T m_value{};
};

}  // namespace hv::cor
