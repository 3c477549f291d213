#include "query/files/ColumnLayout.h"

#include <functional>

#include "query/files/QueryDocument.h"
#include "store/core/IContainer.h"
#include "store/core/IInstList.h"

namespace hv::vex::querydoc {

namespace {

constexpr std::u16string_view kReturnTypes = u"returntype_configs";
constexpr std::u16string_view kColumns = u"columns";

std::int32_t NumberAt(IContainer& values, std::u16string_view name) {
  return static_cast<std::int32_t>(values.GetInteger64(name, 0));
}

void ForEachRelated(IInstance& instance, std::u16string_view reference,
                    const std::function<void(IInstance& part, IContainer& values)>& take) {
  const auto list = Ref<IInstList>::Adopt(instance.GetRelated(reference));
  while (const auto next = Ref<IInstance>::Adopt(list->Next())) {
    take(*next, *next.As<IContainer>());
  }
}

}  // namespace

void SaveColumns(const std::vector<StoredReturnType>& configuration, IInstance& manager) {
  const auto stored = Ref<IInstance>::Adopt(manager.CreateRelated(kColumnConfigs));
  for (const StoredReturnType& returnType : configuration) {
    const auto part = Ref<IInstance>::Adopt(stored->CreateRelated(kReturnTypes));
    const Ref<IContainer> values = part.As<IContainer>();
    values->SetString(u"returntype_name", returnType.returnTypeName);
    values->SetInteger(u"first_col_width", returnType.firstColumnWidth);
    values->SetBoolean(u"automatic_columns", returnType.automaticColumns ? 1 : 0);
    for (const StoredColumn& column : returnType.columns) {
      const auto place = Ref<IInstance>::Adopt(part->CreateRelated(kColumns));
      const Ref<IContainer> fields = place.As<IContainer>();
      fields->SetString(u"type_name", column.typeName);
      fields->SetString(u"property", column.property);
      fields->SetInteger(u"width", column.width);
    }
  }
}

std::vector<StoredReturnType> LoadColumns(IInstance& stored) {
  std::vector<StoredReturnType> configuration;
  ForEachRelated(stored, kReturnTypes, [&](IInstance& part, IContainer& values) {
    StoredReturnType& returnType = configuration.emplace_back();
    values.GetString(returnType.returnTypeName, u"returntype_name");
    returnType.firstColumnWidth = NumberAt(values, u"first_col_width");
    returnType.automaticColumns = values.GetBoolean(u"automatic_columns", 0) != 0;
    ForEachRelated(part, kColumns, [&](IInstance&, IContainer& fields) {
      StoredColumn& column = returnType.columns.emplace_back();
      fields.GetString(column.typeName, u"type_name");
      fields.GetString(column.property, u"property");
      column.width = NumberAt(fields, u"width");
    });
  });
  return configuration;
}

}  // namespace hv::vex::querydoc
