// cor/osdep/OSException.h - failures of the operating system and of the configuration store.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cor/Exceptions.h"

namespace hv::cor::osdep {

/// A failed call of the operating system.
class OSException : public exception::Exception {
 public:
  /// \param text  what went wrong, in UTF-8; empty if nothing is known.
  /// \param file  a literal of the form "cor/osdep/path".
  OSException(std::uint32_t number, std::string_view text, const char* file, int line)
      : m_number(number), m_text(text), m_file(file), m_line(line) {}

  /// The text, or "Unknown error".
  [[nodiscard]] const char* what() const noexcept override;
  [[nodiscard]] std::uint32_t Number() const noexcept { return m_number; }
  [[nodiscard]] const char* File() const noexcept { return m_file; }
  [[nodiscard]] int Line() const noexcept { return m_line; }

 private:
  std::uint32_t m_number;
  std::string m_text;
  const char* m_file;
  int m_line;
};

// The error numbers that this layer raises. Hosts see them: frozen.
inline constexpr std::uint32_t kErrorFileNotFound = 2;  ///< no such key or file
inline constexpr std::uint32_t kErrorAccessDenied = 5;  ///< a write to a key opened for reading
inline constexpr std::uint32_t kErrorBadNetPath = 53;   ///< a configuration store of another host
inline constexpr std::uint32_t kErrorInvalidParameter = 87;  ///< an unknown code page or root
inline constexpr std::uint32_t kErrorModuleNotFound = 126;   ///< a library that can't be loaded
inline constexpr std::uint32_t kErrorProcNotFound = 127;     ///< a library without the symbol
inline constexpr std::uint32_t kErrorCantRead = 1012;        ///< a store file that can't be read
inline constexpr std::uint32_t kErrorCantWrite = 1013;       ///< a store file that can't be written
inline constexpr std::uint32_t kErrorCorrupt = 1015;         ///< a malformed store file

/// A failure with one of the numbers above.
class WinError final : public OSException {
 public:
  /// With the text that belongs to the number.
  WinError(std::uint32_t number, const char* file, int line);
  /// With a text that says more.
  WinError(std::uint32_t number, std::string_view text, const char* file, int line)
      : OSException(number, text, file, line) {}
};

}  // namespace hv::cor::osdep
