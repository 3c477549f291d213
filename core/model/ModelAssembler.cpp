// core/model/ModelAssembler.cpp - entities, attributes and relations from their declarations.
#include "core/model/ModelAssembler.h"

#include <algorithm>

namespace hv::vex::engine {

std::u16string MemberText(std::u16string_view entity, std::u16string_view kind,
                          std::u16string_view member) {
  std::u16string text = u"Element '";
  text.append(entity).append(u"', ").append(kind).append(u" '").append(member).append(u"': ");
  return text;
}

ModelAssembler::ModelAssembler(const ModelDraft& draft, std::vector<ModelProblem>& problems)
    : m_draft(draft), m_problems(problems), m_entities(m_model->m_entities) {}

std::shared_ptr<const Model> ModelAssembler::Run() {
  m_model->m_baseModelVersion = m_draft.versionText;
  m_model->m_baseVersion = m_draft.baseVersion;
  m_model->m_parts = m_draft.parts;
  MakeEnumerations();
  if (m_draft.baseVersion != 0) {
    MakeBaseEntities();
  } else {
    MakeDeclaredBaseTypes();
  }
  MakeApplicationEntities();
  // Pairing needs every target, so a model with errors ends here.
  if (HasErrors()) return nullptr;
  PairByName(Claim::Mutual);
  PairByName(Claim::OneSided);
  PairByBaseRelation();
  MakeMissingInverses();
  SettleRelationships();
  if (m_draft.baseVersion == 0) DeriveBaseMembers();
  SealNames();
  return m_model;
}

void ModelAssembler::ReportMember(bool isError, const Entity& entity, std::u16string_view kind,
                                  std::u16string_view member, std::u16string_view text) {
  Report(isError, MemberText(entity.name, kind, member).append(text));
}

bool ModelAssembler::HasErrors() const {
  return std::any_of(m_problems.begin(), m_problems.end(),
                     [](const ModelProblem& problem) { return problem.isError; });
}

void ModelAssembler::MakeEnumerations() {
  if (m_draft.baseVersion != 0) {
    for (const BaseEnumeration& base : BaseEnumerations()) {
      Enumeration& made = m_model->m_enumerations.emplace_back();
      made.name = base.name;
      made.isBase = true;
      for (const BaseEnumItem& item : base.items) {
        made.items.push_back({std::u16string(item.name), item.value});
      }
    }
  }
  m_model->m_enumerations.insert(m_model->m_enumerations.end(), m_draft.enumerations.begin(),
                                 m_draft.enumerations.end());
}

EntityId ModelAssembler::AddEntity(std::u16string_view name, bool isBase) {
  Entity& entity = m_entities.emplace_back();
  entity.id = static_cast<EntityId>(m_entities.size() - 1);
  entity.name = name;
  entity.isBase = isBase;
  return entity.id;
}

void ModelAssembler::MakeBaseEntities() {
  for (const BaseElement& element : BaseElements()) {
    if (element.since > m_draft.baseVersion) continue;
    m_model->m_byName.emplace(element.lowerName, AddEntity(element.lowerName, true));
    m_baseElements.push_back(&element);
  }
  for (Entity& entity : m_entities) {
    const BaseElement& element = *BaseElementOf(entity);
    for (const BaseAttribute* base : BaseAttributesOf(element, m_draft.baseVersion)) {
      AttributeSpec spec;
      spec.name = spec.baseAttribute = base->name;
      Append(entity, MakeAttribute(entity, spec));
    }
    for (const BaseRelation* base : BaseRelationsOf(element, m_draft.baseVersion)) {
      const BaseElement& first = BaseElements()[static_cast<std::size_t>(base->targets.ids[0])];
      RelationSpec spec;
      spec.name = spec.baseRelation = base->name;
      spec.refTo = first.lowerName;
      Append(entity, MakeRelation(entity, spec));
    }
  }
  PairBaseRelations();
  m_firstApplicationEntity = static_cast<EntityId>(m_entities.size());
}

void ModelAssembler::MakeDeclaredBaseTypes() {
  for (const EntityDraft& draft : m_draft.entities) {
    const std::u16string baseName = Folded(draft.baseType);
    if (baseName.empty() || m_model->m_byName.contains(baseName)) continue;
    m_model->m_byName.emplace(baseName, AddEntity(baseName, true));
  }
  m_firstApplicationEntity = static_cast<EntityId>(m_entities.size());
}

void ModelAssembler::MakeApplicationEntities() {
  for (const EntityDraft& draft : m_draft.entities) {
    Entity& entity = m_entities[AddEntity(draft.name, false)];
    const auto base = m_model->m_byName.find(Folded(draft.baseType));
    if (base != m_model->m_byName.end()) {
      entity.super = base->second;
      m_entities[entity.super].subTypes.push_back(entity.id);
    } else if (m_draft.baseVersion != 0) {
      Report(true, u"Element '" + entity.name + u"': the base type '" + draft.baseType +
                       u"' is unknown.");
    }
  }
  // Only now, so that a base type is never taken for an element of the same name.
  for (EntityId id = m_firstApplicationEntity; id < m_entities.size(); ++id) {
    m_model->m_byName.insert_or_assign(m_entities[id].name, id);
    m_model->m_byFoldedName.emplace(m_entities[id].name, id);
  }
  for (EntityId id = 0; id < m_firstApplicationEntity; ++id) {
    m_model->m_byFoldedName.emplace(m_entities[id].name, id);
  }
  for (std::size_t i = 0; i < m_draft.entities.size(); ++i) {
    AddMembers(m_entities[m_firstApplicationEntity + i], m_draft.entities[i]);
  }
}

const BaseElement* ModelAssembler::BaseElementOf(const Entity& entity) const {
  if (m_draft.baseVersion == 0) return nullptr;
  if (entity.isBase) return m_baseElements[entity.id];
  return entity.super == kNoEntity ? nullptr : m_baseElements[entity.super];
}

void ModelAssembler::AddMembers(Entity& entity, const EntityDraft& draft) {
  for (const MemberRef& member : draft.members) {
    if (member.isRelation) {
      Append(entity, MakeRelation(entity, draft.relations[member.index]));
    } else {
      Append(entity, MakeAttribute(entity, draft.attributes[member.index]));
    }
  }
  CheckIdentity(entity);
}

void ModelAssembler::CheckIdentity(const Entity& entity) {
  if (m_draft.baseVersion == 0) return;
  for (const std::u16string_view baseName : {u"id", u"name"}) {
    if (entity.FindBaseAttribute(baseName) == kNone) {
      Report(false, u"Element '" + entity.name + u"': no attribute has the base attribute '" +
                        std::u16string(baseName) + u"'.");
    }
  }
}

Attribute ModelAssembler::MakeAttribute(const Entity& entity, const AttributeSpec& spec) {
  const BaseElement* element = BaseElementOf(entity);
  const BaseAttribute* base = nullptr;
  Attribute attribute;
  attribute.name = spec.name;
  if (element != nullptr && !spec.baseAttribute.empty()) {
    base = FindBaseAttribute(*element, spec.baseAttribute, m_draft.baseVersion);
    if (base == nullptr) {
      ReportMember(false, entity, u"attribute", spec.name,
                   u"the base attribute '" + spec.baseAttribute + u"' is unknown; ignored.");
    } else {
      attribute.baseName = base->name;
    }
  } else if (m_draft.baseVersion == 0) {
    attribute.baseName = Folded(spec.baseAttribute);
  }
  if (!attribute.baseName.empty() && entity.FindBaseAttribute(attribute.baseName) != kNone) {
    ReportMember(false, entity, u"attribute", spec.name,
                 u"not the first one with the base attribute '" + attribute.baseName + u"'.");
  }
  SetType(entity, spec, base, attribute);
  attribute.obligatory = spec.obligatory.value_or(base != nullptr && base->Has(kObligatory));
  attribute.unique = spec.unique.value_or(base != nullptr && base->Has(kUnique));
  attribute.autogenerate = spec.autogenerate.value_or(base != nullptr && base->Has(kAutogenerated));
  attribute.length = spec.length;
  attribute.unit = spec.unit;
  return attribute;
}

void ModelAssembler::SetType(const Entity& entity, const AttributeSpec& spec,
                             const BaseAttribute* base, Attribute& attribute) {
  if (spec.type) {
    attribute.type = spec.type->type;
    attribute.sequence = spec.type->sequence;
  } else if (base != nullptr) {
    attribute.type = base->type;
    attribute.sequence = base->sequence;
  } else if (!spec.enumeration.empty()) {
    attribute.type = OdsType::Enum;
  } else {
    ReportMember(false, entity, u"attribute", spec.name, u"no data type; taken for a text.");
  }
  if (attribute.type != OdsType::Enum) return;
  std::u16string_view name = spec.enumeration;
  if (name.empty() && base != nullptr) name = base->enumeration;
  if (name.empty()) {
    ReportMember(true, entity, u"attribute", spec.name, u"no enumeration is given.");
    return;
  }
  attribute.enumeration = FindEnumeration(name);
  if (attribute.enumeration == kNone) {
    ReportMember(true, entity, u"attribute", spec.name,
                 u"the enumeration '" + std::u16string(name) + u"' doesn't exist.");
  }
}

std::int32_t ModelAssembler::FindEnumeration(std::u16string_view name) const {
  const Enumeration* found = m_model->FindEnumeration(name);
  return found == nullptr ? kNone
                          : static_cast<std::int32_t>(found - m_model->m_enumerations.data());
}

Relation ModelAssembler::MakeRelation(const Entity& entity, const RelationSpec& spec) {
  Relation relation;
  relation.name = spec.name;
  relation.source = entity.id;
  relation.inverseName = spec.inverseName;
  const Entity* target = m_model->FindAnyCase(spec.refTo);
  const bool isMixed = m_draft.baseVersion == 0 && target != nullptr && target->isBase;
  if (target == nullptr || (target->isBase != entity.isBase && !isMixed)) {
    ReportMember(true, entity, u"relation", spec.name,
                 u"refers to the element '" + spec.refTo + u"', which doesn't exist.");
  } else {
    relation.target = target->id;
  }
  const BaseRelation* base = BaseRelationFor(entity, spec, relation.target);
  if (base != nullptr) {
    relation.baseName = base->name;
    relation.relationship = base->relationship;
  } else if (m_draft.baseVersion == 0) {
    relation.baseName = Folded(spec.baseRelation);
  }
  relation.minOccurs = std::max(0, spec.minOccurs.value_or(base != nullptr ? base->minOccurs : 0));
  relation.maxOccurs = spec.maxOccurs.value_or(base != nullptr ? base->maxOccurs : kMany);
  if (relation.maxOccurs < 1) relation.maxOccurs = kMany;
  return relation;
}

const BaseRelation* ModelAssembler::BaseRelationFor(const Entity& entity, const RelationSpec& spec,
                                                    EntityId target) {
  const BaseElement* element = BaseElementOf(entity);
  if (element == nullptr || spec.baseRelation.empty()) return nullptr;
  const BaseRelation* base = FindBaseRelation(*element, spec.baseRelation, m_draft.baseVersion);
  if (base == nullptr) {
    ReportMember(false, entity, u"relation", spec.name,
                 u"the base relation '" + spec.baseRelation + u"' is unknown; ignored.");
    return nullptr;
  }
  const BaseElement* to = target == kNoEntity ? nullptr : BaseElementOf(m_entities[target]);
  if (to != nullptr && !base->targets.Hold(IdOf(*to))) {
    ReportMember(false, entity, u"relation", spec.name,
                 u"the base relation '" + spec.baseRelation + u"' doesn't lead to " +
                     std::u16string(to->name) + u".");
  }
  return base;
}

void ModelAssembler::Append(Entity& entity, Attribute attribute) {
  const auto position = static_cast<std::int32_t>(entity.attributes.size());
  entity.m_attributeNames.Add(attribute.name, attribute.baseName, position);
  entity.members.push_back({false, static_cast<std::uint32_t>(position)});
  entity.attributes.push_back(std::move(attribute));
}

std::int32_t ModelAssembler::Append(Entity& entity, Relation relation) {
  const auto position = static_cast<std::int32_t>(entity.relations.size());
  entity.m_relationNames.Add(relation.name, relation.baseName, position);
  entity.members.push_back({true, static_cast<std::uint32_t>(position)});
  entity.relations.push_back(std::move(relation));
  return position;
}

void ModelAssembler::DeriveBaseMembers() {
  for (EntityId id = m_firstApplicationEntity; id < m_entities.size(); ++id) {
    const Entity& entity = m_entities[id];
    if (entity.super == kNoEntity) continue;
    Entity& base = m_entities[entity.super];
    for (const MemberRef& member : entity.members) {
      if (member.isRelation) {
        Relation relation = entity.relations[member.index];
        const EntityId target = m_entities[relation.target].super;
        if (relation.baseName.empty() || target == kNoEntity ||
            base.FindBaseRelation(relation.baseName) != kNone) {
          continue;
        }
        const Relation& back =
            m_entities[relation.target].relations[static_cast<std::size_t>(relation.inverse)];
        relation.name = relation.baseName;
        relation.source = base.id;
        relation.inverseName = back.baseName;
        relation.target = target;
        relation.inverse = kNone;
        Append(base, std::move(relation));
      } else {
        Attribute attribute = entity.attributes[member.index];
        if (attribute.baseName.empty() || base.FindBaseAttribute(attribute.baseName) != kNone) {
          continue;
        }
        attribute.name = attribute.baseName;
        Append(base, std::move(attribute));
      }
    }
  }
  PairBaseRelations();
}

void ModelAssembler::SealNames() {
  for (Entity& entity : m_entities) {
    entity.m_attributeNames.Seal();
    entity.m_relationNames.Seal();
    entity.idAttribute = entity.FindBaseAttribute(u"id");
    entity.nameAttribute = entity.FindBaseAttribute(u"name");
  }
}

}  // namespace hv::vex::engine
