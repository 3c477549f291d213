// bench/QueryBench.cpp - queries in memory, beside loops written by hand over plain vectors.
// Usage: query_bench [records] [rounds]. Both find the same records, which is checked; medians
// count.
#include <functional>
#include <random>
#include <string>

#include "Bench.h"
#include "core/query/QueryBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/QueryWriter.h"
#include "core/query/TextMatch.h"
#include "core/store/memory/MemoryBuilder.h"
#include "tests/core/model/ModelText.h"
#include "xml/SaxParser.h"

namespace {

using namespace hv::vex::engine;

struct Run {
  std::u16string name;
  std::int64_t gear;
  double load;
  std::size_t bench;
};

struct Campaign {
  std::vector<std::u16string> benches;
  std::vector<Run> runs;
};

Campaign MakeCampaign(std::size_t count) {
  Campaign campaign;
  std::mt19937_64 random(7);
  for (int i = 0; i < 200; ++i) campaign.benches.push_back(Wide("Bench " + std::to_string(i)));
  constexpr const char* kKinds[] = {"Run up ", "Run down ", "Idle ", "Gear shift "};
  for (std::size_t i = 0; i < count; ++i) {
    const std::string name = kKinds[random() % 4] + std::to_string(random() % count);
    campaign.runs.push_back({Wide(name), static_cast<std::int64_t>(random() % 7),
                             static_cast<double>(random() % 10000) / 100.0, random() % 200});
  }
  return campaign;
}

std::unique_ptr<RecordStore> MakeStore(const Campaign& campaign) {
  ModelBuilder model(u"asam36");
  Declare(model, R"(element Bench AoTest
attr Id base=id
attr Name base=name
rel Runs to=Run base=children max=Many inverse=Bench
element Run AoMeasurement
attr Id base=id
attr Name base=name
attr Gear type=DT_SHORT
attr Load type=DT_DOUBLE
rel Bench to=Bench base=test max=1 inverse=Runs)");
  MemoryBuilder builder(model.Build());
  const Entity& bench = *builder.GetModel().Find(u"Bench");
  const Entity& run = *builder.GetModel().Find(u"Run");
  for (std::size_t i = 0; i < campaign.benches.size(); ++i) {
    const Row row = *builder.AppendRecord(bench.id, static_cast<RecordId>(i + 1));
    builder.SetText(bench.id, row, bench.nameAttribute, campaign.benches[i]);
  }
  for (std::size_t i = 0; i < campaign.runs.size(); ++i) {
    const Run& source = campaign.runs[i];
    const Row row = *builder.AppendRecord(run.id, static_cast<RecordId>(i + 1));
    builder.SetText(run.id, row, run.nameAttribute, source.name);
    builder.SetInteger(run.id, row, run.FindAttribute(u"Gear"), source.gear);
    builder.SetReal(run.id, row, run.FindAttribute(u"Load"), source.load);
    builder.AddLink(run.id, row, run.FindRelation(u"Bench"),
                    static_cast<RecordId>(source.bench + 1));
  }
  return builder.Finish({}, nullptr);
}

struct Case {
  const char* label;
  std::u16string_view expression;
  std::function<bool(const Campaign&, const Run&)> byHand;
};

bool StartsWithFolded(std::u16string_view text, std::u16string_view prefix) {
  return FoldCase(text).starts_with(prefix);
}

}  // namespace

int main(int argc, char** argv) {
  const auto count = static_cast<std::size_t>(Argument(argc, argv, 1, 200'000));
  const long long rounds = Argument(argc, argv, 2, 9);
  const Campaign campaign = MakeCampaign(count);
  const hv::xml::XmlRuntime xml;
  const std::unique_ptr<RecordStore> store = MakeStore(campaign);
  const Case cases[] = {
      {"a number", u"Gear > 4", [](const Campaign&, const Run& run) { return run.gear > 4; }},
      {"a name's beginning", u"Name = 'run up*'",
       [](const Campaign&, const Run& run) { return StartsWithFolded(run.name, u"run up"); }},
      {"a word in a name", u"Name = '*shift*'",
       [](const Campaign&, const Run& run) {
         return FoldCase(run.name).find(u"shift") != std::u16string::npos;
       }},
      {"three conditions over a relation", u"Bench.Name = 'bench 1*' AND Gear = 3 AND Load < 50",
       [](const Campaign& all, const Run& run) {
         return run.gear == 3 && run.load < 50 &&
                StartsWithFolded(all.benches[run.bench], u"bench 1");
       }},
  };
  std::printf("%zu records, medians of %lld rounds; text of the query to the ids of the hits\n",
              count, rounds);
  std::printf("%-34s %9s %16s %12s %7s\n", "query for", "hits", "records/s", "by hand/s", "ratio");
  for (const Case& c : cases) {
    const std::u16string text = BuildQueryText(u"Run", true, c.expression);
    std::vector<RecordId> hits, expected;
    const auto times = InTurns(
        rounds,
        [&] { hits = store->Select(BindQuery(ReadQuery(text), *store->GetModel()).front()); },
        [&] {
          expected.clear();
          for (std::size_t i = 0; i < campaign.runs.size(); ++i) {
            if (c.byHand(campaign, campaign.runs[i])) {
              expected.push_back(static_cast<RecordId>(i + 1));
            }
          }
        });
    Require(hits == expected, ("the two don't find the same for " + std::string(c.label)).c_str());
    const double query = Median(times[0]) / 1e3, hand = Median(times[1]) / 1e3;
    std::printf("%-34s %9zu %16.0f %12.0f %7.2f\n", c.label, hits.size(),
                static_cast<double>(count) / query, static_cast<double>(count) / hand,
                query / hand);
  }
}
