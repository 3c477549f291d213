#include "apps/cli/demo/Campaign.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include "apps/cli/demo/Context.h"
#include "apps/cli/demo/Plan.h"

namespace hv::cli::demo {
namespace {

using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr std::uint64_t kSeed = 20250303;
constexpr ChannelRow kTimeChannel = {u"Time",     u"Time",     u"s", u"", ChannelType::Double,
                                     &TimeSignal, {0, 0, 0, 0}};

// --- dates --------------------------------------------------------------------------------------

sys_days DayOfNumber(std::int32_t yyyymmdd) {
  using namespace std::chrono;
  return sys_days{year{yyyymmdd / 10000} / (yyyymmdd / 100 % 100) / (yyyymmdd % 100)};
}

sys_days NextWorkday(sys_days day) {
  do {
    day += std::chrono::days{1};
  } while (std::chrono::weekday{day}.iso_encoding() > 5);
  return day;
}

std::u16string Digits(std::int64_t number, std::size_t count) {
  std::u16string digits(count, u'0');
  for (std::size_t i = count; i-- > 0; number /= 10) {
    digits[i] = static_cast<char16_t>(u'0' + number % 10);
  }
  return digits;
}

std::u16string DayText(sys_days day, std::u16string_view separator) {
  const std::chrono::year_month_day date{day};
  std::u16string text = Digits(static_cast<int>(date.year()), 4);
  text += separator;
  text += Digits(static_cast<unsigned>(date.month()), 2);
  text += separator;
  return text + Digits(static_cast<unsigned>(date.day()), 2);
}

/// Fourteen digits.
std::u16string TimeText(sys_seconds time) {
  const sys_days day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::hh_mm_ss clock{time - day};
  return DayText(day, u"") + Digits(clock.hours().count(), 2) + Digits(clock.minutes().count(), 2) +
         Digits(clock.seconds().count(), 2);
}

// --- channels -----------------------------------------------------------------------------------

std::u16string_view TypeText(ChannelType type) {
  switch (type) {
    case ChannelType::Short:
      return u"DT_SHORT";
    case ChannelType::Long:
      return u"DT_LONG";
    case ChannelType::Float:
      return u"DT_FLOAT";
    case ChannelType::Double:
      return u"DT_DOUBLE";
  }
  return {};
}

struct Statistics {
  double minimum;
  double maximum;
  double average;
  double deviation;
};

Statistics StatisticsOf(std::span<const double> values) {
  const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
  double sum = 0;
  for (const double value : values) sum += value;
  const double average = sum / static_cast<double>(values.size());
  double squares = 0;
  for (const double value : values) squares += (value - average) * (value - average);
  return {*lowest, *highest, average, std::sqrt(squares / static_cast<double>(values.size()))};
}

/// Flags of a sensor that drops out now and then: 15 is valid, 0 is not.
std::vector<std::int64_t> DropoutFlags(std::size_t count, Random& random) {
  std::vector<std::int64_t> flags(count, 15);
  for (int dropout = 0; dropout < 3; ++dropout) {
    const std::size_t first = random.Below(count);
    const std::size_t length = std::min<std::size_t>(5 + random.Below(20), count - first);
    std::fill_n(flags.begin() + static_cast<std::ptrdiff_t>(first), length, 0);
  }
  return flags;
}

// --- the campaign -------------------------------------------------------------------------------

enum class Outcome { Passed, Failed, Aborted, Running };

std::u16string_view StatusText(Outcome outcome) {
  constexpr std::u16string_view kTexts[] = {u"passed", u"failed", u"aborted", u"running"};
  return kTexts[static_cast<std::size_t>(outcome)];
}

/// What a measurement belongs to.
struct Place {
  const TestRow& test;
  const VariantRow& variant;
  const SequenceRow& sequence;
  sys_seconds earliest;
};

class CampaignWriter final {
 public:
  CampaignWriter(vex::IStore& store, const std::function<void(std::uint64_t, std::uint64_t)>& told)
      : m_maker(store), m_context(WriteContext(m_maker)), m_progress(told) {
    for (const TestRow& test : Tests()) {
      m_all += test.variants.size() * test.days * test.sequences.size();
    }
  }

  void Write() {
    for (const TestRow& test : Tests()) WriteTest(test);
  }

 private:
  void WriteTest(const TestRow& row);
  void WriteDay(const TestRow& test, const VariantRow& variant, sys_days day, Record& dayRecord);
  void WriteMeasurement(const Place& place, Record& dayRecord);
  Outcome ChooseOutcome(Random& random) const;
  void WriteColumn(const ChannelRow& channel, const Drive& drive, bool hasDropouts,
                   Record& measurement, Record& submatrix, Random& random);

  RecordMaker m_maker;
  Context m_context;
  const std::function<void(std::uint64_t, std::uint64_t)>& m_progress;
  std::uint64_t m_done = 0;
  std::uint64_t m_all = 0;
};

void CampaignWriter::WriteTest(const TestRow& row) {
  Record test = m_maker.New(u"Test", row.name);
  test.Set(u"Description", row.description).Set(u"Version", u"1").Set(u"Project", row.project);
  test.Set(u"Customer", row.customer).Set(u"Keywords", row.keywords);
  test.Link(u"Environment", m_context.environment);
  test.Link(u"Responsible", m_context.users.at(row.responsible));
  sys_days day = DayOfNumber(row.firstDay);
  for (const VariantRow& variantRow : row.variants) {
    Record variant = m_maker.New(u"Variant", variantRow.name);
    variant.Set(u"Description", variantRow.description).Link(u"Test", test);
    for (std::uint32_t i = 0; i < row.days; ++i, day = NextWorkday(day)) {
      Record dayRecord = m_maker.New(u"Day", DayText(day, u"-"));
      dayRecord.Set(u"Description", u"Day " + Digits(i + 1, 1) + u" of " + Digits(row.days, 1));
      dayRecord.Set(u"Date", DayText(day, u"")).Link(u"Variant", variant);
      WriteDay(row, variantRow, day, dayRecord);
    }
  }
}

void CampaignWriter::WriteDay(const TestRow& test, const VariantRow& variant, sys_days day,
                              Record& dayRecord) {
  sys_seconds earliest = day + std::chrono::hours{7} + std::chrono::minutes{30};
  for (const SequenceRow& sequence : test.sequences) {
    WriteMeasurement({test, variant, sequence, earliest}, dayRecord);
    earliest += std::chrono::minutes{105};
  }
}

Outcome CampaignWriter::ChooseOutcome(Random& random) const {
  const double chance = random.Uniform();
  if (m_done + 1 == m_all) return Outcome::Running;
  if (chance < 0.05) return Outcome::Aborted;
  return chance < 0.17 ? Outcome::Failed : Outcome::Passed;
}

void CampaignWriter::WriteMeasurement(const Place& place, Record& dayRecord) {
  Random random(kSeed + m_done);
  const Outcome outcome = ChooseOutcome(random);
  const SequenceRow& sequence = place.sequence;
  const bool isWhole = outcome == Outcome::Passed || outcome == Outcome::Failed;
  const double part = isWhole ? 1.0 : random.Between(0.3, 0.7);
  const auto samples = static_cast<std::size_t>(part * sequence.samples);
  const sys_seconds begin =
      place.earliest + std::chrono::seconds{static_cast<std::int64_t>(random.Below(900))};
  const auto duration = std::chrono::seconds{
      static_cast<std::int64_t>(std::ceil(static_cast<double>(samples) / sequence.rate))};

  Drive drive =
      MakeDrive(sequence.profile, place.test.range, sequence.samples, samples, sequence.rate);
  drive.ambient = place.variant.ambient + random.Between(-1.5, 1.5);
  drive.severity = outcome == Outcome::Failed ? random.Between(1.3, 1.7) : 1.0;

  const std::u16string number = Digits(static_cast<std::int64_t>(m_done + 1), 4);
  Record measurement = m_maker.New(u"Measurement", std::u16string(place.test.code) + u"_" + number +
                                                       u" " + std::u16string(sequence.name));
  measurement.Set(u"Description", sequence.description).Set(u"Begin", TimeText(begin));
  measurement.Set(u"Status", StatusText(outcome));
  if (outcome != Outcome::Running) measurement.Set(u"End", TimeText(begin + duration));
  if (outcome == Outcome::Failed) measurement.Set(u"Remark", place.test.failure);
  if (outcome == Outcome::Aborted) measurement.Set(u"Remark", place.test.abortion);
  // What people read off an instrument has one digit behind the point.
  measurement.Set(u"AmbientTemperature", std::round(drive.ambient * 10) / 10);
  measurement.Set(u"AirPressure", std::round(random.Between(9920, 10240)) / 10);
  constexpr std::u16string_view kOperators[] = {u"tokafor", u"lnovak", u"pweiss"};
  measurement.Link(u"Day", dayRecord);
  measurement.Link(u"Operator", m_context.users.at(kOperators[random.Below(3)]));
  measurement.Link(u"UnitsUnderTest", m_context.unitsUnderTest.at(place.variant.unitUnderTest));
  measurement.Link(u"TestEquipments", m_context.equipments.at(place.test.equipment));
  measurement.Link(u"TestSequences", m_context.sequences.at(sequence.name));
  for (const NoteRow& note : place.test.notes) measurement.Note(note.name, note.text);

  Record submatrix = m_maker.New(u"Submatrix", sequence.name);
  submatrix.Set(u"NumberOfRows", static_cast<std::int64_t>(samples));
  submatrix.Link(u"Measurement", measurement);
  WriteColumn(kTimeChannel, drive, false, measurement, submatrix, random);
  for (const ChannelRow& channel : place.test.channels) {
    const bool isLast = &channel == &place.test.channels.back();
    WriteColumn(channel, drive, isLast && outcome == Outcome::Aborted, measurement, submatrix,
                random);
  }
  m_progress(++m_done, m_all);
}

void CampaignWriter::WriteColumn(const ChannelRow& channel, const Drive& drive, bool hasDropouts,
                                 Record& measurement, Record& submatrix, Random& random) {
  std::vector<double> values = channel.signal(drive, channel.spec, random);
  if (channel.type == ChannelType::Float) {
    for (double& value : values) value = static_cast<double>(static_cast<float>(value));
  }
  const Statistics statistics = StatisticsOf(values);

  Record quantity = m_maker.New(u"MeasurementQuantity", channel.name);
  quantity.Set(u"Datatype", TypeText(channel.type)).Set(u"Rank", std::int64_t{0});
  quantity.Set(u"Interpolation", u"linear_interpolation");
  quantity.Set(u"Minimum", statistics.minimum).Set(u"Maximum", statistics.maximum);
  quantity.Set(u"Average", statistics.average).Set(u"StandardDeviation", statistics.deviation);
  quantity.Link(u"Measurement", measurement);
  quantity.Link(u"Quantity", m_context.quantities.at(channel.quantity));
  quantity.Link(u"Unit", m_context.units.at(channel.unit));
  if (!channel.sensor.empty()) quantity.Link(u"Sensor", m_context.sensors.at(channel.sensor));

  // The column takes the type of its values from its quantity, which must be linked before.
  Record column = m_maker.New(u"LocalColumn", channel.name);
  column.Link(u"Submatrix", submatrix).Link(u"MeasurementQuantity", quantity);
  column.Set(u"Independent", std::int64_t{&channel == &kTimeChannel ? 1 : 0});
  column.Set(u"SequenceRepresentation", u"explicit");
  column.Set(u"Minimum", statistics.minimum).Set(u"Maximum", statistics.maximum);
  if (channel.type == ChannelType::Short || channel.type == ChannelType::Long) {
    const std::vector<std::int64_t> integers(values.begin(), values.end());
    column.Set(u"Values", integers);
  } else {
    column.Set(u"Values", values);
  }
  if (hasDropouts) {
    column.Set(u"Flags", DropoutFlags(values.size(), random));
  } else {
    column.Set(u"GlobalFlag", std::int64_t{15});
  }
}

}  // namespace

void WriteCampaign(vex::IStore& store,
                   const std::function<void(std::uint64_t, std::uint64_t)>& progress) {
  CampaignWriter(store, progress).Write();
}

}  // namespace hv::cli::demo
