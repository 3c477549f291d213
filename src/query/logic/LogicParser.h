// query/logic/LogicParser.h - the grammar of logic texts such as "(C1 AND C2) OR C3".
// One machine for all who read them: the check of a text, the writer of query expressions, and the
// editor, which looks at texts that aren't finished yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/WString.h>

namespace hv::vex {

/// What a logic text needs to know of the collection of conditions that it joins.
class IConditionNames {
 public:
  /// True if there is a condition of that name ("C1").
  [[nodiscard]] virtual bool HasName(std::u16string_view name) const = 0;
  [[nodiscard]] virtual std::size_t GetNameCount() const = 0;
  /// In the order of the collection; `index` counts from 0 and is below the count.
  [[nodiscard]] virtual WString GetName(std::size_t index) const = 0;

 protected:
  ~IConditionNames() = default;
};

/// The numbers are frozen: open tokens and result kinds hold them as values.
enum class LogicKind : std::int32_t {
  Error = 0,  ///< value: position of the offending character
  Open = 1,   ///< value: `InnerOr` or `InnerAnd`, the connective read last at this level, or 0
  TopCondition = 2,  ///< value: N of "CN" outside of parentheses
  TopOr = 3,
  TopAnd = 4,
  InnerCondition = 5,  ///< value: N of "CN" inside parentheses
  InnerOr = 6,
  InnerAnd = 7,
  Close = 8,
};

struct LogicToken {
  LogicKind kind = LogicKind::Error;
  std::int32_t value = 0;
  friend bool operator==(const LogicToken&, const LogicToken&) = default;
};

/// Where the machine stands between two characters.
enum class LogicState : std::int32_t {
  Start = 0,
  AfterOpen = 1,
  TopNameFirstDigit = 2,
  InTopName = 3,
  AfterTopOr = 4,
  AfterTopAnd = 5,
  InnerNameFirstDigit = 6,
  InInnerName = 7,
  AfterInnerOr = 8,
  AfterInnerAnd = 9,
  AfterClose = 10,
  AfterTopName = 33,
  AfterInnerName = 77,
};

/// Reads a logic text.
///
/// The grammar: an operand, then any number of connective and operand. An operand is a name, C or c
/// and digits, or an expression in parentheses. Connectives are OR and AND in any case. Blanks
/// (only the character 32) may stand between any two of these. Digits are ASCII digits; a number
/// beyond 32 bits counts as the greatest one.
///
/// \param tokens      receives the tokens; after a refusal those before it, and the error as the
/// last
///                    one, unless the text only stopped early
/// \param resultKind  receives `TopOr` or `TopAnd` after the last connective outside of
/// parentheses;
///                    `TopAnd` if there is none. A text that mixes both there must be brought to
///                    its normal form first (`AddParentheses`).
/// \param conditions  tells which names there are; null accepts every name
/// \param state       receives where the machine stopped; may be null
/// \return true if the text is complete and valid
bool ParseLogic(std::u16string_view text, std::vector<LogicToken>& tokens, LogicKind& resultKind,
                const IConditionNames* conditions, LogicState* state = nullptr);

/// True for the empty text and for a complete and valid one.
/// \param allowIncomplete  true also for a text that can become valid by going on
bool IsLogicValid(std::u16string_view text, const IConditionNames* conditions,
                  bool allowIncomplete);

/// "C1" for 1.
WString ConditionName(std::int32_t number);

}  // namespace hv::vex
