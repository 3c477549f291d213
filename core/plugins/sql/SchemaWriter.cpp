// core/plugins/sql/SchemaWriter.cpp - tables, indexes and the description of the model.
#include "core/plugins/sql/Layout.h"
#include "core/plugins/sql/TextKey.h"

namespace hv::vex::engine::sql {
namespace {

constexpr const char* kSystemTables = R"(
CREATE TABLE SVCENUM(ENUMID INTEGER NOT NULL, ENUMNAME TEXT NOT NULL, ITEM INTEGER NOT NULL,
  ITEMNAME TEXT, LOCKED INTEGER DEFAULT 1, PRIMARY KEY(ENUMID, ITEM, ITEMNAME));
CREATE TABLE SVCENT(AID INTEGER PRIMARY KEY, ANAME TEXT NOT NULL UNIQUE, BID INTEGER NOT NULL,
  DBTNAME TEXT, SECURITY INTEGER DEFAULT 0, "DESC" TEXT, SF_BNAME TEXT);
CREATE TABLE SVCATTR(AID INTEGER NOT NULL, ATTRNR INTEGER, AANAME TEXT NOT NULL, BANAME TEXT,
  FAID INTEGER, FUNIT INTEGER, ADTYPE INTEGER, AFLEN INTEGER, DBCNAME TEXT,
  ACLREF INTEGER DEFAULT 0, INVNAME TEXT, FLAG INTEGER, ENUMNAME TEXT, "DESC" TEXT, DISPNAME TEXT,
  NOFDEC INTEGER, DEFVALUE TEXT, SF_KEYCOL TEXT, PRIMARY KEY(AID, AANAME));
CREATE TABLE SVCREF(AID1 INTEGER NOT NULL, AID2 INTEGER NOT NULL, REFNAME TEXT NOT NULL,
  DBTNAME TEXT NOT NULL, INVNAME TEXT, BANAME TEXT, INVBANAME TEXT,
  PRIMARY KEY(AID1, AID2, REFNAME));
CREATE TABLE SF_META(KEY TEXT PRIMARY KEY, VALUE TEXT);
CREATE TABLE SF_RELATION(AID INTEGER NOT NULL, RNAME TEXT NOT NULL, MEMBERNR INTEGER NOT NULL,
  FAID INTEGER NOT NULL, BANAME TEXT, MINOCC INTEGER, MAXOCC INTEGER, INVNAME TEXT,
  DECLARED INTEGER NOT NULL, KIND INTEGER NOT NULL, DBTNAME TEXT, DBCNAME TEXT, THERE TEXT,
  POSCOL TEXT, INVPOSCOL TEXT, PRIMARY KEY(AID, RNAME));
CREATE TABLE SF_INSTATTR(SEQ INTEGER PRIMARY KEY, AID INTEGER NOT NULL, IID INTEGER NOT NULL,
  NAME TEXT NOT NULL, NAME_F TEXT, TYPE INTEGER NOT NULL, VALUE, VALUE_F TEXT, UNITID INTEGER,
  UNIQUE(AID, IID, NAME));
CREATE TABLE SF_BULK(SEQ INTEGER PRIMARY KEY AUTOINCREMENT, AID INTEGER NOT NULL,
  IID INTEGER NOT NULL, PART INTEGER NOT NULL, SEG INTEGER NOT NULL, TYPE INTEGER NOT NULL,
  FIRST INTEGER NOT NULL, NVAL INTEGER NOT NULL, DATA BLOB NOT NULL,
  UNIQUE(AID, IID, PART, SEG));
)";

/// Binds a text, or null for an empty one.
void AddText(Run& run, std::u16string_view text, std::vector<std::string>& keep) {
  if (text.empty()) {
    run.AddNull();
    return;
  }
  keep.push_back(ToStored(text));
  run.Add(keep.back());
}

void AddName(Run& run, const std::string& quoted, std::vector<std::string>& keep) {
  if (quoted.empty()) {
    run.AddNull();
    return;
  }
  keep.push_back(BareName(quoted));
  run.Add(keep.back());
}

class SchemaWriter final {
 public:
  SchemaWriter(Connection& connection, const Model& model, const Layout& layout)
      : m_connection(connection),
        m_dialect(connection.GetDialect()),
        m_model(model),
        m_layout(layout) {}

  void Write() {
    m_connection.Execute(kSystemTables);
    WriteMeta();
    WriteEnumerations();
    for (const Entity& entity : m_model.Entities()) {
      if (entity.isBase) continue;
      WriteEntity(entity);
      CreateTable(entity);
      for (std::size_t m = 0; m < entity.members.size(); ++m) WriteMember(entity, m);
    }
  }

 private:
  const EntityPlace& Place(EntityId entity) const { return m_layout.entities[entity]; }

  void WriteMeta() {
    const std::pair<const char*, std::string> kRows[] = {
        {"schema_version", std::to_string(kSchemaVersion)},
        {"base_model", ToStored(m_model.BaseModelVersion())},
        {"has_base_model", m_model.BaseVersion() == 0 ? "0" : "1"},
    };
    for (const auto& [key, value] : kRows) {
      Run(m_connection, "INSERT INTO SF_META VALUES(?,?)")
          .Add(std::string_view(key))
          .Add(value)
          .Finish();
    }
  }

  void WriteEnumerations() {
    std::int64_t number = 0;
    for (const Enumeration& enumeration : m_model.Enumerations()) {
      if (enumeration.isBase) continue;
      ++number;
      const std::string name = ToStored(enumeration.name);
      for (const EnumItem& item : enumeration.items) {
        const std::string itemName = ToStored(item.name);
        Run run(m_connection, "INSERT INTO SVCENUM(ENUMID,ENUMNAME,ITEM,ITEMNAME) VALUES(?,?,?,?)");
        run.Add(number).Add(name).Add(item.value).Add(itemName).Finish();
      }
    }
  }

  void WriteEntity(const Entity& entity);
  void CreateTable(const Entity& entity);
  void WriteMember(const Entity& entity, std::size_t member);
  void WriteAttribute(const Entity& entity, std::size_t member);
  void WriteRelation(const Entity& entity, std::size_t member);
  void WriteLinkRows(const Entity& entity, std::size_t member);
  void CreatePairs(const Entity& entity, const Relation& relation, const RelationPlace& place);

  Connection& m_connection;
  const Dialect& m_dialect;
  const Model& m_model;
  const Layout& m_layout;
};

void SchemaWriter::WriteEntity(const Entity& entity) {
  std::vector<std::string> keep;
  keep.reserve(8);
  Run run(m_connection, "INSERT INTO SVCENT(AID,ANAME,BID,DBTNAME,SF_BNAME) VALUES(?,?,?,?,?)");
  run.Add(Place(entity.id).aid);
  AddText(run, entity.name, keep);
  run.Add(NumberOfBase(m_model, entity.id));
  AddName(run, Place(entity.id).table, keep);
  AddText(run,
          entity.super == kNoEntity ? std::u16string_view()
                                    : std::u16string_view(m_model.At(entity.super).name),
          keep);
  run.Finish();
}

void SchemaWriter::CreateTable(const Entity& entity) {
  const EntityPlace& place = Place(entity.id);
  std::string sql = "CREATE TABLE " + place.table + "(" + m_dialect.IdColumn(place.id);
  for (std::size_t a = 0; a < place.attributes.size(); ++a) {
    const AttributePlace& attribute = place.attributes[a];
    if (attribute.kind != AttributePlace::Kind::Column) continue;
    sql += ", " + attribute.column + " ";
    sql += m_dialect.ColumnType(entity.attributes[a].type);
    if (!attribute.key.empty()) sql += ", " + attribute.key + " TEXT";
  }
  for (std::size_t r = 0; r < place.relations.size(); ++r) {
    const RelationPlace& relation = place.relations[r];
    if (relation.kind != RelationPlace::Kind::Own) continue;
    const EntityPlace& target = Place(entity.relations[r].target);
    sql += ", " + relation.column + " INTEGER REFERENCES " + target.table + "(" + target.id +
           ") ON DELETE SET NULL DEFERRABLE INITIALLY DEFERRED";
    if (!relation.position.empty()) sql += ", " + relation.position + " INTEGER";
  }
  m_connection.Execute(sql + ")");
  m_connection.Execute("CREATE TABLE " + place.sequences +
                       "(IID INTEGER NOT NULL, ATTRNR INTEGER NOT NULL, POS INTEGER NOT NULL,"
                       " VAL, PRIMARY KEY(IID, ATTRNR, POS)) WITHOUT ROWID");
  const std::string texts = m_dialect.CreateTextIndex(place.texts);
  if (!texts.empty()) m_connection.Execute(texts);
}

void SchemaWriter::WriteMember(const Entity& entity, std::size_t member) {
  if (!entity.members[member].isRelation) return WriteAttribute(entity, member);
  WriteRelation(entity, member);
  WriteLinkRows(entity, member);
}

void SchemaWriter::WriteAttribute(const Entity& entity, std::size_t member) {
  constexpr int kUniqueFlag = 1, kObligatoryFlag = 2, kAutogeneratedFlag = 4;
  const std::size_t index = entity.members[member].index;
  const Attribute& attribute = entity.attributes[index];
  const AttributePlace& place = Place(entity.id).attributes[index];
  std::vector<std::string> keep;
  keep.reserve(8);
  Run run(m_connection,
          "INSERT INTO SVCATTR(AID,ATTRNR,AANAME,BANAME,FUNIT,ADTYPE,AFLEN,DBCNAME,FLAG,ENUMNAME,"
          "SF_KEYCOL) VALUES(?,?,?,?,?,?,?,?,?,?,?)");
  run.Add(Place(entity.id).aid).Add(static_cast<std::int64_t>(member) + 1);
  AddText(run, attribute.name, keep);
  AddText(run, attribute.baseName, keep);
  attribute.unit == 0 ? run.AddNull() : run.Add(attribute.unit);
  run.Add(std::int64_t{NumberOfType(attribute.type, attribute.sequence)});
  run.Add(std::int64_t{attribute.length});
  AddName(run, place.column, keep);
  run.Add(std::int64_t{(attribute.unique ? kUniqueFlag : 0) |
                       (attribute.obligatory ? kObligatoryFlag : 0) |
                       (attribute.autogenerate ? kAutogeneratedFlag : 0)});
  AddText(run,
          attribute.enumeration == kNone
              ? std::u16string_view()
              : std::u16string_view(
                    m_model.Enumerations()[static_cast<std::size_t>(attribute.enumeration)].name),
          keep);
  AddName(run, place.key, keep);
  run.Finish();
}

void SchemaWriter::WriteRelation(const Entity& entity, std::size_t member) {
  const std::size_t index = entity.members[member].index;
  const Relation& relation = entity.relations[index];
  const RelationPlace& place = Place(entity.id).relations[index];
  std::vector<std::string> keep;
  keep.reserve(12);
  Run run(m_connection, "INSERT INTO SF_RELATION VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)");
  run.Add(Place(entity.id).aid);
  AddText(run, relation.name, keep);
  run.Add(static_cast<std::int64_t>(member) + 1).Add(Place(relation.target).aid);
  AddText(run, relation.baseName, keep);
  run.Add(std::int64_t{relation.minOccurs}).Add(std::int64_t{relation.maxOccurs});
  AddText(run, relation.inverseName, keep);
  run.Add(std::int64_t{relation.isDeclared}).Add(static_cast<std::int64_t>(place.kind));
  for (const std::string* name :
       {&place.table, &place.column, &place.there, &place.position, &place.otherPosition}) {
    AddName(run, *name, keep);
  }
  run.Finish();
  const bool isFirst = place.inverse == kNone || place.isSymmetric ||
                       std::pair(entity.id, static_cast<std::int32_t>(index)) <
                           std::pair(relation.target, place.inverse);
  if (place.kind == RelationPlace::Kind::Pairs && isFirst) CreatePairs(entity, relation, place);
}

/// What other tools of the convention read.
void SchemaWriter::WriteLinkRows(const Entity& entity, std::size_t member) {
  const std::size_t index = entity.members[member].index;
  const Relation& relation = entity.relations[index];
  const RelationPlace& place = Place(entity.id).relations[index];
  if (place.kind == RelationPlace::Kind::Pairs || !relation.isDeclared) return;
  constexpr std::int64_t kIdType = 8;
  std::vector<std::string> keep;
  keep.reserve(8);
  Run run(m_connection,
          "INSERT OR IGNORE INTO SVCATTR(AID,ATTRNR,AANAME,BANAME,FAID,ADTYPE,DBCNAME,INVNAME,FLAG)"
          " VALUES(?,?,?,?,?,?,?,?,?)");
  run.Add(Place(entity.id).aid).Add(static_cast<std::int64_t>(member) + 1);
  AddText(run, relation.name, keep);
  AddText(run, relation.baseName, keep);
  run.Add(Place(relation.target).aid);
  const bool hasColumn = place.kind == RelationPlace::Kind::Own;
  hasColumn ? run.Add(kIdType) : run.AddNull();
  AddName(run, hasColumn ? place.column : std::string(), keep);
  AddText(run, relation.inverseName, keep);
  run.Add(std::int64_t{relation.minOccurs > 0 ? 2 : 0});
  run.Finish();
}

void SchemaWriter::CreatePairs(const Entity& entity, const Relation& relation,
                               const RelationPlace& place) {
  const std::string name = ToStored(relation.name);
  std::string literal = "'";
  for (const char c : name) literal.append(c == '\'' ? 2 : 1, c);
  literal += "'";
  const auto column = [&](const std::string& quoted, const EntityPlace& to) {
    return quoted + " INTEGER NOT NULL REFERENCES " + to.table + "(" + to.id +
           ") ON DELETE CASCADE DEFERRABLE INITIALLY DEFERRED";
  };
  const EntityPlace& source = Place(entity.id);
  const EntityPlace& target = Place(relation.target);
  m_connection.Execute("CREATE TABLE " + place.table + "(" + column(place.column, source) + ", " +
                       column(place.there, target) + ", REFNAME TEXT NOT NULL DEFAULT " + literal +
                       ", POS INTEGER, INVPOS INTEGER, PRIMARY KEY(" + place.column + ", " +
                       place.there + ", REFNAME))");
  const bool hasInverse = place.inverse != kNone;
  const Relation* back =
      hasInverse ? &m_model.At(relation.target).relations[static_cast<std::size_t>(place.inverse)]
                 : nullptr;
  std::vector<std::string> keep;
  keep.reserve(8);
  Run run(m_connection, "INSERT OR IGNORE INTO SVCREF VALUES(?,?,?,?,?,?,?)");
  run.Add(source.aid).Add(target.aid).Add(name);
  AddName(run, place.table, keep);
  AddText(run, back ? std::u16string_view(back->name) : std::u16string_view(), keep);
  AddText(run, relation.baseName, keep);
  AddText(run, back ? std::u16string_view(back->baseName) : std::u16string_view(), keep);
  run.Finish();
}

/// Texts of people's own words are searched for in them, not compared as a whole; the standard's
/// own numbers tell how values are stored, and nobody looks for those.
bool IsIndexed(const Attribute& attribute) {
  switch (attribute.type) {
    case OdsType::String:
    case OdsType::Date:
      return attribute.baseName != u"description";
    case OdsType::Short:
    case OdsType::Long:
    case OdsType::LongLong:
    case OdsType::Float:
    case OdsType::Double:
      return attribute.baseName.empty();
    default:
      return false;
  }
}

}  // namespace

void CreateSchema(Connection& connection, const Model& model, const Layout& layout) {
  SchemaWriter(connection, model, layout).Write();
}

void WriteContextValues(Connection& connection, const ContextTexts& values) {
  for (const auto& [name, text] : values) {
    const std::string key = "context:" + ToStored(name);
    const std::string value = ToStored(text);
    Run(connection, "INSERT OR REPLACE INTO SF_META VALUES(?,?)").Add(key).Add(value).Finish();
  }
}

void CreateIndexes(Connection& connection, const Model& model, const Layout& layout) {
  const Dialect& dialect = connection.GetDialect();
  const auto create = [&](const std::string& table, const std::string& column,
                          const std::string& parts) {
    connection.Execute("CREATE INDEX IF NOT EXISTS " + IndexName(dialect, table, column) + " ON " +
                       table + "(" + parts + ")");
  };
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    const EntityPlace& place = layout.entities[entity.id];
    for (std::size_t a = 0; a < place.attributes.size(); ++a) {
      const AttributePlace& attribute = place.attributes[a];
      if (attribute.kind != AttributePlace::Kind::Column || !IsIndexed(entity.attributes[a])) {
        continue;
      }
      create(place.table, attribute.column,
             attribute.key.empty() ? attribute.column
                                   : "coalesce(" + attribute.key + "," + attribute.column + ")");
    }
    for (std::size_t r = 0; r < place.relations.size(); ++r) {
      const RelationPlace& relation = place.relations[r];
      if (relation.kind == RelationPlace::Kind::Own) {
        create(place.table, relation.column,
               relation.position.empty()
                   ? relation.column
                   : relation.column + "," + OrderOfLinks(relation, place.id));
      } else if (relation.kind == RelationPlace::Kind::Pairs) {
        create(relation.table, relation.column, relation.column + "," + OrderOfLinks(relation, {}));
        // A relation of one direction is searched from its far end too.
        if (relation.inverse == kNone) create(relation.table, relation.there, relation.there);
      }
    }
  }
  connection.Execute(
      "CREATE INDEX IF NOT EXISTS IX_SF_INSTATTR_NAME ON SF_INSTATTR(AID,coalesce(NAME_F,NAME))");
}

}  // namespace hv::vex::engine::sql
