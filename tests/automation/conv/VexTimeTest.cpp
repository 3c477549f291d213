// tests/automation/conv/VexTimeTest.cpp - the time object through its typed face.
#include "automation/conv/VexTime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <cmath>
#include <limits>
#include <thread>

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
    EXPECT_EQ(S_OK, m_time.As<IVexTimeIntern>()->GetTimeValue(&value));
    return *value;
  }
  std::int32_t Year() {
    std::int16_t year = 0;
    EXPECT_EQ(S_OK, m_time->get_Year(&year));
    return year;
  }

  std::int64_t m_alive = cor::LiveObjectCount();
  Ref<IVexTimeDisp> m_time = CreateTime(TimeValue::FromText("20010203040506007008009"));
};

using T = IVexTimeDisp;
struct Field {
  std::u16string_view name;
  Result (T::*get)(std::int16_t*);
  Result (T::*put)(std::int16_t);
  std::int16_t value;
};
constexpr Field kFields[] = {{u"Year", &T::get_Year, &T::put_Year, 2001},
                             {u"Month", &T::get_Month, &T::put_Month, 2},
                             {u"Day", &T::get_Day, &T::put_Day, 3},
                             {u"Hour", &T::get_Hour, &T::put_Hour, 4},
                             {u"Minute", &T::get_Minute, &T::put_Minute, 5},
                             {u"Second", &T::get_Second, &T::put_Second, 6},
                             {u"Millisecond", &T::get_Millisecond, &T::put_Millisecond, 7},
                             {u"Microsecond", &T::get_Microsecond, &T::put_Microsecond, 8},
                             {u"Nanosecond", &T::get_Nanosecond, &T::put_Nanosecond, 9}};

TEST_F(VexTime, ShowsItsFieldsAndKeepsTheOthersWhenOneIsWritten) {
  for (const Field& field : kFields) {
    SCOPED_TRACE(cor::ToUtf8(field.name));
    std::int32_t id = 0;
    EXPECT_EQ(S_OK, m_time->GetIdOfName(field.name, &id));
    EXPECT_EQ(&field - kFields + 1, id);
    std::int16_t value = 0;
    EXPECT_EQ(S_OK, (m_time.Get()->*field.get)(&value));
    EXPECT_EQ(field.value, value);
    const TimeValue before = Value();
    EXPECT_EQ(id == 1 ? S_OK : E_INVALIDARG, (m_time.Get()->*field.put)(-7));
    EXPECT_TRUE(id == 1 || before == Value());
    EXPECT_EQ(S_OK, (m_time.Get()->*field.put)(static_cast<std::int16_t>(value + 2)));
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

TEST_F(VexTime, ConvertsToADateWithinTheirRange) {
  EXPECT_EQ(S_OK, m_time->put_VariantDate(45000.5));
  EXPECT_EQ("20230315120000000000000", Value().ToText());
  double date = 0;
  EXPECT_EQ(S_OK, m_time->get_VariantDate(&date));
  EXPECT_EQ(45000.5, date);
  Variant shown;
  EXPECT_EQ(S_OK, Variant::Object(m_time.Get()).ChangeType(VT_DATE, &shown)) << "default member";
  EXPECT_EQ(45000.5, shown.AsDouble());
  for (const double bad : {-657435.0, 2958465.0, std::nan(""), -1e9, 1e300})
    EXPECT_EQ(E_INVALIDARG, m_time->put_VariantDate(bad)) << bad;
  EXPECT_EQ("20230315120000000000000", Value().ToText()) << "unchanged";
  Value() = TimeValue::FromText("00500101");
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
  EXPECT_EQ(E_POINTER, CVexTimeFactoryInt::CreateObject(nullptr));
}

TEST(CreateTime, TakesOnlyTheYearNegative) {
  Ref<IVexTimeDisp> time;
  EXPECT_EQ(S_OK, CreateTime({-5, 1, 2, 3, 4, 5, 6, 7, 8}, time.Put()));
  TimeParts parts;
  EXPECT_EQ(S_OK, ReadTimeObject(*time, &parts));
  EXPECT_EQ((TimeParts{-5, 1, 2, 3, 4, 5, 6, 7, 8}), parts);
  for (std::int32_t TimeParts::*const field :
       {&TimeParts::month, &TimeParts::day, &TimeParts::hour, &TimeParts::minute,
        &TimeParts::second, &TimeParts::millisecond, &TimeParts::microsecond,
        &TimeParts::nanosecond}) {
    TimeParts negative{2001, 1, 1};
    negative.*field = -1;
    EXPECT_EQ(E_INVALIDARG, CreateTime(negative, time.Put()));
    EXPECT_FALSE(time);
  }
}

/// A thread that writes one field never takes back what another one wrote to its own.
TEST_F(VexTime, IsWrittenByOneThreadAtATime) {
  std::atomic<int> lost = 0;
  std::barrier start(2);
  const auto use = [&](const Field& field) {
    start.arrive_and_wait();
    for (int i = 0; i < 500'000; ++i) {
      const auto written = static_cast<std::int16_t>(i % 24);
      std::int16_t read = -1;
      if (Failed((m_time.Get()->*field.put)(written)) ||
          Failed((m_time.Get()->*field.get)(&read)) || read != written) {
        ++lost;
      }
    }
  };
  std::thread other(use, kFields[3]);
  use(kFields[4]);
  other.join();
  EXPECT_EQ(0, lost.load());
}

}  // namespace
}  // namespace hv::vex
