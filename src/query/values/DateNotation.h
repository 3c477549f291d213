// query/values/DateNotation.h - the date formats of each language, in three notations.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/WString.h>

#include "automation/StringTable.h"

namespace hv::vex {

using automation::StringTable;

/// The languages whose dates are told apart; any other code behaves as English.
enum class Language : std::uint8_t { English, German, Japanese };

/// The language that a code names: "ger", "jpn", all others.
Language LanguageOfCode(std::u16string_view code);
/// The language of a string table, whose code is text 5000.
Language LanguageOf(const StringTable& texts = StringTable::Default());

/// One format in its three notations.
struct DateNotation {
  std::u16string_view picture;   ///< "dd.MM.yyyy HH:mm:ss", for date and time controls
  std::u16string_view pattern;   ///< "DD.MM.YYYY hh:mm:ss", for the parser and printer of times
  std::u16string_view strftime;  ///< "%d.%m.%Y %H:%M:%S", for the host's format
};

/// \param isLong  with the time of day
const DateNotation& DateNotationOf(Language language, bool isLong);

/// True if a date under this operator has a time of day: ">=", "<=" and their display names,
/// without regard to case.
bool HasTimeOfDay(std::u16string_view op, const StringTable& texts = StringTable::Default());

/// The pattern of a picture; of the language's long picture if the text is empty.
WString PictureToPattern(std::u16string_view picture, Language language);
/// The pattern of a strftime form, also with the # that drops leading zeros; of the language's long
/// form if the text is empty. Other letters behind a % stay as they are.
WString StrftimeToPattern(std::u16string_view format, Language language);

}  // namespace hv::vex
