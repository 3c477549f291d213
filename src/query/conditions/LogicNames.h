// query/conditions/LogicNames.h - the names of conditions: making new ones, and finding them in
// logic texts.
#pragma once

#include <cstddef>
#include <string_view>

#include <storefabric/WString.h>

#include "query/logic/LogicChars.h"

namespace hv::vex {

inline constexpr char16_t kNamePrefix = u'C';

/// True for "C" and digits, the only names that a logic text can hold.
bool IsLogicName(std::u16string_view name);

/// The order of names: by length, then by what stands behind the "C", so that "C9" is less than
/// "C10".
bool IsLesserName(std::u16string_view a, std::u16string_view b);

/// The name behind a name that `IsLogicName` accepts. Counts on the text, so that no number is too
/// great: "C99" gives "C100".
WString NextName(std::u16string_view name);

/// The logic with one more name at its end: behind a connective that ends the text, with " OR " if
/// the text holds no other connective and no parentheses, with " AND " otherwise.
WString ExtendLogic(std::u16string_view logic, std::u16string_view name);

/// Calls `take(position, name)` for each name in the text, in their order. A name ends where its
/// digits end, whatever follows.
template <class Take>
void ForEachName(std::u16string_view logic, Take take) {
  for (std::size_t pos = logic.find(kNamePrefix); pos != logic.npos;
       pos = logic.find(kNamePrefix, pos)) {
    std::size_t end = pos + 1;
    while (end < logic.size() && logic::IsDigit(logic[end])) ++end;
    if (end > pos + 1) take(pos, logic.substr(pos, end - pos));
    pos = end;
  }
}

}  // namespace hv::vex
