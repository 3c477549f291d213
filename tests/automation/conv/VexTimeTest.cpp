// tests/automation/conv/VexTimeTest.cpp - the time object through its typed and its late-bound
// face.
#include "automation/conv/VexTime.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <barrier>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "automation/conv/ValueText.h"
#include "automation/conv/VexTimeFactory.h"
#include "cor/Counted.h"

namespace hv::vex {
namespace {

using util::conv::TimeParts;
using util::conv::TimeValue;

class VexTime : public ::testing::Test {
 protected:
  void TearDown() override {
    m_time.Reset();
    EXPECT_EQ(m_alive, cor::LiveObjectCount());
  }

  TimeValue& Value() {
    TimeValue* value = nullptr;
    const auto face = m_time.As<IVexTimeIntern>();
    EXPECT_FALSE(Failed(face->GetTimeValue(&value)));
    return *value;
  }

  Result Call(std::u16string_view name, CallKind kind, const Variant& argument, Variant* result) {
    std::int32_t id = kDispIdUnknown;
    EXPECT_FALSE(Failed(m_time->GetIdOfName(name, &id)));
    m_error = {};
    const std::span<const Variant> args(&argument, kind == CallKind::Put ? 1 : 0);
    return m_time->Invoke(id, kind, args, result, &m_error);
  }
  Result Write(std::u16string_view name, const Variant& value) {
    return Call(name, CallKind::Put, value, nullptr);
  }
  Variant Read(std::u16string_view name) {
    Variant value;
    EXPECT_FALSE(Failed(Call(name, CallKind::Get, {}, &value)));
    return value;
  }
  std::int32_t Year() {
    std::int16_t year = 0;
    EXPECT_EQ(S_OK, m_time->get_Year(&year));
    return year;
  }

  std::int64_t m_alive = cor::LiveObjectCount();
  Ref<IVexTimeDisp> m_time = CreateTime(TimeValue::FromText("20010203040506007008009"));
  ErrorInfo m_error;
};

struct FieldCase {
  std::u16string_view name;
  std::int32_t id;
  std::int16_t value;
};
constexpr FieldCase kFields[] = {
    {u"Year", 1, 2001},     {u"Month", 2, 2},       {u"Day", 3, 3},
    {u"Hour", 4, 4},        {u"Minute", 5, 5},      {u"Second", 6, 6},
    {u"Millisecond", 7, 7}, {u"Microsecond", 8, 8}, {u"Nanosecond", 9, 9}};

TEST_F(VexTime, ShowsItsFieldsAndKeepsTheOthersWhenOneIsWritten) {
  for (const FieldCase& c : kFields) {
    SCOPED_TRACE(cor::ToUtf8(c.name));
    std::int32_t id = 0;
    EXPECT_EQ(S_OK, m_time->GetIdOfName(c.name, &id));
    EXPECT_EQ(c.id, id);
    const Variant value = Read(c.name);
    EXPECT_TRUE(value.Is(VT_I2));
    EXPECT_EQ(c.value, value.AsInt64());
    EXPECT_EQ(S_OK, Write(c.name, Variant::I4(c.value + 2)));
  }
  EXPECT_EQ(10U, m_time->GetMemberCount());
  EXPECT_EQ("20030405060708009010011", Value().ToText());
  EXPECT_EQ(S_OK, m_time->put_Month(13));
  EXPECT_EQ("20030105060708009010011", Value().ToText()) << "counts as January";
  EXPECT_EQ(S_OK, m_time->put_Millisecond(1500));
  EXPECT_EQ("20030105060708500010011", Value().ToText()) << "no second more";
  EXPECT_EQ(S_OK, m_time->put_Year(-3));
  EXPECT_EQ(-3, Year());
  // Years beyond 16 bits are shown as the nearest.
  Value() = TimeValue::FromParts({100'000, 1, 1});
  EXPECT_EQ(std::numeric_limits<std::int16_t>::max(), Year());
  Value() = TimeValue();
  EXPECT_EQ(std::numeric_limits<std::int16_t>::min(), Year());
}

TEST_F(VexTime, RefusesNegativeFieldsWithTheirNames) {
  for (const FieldCase& c : kFields) {
    if (c.name == u"Year") continue;
    SCOPED_TRACE(cor::ToUtf8(c.name));
    EXPECT_EQ(DISP_E_EXCEPTION, Write(c.name, Variant::I2(-7)));
    EXPECT_EQ(E_INVALIDARG, m_error.code);
    EXPECT_EQ(208, m_error.number);
    EXPECT_EQ("The value -7 is out of the valid range of arguments for the property " +
                  cor::ToUtf8(c.name) + ".",
              cor::ToUtf8(m_error.text));
  }
  EXPECT_EQ("20010203040506007008009", Value().ToText()) << "unchanged";
  EXPECT_EQ(DISP_E_OVERFLOW, Write(u"Day", Variant::I4(40000)));
}

TEST_F(VexTime, ConvertsToADateWithinTheirRange) {
  EXPECT_EQ(S_OK, m_time->put_VariantDate(45000.5));
  EXPECT_EQ("20230315120000000000000", Value().ToText());
  EXPECT_EQ(45000.5, Read(u"VariantDate").AsDouble());
  Variant shown;
  EXPECT_EQ(S_OK, Variant::Object(m_time.Get()).ChangeType(VT_DATE, &shown)) << "default member";
  EXPECT_EQ(45000.5, shown.AsDouble());
  for (const double date : {-657435.0, 2958465.0, std::nan(""), -1e9, 1e300}) {
    EXPECT_EQ(E_INVALIDARG, m_time->put_VariantDate(date)) << date;
    EXPECT_EQ(DISP_E_EXCEPTION, Write(u"VariantDate", Variant::R8(date)));
    EXPECT_EQ(374, m_error.number);
  }
  EXPECT_EQ("20230315120000000000000", Value().ToText()) << "unchanged";
  Value() = TimeValue::FromText("00500101");
  double date = 0;
  EXPECT_EQ(E_INVALIDARG, m_time->get_VariantDate(&date));
  EXPECT_EQ(-675696.0, date) << "set all the same";
}

TEST_F(VexTime, RefusesNullOutPointers) {
  EXPECT_EQ(E_POINTER, m_time->get_Year(nullptr));
  EXPECT_EQ(E_POINTER, m_time->get_Nanosecond(nullptr));
  EXPECT_EQ(E_POINTER, m_time->get_VariantDate(nullptr));
  EXPECT_EQ(E_POINTER, m_time.As<IVexTimeIntern>()->GetTimeValue(nullptr));
  EXPECT_EQ(E_POINTER, CreateTime(TimeParts{}, nullptr));
  EXPECT_EQ(E_POINTER, ReadTimeObject(*m_time, nullptr));
}

TEST(CreateTime, TakesOnlyTheYearNegative) {
  Ref<IVexTimeDisp> time;
  EXPECT_EQ(S_OK, CreateTime({-5, 1, 2, 3, 4, 5, 6, 7, 8}, time.Put()));
  TimeParts parts;
  EXPECT_EQ(S_OK, ReadTimeObject(*time, &parts));
  EXPECT_EQ((TimeParts{-5, 1, 2, 3, 4, 5, 6, 7, 8}), parts);
  using Field = std::int32_t TimeParts::*;
  for (const Field field : {&TimeParts::month, &TimeParts::day, &TimeParts::hour,
                            &TimeParts::minute, &TimeParts::second, &TimeParts::millisecond,
                            &TimeParts::microsecond, &TimeParts::nanosecond}) {
    TimeParts negative{2001, 1, 1};
    negative.*field = -1;
    EXPECT_EQ(E_INVALIDARG, CreateTime(negative, time.Put()));
    EXPECT_FALSE(time);
  }
}

TEST(CreateTime, IsCalledByNameWithAsManyFieldsAsWanted) {
  Ref<IDispatch> factory;
  ASSERT_EQ(E_POINTER, CVexTimeFactoryInt::CreateObject(nullptr));
  ASSERT_EQ(S_OK, CVexTimeFactoryInt::CreateObject(factory.Put()));
  std::int32_t id = 0;
  ASSERT_EQ(S_OK, factory->GetIdOfName(u"createtime", &id));
  const auto call = [&](const std::vector<Variant>& args, ErrorInfo* error) {
    Variant made;
    const Result rc = factory->Invoke(id, CallKind::Method, args, &made, error);
    WString text;
    EXPECT_EQ(Failed(rc), Failed(util::conv::TextOfVariant(made, &text)) || text.empty());
    return cor::ToUtf8(text);
  };
  ErrorInfo error;
  EXPECT_EQ("20010101000000000000000", call({Variant::I4(2001)}, &error));
  EXPECT_EQ("20010203000000000000000",
            call({Variant::I4(2001), Variant::I2(2), Variant::Text(u"3")}, &error));
  EXPECT_EQ("", call({Variant::I4(2001), Variant::I4(2), Variant::I4(-3)}, &error));
  EXPECT_EQ(60008, error.number);
  EXPECT_EQ(
      "The only argument to the method \"CreateTime\" which may be negative is the argument "
      "\"Year\".",
      cor::ToUtf8(error.text));
}

/// A thread that writes one field never takes back what another one wrote to its own.
TEST_F(VexTime, IsWrittenByOneThreadAtATime) {
  std::atomic<int> lost = 0;
  std::barrier start(2);
  const auto use = [&](Result (IVexTimeDisp::*put)(std::int16_t),
                       Result (IVexTimeDisp::*get)(std::int16_t*)) {
    start.arrive_and_wait();
    for (int i = 0; i < 500'000; ++i) {
      const auto written = static_cast<std::int16_t>(i % 24);
      std::int16_t read = -1;
      if (Failed((m_time.Get()->*put)(written)) || Failed((m_time.Get()->*get)(&read)) ||
          read != written) {
        ++lost;
      }
    }
  };
  std::thread other(use, &IVexTimeDisp::put_Hour, &IVexTimeDisp::get_Hour);
  use(&IVexTimeDisp::put_Minute, &IVexTimeDisp::get_Minute);
  other.join();
  EXPECT_EQ(0, lost.load());
}

}  // namespace
}  // namespace hv::vex
