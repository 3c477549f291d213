#include "apps/cli/HitTable.h"

#include <utility>

#include "apps/cli/Failure.h"
#include "apps/cli/RowWriter.h"
#include "apps/cli/Values.h"
#include "store/core/CoreLibrary.h"
#include "storefabric/Ref.h"

namespace hv::cli {

using namespace hv::vex;

void WriteHits(IStore& store, IInstList& hits, const std::vector<std::string>& columns,
               Format format) {
  const auto reader = QueryRef<IBulkReader>(&store);
  if (!reader) throw Failure("reading the hits: the store doesn't read in bulk");
  const Ref<IContainer> attributes = CreateEngineContainer();
  attributes->SetType(23);
  const auto names = Ref<IAttribute>::Adopt(attributes->GetAttribute(u""));
  names->SetText(0, u"name");
  for (const std::string& column : columns) {
    names->SetText(names->GetCount(), cor::FromUtf8(column));
  }
  const auto table = Ref<IValueTable>::Adopt(reader->ReadInstances(&hits, attributes.Get()));
  std::vector<Column> heads = {{"Key"}, {"Name"}};
  for (std::uint64_t i = 1; i < table->GetColumnCount(); ++i) {
    heads.push_back({columns[i - 1], IsNumberType(table->GetColumnType(i))});
  }
  RowWriter writer(format, std::move(heads));
  WString key;
  for (std::uint64_t row = 0; row < table->GetRowCount(); ++row) {
    table->GetKey(row, key);
    std::vector<std::string> cells = {cor::ToUtf8(key)};
    for (std::uint64_t column = 0; column < table->GetColumnCount(); ++column) {
      std::string cell = cor::ToUtf8(table->GetText(row, column));
      if (format == Format::Table && table->GetColumnType(column) == kDateType) {
        cell = ReadableDate(cell);
      }
      cells.push_back(std::move(cell));
    }
    writer.Row(std::move(cells));
  }
  writer.End();
}

}  // namespace hv::cli
