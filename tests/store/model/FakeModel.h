// tests/store/model/FakeModel.h - a model made by hand, for what a real engine never shows:
// entities that fail, names that come twice, relations without a way back.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include <storefabric/DataType.h>
#include <storefabric/Ref.h>

#include "core/objects/AttributeObjects.h"
#include "tests/support/NoModel.h"

namespace hv::test {

using vex::Exception;
using vex::IAttribute;
using vex::IEntity;
using vex::IEntityList;
using vex::IModel;
using vex::IRelation;

template <class T>
T* Given(T* object) {
  return Ref<T>::Share(object).Detach();
}

class FakeRelation final : public cor::Counted<IRelation> {
 public:
  WString m_name;
  IEntity* m_target = nullptr;
  FakeRelation* m_inverse = nullptr;

  void GetName(WString& name) override { name = m_name; }
  void GetOccurrence(std::int32_t* minimum, std::int32_t* maximum) override {
    *minimum = 3;
    *maximum = -7;
  }
  IEntity* GetTargetEntity() override { return Given(m_target); }
  IRelation* GetInverse() override { return Given<IRelation>(m_inverse); }
  void GetBaseName(WString& name) override { name.clear(); }
  IEntity* GetSourceEntity() override { return nullptr; }
  std::int32_t GetRelationship() override { return 0; }
};

class FakeEntity final : public cor::Counted<IEntity> {
 public:
  struct Member {
    WString name;
    WString baseName;
    std::int32_t type = vex::eString;
    Ref<FakeRelation> relation;
  };

  WString m_name;
  bool m_isBaseOnly = false;
  bool m_isLocalColumn = false;
  std::int32_t m_failure = 0;  ///< thrown by reading the attributes
  std::deque<Member> m_members;
  IModel* m_model = nullptr;

  FakeRelation& AddRelation(std::u16string_view name, std::u16string_view baseName,
                            IEntity* target) {
    m_members.push_back({name, baseName, vex::kTypeReference, MakeRef<FakeRelation>()});
    FakeRelation& relation = *m_members.back().relation;
    relation.m_name = name;
    relation.m_target = target;
    return relation;
  }

  void GetName(WString& name) override { name = m_name; }
  IAttribute* GetAttributeNames() override {
    if (m_failure != 0) throw Exception(m_failure);
    std::vector<std::u16string> names;
    for (const Member& member : m_members) names.push_back(member.name.str());
    return vex::engine::ValueAttribute::MakeTextList(u"names", std::move(names));
  }
  IEntity* GetSuperType() override { return nullptr; }
  IEntityList* GetSubTypes() override { return nullptr; }
  void GetAttributeBaseName(WString& baseName, std::u16string_view attribute) override {
    for (const Member& member : m_members) {
      if (member.name.EqualsExact(attribute)) baseName = member.baseName;
    }
  }
  std::int32_t GetAttributeType(std::uint64_t index) override { return m_members[index].type; }
  std::int32_t IsKindOf(IEntity* entity) override { return entity && m_isLocalColumn ? 1 : 0; }
  IRelation* GetRelation(std::uint64_t index) override {
    return Given<IRelation>(m_members[index].relation.Get());
  }
  std::int32_t HasApplicationAttribute(std::u16string_view) override { return 0; }
  IAttribute* GetAttribute(std::u16string_view) override { return nullptr; }
  IEntity* GetApplicationElement() override {
    return m_isBaseOnly ? nullptr : Given<IEntity>(this);
  }
  IEntity* GetBaseEntity() override { return nullptr; }
  IRelation* GetRelationByName(std::u16string_view) override { return nullptr; }
  IModel* GetModel() override { return Given(m_model); }
};

class FakeEntityList final : public cor::Counted<IEntityList> {
 public:
  FakeEntity& Add(std::u16string_view name) {
    m_entities.push_back(MakeRef<FakeEntity>());
    m_entities.back()->m_name = name;
    return *m_entities.back();
  }
  std::uint64_t GetCount() override { return m_entities.size(); }
  IEntity* GetEntity(std::uint64_t index) override {
    return Given<IEntity>(m_entities[index].Get());
  }

 private:
  std::vector<Ref<FakeEntity>> m_entities;
};

/// A model that knows one entity: the local column of the base model.
class FakeModel final : public NoModel {
 public:
  FakeModel() { m_localColumn->m_name = u"aolocalcolumn"; }

  IEntity* GetEntityByName(std::u16string_view name) override {
    return name == u"aolocalcolumn" ? Given<IEntity>(m_localColumn.Get()) : nullptr;
  }

 private:
  Ref<FakeEntity> m_localColumn = MakeRef<FakeEntity>();
};

}  // namespace hv::test
