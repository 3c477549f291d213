// store/elements/ElementColumns.cpp - properties of many elements, read with one call to the
// engine.
#include "store/elements/ElementColumns.h"

#include <cstdint>
#include <utility>

#include "automation/Guards.h"
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

/// Null for a name that isn't one of a property.
Ref<IValueTable> ReadTable(IBulkReader& reader, IInstList& instances,
                           std::span<const WString> properties) {
  const Ref<IContainer> names = CreateEngineContainer();
  names->SetType(eString);
  const auto texts = Ref<IAttribute>::Adopt(names->GetAttribute(u""));
  for (std::size_t i = 0; i < properties.size(); ++i) texts->SetText(i, properties[i]);
  try {
    auto table = Ref<IValueTable>::Adopt(reader.ReadInstances(&instances, names.Get()));
    for (std::size_t i = 0; table && i < properties.size(); ++i) {
      if (!IsPropertyType(table->GetColumnType(i))) table.Reset();
    }
    return table;
  } catch (const Exception& exception) {
    if (exception.code != errc::kUnknownName) throw;
    return {};
  }
}

WString FindUnknown(IBulkReader& reader, IInstList& instances,
                    std::span<const WString> properties) {
  for (const WString& name : properties) {
    if (!ReadTable(reader, instances, std::span(&name, 1))) return name;
  }
  return {};
}

Result ReadNames(const Variant& properties, std::vector<WString>* names) {
  const Variant& given = properties.Dereferenced();
  const bool isList = given.Is(VT_ARRAY | VT_VARIANT);
  const std::span<const Variant> items = isList ? std::span(given.AsArray()) : std::span(&given, 1);
  for (const Variant& item : items) {
    HV_RETURN_CODE_IF(!item.Dereferenced().Is(VT_BSTR), DISP_E_TYPEMISMATCH);
    names->push_back(item.Dereferenced().AsText());
  }
  return S_OK;
}

}  // namespace

Result ReadElementColumns(IStoreElementsImpl& elements, std::span<const WString> properties,
                          std::vector<Variant>* columns, WString* unknown) try {
  HV_RETURN_CODE_IF(!columns || !unknown, E_POINTER);
  columns->clear();
  unknown->clear();
  std::vector<std::vector<Variant>> lists(properties.size());
  Ref<IInstList> instances;
  HV_RETURN_IF_FAILED(InstancesOf(elements, &instances));
  const auto first = Ref<IInstance>::Adopt(instances ? instances->GetInstance(0) : nullptr);
  if (first && !properties.empty()) {
    const auto store = Ref<IStore>::Adopt(first->GetStore());
    const auto reader = QueryRef<IBulkReader>(store.Get());
    HV_RETURN_CODE_IF(!reader, E_NOTIMPL);
    const Ref<IValueTable> table = ReadTable(*reader, *instances, properties);
    if (!table) {
      *unknown = FindUnknown(*reader, *instances, properties);
      return E_INVALIDARG;
    }
    const std::uint64_t rows = table->GetRowCount();
    for (std::size_t column = 0; column < lists.size(); ++column) {
      lists[column].resize(rows);
      for (std::uint64_t row = 0; row < rows; ++row) {
        ScalarValue value;
        table->ReadScalar(row, column, &value);
        HV_RETURN_IF_FAILED(easyImpl::VariantOf(value, &lists[column][row]));
      }
    }
  }
  for (auto& list : lists) columns->push_back(Variant::Array(std::move(list)));
  return S_OK;
}
HV_CATCH_RETURN()

Result ReadElementColumns(IStoreElementsImpl& elements, const Variant& properties, Variant* columns,
                          WString* unknown) try {
  HV_RETURN_CODE_IF(!columns || !unknown, E_POINTER);
  columns->Clear();
  std::vector<WString> names;
  HV_RETURN_IF_FAILED(ReadNames(properties, &names));
  std::vector<Variant> lists;
  HV_RETURN_IF_FAILED(ReadElementColumns(elements, names, &lists, unknown));
  const bool isOne = properties.Dereferenced().Is(VT_BSTR);
  *columns = isOne ? std::move(lists.front()) : Variant::Array(std::move(lists));
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
