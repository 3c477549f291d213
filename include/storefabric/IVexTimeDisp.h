// storefabric/IVexTimeDisp.h - a date with its time, to the nanosecond, as an automation object.
#pragma once

#include <cstdint>

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// One time value, in no time zone. The members can be called by name; their dispatch ids are in
/// the comments and frozen. `VariantDate` is the default member. A null out pointer gives
/// E_POINTER.
///
/// Writing a field keeps the other ones. A negative value gives E_INVALIDARG, save for the year. A
/// value above the range of its field isn't refused: months above 12 count as January; hours,
/// minutes and seconds run over, and so do days; of decimals of a second only what lies below a
/// whole second stays. Years beyond 16 bits read as the nearer limit.
class IVexTimeDisp : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVexTimeDisp");

  /// 1, property.
  virtual Result get_Year(std::int16_t* year) = 0;
  virtual Result put_Year(std::int16_t year) = 0;
  /// 2, property.
  virtual Result get_Month(std::int16_t* month) = 0;
  virtual Result put_Month(std::int16_t month) = 0;
  /// 3, property.
  virtual Result get_Day(std::int16_t* day) = 0;
  virtual Result put_Day(std::int16_t day) = 0;
  /// 4, property.
  virtual Result get_Hour(std::int16_t* hour) = 0;
  virtual Result put_Hour(std::int16_t hour) = 0;
  /// 5, property.
  virtual Result get_Minute(std::int16_t* minute) = 0;
  virtual Result put_Minute(std::int16_t minute) = 0;
  /// 6, property.
  virtual Result get_Second(std::int16_t* second) = 0;
  virtual Result put_Second(std::int16_t second) = 0;
  /// 7, property.
  virtual Result get_Millisecond(std::int16_t* millisecond) = 0;
  virtual Result put_Millisecond(std::int16_t millisecond) = 0;
  /// 8, property.
  virtual Result get_Microsecond(std::int16_t* microsecond) = 0;
  virtual Result put_Microsecond(std::int16_t microsecond) = 0;
  /// 9, property.
  virtual Result get_Nanosecond(std::int16_t* nanosecond) = 0;
  virtual Result put_Nanosecond(std::int16_t nanosecond) = 0;
  /// 10, property, the default member. Days since 1899-12-30 with the time of day as the part
  /// behind the point, to the millisecond.
  /// \return S_OK; E_INVALIDARG, with `*date` set all the same, for a time outside of the years 100
  ///         to 9999.
  virtual Result get_VariantDate(double* date) = 0;
  /// \return S_OK; E_INVALIDARG, with nothing changed, for a date outside of those years or a value
  ///         that isn't a number.
  virtual Result put_VariantDate(double date) = 0;

 protected:
  ~IVexTimeDisp() = default;
};

}  // namespace hv::vex
