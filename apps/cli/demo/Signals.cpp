#include "apps/cli/demo/Signals.h"

#include <algorithm>
#include <cmath>

namespace hv::cli::demo {
namespace {

/// The sine of an angle in revolutions, to about nine digits.
double SineOfTurns(double turns) {
  double x = turns - std::floor(turns);  // 0 to 1
  double sign = 1;
  if (x >= 0.5) {
    x -= 0.5;
    sign = -1;
  }
  if (x > 0.25) x = 0.5 - x;  // 0 to a quarter
  const double angle = x * 6.283185307179586;
  const double square = angle * angle;
  double sum = 1.0 / 6227020800.0;  // the series of the sine, its last term first
  sum = sum * square - 1.0 / 39916800.0;
  sum = sum * square + 1.0 / 362880.0;
  sum = sum * square - 1.0 / 5040.0;
  sum = sum * square + 1.0 / 120.0;
  sum = sum * square - 1.0 / 6.0;
  sum = sum * square + 1.0;
  return sign * angle * sum;
}

/// One value per sample.
template <class ValueAt>
std::vector<double> Sampled(const Drive& drive, ValueAt&& valueAt) {
  std::vector<double> values(drive.Samples());
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = valueAt(i);
  return values;
}

}  // namespace

double Random::Uniform() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }

std::size_t Random::Below(std::size_t count) {
  return static_cast<std::size_t>(Uniform() * static_cast<double>(count));
}

double Random::Noise() {
  // Four numbers of 16 bits from one draw; their sum has a deviation of the square root of a third.
  const std::uint64_t bits = m_engine();
  const std::uint64_t sum =
      (bits & 0xFFFF) + (bits >> 16 & 0xFFFF) + (bits >> 32 & 0xFFFF) + (bits >> 48);
  return (static_cast<double>(sum) * 0x1p-16 - 2.0) * 1.7320508075688772;
}

Drive MakeDrive(std::span<const ProfilePoint> profile, SpeedRange range, std::size_t fullSamples,
                std::size_t samples, double rate) {
  Drive drive;
  drive.rate = rate;
  drive.topSpeed = range.high;
  drive.speed.reserve(samples);
  drive.relative.reserve(samples);
  drive.load.reserve(samples);
  drive.turns.reserve(samples);
  std::size_t corner = 0;
  double turns = 0;
  double load = profile.front().load;
  for (std::size_t i = 0; i < samples; ++i) {
    const double time = static_cast<double>(i) / static_cast<double>(fullSamples);
    while (corner + 2 < profile.size() && profile[corner + 1].time <= time) ++corner;
    const ProfilePoint& from = profile[corner];
    const ProfilePoint& to = profile[corner + 1];
    const double part = std::clamp((time - from.time) / (to.time - from.time), 0.0, 1.0);
    const double fraction = from.speed + (to.speed - from.speed) * part;
    const double speed = range.low + (range.high - range.low) * fraction;
    // No controller steps its load within one sample.
    const double wanted = from.load + (to.load - from.load) * part;
    load += (wanted - load) * std::min(1.0, 4.0 / rate);
    drive.speed.push_back(speed);
    drive.relative.push_back(range.high > 0 ? speed / range.high : fraction);
    drive.load.push_back(load);
    drive.turns.push_back(turns);
    turns += speed / 60.0 / rate;
  }
  return drive;
}

std::vector<double> TimeSignal(const Drive& drive, const SignalSpec&, Random&) {
  return Sampled(drive, [&](std::size_t i) { return static_cast<double>(i) / drive.rate; });
}

std::vector<double> SpeedSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  return Sampled(drive, [&](std::size_t i) {
    return std::max(0.0, drive.speed[i] + spec.noise * random.Noise());
  });
}

std::vector<double> TorqueSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  return Sampled(drive, [&](std::size_t i) {
    const double mean = spec.low + (spec.high - spec.low) * drive.load[i] *
                                       (1.0 - 0.25 * drive.relative[i] * drive.relative[i]);
    const double ripple = 0.02 * mean * SineOfTurns(spec.parameter * drive.turns[i]);
    return mean + ripple + spec.noise * random.Noise();
  });
}

std::vector<double> TemperatureSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  double rise = spec.low;
  const double step = 1.0 / (spec.parameter * drive.rate);
  return Sampled(drive, [&](std::size_t i) {
    const double steady = spec.low + (spec.high - spec.low) * std::abs(drive.load[i]) *
                                         (0.3 + 0.7 * drive.relative[i]) * drive.severity;
    rise += (steady - rise) * step;
    return drive.ambient + rise + spec.noise * random.Noise();
  });
}

std::vector<double> VibrationSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  struct Order {
    double order;
    double amplitude;
    double phase;
  };
  const Order orders[] = {{1.0, 0.35, random.Uniform()},
                          {spec.parameter, 1.0, random.Uniform()},
                          {2.0 * spec.parameter, 0.3, random.Uniform()}};
  const double resonance = 0.6 * spec.parameter * drive.topSpeed / 60.0;  // Hz
  const double width = 0.08 * resonance;
  return Sampled(drive, [&](std::size_t i) {
    const double relative = drive.relative[i];
    const double size = spec.high * relative * std::sqrt(relative) * drive.severity;
    double sum = 0;
    for (const Order& order : orders) {
      const double distance = (order.order * drive.speed[i] / 60.0 - resonance) / width;
      const double gain = 1.0 + 3.0 / (1.0 + distance * distance);
      sum += order.amplitude * gain * SineOfTurns(order.order * drive.turns[i] + order.phase);
    }
    return spec.low + size * sum + spec.noise * (0.3 + 0.7 * relative) * random.Noise();
  });
}

std::vector<double> PressureSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  const double span = spec.high - spec.low;
  return Sampled(drive, [&](std::size_t i) {
    const double mean = spec.low + span * (0.7 * drive.relative[i] + 0.3 * drive.load[i]);
    return mean + 0.01 * span * SineOfTurns(spec.parameter * drive.turns[i]) +
           spec.noise * random.Noise();
  });
}

std::vector<double> VoltageSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  double drawn = 0;
  const double part = 1.0 / static_cast<double>(drive.Samples());
  return Sampled(drive, [&](std::size_t i) {
    drawn += drive.load[i] * part;
    return spec.high - (spec.high - spec.low) * drive.load[i] - spec.parameter * drawn +
           spec.noise * random.Noise();
  });
}

std::vector<double> CurrentSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  return Sampled(drive, [&](std::size_t i) {
    return spec.high * drive.load[i] + spec.noise * random.Noise();
  });
}

std::vector<double> PowerSignal(const Drive& drive, const SignalSpec& spec, Random& random) {
  return Sampled(drive, [&](std::size_t i) {
    return spec.low + (spec.high - spec.low) * drive.load[i] * drive.relative[i] +
           spec.noise * random.Noise();
  });
}

std::vector<double> ChargeSignal(const Drive& drive, const SignalSpec& spec, Random&) {
  double sum = 0;
  for (const double load : drive.load) sum += load;
  double charge = sum >= 0 ? spec.high : spec.low;
  return Sampled(drive, [&](std::size_t i) {
    charge = std::clamp(charge - spec.parameter * drive.load[i] / drive.rate, 0.0, 100.0);
    return charge;
  });
}

std::vector<double> GearSignal(const Drive& drive, const SignalSpec& spec, Random&) {
  return Sampled(drive, [&](std::size_t i) {
    const double steps = std::floor((spec.high - spec.low + 1.0) * drive.relative[i]);
    return std::min(spec.low + steps, spec.high);
  });
}

std::vector<double> CountSignal(const Drive& drive, const SignalSpec& spec, Random&) {
  return Sampled(drive, [&](std::size_t i) { return std::floor(drive.turns[i] / spec.parameter); });
}

}  // namespace hv::cli::demo
