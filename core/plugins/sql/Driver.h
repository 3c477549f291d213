// core/plugins/sql/Driver.h - what the SQL store asks of a database: connections, statements, and
// whatever differs between kinds of databases. Nothing above this header names one of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/model/OdsType.h"

namespace hv::vex::engine::sql {

enum class CellKind : std::uint8_t { Null, Integer, Real, Text, Bytes };

/// A prepared statement. Parameters count from 1, columns from 0. Texts are UTF-8. What is bound
/// must stay where it is until `Reset`.
class Statement {
 public:
  Statement() = default;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  virtual ~Statement() = default;

  virtual void BindNull(int index) = 0;
  virtual void BindInteger(int index, std::int64_t value) = 0;
  virtual void BindReal(int index, double value) = 0;
  virtual void BindText(int index, std::string_view text) = 0;
  virtual void BindBytes(int index, std::span<const std::byte> bytes) = 0;
  /// For a place that `Dialect::IdList` made.
  virtual void BindIds(int index, std::span<const std::int64_t> ids) = 0;
  /// True if there is a row.
  virtual bool Step() = 0;
  /// Runs to the end; gives the whole numbers of the first column.
  [[nodiscard]] virtual std::vector<std::int64_t> TakeIntegers() = 0;
  /// Ready to be run again, with nothing bound. Never throws.
  virtual void Reset() = 0;

  [[nodiscard]] virtual CellKind KindAt(int column) const = 0;
  [[nodiscard]] virtual std::int64_t Integer(int column) const = 0;
  [[nodiscard]] virtual double Real(int column) const = 0;
  /// Valid until the next step.
  [[nodiscard]] virtual std::string_view Text(int column) const = 0;
  [[nodiscard]] virtual std::span<const std::byte> Bytes(int column) const = 0;
  [[nodiscard]] bool IsNull(int column) const { return KindAt(column) == CellKind::Null; }
};

/// One stored binary value, read by range.
class BlobReader {
 public:
  BlobReader() = default;
  BlobReader(const BlobReader&) = delete;
  BlobReader& operator=(const BlobReader&) = delete;
  virtual ~BlobReader() = default;
  /// Goes on to the same column of another row.
  virtual void MoveTo(std::int64_t row) = 0;
  virtual void Read(std::size_t offset, std::span<std::byte> out) = 0;
};

/// One stored binary value, changed in place.
class BlobWriter {
 public:
  BlobWriter() = default;
  BlobWriter(const BlobWriter&) = delete;
  BlobWriter& operator=(const BlobWriter&) = delete;
  virtual ~BlobWriter() = default;
  /// The range must lie inside.
  virtual void Write(std::size_t offset, std::span<const std::byte> bytes) = 0;
};

/// What differs between kinds of databases, as pieces of statements.
class Dialect {
 public:
  [[nodiscard]] virtual std::string Quote(std::string_view name) const = 0;
  /// True for words that can't be names without quotes.
  [[nodiscard]] virtual bool IsReserved(std::string_view name) const = 0;
  [[nodiscard]] virtual std::string_view ColumnType(OdsType type) const = 0;
  /// Declares a column of ids that the database counts up and never gives twice.
  [[nodiscard]] virtual std::string IdColumn(std::string_view quotedName) const = 0;
  /// A source of rows with the columns `id` and `pos` (from 0) for one bound list of ids.
  [[nodiscard]] virtual std::string IdList(std::string_view alias) const = 0;
  /// The join that keeps the order of its sides.
  [[nodiscard]] virtual std::string_view OrderedJoin() const = 0;
  /// Stands behind a table in a statement: rows are found by that index (quoted), or, where it is
  /// empty, by none but that of the ids. An empty text leaves the choice to the database.
  [[nodiscard]] virtual std::string FoundBy(std::string_view quotedIndex) const = 0;
  /// Folded text and 14 digits of a date, for columns that no key is kept for.
  [[nodiscard]] virtual std::string FoldedText(std::string_view expression) const = 0;
  [[nodiscard]] virtual std::string Date14(std::string_view expression) const = 0;
  /// True if the text fits the bound pattern (see WildcardPattern).
  [[nodiscard]] virtual std::string Matches(std::string_view expression) const = 0;
  /// The text in the order of UTF-16 code units.
  [[nodiscard]] virtual std::string CodeUnitOrder(std::string_view expression) const = 0;
  /// True if the bound text stands in the expression's text.
  [[nodiscard]] virtual std::string Contains(std::string_view expression) const = 0;
  /// Creates the index for words over `table`(rowid, T); empty if the database can't do that.
  [[nodiscard]] virtual std::string CreateTextIndex(std::string_view quotedTable) const = 0;
  /// Rows of the text index that meet one bound expression.
  [[nodiscard]] virtual std::string SearchTextIndex(std::string_view quotedTable) const = 0;
  /// The shortest word, in code points, that the text index can find.
  [[nodiscard]] virtual std::size_t ShortestIndexedWord() const = 0;
  /// The expression that finds all of the words (UTF-8), each as a part of a text.
  [[nodiscard]] virtual std::string TextIndexExpression(
      const std::vector<std::string>& words) const = 0;
  /// The statement after which the transaction checks references only when it ends.
  [[nodiscard]] virtual std::string_view DeferReferences() const = 0;
  [[nodiscard]] virtual std::string TableExists() const = 0;  ///< one bound name, any case
  /// Names of the columns of a table, in order (one bound name).
  [[nodiscard]] virtual std::string ColumnsOf() const = 0;
  /// Rows of all indexes: name, table.
  [[nodiscard]] virtual std::string Indexes() const = 0;
  /// Looks at a sample of all tables, so that the database knows how many rows indexes lead to.
  [[nodiscard]] virtual std::string_view Analyze() const = 0;
  [[nodiscard]] virtual std::string Explain(std::string_view statement) const = 0;
  [[nodiscard]] virtual std::string Upsert(std::string_view insert,
                                           std::string_view conflictColumns,
                                           std::string_view assignments) const = 0;

 protected:
  ~Dialect() = default;
};

class Connection {
 public:
  Connection() = default;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  virtual ~Connection() = default;

  [[nodiscard]] virtual const Dialect& GetDialect() const = 0;
  [[nodiscard]] virtual bool IsReadOnly() const = 0;
  /// Runs one or more statements without parameters or results.
  virtual void Execute(std::string_view sql) = 0;
  [[nodiscard]] virtual std::int64_t LastId() const = 0;
  /// Rows that the last statement changed.
  [[nodiscard]] virtual std::int64_t Changes() const = 0;
  [[nodiscard]] virtual std::unique_ptr<BlobReader> OpenBlob(std::string_view table,
                                                             std::string_view column,
                                                             std::int64_t row) = 0;
  [[nodiscard]] virtual std::unique_ptr<BlobWriter> OpenBlobToWrite(std::string_view table,
                                                                    std::string_view column,
                                                                    std::int64_t row) = 0;
  /// A connection of its own for reading large values, which would drive everything else out of
  /// this one's memory. It doesn't see what this one hasn't saved. Null for a database in memory,
  /// and where another file has taken the place of this one.
  [[nodiscard]] virtual std::shared_ptr<Connection> OpenReader() const = 0;
  /// Takes the right to write, waiting for other writers up to the time limit (kTimeout).
  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() = 0;
  /// A number that is another one as soon as another connection has changed the database.
  [[nodiscard]] virtual std::int64_t ChangesOfOthers() = 0;
  /// False also after a failure for which the database gave up all changes by itself.
  [[nodiscard]] virtual bool IsInTransaction() const = 0;
  /// Asks again and again while a statement runs whether it may go on; one that may not fails with
  /// kCancelled. Null: nobody is asked.
  virtual void AskMeanwhile(std::function<bool()> mayGoOn) = 0;

 protected:
  friend class Run;
  virtual std::unique_ptr<Statement> Prepare(std::string_view sql) = 0;
  std::unordered_map<std::string, std::vector<std::unique_ptr<Statement>>> m_idle;
};

/// One use of a statement: takes a prepared one from the connection and gives it back reset.
class Run final {
 public:
  Run(Connection& connection, std::string sql) : m_connection(connection), m_sql(std::move(sql)) {
    auto& idle = m_connection.m_idle[m_sql];
    if (idle.empty()) {
      m_statement = m_connection.Prepare(m_sql);
    } else {
      m_statement = std::move(idle.back());
      idle.pop_back();
    }
  }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;
  ~Run() {
    m_statement->Reset();
    constexpr std::size_t kMostStatements = 500;
    if (m_connection.m_idle.size() > kMostStatements) m_connection.m_idle.clear();
    m_connection.m_idle[m_sql].push_back(std::move(m_statement));
  }
  Statement* operator->() const { return m_statement.get(); }
  Statement& operator*() const { return *m_statement; }

  /// Binds the next parameters in their order.
  Run& Add(std::int64_t value) {
    m_statement->BindInteger(++m_bound, value);
    return *this;
  }
  Run& Add(std::string_view text) {
    m_statement->BindText(++m_bound, text);
    return *this;
  }
  Run& AddNull() {
    m_statement->BindNull(++m_bound);
    return *this;
  }
  Run& AddIds(std::span<const std::int64_t> ids) {
    m_statement->BindIds(++m_bound, ids);
    return *this;
  }
  int Next() { return ++m_bound; }
  /// Runs it to its end; rows don't count.
  void Finish() {
    while (m_statement->Step()) {
    }
  }

 private:
  Connection& m_connection;
  std::string m_sql;
  std::unique_ptr<Statement> m_statement;
  int m_bound = 0;
};

}  // namespace hv::vex::engine::sql
