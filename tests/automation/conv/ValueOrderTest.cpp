// tests/automation/conv/ValueOrderTest.cpp - the order of values of unknown types.
#include "automation/conv/ValueOrder.h"

#include <gtest/gtest.h>

#include <string>

#include "automation/conv/VexTime.h"

namespace hv::util::conv {
namespace {

Variant TimeOf(const char* digits) {
  return Variant::Object(vex::CreateTime(TimeValue::FromText(digits)).Get());
}

struct OrderCase {
  const char* name;
  Variant a;
  Variant b;
  VarOrder order;
};

TEST(ValueOrder, OrdersPairs) {
  const OrderCase kCases[] = {
      {"EmptyAndNull", Variant(), Variant::Null(), VarOrder::Equal},
      {"NullAndNumber", Variant::Null(), Variant::I4(1), VarOrder::Greater},
      {"NumberAndNull", Variant::I4(1), Variant::Null(), VarOrder::Less},
      {"EmptyAndText", Variant(), Variant::Text(u""), VarOrder::Greater},
      {"EmptyAndTime", Variant(), Variant::Date(0), VarOrder::Greater},
      {"IgnoresCase", Variant::Text(u"a"), Variant::Text(u"A"), VarOrder::Equal},
      {"NumbersBeforeTexts", Variant::I4(9), Variant::Text(u"1"), VarOrder::Less},
      {"Numbers", Variant::I2(3), Variant::R8(2.5), VarOrder::Greater},
      {"NumbersBeforeTimes", Variant::I4(99999), Variant::Date(2), VarOrder::Less},
      {"TimesBehindTexts", Variant::Date(2), Variant::Text(u"z"), VarOrder::Greater},
      {"Dates", Variant::Date(2), Variant::Date(3), VarOrder::Less},
      {"DateAndObject", Variant::Date(45000.5), TimeOf("20230315120000000000001"), VarOrder::Less},
      {"ObjectAndDate", TimeOf("202303151200"), Variant::Date(45000.5), VarOrder::Equal},
      {"BeforeDay0", Variant::Date(-1.25), Variant::Date(-1.75), VarOrder::Less},
      {"BareTimeBeforeDays", Variant::Date(0.9), Variant::Date(-657434.0), VarOrder::Less},
      {"Nanoseconds", TimeOf("20010203040506007008009"), TimeOf("20010203040506007008008"),
       VarOrder::Greater},
      {"SameTime", TimeOf("2001"), TimeOf("20010101"), VarOrder::Equal},
  };
  for (const OrderCase& c : kCases) {
    SCOPED_TRACE(c.name);
    VarOrder order = VarOrder::Null;
    EXPECT_EQ(S_OK, CompareValues(c.a, c.b, &order));
    EXPECT_EQ(c.order, order);
    const VarOrder reverse = c.order == VarOrder::Less      ? VarOrder::Greater
                             : c.order == VarOrder::Greater ? VarOrder::Less
                                                            : VarOrder::Equal;
    EXPECT_EQ(S_OK, CompareValues(c.b, c.a, &order));
    EXPECT_EQ(reverse, order);
  }
}

TEST(ValueOrder, HasNoAnswerForSomeTypes) {
  VarOrder order = VarOrder::Equal;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, CompareValues(Variant::UI4(1), Variant::I4(1), &order));
  EXPECT_EQ(VarOrder::Null, order);
  EXPECT_TRUE(Failed(CompareValues(Variant::Object(nullptr), Variant::I4(1), &order)));
  Variant one = Variant::I4(1);
  EXPECT_EQ(DISP_E_BADVARTYPE, CompareValues(Variant::RefTo(&one), one, &order));
  EXPECT_EQ(E_POINTER, CompareValues(one, one, nullptr));
}

TEST(ValueOrder, SortsMixedValues) {
  const std::vector<Variant> values = {
      Variant::Date(3), Variant(),       Variant::Text(u"b"),
      Variant::I4(7),   TimeOf("1900"),  Variant::Text(u"B"),
      Variant::R8(-1),  Variant::Null(), Variant::Text(u"a"),
  };
  const std::vector<std::size_t> expected = {6, 3, 8, 2, 5, 4, 0, 1, 7};
  EXPECT_EQ(expected, AscendingOrder(values));
  EXPECT_TRUE(AscendingOrder({}).empty());
}

}  // namespace
}  // namespace hv::util::conv
