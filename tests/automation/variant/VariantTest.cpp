// tests/automation/variant/VariantTest.cpp - what variants own, borrow and give back.
#include <gtest/gtest.h>

#include <storefabric/Variant.h>

#include "VariantOfCell.h"
#include "cor/Counted.h"

namespace hv {
namespace {

TEST(Variant, CopiesAreDeepForTextsAndArrays) {
  Variant original =
      Variant::Array({Variant::Text(u"a"), Variant::Dec({5, 0, 1, 0}), Variant::Array({})});
  const Variant copy = original;
  original.AsArray()[0] = Variant::I4(1);
  original.AsArray()[1] = Variant();
  ASSERT_EQ(copy.AsArray().size(), 3U);
  EXPECT_EQ(copy.AsArray()[0].AsText().view(), u"a");
  EXPECT_EQ(copy.AsArray()[1].AsDecimal(), (Decimal{5, 0, 1, 0}));
}

TEST(Variant, CountsItsObjects) {
  const std::int64_t before = cor::LiveObjectCount();
  {
    Variant object = golden::VariantOfCells("VT_DISPATCH", "object(no default)")->value;
    Variant unknown = golden::VariantOfCells("VT_UNKNOWN", "object(no default)")->value;
    EXPECT_EQ(cor::LiveObjectCount(), before + 2);
    const Variant copy = object;
    object = unknown;
    EXPECT_EQ(cor::LiveObjectCount(), before + 2);
    unknown.Clear();
    const Variant moved = std::move(object);
    EXPECT_TRUE(object.IsEmpty());
    EXPECT_EQ(cor::LiveObjectCount(), before + 2);
    Variant face;
    ASSERT_EQ(copy.ChangeType(VT_UNKNOWN, &face), S_OK);
    ASSERT_EQ(face.ChangeType(VT_DISPATCH, &face), S_OK);
    EXPECT_EQ(face.AsObject(), copy.AsObject());
  }
  EXPECT_EQ(cor::LiveObjectCount(), before);
}

TEST(Variant, TakesAPartOfItself) {
  Variant value = Variant::Array({Variant::Array({Variant::Text(u"inner")})});
  value = value.AsArray()[0];
  value = value.AsArray()[0];
  EXPECT_EQ(value.AsText().view(), u"inner");
  Variant& same = value;
  value = same;
  EXPECT_EQ(value.AsText().view(), u"inner");
}

TEST(Variant, FollowsReferencesAndBorrowsTheirTargets) {
  Variant target = Variant::Text(u"7");
  Variant reference = Variant::RefTo(&target);
  const Variant chain = Variant::RefTo(&reference);
  EXPECT_EQ(&chain.Dereferenced(), &target);
  Variant number;
  ASSERT_EQ(chain.ChangeType(VT_I4, &number), S_OK);
  EXPECT_EQ(number.AsInt64(), 7);
  reference.Clear();
  EXPECT_EQ(target.AsText().view(), u"7");
}

TEST(Variant, KnowsTheMissingArgument) {
  EXPECT_TRUE(Variant::Missing().IsMissing());
  EXPECT_FALSE(Variant::Error(E_FAIL).IsMissing());
  EXPECT_FALSE(Variant().IsMissing());
  EXPECT_TRUE(Variant::Text(static_cast<const char16_t*>(nullptr)).AsText().empty());
}

}  // namespace
}  // namespace hv
