// bench/SessionBench.cpp - what it costs to open a session on a database, small and large, beside
// the bare library that opens the same file and reads its model. Usage: session_bench [records]
// [rounds]. Rounds of both alternate; medians count.
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <storefabric/Object.h>

#include "Timing.h"
#include "store/core/Seam.h"

namespace {

using hv::Object;
using hv::Ref;
namespace vex = hv::vex;

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "session_bench: %s\n", what);
  std::exit(1);
}

std::string FileTag(const std::filesystem::path& path) {
  return "<filename>" + path.string() + "</filename>";
}

Object Connect(const char* plugin, const std::filesystem::path& path) {
  return Object::Create("VEX.DataStoreEnvironment")
      .Call("ConnectDataStoreByParameter", plugin, FileTag(path));
}

void Execute(sqlite3* database, const std::string& text) {
  char* message = nullptr;
  sqlite3_exec(database, text.c_str(), nullptr, nullptr, &message);
  Require(message == nullptr, message);
}

/// A database of the test bench's model with as many tests, and ten measurements to each.
void MakeDatabase(const std::filesystem::path& path, long long tests) {
  std::filesystem::remove(path);
  const Object model = Connect("ATFX", HV_MODEL_FILE);
  const auto core = hv::QueryRef<vex::IStore>(model.Value("GetVexStore").AsUnknown());
  const auto environment = Ref<vex::IEnvironment>::Adopt(core->GetEnvironment());
  Ref<vex::IExporter>::Adopt(
      environment->CreateExporter(u"SQL", u"", hv::cor::FromUtf8(FileTag(path)), core.Get()))
      ->Run();
  sqlite3* database = nullptr;
  sqlite3_open(path.c_str(), &database);
  const std::string numbers = "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT ";
  Execute(database, "BEGIN;" + numbers + std::to_string(tests) +
                        ") INSERT INTO TEST(TEST_ID,NAME) SELECT i,'test '||i FROM n;" + numbers +
                        std::to_string(tests * 10) +
                        ") INSERT INTO MEASUREMENT(MEASUREMENT_ID,NAME) SELECT i,'run '||i FROM n;"
                        "COMMIT");
  sqlite3_close(database);
}

/// Opens the file and reads every row of the model's tables.
void OpenByHand(const std::filesystem::path& path) {
  sqlite3* database = nullptr;
  sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
  int rows = 0;
  for (const char* text : {"SELECT * FROM SVCENT", "SELECT * FROM SVCATTR"}) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        (void)sqlite3_column_text(statement, i);
      }
      ++rows;
    }
    sqlite3_finalize(statement);
  }
  Require(rows > 100, "no model");
  sqlite3_close(database);
}

}  // namespace

int main(int argc, char** argv) {
  const long long tests = (argc > 1 ? std::atoll(argv[1]) : 1'000'000) / 10;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 21;
  const auto folder =
      std::filesystem::temp_directory_path() / ("session_bench_" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::filesystem::path files[] = {folder / "small.sqlite", folder / "large.sqlite"};
  MakeDatabase(files[0], 1);
  MakeDatabase(files[1], tests);

  // A process keeps the engine loaded; the first session of all pays for that.
  const Object keeper = Connect("SQL", files[0]);
  const auto environment = Ref<vex::IEnvironment>::Adopt(
      hv::QueryRef<vex::IStore>(keeper.Value("GetVexStore").AsUnknown())->GetEnvironment());
  std::vector<double> session[2], engine[2], bare[2];
  for (int i = 0; i < rounds; ++i) {
    for (const int size : {0, 1}) {
      const std::filesystem::path& file = files[size];
      session[size].push_back(
          Milliseconds([&] { Require(bool(Connect("SQL", file)), "no session"); }));
      engine[size].push_back(Milliseconds([&] {
        const auto store = Ref<vex::IStore>::Adopt(
            environment->OpenStoreByParameter(u"", u"SQL", hv::cor::FromUtf8(FileTag(file)), 0));
        Require(bool(store), "no store");
      }));
      bare[size].push_back(Milliseconds([&] { OpenByHand(file); }));
    }
  }
  std::printf("%-22s %10s %10s %10s %8s\n", "", "session", "engine", "bare", "ratio");
  for (const int size : {0, 1}) {
    std::printf("%-22s %7.3f ms %7.3f ms %7.3f ms %8.2f\n",
                size == 0 ? "11 records" : (std::to_string(tests * 11) + " records").c_str(),
                Median(session[size]), Median(engine[size]), Median(bare[size]),
                Median(session[size]) / Median(bare[size]));
  }
  std::error_code unused;
  std::filesystem::remove_all(folder, unused);
}
