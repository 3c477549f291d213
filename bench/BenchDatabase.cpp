// bench/BenchDatabase.cpp - tables as the store makes them, rows from a counter.
#include "BenchDatabase.h"

#include "Bench.h"
#include "core/plugins/sql/Layout.h"
#include "core/plugins/sql/Sqlite.h"
#include "tests/core/model/ModelText.h"

using namespace hv::vex::engine;

namespace {

constexpr const char* kModel = R"(element Test AoAny
attr Id base=id
attr Name base=name
rel Runs to=Run inverse=Test min=0 max=Many
element Operator AoAny
attr Id base=id
attr Name base=name
rel Runs to=Run inverse=Operator min=0 max=Many
element Run AoAny
attr Id base=id
attr Name base=name
attr Begun type=DT_DATE
attr Load type=DT_DOUBLE
attr State type=DT_LONG
rel Test to=Test inverse=Runs min=0 max=1
rel Operator to=Operator inverse=Runs min=0 max=1
rel Columns to=Column inverse=Run min=0 max=Many
element Column AoLocalColumn
attr Id base=id
attr Name base=name
attr Values base=values
rel Run to=Run inverse=Columns min=0 max=1)";

}  // namespace

BenchArguments::BenchArguments(int argc, char** argv)
    : runs(Argument(argc, argv, 1, 100'000)), rounds(Argument(argc, argv, 2, 7)) {
  keepsDatabase = argc > 3;
  if (keepsDatabase) folder = argv[3];
}

std::filesystem::path BenchArguments::Database() const {
  return folder / ("sql_bench_" + std::to_string(runs) + ".sqlite");
}

std::string InsertNumbered(long long count, const std::string& rows, long long first) {
  return "WITH RECURSIVE n(i) AS (SELECT " + std::to_string(first) +
         " UNION ALL SELECT i+1 FROM n LIMIT " + std::to_string(count) + ") INSERT INTO " + rows +
         " FROM n;";
}

void FillDatabase(const std::filesystem::path& path, const std::string& model,
                  const std::string& statements) {
  ModelBuilder builder(u"asam36");
  Declare(builder, model);
  const auto built = builder.Build();
  sql::SqliteOptions options;
  options.mayCreate = true;
  const auto c = sql::OpenSqlite(path, options);
  c->Execute("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA foreign_keys=OFF; BEGIN");
  const sql::Layout layout = sql::MakeLayout(*built, c->GetDialect());
  sql::CreateSchema(*c, *built, layout);
  c->Execute(statements);
  sql::CreateIndexes(*c, *built, layout);
  c->Execute("COMMIT; PRAGMA analysis_limit=1000; ANALYZE; PRAGMA journal_mode=WAL");
}

void MakeBenchDatabase(const std::filesystem::path& path, std::int64_t runs) {
  const std::string mixed = "(i*2654435761>>8&16777215)";  // spreads neighbouring ids
  static_assert(kColumnsEach == 10);
  FillDatabase(
      path, kModel,
      InsertNumbered(100, "TEST(TEST_ID,NAME,NAME_F) SELECT i,'Test '||i,'test '||i") +
          InsertNumbered(50,
                         "OPERATOR(OPERATOR_ID,NAME,NAME_F)"
                         " SELECT i,'Operator '||i,'operator '||i") +
          InsertNumbered(runs,
                         "RUN(RUN_ID,NAME,NAME_F,BEGUN,LOAD,STATE,TEST,OPERATOR)"
                         " SELECT i,printf('Run %08d warm',i),printf('run %08d warm',i),"
                         "printf('2024%02d%02d120000',i%12+1,i%28+1),(i*7919%1000)/10.0,i%5,"
                         "CASE WHEN i<=" +
                             std::to_string(runs / 10) + " THEN 1 ELSE " + mixed + "%100+1 END," +
                             mixed + "/100%50+1") +
          InsertNumbered(runs * kColumnsEach,
                         "\"COLUMN_\"(COLUMN__ID,NAME,RUN)"
                         " SELECT i,'channel '||((((i-1)/10+1)*3+(i-1)%10)%500),(i-1)/10+1"));
}
