// apps/cli/demo/Catalogue.h - who and what takes part in the demonstration campaign, as tables.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace hv::cli::demo {

using Text = std::u16string_view;

struct DimensionRow {
  Text name;
  /// Length, mass, time, current, temperature, molar amount, luminous intensity.
  std::array<std::int32_t, 7> exponents;
};

/// A value in the dimension's SI units is the value times `factor` plus `offset`.
struct UnitRow {
  Text name;
  Text description;
  Text dimension;
  double factor;
  double offset;
};

struct QuantityRow {
  Text name;
  Text description;
  Text unit;
  Text group;
};

struct UserRow {
  Text name;
  Text fullName;
  Text department;
  Text group;
};

struct UnitUnderTestRow {
  Text name;
  Text kind;
  Text serialNumber;
  Text manufacturer;
  Text manufacturedOn;  ///< eight digits
  double mass;          ///< kg
  Text description;
};

struct EquipmentRow {
  Text name;
  Text description;
  Text serialNumber;
  Text calibratedUntil;  ///< eight digits
};

struct SensorRow {
  Text equipment;
  Text name;
  Text description;
  Text serialNumber;
  Text calibratedUntil;
};

/// The model names some units by their ids, which are the positions in this table, from 1.
std::span<const UnitRow> Units();
std::span<const DimensionRow> Dimensions();
std::span<const QuantityRow> Quantities();
std::span<const UserRow> Users();
std::span<const UnitUnderTestRow> UnitsUnderTest();
std::span<const EquipmentRow> Equipments();
std::span<const SensorRow> Sensors();

}  // namespace hv::cli::demo
