// core/plugins/atfx/InstanceAttributeReader.h - attributes that single instances have beyond the
// model.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/plugins/atfx/ReadContext.h"
#include "core/store/memory/MemoryBuilder.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine::atfx {

/// The tag of an instance attribute of a type; empty if there is none.
std::u16string_view InstanceAttributeTagOf(OdsType type);

/// Takes the events inside `instance_attributes`. Units may be told by id or, by careless
/// exporters, by name; both are looked up when all units are known.
class InstanceAttributeReader {
 public:
  InstanceAttributeReader(ReadContext& context, MemoryBuilder& builder)
      : m_context(context), m_builder(builder) {}
  InstanceAttributeReader(const InstanceAttributeReader&) = delete;
  InstanceAttributeReader& operator=(const InstanceAttributeReader&) = delete;

  void Begin(EntityId entity, Row row);
  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes);
  void OnText(std::u16string_view text);
  void OnEnd();

  /// A unit that stands in the file.
  void AddUnit(RecordId id, std::u16string_view name);
  /// When all instances are read.
  void ResolveUnits();

 private:
  struct UnitUse {
    EntityId entity;
    Row row;
    InstanceAttribute attribute;
    std::u16string unit;
  };
  void SetContent(std::u16string_view text);

  ReadContext& m_context;
  MemoryBuilder& m_builder;
  EntityId m_entity = kNoEntity;
  Row m_row = 0;
  int m_depth = 0;
  bool m_isKnown = false;
  InstanceAttribute m_attribute;
  std::u16string m_unit;
  std::u16string m_text;
  std::unordered_map<RecordId, std::u16string> m_units;
  std::unordered_map<std::u16string, RecordId> m_unitsByName;
  std::vector<UnitUse> m_uses;
};

}  // namespace hv::vex::engine::atfx
