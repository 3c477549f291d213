// bench/SearchBench.cpp - a search by name from its conditions to the last hit's name and four
// properties, beside hand-written SQL through the bare interface that fetches the same. Usage:
// search_bench [runs] [rounds] [folder]. With a folder the database stays there for the next time.
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <storefabric/DataType.h>
#include <storefabric/Object.h>

#include "BenchDatabase.h"
#include "Timing.h"
#include "core/objects/FreeContainer.h"
#include "store/core/Seam.h"

namespace {

using hv::Object;
using hv::Ref;
namespace vex = hv::vex;

constexpr int kLimit = 10'000;

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "search_bench: %s\n", what);
  std::exit(1);
}

/// What both sides fetch, folded into one number each, so that they can be compared.
struct Fetched {
  std::size_t hits = 0;
  std::size_t names = 0;  ///< characters
  double numbers = 0;
  friend bool operator==(const Fetched&, const Fetched&) = default;
};

Object MakeQuery(const Object& store) {
  const Object query = store.Call("CreateQuery");
  query.Set("ReturnType", "Run");
  const Object conditions = query.Call("Conditions");
  conditions.Call("Add", "Test", "Name", "=", "test 1*");
  conditions.Call("Add", "Run", "Load", ">=", 50);
  conditions.Call("Add", "Run", "State", "=", 2);
  return query;
}

Fetched FetchByName(const Object& store) {
  Fetched fetched;
  const Object query = MakeQuery(store);
  store.Call("Results").Set("MaxCount", kLimit);
  store.Call("Search", query);
  for (const Object& hit : store.Call("Results")) {
    ++fetched.hits;
    fetched.names += hit.Text("Name").size();
    const Object properties = hit.Call("Properties");
    for (const char* property : {"Id", "Load", "State"}) {
      fetched.numbers += properties.Call("Item", property).Number("Value");
    }
    fetched.numbers += properties.Call("Item", "Begun").Number("Value");
  }
  return fetched;
}

const hv::Variant& Columns() {
  static const hv::Variant columns = hv::Variant::Array(
      {hv::Variant::Text(u"Name"), hv::Variant::Text(u"Id"), hv::Variant::Text(u"Load"),
       hv::Variant::Text(u"State"), hv::Variant::Text(u"Begun")});
  return columns;
}

Fetched Fold(const hv::Variant& columns) {
  Fetched fetched;
  const std::vector<hv::Variant>& lists = columns.AsArray();
  fetched.hits = lists[0].AsArray().size();
  for (const hv::Variant& name : lists[0].AsArray()) fetched.names += name.AsText().size();
  for (std::size_t i = 0; i < fetched.hits; ++i) {
    fetched.numbers += static_cast<double>(lists[1].AsArray()[i].AsInt64()) +
                       lists[2].AsArray()[i].AsDouble() +
                       static_cast<double>(lists[3].AsArray()[i].AsInt64());
    fetched.numbers += lists[4].AsArray()[i].AsDouble();
  }
  return fetched;
}

/// The same by columns of the results.
Fetched FetchColumns(const Object& store) {
  const Object query = MakeQuery(store);
  store.Call("Results").Set("MaxCount", kLimit);
  store.Call("Search", query);
  return Fold(store.Call("Results").Value("ReadColumns", Columns()));
}

/// The same by columns that come with the search.
Fetched SearchForColumns(const Object& store) {
  const Object query = MakeQuery(store);
  store.Call("Results").Set("MaxCount", kLimit);
  return Fold(store.Value("SearchColumns", query, Columns()));
}

/// Days since 1899-12-30 at noon, of dates as the bench database has them.
template <class Digits>
double DayNumber(const Digits& digits) {
  const auto part = [&](int from, int count) {
    int value = 0;
    for (int i = from; i < from + count; ++i)
      value = value * 10 + (digits[static_cast<std::size_t>(i)] - '0');
    return value;
  };
  static constexpr int kBefore[] = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335};
  return 45292.0 + kBefore[part(4, 2) - 1] + part(6, 2) - 1 + 0.5;  // 2024 alone
}

/// The part of the engine in that.
Fetched FetchFromEngine(hv::vex::IStore& store, std::u16string_view queryText) {
  const auto reader = hv::QueryRef<vex::IBulkReader>(&store);
  const Ref<vex::IContainer> names = hv::MakeRef<vex::engine::FreeContainer>();
  names->SetType(hv::vex::eString);
  const auto texts = Ref<vex::IAttribute>::Adopt(names->GetAttribute(u""));
  std::uint64_t count = 0;
  for (const char16_t* name : {u"Name", u"Id", u"Load", u"State", u"Begun"}) {
    texts->SetText(count++, name);
  }
  const auto table = Ref<vex::IValueTable>::Adopt(reader->ReadQuery(queryText, names.Get()));
  Ref<vex::IInstList>::Adopt(table->GetInstances())->Truncate(kLimit);
  Fetched fetched;
  fetched.hits = static_cast<std::size_t>(table->GetRowCount());
  for (std::uint64_t row = 0; row < fetched.hits; ++row) {
    fetched.names += table->GetText(row, 0).size();
    fetched.numbers += static_cast<double>(table->GetInteger(row, 1)) + table->GetReal(row, 2) +
                       static_cast<double>(table->GetInteger(row, 3));
    fetched.numbers += DayNumber(table->GetText(row, 4));
  }
  return fetched;
}

/// The search alone, with no hit looked at.
std::size_t SearchByName(const Object& store) {
  const Object query = MakeQuery(store);
  store.Call("Results").Set("MaxCount", kLimit);
  store.Call("Search", query);
  return static_cast<std::size_t>(store.Call("Results").Integer("Count"));
}

Fetched FetchByHand(sqlite3* database) {
  Fetched fetched;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database,
                     "SELECT r.RUN_ID, r.NAME, r.LOAD, r.STATE, r.BEGUN FROM RUN r JOIN TEST t ON"
                     " t.TEST_ID=r.TEST WHERE coalesce(t.NAME_F,t.NAME)>=?1 AND"
                     " coalesce(t.NAME_F,t.NAME)<?2 AND r.LOAD>=?3 AND r.STATE=?4"
                     " ORDER BY r.RUN_ID LIMIT ?5",
                     -1, &statement, nullptr);
  Require(statement != nullptr, sqlite3_errmsg(database));
  sqlite3_bind_text(statement, 1, "test 1", -1, SQLITE_STATIC);
  sqlite3_bind_text(statement, 2, "test 2", -1, SQLITE_STATIC);
  sqlite3_bind_double(statement, 3, 50);
  sqlite3_bind_int(statement, 4, 2);
  sqlite3_bind_int(statement, 5, kLimit);
  while (sqlite3_step(statement) == SQLITE_ROW) {
    ++fetched.hits;
    const std::string name = reinterpret_cast<const char*>(sqlite3_column_text(statement, 1));
    fetched.names += name.size();
    fetched.numbers += static_cast<double>(sqlite3_column_int64(statement, 0)) +
                       sqlite3_column_double(statement, 2) + sqlite3_column_double(statement, 3);
    fetched.numbers += DayNumber(sqlite3_column_text(statement, 4));
  }
  sqlite3_finalize(statement);
  return fetched;
}

}  // namespace

int main(int argc, char** argv) {
  const BenchArguments arguments(argc, argv);
  const std::int64_t runs = arguments.runs;
  const int rounds = arguments.rounds;
  const std::filesystem::path path = arguments.Database();
  if (!std::filesystem::exists(path)) MakeBenchDatabase(path, runs);

  const Object environment = Object::Create("VEX.DataStoreEnvironment");
  const Object store = environment.Call("ConnectDataStoreByParameter", "SQL",
                                        "<filename>" + path.string() + "</filename>");
  Require(bool(store), "no session");
  const hv::Variant inner = store.Value("GetVexStore");
  const auto engineStore = hv::QueryRef<vex::IStore>(inner.AsUnknown());
  Require(bool(engineStore), "no store of the engine");
  // The text that a search runs has its limit, one more than is wanted, besides.
  std::u16string queryText(MakeQuery(store).Value("QueryString", store).AsText().view());
  const std::size_t begin = queryText.find(u"<expression");
  Require(begin != std::u16string::npos && queryText.find(u"limit=") == std::u16string::npos,
          "the query text isn't as expected");
  queryText.insert(begin + 11, u" limit=\"10001\"");
  sqlite3* raw = nullptr;
  sqlite3_open(path.c_str(), &raw);
  sqlite3_exec(raw, "PRAGMA cache_size=-65536", nullptr, nullptr, nullptr);

  std::vector<double> all, inColumns, together, engine, search, hand;
  Fetched ours, columns, joined, engines, theirs;
  for (int i = 0; i <= rounds; ++i) {
    const double fetching = Milliseconds([&] { ours = FetchByName(store); });
    const double inEngine =
        Milliseconds([&] { engines = FetchFromEngine(*engineStore, queryText); });
    const double reading = Milliseconds([&] { columns = FetchColumns(store); });
    const double joining = Milliseconds([&] { joined = SearchForColumns(store); });
    const double searching =
        Milliseconds([&] { Require(SearchByName(store) == ours.hits, "the searches differ"); });
    const double byHand = Milliseconds([&] { theirs = FetchByHand(raw); });
    Require(ours == theirs && columns == theirs && joined == theirs && engines == theirs &&
                ours.hits > 0,
            "the hits differ");
    if (i == 0) continue;  // fills the caches of both
    all.push_back(fetching);
    inColumns.push_back(reading);
    together.push_back(joining);
    engine.push_back(inEngine);
    search.push_back(searching);
    hand.push_back(byHand);
  }
  std::printf("%zu hits of %lld runs, limit %d\n", ours.hits, static_cast<long long>(runs), kLimit);
  const double yardstick = Median(hand);
  const auto show = [&](const char* what, double time) {
    std::printf("  %-42s %8.1f ms %8.2f\n", what, time, time / yardstick);
  };
  show("by hand", yardstick);
  show("the search, to the number of hits", Median(search));
  show("SearchColumns", Median(together));
  show("  of that the engine", Median(engine));
  show("Search, then ReadColumns", Median(inColumns));
  show("Search, then hit by hit", Median(all));
  std::printf("  a hit in turn takes %.2f us\n",
              (Median(all) - Median(search)) * 1e3 / static_cast<double>(ours.hits));
  sqlite3_close(raw);
  if (!arguments.keepsDatabase) std::filesystem::remove(path);
}
