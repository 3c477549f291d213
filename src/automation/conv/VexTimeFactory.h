// automation/conv/VexTimeFactory.h - the object by which scripts make times.
#pragma once

#include <storefabric/IVexTimeFactory.h>

#include "automation/DispatchImpl.h"

namespace hv::vex {

/// What "VEX.TimeFactory" stands for.
class CVexTimeFactoryInt final
    : public automation::DispatchImpl<CVexTimeFactoryInt, IVexTimeFactory> {
 public:
  CVexTimeFactoryInt() = default;

  static const automation::DispatchMap& Map();
  /// Makes the object. E_POINTER; E_OUTOFMEMORY, with `*out` null.
  static Result Create(IVexTimeFactory** out);
  static Result CreateObject(IDispatch** out);

  // IVexTimeFactory
  Result CreateTime(std::int16_t year, std::int16_t month, std::int16_t day, std::int16_t hour,
                    std::int16_t minute, std::int16_t second, std::int16_t millisecond,
                    std::int16_t microsecond, std::int16_t nanosecond,
                    IVexTimeDisp** time) override;

 private:
  ~CVexTimeFactoryInt() override = default;
};

}  // namespace hv::vex
