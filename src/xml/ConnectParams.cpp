// xml/ConnectParams.cpp - writing tags of connection parameters, and forgetting passwords.
#include "xml/ConnectParams.h"

#include "xml/Escape.h"
#include "xml/TagCursor.h"

#include <unicode/uchar.h>

namespace hv::xml {

namespace {

/// As the lenient reader of 32-bit numbers sees it: blanks, a sign, then digits of any script.
bool IsNonZeroNumber(std::u16string_view text) {
  while (!text.empty() && text.front() != 0x85 && u_isUWhiteSpace(text.front())) {
    text.remove_prefix(1);
  }
  if (!text.empty() && (text.front() == u'-' || text.front() == u'+')) text.remove_prefix(1);
  for (const char16_t unit : text) {
    const int digit = u_charDigitValue(unit);
    if (digit < 0) return false;
    if (digit > 0) return true;
  }
  return false;
}

bool KeepsPassword(const ConnectParams& parameters) {
  AttributeList attributes;
  if (!TagCursor(parameters, false, true).FindTag(u"pwd", nullptr, &attributes)) return false;
  const auto found = attributes.find(u"s");
  return found != attributes.end() && IsNonZeroNumber(found->second);
}

}  // namespace

void AppendTag(ConnectParams& parameters, std::u16string_view tagName, std::u16string_view value,
               std::u16string_view attributes) {
  parameters += u"<";
  parameters += tagName;
  if (!attributes.empty()) {
    parameters += u" ";
    parameters += attributes;
  }
  parameters += u">";
  parameters += value;
  parameters += u"</";
  parameters += tagName;
  parameters += u">";
}

void AppendTextTag(ConnectParams& parameters, std::u16string_view tagName,
                   std::u16string_view text) {
  WString escaped;
  AppendEscaped(escaped, text, u"&<>");
  AppendTag(parameters, tagName, escaped);
}

void AppendFilenameTag(ConnectParams& parameters, std::u16string_view fileName) {
  AppendTextTag(parameters, u"filename", fileName);
}

WString StripPassword(const ConnectParams& parameters) {
  WString copy = parameters;
  if (KeepsPassword(parameters)) return copy;
  // Plain searches, so that a password goes also from a text that the cursor can't walk through.
  const std::u16string_view text = parameters;
  const std::size_t open = text.find(u"<pwd");
  if (open == text.npos) return copy;
  const std::size_t close = text.find(u'>', open);
  if (close == text.npos) return copy;
  const std::size_t behind = close + 1;
  const std::size_t end = text.find(u"</pwd>", behind);
  if (end == text.npos) return copy;
  copy.Replace(behind, end - behind, {});
  constexpr std::size_t kEndTagLength = 6;
  constexpr std::size_t kAttributeLength = 6;  // the blank, e, =, and one character in quotes
  const std::size_t attribute = copy.view().find(u" e=", open);
  if (attribute < behind + kEndTagLength) copy.Replace(attribute, kAttributeLength, {});
  return copy;
}

}  // namespace hv::xml
