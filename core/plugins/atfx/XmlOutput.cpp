// core/plugins/atfx/XmlOutput.cpp - escaping, and numbers in their shortest exact form.
#include "core/plugins/atfx/XmlOutput.h"

#include "core/store/memory/Failure.h"

#include "store/core/Exception.h"

#include <charconv>
#include <cmath>

namespace hv::vex::engine::atfx {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsXmlCharacter(char32_t c) {
  return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c != 0xFFFE && c != 0xFFFF);
}

bool IsNameStart(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' ||
         (c >= 0xC0 && c <= 0x2FF && c != 0xD7 && c != 0xF7) ||
         (c >= 0x370 && c <= 0x1FFF && c != 0x37E) || (c >= 0x3001 && c <= 0xD7FF);
}

bool IsNamePart(char16_t c) {
  return IsNameStart(c) || (c >= u'0' && c <= u'9') || c == u'-' || c == u'.' || c == 0xB7;
}

/// Takes the next character off the text; half a surrogate pair becomes the replacement.
char32_t NextCharacter(std::u16string_view text, std::size_t* at) {
  const char16_t unit = text[(*at)++];
  if (unit < 0xD800 || unit > 0xDFFF) return unit;
  if (unit > 0xDBFF || *at == text.size() || text[*at] < 0xDC00 || text[*at] > 0xDFFF) {
    return kReplacement;
  }
  return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) +
         (static_cast<char32_t>(text[(*at)++]) - 0xDC00);
}

void AppendUtf8(char32_t c, std::string* to) {
  const auto add = [to](char32_t byte) { to->push_back(static_cast<char>(byte)); };
  if (c < 0x80) {
    add(c);
  } else if (c < 0x800) {
    add(0xC0 | (c >> 6));
    add(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    add(0xE0 | (c >> 12));
    add(0x80 | ((c >> 6) & 0x3F));
    add(0x80 | (c & 0x3F));
  } else {
    add(0xF0 | (c >> 18));
    add(0x80 | ((c >> 12) & 0x3F));
    add(0x80 | ((c >> 6) & 0x3F));
    add(0x80 | (c & 0x3F));
  }
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
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCharacter(text, &at);
    if (c == U'&') {
      m_buffer += "&amp;";
    } else if (c == U'<') {
      m_buffer += "&lt;";
    } else if (c == U'>') {
      m_buffer += "&gt;";
    } else if (c == U'"' && isAttribute) {
      m_buffer += "&quot;";
    } else if (c == U'\r' || (isAttribute && (c == U'\n' || c == U'\t'))) {
      // A reader would turn the bare character into another one.
      m_buffer += "&#" + std::to_string(static_cast<unsigned>(c)) + ";";
    } else {
      AppendUtf8(IsXmlCharacter(c) ? c : kReplacement, &m_buffer);
    }
  }
  m_file.Write(m_buffer);
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
