// core/objects/InstanceObject.h - a record at the seam.
#pragma once

#include "cor/Counted.h"
#include "core/objects/RecordBatch.h"
#include "core/objects/StoreObject.h"
#include "core/objects/ValueText.h"
#include "store/core/IContainer.h"
#include "store/core/IInstance.h"

namespace hv::vex::engine {

/// One living object per record and store. Holds no values: everything is read from and written to
/// the record store, so that several holders can't differ. Reading goes by the batch of records
/// that the instance was found in last, see `RecordBatch` for how old values may be.
class InstanceObject final : public cor::Counted<IInstance, IContainer> {
 public:
  InstanceObject(Ref<StoreObject> store, RecordRef record);

  // IInstance
  void GetKey(WString& key) override;
  void Save() override;
  std::int32_t GetInstanceAttributeType(std::u16string_view name) override;
  IAttribute* GetAttributeValue(std::u16string_view name) override;
  void AddInstanceAttribute(std::u16string_view name, std::int32_t typeCode) override;
  void RemoveInstanceAttribute(std::u16string_view name) override;
  IStore* GetStore() override;
  std::int32_t IsKindOf(IEntity* entity) override;
  void Refresh() override;
  IAttribute* GetInstanceAttributeNames() override;
  std::int32_t IsValidAttributeName(std::u16string_view name, std::int32_t selector) override;
  std::int32_t IsValid() override;
  IEntity* GetEntity() override;
  IInstList* GetRelated(std::u16string_view path) override;
  IInstance* CreateRelated(std::u16string_view reference) override;
  void Link(std::u16string_view reference, IInstance* target) override;
  void Unlink(std::u16string_view reference, IInstance* target) override;
  void Delete() override;
  std::int64_t GetId() override { return m_record.id; }
  std::int32_t ReadScalar(std::u16string_view name, ScalarValue* value) override;

  // IContainer
  void SetType(std::int32_t typeCode) override;
  void GetString(WString& value, std::u16string_view name) override;
  IInstance* GetObject(std::u16string_view path) override;
  IInstList* GetList(std::u16string_view pathOrName) override;
  void SetInteger(std::u16string_view name, std::int32_t value) override;
  void SetString(std::u16string_view name, std::u16string_view value) override;
  std::int64_t GetInteger64(std::u16string_view name, std::int64_t otherwise) override;
  std::int32_t GetBoolean(std::u16string_view name, std::int32_t otherwise) override;
  double GetReal(std::u16string_view name, double otherwise) override;
  void SetInteger64(std::u16string_view name, std::int64_t value) override;
  void SetBoolean(std::u16string_view name, std::int32_t value) override;
  void SetReal(std::u16string_view name, double value) override;
  IAttribute* GetAttribute(std::u16string_view name) override;
  IAttribute* GetNames() override;

  [[nodiscard]] RecordRef Record() const { return m_record; }
  [[nodiscard]] StoreObject& Store() { return *m_store; }
  /// The record was seen at that look at the store; 0 if it is to be asked for again.
  void Confirm(std::uint32_t look) { m_seenAt = look; }
  /// The record is to be read along with its neighbours.
  void PlaceIn(RecordBatch& batch, std::uint64_t position) {
    m_batch = Ref<RecordBatch>::Share(&batch);
    m_position = position;
  }

 private:
  ~InstanceObject() override;
  [[nodiscard]] const Entity& EntityOf() const;
  /// Throws kInstanceGone if the record was deleted.
  [[nodiscard]] const Attribute& AttributeAt(std::int32_t index) const;
  void CheckValid() const;
  /// The value behind a name, which must exist (kUnknownName).
  Ref<IAttribute> Require(std::u16string_view name);
  /// The relation of that name, which must exist; checks the partner's entity (kWrongType).
  std::int32_t RequireRelation(std::u16string_view reference);
  RecordRef RequirePartner(std::int32_t relation, IInstance* target);
  Ref<IAttribute> ModelAttribute(std::int32_t index);
  /// The value as it was read along with those of neighbours; nothing if it wasn't.
  RecordBatch::Cell ReadAlong(std::int32_t attribute);
  /// The enumeration of an attribute, or null.
  [[nodiscard]] EnumPtr EnumerationOf(const Attribute& attribute) const;
  [[nodiscard]] Value ReadValue(std::int32_t attribute);
  Ref<IAttribute> InstanceAttributeNamed(std::u16string_view name);
  [[nodiscard]] OdsType QuantityType() const;

  Ref<StoreObject> m_store;
  Ref<RecordBatch> m_batch;  // null: found alone
  std::uint64_t m_position = 0;
  RecordRef m_record;
  std::uint32_t m_seenAt = 0;
};

}  // namespace hv::vex::engine
