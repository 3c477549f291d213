// core/plugins/atfx/InstanceFields.cpp - tables of tags.
#include "core/plugins/atfx/InstanceFields.h"

#include "core/plugins/atfx/AsciiText.h"

namespace hv::vex::engine::atfx {

namespace {

Role RoleOfBase(std::u16string_view baseName) {
  if (baseName == u"aolocalcolumn") return Role::LocalColumn;
  if (baseName == u"aoexternalcomponent") return Role::ExternalComponent;
  if (baseName == u"aounit") return Role::Unit;
  if (baseName == u"aofile") return Role::File;
  return Role::Plain;
}

Field::Kind KindOf(const Attribute& attribute, bool isId, Role role) {
  if (isId) return Field::Kind::Id;
  if (role == Role::LocalColumn && attribute.baseName == u"values") return Field::Kind::Values;
  if (role == Role::LocalColumn && attribute.baseName == u"flags") return Field::Kind::Flags;
  if (attribute.type == OdsType::Unknown) return Field::Kind::Unreadable;
  if (attribute.sequence) return Field::Kind::Typed;
  switch (attribute.type) {
    case OdsType::Boolean:
      return Field::Kind::Boolean;
    case OdsType::Short:
    case OdsType::Byte:
    case OdsType::Long:
    case OdsType::LongLong:
    case OdsType::Id:
      return Field::Kind::Integer;
    case OdsType::Float:
    case OdsType::Double:
      return Field::Kind::Real;
    case OdsType::String:
      return Field::Kind::Text;
    case OdsType::Date:
      return Field::Kind::Date;
    case OdsType::Enum:
      return Field::Kind::Enum;
    default:
      return Field::Kind::Typed;
  }
}

Field FieldOf(const Model& model, const Entity& entity, MemberRef member, Role role) {
  Field field;
  field.index = static_cast<std::int32_t>(member.index);
  if (member.isRelation) {
    const Relation& relation = entity.relations[member.index];
    field.kind = Field::Kind::Relation;
    field.name = relation.name;
    field.baseName = relation.baseName;
    field.target = relation.target;
    return field;
  }
  const Attribute& attribute = entity.attributes[member.index];
  field.kind = KindOf(attribute, field.index == entity.idAttribute, role);
  field.type = attribute.type;
  field.name = attribute.name;
  field.baseName = attribute.baseName;
  if (attribute.enumeration != kNone) {
    field.enumeration = &model.Enumerations()[static_cast<std::size_t>(attribute.enumeration)];
  }
  return field;
}

}  // namespace

Field* EntityFields::Find(std::u16string_view tag) {
  if (fields.empty()) return nullptr;
  Field& guess = fields[fields[last].next];
  if (guess.name == tag) {
    last = fields[last].next;
    return &guess;
  }
  std::uint32_t found = 0;
  if (const auto exact = byTag.find(tag); exact != byTag.end()) {
    found = exact->second;
  } else if (const auto folded = byFoldedTag.find(AsciiLower(tag)); folded != byFoldedTag.end()) {
    found = folded->second;
  } else {
    return nullptr;
  }
  fields[last].next = found;
  last = found;
  return &fields[found];
}

InstanceFields::InstanceFields(const Model& model) {
  for (const Entity& entity : model.Entities()) {
    m_roles.push_back(RoleOfBase(model.BaseNameOf(entity.id)));
    if (entity.isBase) continue;
    auto fields = std::make_unique<EntityFields>();
    fields->id = entity.id;
    fields->role = m_roles.back();
    fields->name = entity.name;
    fields->hasId = entity.idAttribute != kNone;
    for (const MemberRef member : entity.members) {
      fields->fields.push_back(FieldOf(model, entity, member, fields->role));
      const auto position = static_cast<std::uint32_t>(fields->fields.size() - 1);
      fields->byTag.emplace(fields->fields.back().name, position);
      fields->byFoldedTag.emplace(AsciiLower(fields->fields.back().name), position);
    }
    m_byTag.emplace(fields->name, fields.get());
    m_byFoldedTag.emplace(AsciiLower(fields->name), fields.get());
    m_entities.push_back(std::move(fields));
  }
}

EntityFields* InstanceFields::Find(std::u16string_view tag) {
  if (m_last && m_last->name == tag) return m_last;
  if (const auto exact = m_byTag.find(tag); exact != m_byTag.end()) return m_last = exact->second;
  const auto folded = m_byFoldedTag.find(AsciiLower(tag));
  return folded == m_byFoldedTag.end() ? nullptr : m_last = folded->second;
}

}  // namespace hv::vex::engine::atfx
