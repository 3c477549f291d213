// bench/QueryBench.cpp - queries in memory, beside loops written by hand over plain vectors.
// Usage: query_bench [records] [rounds]. Both find the same records, which is checked; medians
// count.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "core/model/ModelBuilder.h"
#include "core/query/QueryBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/QueryWriter.h"
#include "core/query/TextMatch.h"
#include "core/store/memory/MemoryBuilder.h"
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
  for (int i = 0; i < 200; ++i) {
    const std::string name = "Bench " + std::to_string(i);
    campaign.benches.emplace_back(name.begin(), name.end());
  }
  constexpr const char* kKinds[] = {"Run up ", "Run down ", "Idle ", "Gear shift "};
  for (std::size_t i = 0; i < count; ++i) {
    const std::string name = kKinds[random() % 4] + std::to_string(random() % count);
    campaign.runs.push_back({std::u16string(name.begin(), name.end()),
                             static_cast<std::int64_t>(random() % 7),
                             static_cast<double>(random() % 10000) / 100.0, random() % 200});
  }
  return campaign;
}

AttributeSpec Named(const char16_t* name, const char16_t* base) {
  AttributeSpec spec;
  spec.name = name;
  spec.baseAttribute = base;
  return spec;
}

AttributeSpec Typed(const char16_t* name, OdsType type) {
  AttributeSpec spec;
  spec.name = name;
  spec.type = TypeName{type, false};
  return spec;
}

RelationSpec Rel(const char16_t* name, const char16_t* target, const char16_t* base,
                 const char16_t* inverse, std::int32_t maximum) {
  RelationSpec spec;
  spec.name = name;
  spec.refTo = target;
  spec.baseRelation = base;
  spec.inverseName = inverse;
  spec.maxOccurs = maximum;
  return spec;
}

std::unique_ptr<RecordStore> MakeStore(const Campaign& campaign) {
  ModelBuilder model(u"asam36");
  model.BeginEntity(u"Bench", u"AoTest");
  model.AddAttribute(Named(u"Id", u"id"));
  model.AddAttribute(Named(u"Name", u"name"));
  model.AddRelation(Rel(u"Runs", u"Run", u"children", u"Bench", kMany));
  model.BeginEntity(u"Run", u"AoMeasurement");
  model.AddAttribute(Named(u"Id", u"id"));
  model.AddAttribute(Named(u"Name", u"name"));
  model.AddAttribute(Typed(u"Gear", OdsType::Short));
  model.AddAttribute(Typed(u"Load", OdsType::Double));
  model.AddRelation(Rel(u"Bench", u"Bench", u"test", u"Runs", 1));
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

double MedianSeconds(int rounds, const std::function<void()>& body) {
  std::vector<double> seconds;
  for (int i = 0; i < rounds; ++i) {
    const auto start = std::chrono::steady_clock::now();
    body();
    seconds.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
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
  const std::size_t count = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 200000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 9;
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
  std::printf("%zu records, medians of %d rounds; text of the query to the ids of the hits\n",
              count, rounds);
  std::printf("%-34s %9s %16s %12s %7s\n", "query for", "hits", "records/s", "by hand/s", "ratio");
  for (const Case& c : cases) {
    const std::u16string text = BuildQueryText(u"Run", true, c.expression);
    std::vector<RecordId> hits;
    const double query = MedianSeconds(rounds, [&] {
      hits = store->Select(BindQuery(ReadQuery(text), *store->GetModel()).front());
    });
    std::vector<RecordId> expected;
    const double hand = MedianSeconds(rounds, [&] {
      expected.clear();
      for (std::size_t i = 0; i < campaign.runs.size(); ++i) {
        if (c.byHand(campaign, campaign.runs[i])) expected.push_back(static_cast<RecordId>(i + 1));
      }
    });
    if (hits != expected) {
      std::fprintf(stderr, "query_bench: the two don't find the same for \"%s\"\n", c.label);
      return 1;
    }
    std::printf("%-34s %9zu %16.0f %12.0f %7.2f\n", c.label, hits.size(),
                static_cast<double>(count) / query, static_cast<double>(count) / hand,
                query / hand);
  }
  return 0;
}
