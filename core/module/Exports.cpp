// core/module/Exports.cpp - the six functions of the engine module. Nothing is thrown out of them.

#include <cstdint>
#include <new>

#include "core/module/ModelResources.h"
#include "core/module/PluginTable.h"
#include "core/objects/EnvironmentObject.h"
#include "core/objects/FreeContainer.h"
#include "core/objects/InstanceLists.h"
#include "store/core/EngineExports.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

// The library drops its reference on the environment as soon as it has opened a store with it, and
// expects to find it again: the module keeps one as long as anybody has it initialised.
struct Module {
  std::int32_t initCount = 0;
  IEnvironment* environment = nullptr;
};
Module g_module;

void DropEnvironment() {
  Ref<IEnvironment>::Adopt(g_module.environment).Reset();
  g_module.environment = nullptr;
}

/// Runs an export's body and puts what it throws into the error word.
template <class Body>
auto Export(std::int32_t* error, Body&& body) -> decltype(body()) {
  std::int32_t code = 0;
  decltype(body()) result = nullptr;
  try {
    result = body();
  } catch (const Exception& exception) {
    code = exception.code;
  } catch (const std::bad_alloc&) {
    code = errc::kOutOfMemory;
  } catch (...) {
    code = errc::kInternal;
  }
  if (error) *error = code;
  return result;
}

}  // namespace
}  // namespace hv::vex::engine

#define HV_ENGINE_EXPORT extern "C" __attribute__((visibility("default")))

using namespace hv::vex;

HV_ENGINE_EXPORT void Init() { ++engine::g_module.initCount; }

HV_ENGINE_EXPORT void Cleanup() {
  if (--engine::g_module.initCount <= 0) {
    engine::g_module.initCount = 0;
    engine::DropEnvironment();
  }
}

HV_ENGINE_EXPORT IEnvironment* vexGetEnvironment(std::int32_t version, const char16_t*,
                                                 std::int32_t stamp, std::int32_t* error) {
  return engine::Export(error, [&]() -> IEnvironment* {
    if (version != kInterfaceVersion || stamp != kFormatStamp) {
      throw Exception(errc::kVersion, u"interface version or stamp not accepted");
    }
    IEnvironment*& environment = engine::g_module.environment;
    if (!environment)
      environment = new engine::EnvironmentObject(engine::Plugins(), &engine::FindModelResource);
    return hv::Ref<IEnvironment>::Share(environment).Detach();
  });
}

HV_ENGINE_EXPORT IContainer* vexCreateContainer(std::int32_t* error) {
  return engine::Export(error, []() -> IContainer* { return new engine::FreeContainer; });
}

HV_ENGINE_EXPORT IInstList* vexCreateInstList(std::int32_t* error) {
  return engine::Export(error, []() -> IInstList* { return new engine::FreeInstList; });
}

HV_ENGINE_EXPORT IUnknownList* vexCreateContainerList(std::int32_t* error) {
  return engine::Export(error, []() -> IUnknownList* {
    throw Exception(errc::kNotSupported, u"lists of containers are made by nobody");
  });
}
