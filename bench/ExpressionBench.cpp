// bench/ExpressionBench.cpp - writing the expression of a query beside putting the same text
// together from its pieces, which are known there. Rounds of both alternate; the best count.
#include "AttachedEngine.h"
#include "query/objects/DataStoreAdvancedQueryImpl.h"
#include "query/objects/DataStoreConfigHelper.h"

namespace {

using hv::MakeRef;
using hv::Ref;
using hv::Variant;
using hv::WString;
namespace vex = hv::vex;

constexpr std::u16string_view kValue = u"the <value> of a condition*";

/// Names and sizes in turns, of results and of the steps above them.
Ref<vex::CDataStoreAdvancedQueryImpl> MakeQuery(vex::IStore& store, int count) {
  auto query = MakeRef<vex::CDataStoreAdvancedQueryImpl>(store, nullptr);
  auto& conditions = *query->GetStoreConditions();
  for (int i = 0; i < count; ++i) {
    Ref<vex::easyImpl::IConditionImpl> added;
    const bool isUp = i % 2 == 1;
    Require(!hv::Failed(conditions.AddWithName({}, isUp ? u"Step" : u"MeaResult", u"Name", u"=",
                                               Variant::Text(kValue), added.Put())),
            "a condition can't be added");
  }
  Require(!hv::Failed(conditions.SetLogic(u"OR")), "the logic isn't taken");
  return query;
}

/// The same text, as somebody would write it who knows all names and escaped the value before.
std::u16string ByHand(int count) {
  std::u16string text =
      u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n<query>\n"
      u"<entity name=\"MeaResult\" >\n<expression limit=\"200\">\n<q:function name=\"OR\">\n";
  for (int i = 0; i < count; ++i) {
    text += u"<q:function name=\"";
    text += u"=";
    text += u"\">\n<q:identifier>";
    text += i % 2 == 1 ? u"Step.name" : u"Name";
    text += u"</q:identifier>\n<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">";
    text += u"the &lt;value&gt; of a condition*";
    text += u"</q:constant>\n</q:function>\n";
  }
  text += u"</q:function>\n</expression></entity></query>";
  return text;
}

void Measure(vex::IStore& store, int count) {
  const auto query = MakeQuery(store, count);
  WString text;
  std::u16string same;
  const auto times = InTurns(
      15,
      [&] {
        const auto config = MakeRef<vex::CDataStoreConfigHelper>(&store);
        Require(!hv::Failed(query->GetExpressionWithReturnType(&text, *config, 200)),
                "the expression can't be written");
      },
      [&] { same = ByHand(count); });
  const double written = Fastest(times[0]), joined = Fastest(times[1]);
  Require(text.EqualsExact(same), "the texts differ");
  std::printf("%8d %10zu %12.3f %12.3f %10.2f %14.0f\n", count, same.size(), written, joined,
              written / joined, written * 1e6 / count);
}

}  // namespace

int main() {
  WithEngine([] {
    const auto store = OpenStore(u"ATFX", HV_STORE_FILE);
    std::printf("%8s %10s %12s %12s %10s %14s\n", "count", "units", "written ms", "joined ms",
                "ratio", "ns/condition");
    for (const int count : {100, 1000, 10000}) Measure(*store, count);
  });
}
