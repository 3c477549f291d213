// tests/automation/conv/ValueOrderTest.cpp - the order of values of unknown types.
#include "automation/conv/ValueOrder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "automation/conv/VexTime.h"

namespace hv::util::conv {
namespace {

Variant TimeOf(const char* digits) {
  return Variant::Object(vex::CreateTime(TimeValue::FromText(digits)).Get());
}

TEST(ValueOrder, OrdersPairs) {
  const struct {
    const char* name;
    Variant a;
    Variant b;
    VarOrder order;
  } kCases[] = {
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
  for (const auto& c : kCases) {
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

/// Whatever way a sort takes, neighbours stand as the comparison of the two says, and equal ones as
/// they stood before.
TEST(ValueOrder, SortsAsItCompares) {
  std::mt19937 random(5);
  const auto below = [&random](std::uint32_t limit) {
    return static_cast<std::uint32_t>(random() % limit);
  };
  const std::u16string_view kUnits = u"abAB019- '.\u00E4\u00DF\0";
  const auto valueOf = [&](std::uint32_t kind) {
    const auto number = static_cast<std::int32_t>(below(9)) - 4;
    std::u16string text(below(11), u' ');
    // Half of the texts share a beginning that is longer than what is compared at once.
    for (char16_t& unit : text) unit = kUnits[below(kind == 6 ? 9 : 13)];
    if (kind == 6 && number > 0) text.insert(0, u"ABABABABAB");
    const Variant values[] = {Variant(),
                              Variant::Date(number / 2.0),
                              Variant::R8(number / 3.0),
                              Variant::I8(number + (std::int64_t{1} << (number > 2 ? 60 : 1))),
                              Variant::Bool(number > 0),
                              Variant::Text(text),
                              Variant::Text(text),
                              Variant::UI1(static_cast<std::uint8_t>(below(5))),
                              Variant::R4(static_cast<float>(number)),
                              Variant::Cy(number)};
    return values[kind];
  };
  for (const auto& [first, kinds] : {std::pair{0U, 10U}, {0U, 8U}, {2U, 6U}, {8U, 1U}, {5U, 2U}}) {
    std::vector<Variant> values;
    for (int i = 0; i < 400; ++i) values.push_back(valueOf(first + below(kinds)));
    const std::vector<std::size_t> positions = AscendingOrder(values);
    ASSERT_EQ(values.size(), positions.size());
    for (std::size_t i = 1; i < positions.size(); ++i) {
      VarOrder order = VarOrder::Null;
      ASSERT_EQ(S_OK, CompareValues(values[positions[i - 1]], values[positions[i]], &order));
      ASSERT_TRUE(order == VarOrder::Less ||
                  (order == VarOrder::Equal && positions[i - 1] < positions[i]))
          << first << ' ' << i;
    }
  }
}

}  // namespace
}  // namespace hv::util::conv
