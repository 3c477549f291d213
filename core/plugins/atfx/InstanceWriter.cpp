// core/plugins/atfx/InstanceWriter.cpp - one pass over the records, batch by batch.
#include "core/plugins/atfx/InstanceWriter.h"

#include "core/plugins/atfx/InstanceAttributeReader.h"
#include "core/plugins/atfx/ValueWriter.h"

#include <algorithm>

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

namespace {

constexpr std::size_t kRecordsPerBatch = 1024;

bool IsOneOf(std::u16string_view name, std::initializer_list<std::u16string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

struct InstanceWriter::Batch {
  const Entity& entity;
  std::span<const RecordId> ids;
  std::vector<std::int32_t> attributes;  // those read as blocks, by position
  std::vector<ColumnBlock> blocks;
  std::vector<std::int32_t> blockOf;     // by attribute; kNone: not read
  std::vector<std::vector<Link>> links;  // by relation
  std::vector<std::size_t> nextLink;     // by relation
  std::vector<RecordInstanceAttribute> instanceAttributes;
  std::size_t nextInstanceAttribute = 0;
};

bool InstanceWriter::IsHidden(EntityId entity) const {
  return m_model.BaseNameOf(entity) == u"aoexternalcomponent";
}

void InstanceWriter::Write() {
  m_xml.Start(u"instance_data");
  for (const Entity& entity : m_model.Entities()) {
    if (!entity.isBase && !IsHidden(entity.id)) WriteEntity(entity);
  }
  m_xml.End();
}

void InstanceWriter::WriteEntity(const Entity& entity) {
  const std::vector<RecordId> ids = m_source.AllOf(entity.id);
  for (std::size_t first = 0; first < ids.size(); first += kRecordsPerBatch) {
    const std::size_t count = std::min(kRecordsPerBatch, ids.size() - first);
    WriteBatch(entity, std::span(ids).subspan(first, count));
  }
}

void InstanceWriter::WriteBatch(const Entity& entity, std::span<const RecordId> ids) {
  Batch batch{entity, ids, {}, {}, {}, {}, {}, {}};
  const bool isColumn = m_model.BaseNameOf(entity.id) == u"aolocalcolumn";
  batch.blockOf.assign(entity.attributes.size(), kNone);
  for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
    const auto attribute = static_cast<std::int32_t>(i);
    if (attribute == entity.idAttribute) continue;
    // Values and flags are opened one column at a time, so that only one is in memory.
    if (isColumn && IsOneOf(entity.attributes[i].baseName, {u"values", u"flags"})) continue;
    batch.blockOf[i] = static_cast<std::int32_t>(batch.attributes.size());
    batch.attributes.push_back(attribute);
  }
  if (!batch.attributes.empty()) {
    batch.blocks = m_source.ReadColumns(entity.id, ids, batch.attributes);
  }
  batch.links.resize(entity.relations.size());
  batch.nextLink.assign(entity.relations.size(), 0);
  for (std::size_t i = 0; i < entity.relations.size(); ++i) {
    if (IsHidden(entity.relations[i].target)) continue;
    batch.links[i] = m_source.Follow(entity.id, static_cast<std::int32_t>(i), ids);
  }
  batch.instanceAttributes = m_source.ReadInstanceAttributes(entity.id, ids);
  for (std::size_t row = 0; row < ids.size(); ++row) WriteRecord(&batch, row);
  m_steps.Add(ids.size());
}

void InstanceWriter::WriteRecord(Batch* batch, std::size_t row) {
  const Entity& entity = batch->entity;
  const RecordRef record{entity.id, batch->ids[row]};
  m_xml.Start(entity.name);
  if (entity.idAttribute != kNone) {
    m_xml.Leaf(entity.attributes[static_cast<std::size_t>(entity.idAttribute)].name, record.id);
  }
  for (const MemberRef member : entity.members) {
    if (member.isRelation) {
      WriteLinks(batch, member.index, row);
    } else {
      WriteAttribute(*batch, member.index, row);
    }
  }
  if (m_model.BaseNameOf(entity.id) == u"aolocalcolumn") WriteColumn(entity, record);
  WriteInstanceAttributes(batch, row);
  m_xml.End();
}

void InstanceWriter::WriteAttribute(const Batch& batch, std::size_t position, std::size_t row) {
  if (batch.blockOf[position] == kNone) return;
  const Attribute& attribute = batch.entity.attributes[position];
  const ColumnBlock& block = batch.blocks[static_cast<std::size_t>(batch.blockOf[position])];
  if (block.isNull[row] != 0) return;
  const Enumeration* const enumeration =
      attribute.enumeration == kNone
          ? nullptr
          : &m_model.Enumerations()[static_cast<std::size_t>(attribute.enumeration)];
  m_xml.Start(attribute.name);
  const StorageKind kind = StorageKindOf(attribute.type);
  if (attribute.sequence || kind == StorageKind::Bytes) {
    WriteValue(block.others[row], enumeration, m_xml);
  } else if (kind == StorageKind::Integer) {
    WriteNumber(attribute.type, block.integers[row], enumeration, m_xml);
  } else if (kind == StorageKind::Text) {
    WriteValue(Value::Text(attribute.type, std::u16string(block.TextAt(row))), enumeration, m_xml);
  } else {
    const std::size_t parts = PartsOf(attribute.type);
    const bool isSingle = attribute.type == OdsType::Float || attribute.type == OdsType::Complex;
    for (std::size_t i = 0; i < parts; ++i) m_xml.Real(block.reals[row * parts + i], isSingle);
  }
  m_xml.End();
}

void InstanceWriter::WriteLinks(Batch* batch, std::size_t position, std::size_t row) {
  const std::vector<Link>& links = batch->links[position];
  std::size_t& next = batch->nextLink[position];
  if (next == links.size() || links[next].source != row) return;
  m_xml.Start(batch->entity.relations[position].name);
  for (; next < links.size() && links[next].source == row; ++next) {
    m_xml.Integer(links[next].target.id);
  }
  m_xml.End();
}

void InstanceWriter::WriteColumn(const Entity& entity, RecordRef column) {
  const auto tagOf = [&](std::u16string_view baseName) -> std::u16string_view {
    const std::int32_t attribute = entity.FindBaseAttribute(baseName);
    if (attribute == kNone) return {};
    return entity.attributes[static_cast<std::size_t>(attribute)].name;
  };
  const ColumnPlan::Long* const stored = m_plan.Find(column);
  const ColumnFacts facts = ReadColumnFacts(m_source, column);
  const std::u16string_view values = tagOf(u"values");
  if (facts.values && !values.empty()) {
    m_xml.Start(values);
    if (stored && stored->values) {
      WriteComponent(*stored->values, m_xml);
    } else {
      WriteInlineValues(*facts.values, m_xml);
    }
    m_xml.End();
  }
  const std::u16string_view flags = tagOf(u"flags");
  if (facts.flags && !flags.empty()) {
    m_xml.Start(flags);
    if (stored && stored->flags) {
      WriteComponent(*stored->flags, m_xml);
    } else {
      WriteInlineFlags(*facts.flags, m_xml);
    }
    m_xml.End();
  }
  if (facts.globalFlag) m_xml.Leaf(tagOf(u"global_flag"), *facts.globalFlag);
}

void InstanceWriter::WriteInstanceAttributes(Batch* batch, std::size_t row) {
  std::size_t& next = batch->nextInstanceAttribute;
  const auto isOfRow = [&] {
    return next < batch->instanceAttributes.size() && batch->instanceAttributes[next].source == row;
  };
  if (!isOfRow()) return;
  m_xml.Start(u"instance_attributes");
  for (; isOfRow(); ++next) {
    const InstanceAttribute& attribute = batch->instanceAttributes[next].attribute;
    const std::u16string_view tag = InstanceAttributeTagOf(attribute.value.type);
    if (tag.empty()) continue;
    m_xml.Start(tag);
    m_xml.Attribute("name", attribute.name);
    if (attribute.unit != 0) {
      m_xml.Attribute("unit", cor::FromUtf8(std::to_string(attribute.unit)));
    }
    WriteValue(attribute.value, nullptr, m_xml);
    m_xml.End();
  }
  m_xml.End();
}

}  // namespace hv::vex::engine::atfx
