// automation/ErrorRows.h - which message a member raises for which result code, as data.
// The tables of the wrapper classes are in automation/rows.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <storefabric/Result.h>

namespace hv::automation {

/// Where an argument of a message comes from.
struct ErrorArg {
  enum class Source : std::uint8_t {
    None,
    Literal,       ///< `text`
    CallText,      ///< argument `index` of the call, converted to text
    CallNumber,    ///< argument `index` of the call, converted to a 32-bit integer
    CallTypeName,  ///< the script's word for the type of argument `index` of the call
    ObjectText,    ///< a text that the wrapper supplies, numbered by `index`
    ArgumentText,  ///< a text that argument `index` of the call supplies, numbered by `id`
  };
  Source source = Source::None;
  std::uint8_t index = 0;
  std::u16string_view text{};
  std::uint8_t id = 0;
};

/// The texts that wrappers supply for messages (`DispatchMap::objectText`, `IMessageTexts`).
enum class ObjectTextId : std::uint8_t {
  StoreName = 0,
  ObjectName = 1,
  QueryLogic = 2,     ///< of a query: its logic
  QueryOperator = 3,  ///< of a query: the operator that can't take several values
  LongestValue = 4,   ///< of a query: how long a value may be in its store
};

constexpr ErrorArg Literal(std::u16string_view text) {
  return {ErrorArg::Source::Literal, 0, text};
}
/// The argument must be an object with the face `IMessageTexts`; otherwise the text is empty.
constexpr ErrorArg ArgumentText(std::uint8_t index, ObjectTextId id) {
  return {ErrorArg::Source::ArgumentText, index, {}, static_cast<std::uint8_t>(id)};
}
constexpr ErrorArg CallText(std::uint8_t index) { return {ErrorArg::Source::CallText, index, {}}; }
constexpr ErrorArg CallNumber(std::uint8_t index) {
  return {ErrorArg::Source::CallNumber, index, {}};
}
constexpr ErrorArg CallTypeName(std::uint8_t index) {
  return {ErrorArg::Source::CallTypeName, index, {}};
}
constexpr ErrorArg ObjectText(ObjectTextId id) {
  return {ErrorArg::Source::ObjectText, static_cast<std::uint8_t>(id), {}};
}

/// One line: a result code, the message that it raises, and the message's arguments in the order in
/// which the formatter takes them.
struct ErrorRow {
  static constexpr std::size_t kMaxArgs = 3;

  Result code = S_OK;
  std::int32_t number = 0;        ///< what a script sees as the error number
  std::int32_t textNumber = 0;    ///< whose text is shown; equal to `number` but for a few rows
  std::int8_t nullArgument = -1;  ///< from 0 on: the row stands for a null argument of the call
  std::array<ErrorArg, kMaxArgs> args{};

  [[nodiscard]] constexpr std::size_t ArgCount() const {
    std::size_t count = 0;
    while (count < kMaxArgs && args[count].source != ErrorArg::Source::None) ++count;
    return count;
  }
};

/// `code` raises message `number`.
template <class... Args>
constexpr ErrorRow On(Result code, std::int32_t number, Args... args) {
  return {code, number, number, -1, {args...}};
}
/// `code` raises the text of `textNumber` under another number.
template <class... Args>
constexpr ErrorRow OnAs(Result code, std::int32_t number, std::int32_t textNumber, Args... args) {
  return {code, number, textNumber, -1, {args...}};
}
/// A null object as argument `argument` raises message `number` before the member is called.
template <class... Args>
constexpr ErrorRow OnNullArgument(std::uint8_t argument, std::int32_t number, Args... args) {
  return {S_OK, number, number, static_cast<std::int8_t>(argument), {args...}};
}

/// How far the standard rows stand behind a member's own.
enum class Standard : std::uint8_t {
  Off,    ///< only the member's own rows; other codes raise nothing
  Named,  ///< the four codes that the standard rows name; other codes raise nothing
  All,    ///< the four named codes, and message 250 for every other
};

/// What E_NOTIMPL means for a member.
enum class NotImpl : std::uint8_t {
  NotImplemented,  ///< message 245 with the method's name
  NotLoaded,       ///< message 254: the change needs data that is loaded
};

/// A member's error rows, as dispatch maps refer to them.
struct MemberErrors {
  std::u16string_view method{};  ///< the name shown in messages; empty for the member's own
  Standard standard = Standard::Named;
  NotImpl notImpl = NotImpl::NotImplemented;
  std::span<const ErrorRow> rows{};
};

/// A table of error rows with its storage; converts to `MemberErrors`. Declare it `constexpr`.
template <std::size_t N>
struct MemberErrorTable {
  std::u16string_view method;
  Standard standard;
  NotImpl notImpl;
  std::array<ErrorRow, N> rows;

  constexpr operator MemberErrors() const {  // NOLINT: a table is used as what it holds
    return {method, standard, notImpl, std::span<const ErrorRow>(rows.data(), N)};
  }
};

/// A table with the standard rows behind its own.
template <class... Rows>
constexpr MemberErrorTable<sizeof...(Rows)> Errors(std::u16string_view method, Rows... rows) {
  return {method, Standard::All, NotImpl::NotImplemented, {rows...}};
}
/// As `Errors`, with message 254 for E_NOTIMPL.
template <class... Rows>
constexpr MemberErrorTable<sizeof...(Rows)> ErrorsOfChange(std::u16string_view method,
                                                           Rows... rows) {
  return {method, Standard::All, NotImpl::NotLoaded, {rows...}};
}
/// The four named standard rows, with message 254 for E_NOTIMPL; other codes raise nothing.
constexpr MemberErrorTable<0> ErrorsOfLoaded(std::u16string_view method) {
  return {method, Standard::Named, NotImpl::NotLoaded, {}};
}
/// Only the rows given: other codes raise nothing.
template <class... Rows>
constexpr MemberErrorTable<sizeof...(Rows)> OnlyErrors(std::u16string_view method, Rows... rows) {
  return {method, Standard::Off, NotImpl::NotImplemented, {rows...}};
}

/// The row that a failure selects, or one with number 0 if it raises nothing. The member's own rows
/// come first, in their order. `memberName` is used where the table has no name of its own.
ErrorRow SelectErrorRow(const MemberErrors& errors, Result code, std::u16string_view memberName);

}  // namespace hv::automation
