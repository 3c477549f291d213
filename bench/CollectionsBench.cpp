// bench/CollectionsBench.cpp - the top of a store, the children of an element and the hits of a
// search, beside the same statements through the bare SQLite interface that keep the same names.
// Usage: collections_bench [elements] [rounds]. Rounds of both alternate; medians count.
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Timing.h"
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

constexpr std::int64_t kMostHits = 10'000;

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "collections_bench: %s\n", what);
  std::exit(1);
}

Ref<IStore> Open(std::u16string_view plugin, const std::filesystem::path& path) {
  return Ref<IStore>::Adopt(GetEngineEnvironment()->OpenStoreByParameter(
      u"", plugin, u"<filename>" + cor::FromUtf8(path.string()) + u"</filename>", 0));
}

void Execute(sqlite3* database, const std::string& text) {
  char* message = nullptr;
  sqlite3_exec(database, text.c_str(), nullptr, nullptr, &message);
  Require(!message, message);
}

/// A database of the model of tests/data/browse/campaign.atfx, with as many campaigns and as many
/// sub-tests of the first one.
sqlite3* MakeDatabase(const std::filesystem::path& path, std::int64_t count) {
  std::filesystem::remove(path);
  GetEngineEnvironment()->WriteStore(Open(u"ATFX", HV_TEST_DATA_DIR "/browse/campaign.atfx").Get(),
                                     u"<filename>" + cor::FromUtf8(path.string()) + u"</filename>",
                                     u"SQL", 0);
  sqlite3* raw = nullptr;
  Require(sqlite3_open(path.c_str(), &raw) == SQLITE_OK, "no database");
  const std::string numbers =
      "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i+1 FROM n LIMIT " +
      std::to_string(count) + ") INSERT INTO ";
  Execute(raw, "BEGIN");
  // The store keeps texts folded as well.
  Execute(raw, numbers +
                   "CAMPAIGN(CAMPAIGN_ID,TITLE,TITLE_F)"
                   " SELECT i,printf('Test %08d',i),printf('test %08d',i) FROM n");
  Execute(raw, numbers +
                   "SUB_TEST(SUB_TEST_ID,NAME,NAME_F,CAMPAIGN)"
                   " SELECT i,printf('Day %08d',i),printf('day %08d',i),1 FROM n");
  Execute(raw, "COMMIT; ANALYZE; PRAGMA cache_size=-65536");
  return raw;
}

/// Ids by name, for those who want to find them again.
using NamesByHand = std::map<std::u16string, std::int64_t>;

class Statement {
 public:
  Statement(sqlite3* database, const char* text) {
    Require(sqlite3_prepare_v2(database, text, -1, &m_statement, nullptr) == SQLITE_OK, text);
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(m_statement); }

  sqlite3_stmt* Get() const { return m_statement; }
  bool Step() { return sqlite3_step(m_statement) == SQLITE_ROW; }
  std::u16string Text(int column) {
    const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(m_statement, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes16(m_statement, column)) / 2};
  }

 private:
  sqlite3_stmt* m_statement = nullptr;
};

NamesByHand ReadByHand(sqlite3* database, const char* text) {
  NamesByHand names;
  Statement statement(database, text);
  while (statement.Step()) {
    names.emplace(statement.Text(1), sqlite3_column_int64(statement.Get(), 0));
  }
  return names;
}

/// `reset` runs after each round of ours and isn't counted.
void Compare(const char* what, int rounds, const std::function<void()>& ours,
             const std::function<void()>& byHand, const std::function<void()>& reset) {
  std::vector<double> a, b;
  for (int i = 0; i <= rounds; ++i) {
    const double mine = Milliseconds(ours);
    reset();
    const double theirs = Milliseconds(byHand);
    if (i == 0) continue;
    a.push_back(mine);
    b.push_back(theirs);
  }
  std::printf("%-34s %10.3f ms %10.3f ms %8.2f\n", what, Median(a), Median(b),
              Median(a) / Median(b));
}

std::int32_t CountOf(easyImpl::IVEXElementsImpl& elements) {
  std::int32_t count = 0;
  Require(!Failed(elements.GetCount(&count)), "no count");
  return count;
}

void CompareLists(easyImpl::ISimplifiedStoreImpl& provider, IStore& store, sqlite3* raw,
                  int rounds) {
  NamesByHand names;
  Ref<IRootElementsImpl> roots;
  Compare(
      "the top, under names", rounds,
      [&] { Require(!Failed(provider.CreateRootElements(roots.Put())), "no top"); },
      [&] { names = ReadByHand(raw, "SELECT CAMPAIGN_ID,TITLE FROM CAMPAIGN"); },
      [&] {
        if (names.empty()) return;
        Require(CountOf(*roots) == static_cast<std::int32_t>(names.size()), "the tops differ");
        roots.Reset();
      });
  roots.Reset();

  const auto campaign = Ref<IInstance>::Adopt(store.GetInstance(u"Campaign:1"));
  Ref<IStoreElementsImpl> children;
  const auto makeChildren = [&] {
    Require(!Failed(MakeReferencedElements(provider, *campaign, u"Vehicle.Runs", children.Put())),
            "no children");
  };
  Compare(
      "children, under names", rounds,
      [&] {
        makeChildren();
        Require(CountOf(*children) > 0, "no children");
      },
      [&] {
        names = ReadByHand(raw,
                           "SELECT SUB_TEST_ID,NAME FROM SUB_TEST WHERE CAMPAIGN=1"
                           " ORDER BY SUB_TEST_ID");
      },
      [&] { children.Reset(); });

  makeChildren();
  const Result dropped = children->Reload();
  Require(!Failed(dropped) && CountOf(*children) == static_cast<std::int32_t>(names.size()),
          "the children differ");
  children.Reset();
  makeChildren();
  Statement byName(raw, "SELECT SUB_TEST_ID FROM SUB_TEST WHERE CAMPAIGN=1 AND NAME=?");
  const auto& [wanted, id] = *std::next(names.begin(), static_cast<long>(names.size() / 2));
  Compare(
      "one child by its name", rounds,
      [&] {
        Ref<easyImpl::IVEXElementImpl> found;
        Require(!Failed(children->GetItemByName(wanted, found.Put())), "no such child");
      },
      [&] {
        sqlite3_bind_text16(byName.Get(), 1, wanted.data(), static_cast<int>(wanted.size() * 2),
                            SQLITE_STATIC);
        Require(byName.Step() && sqlite3_column_int64(byName.Get(), 0) == id, "another child");
        sqlite3_reset(byName.Get());
      },
      [] {});
}

void CompareHits(easyImpl::ISimplifiedStoreImpl& provider, IStore& store, sqlite3* raw,
                 int rounds) {
  Ref<IDataStoreResultCollectionImpl> results;
  Require(!Failed(MakeResultCollection(provider, 200, results.Put())), "no results");
  const auto list = Ref<IInstList>::Adopt(store.GetInstances(u"/#Sub.Test"));
  list->Truncate(kMostHits);
  (void)results->SetList(list.Get());
  std::vector<std::int64_t> ids;
  Statement all(raw, "SELECT SUB_TEST_ID FROM SUB_TEST ORDER BY SUB_TEST_ID");
  while (ids.size() < list->GetCount() && all.Step()) {
    ids.push_back(sqlite3_column_int64(all.Get(), 0));
  }
  Statement name(raw, "SELECT NAME FROM SUB_TEST WHERE SUB_TEST_ID=?");
  std::vector<std::u16string> ours, byHand;
  const std::string what = "the names of " + std::to_string(ids.size()) + " hits, one by one";
  Compare(
      what.c_str(), rounds,
      [&] {
        ours.clear();
        Ref<easyImpl::tIIteratorImpl<easyImpl::IVEXElementImpl>> iterator;
        (void)results->GetIterator(iterator.Put());
        Ref<easyImpl::IVEXElementImpl> element;
        WString text;
        while (iterator->Next(element.Put()) == S_OK) {
          Require(!Failed(element->GetName(&text)), "no name");
          ours.emplace_back(text.view());
        }
      },
      [&] {
        byHand.clear();
        for (const std::int64_t id : ids) {
          sqlite3_bind_int64(name.Get(), 1, id);
          Require(name.Step(), "no name");
          byHand.push_back(name.Text(0));
          sqlite3_reset(name.Get());
        }
      },
      [] {});
  Require(ours == byHand, "the hits differ");
}

}  // namespace

int main(int argc, char** argv) {
  const std::int64_t count = argc > 1 ? std::atoll(argv[1]) : 100'000;
  const int rounds = argc > 2 ? std::atoi(argv[2]) : 9;
  const test::TestConfiguration configuration(HV_BINARY_DIR "/lib");
  const auto path = std::filesystem::temp_directory_path() / "collections_bench.sqlite";
  HostInit();
  int failed = 0;
  try {
    sqlite3* const raw = MakeDatabase(path, count);
    const auto store = Open(u"SQL", path);
    Ref<easyImpl::ISimplifiedStoreImpl> provider;
    Require(!Failed(MakeSimplifiedStore(store.Get(), nullptr, provider.Put())), "no provider");
    std::printf("%lld elements\n\n%-34s %13s %13s %8s\n", static_cast<long long>(count), "",
                "collection", "by hand", "ratio");
    CompareLists(*provider, *store, raw, rounds);
    CompareHits(*provider, *store, raw, rounds);
    sqlite3_close(raw);
  } catch (const Exception& error) {
    std::fprintf(stderr, "collections_bench: %d %s\n", error.code,
                 cor::ToUtf8(error.message).c_str());
    failed = 1;
  }
  HostCleanup();
  std::filesystem::remove(path);
  return failed;
}
