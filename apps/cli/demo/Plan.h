// apps/cli/demo/Plan.h - the tests of the demonstration campaign: what is measured, and how.
#pragma once

#include <cstdint>
#include <span>

#include "apps/cli/demo/Catalogue.h"
#include "apps/cli/demo/Signals.h"

namespace hv::cli::demo {

enum class ChannelType : std::uint8_t { Short, Long, Float, Double };

struct ChannelRow {
  Text name;
  Text quantity;
  Text unit;
  Text sensor;  ///< empty: computed
  ChannelType type;
  Signal signal;
  SignalSpec spec;
};

/// One run on the bench.
struct SequenceRow {
  Text name;
  Text description;
  std::uint32_t samples;
  double rate;  ///< Hz
  std::span<const ProfilePoint> profile;
};

struct VariantRow {
  Text name;
  Text description;
  Text unitUnderTest;
  double ambient;  ///< degrees Celsius
};

/// A text that measurements of a test carry beyond their model.
struct NoteRow {
  Text name;
  Text text;
};

struct TestRow {
  Text name;
  Text code;  ///< begins the names of the measurements
  Text description;
  Text project;
  Text customer;
  Text responsible;
  std::span<const Text> keywords;
  Text equipment;
  std::int32_t firstDay;  ///< as a number, yyyymmdd
  std::uint32_t days;     ///< per variant
  SpeedRange range;
  Text failure;  ///< what is remarked where a measurement failed or was aborted
  Text abortion;
  std::span<const NoteRow> notes;
  std::span<const VariantRow> variants;
  std::span<const SequenceRow> sequences;  ///< each is run once a day
  std::span<const ChannelRow> channels;    ///< beside the time
};

std::span<const TestRow> Tests();

}  // namespace hv::cli::demo
