// tests/conv/TimeFormatTest.cpp - times to and from text by a pattern.
#include "util/conv/TimeFormat.h"

#include <gtest/gtest.h>

#include <string>

namespace hv::util::conv {

void PrintTo(const TimeRecord& t, std::ostream* out) {
  *out << t.year << '-' << t.month << '-' << t.day << ' ' << t.hour << ':' << t.minute << ':'
       << t.second << '+' << t.fraction;
}

namespace {

constexpr TimeRecord kMoment{2001, 2, 3, 4, 5, 6, 0.5};

TEST(TimeFormat, PrintsByThePattern) {
  const auto format = CreateTimeFormat();
  const auto expect = [&](std::u16string_view text, std::u16string_view pattern,
                          const TimeRecord& time) {
    EXPECT_TRUE(format->SetPattern(pattern));
    WString printed(u"left over");
    EXPECT_EQ(text, format->Format(&printed, time).view()) << cor::ToUtf8(pattern);
  };
  const struct {
    std::u16string_view pattern;
    std::u16string_view text;
  } kMoments[] = {
      {u"", u""},
      {u"//", u""},
      {u"Y", u"2001"},
      {u"YY", u"01"},
      {u"YYYY", u"2001"},
      {u"(YYYY)", u"2001"},
      {u"YYYYY", u"02001"},
      {u"hhhh", u"0004"},
      {u"M/D/YYYY", u"2/3/2001"},
      {u"Date: YYYY", u"3ate: 2001"},
      {u"YYYY -- MM", u"2001 -- 02"},
      {u"YYYYMMDDhhmmss", u"20010203040506"},
      {u"DD.MM.YYYY hh:mm:ss", u"03.02.2001 04:05:06"},
  };
  for (const auto& c : kMoments) expect(c.text, c.pattern, kMoment);
  expect(u"-005", u"YYYY", {-5});
  expect(u"12", u"M", {0, 12});
  expect(u"123", u"s", {0, 0, 0, 0, 0, 123});

  const struct {
    std::u16string_view pattern;
    std::int32_t hour;
    std::u16string_view text;
  } kHours[] = {
      {u"hh:mm pp", 0, u"12:00 am"},  {u"hh:mm pp", 12, u"12:00 pm"},
      {u"hh:mm pp", 13, u"01:00 pm"}, {u"hh:mm PP", 11, u"11:00 AM"},
      {u"h p", 24, u"0 p"},           {u"hP", 23, u"11P"},
      {u"h pppp", 1, u"1 a.m."},      {u"h PPPP", 1, u"1 A.M."},
      {u"h ppPp", 1, u"1 a.M."},      {u"h pP", 1, u"1 aM"},
      {u"h Ppp", 1, u"1 Am"},         {u"h ppppp", 1, u"1 a"},
  };
  for (const auto& c : kHours) expect(c.text, c.pattern, {2001, 2, 3, c.hour});

  const struct {
    std::u16string_view pattern;
    double fraction;
    std::u16string_view text;
  } kFractions[] = {
      {u"fff", 0.5, u"500"},
      {u"fff", 0.1234, u"1234"},
      {u"fff", 0.12345, u"1234"},
      {u"f", 0, u"0"},
      {u"f", 0.25, u"25"},
      {u"ff", 0.007, u"007"},
      {u"ss.fff", 0.25, u"06.250"},
      {u"fff", 0.99999999999, u"000"},
      {u"fffffffff", 0.00048828125, u"0004882812"},
      {u"fffffffff", 0.00000000005, u"0000000001"},
      {u"ffffffffff", 0.00146484375, u"0014648438"},
  };
  for (const auto& c : kFractions) expect(c.text, c.pattern, {2001, 2, 3, 4, 5, 6, c.fraction});
  expect(u"5" + std::u16string(35, u'0'), std::u16string(36, u'f'), {2001, 2, 3, 4, 5, 6, 0.5});
}

TEST(TimeFormat, ReadsByThePattern) {
  const struct {
    std::u16string_view pattern;
    std::u16string_view text;
    TimeRecord time;
  } kCases[] = {
      // Cut by width.
      {u"YYYYMMDD", u"20010203", {2001, 2, 3}},
      {u"YYYYMMDDhhmmss", u"200102030405", {2001, 2, 3, 4, 5}},
      {u"YYYYMMDD", u"2001", {2001}},
      {u"YYYYMMDD", u"", {}},
      {u"YYYYMMDD hh:mm", u"20010203x04y05z", {2001, 2, 3, 4, 5}},
      {u"ssf", u"065", {0, 0, 0, 0, 0, 6, 0.5}},
      // Found by the literals.
      {u"DD.MM.YYYY hh:mm:ss", u"03.02.2001 04:05:06", {2001, 2, 3, 4, 5, 6}},
      {u"DD.MM.YYYY hh:mm:ss", u"3.2.2001 4:5:6", {2001, 2, 3, 4, 5, 6}},
      {u"DD.MM.YYYY", u"03-02-2001", {2001, 2, 3}},
      {u"DD.MM.YYYY hh:mm:ss", u"10:20", {0, 0, 0, 10, 20}},
      {u"DD.MM.YYYY hh:mm:ss", u"2001 10:20", {2001, 0, 0, 10, 20}},
      {u"DD.MM.YYYY hh:mm:ss", u"03.02 04:05", {2, 0, 3, 4, 5}},
      {u"DD.MM.YYYY hh:mm:ss", u" 04:05:06", {0, 0, 0, 4, 5, 6}},
      {u"DD.MM.YYYY", u".02.2001", {2001, 2}},
      {u"(YYYY)", u"(2001)", {2001}},
      {u"YYYY", u"20010203", {20010203}},
      {u"YYYY", u"", {}},
      {u"YYYY/MM", u"abc/def", {}},
      {u"ss.ffffff", u"06.25", {0, 0, 0, 0, 0, 6, 0.25}},
      {u"hh h", u"10 5", {0, 0, 0, 15}},
      {u"YYYY", u"99999999999999999999", {2147483647}},
      {u"hh h", u"2147483647 5", {0, 0, 0, 2147483647}},
      // Years of two digits.
      {u"YY", u"00", {2000}},
      {u"YY", u"59", {2059}},
      {u"YY", u"60", {1960}},
      {u"YY", u"100", {2000}},
      {u"YY", u"101", {101}},
      {u"YYYY", u"59", {59}},
      // Morning and afternoon.
      {u"hh:mm pp", u"12:30 am", {0, 0, 0, 0, 30}},
      {u"hh:mm pp", u"12:30 pm", {0, 0, 0, 12, 30}},
      {u"hh:mm pp", u"01:30 PM", {0, 0, 0, 13, 30}},
      {u"hh:mmpp", u"01:30pm", {0, 0, 0, 13, 30}},
      {u"hh:mm pppp", u"01:30 p.m.", {0, 0, 0, 13, 30}},
      {u"hh:mm pp", u"12:30 xx", {0, 0, 0, 12, 30}},
      {u"hh:mm pp", u"12:30", {0, 0, 0, 12, 30}},
      {u"hh:mm pp", u"12:30 p", {0, 0, 0, 12, 30}},
      {u"hh:mm p DD", u"1:30 p 7", {0, 0, 7, 13, 30}},
      {u"pphh", u"am12", {}},
      {u"pphh", u"pm01", {0, 0, 0, 13}},
  };
  const auto format = CreateTimeFormat();
  for (const auto& c : kCases) {
    format->SetPattern(c.pattern);
    TimeRecord time = kMoment;
    EXPECT_EQ(c.time, format->Parse(&time, c.text))
        << cor::ToUtf8(c.pattern) << " reads " << cor::ToUtf8(c.text);
    EXPECT_EQ(c.time, time);
  }
}

TEST(TimeFormat, KnowsNothingWithoutAPatternAndReadsNoMoreThanItIsGiven) {
  const auto format = CreateTimeFormat();
  TimeRecord time = kMoment;
  WString text(u"left over");
  EXPECT_EQ(TimeRecord(), format->Parse(&time, u"2001"));
  EXPECT_TRUE(format->Format(&text, kMoment).empty());
  EXPECT_EQ(TimeRecord(), format->ParseCounted(&time, nullptr, 3));
  format->SetPattern(u"YYYY-MM");
  EXPECT_EQ((TimeRecord{2001, 1}), format->ParseCounted(&time, u"2001-12", 6));
}

TEST(TimeFormat, TakesThePatternOfALanguage) {
  const auto format = CreateTimeFormat();
  format->SetPattern(u"hh pp");  // its twelve-hour clock is forgotten
  EXPECT_TRUE(format->SetPatternMapped(u"TT.MM.JJJJ HH:nn", u"JMTHnsfpP"));
  WString text;
  format->FormatTo(&text, {2001, 2, 3, 13});
  EXPECT_EQ("03.02.2001 13:00", cor::ToUtf8(text));
  EXPECT_FALSE(format->SetPatternMapped(u"YYYY", u"YMDhms")) << "too few letters";
  TimeRecord time;
  format->ParseFrom(&time, u"03.02.2001 04:05");
  EXPECT_EQ((TimeRecord{2001, 2, 3, 4, 5}), time) << "still the pattern of before";
}

}  // namespace
}  // namespace hv::util::conv
