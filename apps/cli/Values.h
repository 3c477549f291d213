// apps/cli/Values.h - types and values of the engine as the program prints them.
#pragma once

#include <cstdint>
#include <string>

namespace hv::cli {

inline constexpr std::int32_t kDateType = 30;
inline constexpr std::int32_t kReferenceType = 40;
inline constexpr std::int32_t kByteStringType = 101;
inline constexpr std::int32_t kBlobType = 102;

/// The name of a type code: "short", "string" ...; the number of an unknown one.
std::string TypeName(std::int32_t code);

/// True for the type codes of whole and real numbers.
bool IsNumberType(std::int32_t code);

/// The digits of a date as people read them: "20250307143000" as "2025-03-07 14:30:00". What is
/// missing at its end is left out.
std::string ReadableDate(const std::string& digits);

}  // namespace hv::cli
