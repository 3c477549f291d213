// tests/automation/variant/GoldenTable.cpp - reading of the tables of reference values.
#include "GoldenTable.h"

#include <cstdlib>
#include <fstream>

namespace hv::golden {

namespace {

unsigned HexOf(std::string_view digits) {
  return static_cast<unsigned>(std::strtoul(std::string(digits).c_str(), nullptr, 16));
}

}  // namespace

std::vector<Row> ReadTable(const std::string& name) {
  std::vector<Row> rows;
  std::ifstream file(HV_TEST_DATA_DIR "/golden/" + name);
  std::string line;
  std::getline(file, line);
  std::getline(file, line);
  while (std::getline(file, line)) {
    Row row{{}, line};
    std::size_t start = 0;
    for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
      end = line.find('\t', start);
      row.cells.push_back(line.substr(start, end == std::string::npos ? end : end - start));
    }
    rows.push_back(std::move(row));
  }
  EXPECT_FALSE(rows.empty()) << "no table " << name;
  return rows;
}

void CheckTable(const std::string& name, int checked, int leftOut,
                const std::function<bool(const Row& row)>& check) {
  int counts[2] = {};
  for (const Row& row : ReadTable(name)) {
    SCOPED_TRACE(row.line);
    ++counts[check(row)];
  }
  EXPECT_EQ(checked, counts[true]) << name;
  EXPECT_EQ(leftOut, counts[false]) << name;
}

std::u16string DecodeText(std::string_view cell) {
  std::u16string text;
  if (cell == "null") return text;
  if (cell.size() < 2 || cell.front() != '"' || cell.back() != '"') {
    ADD_FAILURE() << "not a text: " << cell;
    return text;
  }
  const WString units = cor::FromUtf8(cell.substr(1, cell.size() - 2));
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (units[i] != u'\\') {
      text += units[i];
      continue;
    }
    const char16_t kind = units[++i];
    if (kind == u'u') {
      text += static_cast<char16_t>(HexOf(cor::ToUtf8(units.view().substr(i + 1, 4))));
      i += 4;
    } else {
      text += kind == u'n' ? u'\n' : kind == u'r' ? u'\r' : kind == u't' ? u'\t' : kind;
    }
  }
  return text;
}

std::string DecodeBytes(std::string_view cell) {
  std::string bytes;
  if (!cell.starts_with("bytes:")) {
    for (const char16_t unit : DecodeText(cell)) bytes += static_cast<char>(unit);
    return bytes;
  }
  for (std::size_t i = 6; i < cell.size(); i += 2) {
    bytes += static_cast<char>(HexOf(cell.substr(i, 2)));
  }
  return bytes;
}

double DecodeDouble(const std::string& cell) { return std::strtod(cell.c_str(), nullptr); }

Decimal DecodeDecimal(const std::string& cell) {
  Decimal value;
  char* next = nullptr;
  value.sign = static_cast<std::uint8_t>(std::strtoul(cell.c_str(), &next, 10));
  value.scale = static_cast<std::uint8_t>(std::strtoul(next + 1, &next, 10));
  value.high = static_cast<std::uint32_t>(std::strtoul(next + 1, &next, 10));
  value.low = std::strtoull(next + 1, &next, 10);
  return value;
}

}  // namespace hv::golden
