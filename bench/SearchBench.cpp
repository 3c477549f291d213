// bench/SearchBench.cpp - a search by name from its conditions to the last hit's name and four
// properties, beside hand-written SQL through the bare interface that fetches the same. Usage:
// search_bench [runs] [rounds] [folder]. With a folder the database stays there for the next time.
#include <storefabric/DataType.h>
#include <storefabric/Object.h>

#include "BenchDatabase.h"
#include "RawDatabase.h"
#include "core/objects/FreeContainer.h"
#include "store/core/Seam.h"

namespace {

using hv::Object;
using hv::Ref;
namespace vex = hv::vex;

constexpr int kLimit = 10'000;

/// What both sides fetch, folded into one number each, so that they can be compared.
struct Fetched {
  std::size_t hits = 0;
  std::size_t names = 0;  ///< characters
  double numbers = 0;
  friend bool operator==(const Fetched&, const Fetched&) = default;
};

/// The query, and the limit set for it.
Object MakeQuery(const Object& store) {
  store.Call("Results").Set("MaxCount", kLimit);
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
  store.Call("Search", MakeQuery(store));
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

constexpr const char16_t* kColumns[] = {u"Name", u"Id", u"Load", u"State", u"Begun"};

hv::Variant Columns() {
  std::vector<hv::Variant> columns;
  for (const char16_t* name : kColumns) columns.push_back(hv::Variant::Text(name));
  return hv::Variant::Array(std::move(columns));
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
  store.Call("Search", MakeQuery(store));
  return Fold(store.Call("Results").Value("ReadColumns", Columns()));
}

/// The same by columns that come with the search.
Fetched SearchForColumns(const Object& store) {
  return Fold(store.Value("SearchColumns", MakeQuery(store), Columns()));
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
  for (const char16_t* name : kColumns) texts->SetText(count++, name);
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
  store.Call("Search", MakeQuery(store));
  return static_cast<std::size_t>(store.Call("Results").Integer("Count"));
}

Fetched FetchByHand(const RawDatabase& database) {
  Fetched fetched;
  Statement row(database,
                "SELECT r.RUN_ID, r.NAME, r.LOAD, r.STATE, r.BEGUN FROM RUN r JOIN TEST t ON"
                " t.TEST_ID=r.TEST WHERE coalesce(t.NAME_F,t.NAME)>=?1 AND"
                " coalesce(t.NAME_F,t.NAME)<?2 AND r.LOAD>=?3 AND r.STATE=?4"
                " ORDER BY r.RUN_ID LIMIT ?5");
  sqlite3_bind_text(row.Get(), 1, "test 1", -1, SQLITE_STATIC);
  sqlite3_bind_text(row.Get(), 2, "test 2", -1, SQLITE_STATIC);
  sqlite3_bind_double(row.Get(), 3, 50);
  sqlite3_bind_int(row.Get(), 4, 2);
  sqlite3_bind_int(row.Get(), 5, kLimit);
  while (row.Step()) {
    ++fetched.hits;
    const std::string name = reinterpret_cast<const char*>(sqlite3_column_text(row.Get(), 1));
    fetched.names += name.size();
    fetched.numbers += static_cast<double>(row.Integer(0)) + sqlite3_column_double(row.Get(), 2) +
                       sqlite3_column_double(row.Get(), 3);
    fetched.numbers += DayNumber(sqlite3_column_text(row.Get(), 4));
  }
  return fetched;
}

}  // namespace

int main(int argc, char** argv) {
  const BenchArguments arguments(argc, argv);
  const std::filesystem::path path = arguments.Database();
  if (!std::filesystem::exists(path)) MakeBenchDatabase(path, arguments.runs);

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
  const RawDatabase raw(path);
  raw.SetCache();

  std::size_t found = 0;
  Fetched ours, columns, joined, engines, theirs;
  const auto times = InTurns(
      arguments.rounds, [&] { ours = FetchByName(store); },
      [&] { engines = FetchFromEngine(*engineStore, queryText); },
      [&] { columns = FetchColumns(store); }, [&] { joined = SearchForColumns(store); },
      [&] { found = SearchByName(store); }, [&] { theirs = FetchByHand(raw); },
      [&] {
        Require(ours == theirs && columns == theirs && joined == theirs && engines == theirs &&
                    found == ours.hits && found > 0,
                "the hits differ");
      });
  std::printf("%zu hits of %lld runs, limit %d\n", ours.hits,
              static_cast<long long>(arguments.runs), kLimit);
  const double all = Median(times[0]), search = Median(times[4]), yardstick = Median(times[5]);
  const auto show = [&](const char* what, double time) {
    std::printf("  %-42s %8.1f ms %8.2f\n", what, time, time / yardstick);
  };
  show("by hand", yardstick);
  show("the search, to the number of hits", search);
  show("SearchColumns", Median(times[3]));
  show("  of that the engine", Median(times[1]));
  show("Search, then ReadColumns", Median(times[2]));
  show("Search, then hit by hit", all);
  std::printf("  a hit in turn takes %.2f us\n",
              (all - search) * 1e3 / static_cast<double>(ours.hits));
  if (!arguments.keepsDatabase) std::filesystem::remove(path);
}
