#include "apps/cli/demo/Context.h"

#include "apps/cli/demo/Catalogue.h"
#include "apps/cli/demo/Plan.h"

namespace hv::cli::demo {
namespace {

/// The record of that name in a group that grows as it is needed.
Record& Grown(Context::ByName& group, RecordMaker& maker, std::u16string_view entity,
              std::u16string_view name) {
  const auto [place, isNew] = group.try_emplace(name);
  if (isNew) place->second = maker.New(entity, name);
  return place->second;
}

void WriteUnits(RecordMaker& maker, Context& context) {
  constexpr std::u16string_view kExponents[] = {
      u"LengthExponent",           u"MassExponent",        u"TimeExponent",
      u"CurrentExponent",          u"TemperatureExponent", u"MolarAmountExponent",
      u"LuminousIntensityExponent"};
  Context::ByName dimensions;
  for (const DimensionRow& row : Dimensions()) {
    Record dimension = maker.New(u"PhysicalDimension", row.name);
    for (std::size_t i = 0; i < row.exponents.size(); ++i) {
      dimension.Set(kExponents[i], std::int64_t{row.exponents[i]});
    }
    dimensions.emplace(row.name, std::move(dimension));
  }
  for (const UnitRow& row : Units()) {
    Record unit = maker.New(u"Unit", row.name);
    unit.Set(u"Description", row.description).Set(u"Factor", row.factor).Set(u"Offset", row.offset);
    unit.Link(u"PhysicalDimension", dimensions.at(row.dimension));
    context.units.emplace(row.name, std::move(unit));
  }
  Context::ByName groups;
  for (const QuantityRow& row : Quantities()) {
    Record quantity = maker.New(u"Quantity", row.name);
    quantity.Set(u"Description", row.description).Set(u"DefaultName", row.name);
    quantity.Set(u"DefaultDatatype", u"DT_DOUBLE").Set(u"DefaultRank", std::int64_t{0});
    quantity.Link(u"DefaultUnit", context.units.at(row.unit));
    quantity.Link(u"Groups", Grown(groups, maker, u"QuantityGroup", row.group));
    context.quantities.emplace(row.name, std::move(quantity));
  }
}

void WriteUsers(RecordMaker& maker, Context& context) {
  Context::ByName groups;
  for (const UserRow& row : Users()) {
    Record user = maker.New(u"User", row.name);
    // No password has this form, so nobody can log on.
    user.Set(u"Password", u"*").Set(u"Disabled", std::int64_t{0});
    user.Set(u"FullName", row.fullName).Set(u"Department", row.department);
    Record& group = Grown(groups, maker, u"UserGroup", row.group);
    group.Set(u"SuperuserFlag", std::int64_t{row.group == u"Administrators" ? 1 : 0});
    user.Link(u"Groups", group);
    context.users.emplace(row.name, std::move(user));
  }
}

void WriteEquipment(RecordMaker& maker, Context& context) {
  for (const UnitUnderTestRow& row : UnitsUnderTest()) {
    Record unit = maker.New(u"UnitUnderTest", row.name);
    unit.Set(u"Description", row.description).Set(u"Kind", row.kind).Set(u"Mass", row.mass);
    unit.Set(u"SerialNumber", row.serialNumber).Set(u"Manufacturer", row.manufacturer);
    unit.Set(u"ManufacturedOn", row.manufacturedOn).Link(u"Environment", context.environment);
    context.unitsUnderTest.emplace(row.name, std::move(unit));
  }
  for (const EquipmentRow& row : Equipments()) {
    Record equipment = maker.New(u"TestEquipment", row.name);
    equipment.Set(u"Description", row.description).Set(u"SerialNumber", row.serialNumber);
    equipment.Set(u"CalibratedUntil", row.calibratedUntil);
    equipment.Link(u"Environment", context.environment);
    context.equipments.emplace(row.name, std::move(equipment));
  }
  for (const SensorRow& row : Sensors()) {
    Record sensor = maker.New(u"Sensor", row.name);
    sensor.Set(u"Description", row.description).Set(u"SerialNumber", row.serialNumber);
    sensor.Set(u"CalibratedUntil", row.calibratedUntil);
    sensor.Link(u"TestEquipment", context.equipments.at(row.equipment));
    context.sensors.emplace(row.name, std::move(sensor));
  }
}

void WriteSequences(RecordMaker& maker, Context& context) {
  for (const TestRow& test : Tests()) {
    for (const SequenceRow& row : test.sequences) {
      if (context.sequences.contains(row.name)) continue;
      Record sequence = maker.New(u"TestSequence", row.name);
      sequence.Set(u"Description", row.description).Set(u"Version", u"1.0");
      sequence.Link(u"Environment", context.environment);
      context.sequences.emplace(row.name, std::move(sequence));
    }
  }
}

}  // namespace

Context WriteContext(RecordMaker& maker) {
  Context context;
  context.environment = maker.New(u"Environment", u"Test field North");
  context.environment.Set(u"Description", u"Demonstration of a test field; everything is invented")
      .Set(u"ModelType", u"testbench")
      .Set(u"ModelVersion", u"1.0")
      .Set(u"Timezone", u"Europe/Berlin");
  WriteUnits(maker, context);
  WriteUsers(maker, context);
  WriteEquipment(maker, context);
  WriteSequences(maker, context);
  return context;
}

}  // namespace hv::cli::demo
