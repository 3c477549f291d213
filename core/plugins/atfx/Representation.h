// core/plugins/atfx/Representation.h - numbers of the standard's sequence representations.
#pragma once

#include <cstdint>

namespace hv::vex::engine::atfx {

/// The representation of a column whose values lie in a file, as that of one that holds them
/// itself.
constexpr std::int64_t StoredInside(std::int64_t representation) {
  switch (representation) {
    case 7:  // external_component -> explicit
      return 0;
    case 8:  // raw_linear
      return 4;
    case 9:  // raw_polynomial
      return 5;
    case 11:  // raw_linear_calibrated
      return 10;
    case 13:  // raw_rational
      return 12;
    default:
      return representation;
  }
}

/// Constant, linear, saw: the generation parameters are all there is.
constexpr bool IsImplicit(std::int64_t representation) {
  return representation >= 1 && representation <= 3;
}

/// The stored values are raw ones, whose type the column tells itself.
constexpr bool IsRaw(std::int64_t representation) {
  const std::int64_t inside = StoredInside(representation);
  return inside == 4 || inside == 5 || inside == 10 || inside == 12;
}

}  // namespace hv::vex::engine::atfx
