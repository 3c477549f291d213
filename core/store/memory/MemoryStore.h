// core/store/memory/MemoryStore.h - a record store that holds all records in memory.
//
// For kinds of storage that are read as a whole and written as a whole (exchange files, small
// documents). Filled by a MemoryBuilder. Records lie column by column; only values of local columns
// may stay outside, behind a ValueProvider.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/store/RecordStore.h"
#include "core/store/memory/MixedLinks.h"

namespace hv::vex::engine {

class MemoryStore;
class MemoryTable;

/// How a MemoryStore reaches what it was read from.
struct MemoryPersistence {
  /// Makes the whole contents permanent, as a whole or not at all (throws). Null: the store is
  /// read-only and every change throws kWriteProtected. Gives true if the contents must be taken
  /// over again through `reload`, because values that stayed outside have moved.
  std::function<bool(const MemoryStore& store, std::u16string_view mode)> save;
  /// Reads the contents again, for Discard (`onlyIfChanged` false) and Refresh (true, null result:
  /// nothing new). Null: Refresh does nothing and Discard throws kNotSupported if there are
  /// changes.
  std::function<std::unique_ptr<MemoryStore>(bool onlyIfChanged)> reload;
};

/// Rules beyond those of RecordStore:
/// - names aren't unique, ids are; the id attribute is the record's id and can't be written
///   (kInvalidArgument);
/// - a value of another type, or a number beyond the type's range: kWrongType; a record that
/// doesn't
///   exist: kInstanceGone; an attribute or relation index that doesn't exist: kUnknownName;
/// - writing the attribute with the base name "values" or "flags" of a local column replaces its
///   values or flags; reading it gives nothing, since it may be long;
/// - a local column without values of its own whose sequence representation is an implicit one
/// gives
///   its generation parameters as values; nothing is expanded;
/// - Refresh leaves unsaved work alone and then does nothing.
class MemoryStore final : public RecordStore {
 public:
  /// An empty store.
  MemoryStore(std::shared_ptr<const Model> model, MemoryPersistence persistence);
  ~MemoryStore() override;

  /// A copy with its own records and with `persistence`; not modified.
  [[nodiscard]] std::unique_ptr<MemoryStore> Clone(MemoryPersistence persistence) const;
  /// Adds a line to `Warnings()`, also from a const store: values outside are read late.
  void AddWarning(std::u16string text) const;
  /// The records of an application entity; throws kUnknownName for any other.
  [[nodiscard]] const MemoryTable& Table(EntityId entity) const;

  // RecordStore
  [[nodiscard]] const std::shared_ptr<const Model>& GetModel() const override { return m_model; }
  [[nodiscard]] Capabilities GetCapabilities() const override;
  [[nodiscard]] bool Exists(RecordRef record) const override;
  [[nodiscard]] std::uint64_t CountOf(EntityId entity) const override;
  [[nodiscard]] std::vector<RecordId> AllOf(EntityId entity) const override;
  [[nodiscard]] std::vector<RecordId> Select(const BoundQuery& query) const override;
  [[nodiscard]] ColumnBlock Distinct(EntityId entity, std::int32_t attribute,
                                     const BoundQuery* restriction,
                                     std::size_t limit) const override;
  [[nodiscard]] Bounds BoundsOf(EntityId entity, std::int32_t attribute,
                                const BoundQuery* restriction) const override;
  [[nodiscard]] std::vector<ColumnBlock> ReadColumns(
      EntityId entity, std::span<const RecordId> ids,
      std::span<const std::int32_t> attributes) const override;
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
  [[nodiscard]] std::vector<std::u16string> Warnings() const override { return m_warnings; }
  [[nodiscard]] std::vector<std::pair<std::u16string, std::u16string>> ContextValues()
      const override {
    return m_contextValues;
  }

 private:
  friend class MemoryBuilder;
  void TakeOver(MemoryStore& other);
  MemoryTable& Writable(EntityId entity);

  std::shared_ptr<const Model> m_model;
  MemoryPersistence m_persistence;
  std::vector<std::unique_ptr<MemoryTable>> m_tables;  // one per entity of the model
  MixedLinks m_mixedLinks;
  mutable std::vector<std::u16string> m_warnings;
  std::vector<std::pair<std::u16string, std::u16string>> m_contextValues;
  std::uint64_t m_modelStamp = 1;
  bool m_isModified = false;
};

}  // namespace hv::vex::engine
