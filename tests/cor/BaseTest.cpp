// cor/BaseTest.cpp - exceptions, safe integers and the count of living objects.
#include "cor/Counted.h"
#include "cor/Exceptions.h"
#include "cor/SafeInteger.h"

#include <storefabric/Ref.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace hv::cor {
namespace {

TEST(Exceptions, CarryTheirTextsAndPlaces) {
  using namespace exception;  // NOLINT: a table of its classes follows
  EXPECT_STREQ("unspecified exception", Exception().what());
  EXPECT_STREQ("A request was made that would exceed the bounds", BoundExceeded().what());
  EXPECT_STREQ("Out of range", OutOfRange().what());
  EXPECT_STREQ("Invalid argument(s)", InvalidArgument().what());
  EXPECT_STREQ("Invalid locale", InvalidLocale().what());
  EXPECT_STREQ("Invalid operation", InvalidOperation().what());
  const BoundExceeded2 bound("too long", "cor/StringBase", 12);
  EXPECT_STREQ("A request was made that would exceed the bounds: too long", bound.what());
  EXPECT_STREQ("cor/StringBase", bound.File());
  EXPECT_EQ(12, bound.Line());
  // A handler for the class without a detail catches the one with it, and the root catches all.
  EXPECT_THROW(throw OutOfRange2("x", "f", 1), OutOfRange);
  EXPECT_THROW(throw BoundExceeded2("x", "f", 1), Exception);
  EXPECT_THROW(throw InvalidLocale(), std::exception);
}

using Int8 = SafeInteger<std::int8_t>;
using UInt8 = SafeInteger<std::uint8_t>;

template <class T>
bool Exceeds(T a, char op, T b) {
  try {
    (void)(op == '+' ? a + b : op == '-' ? a - b : a * b);
    return false;
  } catch (const exception::BoundExceeded&) {
    return true;
  }
}

template <class T, class Wide>
void CompareWithWideArithmetic() {
  constexpr Wide kLow = std::numeric_limits<T>::min();
  constexpr Wide kHigh = std::numeric_limits<T>::max();
  for (Wide a = kLow; a <= kHigh; ++a) {
    for (Wide b = kLow; b <= kHigh; ++b) {
      const SafeInteger<T> x(a);
      const SafeInteger<T> y(b);
      const auto fits = [&](Wide result) { return result >= kLow && result <= kHigh; };
      ASSERT_EQ(!fits(a + b), Exceeds(x, '+', y)) << a << " + " << b;
      ASSERT_EQ(!fits(a - b), Exceeds(x, '-', y)) << a << " - " << b;
      ASSERT_EQ(!fits(a * b), Exceeds(x, '*', y)) << a << " * " << b;
      if (fits(a * b)) {
        ASSERT_EQ(a * b, (x * y).Value());
      }
    }
  }
}

TEST(SafeInteger, RaisesExactlyWhereTheResultDoesNotFit) {
  CompareWithWideArithmetic<std::int8_t, int>();
  CompareWithWideArithmetic<std::uint8_t, int>();
}

TEST(SafeInteger, TestsTheRangeOfConversionsAndKeepsItsValueWhenItRaises) {
  EXPECT_THROW(Int8(128), exception::OutOfRange);
  EXPECT_THROW(UInt8(-1), exception::OutOfRange);
  EXPECT_THROW((void)SafeInteger<int>(-1).As<std::uint64_t>(), exception::OutOfRange);
  EXPECT_THROW((void)SafeInteger<std::uint64_t>(1ull << 63).As<std::int64_t>(),
               exception::OutOfRange);
  EXPECT_THROW((void)SafeInteger<std::uint32_t>(0x80000000u).As<std::int32_t>(),
               exception::OutOfRange);
  EXPECT_EQ(-128, Int8(-128).As<std::int64_t>());
  EXPECT_EQ(255u, UInt8(255).As<std::uint64_t>());
  Int8 value(100);
  EXPECT_THROW(value += 100, exception::BoundExceeded);
  EXPECT_EQ(100, value.Value());
}

constexpr const char* kFaces[] = {"test::IFirst", "test::ISecond", "test::IThird"};
template <int N>
class IFace : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid(kFaces[N]);

 protected:
  ~IFace() = default;
};
using IFirst = IFace<0>;
using ISecond = IFace<1>;

/// Holds and drops a reference on itself while it dies.
class Both final : public Counted<IFirst, ISecond> {
 private:
  ~Both() override { (void)Ref<IFirst>::Share(this); }
};

TEST(Counted, GivesItsFacesAndDiesOnce) {
  const std::int64_t before = LiveObjectCount();
  {
    auto first = Ref<IFirst>::Adopt(new Both);
    EXPECT_EQ(before + 1, LiveObjectCount());
    const Ref<ISecond> second = first.As<ISecond>();
    ASSERT_TRUE(second);
    EXPECT_FALSE(first.As<IFace<2>>());
    EXPECT_EQ(first.As<IUnknown>(), second.As<IUnknown>());
    EXPECT_EQ(E_POINTER, first->QueryInterface(IFirst::kIid, nullptr));
    first.Reset();
    EXPECT_EQ(before + 1, LiveObjectCount());
  }
  EXPECT_EQ(before, LiveObjectCount());
}

}  // namespace
}  // namespace hv::cor
