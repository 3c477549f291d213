#include "apps/cli/demo/Plan.h"

namespace hv::cli::demo {
namespace {

using enum ChannelType;

// clang-format off
constexpr ProfilePoint kRunUp[] = {{0, 0, 0.85}, {0.05, 0, 0.85}, {0.95, 1, 0.85}, {1, 1, 0.85}};
constexpr ProfilePoint kRunDown[] = {{0, 1, 0.15}, {0.05, 1, 0.15}, {0.95, 0, 0.15}, {1, 0, 0.1}};
constexpr ProfilePoint kSteady[] = {{0, 0.4, 0.6}, {1, 0.4, 0.6}};
constexpr ProfilePoint kLoadSteps[] = {
    {0, 0.5, 0.2}, {0.25, 0.5, 0.2}, {0.26, 0.5, 0.9}, {0.5, 0.5, 0.9}, {0.51, 0.5, 0.5}, {0.75, 0.5, 0.5},
    {0.76, 0.5, 0.05}, {1, 0.5, 0.05}};
constexpr ProfilePoint kWarmUp[] = {{0, 0.1, 0.2}, {0.2, 0.3, 0.4}, {0.5, 0.6, 0.6}, {0.8, 0.8, 0.8}, {1, 0.5, 0.4}};
constexpr ProfilePoint kCycle[] = {
    {0, 0, 0.1}, {0.1, 0.7, 0.9}, {0.2, 0.7, 0.3}, {0.3, 0.2, 0.1}, {0.4, 0.9, 1}, {0.55, 0.9, 0.4},
    {0.65, 0.3, 0.2}, {0.75, 0.6, 0.8}, {0.9, 0.6, 0.5}, {1, 0, 0}};
constexpr ProfilePoint kDischarge[] = {{0, 1, 0}, {0.05, 1, 0}, {0.06, 1, 0.8}, {0.9, 1, 0.8}, {0.91, 1, 0}, {1, 1, 0}};
constexpr ProfilePoint kCharge[] = {{0, 1, 0}, {0.05, 1, 0}, {0.06, 1, -0.6}, {0.7, 1, -0.6}, {0.95, 1, -0.1}, {1, 1, 0}};
constexpr ProfilePoint kPulses[] = {
    {0, 1, 0}, {0.1, 1, 0}, {0.101, 1, 1}, {0.2, 1, 1}, {0.201, 1, 0}, {0.4, 1, 0}, {0.401, 1, -0.75}, {0.5, 1, -0.75},
    {0.501, 1, 0}, {0.7, 1, 0}, {0.701, 1, 0.5}, {0.85, 1, 0.5}, {0.851, 1, 0}, {1, 1, 0}};
constexpr ProfilePoint kStop[] = {{0, 1, 0}, {0.1, 1, 0}, {0.12, 1, 1}, {0.7, 0.02, 1}, {0.75, 0, 0.3}, {1, 0, 0}};
constexpr ProfilePoint kStops[] = {
    {0, 0.8, 0}, {0.05, 0.8, 0}, {0.06, 0.8, 0.7}, {0.15, 0.1, 0.7}, {0.16, 0.1, 0}, {0.35, 0.8, 0}, {0.36, 0.8, 0.7},
    {0.45, 0.1, 0.7}, {0.46, 0.1, 0}, {0.65, 0.8, 0}, {0.66, 0.8, 0.9}, {0.75, 0.1, 0.9}, {0.76, 0.1, 0}, {1, 0.8, 0}};

constexpr Text kEngineWords[] = {u"engine", u"durability", u"oil cooler"};
constexpr VariantRow kEngineVariants[] = {
    {u"Ölkühler Serie", u"Standard oil cooler", u"Engine R4-20 #017", 23},
    {u"Ölkühler vergrößert", u"Oil cooler with 30 % more surface", u"Engine R4-20 #022", 23},
};
constexpr SequenceRow kEngineSequences[] = {
    {u"Warm-up", u"Cold start and warm-up in four steps", 6000, 20, kWarmUp},
    {u"Run-up 900-6000", u"Full load run-up from 900 to 6000 1/min", 2500, 100, kRunUp},
    {u"Load steps 3450", u"Steps of load at 3450 1/min", 5000, 50, kLoadSteps},
    {u"Durability cycle", u"Mixed cycle of ten minutes", 6000, 10, kCycle},
    {u"Run-down 6000-900", u"Motored run-down", 1000, 50, kRunDown},
};
constexpr ChannelRow kEngineChannels[] = {
    {u"n_engine", u"Rotational speed", u"1/min", u"EB3 speed", Float, SpeedSignal, {0, 1, 0, 2.5}},
    {u"M_engine", u"Torque", u"N·m", u"EB3 torque", Float, TorqueSignal, {-18, 265, 2, 1.2}},
    {u"T_oil", u"Temperature", u"°C", u"EB3 T oil", Float, TemperatureSignal, {22, 96, 55, 0.08}},
    {u"T_coolant", u"Temperature", u"°C", u"EB3 T coolant", Float, TemperatureSignal, {30, 72, 30, 0.08}},
    {u"p_oil", u"Pressure", u"bar", u"EB3 p oil", Float, PressureSignal, {0.9, 5.4, 3, 0.02}},
    {u"P_engine", u"Power", u"kW", u"", Float, PowerSignal, {0, 138, 0, 0.3}},
};
constexpr NoteRow kEngineNotes[] = {{u"OilGrade", u"0W-20"}, {u"FuelBatch", u"RF-02-2025-011"}};

constexpr Text kNvhWords[] = {u"gearbox", u"NVH", u"gear whine"};
constexpr VariantRow kNvhVariants[] = {
    {u"Gear set A (honed)", u"Reference", u"Gearbox 6MT-350 A", 21},
    {u"Gear set B (ground)", u"Ground flanks", u"Gearbox 6MT-350 B", 21},
    {u"Gear set C (Profilkorrektur)", u"Ground flanks with tip relief", u"Gearbox 6MT-350 C", 21},
};
constexpr SequenceRow kNvhSequences[] = {
    {u"Run-up drive 3rd gear", u"Run-up under drive, 3rd gear", 20000, 2000, kRunUp},
    {u"Run-down coast 3rd gear", u"Run-down under coast, 3rd gear", 6000, 2000, kRunDown},
    {u"Run-up drive 5th gear", u"Run-up under drive, 5th gear", 5000, 2000, kRunUp},
    {u"Steady 1560", u"Constant speed and torque", 2000, 2000, kSteady},
    {u"Load steps 1750", u"Steps of load at constant speed", 5000, 2000, kLoadSteps},
};
constexpr ChannelRow kNvhChannels[] = {
    {u"n_input", u"Rotational speed", u"1/min", u"NVH1 speed", Float, SpeedSignal, {0, 1, 0, 1.0}},
    {u"M_input", u"Torque", u"N·m", u"NVH1 torque", Float, TorqueSignal, {2, 320, 10, 0.8}},
    {u"a_housing_X", u"Acceleration", u"m/s²", u"NVH1 acc housing", Float, VibrationSignal, {0, 6.5, 10, 0.35}},
    {u"a_housing_Y", u"Acceleration", u"m/s²", u"NVH1 acc housing", Float, VibrationSignal, {0, 4.2, 10, 0.30}},
    {u"a_housing_Z", u"Acceleration", u"m/s²", u"NVH1 acc housing", Float, VibrationSignal, {0, 9.1, 5, 0.40}},
    {u"p_microphone", u"Sound pressure", u"Pa", u"NVH1 microphone", Float, VibrationSignal, {0, 0.9, 10, 0.06}},
    {u"T_oil", u"Temperature", u"°C", u"NVH1 T oil", Float, TemperatureSignal, {55, 70, 40, 0.05}},
};
constexpr NoteRow kNvhNotes[] = {{u"OilBatch", u"75W-80 / 2025-03"}};

constexpr Text kBatteryWords[] = {u"battery", u"climate", u"capacity"};
constexpr VariantRow kBatteryVariants[] = {
    {u"-20 °C", u"Cold chamber", u"Battery pack 60-96s #4", -20},
    {u"+25 °C", u"Reference temperature", u"Battery pack 60-96s #4", 25},
    {u"+45 °C", u"Hot chamber", u"Battery pack 60-96s #5", 45},
};
constexpr SequenceRow kBatterySequences[] = {
    {u"Discharge 1C", u"Discharge with 0.8 of the nominal current", 1800, 0.5, kDischarge},
    {u"Charge CC-CV", u"Constant current, then constant voltage", 5400, 1, kCharge},
    {u"Pulse power", u"Pulses of 100, -75 and 50 per cent", 1500, 5, kPulses},
    {u"Drive cycle", u"Load of a drive on country roads", 1800, 1, kCycle},
    {u"Pulse power low charge", u"The same pulses below 30 per cent charge", 1200, 4, kPulses},
};
constexpr ChannelRow kBatteryChannels[] = {
    {u"U_pack", u"Voltage", u"V", u"CCB voltage", Double, VoltageSignal, {328, 356, 34, 0.05}},
    {u"I_pack", u"Current", u"A", u"CCB current", Float, CurrentSignal, {0, 172, 0, 0.25}},
    {u"SOC", u"State of charge", u"%", u"", Float, ChargeSignal, {3, 88, 0.0279, 0}},
    {u"T_cell_min", u"Temperature", u"°C", u"CCB T cell", Float, TemperatureSignal, {0.5, 9, 900, 0.04}},
    {u"T_cell_max", u"Temperature", u"°C", u"CCB T cell", Float, TemperatureSignal, {1.2, 14, 700, 0.04}},
};
constexpr NoteRow kBatteryNotes[] = {{u"CellChemistry", u"NMC 811"}, {u"Firmware", u"BMS 4.12.0"}};

constexpr Text kBrakeWords[] = {u"brake", u"fade", u"pads"};
constexpr VariantRow kBrakeVariants[] = {
    {u"Series pads", u"Standard pads", u"Brake 18\" front, pads S", 22},
    {u"Low-metallic pads", u"Pads with less copper", u"Brake 18\" front, pads L", 22},
};
constexpr SequenceRow kBrakeSequences[] = {
    {u"Bedding", u"Soft stops to bed the pads", 5000, 20, kStops},
    {u"Stop 100-0 cold", u"One stop from 100 km/h, cold", 1200, 100, kStop},
    {u"Fade 1", u"Three stops in short order", 5000, 25, kStops},
    {u"Stop 100-0 hot", u"One stop from 100 km/h, hot", 1200, 100, kStop},
    {u"Fade 2", u"Three stops in short order, hot", 5000, 25, kStops},
};
constexpr ChannelRow kBrakeChannels[] = {
    {u"n_wheel", u"Rotational speed", u"1/min", u"BD2 speed", Float, SpeedSignal, {0, 1, 0, 0.4}},
    {u"M_brake", u"Torque", u"N·m", u"BD2 torque", Float, TorqueSignal, {0, 2150, 1, 6}},
    {u"p_line", u"Pressure", u"bar", u"BD2 p line", Float, TorqueSignal, {0.4, 96, 0, 0.15}},
    {u"T_disc", u"Temperature", u"°C", u"BD2 T disc", Float, TemperatureSignal, {45, 560, 22, 0.6}},
};

constexpr Text kDriveWords[] = {u"e-motor", u"efficiency"};
constexpr VariantRow kDriveVariants[] = {
    {u"Round wire", u"Series winding", u"E-motor PSM-150 #31", 24},
    {u"Hairpin", u"Hairpin winding", u"E-motor PSM-150 #33", 24},
};
constexpr SequenceRow kDriveSequences[] = {
    {u"Run-up full torque", u"From standstill to top speed", 1500, 50, kRunUp},
    {u"Steady 6400", u"Thermal steady state", 2000, 5, kSteady},
    {u"Load steps 8000", u"Steps of torque at 8000 1/min", 6000, 50, kLoadSteps},
    {u"Drive cycle", u"Mixed cycle", 8000, 20, kCycle},
    {u"Coast-down", u"Drag torque without current", 1250, 50, kRunDown},
};
constexpr ChannelRow kDriveChannels[] = {
    {u"n_rotor", u"Rotational speed", u"1/min", u"ED1 speed", Float, SpeedSignal, {0, 1, 0, 3}},
    {u"M_shaft", u"Torque", u"N·m", u"ED1 torque", Float, TorqueSignal, {-2, 310, 6, 0.5}},
    {u"U_dc", u"Voltage", u"V", u"ED1 power", Double, VoltageSignal, {386, 401, 0, 0.08}},
    {u"I_dc", u"Current", u"A", u"ED1 power", Float, PowerSignal, {1.5, 395, 0, 0.4}},
    {u"P_dc", u"Power", u"kW", u"ED1 power", Float, PowerSignal, {0, 158, 0, 0.2}},
    {u"T_winding", u"Temperature", u"°C", u"ED1 T winding", Float, TemperatureSignal, {12, 118, 65, 0.1}},
};

constexpr Text kEnduranceWords[] = {u"gearbox", u"endurance", u"耐久"};
constexpr VariantRow kEnduranceVariants[] = {
    {u"試作2号", u"Prototype 2", u"変速機 8AT-500 試作2号", 26},
};
constexpr SequenceRow kEnduranceSequences[] = {
    {u"Cycle 1", u"Shift cycle, all gears", 2000, 5, kCycle},
    {u"Cycle 2", u"Shift cycle, all gears", 2000, 5, kCycle},
    {u"Full load", u"Run-up through all gears", 1000, 10, kRunUp},
    {u"Cycle 3", u"Shift cycle, all gears", 2000, 5, kCycle},
    {u"Check run", u"Constant speed after the cycles", 1000, 10, kSteady},
};
constexpr ChannelRow kEnduranceChannels[] = {
    {u"n_input", u"Rotational speed", u"1/min", u"EN2 speed", Float, SpeedSignal, {0, 1, 0, 1.5}},
    {u"M_input", u"Torque", u"N·m", u"EN2 torque", Float, TorqueSignal, {0, 480, 0, 1.5}},
    {u"Gear", u"Gear", u"1", u"", Short, GearSignal, {1, 8, 0, 0}},
    {u"Cycles", u"Cycles", u"1", u"", Long, CountSignal, {0, 0, 500, 0}},
    {u"T_oil", u"Temperature", u"°C", u"EN2 T oil", Float, TemperatureSignal, {40, 78, 90, 0.1}},
    {u"a_housing_rms", u"Acceleration", u"m/s²", u"EN2 acc housing", Float, PowerSignal, {1.1, 12, 0, 0.15}},
};
constexpr NoteRow kEnduranceNotes[] = {{u"OilBatch", u"ATF-8 / 2025-05"}};

constexpr TestRow kTests[] = {
    {u"Engine durability bench 3", u"ENG", u"Durability of the two-litre engine with two oil coolers",
     u"R4-20 series release", u"Nordlicht Antriebe", u"jgrossmann", kEngineWords, u"Engine bench 3",
     20250303, 4, {900, 6000}, u"Oil temperature above the limit at full load",
     u"Stopped: leak at the oil cooler", kEngineNotes, kEngineVariants, kEngineSequences, kEngineChannels},
    {u"Gearbox NVH", u"NVH", u"Gear whine of three gear sets", u"6MT-350 acoustics", u"Weißdorn Getriebebau",
     u"alindqvist", kNvhWords, u"NVH bench 1", 20250407, 3, {600, 2900},
     u"Mesh order above the target curve", u"Stopped: accelerometer came loose", kNvhNotes, kNvhVariants,
     kNvhSequences, kNvhChannels},
    {u"Battery climate chamber", u"BAT", u"Capacity and pulse power from -20 to +45 °C", u"BP60 validation",
     u"Havbølge Energi", u"mdubois", kBatteryWords, u"Climate chamber B", 20250505, 2, {0, 0},
     u"Spread of the cell temperatures too large", u"Stopped by the battery management", kBatteryNotes,
     kBatteryVariants, kBatterySequences, kBatteryChannels},
    {u"Brake dynamometer", u"BRK", u"Fade of two pads", u"BR18 pads", u"Pedra Freios", u"jgrossmann",
     kBrakeWords, u"Brake dynamometer 2", 20250602, 3, {0, 870}, u"Torque fades below the target",
     u"Stopped: disc too hot", {}, kBrakeVariants, kBrakeSequences, kBrakeChannels},
    {u"E-drive efficiency", u"EDR", u"Efficiency of two windings", u"PSM-150 windings", u"Nordlicht Antriebe",
     u"mdubois", kDriveWords, u"E-drive bench 1", 20250707, 3, {0, 16000},
     u"Winding hotter than allowed", u"Stopped: inverter fault", {}, kDriveVariants, kDriveSequences,
     kDriveChannels},
    {u"変速機 耐久試験", u"END", u"Endurance of the eight-gear prototype", u"8AT-500 prototypes",
     u"白樺トランスミッション", u"hyamada", kEnduranceWords, u"Endurance bench 耐久2", 20250901, 5,
     {700, 3200}, u"Wear of the second clutch", u"Stopped: oil pressure too low", kEnduranceNotes,
     kEnduranceVariants, kEnduranceSequences, kEnduranceChannels},
};
// clang-format on

}  // namespace

std::span<const TestRow> Tests() { return kTests; }

}  // namespace hv::cli::demo
