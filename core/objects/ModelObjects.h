// core/objects/ModelObjects.h - a model at the seam.
//
// The model object owns its entity and relation objects; their references count on the model
// object, so one object per entity serves everybody and nothing is in a ring.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "cor/Counted.h"
#include "core/model/Model.h"
#include "core/store/RecordStore.h"
#include "store/core/IAttribute.h"
#include "store/core/IEntity.h"
#include "store/core/IModel.h"
#include "storefabric/Ref.h"

namespace hv::vex::engine {

class ModelObject;

/// A face whose references count on the model object.
template <class Face>
class ModelPart : public Face {
 public:
  ModelPart(ModelObject& owner) : m_owner(owner) {}
  ModelPart(const ModelPart&) = delete;
  ModelPart& operator=(const ModelPart&) = delete;
  virtual ~ModelPart() = default;

  Result QueryInterface(const Iid& iid, void** out) final;
  std::uint32_t AddRef() final;
  std::uint32_t Release() final;

 protected:
  /// Gives the object with a reference for the caller.
  template <class T>
  static T* Share(T* object) {
    if (object) object->AddRef();
    return object;
  }
  ModelObject& m_owner;
};

class RelationObject final : public ModelPart<IRelation> {
 public:
  RelationObject(ModelObject& owner, EntityId source, std::int32_t index)
      : ModelPart(owner), m_source(source), m_index(index) {}

  void GetName(WString& name) override;
  void GetOccurrence(std::int32_t* minimum, std::int32_t* maximum) override;
  IEntity* GetTargetEntity() override;
  IRelation* GetInverse() override;
  void GetBaseName(WString& name) override;
  IEntity* GetSourceEntity() override;
  std::int32_t GetRelationship() override;

 private:
  [[nodiscard]] const Relation& Get() const;
  EntityId m_source;
  std::int32_t m_index;
};

class EntityObject final : public ModelPart<IEntity> {
 public:
  EntityObject(ModelObject& owner, const Entity& entity);

  void GetName(WString& name) override;
  IAttribute* GetAttributeNames() override;
  IEntity* GetSuperType() override;
  IEntityList* GetSubTypes() override;
  void GetAttributeBaseName(WString& baseName, std::u16string_view attribute) override;
  std::int32_t GetAttributeType(std::uint64_t index) override;
  std::int32_t IsKindOf(IEntity* entity) override;
  IRelation* GetRelation(std::uint64_t index) override;
  std::int32_t HasApplicationAttribute(std::u16string_view name) override;
  IAttribute* GetAttribute(std::u16string_view name) override;
  IEntity* GetApplicationElement() override;
  IEntity* GetBaseEntity() override;
  IRelation* GetRelationByName(std::u16string_view name) override;
  IModel* GetModel() override;

  [[nodiscard]] const Entity& Get() const { return *m_entity; }
  /// The same entity in a model that has grown.
  void Show(const Entity& entity);
  [[nodiscard]] RelationObject* RelationAt(std::int32_t index) {
    return &m_relations[static_cast<std::size_t>(index)];
  }

 private:
  const Entity* m_entity;
  std::deque<RelationObject> m_relations;
};

/// Finds an attribute or relation of an entity by one name: own names win over base names,
/// attributes over relations, exact case over any.
struct Member {
  enum class Kind { None, Attribute, Relation } kind = Kind::None;
  std::int32_t index = kNone;
};
Member FindMember(const Entity& entity, std::u16string_view name);

class ModelObject final : public cor::Counted<IModel> {
 public:
  ModelObject(std::shared_ptr<const Model> model, const Capabilities& capabilities,
              std::function<std::uint64_t()> changeCounter);

  IEntityList* GetEntities() override;
  IEntity* GetEntityByName(std::u16string_view name) override;
  IEntity* GetEntityOf(IInstance* instance) override;
  std::int32_t HasModelPart(std::u16string_view identifier) override;
  IEntity* GetEntity(std::u16string_view name) override;
  IEntity* GetApplicationEntityOfBase(std::u16string_view baseName) override;
  std::int32_t FindPath(IEntity* from, IEntity* to, WString& path) override;
  std::uint64_t GetChangeCounter() override;
  std::uint64_t GetLongestValue() override;
  std::int32_t SupportsCustomLogic() override;
  std::int32_t SupportsMultipleValues() override;
  void GetBaseModelVersion(WString& version) override;
  IAttribute* GetEnumerationNames() override;
  std::uint64_t GetEnumerationItemCount(std::u16string_view enumeration) override;
  void GetEnumerationItem(std::u16string_view enumeration, std::uint64_t index, WString& name,
                          std::int64_t* value) override;

  [[nodiscard]] const Model& Get() const { return *m_model; }
  [[nodiscard]] const std::shared_ptr<const Model>& Shared() const { return m_model; }
  [[nodiscard]] EntityObject* EntityAt(EntityId id) { return &m_entities[id]; }
  /// The entity object of this model behind a seam pointer, or null if it is of another model.
  [[nodiscard]] EntityObject* OwnEntity(IEntity* entity);
  /// Goes over to what the store's model has grown to, so that everything given out before serves
  /// on and shows what is new.
  void Follow(const std::shared_ptr<const Model>& model);
  /// The store is gone: its change counter can't be asked any more.
  void DropStore() { m_changeCounter = nullptr; }

 private:
  ~ModelObject() override = default;
  std::shared_ptr<const Model> m_model;
  std::vector<std::shared_ptr<const Model>> m_earlier;  // somebody may still look into them
  Capabilities m_capabilities;
  std::function<std::uint64_t()> m_changeCounter;
  std::deque<EntityObject> m_entities;
};

template <class Face>
Result ModelPart<Face>::QueryInterface(const Iid& iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  if (iid != Face::kIid && iid != IUnknown::kIid) return E_NOINTERFACE;
  *out = static_cast<Face*>(this);
  AddRef();
  return S_OK;
}
template <class Face>
std::uint32_t ModelPart<Face>::AddRef() {
  return m_owner.AddRef();
}
template <class Face>
std::uint32_t ModelPart<Face>::Release() {
  return m_owner.Release();
}

}  // namespace hv::vex::engine
