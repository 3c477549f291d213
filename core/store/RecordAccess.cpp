#include "core/store/RecordAccess.h"

#include <string>
#include <utility>

#include "core/store/memory/Failure.h"
#include "core/store/memory/InMemoryValues.h"

namespace hv::vex::engine {

SelectedColumns RecordStore::SelectColumns(const BoundQuery& query,
                                           std::span<const std::int32_t> attributes) const {
  SelectedColumns selected;
  selected.ids = Select(query);
  selected.blocks = ReadColumns(query.entity, selected.ids, attributes);
  return selected;
}

std::vector<InstanceAttribute> RecordStore::InstanceAttributesOf(RecordRef record) const {
  if (!Exists(record)) FailAt(*this, record, errc::kInstanceGone, {u"there is no such record"});
  std::vector<InstanceAttribute> attributes;
  const RecordId ids[] = {record.id};
  for (RecordInstanceAttribute& one : ReadInstanceAttributes(record.entity, ids)) {
    attributes.push_back(std::move(one.attribute));
  }
  return attributes;
}

void FailAt(const RecordStore& store, RecordRef record, std::int32_t code,
            std::initializer_list<std::u16string_view> parts) {
  std::u16string text;
  for (const std::u16string_view part : parts) text += part;
  Fail(code, {store.GetModel()->At(record.entity).name, u":", DecimalText(record.id), u": ", text});
}

void FailModelChanged() {
  Fail(errc::kNotSupported, {u"the store's data model has changed: it must be opened anew"});
}

const Attribute& AttributeOf(const Model& model, EntityId entity, std::int32_t attribute) {
  const auto& attributes = model.At(entity).attributes;
  if (attribute < 0 || static_cast<std::size_t>(attribute) >= attributes.size()) {
    Fail(errc::kUnknownName,
         {model.At(entity).name, u" has no attribute with the index ", DecimalText(attribute)});
  }
  return attributes[static_cast<std::size_t>(attribute)];
}

const Relation& RelationOf(const Model& model, EntityId entity, std::int32_t relation) {
  const auto& relations = model.At(entity).relations;
  if (relation < 0 || static_cast<std::size_t>(relation) >= relations.size()) {
    Fail(errc::kUnknownName,
         {model.At(entity).name, u" has no relation with the index ", DecimalText(relation)});
  }
  return relations[static_cast<std::size_t>(relation)];
}

std::unique_ptr<ValueSource> OpenParameters(const RecordStore& store, RecordRef localColumn) {
  const Entity& entity = store.GetModel()->At(localColumn.entity);
  if (store.GetModel()->BaseNameOf(localColumn.entity) != u"aolocalcolumn") return nullptr;
  const std::int32_t representation = entity.FindBaseAttribute(u"sequence_representation");
  const std::int32_t parameters = entity.FindBaseAttribute(u"generation_parameters");
  if (representation == kNone || parameters == kNone) return nullptr;
  const Value kind = store.ReadValue(localColumn, representation);
  const auto* number = std::get_if<Value::Integers>(&kind.data);
  // Constant, linear and saw.
  if (number == nullptr || number->empty() || number->front() < 1 || number->front() > 3) {
    return nullptr;
  }
  const Value value = store.ReadValue(localColumn, parameters);
  return value.IsSet() ? InMemoryValues::Open(InMemoryValues::FromValue(value)) : nullptr;
}

void CheckPut(const RecordStore& store, RecordRef localColumn, ColumnPart part, OdsType type,
              std::uint64_t count, std::uint64_t first, const Value& values) {
  if (store.GetModel()->BaseNameOf(localColumn.entity) != u"aolocalcolumn") {
    FailAt(store, localColumn, errc::kNotSupported, {u"only local columns have values"});
  }
  if (part == ColumnPart::Flags) {
    type = OdsType::Short;
  } else if (count == 0) {
    type = values.type;
  }
  if (values.type != type) {
    FailAt(store, localColumn, errc::kWrongType,
           {u"the elements there are of type ", NameOfType(type, true)});
  }
  if (first > count || (first < count && values.Count() > count - first)) {
    FailAt(store, localColumn, errc::kInvalidArgument,
           {u"there are only ", DecimalText(static_cast<std::int64_t>(count)), u" elements"});
  }
}

}  // namespace hv::vex::engine
