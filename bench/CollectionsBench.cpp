// bench/CollectionsBench.cpp - the top of a store, the children of an element and the hits of a
// search, beside the same statements through the bare SQLite interface that keep the same names.
// Usage: collections_bench [elements] [rounds]. Rounds of both alternate; medians count.
#include <map>

#include "AttachedEngine.h"
#include "BenchDatabase.h"
#include "RawDatabase.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"

namespace {

using namespace hv;
using namespace hv::vex;

constexpr std::int64_t kMostHits = 10'000;

/// A database of the model of tests/data/browse/campaign.atfx, with as many campaigns and as many
/// sub-tests of the first one. The store keeps texts folded as well.
void MakeDatabase(const std::filesystem::path& path, long long count) {
  std::filesystem::remove(path);
  GetEngineEnvironment()->WriteStore(
      OpenStore(u"ATFX", HV_TEST_DATA_DIR "/browse/campaign.atfx").Get(), FileTag(path), u"SQL", 0);
  RawDatabase(path).Execute("BEGIN;" +
                            InsertNumbered(count,
                                           "CAMPAIGN(CAMPAIGN_ID,TITLE,TITLE_F)"
                                           " SELECT i,printf('Test %08d',i),printf('test %08d',i)",
                                           100) +
                            InsertNumbered(count,
                                           "SUB_TEST(SUB_TEST_ID,NAME,NAME_F,CAMPAIGN)"
                                           " SELECT i,printf('Day %08d',i),printf('day %08d',i),1",
                                           100) +
                            "COMMIT; ANALYZE");
}

/// Ids by name, for those who want to find them again.
using NamesByHand = std::map<std::u16string, std::int64_t>;

NamesByHand ReadByHand(const RawDatabase& database, const char* text) {
  NamesByHand names;
  Statement statement(database, text);
  while (statement.Step()) names.emplace(statement.Text(1), statement.Integer(0));
  return names;
}

/// `reset` runs after each round of ours and isn't counted.
template <class Ours, class ByHand, class Reset>
void Compare(const std::string& what, long long rounds, const Ours& ours, const ByHand& byHand,
             const Reset& reset) {
  const auto times = InTurns(rounds, ours, reset, byHand);
  std::printf("%-34s %10.3f ms %10.3f ms %8.2f\n", what.c_str(), Median(times[0]), Median(times[2]),
              Median(times[0]) / Median(times[2]));
}

std::int32_t CountOf(easyImpl::IVEXElementsImpl& elements) {
  std::int32_t count = 0;
  Require(!Failed(elements.GetCount(&count)), "no count");
  return count;
}

void CompareLists(easyImpl::ISimplifiedStoreImpl& provider, IStore& store, const RawDatabase& raw,
                  long long rounds) {
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
        Require(byName.Step() && byName.Integer(0) == id, "another child");
        byName.Reset();
      },
      [] {});
}

void CompareHits(easyImpl::ISimplifiedStoreImpl& provider, IStore& store, const RawDatabase& raw,
                 long long rounds) {
  Ref<IDataStoreResultCollectionImpl> results;
  Require(!Failed(MakeResultCollection(provider, 200, results.Put())), "no results");
  const auto list = Ref<IInstList>::Adopt(store.GetInstances(u"/#Sub.Test"));
  list->Truncate(kMostHits);
  (void)results->SetList(list.Get());
  std::vector<std::int64_t> ids;
  Statement all(raw, "SELECT SUB_TEST_ID FROM SUB_TEST ORDER BY SUB_TEST_ID");
  while (ids.size() < list->GetCount() && all.Step()) ids.push_back(all.Integer(0));
  Statement name(raw, "SELECT NAME FROM SUB_TEST WHERE SUB_TEST_ID=?");
  std::vector<std::u16string> ours, byHand;
  Compare(
      "the names of " + std::to_string(ids.size()) + " hits, one by one", rounds,
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
          name.Reset();
        }
      },
      [] {});
  Require(ours == byHand, "the hits differ");
}

}  // namespace

int main(int argc, char** argv) {
  const long long count = Argument(argc, argv, 1, 100'000);
  const long long rounds = Argument(argc, argv, 2, 9);
  const auto path = std::filesystem::temp_directory_path() / "collections_bench.sqlite";
  WithEngine([&] {
    MakeDatabase(path, count);
    const RawDatabase raw(path);
    raw.SetCache();
    const auto store = OpenStore(u"SQL", path);
    Ref<easyImpl::ISimplifiedStoreImpl> provider;
    Require(!Failed(MakeSimplifiedStore(store.Get(), nullptr, provider.Put())), "no provider");
    std::printf("%lld elements\n\n%-34s %13s %13s %8s\n", count, "", "collection", "by hand",
                "ratio");
    CompareLists(*provider, *store, raw, rounds);
    CompareHits(*provider, *store, raw, rounds);
  });
  std::filesystem::remove(path);
}
