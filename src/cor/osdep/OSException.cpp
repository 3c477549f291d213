// cor/osdep/OSException.cpp - the texts of the error numbers.
#include "cor/osdep/OSException.h"

namespace hv::cor::osdep {

namespace {

std::string_view TextOf(std::uint32_t number) {
  switch (number) {
    case kErrorFileNotFound:
      return "Not found";
    case kErrorAccessDenied:
      return "Access denied";
    case kErrorBadNetPath:
      return "Configuration of other hosts can't be read";
    case kErrorInvalidParameter:
      return "Invalid parameter";
    case kErrorModuleNotFound:
      return "Library not found";
    case kErrorProcNotFound:
      return "Symbol not found";
    case kErrorCantRead:
      return "Configuration can't be read";
    case kErrorCantWrite:
      return "Configuration can't be written";
    case kErrorCorrupt:
      return "Configuration is malformed";
    default:
      return {};
  }
}

}  // namespace

const char* OSException::what() const noexcept {
  return m_text.empty() ? "Unknown error" : m_text.c_str();
}

WinError::WinError(std::uint32_t number, const char* file, int line)
    : OSException(number, TextOf(number), file, line) {}

}  // namespace hv::cor::osdep
