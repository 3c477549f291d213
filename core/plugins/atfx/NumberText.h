// core/plugins/atfx/NumberText.h - numbers as text: single ones, and long lists that come in
// pieces.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/model/OdsType.h"
#include "core/store/memory/InMemoryValues.h"

namespace hv::vex::engine::atfx {

/// A decimal integer, a "+" allowed, white space around it ignored; nothing for anything else.
std::optional<std::int64_t> ParseInteger(std::u16string_view text);
/// A decimal number, "NaN" or "INF" in any case. What is too small for a double becomes 0; what is
/// too large is refused.
std::optional<double> ParseReal(std::u16string_view text);
/// "true", "false", "1", "0" in any case.
std::optional<bool> ParseBoolean(std::u16string_view text);

/// Reads a blank-separated list of numbers into packed values as its text comes in, without a copy
/// of the whole text and without an allocation per number.
class NumberList {
 public:
  /// Starts a list of numbers (any Integer or Real type) that go to the end of `target`.
  void Begin(InMemoryValues& target);
  /// Takes the next piece; a number may be cut anywhere. False if something isn't a number of the
  /// type; `BadNumber` tells what.
  [[nodiscard]] bool Feed(std::u16string_view piece);
  /// Takes what is left over.
  [[nodiscard]] bool End();
  [[nodiscard]] const std::string& BadNumber() const { return m_bad; }
  /// How many numbers came in since `Begin`.
  [[nodiscard]] std::uint64_t Count() const { return m_count; }

 private:
  bool Parse(const char* begin, const char* end);
  template <class T, class Reader>
  bool ParseAs(const char* begin, const char* end, Reader read);

  InMemoryValues* m_target = nullptr;
  std::string m_buffer;  // the cut number of the last piece, then the piece
  std::string m_bad;
  std::uint64_t m_count = 0;
};

}  // namespace hv::vex::engine::atfx
