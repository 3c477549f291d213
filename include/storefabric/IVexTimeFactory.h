// storefabric/IVexTimeFactory.h - the creatable object that makes times.
#pragma once

#include <cstdint>

#include <storefabric/Dispatch.h>

namespace hv::vex {

class IVexTimeDisp;

/// Makes time objects, which properties of dates take; ProgID "VEX.TimeFactory". Stateless.
class IVexTimeFactory : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVexTimeFactory");

  /// Dispatch id 1, method; a script may leave out all arguments but the year. Makes the time of
  /// calendar fields. Month and day count from 1, and 0 stands for the first; a month above 12
  /// counts as January; days, hours, minutes and seconds run over, and of the decimals of a second
  /// only what lies below a whole second stays. A year and a month that are both 0 make a bare
  /// duration.
  /// \param time  receives the object with a reference for the caller; null on failure
  /// \return S_OK; E_POINTER for a null out pointer; E_INVALIDARG for a negative field other than
  ///         the year; E_OUTOFMEMORY.
  virtual Result CreateTime(std::int16_t year, std::int16_t month, std::int16_t day,
                            std::int16_t hour, std::int16_t minute, std::int16_t second,
                            std::int16_t millisecond, std::int16_t microsecond,
                            std::int16_t nanosecond, IVexTimeDisp** time) = 0;

 protected:
  ~IVexTimeFactory() = default;
};

}  // namespace hv::vex
