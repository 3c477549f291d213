// core/plugins/sql/SqliteDialect.h - statements as SQLite wants them.
#pragma once

#include "core/plugins/sql/Driver.h"

namespace hv::vex::engine::sql {

class SqliteDialect final : public Dialect {
 public:
  static const Dialect& Get();

  std::string Quote(std::string_view name) const override;
  bool IsReserved(std::string_view name) const override;
  std::string_view ColumnType(OdsType type) const override;
  std::string IdColumn(std::string_view quotedName) const override;
  std::string IdList(std::string_view alias) const override;
  std::string_view OrderedJoin() const override { return " CROSS JOIN "; }
  std::string FoundBy(std::string_view quotedIndex) const override;
  std::string FoldedText(std::string_view expression) const override;
  std::string Date14(std::string_view expression) const override;
  std::string Matches(std::string_view expression) const override;
  std::string CodeUnitOrder(std::string_view expression) const override;
  std::string Contains(std::string_view expression) const override;
  std::string CreateTextIndex(std::string_view quotedTable) const override;
  std::string SearchTextIndex(std::string_view quotedTable) const override;
  std::size_t ShortestIndexedWord() const override { return 3; }
  std::string TextIndexExpression(const std::vector<std::string>& words) const override;
  std::string_view DeferReferences() const override { return "PRAGMA defer_foreign_keys=ON"; }
  std::string TableExists() const override;
  std::string ColumnsOf() const override;
  std::string Indexes() const override;
  std::string_view Analyze() const override { return "PRAGMA analysis_limit=1000; ANALYZE"; }
  std::string Explain(std::string_view statement) const override;
  std::string Upsert(std::string_view insert, std::string_view conflictColumns,
                     std::string_view assignments) const override;
};

}  // namespace hv::vex::engine::sql
