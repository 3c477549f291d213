#include <algorithm>
#include <iterator>
#include <string_view>

#include "apps/cli/Commands.h"
#include "apps/cli/RowWriter.h"
#include "apps/cli/StoreAccess.h"
#include "apps/cli/TextFile.h"
#include "store/core/CoreLibrary.h"

namespace hv::cli {

using namespace hv::vex;

namespace {

/// The type codes of whole and real numbers.
bool IsNumberType(std::int32_t code) {
  switch (code) {
    case 2:
    case 3:
    case 4:
    case 5:
    case 9:
    case 10:
      return true;
    default:
      return false;
  }
}

constexpr std::int32_t kDateType = 30;

/// "20250307143000" as "2025-03-07 14:30:00"; what is missing at its end is left out.
std::string ReadableDate(const std::string& digits) {
  constexpr std::size_t kEnds[] = {4, 6, 8, 10, 12, 14};
  constexpr std::string_view kSeparators = "-- ::.";
  std::string text;
  for (std::size_t i = 0; i < digits.size(); ++i) {
    const auto* const end = std::find(std::begin(kEnds), std::end(kEnds), i);
    if (end != std::end(kEnds)) text += kSeparators[static_cast<std::size_t>(end - kEnds)];
    text += digits[i];
  }
  return text;
}

}  // namespace

void RunQuery(const QueryOptions& options) {
  const WString text = ReadTextFile(options.expressionFile);
  Engine engine;
  const Ref<IStore> store = engine.Open(options.store);
  Explained("searching " + options.store, [&] {
    const Ref<IStoreQuery> query = store.As<IStoreQuery>();
    const Ref<IBulkReader> reader = store.As<IBulkReader>();
    if (!query || !reader) throw Failure("searching " + options.store + ": the store can't search");
    const auto hits = Ref<IInstList>::Adopt(query->Execute(text));

    const Ref<IContainer> attributes = CreateEngineContainer();
    attributes->SetType(23);
    const auto names = Ref<IAttribute>::Adopt(attributes->GetAttribute(u""));
    names->SetText(0, u"name");
    for (const std::string& column : options.columns) {
      names->SetText(names->GetCount(), cor::FromUtf8(column));
    }
    const auto table = Ref<IValueTable>::Adopt(reader->ReadInstances(hits.Get(), attributes.Get()));
    std::vector<Column> columns = {{"Key"}, {"Name"}};
    for (std::uint64_t i = 1; i < table->GetColumnCount(); ++i) {
      columns.push_back({options.columns[i - 1], IsNumberType(table->GetColumnType(i))});
    }
    RowWriter writer(options.format, std::move(columns));
    WString key;
    for (std::uint64_t row = 0; row < table->GetRowCount(); ++row) {
      table->GetKey(row, key);
      std::vector<std::string> cells = {cor::ToUtf8(key)};
      for (std::uint64_t column = 0; column < table->GetColumnCount(); ++column) {
        std::string cell = cor::ToUtf8(table->GetText(row, column));
        if (options.format == Format::Table && table->GetColumnType(column) == kDateType) {
          cell = ReadableDate(cell);
        }
        cells.push_back(std::move(cell));
      }
      writer.Row(std::move(cells));
    }
    writer.End();
  });
  TellRemarks(*store, options.warnings);
}

}  // namespace hv::cli
