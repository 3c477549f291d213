// core/store/memory/Failure.h - throws the engine's exception with a message put together.
#pragma once

#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "store/core/Exception.h"

namespace hv::vex::engine {

inline std::u16string DecimalText(std::int64_t value) {
  char buffer[24];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  return std::u16string(buffer, end);
}

/// Throws with the parts one after the other as the message.
[[noreturn]] inline void Fail(std::int32_t code, std::initializer_list<std::u16string_view> parts) {
  std::u16string text;
  for (const std::u16string_view part : parts) text += part;
  throw Exception(code, std::u16string_view(text));
}

}  // namespace hv::vex::engine
