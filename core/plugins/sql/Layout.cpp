// core/plugins/sql/Layout.cpp - names and places of a new database.
#include "core/plugins/sql/Layout.h"

#include <set>

#include "core/plugins/sql/TextKey.h"

namespace hv::vex::engine::sql {
namespace {

const Relation& RelationAt(const Model& model, EntityId entity, std::int32_t relation) {
  return model.At(entity).relations[static_cast<std::size_t>(relation)];
}

/// Hands out names of letters, digits and "_" that aren't taken and no words of SQL.
class NameMaker final {
 public:
  explicit NameMaker(const Dialect& dialect) : m_dialect(dialect) {}

  std::string Make(std::u16string_view wanted) {
    std::string name;
    for (const char16_t c : wanted) {
      const bool isLetter = (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
      const bool isDigit = c >= u'0' && c <= u'9';
      if (isDigit && name.empty()) name += '_';
      const char lower = static_cast<char>(c);
      name += !isLetter && !isDigit ? '_' : c >= u'a' ? static_cast<char>(lower - 32) : lower;
    }
    return MakeFrom(name.empty() ? "_" : name);
  }
  /// From a name that consists of such letters already.
  std::string MakeFrom(const std::string& name) {
    std::string free = name;
    if (m_dialect.IsReserved(free)) free += '_';
    for (int number = 2; !m_taken.insert(free).second; ++number) {
      free = name + "_" + std::to_string(number);
    }
    return free;
  }
  std::string Quoted(const std::string& name) const { return m_dialect.Quote(name); }

 private:
  const Dialect& m_dialect;
  std::set<std::string> m_taken;
};

bool IsBulk(const Model& model, const Entity& entity, const Attribute& attribute) {
  return (attribute.baseName == u"values" || attribute.baseName == u"flags") &&
         model.BaseNameOf(entity.id) == u"aolocalcolumn";
}

AttributePlace PlaceFor(const Model& model, const Entity& entity, const Attribute& attribute,
                        NameMaker& names) {
  AttributePlace place;
  if (IsBulk(model, entity, attribute)) {
    place.kind = AttributePlace::Kind::Bulk;
  } else if (attribute.sequence || attribute.type == OdsType::Unknown) {
    place.kind = AttributePlace::Kind::Sequence;
  } else {
    place.kind = AttributePlace::Kind::Column;
    const std::string name = names.Make(attribute.name);
    place.column = names.Quoted(name);
    if (HasKey(attribute.type)) place.key = names.Quoted(names.MakeFrom(name + "_F"));
  }
  return place;
}

/// True if the direction from this side holds the column of a link.
bool OwnsLink(const Model& model, EntityId entity, std::int32_t relation, std::int32_t inverse) {
  const Relation& forward = RelationAt(model, entity, relation);
  if (forward.ToMany()) return false;
  if (inverse == kNone || RelationAt(model, forward.target, inverse).ToMany()) return true;
  return std::pair(entity, relation) <= std::pair(forward.target, inverse);
}

class LayoutMaker final {
 public:
  LayoutMaker(const Model& model, const Dialect& dialect)
      : m_model(model), m_dialect(dialect), m_tables(dialect) {}

  Layout Make() {
    m_layout.isOwn = true;
    m_layout.entities.resize(m_model.Entities().size());
    std::int64_t aid = 0;
    for (const Entity& entity : m_model.Entities()) {
      if (entity.isBase) continue;
      EntityPlace& place = m_layout.entities[entity.id];
      place.aid = ++aid;
      const std::string table = m_tables.Make(entity.name);
      place.table = m_tables.Quoted(table);
      NameMaker& names = m_columns.emplace_back(m_dialect);
      const std::string id = names.MakeFrom(table + "_ID");
      place.id = names.Quoted(id);
      place.sequences = m_dialect.Quote("SF_SEQ_" + std::to_string(aid));
      place.texts = m_dialect.Quote("SF_TEXT_" + std::to_string(aid));
      PlaceAttributes(entity, place, names);
      m_columnsOf.push_back(entity.id);
    }
    for (std::size_t i = 0; i < m_columnsOf.size(); ++i) PlaceRelations(m_columnsOf[i], i);
    return std::move(m_layout);
  }

 private:
  void PlaceAttributes(const Entity& entity, EntityPlace& place, NameMaker& names) {
    for (std::size_t a = 0; a < entity.attributes.size(); ++a) {
      if (static_cast<std::int32_t>(a) == entity.idAttribute) {
        place.attributes.push_back({AttributePlace::Kind::Id, place.id, {}});
      } else {
        place.attributes.push_back(PlaceFor(m_model, entity, entity.attributes[a], names));
      }
    }
    place.relations.resize(entity.relations.size());
  }

  void PlaceRelations(EntityId id, std::size_t namesIndex) {
    const Entity& entity = m_model.At(id);
    for (std::int32_t r = 0; r < static_cast<std::int32_t>(entity.relations.size()); ++r) {
      const Relation& relation = entity.relations[static_cast<std::size_t>(r)];
      RelationPlace& place = At(id, r);
      place.inverse = RelationAt(m_model, id, r).inverse;
      place.isSymmetric = place.inverse == r && relation.target == id;
      if (place.kind != RelationPlace::Kind::Nowhere) continue;
      if (OwnsLink(m_model, id, r, place.inverse)) {
        PlaceColumn(relation, place, m_columns[namesIndex]);
      } else if (relation.ToMany() && IsManyBack(relation, place.inverse)) {
        PlacePairs(entity, relation, place);
      }
    }
  }

  bool IsManyBack(const Relation& relation, std::int32_t inverse) const {
    return inverse == kNone || RelationAt(m_model, relation.target, inverse).ToMany();
  }

  void PlaceColumn(const Relation& relation, RelationPlace& place, NameMaker& names) {
    const std::string name = names.Make(relation.name);
    place.kind = RelationPlace::Kind::Own;
    place.column = names.Quoted(name);
    if (place.inverse == kNone || place.isSymmetric) return;
    if (IsManyBack(relation, place.inverse)) {
      place.position = names.Quoted(names.MakeFrom(name + "_P"));
    }
    RelationPlace& back = At(relation.target, place.inverse);
    back.kind = RelationPlace::Kind::Other;
    back.column = place.column;
    back.position = place.position;
  }

  void PlacePairs(const Entity& entity, const Relation& relation, RelationPlace& place) {
    const EntityPlace& source = m_layout.entities[entity.id];
    const EntityPlace& target = m_layout.entities[relation.target];
    NameMaker names(m_dialect);
    place.kind = RelationPlace::Kind::Pairs;
    place.table = m_tables.Quoted(
        m_tables.Make(u"REL_" + FromStored(BareName(source.table)) + u"_" + relation.name));
    place.column = names.Quoted(names.MakeFrom(BareName(source.id)));
    place.there = names.Quoted(names.MakeFrom(BareName(target.id)));
    place.position = "\"POS\"";
    place.otherPosition = "\"INVPOS\"";
    if (place.inverse == kNone || place.isSymmetric) return;
    RelationPlace& back = At(relation.target, place.inverse);
    back.kind = RelationPlace::Kind::Pairs;
    back.table = place.table;
    back.column = place.there;
    back.there = place.column;
    back.position = place.otherPosition;
    back.otherPosition = place.position;
  }

  RelationPlace& At(EntityId entity, std::int32_t relation) {
    return m_layout.entities[entity].relations[static_cast<std::size_t>(relation)];
  }

  const Model& m_model;
  const Dialect& m_dialect;
  NameMaker m_tables;
  std::vector<NameMaker> m_columns;  // by position in m_columnsOf
  std::vector<EntityId> m_columnsOf;
  Layout m_layout;
};

}  // namespace

Layout MakeLayout(const Model& model, const Dialect& dialect) {
  return LayoutMaker(model, dialect).Make();
}

std::string OrderOfLinks(const RelationPlace& place, std::string_view id, std::string_view alias) {
  const std::string dotted(alias);
  if (place.kind == RelationPlace::Kind::Pairs) {
    if (place.position.empty()) return dotted + "rowid";
    return place.position == "\"POS\"" ? dotted + "POS"
                                       : "coalesce(" + dotted + "INVPOS," + dotted + "POS)";
  }
  if (place.position.empty()) return std::string(id);
  return "coalesce(" + dotted + place.position + "," + std::string(id) + ")";
}

std::string IndexName(const Dialect& dialect, std::string_view table, std::string_view column) {
  return dialect.Quote("IX_" + BareName(table) + "_" + BareName(column));
}

std::string BareName(std::string_view quoted) {
  std::string bare;
  for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
    bare += quoted[i];
    if (quoted[i] == '"') ++i;
  }
  return bare;
}

std::int32_t MutualInverse(const Model& model, EntityId entity, std::int32_t relation) {
  return RelationAt(model, entity, relation).inverse;
}

int NumberOfType(OdsType type, bool sequence) {
  const int number = static_cast<int>(type);
  if (!sequence) return number;
  switch (type) {
    case OdsType::Id:
      return 25;
    case OdsType::Date:
      return 26;
    case OdsType::ByteStr:
      return 27;
    case OdsType::ExternalReference:
      return 29;
    case OdsType::Enum:
      return 31;
    case OdsType::Complex:
    case OdsType::DComplex:
      return number + 10;
    default:
      return number + 14;
  }
}

}  // namespace hv::vex::engine::sql
