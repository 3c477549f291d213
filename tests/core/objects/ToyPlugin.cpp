#include "tests/core/objects/ToyPlugin.h"

#include <string>

#include "core/model/ModelBuilder.h"
#include "store/core/Exception.h"

namespace hv::vex::engine::test {
namespace {

AttributeSpec Spec(std::u16string name, std::u16string base) {
  AttributeSpec spec;
  spec.name = std::move(name);
  spec.baseAttribute = std::move(base);
  return spec;
}

AttributeSpec Typed(std::u16string name, OdsType type, std::u16string enumeration = {}) {
  AttributeSpec spec;
  spec.name = std::move(name);
  spec.type = TypeName{type, false};
  spec.enumeration = std::move(enumeration);
  return spec;
}

RelationSpec Rel(std::u16string name, std::u16string refTo, std::u16string base,
                 std::u16string inverse, std::int32_t maximum) {
  RelationSpec spec;
  spec.name = std::move(name);
  spec.refTo = std::move(refTo);
  spec.baseRelation = std::move(base);
  spec.inverseName = std::move(inverse);
  spec.minOccurs = 0;
  spec.maxOccurs = maximum;
  return spec;
}

std::shared_ptr<const Model> MakeModel() {
  ModelBuilder builder(u"asam36");
  builder.AddEnumeration({u"Status", false, {{u"open", 1}, {u"passed", 2}}});
  builder.BeginEntity(u"Bench", u"AoTest");
  builder.AddAttribute(Spec(u"Id", u"id"));
  builder.AddAttribute(Spec(u"Name", u"name"));
  builder.AddRelation(Rel(u"runs", u"Run", u"children", u"bench", kMany));
  builder.BeginEntity(u"Run", u"AoMeasurement");
  builder.AddAttribute(Spec(u"Id", u"id"));
  builder.AddAttribute(Spec(u"Name", u"name"));
  builder.AddAttribute(Spec(u"Begin", u"measurement_begin"));
  builder.AddAttribute(Typed(u"Status", OdsType::Enum, u"Status"));
  builder.AddAttribute(Typed(u"Gear", OdsType::Short));
  AttributeSpec load = Typed(u"Load", OdsType::Float);
  load.unit = 3;
  builder.AddAttribute(std::move(load));
  builder.AddRelation(Rel(u"bench", u"Bench", u"test", u"runs", 1));
  builder.AddRelation(Rel(u"meq", u"Channel", u"measurement_quantities", u"run", kMany));
  builder.AddRelation(Rel(u"sub.matrices", u"Sub", u"submatrices", u"run", kMany));
  builder.BeginEntity(u"Channel", u"AoMeasurementQuantity");
  builder.AddAttribute(Spec(u"Id", u"id"));
  builder.AddAttribute(Spec(u"Name", u"name"));
  builder.AddAttribute(Spec(u"datatype", u"datatype"));
  builder.AddRelation(Rel(u"run", u"Run", u"measurement", u"meq", 1));
  builder.AddRelation(Rel(u"columns", u"Column", u"local_columns", u"channel", kMany));
  builder.BeginEntity(u"Sub", u"AoSubmatrix");
  builder.AddAttribute(Spec(u"Id", u"id"));
  builder.AddAttribute(Spec(u"Name", u"name"));
  builder.AddAttribute(Spec(u"rows", u"number_of_rows"));
  builder.AddRelation(Rel(u"run", u"Run", u"measurement", u"sub.matrices", 1));
  builder.AddRelation(Rel(u"columns", u"Column", u"local_columns", u"sub", kMany));
  builder.BeginEntity(u"Column", u"AoLocalColumn");
  builder.AddAttribute(Spec(u"Id", u"id"));
  builder.AddAttribute(Spec(u"Name", u"name"));
  builder.AddAttribute(Spec(u"values", u"values"));
  builder.AddAttribute(Spec(u"flags", u"flags"));
  builder.AddRelation(Rel(u"sub", u"Sub", u"submatrix", u"columns", 1));
  builder.AddRelation(Rel(u"channel", u"Channel", u"measurement_quantity", u"columns", 1));
  return builder.Build();
}

struct Named {
  std::u16string_view entity;
  RecordId id;
  std::u16string_view name;
};

constexpr Named kRecords[] = {
    {u"Bench", 1, u"Bench A"}, {u"Bench", 2, u"Bench B"},   {u"Run", 10, u"Run up"},
    {u"Run", 11, u"Run down"}, {u"Run", 12, u"idle's end"}, {u"Channel", 5, u"rpm"},
    {u"Sub", 6, u"matrix"},    {u"Column", 7, u"rpm"},
};

std::unique_ptr<RecordStore> OpenToy(const ConnectParameters& parameters) {
  if (const auto code = parameters.Get(u"fail")) {
    throw Exception(-static_cast<std::int32_t>(code->size()), WString(*code));
  }
  const std::shared_ptr<const Model> model = MakeModel();
  MemoryBuilder builder(model);
  for (const Named& record : kRecords) {
    const Entity& entity = *model->Find(record.entity);
    const Row row = *builder.AppendRecord(entity.id, record.id);
    builder.SetText(entity.id, row, entity.nameAttribute, record.name);
    const auto link = [&](std::u16string_view relation, RecordId target) {
      builder.AddLink(entity.id, row, entity.FindRelation(relation), target);
    };
    if (record.entity == u"Run") {
      link(u"bench", record.id == 12 ? 2 : 1);
      builder.SetInteger(entity.id, row, entity.FindAttribute(u"Gear"), record.id - 8);
      if (record.id == 10) {
        builder.SetText(entity.id, row, entity.FindAttribute(u"Begin"), u"20240517101500");
        builder.SetInteger(entity.id, row, entity.FindAttribute(u"Status"), 2);
        link(u"meq", 5);
        link(u"sub.matrices", 6);
      }
    }
    if (record.entity == u"Column") {
      link(u"sub", 6);
      link(u"channel", 5);
      Value values{OdsType::Double, true, Value::Reals{1.5, 2.5, 3.5}};
      builder.SetValues(entity.id, row, InMemoryValues::FromValue(values));
    }
    if (record.entity == u"Channel") {
      builder.SetInteger(entity.id, row, entity.FindAttribute(u"datatype"), 7);
    }
  }
  MemoryPersistence persistence;
  if (!parameters.IsReadOnly()) {
    persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
  }
  return builder.Finish(std::move(persistence), nullptr);
}

std::unique_ptr<RecordStore> CreateToy(const ConnectParameters&,
                                       std::shared_ptr<const Model> model) {
  MemoryPersistence persistence;
  persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
  return std::make_unique<MemoryStore>(std::move(model), std::move(persistence));
}

}  // namespace

constexpr PluginInfo kToyPlugin{
    .name = u"Toy", .fileExtensions = u"toy", .open = OpenToy, .create = CreateToy};

std::shared_ptr<const Model> FindToyModel(std::u16string_view name) {
  return name == u"toy & co" ? MakeModel() : nullptr;
}

}  // namespace hv::vex::engine::test
