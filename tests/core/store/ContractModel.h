// tests/core/store/ContractModel.h - the small model that every kind of record store is tested
// with, and short ways to write and tell what its records hold.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "core/model/Model.h"
#include "core/store/memory/MemoryStore.h"

#include "DumpStore.h"
#include "QueryText.h"

namespace hv::vex::engine::test {

/// Projects hold runs; runs carry an attribute of every type, tags (many to many), and a next and a
/// previous run (one to one); columns are local columns of a run.
enum class ModelVariant {
  Plain,
  Grown,  ///< runs have a mood, and there are extras of a run
  Moved,  ///< another attribute stands where that of a project's start did
};
std::shared_ptr<const Model> MakeContractModel(ModelVariant variant = ModelVariant::Plain);

/// "P1.Runs+R2" in a text of such words: a record, one of its relations, a sign and a target.
struct LinkWord {
  std::string member;  ///< what stands before the sign
  RecordRef record;
  std::int32_t relation;
  char sign;
  RecordRef target;
};

/// The model's members by name.
struct ContractModel {
  explicit ContractModel(const Model& model);

  EntityId project, run, tag, column;
  std::int32_t AttributeOf(EntityId entity, std::u16string_view name) const;
  std::int32_t RelationOf(EntityId entity, std::u16string_view name) const;
  /// "Project.Name" from `start`; fails the test if a name doesn't exist.
  ResolvedPath Path(EntityId start, std::u16string_view path) const;

  void Set(RecordStore& store, RecordRef record, std::u16string_view name, const Value& v) const {
    store.Write(record, AttributeOf(record.entity, name), v);
  }
  Value Get(const RecordStore& store, RecordRef record, std::u16string_view name) const {
    return store.ReadValue(record, AttributeOf(record.entity, name));
  }
  void SetName(RecordStore& store, RecordRef record, std::u16string_view name) const;

  std::vector<LinkWord> Words(const std::string& text) const;
  /// "P1.Runs+R2" connects, "R2.Project-P1" disconnects; records that aren't there are made.
  void Link(RecordStore& store, const std::string& steps) const;
  /// For each "P1.Runs=" of the expectation the state in the same form: "P1.Runs=1,2".
  std::string LinksOf(const RecordStore& store, const std::string& expected) const;

  const Model& model;
};

/// Items of the enumeration of Run.Kind.
inline constexpr std::int64_t kRest = 0, kIdle = 1, kLoad = 7;

/// Tries to change the run 1 of a store in every way; empty if all is refused as write protected
/// and nothing is changed, else what went wrong.
std::string UnprotectedChanges(RecordStore& store, const ContractModel& m);

/// For a store whose saves go nowhere.
MemoryPersistence KeptNowhere();

inline Value Word(std::u16string_view text) {
  return Value::Text(OdsType::String, std::u16string(text));
}
inline Value Longs(Value::Integers values) { return {OdsType::Long, true, std::move(values)}; }
inline Value Shorts(Value::Integers values) { return {OdsType::Short, true, std::move(values)}; }
inline Value Doubles(Value::Reals values) { return {OdsType::Double, true, std::move(values)}; }

/// A constant as Describe tells it: "7", "r0.5", "never", "'Text*'wi".
BoundConstant ConstantOf(std::u16string_view text);
/// A constant of an instance attribute: text, and number or date if it can be read as one.
BoundConstant InstanceConstant(std::u16string_view text, bool ignoreCase = false);

BoundNode Compare(ResolvedPath path, QueryOp op, BoundConstant constant);
/// Of the instance attributes of that folded name; without a constant any value counts.
BoundNode CompareInstance(ResolvedPath path, std::u16string_view name, QueryOp op,
                          const BoundConstant& constant);
BoundNode Logic(QueryOp op, std::vector<BoundNode> children);
/// "Project.Name = 'alpha'i"
BoundNode Condition(const Model& model, EntityId start, std::u16string_view text);
BoundQuery Where(EntityId entity, BoundNode condition);
BoundQuery Where(const Model& model, EntityId entity, std::u16string_view condition);
/// All records of the entity.
BoundQuery All(EntityId entity, std::int64_t limit = 0);

/// The rows as ValueText tells them: "1, -, 3".
std::string Describe(const ColumnBlock& block);
/// Ids as "1, 2, 3".
std::string Describe(const std::vector<RecordId>& ids);

/// Ids of the records linked to one record, in order.
std::vector<RecordId> Targets(const RecordStore& store, RecordRef record, std::int32_t relation);

/// The code that an action throws; 0 if it throws nothing.
template <class Action>
std::int32_t CodeOf(Action&& action) {
  const std::string thrown = Thrown(action);
  EXPECT_FALSE(thrown.ends_with(' ')) << "an error must say what is wrong";
  return thrown.empty() ? 0 : std::stoi(thrown);
}

}  // namespace hv::vex::engine::test
