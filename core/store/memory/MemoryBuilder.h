// core/store/memory/MemoryBuilder.h - fills a MemoryStore in bulk, in the order a file tells.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/store/memory/InMemoryValues.h"
#include "core/store/memory/MemoryStore.h"
#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// A link that couldn't be kept.
struct DroppedLink {
  enum class Reason : std::uint8_t {
    NoSuchTarget,  ///< no record has that id
    Taken,         ///< a to-one side was linked to another record before
  };
  Reason reason;
  RecordRef record;
  std::int32_t relation;  ///< of `record`'s entity
  RecordId target;
};

/// Collects records, values and links, then makes the store. Links may name records that come
/// later, and may be given on one side or on both. Attribute and relation arguments are indexes
/// into the entity of the model and must be valid; the id attribute is set by the record's id
/// alone.
///
/// A reader that knows the id first calls AppendRecord. One that meets it among the values calls
/// BeginRecord, sets values and links, and closes with EndRecord.
class MemoryBuilder {
 public:
  using DropCallback = std::function<void(const DroppedLink&)>;

  explicit MemoryBuilder(std::shared_ptr<const Model> model);
  MemoryBuilder(const MemoryBuilder&) = delete;
  MemoryBuilder& operator=(const MemoryBuilder&) = delete;
  ~MemoryBuilder();

  [[nodiscard]] const Model& GetModel() const;

  /// Adds a record; nothing if the entity has a record with that id already.
  std::optional<Row> AppendRecord(EntityId entity, RecordId id);
  /// Adds a record whose id isn't known yet. Only one record per entity can be open.
  Row BeginRecord(EntityId entity);
  /// Gives the open record its id. False if the id is taken; then the record is gone again, with
  /// its values and links.
  bool EndRecord(EntityId entity, RecordId id);
  /// Gives the open record an id above all that were met, when the file has none for it.
  RecordId EndRecordWithNewId(EntityId entity);

  /// Sets a scalar Integer or Real attribute; setting again replaces. False if the attribute is of
  /// another kind or the number doesn't fit its type: nothing was set.
  bool SetInteger(EntityId entity, Row row, std::int32_t attribute, std::int64_t value);
  /// Sets a scalar Real attribute (not complex); false as above.
  bool SetReal(EntityId entity, Row row, std::int32_t attribute, double value);
  /// Sets a scalar Text attribute; false if the attribute is of another kind.
  bool SetText(EntityId entity, Row row, std::int32_t attribute, std::u16string_view text);
  /// Sets any attribute; an unset value clears. False if type, sequence or range don't fit.
  bool SetValue(EntityId entity, Row row, std::int32_t attribute, const Value& value);

  /// Notes a link to the record `target` of the relation's target entity. Links of mixed relations
  /// are for the finished store to make.
  void AddLink(EntityId entity, Row row, std::int32_t relation, RecordId target);

  /// The values of a local column: in memory, or opened when asked for. Null: none.
  void SetValues(EntityId entity, Row row, std::shared_ptr<const InMemoryValues> values);
  void SetValues(EntityId entity, Row row, ValueProvider provider);
  /// Its flags, one per value (Short).
  void SetFlags(EntityId entity, Row row, std::shared_ptr<const InMemoryValues> flags);
  void SetFlags(EntityId entity, Row row, ValueProvider provider);

  /// Adds or (same name) replaces an instance attribute; false if its type is none of those
  /// allowed.
  bool SetInstanceAttribute(EntityId entity, Row row, const InstanceAttribute& attribute);

  void AddWarning(std::u16string text);
  void SetContextValue(std::u16string_view name, std::u16string_view text);

  /// Resolves the links and gives the store; the builder is empty afterwards. Of links that
  /// contradict each other on a to-one side the first one stays. `onDropped` (may be null) is
  /// called for every link that couldn't be kept. Throws kInternal if a record is still open.
  std::unique_ptr<MemoryStore> Finish(MemoryPersistence persistence, const DropCallback& onDropped);

 private:
  struct Pending;
  struct RelationPair;
  struct Side {
    std::uint32_t pair;  // index into m_pairs
    bool isBackward;
  };
  [[nodiscard]] MemoryTable& Table(EntityId entity);
  void ResolveLinks(RelationPair& pair, const DropCallback& onDropped);

  std::unique_ptr<MemoryStore> m_store;
  std::vector<RelationPair> m_pairs;
  std::vector<std::vector<Side>> m_sides;  // by entity and relation
  std::vector<bool> m_isOpen;              // by entity
};

}  // namespace hv::vex::engine
