// query/values/DateNotation.cpp - the date formats of each language, in three notations.
#include "query/values/DateNotation.h"

#include "query/values/Operators.h"

namespace hv::vex {

namespace {

// By language, then short and long.
constexpr DateNotation kNotations[3][2] = {
    {{u"MM/dd/yyyy", u"MM/DD/YYYY", u"%m/%d/%Y"},
     {u"MM/dd/yyyy HH:mm:ss", u"MM/DD/YYYY hh:mm:ss", u"%m/%d/%Y %H:%M:%S"}},
    {{u"dd.MM.yyyy", u"DD.MM.YYYY", u"%d.%m.%Y"},
     {u"dd.MM.yyyy HH:mm:ss", u"DD.MM.YYYY hh:mm:ss", u"%d.%m.%Y %H:%M:%S"}},
    {{u"yyyy/MM/dd", u"YYYY/MM/DD", u"%Y/%m/%d"},
     {u"yyyy/MM/dd HH:mm:ss", u"YYYY/MM/DD hh:mm:ss", u"%Y/%m/%d %H:%M:%S"}},
};

struct StrftimeRow {
  std::u16string_view form;
  std::u16string_view pattern;
};

constexpr StrftimeRow kStrftime[] = {
    {u"%m", u"MM"},   {u"%#m", u"M"}, {u"%d", u"DD"}, {u"%#d", u"D"},
    {u"%Y", u"YYYY"}, {u"%H", u"hh"}, {u"%#H", u"h"}, {u"%M", u"mm"},
    {u"%#M", u"m"},   {u"%S", u"ss"}, {u"%#S", u"s"},
};

}  // namespace

Language LanguageOfCode(std::u16string_view code) {
  if (cor::CompareNoCase(code, u"ger") == 0) return Language::German;
  if (cor::CompareNoCase(code, u"jpn") == 0) return Language::Japanese;
  return Language::English;
}

Language LanguageOf(const StringTable& texts) { return LanguageOfCode(texts.LoadString(5000)); }

const DateNotation& DateNotationOf(Language language, bool isLong) {
  return kNotations[static_cast<std::size_t>(language)][isLong ? 1 : 0];
}

bool HasTimeOfDay(std::u16string_view op, const StringTable& texts) {
  const WString symbol = DisplayToOperator(op, texts);
  return symbol.EqualsExact(u">=") || symbol.EqualsExact(u"<=");
}

WString PictureToPattern(std::u16string_view picture, Language language) {
  WString pattern(picture.empty() ? DateNotationOf(language, true).picture : picture);
  return pattern.ReplaceAll(u"d", u"D").ReplaceAll(u"y", u"Y").ReplaceAll(u"H", u"h");
}

WString StrftimeToPattern(std::u16string_view format, Language language) {
  WString pattern(format.empty() ? DateNotationOf(language, true).strftime : format);
  for (const StrftimeRow& row : kStrftime) pattern.ReplaceAll(row.form, row.pattern);
  return pattern;
}

}  // namespace hv::vex
