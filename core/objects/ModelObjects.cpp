#include "core/objects/ModelObjects.h"

#include "core/objects/AttributeObjects.h"
#include "core/objects/Guard.h"
#include "core/query/TextMatch.h"
#include "store/core/IInstance.h"

namespace hv::vex::engine {
namespace {

/// Entities by number; holds the model.
class EntityListObject final : public cor::Counted<IEntityList> {
 public:
  EntityListObject(Ref<ModelObject> model, std::vector<EntityId> ids)
      : m_model(std::move(model)), m_ids(std::move(ids)) {}
  std::uint64_t GetCount() override { return m_ids.size(); }
  IEntity* GetEntity(std::uint64_t index) override {
    if (index >= m_ids.size()) return nullptr;
    IEntity* entity = m_model->EntityAt(m_ids[index]);
    entity->AddRef();
    return entity;
  }

 private:
  ~EntityListObject() override = default;
  Ref<ModelObject> m_model;
  std::vector<EntityId> m_ids;
};

template <class Members>
std::int32_t IndexOfName(const Members& members, std::u16string_view name) {
  for (std::size_t i = 0; i < members.size(); ++i) {
    if (members[i].name == name) return static_cast<std::int32_t>(i);
  }
  return kNone;
}

}  // namespace

Member FindMember(const Entity& entity, std::u16string_view name) {
  const std::int32_t attribute = entity.FindAttribute(name);
  // An attribute that was found by its base name or in another case gives way to a relation that
  // bears the very name.
  if (attribute != kNone && entity.attributes[static_cast<std::size_t>(attribute)].name == name) {
    return {Member::Kind::Attribute, attribute};
  }
  const std::int32_t relation = entity.FindRelation(name);
  if (relation != kNone &&
      (attribute == kNone || entity.relations[static_cast<std::size_t>(relation)].name == name)) {
    return {Member::Kind::Relation, relation};
  }
  if (attribute != kNone) return {Member::Kind::Attribute, attribute};
  return {};
}

// --- RelationObject ---------------------------------------------------------------------------

const Relation& RelationObject::Get() const {
  return m_owner.Get().At(m_source).relations[static_cast<std::size_t>(m_index)];
}
void RelationObject::GetName(WString& name) { name = std::u16string_view(Get().name); }
void RelationObject::GetOccurrence(std::int32_t* minimum, std::int32_t* maximum) {
  if (minimum) *minimum = Get().minOccurs;
  if (maximum) *maximum = Get().maxOccurs;
}
IEntity* RelationObject::GetTargetEntity() { return Share(m_owner.EntityAt(Get().target)); }
IRelation* RelationObject::GetInverse() {
  const Relation& relation = Get();
  if (relation.inverse == kNone) return nullptr;
  return Share(m_owner.EntityAt(relation.target)->RelationAt(relation.inverse));
}
void RelationObject::GetBaseName(WString& name) { name = std::u16string_view(Get().baseName); }
IEntity* RelationObject::GetSourceEntity() { return Share(m_owner.EntityAt(m_source)); }
std::int32_t RelationObject::GetRelationship() {
  return static_cast<std::int32_t>(Get().relationship);
}

// --- EntityObject -----------------------------------------------------------------------------

EntityObject::EntityObject(ModelObject& owner, const Entity& entity) : ModelPart(owner) {
  Show(entity);
}

void EntityObject::Show(const Entity& entity) {
  m_entity = &entity;
  for (std::size_t i = m_relations.size(); i < entity.relations.size(); ++i) {
    m_relations.emplace_back(m_owner, entity.id, static_cast<std::int32_t>(i));
  }
}

void EntityObject::GetName(WString& name) { name = std::u16string_view(m_entity->name); }

IAttribute* EntityObject::GetAttributeNames() {
  return Seam([&] {
    std::vector<std::u16string> names;
    names.reserve(m_entity->members.size());
    for (const MemberRef& member : m_entity->members) {
      names.push_back(member.isRelation ? m_entity->relations[member.index].name
                                        : m_entity->attributes[member.index].name);
    }
    return ValueAttribute::MakeTextList(u"AttributeNames", std::move(names));
  });
}

IEntity* EntityObject::GetSuperType() {
  return m_entity->super == kNoEntity ? nullptr : Share(m_owner.EntityAt(m_entity->super));
}

IEntityList* EntityObject::GetSubTypes() {
  return Seam([&]() -> IEntityList* {
    return new EntityListObject(Ref<ModelObject>::Share(&m_owner), m_entity->subTypes);
  });
}

void EntityObject::GetAttributeBaseName(WString& baseName, std::u16string_view attribute) {
  const Member member = FindMember(*m_entity, attribute);
  baseName.clear();
  if (member.kind == Member::Kind::Attribute) {
    baseName =
        std::u16string_view(m_entity->attributes[static_cast<std::size_t>(member.index)].baseName);
  } else if (member.kind == Member::Kind::Relation) {
    baseName =
        std::u16string_view(m_entity->relations[static_cast<std::size_t>(member.index)].baseName);
  }
}

std::int32_t EntityObject::GetAttributeType(std::uint64_t index) {
  if (index >= m_entity->members.size()) return 0;
  const MemberRef& member = m_entity->members[index];
  return member.isRelation ? kReferenceType : m_entity->attributes[member.index].SeamType();
}

std::int32_t EntityObject::IsKindOf(IEntity* entity) {
  const EntityObject* other = m_owner.OwnEntity(entity);
  return other && m_owner.Get().IsKindOf(m_entity->id, other->m_entity->id) ? 1 : 0;
}

IRelation* EntityObject::GetRelation(std::uint64_t index) {
  if (index >= m_entity->members.size() || !m_entity->members[index].isRelation) return nullptr;
  return Share(RelationAt(static_cast<std::int32_t>(m_entity->members[index].index)));
}

std::int32_t EntityObject::HasApplicationAttribute(std::u16string_view name) {
  if (m_entity->isBase) return 0;
  return IndexOfName(m_entity->attributes, name) != kNone ||
                 IndexOfName(m_entity->relations, name) != kNone
             ? 1
             : 0;
}

IAttribute* EntityObject::GetAttribute(std::u16string_view name) {
  const Member member = FindMember(*m_entity, name);
  if (member.kind == Member::Kind::None) return nullptr;
  return Seam([&]() -> IAttribute* {
    return new DefinitionAttribute(Ref<ModelObject>::Share(&m_owner), m_entity->id, member);
  });
}

IEntity* EntityObject::GetApplicationElement() {
  return m_entity->isBase ? nullptr : Share<IEntity>(this);
}

IEntity* EntityObject::GetBaseEntity() {
  if (m_entity->isBase) return Share<IEntity>(this);
  return m_entity->super == kNoEntity ? nullptr : Share(m_owner.EntityAt(m_entity->super));
}

IRelation* EntityObject::GetRelationByName(std::u16string_view name) {
  const std::int32_t relation = m_entity->FindRelation(name);
  return relation == kNone ? nullptr : Share(RelationAt(relation));
}

IModel* EntityObject::GetModel() { return Share<IModel>(&m_owner); }

// --- ModelObject ------------------------------------------------------------------------------

ModelObject::ModelObject(std::shared_ptr<const Model> model, const Capabilities& capabilities,
                         std::function<std::uint64_t()> changeCounter)
    : m_model(std::move(model)),
      m_capabilities(capabilities),
      m_changeCounter(std::move(changeCounter)) {
  for (const Entity& entity : m_model->Entities()) m_entities.emplace_back(*this, entity);
}

void ModelObject::Follow(const std::shared_ptr<const Model>& model) {
  if (model == m_model) return;
  m_earlier.push_back(std::exchange(m_model, model));
  for (const Entity& entity : m_model->Entities()) {
    if (entity.id < m_entities.size()) {
      m_entities[entity.id].Show(entity);
    } else {
      m_entities.emplace_back(*this, entity);
    }
  }
}

namespace {

template <class T>
T* WithReference(T* object) {
  if (object) object->AddRef();
  return object;
}

}  // namespace

IEntityList* ModelObject::GetEntities() {
  return Seam([&]() -> IEntityList* {
    std::vector<EntityId> ids(m_entities.size());
    for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<EntityId>(i);
    return new EntityListObject(Ref<ModelObject>::Share(this), std::move(ids));
  });
}

IEntity* ModelObject::GetEntityByName(std::u16string_view name) {
  return Seam([&]() -> IEntity* {
    const Entity* entity = m_model->FindAnyCase(name);
    return entity ? WithReference(EntityAt(entity->id)) : nullptr;
  });
}

IEntity* ModelObject::GetEntityOf(IInstance* instance) {
  if (!instance) return nullptr;
  const Ref<IEntity> entity = Ref<IEntity>::Adopt(instance->GetEntity());
  return WithReference(OwnEntity(entity.Get()));
}

std::int32_t ModelObject::HasModelPart(std::u16string_view identifier) {
  return m_model->HasPart(identifier) ? 1 : 0;
}

IEntity* ModelObject::GetEntity(std::u16string_view name) {
  const Entity* entity = m_model->Find(name);
  return entity ? WithReference(EntityAt(entity->id)) : nullptr;
}

IEntity* ModelObject::GetApplicationEntityOfBase(std::u16string_view baseName) {
  const Entity* base = m_model->Find(baseName);
  if (!base || !base->isBase || base->subTypes.empty()) return nullptr;
  return WithReference(EntityAt(base->subTypes.front()));
}

std::int32_t ModelObject::FindPath(IEntity* from, IEntity* to, WString& path) {
  return Seam([&] {
    path.clear();
    const EntityObject* start = OwnEntity(from);
    const EntityObject* end = OwnEntity(to);
    if (!start || !end) return 0;
    const auto found = m_model->FindPath(start->Get().id, end->Get().id);
    if (!found) return 0;
    for (const PathStep& step : found->steps) {
      if (!path.empty()) path += u'.';
      path += m_model->At(step.source).relations[static_cast<std::size_t>(step.relation)].name;
    }
    return 1;
  });
}

std::uint64_t ModelObject::GetChangeCounter() { return m_changeCounter ? m_changeCounter() : 0; }
std::uint64_t ModelObject::GetLongestValue() { return m_capabilities.longestValue; }
std::int32_t ModelObject::SupportsCustomLogic() { return m_capabilities.customLogic ? 1 : 0; }
std::int32_t ModelObject::SupportsMultipleValues() { return m_capabilities.multipleValues ? 1 : 0; }
void ModelObject::GetBaseModelVersion(WString& version) {
  version = std::u16string_view(m_model->BaseModelVersion());
}

IAttribute* ModelObject::GetEnumerationNames() {
  return Seam([&] {
    std::vector<std::u16string> names;
    for (const Enumeration& enumeration : m_model->Enumerations()) {
      if (!enumeration.isBase) names.push_back(enumeration.name);
    }
    return ValueAttribute::MakeTextList(u"EnumerationNames", std::move(names));
  });
}

std::uint64_t ModelObject::GetEnumerationItemCount(std::u16string_view enumeration) {
  const Enumeration* found = m_model->FindEnumeration(enumeration);
  return found ? found->items.size() : 0;
}

void ModelObject::GetEnumerationItem(std::u16string_view enumeration, std::uint64_t index,
                                     WString& name, std::int64_t* value) {
  const Enumeration* found = m_model->FindEnumeration(enumeration);
  if (!found || index >= found->items.size()) {
    throw Exception(errc::kInvalidArgument, u"enumeration index out of range");
  }
  name = std::u16string_view(found->items[index].name);
  if (value) *value = found->items[index].value;
}

EntityObject* ModelObject::OwnEntity(IEntity* entity) {
  if (!entity) return nullptr;
  // An entity of another model, even of another engine, may come in: look for the address instead
  // of trusting its type.
  for (EntityObject& own : m_entities) {
    if (static_cast<IEntity*>(&own) == entity) return &own;
  }
  return nullptr;
}

}  // namespace hv::vex::engine
