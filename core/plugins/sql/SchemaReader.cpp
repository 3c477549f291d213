// core/plugins/sql/SchemaReader.cpp - the model of a database, this system's own or another tool's.
#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <set>

#include "core/model/BaseModel.h"
#include "core/model/ModelBuilder.h"
#include "core/plugins/sql/Layout.h"
#include "core/plugins/sql/TextKey.h"
#include "core/store/memory/Failure.h"

namespace hv::vex::engine::sql {

std::int64_t NumberOfBase(const Model& model, EntityId entity) {
  const BaseElement* base =
      FindBaseElement(model.BaseNameOf(entity), std::max(model.BaseVersion(), kOldestBaseVersion));
  return base == nullptr ? 0 : base->number;
}

namespace {

struct AttributeRow {
  std::int64_t aid = 0, number = 0;
  std::u16string name, baseName, inverse, enumeration;
  std::optional<std::int64_t> target;
  std::int64_t unit = 0, type = 0, length = 0, flags = 0;
  std::string column, key;
};

struct RelationRow {
  std::int64_t aid = 0, number = 0, target = 0;
  std::u16string name, baseName, inverse;
  std::optional<std::int32_t> minOccurs, maxOccurs;
  bool isDeclared = true;
  RelationPlace place;
};

struct EntityRow {
  std::int64_t aid = 0, baseNumber = 0;
  std::u16string name, baseName;
  std::string table;
};

/// Rows of a system table whose columns are found by name, in any case; those it doesn't have are
/// null.
class SystemTable final {
 public:
  SystemTable(Connection& connection, const std::string& table,
              std::initializer_list<const char*> columns, const char* order)
      : m_run(connection, Statement(connection, table, columns, order)) {}

  bool Next() { return m_run->Step(); }
  std::int64_t Integer(int column) const { return m_run->Integer(column); }
  bool IsNull(int column) const { return m_run->IsNull(column); }
  std::u16string Text(int column) const { return FromStored(m_run->Text(column)); }
  /// A name of the database; other tools write empty texts and the word NULL for none.
  std::string Name(const Dialect& dialect, int column) const {
    const std::string_view name = m_run->Text(column);
    return name.empty() || name == "NULL" ? std::string() : dialect.Quote(name);
  }

 private:
  static std::string Statement(Connection& connection, const std::string& table,
                               std::initializer_list<const char*> columns, const char* order) {
    std::set<std::string> there;
    Run run(connection, connection.GetDialect().ColumnsOf());
    run.Add(std::string_view(table));
    while (run->Step()) {
      std::string name(run->Text(0));
      for (char& c : name) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
      there.insert(name);
    }
    std::string sql = "SELECT ";
    for (const char* column : columns) {
      if (sql.size() > 7) sql += ",";
      sql += there.count(column) != 0 ? connection.GetDialect().Quote(column) : "NULL";
    }
    return sql + " FROM " + table + " ORDER BY " + order;
  }
  Run m_run;
};

class SchemaReader final {
 public:
  SchemaReader(Connection& connection, std::u16string_view name)
      : m_connection(connection), m_dialect(connection.GetDialect()), m_name(name) {}

  OpenedSchema Read() {
    for (const char* table : {"SVCENT", "SVCATTR"}) {
      if (!HasTable(table)) {
        FailFile(
            {u"the database holds no measurement data (it has no table ", FromStored(table), u")"});
      }
    }
    ReadMeta();
    ReadEntities();
    ReadAttributes();
    m_result.layout.isOwn ? ReadOwnRelations() : ReadForeignRelations();
    if (m_result.layout.isOwn) ReadIndexes();
    Build();
    Place();
    if (HasTable("SVCVAL")) {
      Warn({u"values of local columns in the table SVCVAL can't be read"});
    }
    return std::move(m_result);
  }

 private:
  [[noreturn]] void FailFile(std::initializer_list<std::u16string_view> parts) const {
    std::u16string text;
    for (const auto part : parts) text += part;
    Fail(errc::kBadFile, {m_name, u": ", text});
  }
  void Warn(std::initializer_list<std::u16string_view> parts) {
    std::u16string text;
    for (const auto part : parts) text += part;
    m_result.warnings.push_back(std::move(text));
  }
  bool HasTable(std::string_view name) {
    Run run(m_connection, m_dialect.TableExists());
    run.Add(name);
    return run->Step();
  }
  const EntityRow* EntityOf(std::int64_t aid) const {
    const auto found = std::find_if(m_entities.begin(), m_entities.end(),
                                    [aid](const EntityRow& row) { return row.aid == aid; });
    return found == m_entities.end() ? nullptr : &*found;
  }

  void ReadMeta();
  void ReadEntities();
  void ReadAttributes();
  void ReadOwnRelations();
  void ReadForeignRelations();
  void ReadForeignPairs();
  RelationPlace ForeignPairs(const EntityRow& source, const EntityRow& target,
                             const std::string& table, std::u16string_view name);
  void Build();
  void AddEnumerations(ModelBuilder& builder);
  void AddEntity(ModelBuilder& builder, const EntityRow& entity);
  void AddAttribute(ModelBuilder& builder, const AttributeRow& row);
  void Place();
  void PlaceAttributes(const Entity& entity, EntityPlace& place);
  void PlaceRelations(const Entity& entity, EntityPlace& place);
  void ReadIndexes();
  /// The index that begins with that column of the table, or empty.
  std::string IndexOver(const EntityPlace& place, const std::string& column) const;

  Connection& m_connection;
  const Dialect& m_dialect;
  std::u16string_view m_name;
  OpenedSchema m_result;
  std::u16string m_baseModel = u"asam30";
  bool m_hasBaseModel = true;
  std::vector<EntityRow> m_entities;
  std::vector<AttributeRow> m_attributes;
  std::vector<RelationRow> m_relations;
  std::set<std::pair<std::string, std::string>> m_indexes;  // table, name
};

void SchemaReader::ReadMeta() {
  m_result.layout.isOwn = HasTable(kMetaTable);
  if (!m_result.layout.isOwn) return;
  int version = 0;
  Run run(m_connection, "SELECT KEY, VALUE FROM SF_META ORDER BY rowid");
  while (run->Step()) {
    const std::string key(run->Text(0));
    const std::string_view value = run->Text(1);
    if (key == "schema_version")
      std::from_chars(value.data(), value.data() + value.size(), version);
    if (key == "base_model") m_baseModel = FromStored(value);
    if (key == "has_base_model") m_hasBaseModel = value != "0";
    if (key.starts_with("context:")) {
      m_result.contextValues.emplace_back(FromStored(key.substr(8)), FromStored(value));
    }
  }
  m_result.version = version;
  if (version < 1 || version > kSchemaVersion) {
    FailFile({u"the database has schema version ", DecimalText(version),
              u"; this program reads version 1 to ", DecimalText(kSchemaVersion)});
  }
}

void SchemaReader::ReadEntities() {
  SystemTable table(m_connection, "SVCENT", {"AID", "ANAME", "BID", "DBTNAME", "SF_BNAME"}, "AID");
  while (table.Next()) {
    EntityRow row{table.Integer(0), table.Integer(2), table.Text(1), table.Text(4),
                  table.Name(m_dialect, 3)};
    if (row.table.empty()) {
      Warn({u"element ", row.name, u" has no table and is left out"});
      continue;
    }
    if (!HasTable(BareName(row.table))) {
      FailFile({u"the table ", FromStored(row.table), u" of element ", row.name, u" is missing"});
    }
    if (row.baseName.empty() && m_hasBaseModel) {
      for (const BaseElement& base : BaseElements()) {
        if (base.number == row.baseNumber) row.baseName = base.name;
      }
    }
    m_entities.push_back(std::move(row));
  }
}

void SchemaReader::ReadAttributes() {
  SystemTable table(m_connection, "SVCATTR",
                    {"AID", "ATTRNR", "AANAME", "BANAME", "FAID", "FUNIT", "ADTYPE", "AFLEN",
                     "DBCNAME", "INVNAME", "FLAG", "ENUMNAME", "SF_KEYCOL"},
                    "AID, ATTRNR");
  while (table.Next()) {
    AttributeRow row;
    row.aid = table.Integer(0);
    row.number = table.Integer(1);
    row.name = table.Text(2);
    row.baseName = table.Text(3);
    if (!table.IsNull(4)) row.target = table.Integer(4);
    row.unit = table.Integer(5);
    row.type = table.Integer(6);
    row.length = table.Integer(7);
    row.column = table.Name(m_dialect, 8);
    row.inverse = table.Text(9);
    row.flags = table.Integer(10);
    row.enumeration = table.Text(11);
    row.key = table.Name(m_dialect, 12);
    if (EntityOf(row.aid) != nullptr) m_attributes.push_back(std::move(row));
  }
}

void SchemaReader::ReadOwnRelations() {
  SystemTable table(m_connection, kRelationTable,
                    {"AID", "RNAME", "MEMBERNR", "FAID", "BANAME", "MINOCC", "MAXOCC", "INVNAME",
                     "DECLARED", "KIND", "DBTNAME", "DBCNAME", "THERE", "POSCOL", "INVPOSCOL"},
                    "AID, MEMBERNR");
  while (table.Next()) {
    RelationRow row;
    row.aid = table.Integer(0);
    row.name = table.Text(1);
    row.number = table.Integer(2);
    row.target = table.Integer(3);
    row.baseName = table.Text(4);
    row.minOccurs = static_cast<std::int32_t>(table.Integer(5));
    row.maxOccurs = static_cast<std::int32_t>(table.Integer(6));
    row.inverse = table.Text(7);
    row.isDeclared = table.Integer(8) != 0;
    constexpr std::int64_t kLastKind = static_cast<std::int64_t>(RelationPlace::Kind::Nowhere);
    row.place.kind =
        static_cast<RelationPlace::Kind>(std::clamp<std::int64_t>(table.Integer(9), 0, kLastKind));
    row.place.table = table.Name(m_dialect, 10);
    row.place.column = table.Name(m_dialect, 11);
    row.place.there = table.Name(m_dialect, 12);
    row.place.position = table.Name(m_dialect, 13);
    row.place.otherPosition = table.Name(m_dialect, 14);
    m_relations.push_back(std::move(row));
  }
}

void SchemaReader::ReadIndexes() {
  Run run(m_connection, m_dialect.Indexes());
  while (run->Step()) m_indexes.emplace(run->Text(1), run->Text(0));
}

std::string SchemaReader::IndexOver(const EntityPlace& place, const std::string& column) const {
  std::string name = IndexName(m_dialect, place.table, column);
  return m_indexes.count({BareName(place.table), BareName(name)}) != 0 ? name : std::string();
}

void SchemaReader::ReadForeignRelations() {
  for (const AttributeRow& attribute : m_attributes) {
    if (!attribute.target) continue;
    const EntityRow* target = EntityOf(*attribute.target);
    if (target == nullptr) {
      Warn({u"relation ", attribute.name, u" leads to an element that isn't there"});
      continue;
    }
    RelationRow row;
    row.aid = attribute.aid;
    row.number = attribute.number;
    row.target = *attribute.target;
    row.name = attribute.name;
    row.baseName = attribute.baseName;
    row.maxOccurs = attribute.column.empty() ? kMany : 1;
    row.minOccurs = (attribute.flags & 2) != 0 ? 1 : 0;
    // Some tools write the referenced column there, so only a relation's name counts.
    const bool isRelation =
        std::any_of(m_attributes.begin(), m_attributes.end(), [&](const AttributeRow& other) {
          return other.aid == target->aid && other.target && other.name == attribute.inverse;
        });
    if (isRelation) row.inverse = attribute.inverse;
    if (!attribute.column.empty()) {
      row.place.kind = RelationPlace::Kind::Own;
      row.place.column = attribute.column;
    }
    m_relations.push_back(std::move(row));
  }
  if (HasTable("SVCREF")) ReadForeignPairs();
}

void SchemaReader::ReadForeignPairs() {
  SystemTable table(m_connection, "SVCREF",
                    {"AID1", "AID2", "REFNAME", "DBTNAME", "INVNAME", "BANAME", "INVBANAME"},
                    "AID1, AID2, REFNAME");
  while (table.Next()) {
    const EntityRow* source = EntityOf(table.Integer(0));
    const EntityRow* target = EntityOf(table.Integer(1));
    const std::string pairs = table.Name(m_dialect, 3);
    if (source == nullptr || target == nullptr || pairs.empty() || !HasTable(BareName(pairs))) {
      Warn({u"relation ", table.Text(2), u" has no table and is left out"});
      continue;
    }
    RelationRow row;
    row.aid = source->aid;
    row.target = target->aid;
    row.name = table.Text(2);
    row.number = 1'000'000 + static_cast<std::int64_t>(m_relations.size());
    row.baseName = table.Text(5);
    row.inverse = table.Text(4);
    row.minOccurs = 0;
    row.maxOccurs = kMany;
    row.place = ForeignPairs(*source, *target, pairs, row.name);
    RelationRow back = row;
    m_relations.push_back(row);
    if (row.inverse.empty() || (row.inverse == row.name && row.aid == row.target)) continue;
    std::swap(back.aid, back.target);
    std::swap(back.name, back.inverse);
    std::swap(back.place.column, back.place.there);
    back.baseName = table.Text(6);
    m_relations.push_back(std::move(back));
  }
}

/// The columns are named like the id columns; where they can't be, they stand in their order.
RelationPlace SchemaReader::ForeignPairs(const EntityRow& source, const EntityRow& target,
                                         const std::string& table, std::u16string_view name) {
  RelationPlace place;
  place.kind = RelationPlace::Kind::Pairs;
  place.table = table;
  const auto idOf = [&](const EntityRow& entity) {
    for (const AttributeRow& row : m_attributes) {
      if (row.aid == entity.aid && row.baseName == u"id") return row.column;
    }
    return std::string();
  };
  std::vector<std::string> columns;
  Run run(m_connection, m_dialect.ColumnsOf());
  const std::string bare = BareName(table);
  run.Add(bare);
  while (run->Step()) {
    const std::string quoted = m_dialect.Quote(run->Text(0));
    if (quoted == "\"REFNAME\"" || quoted == "\"refname\"") {
      place.name = ToStored(name);
    } else {
      columns.push_back(quoted);
    }
  }
  if (columns.size() < 2) {
    FailFile({u"the table ", FromStored(table), u" has no two columns of ids"});
  }
  const bool isSwapped = idOf(source) != idOf(target) && columns[0] == idOf(target);
  place.column = columns[isSwapped ? 1 : 0];
  place.there = columns[isSwapped ? 0 : 1];
  return place;
}

void SchemaReader::AddEnumerations(ModelBuilder& builder) {
  if (!HasTable("SVCENUM")) return;
  std::vector<Enumeration> enumerations;
  SystemTable table(m_connection, "SVCENUM", {"ENUMID", "ENUMNAME", "ITEM", "ITEMNAME"},
                    m_result.layout.isOwn ? "ENUMID, rowid" : "ENUMID, ITEM");
  while (table.Next()) {
    std::u16string name = table.Text(1);
    if (enumerations.empty() || enumerations.back().name != name) {
      enumerations.push_back({std::move(name), false, {}});
    }
    enumerations.back().items.push_back({table.Text(3), table.Integer(2)});
  }
  for (Enumeration& enumeration : enumerations) builder.AddEnumeration(std::move(enumeration));
}

void SchemaReader::AddAttribute(ModelBuilder& builder, const AttributeRow& row) {
  AttributeSpec spec;
  spec.name = row.name;
  spec.baseAttribute = row.baseName;
  for (int type = 0; type <= static_cast<int>(OdsType::Enum); ++type) {
    for (const bool sequence : {false, true}) {
      const auto ods = static_cast<OdsType>(type);
      if (SeamTypeOf(ods) == 0 && ods != OdsType::Unknown) continue;
      if (NumberOfType(ods, sequence) != row.type || (sequence && type == 0)) continue;
      // Both ways lead to some numbers; the first one met is the type of its own.
      if (!spec.type) spec.type = TypeName{ods, sequence};
    }
  }
  if (m_result.layout.isOwn || row.flags != 0) {
    spec.unique = (row.flags & 1) != 0;
    spec.obligatory = (row.flags & 2) != 0;
    spec.autogenerate = (row.flags & 4) != 0;
  }
  // The length of other tools is often the number of decimals, so it isn't taken over.
  if (m_result.layout.isOwn) spec.length = static_cast<std::int32_t>(row.length);
  spec.enumeration = row.enumeration;
  spec.unit = row.unit;
  builder.AddAttribute(std::move(spec));
}

void SchemaReader::AddEntity(ModelBuilder& builder, const EntityRow& entity) {
  builder.BeginEntity(entity.name, entity.baseName);
  struct Member {
    std::int64_t number;
    const AttributeRow* attribute;
    const RelationRow* relation;
  };
  std::vector<Member> members;
  for (const AttributeRow& row : m_attributes) {
    if (row.aid == entity.aid && !row.target) members.push_back({row.number, &row, nullptr});
  }
  for (const RelationRow& row : m_relations) {
    if (row.aid == entity.aid && row.isDeclared) members.push_back({row.number, nullptr, &row});
  }
  std::stable_sort(members.begin(), members.end(),
                   [](const Member& a, const Member& b) { return a.number < b.number; });
  for (const Member& member : members) {
    if (member.attribute != nullptr) {
      AddAttribute(builder, *member.attribute);
      continue;
    }
    const RelationRow& row = *member.relation;
    const EntityRow* target = EntityOf(row.target);
    if (target == nullptr) FailFile({u"relation ", row.name, u" leads to no element"});
    builder.AddRelation(
        {row.name, target->name, row.baseName, row.minOccurs, row.maxOccurs, row.inverse});
  }
}

void SchemaReader::Build() {
  ModelBuilder builder =
      m_hasBaseModel ? ModelBuilder(m_baseModel) : ModelBuilder::WithoutBaseModel();
  AddEnumerations(builder);
  for (const EntityRow& entity : m_entities) AddEntity(builder, entity);
  m_result.model = builder.Build();
  for (const ModelProblem& problem : builder.Problems()) {
    if (problem.isError || m_result.model == nullptr) FailFile({problem.text});
    if (!m_result.layout.isOwn) Warn({problem.text});
  }
  if (m_result.model == nullptr) FailFile({u"the model can't be read"});
}

void SchemaReader::Place() {
  m_result.layout.entities.resize(m_result.model->Entities().size());
  for (const EntityRow& row : m_entities) {
    const Entity& entity = *m_result.model->Find(row.name);
    EntityPlace& place = m_result.layout.entities[entity.id];
    place.aid = row.aid;
    place.table = row.table;
    place.id = "rowid";
    if (m_result.layout.isOwn) {
      place.sequences = m_dialect.Quote("SF_SEQ_" + std::to_string(row.aid));
      const std::string texts = "SF_TEXT_" + std::to_string(row.aid);
      if (HasTable(texts)) place.texts = m_dialect.Quote(texts);
      Run run(m_connection, m_dialect.ColumnsOf());
      const std::string bare = BareName(row.table);
      run.Add(bare);
      if (run->Step()) place.id = m_dialect.Quote(run->Text(0));
    }
    PlaceAttributes(entity, place);
    place.relations.resize(entity.relations.size());
  }
  for (const EntityRow& row : m_entities) {
    const Entity& entity = *m_result.model->Find(row.name);
    PlaceRelations(entity, m_result.layout.entities[entity.id]);
  }
}

void SchemaReader::PlaceAttributes(const Entity& entity, EntityPlace& place) {
  place.attributes.resize(entity.attributes.size());
  std::map<std::u16string_view, const AttributeRow*> rows;
  for (const AttributeRow& row : m_attributes) {
    if (row.aid == place.aid && !row.target) rows.emplace(row.name, &row);
  }
  const bool isLocalColumn = m_result.model->BaseNameOf(entity.id) == u"aolocalcolumn";
  for (std::size_t a = 0; a < entity.attributes.size(); ++a) {
    const Attribute& attribute = entity.attributes[a];
    AttributePlace& at = place.attributes[a];
    const auto found = rows.find(attribute.name);
    const AttributeRow* row = found == rows.end() ? nullptr : found->second;
    if (static_cast<std::int32_t>(a) == entity.idAttribute) {
      at.kind = AttributePlace::Kind::Id;
      if (!m_result.layout.isOwn && row != nullptr && !row->column.empty()) place.id = row->column;
      at.column = place.id;
    } else if (row != nullptr && !row->column.empty() && !attribute.sequence) {
      at = {AttributePlace::Kind::Column, row->column, row->key};
      at.index = IndexOver(place, at.column);
    } else if (m_result.layout.isOwn) {
      const bool isBulk =
          isLocalColumn && (attribute.baseName == u"values" || attribute.baseName == u"flags");
      at.kind = isBulk ? AttributePlace::Kind::Bulk : AttributePlace::Kind::Sequence;
    }
  }
}

void SchemaReader::PlaceRelations(const Entity& entity, EntityPlace& place) {
  const Model& model = *m_result.model;
  for (const RelationRow& row : m_relations) {
    if (row.aid != place.aid) continue;
    for (std::size_t r = 0; r < entity.relations.size(); ++r) {
      if (entity.relations[r].name == row.name) place.relations[r] = row.place;
    }
  }
  for (RelationPlace& at : place.relations) {
    if (at.kind == RelationPlace::Kind::Own) at.index = IndexOver(place, at.column);
  }
  for (std::size_t r = 0; r < entity.relations.size(); ++r) {
    RelationPlace& at = place.relations[r];
    const auto index = static_cast<std::int32_t>(r);
    at.inverse = MutualInverse(model, entity.id, index);
    at.isSymmetric = at.inverse == index && entity.relations[r].target == entity.id;
    if (at.kind != RelationPlace::Kind::Nowhere || at.inverse == kNone) continue;
    // The other side alone tells of the column.
    const Relation& back =
        model.At(entity.relations[r].target).relations[static_cast<std::size_t>(at.inverse)];
    const std::int64_t aid = m_result.layout.entities[back.source].aid;
    for (const RelationRow& row : m_relations) {
      if (row.aid != aid || row.name != back.name) continue;
      if (row.place.kind != RelationPlace::Kind::Own) continue;
      at.kind = RelationPlace::Kind::Other;
      at.column = row.place.column;
    }
  }
}

}  // namespace

OpenedSchema ReadSchema(Connection& connection, std::u16string_view name) {
  return SchemaReader(connection, name).Read();
}

}  // namespace hv::vex::engine::sql
