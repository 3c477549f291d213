// bench/ConditionsBench.cpp - building a query's conditions, beside the least that any collection
// of them has to do: keep the fields of each, and a logic text that grows by a name each time.
#include <string>
#include <vector>

#include "Bench.h"
#include "query/conditions/ConditionCollImpl.h"

namespace {

using hv::Ref;
using hv::Variant;
using hv::WString;
using hv::vex::easyImpl::CConditionCollImpl;
using hv::vex::easyImpl::IConditionImpl;

constexpr std::u16string_view kValue = u"the value of a condition";

std::size_t Build(int count, std::u16string_view logic) {
  const auto conditions = hv::MakeRef<CConditionCollImpl>(nullptr);
  for (int i = 0; i < count; ++i) {
    Ref<IConditionImpl> added;
    (void)conditions->Add(u"Measurement", u"Name", u"=", Variant::Text(kValue), added.Put());
    if (i == 1 && !logic.empty()) (void)conditions->SetLogic(logic);
  }
  return conditions->GetLogic().size();
}

std::size_t BuildPlain(int count) {
  struct Fields {
    WString name, type, property, op, text;
    Variant value;
  };
  std::vector<Fields> all;
  WString logic;
  for (int i = 0; i < count; ++i) {
    const std::u16string name = u"C" + hv::cor::FromUtf8(std::to_string(i + 1)).str();
    all.push_back({name, u"Measurement", u"Name", u"=", kValue, Variant::Text(kValue)});
    logic = WString(logic + u" OR ") + name;
  }
  return logic.size() + all.size();
}

}  // namespace

int main() {
  std::size_t check = 0;
  std::printf("%-10s %-22s %12s %12s %7s\n", "conditions", "logic", "Add, ms", "plain, ms",
              "ratio");
  for (const int count : {100, 1000, 4000}) {
    const double plain = Fastest(InTurns(7, [&] { check += BuildPlain(count); })[0]);
    for (const auto& [name, logic] : {std::pair{"none", u""},
                                      {"chain of AND", u"AND"},
                                      {"chain of OR", u"OR"},
                                      {"mixed", u"(C1) OR (C2 AND C1)"}}) {
      const double spent = Fastest(InTurns(7, [&] { check += Build(count, logic); })[0]);
      std::printf("%-10d %-22s %12.2f %12.2f %7.1f\n", count, name, spent, plain, spent / plain);
    }
  }
  return check == 0 ? 1 : 0;
}
