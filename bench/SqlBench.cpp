// bench/SqlBench.cpp - a database of many measurements, searched by the store and by hand-written
// SQL doing the same work as fast as its writer knows. Usage: sql_bench [measurements] [rounds]
// [folder]. Rounds of both alternate; the fastest counts. Plans are compared where both search.
#include <fcntl.h>
#include <malloc.h>
#include <sqlite3.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "BenchDatabase.h"
#include "core/plugins/sql/SqlStore.h"
#include "core/plugins/sql/Sqlite.h"
#include "core/plugins/sql/SqliteFunctions.h"
#include "core/plugins/sql/TextKey.h"
#include "core/query/TextMatch.h"

using namespace hv::vex::engine;

namespace {

constexpr std::size_t kBulkValues = 10'000'000;

/// Processor time, since everything here comes from memory and other programs don't count.
double Seconds(const std::function<void()>& run) {
  const auto now = [] {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double begin = now();
  run();
  return now() - begin;
}

/// Of many rounds the fastest counts: what else the machine does only adds to a time.
double Fastest(const std::vector<double>& values) {
  return *std::min_element(values.begin(), values.end());
}

/// Runs both sides in turn and prints the times in milliseconds and their ratio. Of several ways
/// by hand the fastest counts.
void Compare(const char* what, int rounds, const std::function<void()>& ours,
             const std::vector<std::function<void()>>& byHand) {
  std::vector<double> a;
  std::vector<std::vector<double>> b(byHand.size());
  for (int i = -1; i < rounds; ++i) {  // the first round warms up
    const double mine = Seconds(ours);
    if (i >= 0) a.push_back(mine);
    for (std::size_t way = 0; way < byHand.size(); ++way) {
      const double theirs = Seconds(byHand[way]);
      if (i >= 0) b[way].push_back(theirs);
    }
  }
  std::vector<double> times;
  for (const auto& way : b) times.push_back(Fastest(way));
  const double best = *std::min_element(times.begin(), times.end());
  std::printf("%-38s %9.3f ms %9.3f ms %7.2f", what, Fastest(a) * 1e3, best * 1e3,
              Fastest(a) / best);
  for (const double time : times) {
    if (times.size() > 1) std::printf("  %.3f", time * 1e3);
  }
  std::printf("\n");
}

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "sql_bench: %s\n", what);
  std::exit(1);
}

std::vector<std::int64_t> Ids(sqlite3* database, const std::string& text) {
  std::vector<std::int64_t> ids;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr);
  while (sqlite3_step(statement) == SQLITE_ROW) ids.push_back(sqlite3_column_int64(statement, 0));
  Require(sqlite3_finalize(statement) == SQLITE_OK, sqlite3_errmsg(database));
  return ids;
}

std::string PlanOf(sqlite3* database, const std::string& text) {
  std::string plan;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, ("EXPLAIN QUERY PLAN " + text).c_str(), -1, &statement, nullptr);
  constexpr int kDetail = 3;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    plan.append(reinterpret_cast<const char*>(sqlite3_column_text(statement, kDetail)));
    plan.append(1, '\n');
  }
  sqlite3_finalize(statement);
  return plan;
}

// --- queries -------------------------------------------------------------------------------------

BoundNode Condition(const Model& model, std::u16string_view path, QueryOp op,
                    BoundConstant constant) {
  BoundNode node;
  node.kind = BoundNode::Kind::Compare;
  node.op = op;
  node.path = *model.Resolve(model.Find(u"Run")->id, path, true);
  node.constant = std::move(constant);
  return node;
}

BoundConstant Text(std::u16string_view text) {
  BoundConstant constant;
  constant.text = FoldCase(text);
  constant.ignoreCase = true;
  constant.wildcards = true;
  return constant;
}

BoundConstant Number(std::int64_t number) {
  BoundConstant constant;
  constant.integer = number;
  return constant;
}

BoundQuery Query(const Model& model, std::vector<BoundNode> conditions, std::int64_t limit) {
  BoundQuery query;
  query.entity = model.Find(u"Run")->id;
  query.hasCondition = true;
  query.condition.children = std::move(conditions);
  query.limit = limit;
  return query;
}

/// The texts that begin with `prefix` as hand-written SQL finds them.
std::string Begins(const std::string& alias, std::string prefix) {
  const std::string key = "coalesce(" + alias + ".NAME_F," + alias + ".NAME)";
  std::string all = key + ">='" + prefix + "' AND ";
  ++prefix.back();
  return all + key + "<'" + prefix + "'";
}

struct Search {
  const char* name;
  BoundQuery query;
  std::string byHand;
  bool hasSamePlan;
};

std::vector<Search> MakeSearches(const Model& model) {
  const std::string related =
      "TEST AS t1 ON t1.TEST_ID=t0.TEST CROSS JOIN OPERATOR AS t2 ON t2.OPERATOR_ID=t0.OPERATOR"
      " WHERE " +
      Begins("t1", "test 1") + " AND " + Begins("t2", "operator 1") +
      " AND t0.LOAD>=50 AND t0.LOAD<=9e999 ORDER BY t0.RUN_ID LIMIT 10000";
  std::vector<Search> searches;
  searches.push_back(
      {"three conditions over two relations",
       Query(model,
             {Condition(model, u"Test.Name", QueryOp::Equal, Text(u"TEST 1*")),
              Condition(model, u"Operator.Name", QueryOp::Equal, Text(u"operator 1*")),
              Condition(model, u"Load", QueryOp::GreaterEqual, Number(50))},
             10000),
       "SELECT t0.RUN_ID FROM RUN AS t0 NOT INDEXED CROSS JOIN " + related, true});
  searches.push_back(
      {"beginning of a name",
       Query(model, {Condition(model, u"Name", QueryOp::Equal, Text(u"RUN 000012*"))}, 10000),
       "SELECT t0.RUN_ID FROM RUN AS t0 WHERE " + Begins("t0", "run 000012") +
           " ORDER BY t0.RUN_ID LIMIT 10000",
       true});
  searches.push_back(
      {"a test's name and a number",
       Query(model,
             {Condition(model, u"Test.Name", QueryOp::Equal, Text(u"test 77")),
              Condition(model, u"Load", QueryOp::Equal, Number(20))},
             0),
       // The number stands in fewer records than the test has, so both begin with it.
       "SELECT t0.RUN_ID FROM RUN AS t0 INDEXED BY IX_RUN_LOAD CROSS JOIN TEST AS t1 ON"
       " t1.TEST_ID=t0.TEST WHERE coalesce(t1.NAME_F,t1.NAME)='test 77' AND t0.LOAD=20"
       " ORDER BY t0.RUN_ID",
       true});
  BoundQuery among = Query(model, {Condition(model, u"Load", QueryOp::Less, Number(10))}, 0);
  const EntityId test = model.Find(u"Test")->id;
  among.start = BoundStart{test, model.At(test).FindRelation(u"Runs"), 1};
  searches.push_back({"children that meet a condition", among,
                      "SELECT t0.RUN_ID FROM RUN AS t0 WHERE t0.TEST=1 AND t0.LOAD<10"
                      " ORDER BY coalesce(t0.TEST_P,t0.RUN_ID), t0.RUN_ID",
                      true});
  return searches;
}

void CompareSearches(const sql::SqlStore& store, sqlite3* raw, int rounds) {
  for (const Search& search : MakeSearches(*store.GetModel())) {
    std::vector<RecordId> hits, byHand;
    Compare(search.name, rounds, [&] { hits = store.Select(search.query); },
            {[&] { byHand = Ids(raw, search.byHand); }});
    Require(hits == byHand && !hits.empty(), "the hits differ");
    std::printf(
        "  %zu hits, %.1f bytes each\n", hits.size(),
        static_cast<double>(malloc_usable_size(hits.data())) / static_cast<double>(hits.size()));
    const std::string ours = store.Explain(search.query);
    const std::string theirs = PlanOf(raw, search.byHand);
    if (ours == theirs) continue;
    std::fprintf(stderr, "%s\nby hand:\n%s", ours.c_str(), theirs.c_str());
    Require(!search.hasSamePlan, "the plans differ");
  }
}

// --- reading -------------------------------------------------------------------------------------

void CompareChildren(const sql::SqlStore& store, sqlite3* raw, int rounds) {
  const Model& model = *store.GetModel();
  const EntityId test = model.Find(u"Test")->id;
  const std::int32_t relation = model.At(test).FindRelation(u"Runs");
  const RecordId first[] = {1};
  std::vector<Link> children;
  std::vector<RecordId> byHand;
  Compare("children of one element, in order", rounds,
          [&] { children = store.Follow(test, relation, first); }, {[&] {
            byHand =
                Ids(raw, "SELECT RUN_ID FROM RUN WHERE TEST=1 ORDER BY coalesce(TEST_P,RUN_ID)");
          }});
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

void CompareColumns(const sql::SqlStore& store, sqlite3* raw, int rounds) {
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
  const auto prepare = [&](const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(raw, text.c_str(), -1, &statement, nullptr);
    Require(statement != nullptr, sqlite3_errmsg(raw));
    return statement;
  };
  sqlite3_stmt* one = prepare(select + "RUN AS t WHERE t.RUN_ID=?");
  sqlite3_stmt* bound = prepare(select + "sf_ids(?) AS i CROSS JOIN RUN AS t ON t.RUN_ID=i.id");
  std::span<const std::int64_t> list(ids);
  const auto eachAlone = [&] {
    columns = {};
    sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr);
    for (const RecordId id : ids) {
      sqlite3_bind_int64(one, 1, id);
      sqlite3_step(one);
      columns.Take(one);
      sqlite3_reset(one);
    }
    sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr);
  };
  const auto oneText = [&] {
    columns = {};
    std::string text = select + "RUN AS t WHERE t.RUN_ID IN (0";
    for (const RecordId id : ids) text += "," + std::to_string(id);
    sqlite3_stmt* statement = prepare(text + ")");
    while (sqlite3_step(statement) == SQLITE_ROW) columns.Take(statement);
    sqlite3_finalize(statement);
  };
  const auto oneList = [&] {
    columns = {};
    sqlite3_bind_pointer(bound, 1, &list, sql::kIdsPointer, nullptr);
    while (sqlite3_step(bound) == SQLITE_ROW) columns.Take(bound);
    sqlite3_reset(bound);
  };
  Compare("four columns of 10,000 hits", rounds,
          [&] { blocks = store.ReadColumns(run.id, ids, wanted); }, {eachAlone, oneText, oneList});
  Require(blocks[0].textArena == columns.names && blocks[1].textArena == columns.dates &&
              blocks[2].reals == columns.loads && blocks[3].integers == columns.states,
          "the columns differ");
  sqlite3_finalize(one);
  sqlite3_finalize(bound);
}

void CompareBulk(sql::SqlStore& store, const std::filesystem::path& path, int rounds) {
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
  Compare("10 million doubles by range", rounds,
          [&] {
            const auto values = store.OpenValues(column);
            for (std::size_t at = 0; at < kBulkValues; at += out.size()) {
              const std::size_t size = std::min(out.size(), kBulkValues - at);
              values->ReadReals(at, std::span(out).first(size));
              Require(out[size - 1] == static_cast<double>(at + size - 1), "wrong values");
            }
          },
          {[&] {
            const int file = open(path.c_str(), O_RDONLY);
            const auto bytes = static_cast<off_t>(kBulkValues * sizeof(double));
            const off_t begin = std::max<off_t>(0, lseek(file, 0, SEEK_END) - bytes);
            for (off_t at = 0; at < bytes; at += static_cast<off_t>(out.size() * sizeof(double))) {
              Require(pread(file, out.data(), out.size() * sizeof(double), begin + at) >= 0,
                      "read");
            }
            close(file);
          }});
}

void CompareOpening(const std::filesystem::path& path, const std::filesystem::path& small,
                    int rounds) {
  const auto open = [](const std::filesystem::path& file) {
    return [&file] { const sql::SqlStore store(sql::OpenSqlite(file, {}), u"bench"); };
  };
  // The other side is a thousandth of the records: opening must not know how many there are.
  Compare("open / open a thousandth of it", rounds, open(path), {open(small)});
}

}  // namespace

int main(int argc, char** argv) {
  const BenchArguments arguments(argc, argv);
  const std::int64_t runs = arguments.runs;
  const int rounds = arguments.rounds;
  const std::filesystem::path path = arguments.Database();
  const std::filesystem::path small = arguments.folder / "sql_bench_small.sqlite";
  if (!std::filesystem::exists(path)) {
    std::printf("made in %.1f s\n", Seconds([&] { MakeBenchDatabase(path, runs); }));
  }
  if (!std::filesystem::exists(small))
    MakeBenchDatabase(small, std::max<std::int64_t>(1, runs / 1000));
  std::printf("%lld runs, %lld columns' records, %.0f MB\n\n%-38s %12s %12s %7s\n",
              static_cast<long long>(runs), static_cast<long long>(runs * kColumnsEach),
              static_cast<double>(std::filesystem::file_size(path)) / 1e6, "", "store", "by hand",
              "ratio");
  sqlite3* raw = nullptr;
  sqlite3_open(path.c_str(), &raw);
  sqlite3_exec(raw, "PRAGMA cache_size=-65536", nullptr, nullptr, nullptr);
  sql::RegisterFunctions(raw);
  {
    sql::SqlStore store(sql::OpenSqlite(path, {}), u"bench");
    CompareSearches(store, raw, rounds);
    CompareChildren(store, raw, rounds);
    CompareColumns(store, raw, rounds);
    CompareBulk(store, path, rounds);
  }
  CompareOpening(path, small, rounds);
  sqlite3_close(raw);
  if (!arguments.keepsDatabase) {
    std::filesystem::remove(path);
    std::filesystem::remove(small);
  }
  return 0;
}
