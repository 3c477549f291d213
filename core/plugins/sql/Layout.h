// core/plugins/sql/Layout.h - where the members of a model lie in the tables of a database.
// All names are quoted, ready to stand in a statement. The tables are told in
// docs/formats/sql-store.md.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/model/Model.h"
#include "core/plugins/sql/Driver.h"

namespace hv::vex::engine::sql {

struct AttributePlace {
  enum class Kind : std::uint8_t {
    Id,        ///< the id column
    Column,    ///< a column of its own
    Sequence,  ///< rows of the entity's table of sequences
    Bulk,      ///< segments of SF_BULK: values or flags of a local column
    Nowhere,   ///< another tool's database holds it in a form that isn't known
  };
  Kind kind = Kind::Nowhere;
  std::string column;
  std::string key;  ///< column of the compared form, see TextKey.h; empty: computed while searching
  std::string index = {};  ///< over the compared form; empty: none
};

/// A link stands in a column of one of the two tables, or in a table of pairs.
struct RelationPlace {
  enum class Kind : std::uint8_t {
    Own,    ///< `column` of the source's table
    Other,  ///< `column` of the target's table
    Pairs,
    Nowhere,
  };
  Kind kind = Kind::Nowhere;
  std::string table;          ///< Pairs
  std::string column;         ///< Own, Other: the reference; Pairs: ids of the source
  std::string there;          ///< Pairs: ids of the target
  std::string name;           ///< Pairs: REFNAME of its rows; empty: all rows
  std::string position;       ///< column that orders a source's targets if ids don't; may be empty
  std::string otherPosition;  ///< Pairs: the same for the other direction
  std::string index;          ///< Own: over the references; empty: none
  std::int32_t inverse = kNone;  ///< relation of the target that is the other direction
  bool isSymmetric = false;      ///< its own inverse: each link is stored twice
};

struct EntityPlace {
  std::int64_t aid = 0;
  std::string table;  ///< empty: a base entity
  std::string id;
  std::string sequences;  ///< table of sequences; empty: none
  std::string texts;      ///< index for words; empty: none
  std::vector<AttributePlace> attributes;
  std::vector<RelationPlace> relations;
};

struct Layout {
  bool isOwn = false;                 ///< has this system's tables beside those of the convention
  std::vector<EntityPlace> entities;  ///< by entity id
};

/// Where a store keeps what the convention has no place for.
inline constexpr const char* kMetaTable = "SF_META";
inline constexpr const char* kRelationTable = "SF_RELATION";
inline constexpr const char* kInstanceAttributeTable = "SF_INSTATTR";
inline constexpr const char* kBulkTable = "SF_BULK";
inline constexpr int kSchemaVersion = 2;

/// Finds names and places for a new database.
Layout MakeLayout(const Model& model, const Dialect& dialect);

/// Creates all tables and describes the model in them. Indexes come later, since filling tables
/// without them is faster.
void CreateSchema(Connection& connection, const Model& model, const Layout& layout);
void CreateIndexes(Connection& connection, const Model& model, const Layout& layout);
using ContextTexts = std::vector<std::pair<std::u16string, std::u16string>>;
void WriteContextValues(Connection& connection, const ContextTexts& values);

struct OpenedSchema {
  int version = 0;  ///< 0: a database of another tool
  std::shared_ptr<const Model> model;
  Layout layout;
  std::vector<std::u16string> warnings;
  ContextTexts contextValues;
};
/// Reads model and places of any database of the convention.
/// \throws Exception kBadFile, with `name` (of the database) in front: not such a database, a
/// schema
///         of a newer version, or a model that makes no sense.
OpenedSchema ReadSchema(Connection& connection, std::u16string_view name);

/// What the links of one record are ordered by: `Other` in the target's table, whose id column is
/// `id`, `Pairs` in their own. `alias` stands before columns, with a dot, or is empty.
std::string OrderOfLinks(const RelationPlace& place, std::string_view id,
                         std::string_view alias = {});
/// The name, quoted, of the index that begins with that column. Both names are quoted.
std::string IndexName(const Dialect& dialect, std::string_view table, std::string_view column);
/// Without the quotes.
std::string BareName(std::string_view quoted);
/// The relation that is the other direction and names this one back; or kNone.
std::int32_t MutualInverse(const Model& model, EntityId entity, std::int32_t relation);
/// The standard's number of an application entity's base element; 0 if it has none.
std::int64_t NumberOfBase(const Model& model, EntityId entity);
/// The number of a type in tables, which counts sequences apart.
int NumberOfType(OdsType type, bool sequence);

}  // namespace hv::vex::engine::sql
