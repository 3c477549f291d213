// query/conditions/ConditionImpl.h - one condition of a query.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "query/conditions/IConditionCollImpl.h"
#include "query/conditions/IConditionImpl.h"
#include "query/conditions/IConditionOwner.h"
#include "query/values/AttributeDataTypeHelper.h"

namespace hv::vex::easyImpl {

/// A condition that knows no store, and what all conditions share.
class CConditionImpl : public cor::Counted<IConditionImpl> {
 public:
  CConditionImpl(std::u16string_view type, std::u16string_view property);

  // IConditionImpl
  const WString& GetName() override { return m_name; }
  Result SetName(std::u16string_view name) override;
  WString GetOperatorForDisplay() override;
  const WString& GetOperatorSymbol() override { return m_operator; }
  Result SetOperator(std::u16string_view op) override;
  const WString& GetProperty() override { return m_property; }
  const WString& GetShownProperty() override { return m_shownProperty; }
  Result SetProperty(std::u16string_view property) override;
  const WString& GetInternalProperty() override { return m_property; }
  const WString& GetType() override { return m_type; }
  const WString& GetShownType() override { return m_shownType; }
  Result SetType(std::u16string_view type) override;
  std::int32_t GetEffectiveSize() override;
  Result GetSize(std::int32_t* size) override;
  const WString& GetValueText() override { return m_valueText; }
  Result GetValue(std::int32_t index, Variant* value) override;
  const Variant& GetFirstValue() override;
  Result CopyValues(std::vector<Variant>* values) override;
  Result SetValue(const Variant& value, std::u16string_view text) override;
  Result SetFromText(std::u16string_view text) override;
  Result SetValues(std::vector<Variant> values, std::u16string_view text) override;
  std::int32_t GetDataType() override { return m_dataType; }
  Result SetDataType(std::int32_t dataType) override;
  void DetachFromOwner() override { m_owner.Clear(); }
  bool HasOrderBy() override { return false; }
  enumOrderBy GetOrderBy() override { return eNoOrderBy; }
  Result SetOrderBy(enumOrderBy orderBy) override;
  Result ClearOrderBy() override;
  Result ReadOperator(WString* op) override;
  Result ReadProperty(WString* property) override;
  Result ReadType(WString* type) override;
  Result ReadEffectiveSize(std::int32_t* size) override;
  Result ReadFirstValue(Variant* value) override;
  void RefreshSnapshots() override;
  IDisplayNameSource* GetDisplayNameSource() override { return m_displayNames.Get(); }
  const WString& GetInternalType() override { return m_type; }

  /// Takes the values of another condition and all else but its name.
  virtual void CopyFields(IConditionImpl& source);
  /// The collection that the condition is in. Kept without a reference.
  void SetOwner(IConditionCollImpl& owner) { m_owner.Set(&owner); }

 protected:
  ~CConditionImpl() override = default;

  /// Type or property has another text.
  virtual void OnRenamed() { RefreshSnapshots(); }
  /// What `Size` and `Values` ask first.
  virtual Result CheckReadable() { return S_OK; }
  [[nodiscard]] IConditionCollImpl* Owner() const { return m_owner.Get(); }
  [[nodiscard]] IAttributeDataTypeHelper* PropertyObject() const { return m_propertyObject.Get(); }
  /// Takes what answers for the property, and its type where that is known.
  void SetPropertyObject(Ref<IAttributeDataTypeHelper> property);
  void SetDisplayNameSource(IDisplayNameSource* source);
  void SetTypeAndProperty(WString type, WString property);

 private:
  WString m_name;
  WString m_operator;
  WString m_property;
  WString m_shownProperty;
  WString m_type;
  WString m_shownType;
  WString m_valueText;
  std::int32_t m_dataType = eNoType;
  std::vector<Variant> m_values;
  Ref<IDisplayNameSource> m_displayNames;
  BackRef<IConditionCollImpl> m_owner;
  Ref<IAttributeDataTypeHelper> m_propertyObject;
};

}  // namespace hv::vex::easyImpl
