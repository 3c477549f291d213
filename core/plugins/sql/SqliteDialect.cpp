// core/plugins/sql/SqliteDialect.cpp - quoting, types, calls and the index for words.
#include "core/plugins/sql/SqliteDialect.h"

#include <sqlite3.h>

namespace hv::vex::engine::sql {
namespace {

std::string Call(std::string_view function, std::string_view arguments) {
  return std::string(function).append(1, '(').append(arguments).append(1, ')');
}

}  // namespace

const Dialect& SqliteDialect::Get() {
  static const SqliteDialect kDialect;
  return kDialect;
}

std::string SqliteDialect::Quote(std::string_view name) const {
  std::string quoted = "\"";
  for (const char c : name) quoted.append(c == '"' ? 2 : 1, c);
  return quoted += '"';
}

bool SqliteDialect::IsReserved(std::string_view name) const {
  return sqlite3_keyword_check(name.data(), static_cast<int>(name.size())) != 0;
}

std::string_view SqliteDialect::ColumnType(OdsType type) const {
  switch (type) {
    case OdsType::Short:
    case OdsType::Boolean:
    case OdsType::Byte:
    case OdsType::Long:
    case OdsType::LongLong:
    case OdsType::Id:
    case OdsType::Enum:
      return "INTEGER";
    case OdsType::Float:
    case OdsType::Double:
      return "REAL";
    case OdsType::ByteStr:
    case OdsType::Blob:
    case OdsType::Complex:
    case OdsType::DComplex:
      return "BLOB";
    default:
      return "TEXT";
  }
}

std::string SqliteDialect::IdColumn(std::string_view quotedName) const {
  return std::string(quotedName) + " INTEGER PRIMARY KEY AUTOINCREMENT";
}

std::string SqliteDialect::IdList(std::string_view alias) const {
  return "sf_ids(?) AS " + std::string(alias);
}

std::string SqliteDialect::FoundBy(std::string_view quotedIndex) const {
  if (quotedIndex.empty()) return " NOT INDEXED";
  return std::string(" INDEXED BY ").append(quotedIndex);
}

std::string SqliteDialect::FoldedText(std::string_view expression) const {
  return Call("sf_fold", expression);
}

std::string SqliteDialect::Date14(std::string_view expression) const {
  return Call("sf_date14", expression);
}

std::string SqliteDialect::Matches(std::string_view expression) const {
  return Call("sf_matches", std::string(expression) + ",?");
}

std::string SqliteDialect::CodeUnitOrder(std::string_view expression) const {
  return std::string(expression) + " COLLATE SF_UTF16";
}

std::string SqliteDialect::Contains(std::string_view expression) const {
  return Call("instr", std::string(expression) + ",?") + ">0";
}

std::string SqliteDialect::CreateTextIndex(std::string_view quotedTable) const {
  if (sqlite3_compileoption_used("ENABLE_FTS5") == 0) return {};
  return "CREATE VIRTUAL TABLE " + std::string(quotedTable) +
         " USING fts5(T, tokenize='trigram case_sensitive 1')";
}

std::string SqliteDialect::SearchTextIndex(std::string_view quotedTable) const {
  const std::string table(quotedTable);
  return "SELECT rowid FROM " + table + " WHERE " + table + " MATCH ?";
}

std::string SqliteDialect::TextIndexExpression(const std::vector<std::string>& words) const {
  std::string expression;
  for (const std::string& word : words) {
    if (!expression.empty()) expression += " AND ";
    expression += Quote(word);
  }
  return expression;
}

std::string SqliteDialect::TableExists() const {
  return "SELECT name FROM sqlite_master WHERE type IN ('table','view')"
         " AND name=? COLLATE NOCASE";
}

std::string SqliteDialect::ColumnsOf() const { return "SELECT name FROM pragma_table_info(?)"; }

std::string SqliteDialect::Indexes() const {
  return "SELECT name, tbl_name FROM sqlite_master WHERE type='index'";
}

std::string SqliteDialect::Explain(std::string_view statement) const {
  return "EXPLAIN QUERY PLAN " + std::string(statement);
}

std::string SqliteDialect::Upsert(std::string_view insert, std::string_view conflictColumns,
                                  std::string_view assignments) const {
  return std::string(insert) + " ON CONFLICT(" + std::string(conflictColumns) + ") DO UPDATE SET " +
         std::string(assignments);
}

}  // namespace hv::vex::engine::sql
