// query/logic/LogicText.h - the logic of one collection of conditions.
// A plain value that its collection owns.
#pragma once

#include <string_view>
#include <utility>

#include <storefabric/Result.h>
#include <storefabric/WString.h>

#include "query/logic/LogicParser.h"

namespace hv::vex {

/// All names in the order of the collection with the separator between them.
WString JoinAll(const IConditionNames& conditions, std::u16string_view separator);

/// True if the logic says nothing else than that all conditions must hold: it is empty, "AND" but
/// for white space around, or exactly the chain of all names with " AND ".
bool IsPlainAnd(std::u16string_view logic, const IConditionNames& conditions);

/// Holds the text in its normal form. Empty stands for the chain of all names with " AND ".
class LogicText final {
 public:
  /// As stored, possibly empty.
  [[nodiscard]] const WString& GetStored() const { return m_text; }
  /// The stored text, or the chain of all names with " AND " in its place.
  [[nodiscard]] WString GetLogic(const IConditionNames& conditions) const;

  /// Takes a text that a user or a host wrote. Keywords and names may be in any case. "OR" and
  /// "AND" alone, and the empty text, stand for chains of all names. \param isCustomAllowed  false
  /// for a store that knows nothing but the plain AND \return S_OK; VEX_E_LOGIC_UNSUPPORTED;
  /// VEX_E_BAD_LOGIC for a text that isn't complete and valid,
  ///         white space alone among them. After a failure the stored text is as before.
  Result SetLogic(std::u16string_view text, const IConditionNames& conditions,
                  bool isCustomAllowed = true);
  /// Takes a text that is valid already, with keywords in upper case.
  void SetLogicNormalised(std::u16string_view text, const IConditionNames& conditions);

  /// Forgets the text.
  void Clear() { m_text.clear(); }
  /// Takes a text as it stands.
  void Assign(WString text) { m_text = std::move(text); }

 private:
  WString m_text;
};

}  // namespace hv::vex
