#include "apps/cli/RowWriter.h"

#include <algorithm>
#include <string_view>

#include "apps/cli/Terminal.h"

namespace hv::cli {
namespace {

void Put(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

std::string CsvCell(const std::string& cell) {
  if (cell.find_first_of("\",\r\n") == std::string::npos) return cell;
  std::string quoted = "\"";
  for (const char c : cell) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

std::string JsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    switch (c) {
      case '"':
        quoted += "\\\"";
        break;
      case '\\':
        quoted += "\\\\";
        break;
      case '\n':
        quoted += "\\n";
        break;
      case '\r':
        quoted += "\\r";
        break;
      case '\t':
        quoted += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          char escape[8];
          std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
          quoted += escape;
        } else {
          quoted += c;
        }
    }
  }
  return quoted + "\"";
}

/// Numbers as JSON writes them. Others, such as "nan", are texts there.
bool IsJsonNumber(std::string_view text) {
  const auto skipDigits = [&] {
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    text.remove_prefix(digits);
    return digits > 0;
  };
  if (text.starts_with('-')) text.remove_prefix(1);
  if (text.size() > 1 && text[0] == '0' && text[1] >= '0' && text[1] <= '9') return false;
  if (!skipDigits()) return false;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    if (!skipDigits()) return false;
  }
  if (text.starts_with('e') || text.starts_with('E')) {
    text.remove_prefix(1);
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    if (!skipDigits()) return false;
  }
  return text.empty();
}

std::string JsonCell(const Column& column, const std::string& cell) {
  if (!column.isNumber) return JsonText(cell);
  if (cell.empty()) return "null";
  return IsJsonNumber(cell) ? cell : JsonText(cell);
}

}  // namespace

RowWriter::RowWriter(Format format, std::vector<Column> columns)
    : m_format(format), m_columns(std::move(columns)) {
  if (m_format == Format::Json) Put("[");
  if (m_format != Format::Csv) return;
  std::vector<std::string> head;
  for (const Column& column : m_columns) head.push_back(column.name);
  WriteCells(head, ',');
}

void RowWriter::Row(std::vector<std::string> cells) {
  switch (m_format) {
    case Format::Lines:
      for (std::string& cell : cells) cell = OneLine(std::move(cell));
      WriteCells(cells, '\t');
      break;
    case Format::Csv:
      WriteCells(cells, ',');
      break;
    case Format::Json:
      WriteObject(cells);
      break;
    case Format::Table:
      for (std::string& cell : cells) cell = OneLine(std::move(cell));
      m_rows.push_back(std::move(cells));
      break;
  }
}

void RowWriter::End() {
  if (m_format == Format::Table) WriteTable();
  if (m_format == Format::Json) Put(m_isFirst ? "]\n" : "\n]\n");
}

void RowWriter::WriteCells(const std::vector<std::string>& cells, char separator) const {
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) line += separator;
    line += separator == ',' ? CsvCell(cells[i]) : cells[i];
  }
  line += '\n';
  Put(line);
}

void RowWriter::WriteObject(const std::vector<std::string>& cells) {
  std::string object = m_isFirst ? "\n  {" : ",\n  {";
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i > 0) object += ", ";
    object += JsonText(m_columns[i].name) + ": " + JsonCell(m_columns[i], cells[i]);
  }
  m_isFirst = false;
  Put(object + "}");
}

void RowWriter::WriteTable() const {
  std::vector<std::size_t> shown;
  std::vector<std::size_t> widths(m_columns.size());
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    bool isEmpty = !m_rows.empty();
    widths[i] = DisplayWidth(m_columns[i].name);
    for (const auto& row : m_rows) {
      widths[i] = std::max(widths[i], DisplayWidth(row[i]));
      isEmpty = isEmpty && row[i].empty();
    }
    if (!isEmpty) shown.push_back(i);
  }
  const auto write = [&](auto&& cellOf) {
    std::string line;
    for (const std::size_t i : shown) {
      const std::string cell = cellOf(i);
      const std::string blanks(widths[i] - DisplayWidth(cell), ' ');
      if (i != shown.front()) line += "  ";
      line += m_columns[i].isNumber ? blanks + cell : cell + blanks;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    Put(line + "\n");
  };
  write([&](std::size_t i) { return m_columns[i].name; });
  write([&](std::size_t i) { return std::string(widths[i], '-'); });
  for (const auto& row : m_rows) write([&](std::size_t i) { return row[i]; });
}

}  // namespace hv::cli
