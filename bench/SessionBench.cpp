// bench/SessionBench.cpp - what it costs to open a session on a database, small and large, beside
// the bare library that opens the same file and reads its model. Usage: session_bench [records]
// [rounds]. Rounds of both alternate; medians count.
#include <unistd.h>

#include <storefabric/Object.h>

#include "BenchDatabase.h"
#include "RawDatabase.h"
#include "store/core/Seam.h"

namespace {

using hv::Object;
using hv::Ref;
namespace vex = hv::vex;

std::string FileTag(const std::filesystem::path& path) {
  return "<filename>" + path.string() + "</filename>";
}

Object Connect(const char* plugin, const std::filesystem::path& path) {
  return Object::Create("VEX.DataStoreEnvironment")
      .Call("ConnectDataStoreByParameter", plugin, FileTag(path));
}

Ref<vex::IEnvironment> EngineOf(const Object& session) {
  const auto store = hv::QueryRef<vex::IStore>(session.Value("GetVexStore").AsUnknown());
  return Ref<vex::IEnvironment>::Adopt(store->GetEnvironment());
}

/// A database of the test bench's model with as many tests, and ten measurements to each.
void MakeDatabase(const std::filesystem::path& path, long long tests) {
  std::filesystem::remove(path);
  const Object model = Connect("ATFX", HV_MODEL_FILE);
  const auto core = hv::QueryRef<vex::IStore>(model.Value("GetVexStore").AsUnknown());
  Ref<vex::IExporter>::Adopt(
      EngineOf(model)->CreateExporter(u"SQL", u"", hv::cor::FromUtf8(FileTag(path)), core.Get()))
      ->Run();
  RawDatabase(path).Execute(
      "BEGIN;" + InsertNumbered(tests, "TEST(TEST_ID,NAME) SELECT i,'test '||i") +
      InsertNumbered(tests * 10, "MEASUREMENT(MEASUREMENT_ID,NAME) SELECT i,'run '||i") + "COMMIT");
}

/// Opens the file and reads every row of the model's tables.
void OpenByHand(const std::filesystem::path& path) {
  const RawDatabase database(path);
  int rows = 0;
  for (const char* text : {"SELECT * FROM SVCENT", "SELECT * FROM SVCATTR"}) {
    Statement row(database, text);
    for (; row.Step(); ++rows) {
      for (int i = 0; i < sqlite3_column_count(row.Get()); ++i) {
        (void)sqlite3_column_text(row.Get(), i);
      }
    }
  }
  Require(rows > 100, "no model");
}

}  // namespace

int main(int argc, char** argv) {
  const long long tests = Argument(argc, argv, 1, 1'000'000) / 10;
  const long long rounds = Argument(argc, argv, 2, 21);
  const auto folder =
      std::filesystem::temp_directory_path() / ("session_bench_" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::pair<std::filesystem::path, long long> sizes[] = {{folder / "small.sqlite", 1},
                                                               {folder / "large.sqlite", tests}};
  for (const auto& [file, count] : sizes) MakeDatabase(file, count);

  // A process keeps the engine loaded; the first session of all pays for that.
  const Object keeper = Connect("SQL", sizes[0].first);
  const auto environment = EngineOf(keeper);
  std::printf("%-22s %10s %10s %10s %8s\n", "", "session", "engine", "bare", "ratio");
  for (const auto& [file, count] : sizes) {
    const auto times = InTurns(
        rounds, [&] { Require(bool(Connect("SQL", file)), "no session"); },
        [&] {
          const auto store = Ref<vex::IStore>::Adopt(
              environment->OpenStoreByParameter(u"", u"SQL", hv::cor::FromUtf8(FileTag(file)), 0));
          Require(bool(store), "no store");
        },
        [&] { OpenByHand(file); });
    std::printf("%-22s %7.3f ms %7.3f ms %7.3f ms %8.2f\n",
                (std::to_string(count * 11) + " records").c_str(), Median(times[0]),
                Median(times[1]), Median(times[2]), Median(times[0]) / Median(times[2]));
  }
  std::error_code unused;
  std::filesystem::remove_all(folder, unused);
}
