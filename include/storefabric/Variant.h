// storefabric/Variant.h - the self-describing value of the automation layer.
// Type numbers are frozen: scripts and hosts see them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <storefabric/Export.h>
#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/WString.h>

namespace hv {

class IDispatch;

/// The type numbers of a variant. Only their numbers are public; not every one can be made.
enum VarType : std::uint16_t {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,    ///< 64-bit integer, the value times 10000
  VT_DATE = 7,  ///< days since 1899-12-30 as a double
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,    ///< a result code; DISP_E_PARAMNOTFOUND is the missing argument
  VT_BOOL = 11,     ///< 16 bits, -1 is true
  VT_VARIANT = 12,  ///< only with the by-reference or the array bit
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_TYPEMASK = 0x0FFF,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
};

/// A 96-bit decimal number with a scale of 0 to 28.
struct Decimal {
  std::uint64_t low = 0;
  std::uint32_t high = 0;
  std::uint8_t scale = 0;
  std::uint8_t sign = 0;  ///< 0 or 0x80
  friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// A value of one of the types above. Copies are deep for texts and arrays, counted for objects; a
/// by-reference variant borrows its target, which must outlive it.
class HV_API Variant {
 public:
  Variant() noexcept = default;
  Variant(const Variant& other);
  Variant(Variant&& other) noexcept;
  Variant& operator=(const Variant& other);
  Variant& operator=(Variant&& other) noexcept;
  ~Variant();

  /// \name Making values
  /// @{
  static Variant Null();
  static Variant Missing();  ///< the left-out argument
  static Variant Error(Result code);
  static Variant Bool(bool value);
  static Variant BoolBits(std::int16_t bits);
  static Variant I1(std::int8_t value);
  static Variant I2(std::int16_t value);
  static Variant I4(std::int32_t value);
  static Variant I8(std::int64_t value);
  static Variant UI1(std::uint8_t value);
  static Variant UI2(std::uint16_t value);
  static Variant UI4(std::uint32_t value);
  static Variant UI8(std::uint64_t value);
  static Variant Int(std::int32_t value);    ///< VT_INT
  static Variant UInt(std::uint32_t value);  ///< VT_UINT
  static Variant R4(float value);
  static Variant R8(double value);
  static Variant Cy(std::int64_t tenThousandths);
  static Variant Date(double days);
  static Variant Dec(const Decimal& value);
  static Variant Text(std::u16string_view text);
  static Variant Text(const char16_t* text);  ///< null counts as empty
  static Variant Text(const std::u16string& text) { return Text(std::u16string_view(text)); }
  static Variant Text(WString&& text);
  static Variant Object(IDispatch* object);  ///< adds a reference; null is allowed
  static Variant Unknown(IUnknown* object);  ///< adds a reference; null is allowed
  /// VT_ARRAY | VT_VARIANT, one dimension, counted from 0.
  static Variant Array(std::vector<Variant> items);
  static Variant RefTo(Variant* target);  ///< VT_BYREF | VT_VARIANT
  /// @}

  /// The type with its bits.
  [[nodiscard]] std::uint16_t Type() const { return m_type; }
  [[nodiscard]] bool Is(std::uint16_t type) const { return m_type == type; }
  [[nodiscard]] bool IsEmpty() const { return m_type == VT_EMPTY; }
  [[nodiscard]] bool IsMissing() const;

  /// \name Reading the value as it stands; the type must be the one asked for
  /// @{
  /// All signed integers, the bits of BOOL, CY, ERROR.
  [[nodiscard]] std::int64_t AsInt64() const { return m_value.i64; }
  [[nodiscard]] std::uint64_t AsUInt64() const { return m_value.u64; }  ///< all unsigned integers
  [[nodiscard]] double AsDouble() const { return m_value.r64; }         ///< R4 (widened), R8, DATE
  [[nodiscard]] const WString& AsText() const;                          ///< BSTR
  [[nodiscard]] IDispatch* AsObject() const { return m_value.dispatch; }
  [[nodiscard]] IUnknown* AsUnknown() const { return m_value.unknown; }
  [[nodiscard]] const Decimal& AsDecimal() const;
  [[nodiscard]] const std::vector<Variant>& AsArray() const;
  [[nodiscard]] std::vector<Variant>& AsArray();
  [[nodiscard]] Variant* AsReference() const { return m_value.target; }
  /// @}

  /// Follows by-reference variants to the value they refer to.
  [[nodiscard]] const Variant& Dereferenced() const;

  /// Converts into another type by the automation rules in the neutral English locale
  /// (texts of numbers and dates, rounding half to even, booleans as -1). An object gives the value
  /// of its default member. `out` may be this variant itself.
  /// \return S_OK; otherwise with `*out` untouched: DISP_E_TYPEMISMATCH if there is no such
  ///         conversion or the text doesn't fit; DISP_E_OVERFLOW for a value beyond the type;
  ///         DISP_E_BADVARTYPE for a type that isn't one, or a null object; E_INVALIDARG for an
  ///         invalid decimal, or a date beyond the calendar as a text.
  Result ChangeType(std::uint16_t type, Variant* out) const;

  void Clear();
  void Swap(Variant& other) noexcept;

 private:
  static Variant Signed(VarType type, std::int64_t value);
  static Variant Unsigned(VarType type, std::uint64_t value);
  static Variant Real(VarType type, double value);

  union Value {
    std::int64_t i64 = 0;
    std::uint64_t u64;
    double r64;
    IDispatch* dispatch;
    IUnknown* unknown;
    Variant* target;
    WString* text;                // owned
    Decimal* decimal;             // owned
    std::vector<Variant>* array;  // owned
  };
  std::uint16_t m_type = VT_EMPTY;
  Value m_value;
};

/// What a comparison of two variants says.
enum class VarOrder { Less = 0, Equal = 1, Greater = 2, Null = 3 };

/// Orders two variants by the automation rules, ignoring case of texts; numbers come before all
/// texts. `Null` if one side is VT_NULL. By-reference variants aren't followed.
/// \return S_OK; E_POINTER if `order` is null; DISP_E_TYPEMISMATCH or DISP_E_BADVARTYPE for types
/// that
///         can't be compared.
HV_API Result CompareVariants(const Variant& a, const Variant& b, VarOrder* order);

}  // namespace hv
