// core/plugins/atfx/ColumnPlan.cpp - short values stay in the XML, long ones go into files.
#include "core/plugins/atfx/ColumnPlan.h"

#include "core/plugins/atfx/Batches.h"
#include "core/plugins/atfx/Representation.h"
#include "core/plugins/atfx/WantedTypes.h"
#include "core/store/RecordAccess.h"

#include <algorithm>

namespace hv::vex::engine::atfx {

namespace {

constexpr std::size_t kColumnsPerBatch = 1024;

/// The attribute with that base name; unset if the model or the record has none.
Value ReadBaseAttribute(const RecordStore& source, RecordRef record, std::u16string_view baseName) {
  const std::int32_t attribute = source.GetModel()->At(record.entity).FindBaseAttribute(baseName);
  return attribute == kNone ? Value{} : source.ReadValue(record, attribute);
}

std::optional<std::int64_t> ReadInteger(const RecordStore& source, RecordRef record,
                                        std::u16string_view baseName) {
  const Value value = ReadBaseAttribute(source, record, baseName);
  const auto* const integers = std::get_if<Value::Integers>(&value.data);
  return integers && !integers->empty() ? std::optional(integers->front()) : std::nullopt;
}

/// True if the values are the generation parameters, which stand in an attribute anyhow.
bool AreParameters(const RecordStore& source, RecordRef column, const ValueSource& values) {
  if (values.Type() != OdsType::Double) return false;
  if (!IsImplicit(ReadInteger(source, column, u"sequence_representation").value_or(0)))
    return false;
  const Value parameters = ReadBaseAttribute(source, column, u"generation_parameters");
  const auto* const reals = std::get_if<Value::Reals>(&parameters.data);
  if (!reals || reals->size() != values.Count()) return false;
  std::vector<double> read(reals->size());
  values.ReadReals(0, read);
  return read == *reals;
}

/// The flag that all values share, if they do.
std::optional<std::int64_t> CommonFlag(const ValueSource& flags) {
  std::optional<std::int64_t> common;
  std::vector<std::int64_t> numbers;
  for (std::uint64_t first = 0; first < flags.Count(); first += kBatch) {
    numbers.resize(static_cast<std::size_t>(std::min(kBatch, flags.Count() - first)));
    flags.ReadIntegers(first, numbers);
    if (!common) common = numbers.front();
    for (const std::int64_t number : numbers) {
      if (number != *common) return std::nullopt;
    }
  }
  return common;
}

}  // namespace

ColumnFacts ReadColumnFacts(const RecordStore& source, RecordRef column) {
  ColumnFacts facts;
  facts.values = source.OpenValues(column);
  if (facts.values && AreParameters(source, column, *facts.values)) facts.values.reset();
  facts.flags = source.OpenFlags(column);
  if (!facts.flags) return facts;
  const std::optional<std::int64_t> common = CommonFlag(*facts.flags);
  const std::optional<std::int64_t> global = ReadInteger(source, column, u"global_flag");
  const bool hasGlobal =
      source.GetModel()->At(column.entity).FindBaseAttribute(u"global_flag") != kNone;
  if (common && global && *common == *global) {
    facts.flags.reset();
  } else if (common == kFlagsOfValid && !global && hasGlobal) {
    facts.globalFlag = common;
    facts.flags.reset();
  }
  return facts;
}

void ColumnPlan::Make(const RecordStore& source, std::uint64_t mostInline, ComponentWriter& writer,
                      WatchedSteps& steps) {
  const Model& model = *source.GetModel();
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase || model.BaseNameOf(entity.id) != u"aolocalcolumn") continue;
    const std::vector<RecordId> ids = source.AllOf(entity.id);
    for (std::size_t first = 0; first < ids.size(); first += kColumnsPerBatch) {
      const std::size_t count = std::min(kColumnsPerBatch, ids.size() - first);
      MakeBatch(source, entity.id, std::span(ids).subspan(first, count), mostInline, writer, steps);
    }
  }
}

void ColumnPlan::MakeBatch(const RecordStore& source, EntityId entity,
                           std::span<const RecordId> ids, std::uint64_t mostInline,
                           ComponentWriter& writer, WatchedSteps& steps) {
  const std::vector<OdsType> wanted = WantedTypes(source, entity, ids);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const ColumnFacts facts = ReadColumnFacts(source, {entity, ids[i]});
    Long stored;
    if (facts.values && facts.values->Count() > mostInline &&
        ComponentWriter::CanWrite(facts.values->Type(), wanted[i])) {
      stored.values = writer.Write(*facts.values);
    }
    if (facts.flags && facts.flags->Count() > mostInline) {
      stored.flags = writer.Write(*facts.flags);
    }
    steps.Add(1);
    if (stored.values || stored.flags) m_long[entity].emplace(ids[i], std::move(stored));
  }
}

const ColumnPlan::Long* ColumnPlan::Find(RecordRef column) const {
  const auto entity = m_long.find(column.entity);
  if (entity == m_long.end()) return nullptr;
  const auto found = entity->second.find(column.id);
  return found == entity->second.end() ? nullptr : &found->second;
}

}  // namespace hv::vex::engine::atfx
