// util/conv/TimeRecord.h - a time in broken-down form.
#pragma once

#include <cstdint>

namespace hv::util::conv {

/// What the time formats read and write. No field is checked against its range.
struct TimeRecord {
  std::int32_t year = 0;
  std::int32_t month = 0;
  std::int32_t day = 0;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  double fraction = 0;  ///< of a second, from 0 to below 1
  friend bool operator==(const TimeRecord&, const TimeRecord&) = default;
};

}  // namespace hv::util::conv
