// tests/automation/variant/GoldenTable.h - reads the tables of reference values in
// tests/data/golden. A table has a comment line, a line of column names and one case a line, tab
// separated.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <storefabric/Variant.h>

namespace hv::golden {

/// One case: its columns, and its line for messages.
struct Row {
  std::vector<std::string> cells;
  std::string line;
  const std::string& operator[](std::size_t column) const { return cells[column]; }
};

/// All cases of a table; fails the test if the table can't be read.
std::vector<Row> ReadTable(const std::string& name);

/// Checks all cases of a table. `check` gives false for a case that it leaves out. Both numbers are
/// exact, so that neither a shrinking table nor a growing list of exceptions goes unseen.
void CheckTable(const std::string& name, int checked, int leftOut,
                const std::function<bool(const Row& row)>& check);

/// A text cell: a JSON literal, or `null`, which counts as empty.
std::u16string DecodeText(std::string_view cell);

/// The bytes of a cell: a JSON literal of ASCII, or `bytes:` and hexadecimal digits.
std::string DecodeBytes(std::string_view cell);

/// A double from its hexadecimal notation, `inf`, `-inf` or `nan`.
double DecodeDouble(const std::string& cell);

Decimal DecodeDecimal(const std::string& cell);

}  // namespace hv::golden
