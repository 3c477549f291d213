// cor/Exceptions.cpp - the fixed texts of the exceptions.
#include "cor/Exceptions.h"

namespace hv::cor::exception {

const char* Exception::what() const noexcept { return "unspecified exception"; }

const char* BoundExceeded::what() const noexcept {
  return "A request was made that would exceed the bounds";
}

const char* OutOfRange::what() const noexcept { return "Out of range"; }

const char* InvalidArgument::what() const noexcept { return "Invalid argument(s)"; }

const char* InvalidLocale::what() const noexcept { return "Invalid locale"; }

const char* InvalidOperation::what() const noexcept {
  return m_text.empty() ? "Invalid operation" : m_text.c_str();
}

}  // namespace hv::cor::exception
