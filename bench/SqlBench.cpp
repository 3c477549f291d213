// bench/SqlBench.cpp - a database of many measurements, searched by the store and by hand-written
// SQL doing the same work as fast as its writer knows. Usage: sql_bench [measurements] [rounds]
// [folder]. Rounds of both alternate; the fastest counts. Plans are compared where both search.
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include "BenchDatabase.h"
#include "RawDatabase.h"
#include "core/plugins/sql/SqlStore.h"
#include "core/plugins/sql/Sqlite.h"
#include "core/plugins/sql/SqliteFunctions.h"
#include "core/plugins/sql/TextKey.h"
#include "core/query/QueryBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/QueryWriter.h"
#include "xml/SaxParser.h"

using namespace hv::vex::engine;

namespace {

constexpr std::size_t kBulkValues = 10'000'000;

/// Runs both sides in turn and prints the times in milliseconds and their ratio. Of many rounds,
/// and of several ways by hand, the fastest counts.
template <class Ours, class... ByHand>
void Compare(const char* what, long long rounds, const Ours& ours, const ByHand&... byHand) {
  std::vector<double> times;
  for (const auto& each : InTurns(rounds, ours, byHand...)) times.push_back(Fastest(each));
  const double best = *std::min_element(times.begin() + 1, times.end());
  std::printf("%-38s %9.3f ms %9.3f ms %7.2f", what, times[0], best, times[0] / best);
  for (std::size_t way = 1; times.size() > 2 && way < times.size(); ++way) {
    std::printf("  %.3f", times[way]);
  }
  std::printf("\n");
}

std::vector<std::int64_t> Ids(const RawDatabase& database, const std::string& text) {
  std::vector<std::int64_t> ids;
  Statement statement(database, text);
  while (statement.Step()) ids.push_back(statement.Integer(0));
  Require(sqlite3_errcode(database.Get()) == SQLITE_DONE, sqlite3_errmsg(database.Get()));
  return ids;
}

std::string PlanOf(const RawDatabase& database, const std::string& text) {
  std::string plan;
  constexpr int kDetail = 3;
  Statement row(database, "EXPLAIN QUERY PLAN " + text);
  while (row.Step()) {
    plan.append(reinterpret_cast<const char*>(sqlite3_column_text(row.Get(), kDetail)));
    plan.append(1, '\n');
  }
  return plan;
}

// --- queries -------------------------------------------------------------------------------------

/// The texts that begin with `prefix` as hand-written SQL finds them.
std::string Begins(const std::string& alias, std::string prefix) {
  const std::string key = "coalesce(" + alias + ".NAME_F," + alias + ".NAME)";
  std::string all = key + ">='" + prefix + "' AND ";
  ++prefix.back();
  return all + key + "<'" + prefix + "'";
}

struct Search {
  const char* name;
  const char16_t* expression;
  std::int64_t limit;
  std::string byHand;
  bool isAmongChildren = false;
};

void CompareSearches(const sql::SqlStore& store, const RawDatabase& raw, long long rounds) {
  const std::string from = "SELECT t0.RUN_ID FROM RUN AS t0 ";
  const Search searches[] = {
      {"three conditions over two relations",
       u"Test.Name = 'TEST 1*' AND Operator.Name = 'operator 1*' AND Load >= 50", 10000,
       from +
           "NOT INDEXED CROSS JOIN TEST AS t1 ON t1.TEST_ID=t0.TEST CROSS JOIN OPERATOR AS t2"
           " ON t2.OPERATOR_ID=t0.OPERATOR WHERE " +
           Begins("t1", "test 1") + " AND " + Begins("t2", "operator 1") +
           " AND t0.LOAD>=50 AND t0.LOAD<=9e999 ORDER BY t0.RUN_ID LIMIT 10000"},
      {"beginning of a name", u"Name = 'RUN 000012*'", 10000,
       from + "WHERE " + Begins("t0", "run 000012") + " ORDER BY t0.RUN_ID LIMIT 10000"},
      // The number stands in fewer records than the test has, so both begin with it.
      {"a test's name and a number", u"Test.Name = 'test 77' AND Load = 20", 0,
       from + "INDEXED BY IX_RUN_LOAD CROSS JOIN TEST AS t1 ON t1.TEST_ID=t0.TEST"
              " WHERE coalesce(t1.NAME_F,t1.NAME)='test 77' AND t0.LOAD=20 ORDER BY t0.RUN_ID"},
      {"children that meet a condition", u"Load < 10", 0,
       from + "WHERE t0.TEST=1 AND t0.LOAD<10 ORDER BY coalesce(t0.TEST_P,t0.RUN_ID), t0.RUN_ID",
       true}};
  const Model& model = *store.GetModel();
  for (const Search& search : searches) {
    BoundQuery query =
        BindQuery(ReadQuery(BuildQueryText(u"Run", true, search.expression)), model).front();
    query.limit = search.limit;
    if (search.isAmongChildren) {
      const EntityId test = model.Find(u"Test")->id;
      query.start = BoundStart{test, model.At(test).FindRelation(u"Runs"), 1};
    }
    std::vector<RecordId> hits, byHand;
    Compare(
        search.name, rounds, [&] { hits = store.Select(query); },
        [&] { byHand = Ids(raw, search.byHand); });
    Require(hits == byHand && !hits.empty(), "the hits differ");
    std::printf(
        "  %zu hits, %.1f bytes each\n", hits.size(),
        static_cast<double>(malloc_usable_size(hits.data())) / static_cast<double>(hits.size()));
    const std::string ours = store.Explain(query);
    const std::string theirs = PlanOf(raw, search.byHand);
    if (ours == theirs) continue;
    std::fprintf(stderr, "%s\nby hand:\n%s", ours.c_str(), theirs.c_str());
    Require(false, "the plans differ");
  }
}

// --- reading -------------------------------------------------------------------------------------

void CompareChildren(const sql::SqlStore& store, const RawDatabase& raw, long long rounds) {
  const Model& model = *store.GetModel();
  const EntityId test = model.Find(u"Test")->id;
  const std::int32_t relation = model.At(test).FindRelation(u"Runs");
  const RecordId first[] = {1};
  std::vector<Link> children;
  std::vector<RecordId> byHand;
  Compare(
      "children of one element, in order", rounds,
      [&] { children = store.Follow(test, relation, first); },
      [&] {
        byHand = Ids(raw, "SELECT RUN_ID FROM RUN WHERE TEST=1 ORDER BY coalesce(TEST_P,RUN_ID)");
      });
  Require(std::equal(children.begin(), children.end(), byHand.begin(), byHand.end(),
                     [](const Link& link, RecordId id) { return link.target.id == id; }),
          "the children differ");
  std::printf("  %zu children\n", children.size());
}

/// What hand-written code would keep of four columns.
struct Columns {
  std::u16string names, dates;
  std::vector<std::size_t> nameEnds, dateEnds;
  std::vector<double> loads;
  std::vector<std::int64_t> states;

  void Take(sqlite3_stmt* row) {
    const auto text = [&](int column, std::u16string& all, std::vector<std::size_t>& ends) {
      const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
      const auto size = static_cast<std::size_t>(sqlite3_column_bytes(row, column));
      sql::AppendUtf16({bytes, size}, all);
      ends.push_back(all.size());
    };
    text(0, names, nameEnds);
    text(1, dates, dateEnds);
    loads.push_back(sqlite3_column_double(row, 2));
    states.push_back(sqlite3_column_int64(row, 3));
  }
};

void CompareColumns(const sql::SqlStore& store, const RawDatabase& raw, long long rounds) {
  // Every seventh run, so that neither side can read one range.
  std::vector<RecordId> ids;
  const auto runs = static_cast<RecordId>(store.CountOf(store.GetModel()->Find(u"Run")->id));
  for (RecordId id = 7; id <= runs && ids.size() < 10000; id += 7) ids.push_back(id);
  const Entity& run = *store.GetModel()->Find(u"Run");
  const std::int32_t wanted[] = {run.FindAttribute(u"Name"), run.FindAttribute(u"Begun"),
                                 run.FindAttribute(u"Load"), run.FindAttribute(u"State")};
  std::vector<ColumnBlock> blocks;
  Columns columns;
  const std::string select = "SELECT t.NAME, t.BEGUN, t.LOAD, t.STATE FROM ";
  Statement one(raw, select + "RUN AS t WHERE t.RUN_ID=?");
  Statement bound(raw, select + "sf_ids(?) AS i CROSS JOIN RUN AS t ON t.RUN_ID=i.id");
  std::span<const std::int64_t> list(ids);
  const auto eachAlone = [&] {
    columns = {};
    raw.Execute("BEGIN");
    for (const RecordId id : ids) {
      sqlite3_bind_int64(one.Get(), 1, id);
      one.Step();
      columns.Take(one.Get());
      one.Reset();
    }
    raw.Execute("COMMIT");
  };
  const auto oneText = [&] {
    columns = {};
    std::string text = select + "RUN AS t WHERE t.RUN_ID IN (0";
    for (const RecordId id : ids) text += "," + std::to_string(id);
    Statement statement(raw, text + ")");
    while (statement.Step()) columns.Take(statement.Get());
  };
  const auto oneList = [&] {
    columns = {};
    sqlite3_bind_pointer(bound.Get(), 1, &list, sql::kIdsPointer, nullptr);
    while (bound.Step()) columns.Take(bound.Get());
    bound.Reset();
  };
  Compare(
      "four columns of 10,000 hits", rounds,
      [&] { blocks = store.ReadColumns(run.id, ids, wanted); }, eachAlone, oneText, oneList);
  Require(blocks[0].textArena == columns.names && blocks[1].textArena == columns.dates &&
              blocks[2].reals == columns.loads && blocks[3].integers == columns.states,
          "the columns differ");
}

void CompareBulk(sql::SqlStore& store, const std::filesystem::path& path, long long rounds) {
  const RecordRef column{store.GetModel()->Find(u"Column")->id, 1};
  if (store.OpenValues(column) == nullptr) {
    Value::Reals piece(1 << 20);
    for (std::size_t at = 0; at < kBulkValues; at += piece.size()) {
      piece.resize(std::min(piece.size(), kBulkValues - at));
      for (std::size_t i = 0; i < piece.size(); ++i) piece[i] = static_cast<double>(at + i);
      store.WriteValues(column, {OdsType::Double, true, piece}, {}, at != 0);
    }
    store.Save(u"");
    store.GetConnection().Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  }
  std::vector<double> out(1 << 16);
  const auto byRange = [&] {
    const auto values = store.OpenValues(column);
    for (std::size_t at = 0; at < kBulkValues; at += out.size()) {
      const std::size_t size = std::min(out.size(), kBulkValues - at);
      values->ReadReals(at, std::span(out).first(size));
      Require(out[size - 1] == static_cast<double>(at + size - 1), "wrong values");
    }
  };
  Compare("10 million doubles by range", rounds, byRange, [&] {
    const int file = open(path.c_str(), O_RDONLY);
    const auto bytes = static_cast<off_t>(kBulkValues * sizeof(double));
    const off_t begin = std::max<off_t>(0, lseek(file, 0, SEEK_END) - bytes);
    for (off_t at = 0; at < bytes; at += static_cast<off_t>(out.size() * sizeof(double))) {
      Require(pread(file, out.data(), out.size() * sizeof(double), begin + at) >= 0, "read");
    }
    close(file);
  });
}

void CompareOpening(const std::filesystem::path& path, const std::filesystem::path& small,
                    long long rounds) {
  const auto open = [](const std::filesystem::path& file) {
    return [&file] { const sql::SqlStore store(sql::OpenSqlite(file, {}), u"bench"); };
  };
  // The other side is a thousandth of the records: opening must not know how many there are.
  Compare("open / open a thousandth of it", rounds, open(path), open(small));
}

}  // namespace

int main(int argc, char** argv) {
  const hv::xml::XmlRuntime xml;
  const BenchArguments arguments(argc, argv);
  const std::int64_t runs = arguments.runs;
  const long long rounds = arguments.rounds;
  const std::filesystem::path path = arguments.Database();
  const std::filesystem::path small = arguments.folder / "sql_bench_small.sqlite";
  if (!std::filesystem::exists(path)) {
    std::printf("made in %.1f s\n", Milliseconds([&] { MakeBenchDatabase(path, runs); }) / 1e3);
  }
  if (!std::filesystem::exists(small))
    MakeBenchDatabase(small, std::max<std::int64_t>(1, runs / 1000));
  std::printf("%lld runs, %lld columns' records, %.0f MB\n\n%-38s %12s %12s %7s\n",
              static_cast<long long>(runs), static_cast<long long>(runs * kColumnsEach),
              static_cast<double>(std::filesystem::file_size(path)) / 1e6, "", "store", "by hand",
              "ratio");
  {
    const RawDatabase raw(path);
    raw.SetCache();
    sql::RegisterFunctions(raw.Get());
    sql::SqlStore store(sql::OpenSqlite(path, {}), u"bench");
    CompareSearches(store, raw, rounds);
    CompareChildren(store, raw, rounds);
    CompareColumns(store, raw, rounds);
    CompareBulk(store, path, rounds);
  }
  CompareOpening(path, small, rounds);
  if (!arguments.keepsDatabase) {
    std::filesystem::remove(path);
    std::filesystem::remove(small);
  }
}
