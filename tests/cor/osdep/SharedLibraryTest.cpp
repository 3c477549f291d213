// cor/osdep/SharedLibraryTest.cpp - loading modules, and errors that have no text.
#include "cor/osdep/SharedLibrary.h"

#include "cor/osdep/OSException.h"

#include <gtest/gtest.h>

#include <string>

#include <dlfcn.h>

namespace hv::cor::osdep {
namespace {

// Without its extension, which the loader's rule adds.
const std::string kModule = HV_BINARY_DIR "/lib/cor_test_module";

bool IsInMemory() {
  void* const handle = ::dlopen((kModule + ".so").c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle) ::dlclose(handle);
  return handle != nullptr;
}

TEST(SharedLibrary, LoadsResolvesAndUnloads) {
  ASSERT_FALSE(IsInMemory());
  {
    const SharedLibrary library(FromUtf8(kModule), true, true);
    ASSERT_TRUE(library.IsLoaded());
    EXPECT_TRUE(library.LoadError().empty());
    EXPECT_TRUE(library.FileName().EqualsExact(FromUtf8(kModule + ".so")));
    const auto answer = reinterpret_cast<int (*)()>(library.GetSymbol("CorTestAnswer", true));
    EXPECT_EQ(42, answer());
    EXPECT_EQ(nullptr, library.GetSymbol("NoSuchSymbol", false));
    try {
      (void)library.GetSymbol("NoSuchSymbol", true);
      ADD_FAILURE() << "found";
    } catch (const WinError& e) {
      EXPECT_EQ(kErrorProcNotFound, e.Number());
      EXPECT_NE(std::string::npos, std::string(e.what()).find("NoSuchSymbol"));
    }
    EXPECT_TRUE(IsInMemory());
    // Nobody else sees what the module exports.
    EXPECT_EQ(nullptr, ::dlsym(RTLD_DEFAULT, "CorTestAnswer"));
  }
  EXPECT_FALSE(IsInMemory());
}

TEST(SharedLibrary, AModuleThatIsNotThere) {
  for (const char16_t* name : {u"/no/such/module", u""}) {
    const SharedLibrary library(name, true, false);
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_FALSE(library.LoadError().empty());
    EXPECT_EQ(nullptr, library.GetSymbol("x", false));
    try {
      (void)library.GetSymbol("x", true);
      ADD_FAILURE() << "found";
    } catch (const exception::InvalidOperation& e) {
      EXPECT_STREQ("library not loaded", e.what());
    }
    EXPECT_THROW(SharedLibrary(name, true, true), WinError);
  }
}

TEST(OSException, FallsBackToItsOwnText) {
  const OSException unknown(7, "", "cor/osdep/path", 3);
  EXPECT_STREQ("Unknown error", unknown.what());
  EXPECT_STREQ("cor/osdep/path", unknown.File());
  EXPECT_EQ(3, unknown.Line());
  EXPECT_STREQ("Unknown error", WinError(123456, "f", 1).what());
  EXPECT_STRNE("Unknown error", WinError(kErrorFileNotFound, "f", 1).what());
}

}  // namespace
}  // namespace hv::cor::osdep
