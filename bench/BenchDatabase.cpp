// bench/BenchDatabase.cpp - tables as the store makes them, rows from a counter.
#include "BenchDatabase.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "core/model/ModelBuilder.h"
#include "core/plugins/sql/Layout.h"
#include "core/plugins/sql/Sqlite.h"

using namespace hv::vex::engine;

namespace {

constexpr int kTests = 100;
constexpr int kOperators = 50;

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

}  // namespace

BenchArguments::BenchArguments(int argc, char** argv) {
  if (argc > 1) runs = std::atoll(argv[1]);
  if (argc > 2) rounds = std::atoi(argv[2]);
  keepsDatabase = argc > 3;
  if (keepsDatabase) folder = argv[3];
}

std::filesystem::path BenchArguments::Database() const {
  return folder / ("sql_bench_" + std::to_string(runs) + ".sqlite");
}

void MakeBenchDatabase(const std::filesystem::path& path, std::int64_t runs) {
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
