// fuzz/RegFileFuzz.cpp - files of the configuration store that somebody edited.
// What can be read must be written, and read again as the same.
#include "cor/osdep/OSException.h"
#include "cor/osdep/RegFile.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hv::cor::osdep;
  std::string written;
  try {
    written = WriteRegFile(*ParseRegFile({reinterpret_cast<const char*>(data), size}, "s"));
  } catch (const WinError& e) {
    if (e.Number() != kErrorCorrupt) std::abort();
    return 0;
  }
  if (WriteRegFile(*ParseRegFile(written, "written")) != written) std::abort();
  return 0;
}
