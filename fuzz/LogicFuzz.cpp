// fuzz/LogicFuzz.cpp - logic texts: what is stored is valid and stays so, whatever is taken out.
#include "fuzz/Fuzz.h"
#include "query/logic/LogicRepair.h"
#include "query/logic/LogicText.h"

namespace {

using namespace hv::vex;

/// The names C0 to C9.
class TenNames final : public IConditionNames {
 public:
  [[nodiscard]] bool HasName(std::u16string_view name) const override {
    return name.size() == 2 && name[0] == u'C';
  }
  [[nodiscard]] std::size_t GetNameCount() const override { return 10; }
  [[nodiscard]] hv::WString GetName(std::size_t index) const override {
    return ConditionName(static_cast<std::int32_t>(index));
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string text(data, data + size);
  const TenNames names;
  std::vector<LogicToken> tokens;
  LogicKind resultKind{};
  const bool isValid = ParseLogic(text, tokens, resultKind, &names);
  if (isValid) Require(IsLogicValid(text, &names, true) && tokens.back().kind != LogicKind::Error);

  LogicText logic;
  if (!hv::Failed(logic.SetLogic(text, names))) {
    const hv::WString once = logic.GetStored();
    Require(IsLogicValid(once, &names, false));
    for (std::int32_t i = 0; i < 10; ++i) {
      hv::WString left = once;
      RemoveFromLogic(ConditionName(i), left);
      Require(IsLogicValid(left, &names, false));
    }
  }
  // Repair and normal form also meet texts that nobody checked.
  hv::WString any(text);
  AddParentheses(any);
  RemoveFromLogic(u"C1", any);
  return 0;
}
