// core/store/RecordStore.h - what a kind of storage must do; everything above it is written once.
//
// A record is named by its entity and an id that is unique in the entity. All reading comes in
// batches: ids in, columns out. A record store belongs to one session and is used on one thread.
// Failures are thrown as hv::vex::Exception with a code of store/core/Exception.h and a message
// that says what, where and why.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/model/Model.h"
#include "core/model/Value.h"
#include "core/query/BoundQuery.h"

namespace hv::vex::engine {

using RecordId = std::int64_t;

struct RecordRef {
  EntityId entity = kNoEntity;
  RecordId id = 0;
  friend bool operator==(const RecordRef&, const RecordRef&) = default;
};

/// One related record: the position of the record it was found from, and the record itself.
struct Link {
  std::uint32_t source;  ///< index into the ids that were asked for
  RecordRef target;
};

/// One attribute of one record that the model doesn't have.
struct InstanceAttribute {
  std::u16string name;
  Value value;  ///< scalar; its type is String, Byte, Short, Long, LongLong, Float, Double or Date
  std::int64_t unit = 0;
};

/// One of the instance attributes of many records.
struct RecordInstanceAttribute {
  std::uint32_t source;  ///< index into the ids that were asked for
  InstanceAttribute attribute;
};

/// What a store can do; asked before use, never found out by failing.
struct Capabilities {
  bool writable = false;
  bool queries = true;
  bool customLogic = true;       ///< OR, NOT and nesting in queries
  bool multipleValues = true;    ///< several values of one condition joined with OR
  std::size_t longestValue = 0;  ///< longest constant of a query, 0: no limit
  bool freeText = true;
};

/// Values of one local column (or any long sequence), read by range without being loaded whole.
class ValueSource {
 public:
  virtual ~ValueSource() = default;
  [[nodiscard]] virtual OdsType Type() const = 0;
  /// Number of elements that can be read (a complex pair is one).
  [[nodiscard]] virtual std::uint64_t Count() const = 0;
  /// Reads the elements `first` to `first + out.size() / PartsOf(Type()) - 1` of an Integer or Real
  /// column, converted. The range must lie inside `Count()`.
  virtual void ReadIntegers(std::uint64_t first, std::span<std::int64_t> out) const = 0;
  virtual void ReadReals(std::uint64_t first, std::span<double> out) const = 0;
  /// Reads `count` texts of a Text column, calling back for each.
  virtual void ReadTexts(std::uint64_t first, std::uint64_t count,
                         const std::function<void(std::u16string_view)>& sink) const = 0;
  virtual void ReadBytes(std::uint64_t first, std::uint64_t count,
                         const std::function<void(std::span<const std::byte>)>& sink) const = 0;
  /// The elements as they lie in memory or in a mapped file, if they lie there without gaps as
  /// little-endian values of the type's own width (Short 2, Long 4, Float 4, Double 8 ...); else
  /// empty.
  [[nodiscard]] virtual std::span<const std::byte> Contiguous() const { return {}; }
  /// For those who pass through once: lets go of memory that was only taken up by reading, such as
  /// pages of a mapped file. Everything can be read as before.
  virtual void Forget() const {}
};

/// The two long lists of a local column.
enum class ColumnPart : std::uint8_t { Values, Flags };

/// Records that were found, and attributes of them: one block for each, one row per id.
struct SelectedColumns {
  std::vector<RecordId> ids;
  std::vector<ColumnBlock> blocks;
};

/// The lowest and highest value of an attribute, and how many records have one.
struct Bounds {
  Value lowest, highest;
  std::uint64_t count = 0;
};

class RecordStore {
 public:
  RecordStore() = default;
  RecordStore(const RecordStore&) = delete;
  RecordStore& operator=(const RecordStore&) = delete;
  virtual ~RecordStore() = default;

  [[nodiscard]] virtual const std::shared_ptr<const Model>& GetModel() const = 0;
  [[nodiscard]] virtual Capabilities GetCapabilities() const = 0;

  // --- finding -------------------------------------------------------------------------------
  [[nodiscard]] virtual bool Exists(RecordRef record) const = 0;
  /// Number of records of an application entity.
  [[nodiscard]] virtual std::uint64_t CountOf(EntityId entity) const = 0;
  /// Ids of all records of an application entity, ascending.
  [[nodiscard]] virtual std::vector<RecordId> AllOf(EntityId entity) const = 0;
  /// Ids of the records that meet the query, without repetition, ascending unless the query says
  /// another order or where to start, at most `query.limit` of them if that is above 0.
  [[nodiscard]] virtual std::vector<RecordId> Select(const BoundQuery& query) const = 0;
  /// `Select`, and `ReadColumns` of what it finds: for stores that come by the values anyway.
  [[nodiscard]] virtual SelectedColumns SelectColumns(
      const BoundQuery& query, std::span<const std::int32_t> attributes) const;
  /// Distinct values of a scalar attribute, ascending (texts by their folded form), among the
  /// records that meet `restriction` (null: all), at most `limit` (0: all). Unset values are left
  /// out.
  [[nodiscard]] virtual ColumnBlock Distinct(EntityId entity, std::int32_t attribute,
                                             const BoundQuery* restriction,
                                             std::size_t limit) const = 0;
  [[nodiscard]] virtual Bounds BoundsOf(EntityId entity, std::int32_t attribute,
                                        const BoundQuery* restriction) const = 0;

  // --- reading -------------------------------------------------------------------------------
  /// One block per attribute, one row per id, in the order asked. Ids that don't exist give nulls.
  [[nodiscard]] virtual std::vector<ColumnBlock> ReadColumns(
      EntityId entity, std::span<const RecordId> ids,
      std::span<const std::int32_t> attributes) const = 0;
  /// Where reading values one by one is dear: a number above 0 that is another one after each
  /// change made by this process. 0 where there is nothing to be saved by reading ahead.
  [[nodiscard]] virtual std::uint64_t ChangeStamp() const { return 0; }
  /// One value of one record. Local columns' values come from `OpenValues` instead.
  [[nodiscard]] virtual Value ReadValue(RecordRef record, std::int32_t attribute) const = 0;
  /// Related records of many records along one relation, grouped by source in the order asked; the
  /// targets of one source in the order in which they were linked.
  [[nodiscard]] virtual std::vector<Link> Follow(EntityId entity, std::int32_t relation,
                                                 std::span<const RecordId> ids) const = 0;
  /// Attributes of many records that the model doesn't have, grouped by record in the order asked.
  /// Ids that don't exist give none.
  [[nodiscard]] virtual std::vector<RecordInstanceAttribute> ReadInstanceAttributes(
      EntityId entity, std::span<const RecordId> ids) const = 0;
  /// The same for one record; throws kInstanceGone if it doesn't exist.
  [[nodiscard]] std::vector<InstanceAttribute> InstanceAttributesOf(RecordRef record) const;
  /// The stored values of a local column, external components resolved. Null if it has none.
  /// Throws kBadFile if a component file is missing, or too short to hold even one value.
  [[nodiscard]] virtual std::unique_ptr<ValueSource> OpenValues(RecordRef localColumn) const = 0;
  /// Like `OpenValues` for the flags, one per value.
  [[nodiscard]] virtual std::unique_ptr<ValueSource> OpenFlags(RecordRef localColumn) const = 0;

  // --- changing; throw kWriteProtected where the store refuses -----------------------------------
  /// Makes a record with a new id (`id` 0) or the one given. Throws kNotUnique if that exists.
  virtual RecordId Create(EntityId entity, RecordId id = 0) = 0;
  /// Sets or (unset value) clears one attribute. Throws kWrongType for a value of another type, a
  /// number beyond the type's range or a date that isn't one, kInvalidArgument for another id.
  virtual void Write(RecordRef record, std::int32_t attribute, const Value& value) = 0;
  /// Links two records; a to-one side lets go of its earlier partner. Already linked: no effect.
  virtual void Connect(RecordRef record, std::int32_t relation, RecordRef target) = 0;
  virtual void Disconnect(RecordRef record, std::int32_t relation, RecordRef target) = 0;
  /// Deletes a record, its links and, along child relations, nothing: children lose their parent.
  virtual void Delete(RecordRef record) = 0;
  virtual void SetInstanceAttribute(RecordRef record, const InstanceAttribute& attribute) = 0;
  virtual bool RemoveInstanceAttribute(RecordRef record, std::u16string_view name) = 0;
  /// Replaces all values of a local column, or (`append`) adds to them. Flags are optional.
  virtual void WriteValues(RecordRef localColumn, const Value& values,
                           std::span<const std::int16_t> flags, bool append) = 0;
  /// Replaces values (or flags) of a local column from `first` on, at a cost that doesn't grow with
  /// the rest of them. The range lies inside those that `OpenValues` (`OpenFlags`) gives, or begins
  /// behind their last and then adds to them; else kInvalidArgument. Throws kWrongType as `Write`
  /// does, and for another type than theirs. Parameters become values of their own by this. Sources
  /// that were opened before give what was there or what is there now, or fail with kInstanceGone.
  virtual void PutValues(RecordRef localColumn, ColumnPart part, std::uint64_t first,
                         const Value& values) = 0;

  // --- session -------------------------------------------------------------------------------
  [[nodiscard]] virtual bool IsModified() const = 0;
  /// Makes all changes since the last save permanent, as a whole or not at all.
  virtual void Save(std::u16string_view mode) = 0;
  /// Drops all changes since the last save.
  virtual void Discard() = 0;
  /// Looks again at what others may have changed, unless there is unsaved work. The model may have
  /// grown by that, and `ModelStamp` with it; all ids and indexes stay good. If it has changed in
  /// another way: kNotSupported, and the store stays as it was. The same goes for `Save` and
  /// `Discard` where they read a file again.
  virtual void Refresh() = 0;
  /// Grows with every change of the model.
  [[nodiscard]] virtual std::uint64_t ModelStamp() const { return 1; }
  /// What was odd in the source but could be read, one line each.
  [[nodiscard]] virtual std::vector<std::u16string> Warnings() const { return {}; }
  /// Facts about the whole source ("documentation_exporter" ...), name and text.
  [[nodiscard]] virtual std::vector<std::pair<std::u16string, std::u16string>> ContextValues()
      const {
    return {};
  }
};

}  // namespace hv::vex::engine
