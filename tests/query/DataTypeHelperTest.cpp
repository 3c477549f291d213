// query/DataTypeHelperTest.cpp - the kind of values of a property, and what is missing.
#include "query/values/AttributeDataTypeHelper.h"

#include "store/model/IEntityImpl.h"
#include "store/model/IModelPropertyImpl.h"

#include <gtest/gtest.h>

namespace hv::vex {
namespace {

/// An entity with one property "p", and its list of properties, all in one.
class OnePropertyEntity final
    : public cor::Counted<IEntityImpl, IModelPropertyCollImpl, IModelPropertyImpl> {
 public:
  explicit OnePropertyEntity(std::int32_t type) : m_type(static_cast<enumDataType>(type)) {}

  // IEntityImpl
  Result GetName(WString*) override { return E_NOTIMPL; }
  Result GetModelProperties(IModelPropertyCollImpl** properties) override {
    return Ref<IModelPropertyCollImpl>::Share(this).CopyTo(properties);
  }
  Result GetModelReferences(IModelReferenceCollImpl**) override { return E_NOTIMPL; }
  Result GetSubTypes(IEntityCollImpl**) override { return E_NOTIMPL; }
  Result GetSuperType(IEntityImpl**) override { return E_NOTIMPL; }
  Result IsKindOf(std::u16string_view, std::int32_t*) override { return E_NOTIMPL; }
  Result IsBaseType(std::int32_t*) override { return E_NOTIMPL; }
  Result Reserved() override { return E_NOTIMPL; }
  // IModelPropertyCollImpl
  Result GetItem(std::int32_t, IModelPropertyImpl**) override { return E_NOTIMPL; }
  Result GetCount(std::int32_t*) override { return E_NOTIMPL; }
  Result GetItemByName(std::u16string_view name, IModelPropertyImpl** property) override {
    if (name != u"p") return E_INVALIDARG;
    return Ref<IModelPropertyImpl>::Share(this).CopyTo(property);
  }
  Result Exists(std::u16string_view, bool*) override { return E_NOTIMPL; }
  // IModelPropertyImpl; GetName stands above
  Result GetDataType(enumDataType* dataType) override {
    *dataType = m_type;
    return S_OK;
  }
  Result GetBaseName(WString*) override { return E_NOTIMPL; }
  Result GetMinOccur(std::int32_t*) override { return E_NOTIMPL; }
  Result GetMaxOccur(std::int32_t*) override { return E_NOTIMPL; }

 private:
  enumDataType m_type;
};

struct TypeCase {
  std::int32_t type;
  std::string_view kinds;  ///< s, i, r, d and k for those that are true
};

std::string Kinds(IAttributeDataTypeHelper& helper) {
  std::string kinds;
  if (helper.IsString()) kinds += 's';
  if (helper.IsInteger()) kinds += 'i';
  if (helper.IsReal()) kinds += 'r';
  if (helper.IsDate()) kinds += 'd';
  if (helper.IsKnown()) kinds += 'k';
  return kinds;
}

std::string ForwardedKinds(IAttributeDataTypeHelper& helper) {
  std::string kinds;
  if (helper.ForwardIsString()) kinds += 's';
  if (helper.ForwardIsInteger()) kinds += 'i';
  if (helper.ForwardIsReal()) kinds += 'r';
  if (helper.ForwardIsDate()) kinds += 'd';
  if (helper.ForwardIsKnown()) kinds += 'k';
  return kinds;
}

TEST(AttributeDataTypeHelper, TellsTheKind) {
  constexpr TypeCase kCases[] = {
      {0, ""},    {1, "k"},  {2, "ik"},  {3, "ik"},  {4, "ik"}, {5, "ik"}, {6, "ik"},
      {7, "ik"},  {8, "k"},  {9, "rk"},  {10, "rk"}, {11, "k"}, {22, "k"}, {23, "sk"},
      {24, "sk"}, {25, "k"}, {30, "dk"}, {40, "k"},  {-1, ""},
  };
  for (const TypeCase& c : kCases) {
    SCOPED_TRACE(c.type);
    const auto entity = MakeRef<OnePropertyEntity>(c.type);
    const auto helper = MakeRef<CDSAttributeDataTypeHelper>(entity.Get(), u"p");
    EXPECT_EQ(c.kinds, Kinds(*helper));
    EXPECT_EQ(c.kinds, ForwardedKinds(*helper));
    EXPECT_EQ(c.type, helper->GetDataType());
    EXPECT_EQ(c.type, helper->ForwardGetDataType());
  }
}

TEST(AttributeDataTypeHelper, KnowsNothingWithoutEntityOrName) {
  const std::int64_t alive = cor::LiveObjectCount();
  {
    const auto entity = MakeRef<OnePropertyEntity>(eString);
    EXPECT_EQ(0, MakeRef<CDSAttributeDataTypeHelper>(nullptr, u"p")->GetDataType());
    EXPECT_EQ(0, MakeRef<CDSAttributeDataTypeHelper>(entity.Get(), u"")->GetDataType());
    EXPECT_EQ(0, MakeRef<CDSAttributeDataTypeHelper>(entity.Get(), u"q")->GetDataType());
  }
  EXPECT_EQ(alive, cor::LiveObjectCount());
}

}  // namespace
}  // namespace hv::vex
