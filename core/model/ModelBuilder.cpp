// core/model/ModelBuilder.cpp - collects declarations; ModelAssembler makes the model of them.
#include "core/model/ModelBuilder.h"

#include "core/model/BaseModel.h"
#include "core/model/ModelAssembler.h"
#include "core/model/ModelDraft.h"

#include <algorithm>

namespace hv::vex::engine {

ModelBuilder::ModelBuilder() : m_draft(std::make_unique<ModelDraft>()) {}

ModelBuilder::ModelBuilder(std::u16string_view baseModelVersion) : ModelBuilder() {
  m_draft->versionText = baseModelVersion;
  m_draft->baseVersion = ParseBaseVersion(baseModelVersion);
}

ModelBuilder ModelBuilder::WithoutBaseModel() { return {}; }

ModelBuilder::ModelBuilder(ModelBuilder&&) noexcept = default;
ModelBuilder& ModelBuilder::operator=(ModelBuilder&&) noexcept = default;
ModelBuilder::~ModelBuilder() = default;

void ModelBuilder::Report(bool isError, std::u16string text) {
  m_problems.push_back({isError, std::move(text)});
}

void ModelBuilder::AddEnumeration(Enumeration enumeration) {
  const auto isSame = [&](const auto& other) { return other.name == enumeration.name; };
  const bool isBaseName = m_draft->baseVersion != 0 &&
                          std::any_of(BaseEnumerations().begin(), BaseEnumerations().end(), isSame);
  if (isBaseName ||
      std::any_of(m_draft->enumerations.begin(), m_draft->enumerations.end(), isSame)) {
    Report(false, u"Enumeration '" + enumeration.name + u"': the name is taken; ignored.");
    return;
  }
  enumeration.isBase = false;
  m_draft->enumerations.push_back(std::move(enumeration));
}

bool ModelBuilder::BeginEntity(std::u16string_view name, std::u16string_view baseType) {
  m_draft->isOpen = false;
  if (name.empty()) {
    Report(true, u"An element of the base type '" + std::u16string(baseType) + u"' has no name.");
    return false;
  }
  bool isTaken = m_draft->entityNames.contains(name);
  if (m_draft->baseVersion != 0) {
    // Base elements are entities under their lower-case names, which have to stay theirs.
    const BaseElement* base = FindBaseElement(name, m_draft->baseVersion);
    isTaken = isTaken || (base != nullptr && base->lowerName == name);
  }
  if (isTaken) {
    Report(true, u"Element '" + std::u16string(name) + u"': the name is taken.");
    return false;
  }
  m_draft->entityNames.emplace(name, char{});
  EntityDraft& entity = m_draft->entities.emplace_back();
  entity.name = name;
  entity.baseType = baseType;
  m_draft->isOpen = true;
  return true;
}

EntityDraft* ModelBuilder::Admit(std::u16string_view kind, std::u16string_view name) {
  if (!m_draft->isOpen) return nullptr;
  EntityDraft& entity = m_draft->entities.back();
  if (name.empty()) {
    Report(false, u"Element '" + entity.name + u"': " + std::u16string(kind) +
                      u" without a name; ignored.");
    return nullptr;
  }
  if (!entity.memberNames.emplace(name, char{}).second) {
    Report(false, MemberText(entity.name, kind, name) + u"the name is taken; ignored.");
    return nullptr;
  }
  return &entity;
}

bool ModelBuilder::AddAttribute(AttributeSpec spec) {
  EntityDraft* entity = Admit(u"attribute", spec.name);
  if (entity == nullptr) return false;
  entity->members.push_back({false, static_cast<std::uint32_t>(entity->attributes.size())});
  entity->attributes.push_back(std::move(spec));
  return true;
}

bool ModelBuilder::AddRelation(RelationSpec spec) {
  EntityDraft* entity = Admit(u"relation", spec.name);
  if (entity == nullptr) return false;
  entity->members.push_back({true, static_cast<std::uint32_t>(entity->relations.size())});
  entity->relations.push_back(std::move(spec));
  return true;
}

void ModelBuilder::AddPart(std::u16string_view identifier) {
  m_draft->parts.emplace_back(identifier);
}

std::shared_ptr<const Model> ModelBuilder::Build() {
  return ModelAssembler(*m_draft, m_problems).Run();
}

}  // namespace hv::vex::engine
