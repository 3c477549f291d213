// bench/ElementsBench.cpp - a level of a browse tree: the elements of all children of one element,
// with names and display names of three parts, beside the same statement through the bare SQLite
// interface that builds the same texts. Usage: elements_bench [children] [rounds]. Rounds of both
// alternate; medians of the processor's time count.
#include <malloc.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Timing.h"
#include "browse/BrowseConfigImpl.h"
#include "cor/Counted.h"
#include "core/model/ModelBuilder.h"
#include "core/plugins/sql/Layout.h"
#include "core/plugins/sql/Sqlite.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "tests/plugins/TestConfiguration.h"

namespace {

using namespace hv;
using namespace hv::vex;
using engine::ModelBuilder;

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "elements_bench: %s\n", what);
  std::exit(1);
}

void Begin(ModelBuilder& builder, std::u16string_view name, std::u16string_view base) {
  builder.BeginEntity(name, base);
  for (const auto& [own, ofBase] : {std::pair{u"Id", u"id"}, std::pair{u"Name", u"name"}}) {
    engine::AttributeSpec spec;
    spec.name = own;
    spec.baseAttribute = ofBase;
    builder.AddAttribute(std::move(spec));
  }
}

void Relate(ModelBuilder& builder, std::u16string_view name, std::u16string_view to,
            std::u16string_view base, std::u16string_view inverse, std::int32_t most) {
  engine::RelationSpec spec;
  spec.name = name;
  spec.refTo = to;
  spec.baseRelation = base;
  spec.inverseName = inverse;
  spec.minOccurs = 0;
  spec.maxOccurs = most;
  builder.AddRelation(std::move(spec));
}

void MakeDatabase(const std::filesystem::path& path, std::int64_t children) {
  ModelBuilder builder(u"asam36");
  Begin(builder, u"Test", u"AoTest");
  Relate(builder, u"Days", u"Day", u"children", u"Test", engine::kMany);
  Begin(builder, u"Day", u"AoSubTest");
  engine::AttributeSpec state;
  state.name = u"State";
  state.type = engine::TypeName{engine::OdsType::Long, false};
  builder.AddAttribute(std::move(state));
  Relate(builder, u"Test", u"Test", u"parent_test", u"Days", 1);
  Relate(builder, u"Runs", u"Run", u"children", u"Day", engine::kMany);
  Begin(builder, u"Run", u"AoMeasurement");
  Relate(builder, u"Day", u"Day", u"test", u"Runs", 1);
  const auto model = builder.Build();

  engine::sql::SqliteOptions options;
  options.mayCreate = true;
  const auto c = engine::sql::OpenSqlite(path, options);
  c->Execute("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN");
  const auto layout = engine::sql::MakeLayout(*model, c->GetDialect());
  engine::sql::CreateSchema(*c, *model, layout);
  const std::string numbers =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n LIMIT " +
      std::to_string(children) + ") ";
  c->Execute("INSERT INTO TEST(TEST_ID,NAME) VALUES(1,'Test')");
  c->Execute(numbers +
             "INSERT INTO DAY(DAY_ID,NAME,STATE,TEST)"
             " SELECT i,printf('Day %08d of the campaign',i),i%17,1 FROM n");
  engine::sql::CreateIndexes(*c, *model, layout);
  c->Execute("COMMIT; ANALYZE; PRAGMA journal_mode=WAL");
}

/// Name, a text and a number.
void SetParts(IBrowseConfig& config) {
  const auto level =
      OwnBrowseEntity(Ref<IBrowseConfigEntity>::Adopt(config.GetEntityByName(u"Day")).Get());
  Require(bool(level), "no level");
  Ref<IRepresentedByPartsImpl> parts;
  Require(!Failed(level->GetRepresentedByParts(parts.Put())), "no parts");
  const auto state = FindAttributeDefinition(level->ModelEntity(), u"State");
  (void)parts->AddFreeText(u" - ", nullptr);
  (void)parts->AddProperty(state.Get(), nullptr);
}

/// What somebody would write who only wanted the names.
struct Row {
  std::int64_t id;
  std::u16string name;
  std::u16string displayName;
};

std::vector<Row> ByHand(sqlite3* database) {
  std::vector<Row> rows;
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database,
                     "SELECT DAY_ID, NAME, STATE FROM DAY WHERE TEST=1"
                     " ORDER BY coalesce(TEST_P,DAY_ID)",
                     -1, &statement, nullptr);
  while (sqlite3_step(statement) == SQLITE_ROW) {
    const auto* name = static_cast<const char16_t*>(sqlite3_column_text16(statement, 1));
    Row row{sqlite3_column_int64(statement, 0),
            {name, static_cast<std::size_t>(sqlite3_column_bytes16(statement, 1)) / 2},
            {}};
    row.displayName = row.name + u" - ";
    for (const char digit : std::to_string(sqlite3_column_int64(statement, 2))) {
      row.displayName += static_cast<char16_t>(digit);
    }
    rows.push_back(std::move(row));
  }
  sqlite3_finalize(statement);
  return rows;
}

double Heap() { return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd); }

void Measure(easyImpl::ISimplifiedStoreImpl& provider, sqlite3* raw, int rounds) {
  Ref<IStoreElementImpl> test;
  Require(!Failed(provider.GetElementByKey(u"Test:1", test.Put())), "no start");
  Ref<IStoreElementListImpl> list;
  std::vector<Row> rows;
  std::vector<double> ours, byHand, asked, dropped;
  for (int i = 0; i <= rounds; ++i) {
    const double before = Heap();
    const double filled = Milliseconds([&] {
      Require(!Failed(test->GetChildrenPrefetched({}, u"Days", list.Put())), "no children");
    });
    const double held = Heap() - before;
    std::int32_t count = 0;
    (void)list->GetCount(&count);
    rows.clear();
    const double done = Milliseconds([&] { rows = ByHand(raw); });
    Require(rows.size() == static_cast<std::size_t>(count) && count > 0, "the children differ");
    WString text;
    const double read = Milliseconds([&] {
      for (std::int32_t at = 0; at < count; ++at) {
        Ref<easyImpl::IVEXElementImpl> element;
        (void)list->GetItem(at, element.Put());
        (void)element->GetDisplayName(&text);
        Require(text.view() == rows[static_cast<std::size_t>(at)].displayName, "a name differs");
      }
    });
    const double gone = Milliseconds([&] { list.Reset(); });
    if (i == 0) {
      std::printf("%d children, %.0f bytes each; by hand %.0f (two texts and the id)\n\n", count,
                  held / count,
                  static_cast<double>(malloc_usable_size(rows[0].name.data()) +
                                      malloc_usable_size(rows[0].displayName.data()) + 16) +
                      sizeof(Row));
      continue;
    }
    ours.push_back(filled);
    byHand.push_back(done);
    asked.push_back(read);
    dropped.push_back(gone);
  }
  std::printf(
      "elements with both names   %8.1f ms\nby hand                    %8.1f ms\n"
      "ratio                      %8.2f\n"
      "then all display names     %8.1f ms\nletting go of all          %8.1f ms\n",
      Median(ours), Median(byHand), Median(ours) / Median(byHand), Median(asked), Median(dropped));
}

}  // namespace

int main(int argc, char** argv) {
  const std::int64_t children = argc > 1 ? std::atoll(argv[1]) : 100'000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 9;
  const test::TestConfiguration configuration(HV_BINARY_DIR "/lib");
  const auto path = std::filesystem::temp_directory_path() / "elements_bench.sqlite";
  std::filesystem::remove(path);
  MakeDatabase(path, children);
  sqlite3* raw = nullptr;
  sqlite3_open(path.c_str(), &raw);
  sqlite3_exec(raw, "PRAGMA cache_size=-65536", nullptr, nullptr, nullptr);
  HostInit();
  try {
    const auto store = Ref<IStore>::Adopt(GetEngineEnvironment()->OpenStoreByParameter(
        u"", u"SQL", u"<filename>" + cor::FromUtf8(path.string()) + u"</filename>", 0));
    Ref<easyImpl::ISimplifiedStoreImpl> provider;
    Require(!Failed(MakeSimplifiedStore(store.Get(), nullptr, provider.Put())), "no provider");
    Ref<IBrowseConfig> config;
    (void)provider->GetBrowseConfig(config.Put());
    SetParts(*config);
    Measure(*provider, raw, rounds);
  } catch (const Exception& exception) {
    Require(false, cor::ToUtf8(exception.message).c_str());
  }
  sqlite3_close(raw);
  HostCleanup();
  std::filesystem::remove(path);
  return 0;
}
