// bench/SqlBench.cpp - a database of many measurements, searched by the store and by hand-written
// SQL doing the same work. Usage: sql_bench [measurements] [rounds] [folder]. Each measurement has
// ten local columns' records. Rounds of both alternate; medians count.
#include <fcntl.h>
#include <malloc.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "core/model/ModelBuilder.h"
#include "core/plugins/sql/SqlPlugin.h"
#include "core/plugins/sql/SqlStore.h"
#include "core/plugins/sql/Sqlite.h"
#include "core/query/TextMatch.h"
#include "core/store/memory/MemoryStore.h"

using namespace hv::vex::engine;

namespace {

constexpr int kColumnsEach = 10;
constexpr int kTests = 100;
constexpr int kOperators = 50;
constexpr std::size_t kBulkValues = 10'000'000;

void DeclareAttribute(ModelBuilder& builder, std::u16string_view name, std::u16string_view base,
                      std::optional<TypeName> type = {}) {
  AttributeSpec spec;
  spec.name = name;
  spec.baseAttribute = base;
  spec.type = type;
  builder.AddAttribute(std::move(spec));
}

void DeclareRelation(ModelBuilder& builder, std::u16string_view name, std::u16string_view to,
                     std::u16string_view inverse, std::int32_t most) {
  RelationSpec spec;
  spec.name = name;
  spec.refTo = to;
  spec.inverseName = inverse;
  spec.minOccurs = 0;
  spec.maxOccurs = most;
  builder.AddRelation(std::move(spec));
}

std::shared_ptr<const Model> MakeModel() {
  ModelBuilder builder(u"asam36");
  const auto begin = [&](std::u16string_view name, std::u16string_view base) {
    builder.BeginEntity(name, base);
    DeclareAttribute(builder, u"Id", u"id");
    DeclareAttribute(builder, u"Name", u"name");
  };
  begin(u"Test", u"AoAny");
  DeclareRelation(builder, u"Runs", u"Run", u"Test", kMany);
  begin(u"Operator", u"AoAny");
  DeclareRelation(builder, u"Runs", u"Run", u"Operator", kMany);
  begin(u"Run", u"AoAny");
  DeclareAttribute(builder, u"Begun", u"", TypeName{OdsType::Date, false});
  DeclareAttribute(builder, u"Load", u"", TypeName{OdsType::Double, false});
  DeclareAttribute(builder, u"State", u"", TypeName{OdsType::Long, false});
  DeclareRelation(builder, u"Test", u"Test", u"Runs", 1);
  DeclareRelation(builder, u"Operator", u"Operator", u"Runs", 1);
  DeclareRelation(builder, u"Columns", u"Column", u"Run", kMany);
  begin(u"Column", u"AoLocalColumn");
  DeclareAttribute(builder, u"Values", u"values");
  DeclareRelation(builder, u"Run", u"Run", u"Columns", 1);
  return builder.Build();
}

/// Spreads neighbouring ids.
std::int64_t Mixed(std::int64_t id) { return (id * 2654435761 >> 8) & 0xFFFFFF; }

/// Fills the store's own tables; the first test has a tenth of all runs.
void Generate(sql::Connection& c, std::int64_t runs) {
  const auto put = [&](const char* table, const char* word, std::int64_t count) {
    sql::Run run(
        c, std::string("INSERT INTO ") + table + "(" + table + "_ID,NAME,NAME_F) VALUES(?,?,?)");
    for (std::int64_t id = 1; id <= count; ++id) {
      const std::string name = word + std::to_string(id);
      std::string folded = name;
      folded[0] = static_cast<char>(folded[0] + 32);
      run->BindInteger(1, id);
      run->BindText(2, name);
      run->BindText(3, folded);
      run.Finish();
      run->Reset();
    }
  };
  put("TEST", "Test ", kTests);
  put("OPERATOR", "Operator ", kOperators);
  sql::Run run(c,
               "INSERT INTO RUN(RUN_ID,NAME,NAME_F,BEGUN,LOAD,STATE,TEST,OPERATOR)"
               " VALUES(?,?,?,?,?,?,?,?)");
  sql::Run column(c, "INSERT INTO \"COLUMN_\"(COLUMN__ID,NAME,NAME_F,RUN) VALUES(?,?,?,?)");
  for (std::int64_t id = 1; id <= runs; ++id) {
    char name[40], folded[40], begun[20];
    std::snprintf(name, sizeof name, "Run %08lld warm", static_cast<long long>(id));
    std::snprintf(folded, sizeof folded, "run %08lld warm", static_cast<long long>(id));
    std::snprintf(begun, sizeof begun, "2024%02d%02d120000", static_cast<int>(id % 12) + 1,
                  static_cast<int>(id % 28) + 1);
    run->BindInteger(1, id);
    run->BindText(2, name);
    run->BindText(3, folded);
    run->BindText(4, begun);
    run->BindReal(5, static_cast<double>(id * 7919 % 1000) / 10);
    run->BindInteger(6, id % 5);
    run->BindInteger(7, id <= runs / 10 ? 1 : Mixed(id) % kTests + 1);
    run->BindInteger(8, Mixed(id) / kTests % kOperators + 1);
    run.Finish();
    run->Reset();
    for (int i = 0; i < kColumnsEach; ++i) {
      const std::string channel = "channel " + std::to_string((id * 3 + i) % 500);
      column->BindInteger(1, (id - 1) * kColumnsEach + i + 1);
      column->BindText(2, channel);
      column->BindNull(3);
      column->BindInteger(4, id);
      column.Finish();
      column->Reset();
    }
  }
}

void MakeDatabase(const std::filesystem::path& path, std::int64_t runs) {
  sql::SqliteOptions options;
  options.mayCreate = true;
  const auto c = sql::OpenSqlite(path, options);
  c->Execute("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA foreign_keys=OFF; BEGIN");
  const auto model = MakeModel();
  const sql::Layout layout = sql::MakeLayout(*model, c->GetDialect());
  sql::CreateSchema(*c, *model, layout);
  Generate(*c, runs);
  sql::CreateIndexes(*c, *model, layout);
  c->Execute("COMMIT; PRAGMA analysis_limit=1000; ANALYZE; PRAGMA journal_mode=WAL");
}

double Seconds(const std::function<void()>& run) {
  const auto begin = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Runs both sides in turn and prints the medians in milliseconds and their ratio.
void Compare(const char* what, int rounds, const std::function<void()>& ours,
             const std::function<void()>& byHand) {
  std::vector<double> a, b;
  ours();
  byHand();
  for (int i = 0; i < rounds; ++i) {
    a.push_back(Seconds(ours));
    b.push_back(Seconds(byHand));
  }
  std::printf("%-34s %10.3f ms %10.3f ms %8.2f\n", what, Median(a) * 1e3, Median(b) * 1e3,
              Median(a) / Median(b));
}

std::vector<std::int64_t> Ids(sqlite3* database, const char* text) {
  std::vector<std::int64_t> ids;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
  while (sqlite3_step(statement) == SQLITE_ROW) ids.push_back(sqlite3_column_int64(statement, 0));
  sqlite3_finalize(statement);
  return ids;
}

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

BoundQuery Query(const Model& model, std::vector<BoundNode> conditions, std::int64_t limit) {
  BoundQuery query;
  query.entity = model.Find(u"Run")->id;
  query.hasCondition = true;
  query.condition.children = std::move(conditions);
  query.limit = limit;
  return query;
}

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "sql_bench: %s\n", what);
  std::exit(1);
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
  Compare(
      "10 M doubles by range / file read", rounds,
      [&] {
        const auto values = store.OpenValues(column);
        for (std::size_t at = 0; at < kBulkValues; at += out.size()) {
          const std::size_t size = std::min(out.size(), kBulkValues - at);
          values->ReadReals(at, std::span(out).first(size));
          Require(out[size - 1] == static_cast<double>(at + size - 1), "wrong values");
        }
      },
      [&] {
        const int file = open(path.c_str(), O_RDONLY);
        const auto bytes = static_cast<off_t>(kBulkValues * sizeof(double));
        const off_t begin = std::max<off_t>(0, lseek(file, 0, SEEK_END) - bytes);
        for (off_t at = 0; at < bytes; at += static_cast<off_t>(out.size() * sizeof(double))) {
          Require(pread(file, out.data(), out.size() * sizeof(double), begin + at) >= 0, "read");
        }
        close(file);
      });
}

void CompareColumns(const sql::SqlStore& store, sqlite3* raw, const std::vector<RecordId>& ids,
                    int rounds) {
  const Entity& run = *store.GetModel()->Find(u"Run");
  const std::int32_t wanted[] = {run.FindAttribute(u"Name"), run.FindAttribute(u"Begun"),
                                 run.FindAttribute(u"Load"), run.FindAttribute(u"State")};
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(raw, "SELECT NAME, BEGUN, LOAD, STATE FROM RUN WHERE RUN_ID=?", -1, &statement,
                     nullptr);
  Compare(
      "four columns of the hits", rounds,
      [&] {
        const auto blocks = store.ReadColumns(run.id, ids, wanted);
        Require(blocks[0].Rows() == ids.size(), "rows");
      },
      [&] {
        struct Row {
          std::u16string name, begun;
          double load;
          std::int64_t state;
        };
        std::vector<Row> rows;
        rows.reserve(ids.size());
        const auto text = [&](int column) {
          const auto* units =
              static_cast<const char16_t*>(sqlite3_column_text16(statement, column));
          return std::u16string(
              units, static_cast<std::size_t>(sqlite3_column_bytes16(statement, column)) / 2);
        };
        sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr);
        for (const RecordId id : ids) {
          sqlite3_bind_int64(statement, 1, id);
          sqlite3_step(statement);
          rows.push_back({text(0), text(1), sqlite3_column_double(statement, 2),
                          sqlite3_column_int64(statement, 3)});
          sqlite3_reset(statement);
        }
        sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr);
      });
  sqlite3_finalize(statement);
}

}  // namespace

int main(int argc, char** argv) {
  const std::int64_t runs = argc > 1 ? std::atoll(argv[1]) : 100'000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 7;
  const std::filesystem::path folder =
      argc > 3 ? std::filesystem::path(argv[3]) : std::filesystem::temp_directory_path();
  const std::filesystem::path path = folder / ("sql_bench_" + std::to_string(runs) + ".sqlite");
  if (!std::filesystem::exists(path)) {
    std::printf("made in %.1f s\n", Seconds([&] { MakeDatabase(path, runs); }));
  }
  std::printf("%lld runs, %lld columns' records, %.0f MB\n\n%-34s %13s %13s %8s\n",
              static_cast<long long>(runs), static_cast<long long>(runs * kColumnsEach),
              static_cast<double>(std::filesystem::file_size(path)) / 1e6, "", "store", "by hand",
              "ratio");
  sqlite3* raw = nullptr;
  sqlite3_open(path.c_str(), &raw);
  sqlite3_exec(raw, "PRAGMA cache_size=-65536", nullptr, nullptr, nullptr);
  sql::SqlStore store(sql::OpenSqlite(path, {}), u"bench");
  const Model& model = *store.GetModel();

  Compare(
      "open", rounds, [&] { const sql::SqlStore other(sql::OpenSqlite(path, {}), u"bench"); },
      [&] {
        sqlite3* other = nullptr;
        sqlite3_open(path.c_str(), &other);
        Require(!Ids(other, "SELECT AID FROM SVCENT").empty(), "no model");
        sqlite3_close(other);
      });

  BoundConstant load;
  load.integer = 50;
  const BoundQuery search =
      Query(model,
            {Condition(model, u"Test.Name", QueryOp::Equal, Text(u"TEST 1*")),
             Condition(model, u"Operator.Name", QueryOp::Equal, Text(u"operator 1*")),
             Condition(model, u"Load", QueryOp::GreaterEqual, load)},
            10000);
  std::vector<RecordId> hits, byHand;
  Compare(
      "three conditions, two relations", rounds, [&] { hits = store.Select(search); },
      [&] {
        byHand = Ids(raw,
                     "SELECT r.RUN_ID FROM RUN r JOIN TEST t ON t.TEST_ID=r.TEST JOIN OPERATOR o ON"
                     " o.OPERATOR_ID=r.OPERATOR WHERE coalesce(t.NAME_F,t.NAME)>='test 1' AND"
                     " coalesce(t.NAME_F,t.NAME)<'test 2' AND coalesce(o.NAME_F,o.NAME)>="
                     "'operator 1' AND coalesce(o.NAME_F,o.NAME)<'operator 2' AND r.LOAD>=50"
                     " ORDER BY r.RUN_ID LIMIT 10000");
      });
  Require(hits == byHand && !hits.empty(), "the hits differ");
  std::printf(
      "  %zu hits, %.1f bytes each\n", hits.size(),
      static_cast<double>(malloc_usable_size(hits.data())) / static_cast<double>(hits.size()));

  const BoundQuery prefix =
      Query(model, {Condition(model, u"Name", QueryOp::Equal, Text(u"RUN 000012*"))}, 10000);
  Require(store.Explain(prefix).find("USING INDEX IX_RUN_NAME") != std::string::npos,
          "the prefix search doesn't use the index");
  Compare(
      "prefix of a name", rounds, [&] { hits = store.Select(prefix); },
      [&] {
        byHand = Ids(raw,
                     "SELECT RUN_ID FROM RUN WHERE coalesce(NAME_F,NAME)>='run 000012' AND"
                     " coalesce(NAME_F,NAME)<'run 000013' ORDER BY RUN_ID LIMIT 10000");
      });
  Require(hits == byHand && !hits.empty(), "the hits differ");

  const EntityId test = model.Find(u"Test")->id;
  const RecordId first[] = {1};
  std::size_t children = 0;
  Compare(
      "children of one element", rounds,
      [&] { children = store.Follow(test, model.At(test).FindRelation(u"Runs"), first).size(); },
      [&] {
        byHand = Ids(raw, "SELECT RUN_ID FROM RUN WHERE TEST=1 ORDER BY coalesce(TEST_P,RUN_ID)");
      });
  Require(children == byHand.size(), "the children differ");
  std::printf("  %zu children\n", children);

  byHand.resize(std::min<std::size_t>(byHand.size(), 10000));
  CompareColumns(store, raw, byHand, rounds);
  CompareBulk(store, path, rounds);
  sqlite3_close(raw);
  if (argc <= 3) std::filesystem::remove(path);
  return 0;
}
