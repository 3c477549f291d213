// query/conditions/LogicNames.cpp - counting names up, and joining a name to a logic text.
#include "query/conditions/LogicNames.h"

#include <algorithm>

namespace hv::vex {

namespace {

/// True if the text joins with OR and nothing else. Looks at letters, not at words: a stored logic
/// has no others.
bool IsOrChain(std::u16string_view logic) {
  // Runs over the whole logic with every condition that is added.
  const auto joinsOtherwise = [](char16_t unit) {
    switch (unit) {
      case u'A':
      case u'N':
      case u'D':
      case u'a':
      case u'n':
      case u'd':
      case u'(':
      case u')':
        return true;
      default:
        return false;
    }
  };
  return std::none_of(logic.begin(), logic.end(), joinsOtherwise) &&
         logic.find(u"OR") != logic.npos;
}

}  // namespace

bool IsLogicName(std::u16string_view name) {
  return name.size() > 1 && name[0] == kNamePrefix &&
         std::all_of(name.begin() + 1, name.end(), logic::IsDigit);
}

bool IsLesserName(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return a.size() < b.size();
  return a.size() > 1 && a.substr(1) < b.substr(1);
}

WString NextName(std::u16string_view name) {
  WString next(name);
  std::size_t pos = next.size();
  while (pos > 1 && next[pos - 1] == u'9') next[--pos] = u'0';
  if (pos > 1) {
    ++next[pos - 1];
  } else {
    next.Replace(1, 0, u"1");
  }
  return next;
}

WString ExtendLogic(std::u16string_view logic, std::u16string_view name) {
  const std::size_t last = logic.find_last_not_of(u' ');
  const auto endsIn = [&](std::u16string_view word) {
    return last != logic.npos && last >= word.size() && logic.substr(0, last + 1).ends_with(word);
  };
  const bool hasTrailingBlank = logic.ends_with(u' ');
  WString extended;
  if (endsIn(u"OR") || endsIn(u"AND")) {
    extended = logic;
    if (!hasTrailingBlank) extended += u" ";
  } else {
    extended = hasTrailingBlank ? logic.substr(0, logic.size() - 1) : logic;
    extended += IsOrChain(logic) ? u" OR " : u" AND ";
  }
  extended += name;
  return extended;
}

}  // namespace hv::vex
