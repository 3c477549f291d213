// query/logic/LogicRepair.cpp - spelling, normal form and repair of logic texts.
#include "query/logic/LogicRepair.h"

#include "query/logic/LogicChars.h"

#include <vector>

namespace hv::vex {

namespace {

using logic::HasWordAt;
using logic::IsDigit;
using logic::IsLetter;

constexpr std::size_t kNone = std::u16string_view::npos;

std::size_t SkipBlanks(std::u16string_view text, std::size_t pos) {
  while (pos < text.size() && text[pos] == u' ') ++pos;
  return pos;
}

/// The place of the last non-blank before `pos`, or `kNone`.
std::size_t LastNonBlankBefore(std::u16string_view text, std::size_t pos) {
  return pos == 0 ? kNone : text.find_last_not_of(u' ', pos - 1);
}

bool IsAt(std::u16string_view text, std::size_t pos, char16_t unit) {
  return pos < text.size() && text[pos] == unit;
}

/// One walk over a text that gets parentheses around its runs of AND beside an OR.
class Normaliser {
 public:
  explicit Normaliser(WString& text) : m_text(text) {}

  void Run() {
    while (m_pos < m_text.size()) Step(m_text[m_pos]);
    // Parentheses that never close end here, the inner ones first.
    for (; !m_levels.empty(); m_levels.pop_back()) WrapIfMixed();
  }

 private:
  /// What was seen at one depth of parentheses since its current run began.
  struct Level {
    std::size_t start = 0;
    bool sawAnd = false;
    bool sawOr = false;
  };

  void Step(char16_t c) {
    if (IsLetter(c, u'O')) {
      StepOr();
    } else if (IsLetter(c, u'A')) {
      m_pos += HasWordAt(m_text, m_pos, u"AND") ? 3 : 1;
      m_levels.back().sawAnd = true;
    } else if (c == u'(') {
      m_levels.push_back({++m_pos});
    } else if (c == u')') {
      WrapIfMixed();
      if (m_levels.size() > 1) m_levels.pop_back();
      ++m_pos;
    } else {
      ++m_pos;
    }
  }

  void StepOr() {
    Level& level = m_levels.back();
    if (level.sawAnd) Wrap(LastNonBlankBefore(m_text, m_pos) + 1);
    m_pos = SkipBlanks(m_text, m_pos + (HasWordAt(m_text, m_pos, u"OR") ? 2 : 1));
    level = {m_pos, false, true};
  }

  void WrapIfMixed() {
    Level& level = m_levels.back();
    if (!level.sawOr || !level.sawAnd) return;
    Wrap(m_pos);
    level.sawAnd = level.sawOr = false;
  }

  void Wrap(std::size_t end) {
    m_text.Replace(end, 0, u")");
    m_text.Replace(m_levels.back().start, 0, u"(");
    m_pos += 2;
  }

  WString& m_text;
  std::vector<Level> m_levels =
      std::vector<Level>(1);  // not recursion: the depth comes from outside
  std::size_t m_pos = 0;
};

void EraseBlanksAt(WString& text, std::size_t pos) {
  text.Replace(pos, SkipBlanks(text, pos) - pos, {});
}

std::size_t EraseBlanksBefore(WString& text, std::size_t pos) {
  const std::size_t last = LastNonBlankBefore(text, pos);
  const std::size_t begin = last == kNone ? 0 : last + 1;
  text.Replace(begin, pos - begin, {});
  return begin;
}

void RemoveConnectiveAfter(WString& text, std::size_t pos) {
  EraseBlanksAt(text, pos);
  const std::size_t left = text.size() - pos;
  if (left < 2) return;
  if (HasWordAt(text, pos, u"OR")) {
    text.Replace(pos, 2, {});
  } else if (left < 3) {
    return;
  } else if (HasWordAt(text, pos, u"AND")) {
    text.Replace(pos, 3, {});
  }
  EraseBlanksAt(text, pos);
}

/// \return where `pos` is now
std::size_t RemoveConnectiveBefore(WString& text, std::size_t pos) {
  pos = EraseBlanksBefore(text, pos);
  std::size_t length = 0;
  if (pos >= 2 && HasWordAt(text, pos - 2, u"OR")) {
    length = 2;
  } else if (pos >= 3 && HasWordAt(text, pos - 3, u"AND")) {
    length = 3;
  }
  pos -= length;
  text.Replace(pos, length, {});
  return EraseBlanksBefore(text, pos);
}

/// Erases "(...)" at `open` to `close`, and every pair around it that is empty then.
/// \return the place of the erasure
std::size_t EraseEmptyParentheses(WString& text, std::size_t open, std::size_t close) {
  for (;;) {
    text.Replace(open, close + 1 - open, {});
    const std::size_t before = LastNonBlankBefore(text, open);
    const std::size_t after = SkipBlanks(text, open);
    if (before == kNone || text[before] != u'(' || !IsAt(text, after, u')')) return open;
    open = before;
    close = after;
  }
}

/// Takes out the name at `pos`. \return where the search goes on
std::size_t RemoveHit(WString& text, std::size_t pos, std::size_t length) {
  const std::size_t end = pos + length;
  const std::size_t next = SkipBlanks(text, end);
  const bool closes = IsAt(text, next, u')');
  const std::size_t before = LastNonBlankBefore(text, pos);
  bool isLast = closes || end == text.size();
  if (closes && before != kNone && text[before] == u'(') {
    pos = EraseEmptyParentheses(text, before, next);
    const std::size_t follows = SkipBlanks(text, pos);
    isLast = follows == text.size() || text[follows] == u')';
  } else {
    text.Replace(pos, length, {});
  }
  if (isLast) return RemoveConnectiveBefore(text, pos);
  RemoveConnectiveAfter(text, pos);
  return pos;
}

}  // namespace

void FoldKeywords(WString& text, FoldedKeyword which) {
  constexpr std::u16string_view kAnd[] = {u" and ", u" And ", u" ANd ", u" AnD ",
                                          u" aND ", u" anD ", u" aNd "};
  constexpr std::u16string_view kOr[] = {u" or ", u" Or ", u" oR "};
  if (which == FoldedKeyword::And) {
    for (const std::u16string_view spelling : kAnd) text.ReplaceAll(spelling, u" AND ");
  } else {
    for (const std::u16string_view spelling : kOr) text.ReplaceAll(spelling, u" OR ");
  }
}

void AddParentheses(WString& text) {
  if (text.view().find(u" AND ") == kNone || text.view().find(u" OR ") == kNone) return;
  Normaliser(text).Run();
}

void RemoveFromLogic(std::u16string_view name, WString& text) {
  text = WString(logic::Trim(text));
  if (name.empty()) return;
  std::size_t pos = 0;
  while ((pos = text.view().find(name, pos)) != kNone) {
    const std::size_t end = pos + name.size();
    if (end < text.size() && IsDigit(text[end])) {
      pos = end;  // a longer name
      continue;
    }
    pos = RemoveHit(text, pos, name.size());
    text = WString(logic::Trim(text));
  }
}

}  // namespace hv::vex
