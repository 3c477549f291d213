// tests/plugins/StandIn.h - what the stand-in modules share.
#pragma once

#include <dlfcn.h>

#include <cstdlib>

#include "cor/Counted.h"
#include "plugins/StandInLog.h"
#include "store/core/Exception.h"

#define HV_STAND_IN extern "C" __attribute__((visibility("default")))

namespace hv::test {

inline StandInLog& Log() {
  void* const log = ::dlsym(RTLD_DEFAULT, "HvStandInLog");
  if (!log) std::abort();  // the program that loaded the module isn't a test of it
  return *static_cast<StandInLog*>(log);
}

__attribute__((constructor)) static void OnLoad() { ++Log().loads; }
__attribute__((destructor)) static void OnUnload() { ++Log().unloads; }

/// Answers as the test wants: makes an object, throws, or reports.
template <class Make>
auto Answer(std::int32_t* error, Make make) -> decltype(make()) {
  StandInLog& log = Log();
  ++log.asked;
  switch (log.answer) {
    case StandInAnswer::Throw:
      throw vex::Exception(log.code, u"thrown by the stand-in");
    case StandInAnswer::ErrorWord:
      *error = log.code;
      return nullptr;
    case StandInAnswer::ObjectAndErrorWord:
      *error = log.code;
      return make();
    case StandInAnswer::Nothing:
      return nullptr;
    case StandInAnswer::Object:
      break;
  }
  return make();
}

/// An object that the log counts as long as it lives.
template <class Face>
class Living : public cor::Counted<Face> {
 protected:
  Living() { ++Log().liveObjects; }
  ~Living() override { --Log().liveObjects; }
};

}  // namespace hv::test

HV_STAND_IN void Init() { ++hv::test::Log().inits; }
HV_STAND_IN void Cleanup() { ++hv::test::Log().cleanups; }
