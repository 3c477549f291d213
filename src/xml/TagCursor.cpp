// xml/TagCursor.cpp - finding tags by plain search, and the lenient attribute lists.
#include "xml/TagCursor.h"

#include "xml/StringTokenizer.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace hv::xml {

namespace {

constexpr std::u16string_view kBlanks = u" \t";
constexpr std::u16string_view kWhite = u" \n\r\t";
constexpr std::u16string_view kNameEnd = u" >\t\n\r";

char16_t LowerAscii(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

std::u16string_view Strip(std::u16string_view text, std::u16string_view set) {
  const std::size_t first = text.find_first_not_of(set);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(set) + 1 - first);
}

/// The tokenizer ends a value at its first white space; a quoted one goes on to its closing quote.
void TakeRestOfQuoted(StringTokenizer& tokens, char16_t quote, WString& value) {
  if (value.empty() || value[0] != quote) return;
  if (value.size() > 1 && value[value.size() - 1] == quote) return;
  const std::optional<WString> rest = tokens.NextToken({}, {&quote, 1});
  if (!rest) return;
  value += u" ";
  value += *rest;
}

}  // namespace

bool AttributeNameLess::operator()(std::u16string_view a, std::u16string_view b) const {
  return std::lexicographical_compare(
      a.begin(), a.end(), b.begin(), b.end(),
      [](char16_t x, char16_t y) { return LowerAscii(x) < LowerAscii(y); });
}

TagCursor::TagCursor(std::u16string_view text, bool autoStart, bool trimContent)
    : m_text(text), m_trimContent(trimContent) {
  if (!autoStart || NextTag()) return;
  const auto length = static_cast<std::uint32_t>(m_text.size());
  m_nextPos = m_tagStart = m_contentStart = length;
  m_tagLength = m_contentLength = 0;
}

bool TagCursor::NextTag() {
  const std::u16string_view text = m_text;
  const std::size_t open = text.find(u'<', m_nextPos);
  if (open == text.npos) return false;
  m_tagStart = static_cast<std::uint32_t>(open + 1);
  const std::size_t close = text.find(u'>', m_nextPos);
  if (close == text.npos) return false;
  m_tagLength = static_cast<std::uint32_t>(close) - m_tagStart;
  std::u16string endTag = u"</";
  endTag.append(TagName()).append(u">");
  const std::size_t end = text.find(endTag, close + 1);
  if (end == text.npos) return false;
  SetContent(close + 1, end);
  m_nextPos = static_cast<std::uint32_t>(end + endTag.size());
  return true;
}

void TagCursor::SetContent(std::size_t begin, std::size_t end) {
  if (m_trimContent) {
    const std::u16string_view text = m_text;
    begin = std::min(text.find_first_not_of(kBlanks, begin), end);
    while (end > begin && kBlanks.find(text[end - 1]) != kBlanks.npos) --end;
  }
  m_contentStart = static_cast<std::uint32_t>(begin);
  m_contentLength = static_cast<std::uint32_t>(end - begin);
}

std::u16string_view TagCursor::TagName() const {
  const std::u16string_view text = m_text;
  const std::size_t end = text.find_first_of(kNameEnd, m_tagStart);
  return end == text.npos ? std::u16string_view() : text.substr(m_tagStart, end - m_tagStart);
}

std::u16string_view TagCursor::AttributeText() const {
  const std::u16string_view text = m_text;
  const std::size_t nameEnd = text.find_first_of(u" \t>", m_tagStart);
  const std::uint32_t close = m_tagStart + m_tagLength;
  if (nameEnd == text.npos || nameEnd + 1 >= close) return {};
  return text.substr(nameEnd + 1, close - nameEnd - 1);
}

AttributeList TagCursor::GetTagAttributes() const {
  AttributeList attributes;
  StringTokenizer tokens(AttributeText());
  while (const std::optional<WString> name = tokens.NextToken(kBlanks, u"=\r\n")) {
    WString value = tokens.NextToken(u" =\t\n\r", u" \t\n\r").value_or(WString());
    TakeRestOfQuoted(tokens, u'"', value);
    TakeRestOfQuoted(tokens, u'\'', value);
    attributes.insert_or_assign(WString(Strip(*name, kWhite)),
                                WString(Strip(Strip(value, kWhite), u"\"'")));
  }
  return attributes;
}

WString TagCursor::GetTagContent() const { return m_text.Substr(m_contentStart, m_contentLength); }

bool TagCursor::FindTag(std::u16string_view tagName, WString* content,
                        AttributeList* attributes) const {
  TagCursor cursor(m_text, true, m_trimContent);
  for (;;) {
    const std::u16string_view found = cursor.TagName();
    if (found.empty()) return false;
    if (found == tagName) break;
    if (!cursor.NextTag()) return false;
  }
  if (content) *content = cursor.GetTagContent();
  if (attributes) *attributes = cursor.GetTagAttributes();
  return true;
}

}  // namespace hv::xml
