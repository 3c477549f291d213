// automation/ItemKeyTest.cpp - what names a member of a collection.
#include "ToyObjects.h"
#include "automation/ReadCollection.h"

namespace hv::automation::toys {
namespace {

TEST(ItemKey, IsANameOrAnIndex) {
  Variant target = Variant::Text(u"red");
  const struct {
    Variant value;
    Result code;
    const char* name = "";
    std::int32_t index = 0;
  } cases[] = {
      {Variant::Text(u"7"), S_OK, "7"},          {Variant::RefTo(&target), S_OK, "red"},
      {Variant::I4(-1), S_OK, "", -1},           {Variant::UI1(7), S_OK, "", 7},
      {Variant::R8(1.0), S_OK, "", 1},           {Variant::I8(1LL << 40), E_INVALIDARG},
      {Variant::Null(), DISP_E_TYPEMISMATCH},    {Variant(), DISP_E_TYPEMISMATCH},
      {Variant::Array({}), DISP_E_TYPEMISMATCH},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.value));
    ItemKey key;
    EXPECT_EQ(c.code, ReadItemKey(c.value, &key));
    EXPECT_EQ(c.name, key.isName ? Utf8(*key.name) : "");
    EXPECT_EQ(c.index, key.index);
  }
}

}  // namespace
}  // namespace hv::automation::toys
