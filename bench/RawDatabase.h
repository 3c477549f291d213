// bench/RawDatabase.h - databases through the bare SQLite interface, as yardsticks use them.
#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>

#include "Bench.h"

class RawDatabase {
 public:
  explicit RawDatabase(const std::filesystem::path& path) {
    Require(sqlite3_open(path.c_str(), &m_database) == SQLITE_OK, "no database");
  }
  RawDatabase(const RawDatabase&) = delete;
  RawDatabase& operator=(const RawDatabase&) = delete;
  ~RawDatabase() { sqlite3_close(m_database); }

  [[nodiscard]] sqlite3* Get() const { return m_database; }
  void Execute(const std::string& text) const {
    char* message = nullptr;
    sqlite3_exec(m_database, text.c_str(), nullptr, nullptr, &message);
    Require(message == nullptr, message);
  }
  /// As much as the store has.
  void SetCache() const { Execute("PRAGMA cache_size=-65536"); }

 private:
  sqlite3* m_database = nullptr;
};

class Statement {
 public:
  Statement(const RawDatabase& database, const std::string& text) {
    sqlite3_prepare_v2(database.Get(), text.c_str(), -1, &m_statement, nullptr);
    Require(m_statement != nullptr, sqlite3_errmsg(database.Get()));
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(m_statement); }

  [[nodiscard]] sqlite3_stmt* Get() const { return m_statement; }
  bool Step() { return sqlite3_step(m_statement) == SQLITE_ROW; }
  void Reset() { sqlite3_reset(m_statement); }
  [[nodiscard]] std::int64_t Integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
  }
  [[nodiscard]] std::u16string Text(int column) const {
    const auto* text = static_cast<const char16_t*>(sqlite3_column_text16(m_statement, column));
    return {text, static_cast<std::size_t>(sqlite3_column_bytes16(m_statement, column)) / 2};
  }

 private:
  sqlite3_stmt* m_statement = nullptr;
};
