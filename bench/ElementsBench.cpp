// bench/ElementsBench.cpp - a level of a browse tree: the elements of all children of one element,
// with names and display names of three parts, beside the same statement through the bare SQLite
// interface that builds the same texts. Usage: elements_bench [children] [rounds]. Rounds of both
// alternate; medians of the processor's time count.
#include <malloc.h>

#include "AttachedEngine.h"
#include "BenchDatabase.h"
#include "RawDatabase.h"
#include "browse/BrowseConfigImpl.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"

namespace {

using namespace hv;
using namespace hv::vex;

constexpr const char* kModel = R"(element Test AoTest
attr Id base=id
attr Name base=name
rel Days to=Day base=children inverse=Test min=0 max=Many
element Day AoSubTest
attr Id base=id
attr Name base=name
attr State type=DT_LONG
rel Test to=Test base=parent_test inverse=Days min=0 max=1
rel Runs to=Run base=children inverse=Day min=0 max=Many
element Run AoMeasurement
attr Id base=id
attr Name base=name
rel Day to=Day base=test inverse=Runs min=0 max=1)";

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

std::vector<Row> ByHand(const RawDatabase& database) {
  std::vector<Row> rows;
  Statement statement(
      database,
      "SELECT DAY_ID, NAME, STATE FROM DAY WHERE TEST=1 ORDER BY coalesce(TEST_P,DAY_ID)");
  while (statement.Step()) {
    Row row{statement.Integer(0), statement.Text(1), {}};
    row.displayName = row.name + u" - ";
    for (const char digit : std::to_string(statement.Integer(2))) {
      row.displayName += static_cast<char16_t>(digit);
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

double Heap() { return static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd); }

void Measure(easyImpl::ISimplifiedStoreImpl& provider, const RawDatabase& raw, long long rounds) {
  Ref<IStoreElementImpl> test;
  Require(!Failed(provider.GetElementByKey(u"Test:1", test.Put())), "no start");
  Ref<IStoreElementListImpl> list;
  std::vector<Row> rows;
  std::int32_t count = 0;
  const auto fill = [&] {
    Require(!Failed(test->GetChildrenPrefetched({}, u"Days", list.Put())), "no children");
  };
  const auto fillByHand = [&] { rows = ByHand(raw); };
  const auto letGo = [&] { list.Reset(); };
  const double before = Heap();
  fill();
  const double held = Heap() - before;
  (void)list->GetCount(&count);
  fillByHand();
  Require(rows.size() == static_cast<std::size_t>(count) && count > 0, "the children differ");
  std::printf("%d children, %.0f bytes each; by hand %.0f (two texts and the id)\n\n", count,
              held / count,
              static_cast<double>(malloc_usable_size(rows[0].name.data()) +
                                  malloc_usable_size(rows[0].displayName.data()) + 16) +
                  sizeof(Row));
  letGo();
  const auto readNames = [&] {
    WString text;
    for (std::int32_t at = 0; at < count; ++at) {
      Ref<easyImpl::IVEXElementImpl> element;
      (void)list->GetItem(at, element.Put());
      (void)element->GetDisplayName(&text);
      Require(text.view() == rows[static_cast<std::size_t>(at)].displayName, "a name differs");
    }
  };
  const auto [filled, unused, byHand, read, gone] = InTurns(
      rounds, fill, [&] { rows.clear(); }, fillByHand, readNames, letGo);
  std::printf(
      "elements with both names   %8.1f ms\nby hand                    %8.1f ms\n"
      "ratio                      %8.2f\n"
      "then all display names     %8.1f ms\nletting go of all          %8.1f ms\n",
      Median(filled), Median(byHand), Median(filled) / Median(byHand), Median(read), Median(gone));
}

}  // namespace

int main(int argc, char** argv) {
  const long long children = Argument(argc, argv, 1, 100'000);
  const auto path = std::filesystem::temp_directory_path() / "elements_bench.sqlite";
  std::filesystem::remove(path);
  FillDatabase(path, kModel,
               "INSERT INTO TEST(TEST_ID,NAME) VALUES(1,'Test');" +
                   InsertNumbered(children,
                                  "DAY(DAY_ID,NAME,STATE,TEST)"
                                  " SELECT i,printf('Day %08d of the campaign',i),i%17,1"));
  WithEngine([&] {
    const RawDatabase raw(path);
    raw.SetCache();
    const auto store = OpenStore(u"SQL", path);
    Ref<easyImpl::ISimplifiedStoreImpl> provider;
    Require(!Failed(MakeSimplifiedStore(store.Get(), nullptr, provider.Put())), "no provider");
    Ref<IBrowseConfig> config;
    (void)provider->GetBrowseConfig(config.Put());
    SetParts(*config);
    Measure(*provider, raw, Argument(argc, argv, 2, 9));
  });
  std::filesystem::remove(path);
}
