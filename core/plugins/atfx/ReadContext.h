// core/plugins/atfx/ReadContext.h - what all parts of the reader share while one file is read.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "core/plugins/atfx/Warnings.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine::atfx {

/// Reports errors and warnings with the place in the file.
class ReadContext {
 public:
  /// \param fileName  as it shall stand in messages.
  ReadContext(const xml::SaxParser& parser, std::u16string fileName)
      : m_parser(parser), m_fileName(std::move(fileName)) {}
  ReadContext(const ReadContext&) = delete;
  ReadContext& operator=(const ReadContext&) = delete;

  /// The current line; behind the end of the document the last one noted.
  [[nodiscard]] std::uint64_t Line() const {
    return std::max(m_parser.CurrentPosition().line, m_lastLine);
  }
  void NoteLine() { m_lastLine = m_parser.CurrentPosition().line; }
  /// Throws kBadFile with "FILE:LINE: reason", for the current line or the one given.
  [[noreturn]] void Refuse(std::u16string_view reason) const { RefuseAt(Line(), reason); }
  [[noreturn]] void RefuseAt(std::uint64_t line, std::u16string_view reason) const;
  /// Notes "LINE: text".
  void Warn(std::u16string_view text) { WarnAt(Line(), text); }
  void WarnAt(std::uint64_t line, std::u16string_view text);
  /// Notes something that isn't bound to a line.
  void WarnGenerally(std::u16string text) { m_warnings.Add(std::move(text)); }

  [[nodiscard]] const std::u16string& FileName() const { return m_fileName; }
  [[nodiscard]] const Warnings& AllWarnings() const { return m_warnings; }

 private:
  const xml::SaxParser& m_parser;
  std::u16string m_fileName;
  std::uint64_t m_lastLine = 1;
  Warnings m_warnings;
};

/// Puts texts together.
std::u16string Join(std::initializer_list<std::u16string_view> parts);

}  // namespace hv::vex::engine::atfx
