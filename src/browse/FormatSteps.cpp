// browse/FormatSteps.cpp - display names of many rows.
#include "browse/FormatSteps.h"

#include <utility>

#include "automation/Guards.h"
#include "browse/DisplayText.h"
#include "store/core/CoreLibrary.h"
#include "store/core/IBulkReader.h"
#include "store/core/IContainer.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

constexpr std::int32_t kTextType = 23;
constexpr std::u16string_view kInstanceColumn = u"HV_VEX_INSTANCE";
constexpr std::u16string_view kNameColumn = u"name";
constexpr std::uint64_t kNameIndex = 1;

/// What to ask for: the instance, its name, and what else the parts show.
Ref<IContainer> AttributeList(const std::vector<WString>& names) {
  Ref<IContainer> list = CreateEngineContainer();
  list->SetType(kTextType);
  const auto texts = Ref<IAttribute>::Adopt(list->GetAttribute(u""));
  for (std::size_t i = 0; i < names.size(); ++i) texts->SetText(i, names[i]);
  return list;
}

/// \param read  asks the store for the columns of a list of attributes
/// \param take  `Result(IValueTable&, row, name, displayName)`, whose failure ends it; the texts
/// are
///              good until it returns
template <class Read, class Take>
Result ReadTable(IStore* store, IRepresentedByPartsImpl* parts, Read read, Take take) {
  HV_RETURN_CODE_IF(!store || !parts, E_POINTER);
  const auto bulkReader = QueryRef<IBulkReader>(store);
  HV_RETURN_CODE_IF(!bulkReader, E_NOTIMPL);

  std::vector<WString> names{kInstanceColumn, kNameColumn};
  ValueColumns columns;
  columns.try_emplace(kNameColumn);
  HV_RETURN_IF_FAILED(parts->CollectProperties(columns, &names));
  const auto values = Ref<IValueTable>::Adopt(read(*bulkReader, AttributeList(names).Get()));
  HV_RETURN_CODE_IF(!values, E_FAIL);
  for (std::size_t i = kNameIndex; i < names.size(); ++i) {
    ValueColumn& column = columns[names[i]];
    if (!column.table) column = {values, i};
  }

  const FormatSteps steps(*parts, columns);
  const DisplayFormat format(ReadTimeFormat(*store));
  const std::uint64_t rows = values->GetRowCount();
  WString text;  // one for all rows: what is kept of it is copied at its right size
  for (std::uint64_t row = 0; row < rows; ++row) {
    text.clear();
    steps.Append(row, format, text);
    HV_RETURN_IF_FAILED(take(*values, row, values->GetText(row, kNameIndex), text.view()));
  }
  return S_OK;
}

template <class Read>
Result FillTable(IStore* store, IRepresentedByPartsImpl* parts, DisplayNameTable* table,
                 Read read) try {
  HV_RETURN_IF_NULL(table);
  *table = {};
  DisplayNameTable filled;
  const auto readAndKeep = [&](IBulkReader& reader, IContainer* attributes) {
    filled.values = Ref<IValueTable>::Adopt(read(reader, attributes));
    return Ref<IValueTable>(filled.values).Detach();
  };
  HV_RETURN_IF_FAILED(ReadTable(
      store, parts, readAndKeep,
      [&](IValueTable&, std::uint64_t, std::u16string_view name, std::u16string_view displayName) {
        filled.names.emplace_back(name);
        filled.displayNames.emplace_back(displayName);
        return S_OK;
      }));
  *table = std::move(filled);
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace

FormatSteps::FormatSteps(IRepresentedByPartsImpl& parts, const ValueColumns& columns) {
  std::int32_t count = 0;
  (void)parts.GetCount(&count);
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<IRepresentedByPartImpl> part;
    if (Failed(parts.GetItem(i, part.Put()))) continue;
    Step step;
    if (part->IsKind(PartKind::FreeText)) {
      if (Failed(part->GetFreeText(&step.freeText))) continue;
    } else {
      WString key;
      if (Failed(part->GetPropertyKey(&key))) continue;
      const auto found = columns.find(key);
      if (found == columns.end() || !found->second.table) continue;
      step.column = found->second;
    }
    m_steps.push_back(std::move(step));
  }
}

void FormatSteps::Append(std::uint64_t row, const DisplayFormat& format, WString& text) const {
  for (const Step& step : m_steps) {
    if (!step.column.table) {
      text += step.freeText;
      continue;
    }
    try {
      (void)format.AppendCell(*step.column.table, row, step.column.column, text);
    } catch (const Exception&) {
      // A value that the store can't give is left out; the other parts still tell something.
    }
  }
}

Result ReadDisplayNames(IStore* store, IInstance* start, std::u16string_view reference,
                        std::u16string_view filter, IRepresentedByPartsImpl* parts,
                        DisplayNameTable* table) {
  return FillTable(store, parts, table, [&](IBulkReader& reader, IContainer* attributes) {
    return reader.ReadRelated(start, reference, filter, attributes);
  });
}

Result ReadDisplayNames(IStore* store, IInstList* instances, IRepresentedByPartsImpl* parts,
                        DisplayNameTable* table) {
  if (table) *table = {};
  HV_RETURN_IF_NULL(instances);
  return FillTable(store, parts, table, [&](IBulkReader& reader, IContainer* attributes) {
    return reader.ReadInstances(instances, attributes);
  });
}

Result VisitDisplayNames(IStore* store, IInstance* start, std::u16string_view reference,
                         std::u16string_view filter, IRepresentedByPartsImpl* parts,
                         IDisplayNameVisitor& visitor) try {
  return ReadTable(
      store, parts,
      [&](IBulkReader& reader, IContainer* attributes) {
        return reader.ReadRelated(start, reference, filter, attributes);
      },
      [&](IValueTable& values, std::uint64_t row, std::u16string_view name,
          std::u16string_view displayName) {
        return visitor.OnRow(values, row, name, displayName);
      });
}
HV_CATCH_RETURN()

}  // namespace hv::vex
