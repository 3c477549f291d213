// core/model/ModelAssembler.h - makes a model of collected declarations: one use, then thrown away.
// The steps that find the two directions of each relation stand in RelationPairing.cpp.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/model/BaseModel.h"
#include "core/model/ModelDraft.h"

namespace hv::vex::engine {

class ModelAssembler {
 public:
  /// Both must outlive the assembler; `problems` is added to.
  ModelAssembler(const ModelDraft& draft, std::vector<ModelProblem>& problems);

  /// The model; null if an error was reported, now or before.
  std::shared_ptr<const Model> Run();

 private:
  void Report(bool isError, std::u16string text) {
    m_problems.push_back({isError, std::move(text)});
  }
  void ReportMember(bool isError, const Entity& entity, std::u16string_view kind,
                    std::u16string_view member, std::u16string_view text);

  [[nodiscard]] bool HasErrors() const;

  // entities and enumerations
  void MakeEnumerations();
  void MakeBaseEntities();
  void MakeDeclaredBaseTypes();
  void MakeApplicationEntities();
  EntityId AddEntity(std::u16string_view name, bool isBase);
  [[nodiscard]] std::int32_t FindEnumeration(std::u16string_view name) const;
  [[nodiscard]] const BaseElement* BaseElementOf(const Entity& entity) const;

  // members
  void AddMembers(Entity& entity, const EntityDraft& draft);
  Attribute MakeAttribute(const Entity& entity, const AttributeSpec& spec);
  void SetType(const Entity& entity, const AttributeSpec& spec, const BaseAttribute* base,
               Attribute& attribute);
  Relation MakeRelation(const Entity& entity, const RelationSpec& spec);
  [[nodiscard]] const BaseRelation* BaseRelationFor(const Entity& entity, const RelationSpec& spec,
                                                    EntityId target);
  static void Append(Entity& entity, Attribute attribute);
  static std::int32_t Append(Entity& entity, Relation relation);
  void CheckIdentity(const Entity& entity);

  // relations in both directions
  enum class Claim : std::uint8_t { Mutual, OneSided };
  void PairBaseRelations();
  void PairByName(Claim claim);
  void PairByBaseRelation();
  void MakeMissingInverses();
  void SettleRelationships();
  void Pair(Entity& entity, std::int32_t relation, Entity& target, std::int32_t inverse);
  /// The base relation that leads back along `relation`; null if there is none.
  [[nodiscard]] const BaseRelation* BaseInverseOf(const Relation& relation) const;
  [[nodiscard]] static std::u16string FreeName(const Entity& entity, const Entity& source,
                                               const Relation& relation);

  // base entities of a model without the standard's base model
  void DeriveBaseMembers();

  void SealNames();

  const ModelDraft& m_draft;
  std::vector<ModelProblem>& m_problems;
  std::shared_ptr<Model> m_model = std::make_shared<Model>();
  std::deque<Entity>& m_entities;
  EntityId m_firstApplicationEntity = 0;           ///< base entities stand before it
  std::vector<const BaseElement*> m_baseElements;  ///< of the base entities, by their ids
};

}  // namespace hv::vex::engine
