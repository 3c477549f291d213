// core/plugins/atfx/InstanceAttributeReader.cpp - types come from the tags, values from their text.
#include "core/plugins/atfx/InstanceAttributeReader.h"

#include "core/plugins/atfx/AsciiText.h"
#include "core/plugins/atfx/NumberText.h"

namespace hv::vex::engine::atfx {

namespace {

struct TagType {
  std::u16string_view tag;
  OdsType type;
};

// Reading takes any row, writing the first one of a type.
constexpr TagType kTags[] = {
    {u"inst_attr_asciistring", OdsType::String}, {u"inst_attr_uint8", OdsType::Byte},
    {u"inst_attr_int8", OdsType::Byte},          {u"inst_attr_int16", OdsType::Short},
    {u"inst_attr_int32", OdsType::Long},         {u"inst_attr_int64", OdsType::LongLong},
    {u"inst_attr_float32", OdsType::Float},      {u"inst_attr_float64", OdsType::Double},
    {u"inst_attr_time", OdsType::Date},
};

}  // namespace

std::u16string_view InstanceAttributeTagOf(OdsType type) {
  for (const TagType& row : kTags) {
    if (row.type == type) return row.tag;
  }
  return {};
}

void InstanceAttributeReader::Begin(EntityId entity, Row row) {
  m_entity = entity;
  m_row = row;
  m_depth = 0;
}

void InstanceAttributeReader::OnStart(std::u16string_view name,
                                      std::span<const xml::AttributeView> attributes) {
  if (++m_depth != 1) return;
  m_isKnown = false;
  m_attribute = {};
  m_unit.clear();
  m_text.clear();
  for (const TagType& row : kTags) {
    if (row.tag != name) continue;
    m_isKnown = true;
    m_attribute.value = Value::Unset(row.type);
  }
  if (!m_isKnown) return m_context.Warn(Join({u"unknown instance attribute tag '", name, u"'"}));
  for (const xml::AttributeView& attribute : attributes) {
    if (attribute.name == u"name") m_attribute.name = attribute.value;
    if (attribute.name == u"unit") m_unit = Trim(attribute.value);
  }
  if (m_attribute.name.empty()) {
    m_isKnown = false;
    m_context.Warn(u"instance attribute without a name left out");
  }
}

void InstanceAttributeReader::OnText(std::u16string_view text) {
  if (m_depth == 1) m_text += text;
}

void InstanceAttributeReader::OnEnd() {
  if (--m_depth != 0 || !m_isKnown) return;
  SetContent(m_text);
  m_builder.SetInstanceAttribute(m_entity, m_row, m_attribute);
  if (!m_unit.empty()) {
    m_uses.push_back({m_entity, m_row, std::move(m_attribute), std::move(m_unit)});
  }
}

void InstanceAttributeReader::SetContent(std::u16string_view text) {
  const OdsType type = m_attribute.value.type;
  if (type == OdsType::String) {
    if (!text.empty()) m_attribute.value = Value::Text(type, std::u16string(text));
    return;
  }
  text = Trim(text);
  if (text.empty()) return;
  switch (StorageKindOf(type)) {
    case StorageKind::Integer:
      if (const auto number = ParseInteger(text)) {
        // A signed byte has no type of its own.
        const bool isSigned = type == OdsType::Byte && *number < 0 && *number >= -128;
        m_attribute.value = Value::Integer(isSigned ? OdsType::Short : type, *number);
      }
      break;
    case StorageKind::Real:
      if (const auto number = ParseReal(text)) m_attribute.value = Value::Real(type, *number);
      break;
    default:
      m_attribute.value = Value::Text(type, std::u16string(text));
      break;
  }
  if (!m_attribute.value.IsSet()) {
    m_context.Refuse(Join({u"'", text, u"' in instance attribute '", m_attribute.name,
                           u"' is not a value of ", NameOfType(type, false)}));
  }
}

void InstanceAttributeReader::AddUnit(RecordId id, std::u16string_view name) {
  m_units.emplace(id, name);
  m_unitsByName.emplace(name, id);
}

void InstanceAttributeReader::ResolveUnits() {
  for (UnitUse& use : m_uses) {
    const std::optional<std::int64_t> id = ParseInteger(use.unit);
    if (id && m_units.contains(*id)) {
      use.attribute.unit = *id;
    } else if (const auto named = m_unitsByName.find(use.unit); named != m_unitsByName.end()) {
      use.attribute.unit = named->second;
    } else {
      m_context.WarnGenerally(Join({u"unit '", use.unit, u"' of instance attribute '",
                                    use.attribute.name, u"' doesn't exist"}));
      continue;
    }
    m_builder.SetInstanceAttribute(use.entity, use.row, use.attribute);
  }
  m_uses.clear();
}

}  // namespace hv::vex::engine::atfx
