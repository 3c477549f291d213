// query/logic/LogicRepair.h - what is done to a logic text as text: spelling, normal form, repair.
// None of these checks the text; whatever it is, they end.
#pragma once

#include <string_view>

#include <storefabric/WString.h>

namespace hv::vex {

/// Which keyword `FoldKeywords` spells in upper case.
enum class FoldedKeyword { And = 0, Or = 1 };

/// Spells a keyword between blanks in upper case: " or ", " Or ", " oR " become " OR ".
void FoldKeywords(WString& text, FoldedKeyword which);

/// The normal form: AND binds tighter than OR, and parentheses say so. "C1 AND C2 OR C3" becomes
/// "(C1 AND C2) OR C3". Changes nothing unless the text holds both " AND " and " OR ".
void AddParentheses(WString& text);

/// Takes a name out of the text, with the connective that joined it and the parentheses that held
/// nothing else. "C1" leaves "C10" alone.
void RemoveFromLogic(std::u16string_view name, WString& text);

}  // namespace hv::vex
