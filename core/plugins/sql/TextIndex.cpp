// core/plugins/sql/TextIndex.cpp - one row of folded texts per record.
#include "core/plugins/sql/TextIndex.h"

#include <string>
#include <vector>

#include "core/plugins/sql/TextKey.h"

namespace hv::vex::engine::sql {

bool IsSearchedForWords(const Attribute& attribute, const AttributePlace& place) {
  return place.kind == AttributePlace::Kind::Column && attribute.type == OdsType::String;
}

void IndexTextsOf(Connection& connection, const Model& model, const Layout& layout, EntityId entity,
                  std::span<const RecordId> ids) {
  const EntityPlace& place = layout.entities[entity];
  if (place.texts.empty()) return;
  std::string columns;
  int count = 0;
  for (std::size_t a = 0; a < place.attributes.size(); ++a) {
    const AttributePlace& at = place.attributes[a];
    if (!IsSearchedForWords(model.At(entity).attributes[a], at)) continue;
    columns += ",coalesce(t." + at.key + ",t." + at.column + ")";
    ++count;
  }
  if (count == 0) return;
  const Dialect& dialect = connection.GetDialect();
  Run read(connection, "SELECT t." + place.id + columns + " FROM " + dialect.IdList("i") +
                           std::string(dialect.OrderedJoin()) + place.table + " AS t ON t." +
                           place.id + "=i.id");
  read.AddIds(ids);
  Run remove(connection, "DELETE FROM " + place.texts + " WHERE rowid=?");
  Run add(connection, "INSERT INTO " + place.texts + "(rowid,T) VALUES(?,?)");
  std::u16string all;
  std::string stored;
  while (read->Step()) {
    all.clear();
    for (int c = 1; c <= count; ++c) {
      if (read->IsNull(c)) continue;
      // No word goes from one text into the next.
      if (!all.empty()) all += u'\x1f';
      AppendUtf16(read->Text(c), all);
    }
    const std::int64_t id = read->Integer(0);
    remove->BindInteger(1, id);
    remove.Finish();
    remove->Reset();
    if (all.empty()) continue;
    stored.clear();
    AppendStored(all, stored);
    add->BindInteger(1, id);
    add->BindText(2, stored);
    add.Finish();
    add->Reset();
  }
}

}  // namespace hv::vex::engine::sql
