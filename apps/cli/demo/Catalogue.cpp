#include "apps/cli/demo/Catalogue.h"

namespace hv::cli::demo {
namespace {

// clang-format off
constexpr DimensionRow kDimensions[] = {
    {u"Dimensionless", {0, 0, 0, 0, 0, 0, 0}},
    {u"Length", {1, 0, 0, 0, 0, 0, 0}},
    {u"Mass", {0, 1, 0, 0, 0, 0, 0}},
    {u"Time", {0, 0, 1, 0, 0, 0, 0}},
    {u"Electric current", {0, 0, 0, 1, 0, 0, 0}},
    {u"Temperature", {0, 0, 0, 0, 1, 0, 0}},
    {u"Amount of substance", {0, 0, 0, 0, 0, 1, 0}},
    {u"Luminous intensity", {0, 0, 0, 0, 0, 0, 1}},
    {u"Frequency", {0, 0, -1, 0, 0, 0, 0}},
    {u"Velocity", {1, 0, -1, 0, 0, 0, 0}},
    {u"Acceleration", {1, 0, -2, 0, 0, 0, 0}},
    {u"Force", {1, 1, -2, 0, 0, 0, 0}},
    {u"Torque", {2, 1, -2, 0, 0, 0, 0}},
    {u"Pressure", {-1, 1, -2, 0, 0, 0, 0}},
    {u"Power", {2, 1, -3, 0, 0, 0, 0}},
    {u"Voltage", {2, 1, -3, -1, 0, 0, 0}},
    {u"Resistance", {2, 1, -3, -2, 0, 0, 0}},
    {u"Electric charge", {0, 0, 1, 1, 0, 0, 0}},
};

constexpr UnitRow kUnits[] = {
    {u"m", u"Metre", u"Length", 1, 0},
    {u"kg", u"Kilogram", u"Mass", 1, 0},
    {u"s", u"Second", u"Time", 1, 0},
    {u"A", u"Ampere", u"Electric current", 1, 0},
    {u"K", u"Kelvin", u"Temperature", 1, 0},
    {u"mol", u"Mole", u"Amount of substance", 1, 0},
    {u"cd", u"Candela", u"Luminous intensity", 1, 0},
    {u"°C", u"Degree Celsius", u"Temperature", 1, 273.15},
    {u"1", u"Dimensionless", u"Dimensionless", 1, 0},
    {u"%", u"Per cent", u"Dimensionless", 0.01, 0},
    {u"Hz", u"Hertz", u"Frequency", 1, 0},
    {u"1/min", u"Revolutions per minute", u"Frequency", 1.0 / 60, 0},
    {u"N", u"Newton", u"Force", 1, 0},
    {u"N·m", u"Newton metre", u"Torque", 1, 0},
    {u"m/s²", u"Metre per second squared", u"Acceleration", 1, 0},
    {u"g", u"Standard gravity", u"Acceleration", 9.80665, 0},
    {u"Pa", u"Pascal", u"Pressure", 1, 0},
    {u"hPa", u"Hectopascal", u"Pressure", 100, 0},
    {u"bar", u"Bar", u"Pressure", 100000, 0},
    {u"V", u"Volt", u"Voltage", 1, 0},
    {u"mV", u"Millivolt", u"Voltage", 0.001, 0},
    {u"W", u"Watt", u"Power", 1, 0},
    {u"kW", u"Kilowatt", u"Power", 1000, 0},
    {u"Ω", u"Ohm", u"Resistance", 1, 0},
    {u"A·h", u"Ampere hour", u"Electric charge", 3600, 0},
    {u"min", u"Minute", u"Time", 60, 0},
    {u"h", u"Hour", u"Time", 3600, 0},
    {u"mm", u"Millimetre", u"Length", 0.001, 0},
    {u"km/h", u"Kilometre per hour", u"Velocity", 1 / 3.6, 0},
    {u"°F", u"Degree Fahrenheit", u"Temperature", 5.0 / 9, 459.67 * 5 / 9},
};

constexpr QuantityRow kQuantities[] = {
    {u"Time", u"Seconds since the start of the measurement", u"s", u"Basics"},
    {u"Rotational speed", u"Speed of a shaft", u"1/min", u"Mechanics"},
    {u"Torque", u"Torque at a shaft", u"N·m", u"Mechanics"},
    {u"Force", u"Force along an axis", u"N", u"Mechanics"},
    {u"Power", u"Mechanical or electrical power", u"kW", u"Mechanics"},
    {u"Gear", u"Gear that is engaged", u"1", u"Mechanics"},
    {u"Cycles", u"Load cycles since the start", u"1", u"Mechanics"},
    {u"Acceleration", u"Structure-borne vibration", u"m/s²", u"Vibration"},
    {u"Sound pressure", u"Air-borne sound", u"Pa", u"Vibration"},
    {u"Temperature", u"Temperature of a medium or part", u"°C", u"Thermodynamics"},
    {u"Pressure", u"Pressure of a medium", u"bar", u"Thermodynamics"},
    {u"Voltage", u"Electric voltage", u"V", u"Electrics"},
    {u"Current", u"Electric current", u"A", u"Electrics"},
    {u"State of charge", u"Charge left, of the whole", u"%", u"Electrics"},
};

constexpr UserRow kUsers[] = {
    {u"jgrossmann", u"Jürgen Großmann", u"Powertrain test", u"Engineers"},
    {u"alindqvist", u"Åsa Lindqvist", u"NVH", u"Engineers"},
    {u"hyamada", u"山田 花子", u"Endurance", u"Engineers"},
    {u"mdubois", u"Maëlle Dubois", u"Battery", u"Engineers"},
    {u"tokafor", u"Tobe Okafor", u"Bench operation", u"Operators"},
    {u"lnovak", u"Lenka Nováková", u"Bench operation", u"Operators"},
    {u"pweiss", u"Paul Weiß", u"Bench operation", u"Operators"},
    {u"benchadmin", u"Bench administration", u"IT", u"Administrators"},
};

constexpr UnitUnderTestRow kUnitsUnderTest[] = {
    {u"Engine R4-20 #017", u"engine", u"R420-2024-0017", u"Nordlicht Antriebe", u"20241118", 148.5, u"2.0 l, four cylinders, standard oil cooler"},
    {u"Engine R4-20 #022", u"engine", u"R420-2024-0022", u"Nordlicht Antriebe", u"20241205", 149.1, u"2.0 l, four cylinders, enlarged oil cooler"},
    {u"Gearbox 6MT-350 A", u"gearbox", u"6MT350-A-1103", u"Weißdorn Getriebebau", u"20241011", 52.3, u"Six gears, honed gear set"},
    {u"Gearbox 6MT-350 B", u"gearbox", u"6MT350-B-1108", u"Weißdorn Getriebebau", u"20241014", 52.4, u"Six gears, ground gear set"},
    {u"Gearbox 6MT-350 C", u"gearbox", u"6MT350-C-1121", u"Weißdorn Getriebebau", u"20241122", 52.2, u"Six gears, profile corrected"},
    {u"Battery pack 60-96s #4", u"battery", u"BP60-000412", u"Havbølge Energi", u"20240903", 382.0, u"60 kW·h, 96 cells in series"},
    {u"Battery pack 60-96s #5", u"battery", u"BP60-000413", u"Havbølge Energi", u"20240903", 381.5, u"60 kW·h, 96 cells in series"},
    {u"Brake 18\" front, pads S", u"brake", u"BR18-S-0207", u"Pedra Freios", u"20250114", 11.8, u"Standard pads"},
    {u"Brake 18\" front, pads L", u"brake", u"BR18-L-0209", u"Pedra Freios", u"20250116", 11.9, u"Low-metallic pads"},
    {u"E-motor PSM-150 #31", u"electric_motor", u"PSM150-0031", u"Nordlicht Antriebe", u"20241029", 61.0, u"150 kW, permanent magnets"},
    {u"E-motor PSM-150 #33", u"electric_motor", u"PSM150-0033", u"Nordlicht Antriebe", u"20241031", 61.2, u"150 kW, permanent magnets, hairpin winding"},
    {u"変速機 8AT-500 試作2号", u"gearbox", u"8AT500-P2", u"白樺トランスミッション", u"20250108", 88.7, u"Prototype 2, eight gears"},
};

constexpr EquipmentRow kEquipments[] = {
    {u"Engine bench 3", u"Asynchronous dynamometer, 320 kW", u"EB3-1999-07", u"20260131"},
    {u"NVH bench 1", u"Semi-anechoic room, two output dynamometers", u"NVH1-2011-02", u"20251130"},
    {u"Climate chamber B", u"-40 °C to +90 °C, 14 m³", u"CCB-2018-11", u"20260630"},
    {u"Brake dynamometer 2", u"Flywheel with electric simulation", u"BD2-2007-05", u"20251231"},
    {u"E-drive bench 1", u"Dynamometer to 20000 1/min, battery simulator", u"ED1-2021-01", u"20260331"},
    {u"Endurance bench 耐久2", u"Back-to-back rig", u"EN2-2015-09", u"20260228"},
};

constexpr SensorRow kSensors[] = {
    {u"Engine bench 3", u"EB3 speed", u"Incremental encoder, 3600 lines", u"IE-44120", u"20260131"},
    {u"Engine bench 3", u"EB3 torque", u"Torque flange 500 N·m", u"TF-20817", u"20251031"},
    {u"Engine bench 3", u"EB3 T oil", u"Pt100", u"PT-1187", u"20260131"},
    {u"Engine bench 3", u"EB3 T coolant", u"Pt100", u"PT-1188", u"20260131"},
    {u"Engine bench 3", u"EB3 p oil", u"Piezoresistive, 10 bar", u"PR-3302", u"20260131"},
    {u"NVH bench 1", u"NVH1 speed", u"Incremental encoder, 1024 lines", u"IE-51007", u"20251130"},
    {u"NVH bench 1", u"NVH1 torque", u"Torque flange 1 kN·m", u"TF-21002", u"20251130"},
    {u"NVH bench 1", u"NVH1 acc housing", u"Piezoelectric, three axes", u"AC-7751", u"20251130"},
    {u"NVH bench 1", u"NVH1 microphone", u"Free field, half inch", u"MI-0931", u"20251130"},
    {u"NVH bench 1", u"NVH1 T oil", u"Pt100", u"PT-2044", u"20251130"},
    {u"Climate chamber B", u"CCB voltage", u"Divider 1000 V", u"VD-0212", u"20260630"},
    {u"Climate chamber B", u"CCB current", u"Shunt 500 A", u"SH-0098", u"20260630"},
    {u"Climate chamber B", u"CCB T cell", u"Thermocouples type K", u"TK-5510", u"20260630"},
    {u"Brake dynamometer 2", u"BD2 speed", u"Incremental encoder, 1024 lines", u"IE-33118", u"20251231"},
    {u"Brake dynamometer 2", u"BD2 torque", u"Load cell with lever", u"LC-1420", u"20251231"},
    {u"Brake dynamometer 2", u"BD2 p line", u"Strain gauge, 250 bar", u"SG-0816", u"20251231"},
    {u"Brake dynamometer 2", u"BD2 T disc", u"Rubbing thermocouple", u"TK-1009", u"20251231"},
    {u"E-drive bench 1", u"ED1 speed", u"Resolver", u"RS-0043", u"20260331"},
    {u"E-drive bench 1", u"ED1 torque", u"Torque flange 500 N·m", u"TF-30021", u"20260331"},
    {u"E-drive bench 1", u"ED1 power", u"Power analyser, six channels", u"PA-0007", u"20260331"},
    {u"E-drive bench 1", u"ED1 T winding", u"NTC in the winding head", u"NT-0310", u"20260331"},
    {u"Endurance bench 耐久2", u"EN2 speed", u"Incremental encoder, 1024 lines", u"IE-60040", u"20260228"},
    {u"Endurance bench 耐久2", u"EN2 torque", u"Torque flange 1 kN·m", u"TF-27115", u"20260228"},
    {u"Endurance bench 耐久2", u"EN2 T oil", u"Pt100", u"PT-3120", u"20260228"},
    {u"Endurance bench 耐久2", u"EN2 acc housing", u"Piezoelectric, one axis", u"AC-8101", u"20260228"},
};
// clang-format on

}  // namespace

std::span<const UnitRow> Units() { return kUnits; }
std::span<const DimensionRow> Dimensions() { return kDimensions; }
std::span<const QuantityRow> Quantities() { return kQuantities; }
std::span<const UserRow> Users() { return kUsers; }
std::span<const UnitUnderTestRow> UnitsUnderTest() { return kUnitsUnderTest; }
std::span<const EquipmentRow> Equipments() { return kEquipments; }
std::span<const SensorRow> Sensors() { return kSensors; }

}  // namespace hv::cli::demo
