// apps/cli/demo/Signals.h - signals of test benches, the same on every machine.
// They are made of basic arithmetic alone, since a mathematical library may round its functions
// otherwise than the next one, and of numbers from std::mt19937_64 with distributions of our own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

namespace hv::cli::demo {

class Random final {
 public:
  explicit Random(std::uint64_t seed) : m_engine(seed) {}

  /// At least 0, below 1.
  double Uniform();
  double Between(double low, double high) { return low + (high - low) * Uniform(); }
  /// A whole number below `count`, which is above 0.
  std::size_t Below(std::size_t count);
  /// Close to a normal distribution of mean 0 and deviation 1.
  double Noise();

 private:
  std::mt19937_64 m_engine;
};

/// A corner of a profile: time as a part of the whole, speed as a part of the range, load from -1
/// to 1.
struct ProfilePoint {
  double time;
  double speed;
  double load;
};

struct SpeedRange {
  double low;  ///< revolutions per minute
  double high;
};

/// What the bench does: one value per sample each.
struct Drive {
  double rate = 1;               ///< samples per second
  double ambient = 20;           ///< degrees Celsius
  double severity = 1;           ///< above 1: something is worn
  double topSpeed = 0;           ///< revolutions per minute
  std::vector<double> speed;     ///< revolutions per minute
  std::vector<double> relative;  ///< speed as a part of the highest
  std::vector<double> load;
  std::vector<double> turns;  ///< revolutions since the start

  [[nodiscard]] std::size_t Samples() const { return speed.size(); }
};

/// Follows the first `samples` of `fullSamples` along a profile of two or more points.
Drive MakeDrive(std::span<const ProfilePoint> profile, SpeedRange range, std::size_t fullSamples,
                std::size_t samples, double rate);

/// What a channel's signal is like. The meaning of `parameter` is the signal's own.
struct SignalSpec {
  double low;
  double high;
  double parameter;
  double noise;  ///< deviation
};

using Signal = std::vector<double> (*)(const Drive& drive, const SignalSpec& spec, Random& random);

/// Seconds since the start.
std::vector<double> TimeSignal(const Drive& drive, const SignalSpec& spec, Random& random);
std::vector<double> SpeedSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// From `low` to `high` with the load, less at high speed, with a ripple of order `parameter`.
std::vector<double> TorqueSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// Starts `low` above the ambient temperature and nears a steady state, `high` above it at full
/// load and speed, with the time constant `parameter` in seconds.
std::vector<double> TemperatureSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// A sum of orders: the first, `parameter` and twice that, passing a resonance; `high` is the
/// amplitude at full speed away from it.
std::vector<double> VibrationSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// From `low` to `high` with speed and load, pulsating with order `parameter`.
std::vector<double> PressureSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// `high` without load, `low` at full load; falls by another `parameter` while all is drawn.
std::vector<double> VoltageSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// `high` at full load, in both directions.
std::vector<double> CurrentSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// From `low` to `high` with the product of load and speed.
std::vector<double> PowerSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// A charge in per cent that `parameter` per cent a second flow out of at full load. It starts at
/// `high`, or at `low` if more flows in than out.
std::vector<double> ChargeSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// Whole numbers from `low` to `high` with the speed.
std::vector<double> GearSignal(const Drive& drive, const SignalSpec& spec, Random& random);
/// Whole numbers: one more after every `parameter` revolutions.
std::vector<double> CountSignal(const Drive& drive, const SignalSpec& spec, Random& random);

}  // namespace hv::cli::demo
