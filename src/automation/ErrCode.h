// automation/ErrCode.h - what constructors and a few helpers throw where no code can be returned.
#pragma once

#include <cstdint>

#include "store/core/Exception.h"

namespace hv::vex::com {

/// Thrown and caught by value. The numbers are frozen. Handlers ask for the values that concern
/// them and treat all others alike.
enum class HV_SEAM_TYPE cErrCode : std::int32_t {
  eTypeMismatch = 20,
  eBadQueryContent = 21,  ///< invalid content of a query, or an invalid operator name
  eBadTransportFormat = 52,
  eOutOfMemory = 81,
  eWrongClass = 85,  ///< an object isn't of the expected class
  eFailure = 150,
  eTimeout = 180,
  eAdvancedQueryFirst = 205,   ///< raised by the advanced query
  eAdvancedQuerySecond = 207,  ///< raised by the advanced query
};

}  // namespace hv::vex::com
