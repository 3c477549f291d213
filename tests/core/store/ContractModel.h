// tests/core/store/ContractModel.h - the small model that every kind of record store is tested
// with.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/model/Model.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::test {

/// Projects hold runs; runs carry an attribute of every type, tags (many to many), and a next and a
/// previous run (one to one); columns are local columns of a run.
enum class ModelVariant {
  Plain,
  Grown,  ///< runs have a mood, and there are extras of a run
  Moved,  ///< another attribute stands where that of a project's start did
};
std::shared_ptr<const Model> MakeContractModel(ModelVariant variant = ModelVariant::Plain);

/// Indexes of the model's members, looked up once.
struct ContractModel {
  explicit ContractModel(const Model& model);

  EntityId project, run, tag, column;
  std::int32_t AttributeOf(EntityId entity, std::u16string_view name) const;
  std::int32_t RelationOf(EntityId entity, std::u16string_view name) const;
  /// "Project.Name" from `start`; fails the test if a name doesn't exist.
  ResolvedPath Path(EntityId start, std::u16string_view path) const;

  const Model& model;
};

/// Items of the enumeration of Run.Kind.
inline constexpr std::int64_t kRest = 0, kIdle = 1, kLoad = 7;

BoundConstant IntegerConstant(std::int64_t value);
BoundConstant RealConstant(double value);
/// As written, or folded if `ignoreCase`.
BoundConstant TextConstant(std::u16string_view text, bool ignoreCase = false,
                           bool wildcards = false);
BoundConstant NeverConstant();
/// A constant of an instance attribute: text, and number or date if it can be read as one.
BoundConstant InstanceConstant(std::u16string_view text, bool ignoreCase = false);

BoundNode Compare(ResolvedPath path, QueryOp op, BoundConstant constant);
BoundNode Logic(QueryOp op, std::vector<BoundNode> children);
BoundQuery Where(EntityId entity, BoundNode condition);

/// A condition for people, to find out why a test failed.
std::string Describe(const Model& model, const BoundNode& node);
/// Names a scalar column block's rows, "-" for nulls: "1, -, 3".
std::u16string Describe(const ColumnBlock& block);
/// The same for one scalar value.
std::u16string Describe(const Value& value);
/// Ids as "1, 2, 3".
std::string Describe(const std::vector<RecordId>& ids);

/// Ids of the records linked to one record, in order.
std::vector<RecordId> Targets(const RecordStore& store, RecordRef record, std::int32_t relation);

}  // namespace hv::vex::engine::test
