// core/plugins/atfx/WantedTypes.cpp - two batches per call, whatever the number of columns.
#include "core/plugins/atfx/WantedTypes.h"

#include "core/plugins/atfx/Representation.h"

namespace hv::vex::engine::atfx {

namespace {

/// The type of a number of the standard's data type enumeration.
OdsType TypeOfNumber(std::int64_t number) {
  const bool isScalar = number >= 1 && number <= 14;
  return isScalar || number == 28 || number == 30 ? static_cast<OdsType>(number) : OdsType::Unknown;
}

bool HasInteger(const ColumnBlock& block, std::size_t row) {
  return row < block.integers.size() && block.isNull[row] == 0;
}

}  // namespace

std::vector<OdsType> WantedTypes(const RecordStore& store, EntityId entity,
                                 std::span<const RecordId> columns) {
  std::vector<OdsType> types(columns.size(), OdsType::Unknown);
  const Model& model = *store.GetModel();
  const Entity& local = model.At(entity);
  const std::int32_t toQuantity = local.FindBaseRelation(u"measurement_quantity");
  if (toQuantity != kNone) {
    const EntityId quantities = local.relations[static_cast<std::size_t>(toQuantity)].target;
    const std::int32_t dataType = model.At(quantities).FindBaseAttribute(u"datatype");
    const std::vector<Link> links = store.Follow(entity, toQuantity, columns);
    std::vector<RecordId> targets;
    targets.reserve(links.size());
    for (const Link& link : links) targets.push_back(link.target.id);
    if (dataType != kNone) {
      const std::int32_t attributes[] = {dataType};
      const ColumnBlock block = store.ReadColumns(quantities, targets, attributes)[0];
      for (std::size_t i = 0; i < links.size(); ++i) {
        if (HasInteger(block, i)) types[links[i].source] = TypeOfNumber(block.integers[i]);
      }
    }
  }
  const std::int32_t raw = local.FindBaseAttribute(u"raw_datatype");
  const std::int32_t representation = local.FindBaseAttribute(u"sequence_representation");
  if (raw == kNone || representation == kNone) return types;
  const std::int32_t attributes[] = {raw, representation};
  const std::vector<ColumnBlock> blocks = store.ReadColumns(entity, columns, attributes);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (HasInteger(blocks[0], i) && HasInteger(blocks[1], i) && IsRaw(blocks[1].integers[i])) {
      types[i] = TypeOfNumber(blocks[0].integers[i]);
    }
  }
  return types;
}

}  // namespace hv::vex::engine::atfx
