// tests/core/objects/ToyPlugin.h - a plug-in with a small store in memory: what the tests of the
// seam objects stand on.
#pragma once

#include <sstream>
#include <string>

#include "core/plugins/Plugin.h"
#include "core/store/memory/MemoryBuilder.h"
#include "store/core/Exception.h"
#include "tests/core/model/ModelText.h"

namespace hv::vex::engine::test {

/// Its model goes by the name "toy & co".
inline std::shared_ptr<const Model> FindToyModel(std::u16string_view name) {
  if (name != u"toy & co") return nullptr;
  return Built(
      "enum Status open=1 passed=2\n"
      "element Bench AoTest\nattr Id base=id\nattr Name base=name\n"
      "element Run AoMeasurement\nattr Id base=id\nattr Name base=name\n"
      "attr Begin base=measurement_begin\nattr Status type=DT_ENUM enum=Status\n"
      "attr Gear type=DT_SHORT\nattr Load type=DT_FLOAT unit=3\n"
      "rel bench to=Bench base=test inverse=runs\n"
      "rel meq to=Channel base=measurement_quantities inverse=run\n"
      "rel sub.matrices to=Sub base=submatrices inverse=run\n"
      "element Channel AoMeasurementQuantity\nattr Id base=id\nattr Name base=name\n"
      "attr datatype base=datatype\nrel columns to=Column base=local_columns inverse=channel\n"
      "element Sub AoSubmatrix\nattr Id base=id\nattr Name base=name\n"
      "attr rows base=number_of_rows\nrel columns to=Column base=local_columns inverse=sub\n"
      "element Column AoLocalColumn\nattr Id base=id\nattr Name base=name\n"
      "attr values base=values\nattr flags base=flags",
      u"asam36");
}

inline MemoryPersistence ToyPersistence() {
  MemoryPersistence persistence;
  persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
  return persistence;
}

/// "<fail>abc</fail>" throws the code -3.
inline std::unique_ptr<RecordStore> OpenToy(const ConnectParameters& parameters) {
  if (const auto code = parameters.Get(u"fail")) {
    throw Exception(-static_cast<std::int32_t>(code->size()), WString(*code));
  }
  constexpr std::tuple<std::u16string_view, RecordId, std::u16string_view, const char*> kRecords[] =
      {{u"Bench", 1, u"Bench A", ""},
       {u"Bench", 2, u"Bench B", ""},
       {u"Run", 10, u"Run up", "Begin=20240517101500 Status=2 Gear=2 bench=1 meq=5 sub.matrices=6"},
       {u"Run", 11, u"Run down", "Gear=3 bench=1"},
       {u"Run", 12, u"idle's end", "Gear=4 bench=2"},
       {u"Channel", 5, u"rpm", "datatype=7"},
       {u"Sub", 6, u"matrix", ""},
       {u"Column", 7, u"rpm", "sub=6 channel=5"}};
  const std::shared_ptr<const Model> model = FindToyModel(u"toy & co");
  MemoryBuilder builder(model);
  for (const auto& [entityName, id, name, members] : kRecords) {
    const Entity& entity = *model->Find(entityName);
    const Row row = *builder.AppendRecord(entity.id, id);
    builder.SetText(entity.id, row, entity.nameAttribute, name);
    std::istringstream words(members);
    for (std::string word; words >> word;) {
      const std::size_t at = word.find('=');
      const std::u16string member = Wide(word.substr(0, at));
      const std::int32_t attribute = entity.FindAttribute(member);
      if (attribute == kNone) {
        builder.AddLink(entity.id, row, entity.FindRelation(member),
                        std::stoll(word.substr(at + 1)));
      } else if (!builder.SetInteger(entity.id, row, attribute, std::stoll(word.substr(at + 1)))) {
        builder.SetText(entity.id, row, attribute, Wide(word.substr(at + 1)));
      }
    }
    if (entityName == u"Column") {
      builder.SetValues(
          entity.id, row,
          InMemoryValues::FromValue({OdsType::Double, true, Value::Reals{1.5, 2.5, 3.5}}));
    }
  }
  return builder.Finish(parameters.IsReadOnly() ? MemoryPersistence{} : ToyPersistence(), nullptr);
}

inline constexpr PluginInfo kToyPlugin{
    .name = u"Toy",
    .fileExtensions = u"toy",
    .open = OpenToy,
    .create = [](const ConnectParameters&,
                 std::shared_ptr<const Model> model) -> std::unique_ptr<RecordStore> {
      return std::make_unique<MemoryStore>(std::move(model), ToyPersistence());
    }};

}  // namespace hv::vex::engine::test
