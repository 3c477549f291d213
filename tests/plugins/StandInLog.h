// tests/plugins/StandInLog.h - what a stand-in module tells the test, and the test tells the
// module. The test program owns the one log, under the exported name `HvStandInLog`: it outlives
// the module.
#pragma once

#include <cstdint>
#include <string>

namespace hv::test {

enum class StandInAnswer {
  Object,     ///< what was asked for
  Throw,      ///< an exception with `code`
  ErrorWord,  ///< `code` in the error word, and no object
  ObjectAndErrorWord,
  Nothing,  ///< neither an object nor an error word
};

struct StandInLog {
  StandInAnswer answer = StandInAnswer::Object;
  /// The same for the environment's operations that open a store; `Object` throws kUnknownName.
  StandInAnswer openAnswer = StandInAnswer::Throw;
  std::int32_t code = 0;

  int loads = 0;
  int unloads = 0;
  int inits = 0;
  int cleanups = 0;
  int asked = 0;        ///< calls of the functions that make objects
  int neverCalled = 0;  ///< calls of the functions that must be there and aren't called
  int liveObjects = 0;
  std::int32_t version = 0;
  std::int32_t stamp = 0;
  std::u16string text = u"?";
  std::u16string opened;  ///< the arguments of the last opening, joined with "|"
};

}  // namespace hv::test
