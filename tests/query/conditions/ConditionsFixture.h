// query/conditions/ConditionsFixture.h - a model and a query made by hand, and the conditions
// between them.
#pragma once

#include <map>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "cor/Counted.h"
#include "query/conditions/ConditionCollInt.h"
#include "query/conditions/DataStoreConditionCollImpl.h"
#include "tests/support/Script.h"

namespace hv::vex::test {

using easyImpl::CDataStoreConditionCollImpl;
using easyImpl::IConditionCollImpl;
using easyImpl::IConditionImpl;
using hv::test::Answer;
using hv::test::Eval;
using hv::test::ExpectShown;
using hv::test::Get;

inline Variant T(std::u16string_view text) { return Variant::Text(text); }
/// 2009-05-17.
inline const Variant kDay = Variant::Date(39950);

class PropertyType final : public cor::Counted<IAttributeDataTypeHelper> {
 public:
  explicit PropertyType(std::int32_t type) : m_type(type) {}
  bool IsString() override { return IsStringType(m_type); }
  bool ForwardIsString() override { return IsString(); }
  bool IsInteger() override { return IsIntegerType(m_type); }
  bool ForwardIsInteger() override { return IsInteger(); }
  bool IsReal() override { return IsRealType(m_type); }
  bool ForwardIsReal() override { return IsReal(); }
  bool IsDate() override { return IsDateType(m_type); }
  bool ForwardIsDate() override { return IsDate(); }
  bool IsKnown() override { return IsKnownType(m_type); }
  bool ForwardIsKnown() override { return IsKnown(); }
  std::int32_t GetDataType() override { return m_type; }
  std::int32_t ForwardGetDataType() override { return m_type; }

 private:
  std::int32_t m_type;
};

/// One entity with properties; the internal names are the names behind a prefix.
class ToyModel final : public cor::Counted<IConditionModelSource, IDisplayNameSource> {
 public:
  std::u16string m_entity = u"Test";
  std::u16string m_prefix = u"ao";
  std::map<std::u16string, std::int32_t> m_types = {
      {u"Name", eString}, {u"Size", eI32}, {u"Mass", eR64}, {u"Day", eTime}};
  bool m_hasLocalNames = false;

  WString GetStoreName() override { return u"Bench"; }
  bool IsValidType(std::u16string_view type) override { return type == m_entity; }
  bool IsValidProperty(std::u16string_view type, std::u16string_view property) override {
    return IsValidType(type) && m_types.contains(std::u16string(property));
  }
  Result GetTypeHelper(std::u16string_view type, std::u16string_view property,
                       IAttributeDataTypeHelper** helper) override {
    std::int32_t dataType = eNoType;
    (void)GetValueType(type, property, &dataType);
    *helper = MakeRef<PropertyType>(dataType).Detach();
    return S_OK;
  }
  Result GetValueType(std::u16string_view type, std::u16string_view property,
                      std::int32_t* dataType) override {
    if (!IsValidProperty(type, property)) return E_INVALIDARG;
    *dataType = m_types[std::u16string(property)];
    return S_OK;
  }
  Result ResolveInternal(std::u16string_view type, std::u16string_view property,
                         WString* entityPath, WString* internalProperty) override {
    if (!IsValidProperty(type, property)) return E_FAIL;
    *entityPath = WString(m_prefix) + type;
    *internalProperty = WString(m_prefix) + property;
    return S_OK;
  }
  /// Knows "aotest.aoName" and its like, whatever its own entity and prefix are called.
  Result ResolveNames(std::u16string_view path, WString* type, WString* property) override {
    const std::size_t point = path.rfind(u'.');
    *type = m_entity;
    *property = path.substr(point + 3);
    return IsValidProperty(*type, *property) ? S_OK : E_FAIL;
  }
  IDisplayNameSource* GetDisplayNameSource() override { return m_hasLocalNames ? this : nullptr; }
  Result GetLocalNames(std::u16string_view language, std::u16string_view type,
                       std::u16string_view property, WString* localType,
                       WString* localProperty) override {
    if (property == u"Mass") throw Exception(-1);
    if (property == u"Size") return E_FAIL;
    *localType = WString(language) + type;
    *localProperty = WString(language) + property;
    return S_OK;
  }
};

class ToyQuery final : public IConditionOwner {
 public:
  Result m_state = S_OK;
  WString GetStoreName() override { return u"Owner"; }
  Result CheckModel(std::u16string_view) override { return m_state; }
};

class ConditionsTest : public ::testing::Test {
 protected:
  ~ConditionsTest() override {
    m_face.Reset();
    m_conditions.Reset();
    m_model.Reset();
    EXPECT_EQ(m_alive, cor::LiveObjectCount());
  }

  /// "C1 C2", in the order of the collection; the conditions must agree with their keys.
  std::string Names() {
    std::string names;
    std::int32_t count = 0;
    EXPECT_EQ(S_OK, m_conditions->GetCount(&count));
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<IConditionImpl> condition;
      EXPECT_EQ(S_OK, m_conditions->GetItem(i, condition.Put()));
      std::int32_t index = -1;
      EXPECT_EQ(S_OK, m_conditions->GetIndexOfName(condition->GetName(), &index));
      EXPECT_EQ(i, index);
      names += (i == 0 ? "" : " ") + cor::ToUtf8(condition->GetName());
    }
    return names;
  }
  Ref<IConditionImpl> AddNamed(std::u16string_view name, std::u16string_view property,
                               std::u16string_view op, const Variant& value) {
    Ref<IConditionImpl> condition;
    EXPECT_EQ(S_OK, m_conditions->AddWithName(name, u"Test", property, op, value, condition.Put()));
    return condition;
  }

  std::int64_t m_alive = cor::LiveObjectCount();
  ToyQuery m_query;
  Ref<ToyModel> m_model = MakeRef<ToyModel>();
  Ref<CDataStoreConditionCollImpl> m_conditions =
      MakeRef<CDataStoreConditionCollImpl>(&m_query, m_model.Get());
  Ref<CDataStoreConditionCollInt> m_face = MakeRef<CDataStoreConditionCollInt>(m_conditions);
};

}  // namespace hv::vex::test
