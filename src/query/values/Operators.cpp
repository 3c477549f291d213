// query/values/Operators.cpp - one table of operators for readers and writers.
#include "query/values/Operators.h"

#include "automation/ErrCode.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace hv::vex {

namespace {

struct OperatorRow {
  std::u16string_view symbol;
  std::u16string_view fileName;
  std::int32_t displayText;          ///< its number, or 0: none
  std::u16string_view dateFileName;  ///< of the display name
};

constexpr OperatorRow kOperators[] = {
    {u"=", u"equal", 5021, u"day"}, {u"<>", u"not_equal", 0, {}},
    {u"<", u"less", 0, {}},         {u"<=", u"less_than", 5016, u"before"},
    {u">", u"greater", 0, {}},      {u">=", u"greater_than", 5017, u"after"},
    {u"#", u"pre", 5013, u"pre"},
};

constexpr auto kSymbols = [] {
  std::array<std::u16string_view, std::size(kOperators)> symbols;
  std::transform(std::begin(kOperators), std::end(kOperators), symbols.begin(),
                 [](const OperatorRow& row) { return row.symbol; });
  return symbols;
}();

bool IsSameText(std::u16string_view a, std::u16string_view b) {
  return cor::CompareNoCase(a, b) == 0;
}

template <class Test>
const OperatorRow* FindRow(Test test) {
  const auto found = std::find_if(std::begin(kOperators), std::end(kOperators), test);
  return found == std::end(kOperators) ? nullptr : found;
}

const OperatorRow* FindSymbol(std::u16string_view symbol) {
  return FindRow([&](const OperatorRow& row) { return row.symbol == symbol; });
}

const OperatorRow* FindDisplay(std::u16string_view text, const StringTable& texts) {
  return FindRow([&](const OperatorRow& row) {
    const WString* const display = row.displayText == 0 ? nullptr : texts.Find(row.displayText);
    return display && IsSameText(*display, text);
  });
}

}  // namespace

std::span<const std::u16string_view> OperatorSymbols() { return kSymbols; }

WString OperatorToFileName(std::u16string_view symbolOrName, const StringTable& texts) {
  if (const OperatorRow* const row = FindDisplay(symbolOrName, texts)) return row->dateFileName;
  if (const OperatorRow* const row = FindSymbol(symbolOrName)) return row->fileName;
  throw com::cErrCode::eBadQueryContent;
}

WString FileNameToOperator(std::u16string_view fileName, const StringTable& texts) {
  const OperatorRow* row = FindRow([&](const OperatorRow& r) {
    return !fileName.empty() && IsSameText(r.dateFileName, fileName);
  });
  if (row) return texts.LoadString(row->displayText);
  row = FindRow([&](const OperatorRow& r) { return IsSameText(r.fileName, fileName); });
  if (row) return row->symbol;
  throw com::cErrCode::eBadQueryContent;
}

WString OperatorToDisplay(std::u16string_view symbol, const StringTable& texts) {
  const OperatorRow* const row = FindSymbol(symbol);
  return row && row->displayText != 0 ? texts.LoadString(row->displayText) : WString(symbol);
}

WString DisplayToOperator(std::u16string_view text, const StringTable& texts) {
  const OperatorRow* const row = FindDisplay(text, texts);
  return row ? row->symbol : text;
}

bool IsDateOperatorName(std::u16string_view text, const StringTable& texts) {
  return FindDisplay(text, texts) != nullptr;
}

bool IsSymbolOperator(std::u16string_view text) { return FindSymbol(text) != nullptr; }

bool IsRelativeOperator(std::u16string_view text, const StringTable& texts) {
  return DisplayToOperator(text, texts).EqualsExact(u"#");
}

bool IsStringOperator(std::u16string_view text) { return text == u"=" || text == u"<>"; }

Result CheckOperatorForOr(std::u16string_view symbol, bool storeAllowsOr) {
  if (!storeAllowsOr) return VEX_E_OR_UNSUPPORTED;
  return symbol == u"=" ? S_OK : VEX_E_OR_OPERATOR;
}

}  // namespace hv::vex
