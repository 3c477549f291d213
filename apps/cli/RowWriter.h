// apps/cli/RowWriter.h - rows of texts as lines, an aligned table, CSV or JSON.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "apps/cli/Commands.h"

namespace hv::cli {

struct Column {
  std::string name;
  bool isNumber = false;  ///< to the right in a table; a number or null in JSON
};

/// Writes rows to standard output. Lines: cells joined by a tab, no head. Csv: RFC 4180 with a head
/// and LF. Json: an array of objects. Table: held back until `End`, since the widths follow from
/// all rows; columns without any content are left out.
class RowWriter final {
 public:
  RowWriter(Format format, std::vector<Column> columns);
  /// One cell per column, UTF-8.
  void Row(std::vector<std::string> cells);
  void End();

 private:
  void WriteTable() const;
  void WriteCells(const std::vector<std::string>& cells, char separator) const;
  void WriteObject(const std::vector<std::string>& cells);

  Format m_format;
  std::vector<Column> m_columns;
  std::vector<std::vector<std::string>> m_rows;
  bool m_isFirst = true;
};

}  // namespace hv::cli
