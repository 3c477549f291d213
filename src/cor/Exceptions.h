// cor/Exceptions.h - the exceptions of the base library.
// The texts are frozen: hosts see them in messages.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace hv::cor::exception {

/// The root of the tree. `what` is a fixed text unless a class adds a detail.
class Exception : public std::exception {
 public:
  /// "unspecified exception"
  [[nodiscard]] const char* what() const noexcept override;
};

/// An allocation or an arithmetic operation beyond what a size can hold.
class BoundExceeded : public Exception {
 public:
  /// "A request was made that would exceed the bounds"
  [[nodiscard]] const char* what() const noexcept override;
};

/// A position or a conversion outside the allowed range.
class OutOfRange : public Exception {
 public:
  /// "Out of range"
  [[nodiscard]] const char* what() const noexcept override;
};

class InvalidArgument final : public Exception {
 public:
  /// "Invalid argument(s)"
  [[nodiscard]] const char* what() const noexcept override;
};

class InvalidLocale final : public Exception {
 public:
  /// "Invalid locale"
  [[nodiscard]] const char* what() const noexcept override;
};

/// An operation that the object's state doesn't allow.
class InvalidOperation final : public Exception {
 public:
  InvalidOperation() = default;
  /// \param text  replaces the fixed text.
  explicit InvalidOperation(std::string_view text) : m_text(text) {}
  /// "Invalid operation", or the text of the raising place.
  [[nodiscard]] const char* what() const noexcept override;

 private:
  std::string m_text;
};

/// A detail behind the fixed text of `Base`, and the place that raised it. `file` is a literal of
/// the form "cor/StringBase", without an extension.
template <class Base>
class WithDetail final : public Base {
 public:
  WithDetail(std::string_view detail, const char* file, int line)
      : m_text(std::string(Base().what()) + ": " + std::string(detail)),
        m_file(file),
        m_line(line) {}
  [[nodiscard]] const char* what() const noexcept override { return m_text.c_str(); }
  [[nodiscard]] const char* File() const noexcept { return m_file; }
  [[nodiscard]] int Line() const noexcept { return m_line; }

 private:
  std::string m_text;
  const char* m_file;
  int m_line;
};

using BoundExceeded2 = WithDetail<BoundExceeded>;
using OutOfRange2 = WithDetail<OutOfRange>;

}  // namespace hv::cor::exception
