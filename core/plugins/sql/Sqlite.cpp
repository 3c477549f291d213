// core/plugins/sql/Sqlite.cpp - connections and statements of SQLite; its errors as the engine's.
#include "core/plugins/sql/Sqlite.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/plugins/sql/SqliteDialect.h"
#include "core/plugins/sql/SqliteFunctions.h"
#include "core/store/memory/Failure.h"
#include "storefabric/WString.h"

namespace hv::vex::engine::sql {
namespace {

std::int32_t CodeOf(int rc) {
  switch (rc) {
    case SQLITE_IOERR_READ:
    case SQLITE_IOERR_SHORT_READ:
      return errc::kBadFile;
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
    case SQLITE_CONSTRAINT_ROWID:
      return errc::kNotUnique;
    default:
      break;
  }
  switch (rc & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return errc::kTimeout;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return errc::kWriteProtected;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_CANTOPEN:
      return errc::kBadFile;
    case SQLITE_FULL:
    case SQLITE_IOERR:
      return errc::kWriteFailed;
    case SQLITE_NOMEM:
      return errc::kOutOfMemory;
    case SQLITE_INTERRUPT:
      return errc::kCancelled;
    case SQLITE_TOOBIG:
      return errc::kInvalidArgument;
    default:
      return errc::kInternal;
  }
}

/// Names the file and says what SQLite says.
struct ErrorSource {
  sqlite3* database;
  std::string file;

  [[noreturn]] void Throw(int rc) const {
    const int extended = database == nullptr ? rc : sqlite3_extended_errcode(database);
    const std::int32_t code = CodeOf((extended & 0xFF) == (rc & 0xFF) ? extended : rc);
    const std::string reason = code == errc::kTimeout ? "another session is writing"
                               : database == nullptr  ? sqlite3_errstr(rc)
                                                      : sqlite3_errmsg(database);
    Fail(code, {cor::FromUtf8(file), u": ", cor::FromUtf8(reason)});
  }
  void Check(int rc) const {
    if (rc != SQLITE_OK) Throw(rc);
  }
};

constexpr std::string_view kNotANumber = "NaN";

std::pair<dev_t, ino_t> FileAt(const std::filesystem::path& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) return {};
  return {facts.st_dev, facts.st_ino};
}

class SqliteStatement final : public Statement {
 public:
  SqliteStatement(const ErrorSource& source, std::string_view sql) : m_source(source) {
    const int rc = sqlite3_prepare_v3(source.database, sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &m_statement, nullptr);
    source.Check(rc);
  }
  ~SqliteStatement() override { sqlite3_finalize(m_statement); }

  void BindNull(int index) override { m_source.Check(sqlite3_bind_null(m_statement, index)); }
  void BindInteger(int index, std::int64_t value) override {
    m_source.Check(sqlite3_bind_int64(m_statement, index, value));
  }
  void BindReal(int index, double value) override {
    // SQLite makes a null of what is no number, but that is a value like others here.
    if (std::isnan(value)) return BindText(index, kNotANumber);
    m_source.Check(sqlite3_bind_double(m_statement, index, value));
  }
  void BindText(int index, std::string_view text) override {
    m_source.Check(sqlite3_bind_text64(m_statement, index, text.data() ? text.data() : "",
                                       text.size(), SQLITE_STATIC, SQLITE_UTF8));
  }
  void BindBytes(int index, std::span<const std::byte> bytes) override {
    const void* data = bytes.empty() ? static_cast<const void*>("") : bytes.data();
    m_source.Check(sqlite3_bind_blob64(m_statement, index, data, bytes.size(), SQLITE_STATIC));
  }
  void BindIds(int index, std::span<const std::int64_t> ids) override {
    m_ids = ids;
    m_source.Check(sqlite3_bind_pointer(m_statement, index, &m_ids, kIdsPointer, nullptr));
  }
  bool Step() override {
    const int rc = sqlite3_step(m_statement);
    if (rc == SQLITE_ROW) return true;
    if (rc != SQLITE_DONE) m_source.Throw(rc);
    return false;
  }
  std::vector<std::int64_t> TakeIntegers() override {
    std::vector<std::int64_t> all;
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(m_statement)) == SQLITE_ROW) {
      all.push_back(sqlite3_column_int64(m_statement, 0));
    }
    if (rc != SQLITE_DONE) m_source.Throw(rc);
    return all;
  }
  void Reset() override {
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
  }

  CellKind KindAt(int column) const override {
    switch (sqlite3_column_type(m_statement, column)) {
      case SQLITE_INTEGER:
        return CellKind::Integer;
      case SQLITE_FLOAT:
        return CellKind::Real;
      case SQLITE_TEXT:
        return CellKind::Text;
      case SQLITE_BLOB:
        return CellKind::Bytes;
      default:
        return CellKind::Null;
    }
  }
  std::int64_t Integer(int column) const override {
    return sqlite3_column_int64(m_statement, column);
  }
  double Real(int column) const override {
    if (sqlite3_column_type(m_statement, column) == SQLITE_TEXT && Text(column) == kNotANumber) {
      return std::numeric_limits<double>::quiet_NaN();
    }
    return sqlite3_column_double(m_statement, column);
  }
  std::string_view Text(int column) const override {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
    if (text == nullptr) return {};
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
  }
  std::span<const std::byte> Bytes(int column) const override {
    const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(m_statement, column));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column))};
  }

 private:
  const ErrorSource& m_source;
  sqlite3_stmt* m_statement = nullptr;
  std::span<const std::int64_t> m_ids;
};

class SqliteBlob final : public BlobReader, public BlobWriter {
 public:
  SqliteBlob(const ErrorSource& source, const std::string& table, const std::string& column,
             std::int64_t row, bool mayWrite)
      : m_source(source) {
    const int rc = sqlite3_blob_open(source.database, "main", table.c_str(), column.c_str(), row,
                                     mayWrite ? 1 : 0, &m_blob);
    if (rc != SQLITE_OK) FailGone();
  }
  ~SqliteBlob() override { sqlite3_blob_close(m_blob); }
  void MoveTo(std::int64_t row) override {
    if (sqlite3_blob_reopen(m_blob, row) != SQLITE_OK) FailGone();
  }
  void Read(std::size_t offset, std::span<std::byte> out) override {
    m_source.Check(sqlite3_blob_read(m_blob, out.data(), static_cast<int>(out.size()),
                                     static_cast<int>(offset)));
  }
  void Write(std::size_t offset, std::span<const std::byte> bytes) override {
    m_source.Check(sqlite3_blob_write(m_blob, bytes.data(), static_cast<int>(bytes.size()),
                                      static_cast<int>(offset)));
  }

 private:
  [[noreturn]] void FailGone() const {
    Fail(errc::kInstanceGone,
         {cor::FromUtf8(m_source.file), u": the values were replaced or deleted"});
  }
  const ErrorSource& m_source;
  sqlite3_blob* m_blob = nullptr;
};

class SqliteConnection final : public Connection {
 public:
  SqliteConnection(const std::filesystem::path& path, const SqliteOptions& options)
      : m_path(path), m_isReadOnly(options.isReadOnly), m_timeout(options.timeout) {
    m_source.file = path.empty() ? "database in memory" : path.string();
    try {
      Open(path, options);
      m_file = FileAt(path);
    } catch (...) {
      sqlite3_close(m_source.database);
      throw;
    }
  }
  ~SqliteConnection() override {
    m_idle.clear();
    sqlite3_close_v2(m_source.database);
  }

  const Dialect& GetDialect() const override { return SqliteDialect::Get(); }
  bool IsReadOnly() const override { return sqlite3_db_readonly(m_source.database, "main") != 0; }
  void Execute(std::string_view sql) override {
    m_source.Check(
        sqlite3_exec(m_source.database, std::string(sql).c_str(), nullptr, nullptr, nullptr));
  }
  std::int64_t LastId() const override { return sqlite3_last_insert_rowid(m_source.database); }
  std::int64_t Changes() const override { return sqlite3_changes64(m_source.database); }
  std::unique_ptr<BlobReader> OpenBlob(std::string_view table, std::string_view column,
                                       std::int64_t row) override {
    return std::make_unique<SqliteBlob>(m_source, std::string(table), std::string(column), row,
                                        false);
  }
  std::unique_ptr<BlobWriter> OpenBlobToWrite(std::string_view table, std::string_view column,
                                              std::int64_t row) override {
    return std::make_unique<SqliteBlob>(m_source, std::string(table), std::string(column), row,
                                        true);
  }
  std::shared_ptr<Connection> OpenReader() const override {
    // Where another file has taken the place meanwhile, this one's data are to be had here alone.
    if (m_path.empty() || FileAt(m_path) != m_file) return nullptr;
    SqliteOptions options;
    options.isReadOnly = m_isReadOnly;
    options.timeout = m_timeout;
    auto reader = std::make_shared<SqliteConnection>(m_path, options);
    // Pages come by once, so few of them are kept: those stay in the processor's cache.
    reader->Execute("PRAGMA cache_size=-512; PRAGMA query_only=ON");
    return reader;
  }
  void Begin() override {
    if (!m_isLogged) {
      // Readers must not wait for this session, so a database of another tool is changed over.
      sqlite3_busy_timeout(m_source.database, static_cast<int>(m_timeout.count()));
      Execute("PRAGMA journal_mode=WAL");
      m_isLogged = true;
    }
    Execute("BEGIN IMMEDIATE");
  }
  void Commit() override { Execute("COMMIT"); }
  void Rollback() override {
    if (IsInTransaction()) Execute("ROLLBACK");
  }
  std::int64_t ChangesOfOthers() override {
    Run run(*this, "PRAGMA data_version");
    return run->Step() ? run->Integer(0) : 0;
  }
  bool IsInTransaction() const override { return sqlite3_get_autocommit(m_source.database) == 0; }
  void AskMeanwhile(std::function<bool()> mayGoOn) override {
    constexpr int kSteps = 4000;  // of the database's machine, well below a millisecond
    m_mayGoOn = std::move(mayGoOn);
    sqlite3_progress_handler(
        m_source.database, kSteps,
        [](void* self) { return static_cast<SqliteConnection*>(self)->m_mayGoOn() ? 0 : 1; },
        m_mayGoOn ? this : nullptr);
    if (!m_mayGoOn) sqlite3_progress_handler(m_source.database, 0, nullptr, nullptr);
  }

 private:
  std::unique_ptr<Statement> Prepare(std::string_view sql) override {
    return std::make_unique<SqliteStatement>(m_source, sql);
  }

  void Open(const std::filesystem::path& path, const SqliteOptions& options) {
    struct stat facts {};
    if (!path.empty() && !options.mayCreate) {
      if (stat(path.c_str(), &facts) != 0) {
        Fail(errc::kBadFile,
             {cor::FromUtf8(m_source.file), u": ", cor::FromUtf8(std::strerror(errno))});
      }
      if (!S_ISREG(facts.st_mode)) {
        Fail(errc::kBadFile, {cor::FromUtf8(m_source.file), u": it is no file"});
      }
      if (facts.st_size == 0) {
        Fail(errc::kBadFile, {cor::FromUtf8(m_source.file), u": the file is empty"});
      }
    }
    OpenHandle(path, options, false);
    try {
      Execute("SELECT count(*) FROM sqlite_master");
    } catch (const Exception&) {
      // A file on a medium, or in a folder, that can't be written has no room for the log's index
      // beside it. Without that nobody may write it from here either, and what stands in a log
      // can't be seen.
      const bool isProtected = options.isReadOnly || access(path.c_str(), W_OK) != 0 ||
                               access((path.parent_path() / ".").c_str(), W_OK) != 0;
      const bool hasLog = stat((path.string() + "-wal").c_str(), &facts) == 0 && facts.st_size != 0;
      const int reason = sqlite3_errcode(m_source.database) & 0xFF;
      const bool isRefused = reason == SQLITE_CANTOPEN || reason == SQLITE_READONLY;
      if (!isProtected || hasLog || !isRefused) throw;
      sqlite3_close(m_source.database);
      OpenHandle(path, options, true);
      Execute("SELECT count(*) FROM sqlite_master");
    }
    m_isLogged = path.empty() || options.mayCreate;
    if (options.mayCreate) {
      Execute("PRAGMA page_size=16384; PRAGMA journal_mode=WAL;");
    }
    Execute(
        "PRAGMA foreign_keys=ON; PRAGMA secure_delete=OFF; PRAGMA cache_size=-65536;"
        "PRAGMA temp_store=MEMORY; PRAGMA trusted_schema=OFF;");
  }

  void OpenHandle(const std::filesystem::path& path, const SqliteOptions& options,
                  bool isImmutable) {
    int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    flags |= options.isReadOnly || isImmutable ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (options.mayCreate) flags |= SQLITE_OPEN_CREATE;
    std::string name = path.empty() ? ":memory:" : path.string();
    if (isImmutable) {
      flags |= SQLITE_OPEN_URI;
      std::string uri = "file:";
      for (const char c : name) {
        uri += c == '%' ? "%25" : c == '?' ? "%3f" : c == '#' ? "%23" : std::string(1, c);
      }
      name = uri + "?immutable=1";
    }
    m_source.Check(sqlite3_open_v2(name.c_str(), &m_source.database, flags, nullptr));
    m_source.Check(sqlite3_busy_timeout(m_source.database, static_cast<int>(m_timeout.count())));
    sqlite3_db_config(m_source.database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    m_source.Check(RegisterFunctions(m_source.database));
  }

  ErrorSource m_source{};
  std::filesystem::path m_path;
  bool m_isReadOnly;
  std::pair<dev_t, ino_t> m_file{};
  std::chrono::milliseconds m_timeout;
  std::function<bool()> m_mayGoOn;
  bool m_isLogged = false;
};

}  // namespace

std::shared_ptr<Connection> OpenSqlite(const std::filesystem::path& path,
                                       const SqliteOptions& options) {
  return std::make_shared<SqliteConnection>(path, options);
}

}  // namespace hv::vex::engine::sql
