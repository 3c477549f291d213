// query/values/Operators.h - the operators of conditions in their three forms.
// The symbol is what a condition stores and the query expression carries, the file name is what a
// query file stores, the display name is what a condition on a date shows. Display names come from
// the string table; comparing them ignores case.
#pragma once

#include <span>
#include <string_view>

#include <storefabric/Result.h>
#include <storefabric/WString.h>

#include "automation/StringTable.h"

namespace hv::vex {

using automation::StringTable;

/// The seven symbols in the order in which they are offered: = <> < <= > >= #.
std::span<const std::u16string_view> OperatorSymbols();

/// The file name of a symbol, or of a display name, which has another one: ">=" is "greater_than",
/// "Date after" is "after". "less_than" and "greater_than" do mean "or equal"; stored files depend
/// on it. Raises `com::cErrCode::eBadQueryContent` for any other text.
WString OperatorToFileName(std::u16string_view symbolOrName,
                           const StringTable& texts = StringTable::Default());
/// The symbol of a file name; for the four names of dates the display name.
/// Raises `com::cErrCode::eBadQueryContent` for any other text.
WString FileNameToOperator(std::u16string_view fileName,
                           const StringTable& texts = StringTable::Default());

/// The display name of "=", "<=", ">=" and "#"; any other text as it is.
WString OperatorToDisplay(std::u16string_view symbol,
                          const StringTable& texts = StringTable::Default());
/// The symbol of a display name; any other text as it is.
WString DisplayToOperator(std::u16string_view text,
                          const StringTable& texts = StringTable::Default());

/// True for the four display names.
bool IsDateOperatorName(std::u16string_view text,
                        const StringTable& texts = StringTable::Default());
/// True for the seven symbols.
bool IsSymbolOperator(std::u16string_view text);
/// True for "#" and its display name.
bool IsRelativeOperator(std::u16string_view text,
                        const StringTable& texts = StringTable::Default());
/// True for "=" and "<>", the operators of texts.
bool IsStringOperator(std::u16string_view text);

/// Whether several values may be joined with OR under an operator.
/// \param storeAllowsOr  false for a store without several values
/// \return S_OK; VEX_E_OR_UNSUPPORTED because of the store; VEX_E_OR_OPERATOR for anything but "="
Result CheckOperatorForOr(std::u16string_view symbol, bool storeAllowsOr = true);

}  // namespace hv::vex
