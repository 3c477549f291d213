// query/values/OrList.h - several values in one text, joined with " OR ".
// A value that itself holds the word is written with a backslash before it: "salt \OR pepper".
#pragma once

#include <set>
#include <string_view>
#include <vector>

#include <storefabric/WString.h>

namespace hv::vex {

/// True if the text holds " OR ", " or ", " Or " or " oR ".
bool HasOr(std::u16string_view text);

/// Cuts at each " OR " (in upper case). Empty pieces are kept, so an empty text gives one.
/// \param unescape  undoes the escape of each piece
/// \param trim      cuts " \n\r\t" from both ends of each piece
std::vector<WString> SplitValues(std::u16string_view text, bool unescape, bool trim);
/// The same pieces once each, sorted, without regard to case.
std::set<WString, cor::NoCaseLess> SplitUniqueValues(std::u16string_view text, bool unescape,
                                                     bool trim);

/// Puts a backslash before each OR between blanks, in any case.
WString EscapeValue(std::u16string_view value);
/// Takes the backslash from each \OR between blanks, in any case.
WString UnescapeValue(std::u16string_view text);

/// Adds a value, which is escaped, to a list. A list that ends in " OR" or " OR " takes a blank and
/// the value behind that.
WString AppendValue(std::u16string_view list, std::u16string_view value);

/// What an editor shows in place of a blank at the end of a value.
inline constexpr char16_t kBullet = 8226;

/// Replaces each blank at the ends of each value by a bullet, and drops empty values.
/// \param changed  receives whether the result differs from the text; may be null
WString ShowEndBlanks(std::u16string_view text, bool* changed);
/// The way back: every bullet is a blank again.
WString HideEndBlanks(std::u16string_view text);

}  // namespace hv::vex
