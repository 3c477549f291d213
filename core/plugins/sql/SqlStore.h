// core/plugins/sql/SqlStore.h - a record store on an SQL database.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/plugins/sql/BulkValues.h"
#include "core/plugins/sql/Layout.h"
#include "core/plugins/sql/QueryCompiler.h"
#include "core/store/RecordAccess.h"

namespace hv::vex::engine::sql {

/// Opening reads the model alone. The first change takes the database's one right to write, which
/// is held until Save or Discard; until then changes are seen by this session only. Where the right
/// can't be had in time: kTimeout; where the file can't be written: kWriteProtected.
///
/// Databases of other tools of the convention can be read; their links, sequences and bulk values
/// as far as docs/formats/sql-store.md tells, and they refuse changes.
class SqlStore final : public RecordStore {
 public:
  /// \param name  of the database, for messages
  SqlStore(std::shared_ptr<Connection> connection, std::u16string name);
  ~SqlStore() override;

  [[nodiscard]] Connection& GetConnection() const { return *m_connection; }
  [[nodiscard]] const Layout& GetLayout() const { return m_schema.layout; }
  /// The database's plan for a query, one step per line.
  [[nodiscard]] std::string Explain(const BoundQuery& query) const;

  // RecordStore
  [[nodiscard]] const std::shared_ptr<const Model>& GetModel() const override {
    return m_schema.model;
  }
  [[nodiscard]] Capabilities GetCapabilities() const override;
  [[nodiscard]] bool Exists(RecordRef record) const override;
  [[nodiscard]] std::uint64_t CountOf(EntityId entity) const override;
  [[nodiscard]] std::vector<RecordId> AllOf(EntityId entity) const override;
  [[nodiscard]] std::vector<RecordId> Select(const BoundQuery& query) const override;
  [[nodiscard]] SelectedColumns SelectColumns(
      const BoundQuery& query, std::span<const std::int32_t> attributes) const override;
  [[nodiscard]] ColumnBlock Distinct(EntityId entity, std::int32_t attribute,
                                     const BoundQuery* restriction,
                                     std::size_t limit) const override;
  [[nodiscard]] Bounds BoundsOf(EntityId entity, std::int32_t attribute,
                                const BoundQuery* restriction) const override;
  [[nodiscard]] std::vector<ColumnBlock> ReadColumns(
      EntityId entity, std::span<const RecordId> ids,
      std::span<const std::int32_t> attributes) const override;
  [[nodiscard]] std::uint64_t ChangeStamp() const override;
  [[nodiscard]] Value ReadValue(RecordRef record, std::int32_t attribute) const override;
  [[nodiscard]] std::vector<Link> Follow(EntityId entity, std::int32_t relation,
                                         std::span<const RecordId> ids) const override;
  [[nodiscard]] std::vector<RecordInstanceAttribute> ReadInstanceAttributes(
      EntityId entity, std::span<const RecordId> ids) const override;
  [[nodiscard]] std::unique_ptr<ValueSource> OpenValues(RecordRef localColumn) const override;
  [[nodiscard]] std::unique_ptr<ValueSource> OpenFlags(RecordRef localColumn) const override;
  RecordId Create(EntityId entity, RecordId id = 0) override;
  void Write(RecordRef record, std::int32_t attribute, const Value& value) override;
  void Connect(RecordRef record, std::int32_t relation, RecordRef target) override;
  void Disconnect(RecordRef record, std::int32_t relation, RecordRef target) override;
  void Delete(RecordRef record) override;
  void SetInstanceAttribute(RecordRef record, const InstanceAttribute& attribute) override;
  bool RemoveInstanceAttribute(RecordRef record, std::u16string_view name) override;
  void WriteValues(RecordRef localColumn, const Value& values, std::span<const std::int16_t> flags,
                   bool append) override;
  void PutValues(RecordRef localColumn, ColumnPart part, std::uint64_t first,
                 const Value& values) override;
  [[nodiscard]] bool IsModified() const override { return m_isModified; }
  void Save(std::u16string_view mode) override;
  void Discard() override;
  void Refresh() override;
  [[nodiscard]] std::uint64_t ModelStamp() const override { return m_modelStamp; }
  [[nodiscard]] std::vector<std::u16string> Warnings() const override { return m_schema.warnings; }
  [[nodiscard]] ContextTexts ContextValues() const override { return m_schema.contextValues; }

 private:
  friend class Change;
  const EntityPlace& Place(EntityId entity) const;
  void MustExist(RecordRef record) const;
  /// Makes ready for a query, whose places must exist.
  void Prepare(const BoundQuery& query) const;
  [[noreturn]] void NoSuchRecord(RecordRef record) const;
  void MustBeScalar(EntityId entity, std::int32_t attribute) const;
  /// The query as one statement, planned.
  Fragment Compile(const BoundQuery& query, std::span<const std::int32_t> attributes = {}) const;
  Fragment Restriction(EntityId entity, const BoundQuery* restriction) const;
  void ReadSequences(EntityId entity, std::int32_t attribute, std::span<const RecordId> ids,
                     ColumnBlock& block) const;
  std::string FollowStatement(EntityId entity, std::int32_t relation, bool* isForward) const;
  std::vector<Link> FollowOne(EntityId entity, std::int32_t relation, RecordId id) const;
  /// Where values are read: by the session that changes them, or beside its other work.
  const std::shared_ptr<Connection>& BulkConnection() const;
  BulkKey KeyOf(RecordRef localColumn, BulkPart part) const;

  // Changing (SqlStoreWrite.cpp, SqlStoreLinks.cpp).
  void WriteCell(RecordRef record, const AttributePlace& place, const Value& value);
  void WriteSequence(RecordRef record, std::int32_t attribute, const Value& value);
  void NoteTexts(RecordRef record);
  void IndexTexts() const;
  std::int64_t NextPosition(const EntityPlace& owner, const RelationPlace& place, RecordId to,
                            RecordId from) const;
  bool HasLink(EntityId entity, std::int32_t relation, RecordId from, RecordId to) const;
  void AddLink(EntityId entity, std::int32_t relation, RecordId from, RecordId to);
  void RemoveLink(EntityId entity, std::int32_t relation, RecordId from, RecordId to);
  void MakeRoom(EntityId entity, std::int32_t relation, RecordId from, RecordId to);
  void CheckEnds(RecordRef record, std::int32_t relation, RecordRef target) const;
  void RemoveAllLinks(RecordRef record);

  std::shared_ptr<Connection> m_connection;
  mutable std::shared_ptr<Connection> m_bulkReader;  // null: not needed yet
  std::u16string m_name;
  std::int64_t m_seenChanges;  // of others when the schema was read
  OpenedSchema m_schema;
  std::uint64_t m_modelStamp = 1;
  bool m_isWriting = false;  // holds the right to write
  bool m_isModified = false;
  mutable std::set<std::pair<EntityId, RecordId>> m_unindexed;  // records whose texts changed
};

/// One change: takes the right to write if it isn't held, and gives it back if the change fails and
/// was the first.
class Change final {
 public:
  explicit Change(SqlStore& store);
  ~Change();
  Change(const Change&) = delete;
  Change& operator=(const Change&) = delete;
  void Done();

 private:
  SqlStore& m_store;
  bool m_isDone = false;
};

}  // namespace hv::vex::engine::sql
