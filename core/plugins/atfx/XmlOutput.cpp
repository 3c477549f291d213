// core/plugins/atfx/XmlOutput.cpp - tags, and numbers in their shortest exact form.
#include "core/plugins/atfx/XmlOutput.h"

#include "core/store/memory/Failure.h"

#include "store/core/Exception.h"
#include "xml/Escape.h"

#include <charconv>
#include <cmath>

namespace hv::vex::engine::atfx {

namespace {

bool IsNameStart(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' ||
         (c >= 0xC0 && c <= 0x2FF && c != 0xD7 && c != 0xF7) ||
         (c >= 0x370 && c <= 0x1FFF && c != 0x37E) || (c >= 0x3001 && c <= 0xD7FF);
}

bool IsNamePart(char16_t c) {
  return IsNameStart(c) || (c >= u'0' && c <= u'9') || c == u'-' || c == u'.' || c == 0xB7;
}

}  // namespace

bool IsXmlName(std::u16string_view text) {
  if (text.empty() || !IsNameStart(text[0])) return false;
  for (const char16_t c : text) {
    if (!IsNamePart(c)) return false;
  }
  return true;
}

void XmlOutput::BeforeContent() {
  if (m_isTagOpen) m_file.Write(">");
  m_isTagOpen = false;
}

void XmlOutput::NewLine() {
  m_file.Write("\n");
  for (std::size_t i = 0; i < m_open.size(); ++i) m_file.Write(" ");
}

void XmlOutput::Start(std::u16string_view name) {
  if (!IsXmlName(name)) {
    Fail(errc::kWriteFailed,
         {cor::FromUtf8(m_file.Path().string()), u": the name '", name, u"' can't be a tag"});
  }
  BeforeContent();
  NewLine();
  m_open.push_back(cor::ToUtf8(name));
  m_file.Write("<");
  m_file.Write(m_open.back());
  m_isTagOpen = true;
  m_hasText = false;
  m_hasNumber = false;
}

void XmlOutput::Attribute(std::string_view name, std::u16string_view value) {
  m_file.Write(" ");
  m_file.Write(name);
  m_file.Write("=\"");
  Escaped(value, true);
  m_file.Write("\"");
}

void XmlOutput::End() {
  const std::string name = std::move(m_open.back());
  m_open.pop_back();
  if (m_isTagOpen) {
    m_file.Write("/>");
  } else {
    if (!m_hasText) NewLine();
    m_file.Write("</");
    m_file.Write(name);
    m_file.Write(">");
  }
  m_isTagOpen = false;
  m_hasText = false;
  m_hasNumber = false;
}

void XmlOutput::Text(std::u16string_view text) {
  BeforeContent();
  m_hasText = true;
  Escaped(text, false);
}

void XmlOutput::Plain(std::string_view text) {
  BeforeContent();
  m_hasText = true;
  m_file.Write(text);
}

void XmlOutput::Escaped(std::u16string_view text, bool isAttribute) {
  m_buffer.clear();
  xml::AppendReadable(m_buffer, text, isAttribute);
  m_file.Write(cor::ToUtf8(m_buffer));
}

void XmlOutput::ListNumber(const char* begin, const char* end) {
  BeforeContent();
  if (m_hasNumber) m_file.Write(" ");
  m_hasNumber = true;
  m_hasText = true;
  m_file.Write(std::string_view(begin, static_cast<std::size_t>(end - begin)));
}

void XmlOutput::Integer(std::int64_t value) {
  char buffer[24];
  ListNumber(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

void XmlOutput::Real(double value, bool isSingle) {
  char buffer[40];
  if (std::isnan(value) || std::isinf(value)) {
    const std::string_view text = std::isnan(value) ? "NaN" : value < 0 ? "-INF" : "INF";
    return ListNumber(text.data(), text.data() + text.size());
  }
  char* const limit = buffer + sizeof buffer;
  const auto end = isSingle ? std::to_chars(buffer, limit, static_cast<float>(value)).ptr
                            : std::to_chars(buffer, limit, value).ptr;
  ListNumber(buffer, end);
}

void XmlOutput::Leaf(std::u16string_view name, std::u16string_view text) {
  Start(name);
  if (!text.empty()) Text(text);
  End();
}

void XmlOutput::Leaf(std::u16string_view name, std::int64_t value) {
  Start(name);
  Integer(value);
  End();
}

}  // namespace hv::vex::engine::atfx
