// store/core/EngineExports.h - the six functions that an engine module exports by name.
#pragma once

#include <cstdint>

namespace hv::vex {

class IContainer;
class IEnvironment;
class IInstList;
class IUnknownList;

/// The interface version that the library states wherever the engine or a file layer asks for one.
inline constexpr std::int32_t kInterfaceVersion = 101;
/// The format and build stamp handed to `vexGetEnvironment` (hexadecimal 0x645249).
inline constexpr std::int32_t kFormatStamp = 6574665;

/// "Init": counted start. Called once for every object that keeps the engine attached.
using EngineInit = void (*)();
/// "Cleanup": counted end.
using EngineCleanup = void (*)();
/// "vexGetEnvironment": (kInterfaceVersion, empty text, kFormatStamp, error word). The environment,
/// with one reference; repeated calls may give the same object. `*error` is 0 or an error code, and
/// then the result is null. Nothing is thrown out of an export.
using EngineGetEnvironment = IEnvironment* (*)(std::int32_t version, const char16_t* text,
                                               std::int32_t stamp, std::int32_t* error);
/// "vexCreateContainer": a new empty container that belongs to no store.
using EngineCreateContainer = IContainer* (*)(std::int32_t* error);
/// "vexCreateInstList": a new empty list of instances.
using EngineCreateInstList = IInstList* (*)(std::int32_t* error);
/// "vexCreateContainerList": must be present; the library never calls it.
using EngineCreateContainerList = IUnknownList* (*)(std::int32_t* error);

}  // namespace hv::vex
