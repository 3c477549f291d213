// automation/StringTable.cpp - reading the embedded texts.
#include "automation/StringTable.h"

#include <algorithm>
#include <string>

#include "embedded/kEnglishTexts.h"

namespace hv::automation {
namespace {

constexpr std::string_view kEnglish{embedded::kEnglishTexts, embedded::kEnglishTextsSize};

// A faulty file stops the build here, and the compiler's message names the line in the brackets.
template <std::size_t line>
struct FaultInLine {
  static_assert(line == 0, "resources/strings/en.txt is malformed");
};
template struct FaultInLine<CheckStringTable(kEnglish).line>;

WString Unescape(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '\\') {
      c = text[++i];
      c = c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
    }
    plain += c;
  }
  return cor::FromUtf8(plain);
}

}  // namespace

const StringTable& StringTable::Default() {
  // Never freed: texts may be asked for while other modules shut down.
  static const StringTable* const table = new StringTable(*Parse(kEnglish));
  return *table;
}

const StringTable* StringTable::ForLanguage(std::string_view language) {
  return language == "en" ? &Default() : nullptr;
}

std::optional<StringTable> StringTable::Parse(std::string_view file, StringTableCheck* check) {
  const StringTableCheck outcome = CheckStringTable(file);
  if (check) *check = outcome;
  if (outcome.fault != StringTableFault::None) return std::nullopt;

  StringTable table;
  table.m_entries.reserve(outcome.entries);
  while (!file.empty()) {
    const std::size_t end = file.find('\n');
    const std::string_view line = file.substr(0, end);
    file.remove_prefix(end + 1);
    if (line.empty() || line.front() == '#') continue;
    Entry entry;
    std::size_t length = 0;
    (void)stringtable::ReadNumber(line, &entry.number, &length);
    entry.text = Unescape(line.substr(length + 1));
    table.m_entries.push_back(std::move(entry));
  }
  return table;
}

const WString* StringTable::Find(std::int32_t number) const {
  const auto found = std::lower_bound(
      m_entries.begin(), m_entries.end(), number,
      [](const Entry& entry, std::int32_t wanted) { return entry.number < wanted; });
  return found != m_entries.end() && found->number == number ? &found->text : nullptr;
}

std::optional<WString> StringTable::TryLoadString(std::int32_t number) const {
  if (const WString* text = Find(number)) return *text;
  return std::nullopt;
}

WString StringTable::LoadString(std::int32_t number) const {
  const WString* text = Find(number);
  return text ? *text : WString();
}

std::optional<WString> TryLoadString(std::int32_t number) {
  return StringTable::Default().TryLoadString(number);
}

WString LoadString(std::int32_t number) { return StringTable::Default().LoadString(number); }

}  // namespace hv::automation
