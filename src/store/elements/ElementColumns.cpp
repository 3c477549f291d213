// store/elements/ElementColumns.cpp - properties of many elements, read with one call to the
// engine.
#include "store/elements/ElementColumns.h"

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "automation/DispatchError.h"
#include "automation/Guards.h"
#include "automation/MessageFormat.h"
#include "elements/ValueVariant.h"
#include "store/core/CoreLibrary.h"
#include "store/core/IAttribute.h"
#include "store/core/IBulkReader.h"
#include "store/core/IContainer.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"
#include "store/elements/IStoreElementImpl.h"

namespace hv::vex {

namespace {

Result InstancesOf(IStoreElementsImpl& elements, Ref<IInstList>* instances) {
  if (const auto results = QueryRef<IDataStoreResultCollectionImpl>(&elements)) {
    return results->GetList(instances->Put());
  }
  *instances = CreateEngineInstList();
  std::int32_t count = 0;
  HV_RETURN_IF_FAILED(elements.GetCount(&count));
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<easyImpl::IVEXElementImpl> element;
    HV_RETURN_IF_FAILED(elements.GetItem(i, element.Put()));
    const auto own = element.As<IStoreElementImpl>();
    HV_RETURN_CODE_IF(!own, E_UNEXPECTED);
    (*instances)->Append(own->GetCoreInstance());
  }
  return S_OK;
}

Ref<IContainer> ListOf(std::span<const WString> names) {
  Ref<IContainer> list = CreateEngineContainer();
  list->SetType(eString);
  const auto texts = Ref<IAttribute>::Adopt(list->GetAttribute(u""));
  for (std::size_t i = 0; i < names.size(); ++i) texts->SetText(i, names[i]);
  return list;
}

/// What was asked for: one name or several.
struct Request {
  std::vector<WString> names;
  bool isOne = false;
};

Result ReadRequest(const Variant& properties, Request* request) {
  const Variant& given = properties.Dereferenced();
  request->isOne = given.Is(VT_BSTR);
  const bool isList = given.Is(VT_ARRAY | VT_VARIANT);
  const std::span<const Variant> items = isList ? std::span(given.AsArray()) : std::span(&given, 1);
  for (const Variant& item : items) {
    HV_RETURN_CODE_IF(!item.Dereferenced().Is(VT_BSTR), DISP_E_TYPEMISMATCH);
    request->names.push_back(item.Dereferenced().AsText());
  }
  return S_OK;
}

/// Null for a name that isn't one of a property.
/// \param read  `IValueTable*(IContainer*)`
template <class Read>
Ref<IValueTable> ReadTable(std::span<const WString> names, Read read) {
  try {
    auto table = Ref<IValueTable>::Adopt(read(ListOf(names).Get()));
    for (std::size_t i = 0; table && i < names.size() && table->GetRowCount() > 0; ++i) {
      if (!IsPropertyType(table->GetColumnType(i))) table.Reset();
    }
    return table;
  } catch (const Exception& exception) {
    if (exception.code != errc::kUnknownName) throw;
    return {};
  }
}

/// The first name that isn't one of a property.
template <class Read>
WString FindUnknown(std::span<const WString> names, Read read) {
  for (const WString& name : names) {
    if (!ReadTable(std::span(&name, 1), read)) return name;
  }
  return {};
}

/// The columns of a table, or as many empty ones if there is none.
Result TakeColumns(IValueTable* table, const Request& request, Variant* columns) {
  const std::uint64_t rows = table ? table->GetRowCount() : 0;
  std::vector<Variant> lists;
  for (std::size_t column = 0; column < request.names.size(); ++column) {
    std::vector<Variant> values(rows);
    for (std::uint64_t row = 0; row < rows; ++row) {
      ScalarValue value;
      table->ReadScalar(row, column, &value);
      HV_RETURN_IF_FAILED(easyImpl::VariantOf(value, &values[row]));
    }
    lists.push_back(Variant::Array(std::move(values)));
  }
  *columns = request.isOne ? std::move(lists.front()) : Variant::Array(std::move(lists));
  return S_OK;
}

}  // namespace

Result ReadElementColumns(IStoreElementsImpl& elements, const Variant& properties, Variant* columns,
                          std::optional<WString>* unknown) try {
  HV_RETURN_CODE_IF(!columns || !unknown, E_POINTER);
  columns->Clear();
  unknown->reset();
  Request request;
  HV_RETURN_IF_FAILED(ReadRequest(properties, &request));
  Ref<IInstList> instances;
  HV_RETURN_IF_FAILED(InstancesOf(elements, &instances));
  const auto first = Ref<IInstance>::Adopt(instances ? instances->GetInstance(0) : nullptr);
  HV_RETURN_CODE_IF(!first || request.names.empty(), TakeColumns(nullptr, request, columns));
  const auto store = Ref<IStore>::Adopt(first->GetStore());
  const auto reader = QueryRef<IBulkReader>(store.Get());
  HV_RETURN_CODE_IF(!reader, E_NOTIMPL);
  const auto read = [&](IContainer* names) {
    return reader->ReadInstances(instances.Get(), names);
  };
  const Ref<IValueTable> table = ReadTable(request.names, read);
  if (table) return TakeColumns(table.Get(), request, columns);
  *unknown = FindUnknown(request.names, read);
  return E_INVALIDARG;
}
HV_CATCH_RETURN()

Result ReadQueryColumns(IStore& store, std::u16string_view queryText, std::uint64_t limit,
                        const Variant& properties, Variant* columns,
                        std::optional<WString>* unknown, Ref<IInstList>* hits, bool* isCut) try {
  HV_RETURN_CODE_IF(!columns || !unknown || !hits || !isCut, E_POINTER);
  columns->Clear();
  unknown->reset();
  *isCut = false;
  Request request;
  HV_RETURN_IF_FAILED(ReadRequest(properties, &request));
  const auto reader = QueryRef<IBulkReader>(&store);
  HV_RETURN_CODE_IF(!reader, E_NOTIMPL);
  const auto read = [&](IContainer* names) { return reader->ReadQuery(queryText, names); };
  const Ref<IValueTable> table = ReadTable(request.names, read);
  if (!table) {
    // The query is run once more, and not for each name.
    const auto found =
        Ref<IInstList>::Adopt(Ref<IValueTable>::Adopt(read(ListOf({}).Get()))->GetInstances());
    *unknown = FindUnknown(request.names, [&](IContainer* names) {
      return reader->ReadInstances(found.Get(), names);
    });
    return E_INVALIDARG;
  }
  *hits = Ref<IInstList>::Adopt(table->GetInstances());
  *isCut = table->GetRowCount() > limit;
  if (*isCut) (*hits)->Truncate(limit);
  return TakeColumns(table.Get(), request, columns);
}
HV_CATCH_RETURN()

void RaiseUnknownProperty(const WString& name) {
  constexpr std::int32_t kText = 2105;
  automation::ThrowDispatchError(kText, automation::FormatTableMessage(kText, name));
}

}  // namespace hv::vex
