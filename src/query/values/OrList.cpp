// query/values/OrList.cpp - cutting, joining and escaping lists of values.
#include "query/values/OrList.h"

#include <algorithm>

namespace hv::vex {

namespace {

constexpr std::u16string_view kOr = u" OR ";
constexpr std::u16string_view kTrimSet = u" \n\r\t";

/// True if a blank, `mark` (which may be empty), OR in any case and a blank stand at `pos`.
bool IsOrAt(std::u16string_view text, std::size_t pos, std::u16string_view mark) {
  const std::u16string_view at = text.substr(pos, 4 + mark.size());
  if (at.size() != 4 + mark.size() || at.front() != u' ' || at.substr(1, mark.size()) != mark) {
    return false;
  }
  const std::u16string_view word = at.substr(1 + mark.size());
  return (word[0] | 0x20) == u'o' && (word[1] | 0x20) == u'r' && word[2] == u' ';
}

/// Exchanges what stands before each OR between blanks. The blank behind one is looked at again: it
/// may be the blank before the next, and a list is cut there as well.
WString ReplaceMarks(std::u16string_view text, std::u16string_view from, std::u16string_view to) {
  WString result;
  result.reserve(text.size());
  std::size_t pos = 0;
  while (pos < text.size()) {
    if (IsOrAt(text, pos, from)) {
      result += u" ";
      result += to;
      result += text.substr(pos + 1 + from.size(), 2);
      pos += 3 + from.size();
    } else {
      result += text[pos++];
    }
  }
  return result;
}

template <class Take>
void ForEachPiece(std::u16string_view text, Take take) {
  for (;;) {
    const std::size_t end = text.find(kOr);
    take(text.substr(0, end));
    if (end == text.npos) return;
    text.remove_prefix(end + kOr.size());
  }
}

WString ReadPiece(std::u16string_view piece, bool unescape, bool trim) {
  if (trim) {
    const std::size_t first = std::min(piece.find_first_not_of(kTrimSet), piece.size());
    piece = piece.substr(first, piece.find_last_not_of(kTrimSet) + 1 - first);
  }
  return unescape ? UnescapeValue(piece) : WString(piece);
}

}  // namespace

bool HasOr(std::u16string_view text) {
  for (std::size_t pos = 0; pos < text.size(); ++pos) {
    if (IsOrAt(text, pos, {})) return true;
  }
  return false;
}

std::vector<WString> SplitValues(std::u16string_view text, bool unescape, bool trim) {
  std::vector<WString> values;
  ForEachPiece(
      text, [&](std::u16string_view piece) { values.push_back(ReadPiece(piece, unescape, trim)); });
  return values;
}

std::set<WString, cor::NoCaseLess> SplitUniqueValues(std::u16string_view text, bool unescape,
                                                     bool trim) {
  std::set<WString, cor::NoCaseLess> values;
  ForEachPiece(text,
               [&](std::u16string_view piece) { values.insert(ReadPiece(piece, unescape, trim)); });
  return values;
}

WString EscapeValue(std::u16string_view value) { return ReplaceMarks(value, {}, u"\\"); }

WString UnescapeValue(std::u16string_view text) { return ReplaceMarks(text, u"\\", {}); }

WString AppendValue(std::u16string_view list, std::u16string_view value) {
  WString result(list);
  if (!list.empty()) {
    // A blank behind the word doesn't stand for the one between it and the value.
    result += list.ends_with(u" OR") || list.ends_with(kOr) ? std::u16string_view(u" ") : kOr;
  }
  result += EscapeValue(value);
  return result;
}

WString ShowEndBlanks(std::u16string_view text, bool* changed) {
  WString result;
  bool isFirst = true;
  ForEachPiece(text, [&](std::u16string_view piece) {
    if (piece.empty()) return;
    if (!isFirst) result += kOr;
    isFirst = false;
    const std::size_t lead = std::min(piece.find_first_not_of(u' '), piece.size());
    const std::size_t end = std::max(lead, piece.find_last_not_of(u' ') + 1);
    result.append(lead, kBullet);
    result += piece.substr(lead, end - lead);
    result.append(piece.size() - end, kBullet);
  });
  if (changed) *changed = !result.EqualsExact(text);
  return result;
}

WString HideEndBlanks(std::u16string_view text) {
  WString result(text);
  result.ReplaceAll({&kBullet, 1}, u" ");
  return result;
}

}  // namespace hv::vex
